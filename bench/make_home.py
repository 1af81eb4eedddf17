#!/usr/bin/env python3
"""Builds a synthetic developer home for benchmarks: by default about 200,000 files in 20,000
folders below the caches that `kestrow scan` measures, a mix of small and large files, with
hard links and symbolic links. The same seed gives the same tree. `--layout linux` lays the
caches out where Linux tools keep them, with decoys beside them that a scan must not report."""

import argparse
import os
import random
import sys

# Cache roots and the share of the tree each holds. Every root is a location the scanners
# measure, so that `du -s` over the roots and the scan walk the same files.
ROOTS = [
    (".cache/uv/wheels-v1", 0.15),
    (".cache/uv/archive-v0", 0.15),
    (".cache/uv/builds-v0", 0.08),
    (".cache/uv/sdists-v2", 0.07),
    (".cache/uv/simple-v12", 0.05),
    (".cache/huggingface/hub/models--meta-llama--Llama-3-8B", 0.06),
    (".ollama/models", 0.04),
    (".cache/lm-studio/models/lmstudio-community/Meta-Llama-3-8B-Instruct-GGUF", 0.03),
    (".cache/vllm", 0.03),
    ("Library/Developer/Xcode/DerivedData/Kestrow-bqzfmkhwxzbtpf", 0.08),
    ("Library/Developer/CoreSimulator/Caches", 0.04),
    ("node_modules", 0.06),
    ("Library/Caches/com.spotify.client", 0.04),
    ("Library/Logs/JetBrains", 0.03),
    ("Library/Caches/Google/Chrome", 0.05),
    ("Library/Caches/Firefox/Profiles", 0.04),
]

# The same share of the tree in the places Linux tools use: the XDG cache folder, sandboxes,
# editors' cache folders, Maven, conda, rustup, container storage.
LINUX_ROOTS = [
    (".cache/pip", 0.08),
    (".cache/go-build", 0.08),
    (".cache/yarn", 0.06),
    (".local/share/pnpm/store", 0.05),
    (".cache/JetBrains/IntelliJIdea2024.1", 0.05),
    (".cache/ms-playwright", 0.04),
    (".cache/bazel", 0.04),
    (".cache/ccache", 0.04),
    (".cache/electron", 0.02),
    (".config/Code/CachedData", 0.03),
    (".config/Code/Cache", 0.02),
    (".m2/repository", 0.06),
    ("miniconda3/pkgs", 0.04),
    (".rustup/toolchains/stable-x86_64-unknown-linux-gnu", 0.04),
    (".cache/torch/hub", 0.03),
    (".cache/huggingface/hub/models--bert-base-uncased", 0.03),
    (".local/share/nomic.ai/GPT4All", 0.02),
    (".local/share/containers/storage", 0.05),
    (".local/share/docker", 0.03),
    (".cache/mozilla/firefox/k1.default-release", 0.04),
    (".cache/google-chrome", 0.04),
    (".cache/thumbnails", 0.03),
    (".cache/fontconfig", 0.02),
    (".var/app/org.gimp.GIMP/cache", 0.02),
    ("snap/spotify/common/.cache", 0.02),
    ("snap/firefox/common/.cache/mozilla/firefox/s3.default", 0.02),
]

# What a Linux scan must pass over, each holding a share of the tree as large as a root's.
LINUX_DECOYS = [
    (".mozilla/firefox/k1.default-release", 0.02),
    (".config/google-chrome/Default", 0.02),
    (".config/Code/User", 0.01),
    (".var/app/org.gimp.GIMP/data", 0.01),
    ("snap/spotify/common/Downloads", 0.01),
    (".local/share/Trash/files", 0.01),
    (".local/share/keyrings", 0.01),
]


def file_size(rng):
    roll = rng.random()
    if roll < 0.001:
        return rng.randint(1 << 20, 4 << 20)  # large: 1-4 MiB
    if roll < 0.05:
        return rng.randint(8 << 10, 128 << 10)  # medium
    return rng.randint(0, 8 << 10)  # small, empty ones included


def write(path, size):
    with open(path, "wb") as f:
        if size:
            f.write(b"k" * size)


def build(home, roots, files, folders, seed):
    rng = random.Random(seed)
    files_per_folder = max(1, files // folders)
    made_files = made_folders = links = hard_links = 0
    for root, share in roots:
        root_folders = max(1, int(folders * share))
        for i in range(root_folders):
            # Two levels below the root: package/version, like real caches.
            folder = os.path.join(home, root, f"pkg{i // 20:04d}", f"v{i % 20:02d}")
            os.makedirs(folder, exist_ok=True)
            made_folders += 1
            previous = None
            for j in range(files_per_folder):
                path = os.path.join(folder, f"f{j:02d}.bin" if j % 7 else f".hidden{j:02d}")
                if previous and rng.random() < 0.01:
                    os.link(previous, path)
                    hard_links += 1
                else:
                    write(path, file_size(rng))
                    previous = path
                made_files += 1
            if rng.random() < 0.02:
                # A link to the root's top: never entered, adds nothing.
                os.symlink(os.path.join(home, root), os.path.join(folder, "loop"))
                links += 1
    return made_files, made_folders, hard_links, links


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("home", help="folder to create (must not exist)")
    parser.add_argument("--print-roots", action="store_true", help="print the cache roots below HOME and stop")
    parser.add_argument("--print-decoys", action="store_true", help="print the decoy folders below HOME and stop")
    parser.add_argument("--layout", choices=["macos", "linux"], default="macos")
    parser.add_argument("--files", type=int, default=200_000)
    parser.add_argument("--folders", type=int, default=20_000)
    parser.add_argument("--seed", type=int, default=7)
    args = parser.parse_args()
    roots = LINUX_ROOTS if args.layout == "linux" else ROOTS
    decoys = LINUX_DECOYS if args.layout == "linux" else []
    if args.print_roots or args.print_decoys:
        print("\n".join(os.path.join(args.home, root) for root, _ in (roots if args.print_roots else decoys)))
        return
    if os.path.exists(args.home):
        sys.exit(f"{args.home} exists; remove it or choose another folder")
    counts = build(args.home, roots + decoys, args.files, args.folders, args.seed)
    print("files %d, folders %d, hard links %d, symbolic links %d" % counts)


if __name__ == "__main__":
    main()
