#!/usr/bin/env python3
"""Times the agent server: from the start of `kestrow mcp` to the answer of `initialize` and
to that of `tools/list`; then `scan_storage` through the server against `kestrow scan --json` on
the same generated home (bench/out/home, made by make_home.py when absent), in alternating
rounds, warm cache, medians. Usage: bench/mcp.py [--runs N] [--home HOME]"""

import argparse
import json
import os
import statistics
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOP = os.path.dirname(HERE)


def request(server, message):
    server.stdin.write((json.dumps(message) + "\n").encode())
    server.stdin.flush()
    answer = json.loads(server.stdout.readline())
    if "error" in answer:
        sys.exit(f"the server answered {answer}")
    return answer


def start(kestrow, home):
    return subprocess.Popen([kestrow, "mcp", "--home", home], stdin=subprocess.PIPE, stdout=subprocess.PIPE)


def startup(kestrow, home):
    """Seconds from the start to the answer of initialize, then of tools/list."""
    began = time.perf_counter()
    server = start(kestrow, home)
    request(server, {"jsonrpc": "2.0", "id": 1, "method": "initialize", "params": {}})
    initialized = time.perf_counter() - began
    listed = request(server, {"jsonrpc": "2.0", "id": 2, "method": "tools/list"})
    assert len(listed["result"]["tools"]) == 9
    tools = time.perf_counter() - began
    server.stdin.close()
    server.wait()
    return initialized, tools


def scan_through_server(kestrow, home):
    """Seconds of the whole run (start, scan, end) and of the call alone, and the item count."""
    began = time.perf_counter()
    server = start(kestrow, home)
    called = time.perf_counter()
    answer = request(server, {"jsonrpc": "2.0", "id": 1, "method": "tools/call",
                              "params": {"name": "scan_storage", "arguments": {}}})
    call = time.perf_counter() - called
    server.stdin.close()
    server.wait()
    items = len(json.loads(answer["result"]["content"][0]["text"])["items"])
    return time.perf_counter() - began, call, items


def scan_command(kestrow, home):
    began = time.perf_counter()
    out = subprocess.run([kestrow, "scan", "--home", home, "--json"], check=True, stdout=subprocess.PIPE).stdout
    return time.perf_counter() - began, len(json.loads(out)["items"])


def median(samples):
    return f"{statistics.median(samples) * 1000:.1f} ms (min {min(samples) * 1000:.1f}, max {max(samples) * 1000:.1f})"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--home", default=os.path.join(HERE, "out/home"), help="a home made by make_home.py")
    args = parser.parse_args()
    kestrow = os.environ.get("KESTROW", os.path.join(TOP, "build/release/kestrow/kestrow"))
    if not os.access(kestrow, os.X_OK):
        subprocess.run("cmake --preset release >/dev/null && cmake --build --preset release --target kestrow",
                       shell=True, check=True, cwd=TOP)
    home = args.home
    if not os.path.isdir(home):
        subprocess.run([sys.executable, os.path.join(HERE, "make_home.py"), home], check=True)

    startup(kestrow, home)  # warm-up
    starts = [startup(kestrow, home) for _ in range(args.runs * 3)]
    print(f"initialize answered after {median([s[0] for s in starts])}")
    print(f"tools/list answered after {median([s[1] for s in starts])}")

    scan_through_server(kestrow, home)
    scan_command(kestrow, home)
    served, calls, commands = [], [], []
    for _ in range(args.runs):
        whole, call, served_items = scan_through_server(kestrow, home)
        served.append(whole)
        calls.append(call)
        seconds, command_items = scan_command(kestrow, home)
        commands.append(seconds)
    print(f"scan_storage through kestrow mcp: {median(served)} in all, the call {median(calls)}, "
          f"{served_items} items")
    print(f"kestrow scan --json:              {median(commands)}, {command_items} items")
    print(f"load average {os.getloadavg()[0]:.1f}, {args.runs} runs")


if __name__ == "__main__":
    main()
