#!/usr/bin/env python3
"""Writes an audit log of valid, chained lines, as `kestrow clean` would have written them run
after run: `make_audit_log.py LOG [--lines N]` (default 76,000 lines, about 30 MB). The line
form and the hash are the log's own: keys sorted, "/" written as "\\/", line breaks of the
Unicode newline set escaped; SHA-256 over previous hash, time stamp, id, type, count, bytes,
client, duration text and the sorted paths joined by ",", all joined by "|". The same seed
gives the same log; `kestrow audit verify` must call it intact."""

import argparse
import hashlib
import json
import os
import random
import sys
import unicodedata
import uuid
from datetime import datetime, timedelta, timezone

GENESIS = "0" * 64
TYPES = ["trash", "trash", "trash", "dry_run", "purge"]
CLIENTS = ["cli", "gui", "mcp", "uninstaller"]
PLACES = [
    ".cache/uv/wheels-v1/pkg{:04d}/v{:02d}",
    ".cache/huggingface/hub/models--m{:04d}/{:02d}",
    "Library/Caches/com.example.app{:04d}/f_{:02d}",
    "Library/Developer/Xcode/DerivedData/App-{:04d}/{:02d}",
    "node_modules/.cache/pkg{:04d}/r{:02d}",
    "Library/Caches/Fichiers r\u00e9cents {:04d}/\u65e5\u672c {:02d}",
]


def native_bytes(text):
    # Characters U+DC80..U+DCFF stand for raw bytes of names that are not UTF-8.
    return text.encode("utf-8", "surrogateescape")


def sorted_paths(paths):
    # The composed form orders, the text itself breaks ties: one total order.
    return sorted(paths, key=lambda p: (native_bytes(unicodedata.normalize("NFC", p)), native_bytes(p)))


def duration_text(value):
    # The shortest text that reads back as the value, always with a fraction; this generator
    # keeps to the range where that is Python's own form.
    assert 1e-4 <= value < 2**53
    return repr(float(value))


def rolling_hash(previous, timestamp, operation_id, operation_type, items, freed, client, duration, paths):
    text = "|".join([previous, timestamp, operation_id, operation_type, str(items), str(freed), client,
                     duration_text(duration), ",".join(sorted_paths(paths))])
    return hashlib.sha256(native_bytes(text)).hexdigest()


def json_text(value):
    text = json.dumps(value, ensure_ascii=False).replace("/", "\\/")
    for breaker in ("\u0085", "\u2028", "\u2029"):
        text = text.replace(breaker, "\\u%04x" % ord(breaker))
    return text


def number_text(value):
    # As the writer's shortest form: 1250.0 is written "1250".
    return str(int(value)) if float(value).is_integer() else repr(value)


def line(entry):
    keys = sorted(entry)
    parts = []
    for key in keys:
        value = entry[key]
        if isinstance(value, float):
            text = number_text(value)
        elif isinstance(value, list):
            text = "[" + ",".join(json_text(v) for v in value) + "]"
        else:
            text = json_text(value)
        parts.append(json_text(key) + ":" + text)
    return "{" + ",".join(parts) + "}\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("log")
    parser.add_argument("--lines", type=int, default=76000)
    parser.add_argument("--home", default="/home/dev")
    parser.add_argument("--seed", type=int, default=7)
    args = parser.parse_args()

    rng = random.Random(args.seed)
    moment = datetime(2024, 1, 1, tzinfo=timezone.utc)
    previous = GENESIS
    os.makedirs(os.path.dirname(os.path.abspath(args.log)), exist_ok=True)
    with open(args.log, "w", encoding="utf-8", errors="surrogateescape", newline="\n") as out:
        for _ in range(args.lines):
            moment += timedelta(seconds=rng.randint(60, 3600), milliseconds=rng.randint(0, 999))
            timestamp = moment.strftime("%Y-%m-%dT%H:%M:%S.") + "%03dZ" % (moment.microsecond // 1000)
            operation_id = str(uuid.UUID(int=rng.getrandbits(128), version=4)).upper()
            operation_type = rng.choice(TYPES)
            paths = [args.home + "/" + rng.choice(PLACES).format(rng.randrange(10000), rng.randrange(100))
                     for _ in range(rng.choice([1, 1, 1, 1, 2]))]
            freed = rng.randint(4096, 4 << 30)
            client = rng.choice(CLIENTS)
            duration = round(rng.uniform(0.5, 90000.0), 3)
            digest = rolling_hash(previous, timestamp, operation_id, operation_type, len(paths), freed, client,
                                  duration, paths)
            out.write(line({"bytesFreed": freed, "client": client, "durationMs": duration,
                            "itemsCount": len(paths), "operationId": operation_id,
                            "operationType": operation_type, "paths": paths, "previousHash": previous,
                            "rollingHash": digest, "timestamp": timestamp}))
            previous = digest
    print(f"{args.lines} lines, {os.path.getsize(args.log)} bytes: {args.log}", file=sys.stderr)


if __name__ == "__main__":
    main()
