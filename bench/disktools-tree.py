#!/usr/bin/env python3
"""Generates the disk-tools benchmark tree: a home-like folder of about 150,000 files.

Deterministic (fixed seed): about 8 % of the files are copies of others (some named like copies,
some in other folders, a few groups of three), and there are same-size decoys, half of which
share the first 64 KiB with their twin and differ only in the last byte. Projects carry the
build folders the clean-up finds (node_modules, target, build, __pycache__, dist), and there
are hidden folders, a few hard links and symbolic links (one a loop), as a real home has.

  disktools-tree.py ROOT
"""
import os
import random
import sys

SEED = 8
POOL_BYTES = 48 << 20

root = sys.argv[1]
rng = random.Random(SEED)
pool = rng.randbytes(POOL_BYTES)
files = []  # (path, size, offset) of every distinct file, for copies and decoys


def content(size, offset):
    return pool[offset:offset + size]


def write(path, data, mtime):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)
    os.utime(path, (mtime, mtime))


def new_file(path, size, track=True):
    size = min(size, POOL_BYTES - 1)
    offset = rng.randrange(POOL_BYTES - size)
    write(path, content(size, offset), 1_500_000_000 + rng.randrange(200_000_000))
    if track:
        files.append((path, size, offset))


def small_size():
    # Most files in a home are small: a log-normal around 2 KB.
    return max(1, int(rng.lognormvariate(7.5, 1.3)))


def fill(folder, count, sizer, exts):
    for i in range(count):
        new_file(os.path.join(folder, f"file{i}{rng.choice(exts)}"), sizer())


# Documents: nested folders of office files and notes.
for d in range(500):
    fill(f"{root}/Documents/area{d % 20}/topic{d}", 100, small_size, [".md", ".pdf", ".docx", ".txt"])
# Projects: source trees, some with build folders.
for p in range(80):
    base = f"{root}/Projects/project{p}"
    for m in range(15):
        fill(f"{base}/src/module{m}", 60, small_size, [".c", ".h", ".py", ".ts", ".rs"])
    kind = p % 6
    if kind == 0:
        write(f"{base}/package.json", b"{}\n", 1_600_000_000)
        for m in range(5):
            fill(f"{base}/node_modules/pkg{m}", 40, small_size, [".js", ".json"])
        fill(f"{base}/dist", 20, small_size, [".js"])
    elif kind == 1:
        write(f"{base}/Cargo.toml", b"[package]\n", 1_600_000_000)
        fill(f"{base}/target/debug", 80, lambda: small_size() * 10, [".rlib", ".o"])
    elif kind == 2:
        write(f"{base}/build.gradle.kts", b"plugins {}\n", 1_600_000_000)
        fill(f"{base}/build/classes", 60, small_size, [".class"])
    elif kind == 3:
        fill(f"{base}/src/__pycache__", 30, small_size, [".pyc"])
# Pictures and music: fewer, larger files.
for d in range(8):
    fill(f"{root}/Pictures/{2010 + d}", 50, lambda: rng.randrange(200_000, 1_500_000), [".jpg", ".png"])
fill(f"{root}/Music/album", 60, lambda: rng.randrange(2_000_000, 6_000_000), [".flac"])
fill(f"{root}/Videos", 4, lambda: rng.randrange(20_000_000, 40_000_000), [".mkv"])
# Hidden places: caches and settings.
for d in range(50):
    fill(f"{root}/.cache/app{d}", 80, small_size, [".bin"])
fill(f"{root}/.config/tool", 300, small_size, [".conf"])

distinct = len(files)
# Copies: about 8 % of the tree, beside the original ("name copy.ext", "name (2).ext") or elsewhere.
copies = 0
for i, (path, size, offset) in enumerate(rng.sample(files, int(distinct * 0.075))):
    stem, ext = os.path.splitext(path)
    where = rng.randrange(4)
    if where == 0:
        target = f"{stem} copy{ext}"
    elif where == 1:
        target = f"{stem} (2){ext}"
    else:
        target = f"{root}/Downloads/batch{i % 50}/{os.path.basename(stem)}-{i}{ext}"
    write(target, content(size, offset), 1_500_000_000 + rng.randrange(200_000_000))
    copies += 1
    if i % 10 == 0:  # some groups of three
        write(f"{root}/Backup/set{i % 30}/{i}{ext}", content(size, offset), 1_700_000_000)
        copies += 1
# Same-size decoys: another content of the same size, or the same head with another last byte.
decoys = 0
for i, (path, size, offset) in enumerate(rng.sample(files, int(distinct * 0.03))):
    target = f"{root}/Downloads/decoys{i % 40}/decoy{i}{os.path.splitext(path)[1]}"
    if size > 65536 and i % 2 == 0:
        data = bytearray(content(size, offset))
        data[-1] ^= 1
        write(target, bytes(data), 1_650_000_000)
    else:
        new_file(target, size, track=False)
    decoys += 1
# Hard links (one file under two names, never a duplicate of itself) and symbolic links.
for i, (path, size, offset) in enumerate(rng.sample(files, 20)):
    link = f"{root}/Links/hard{i}{os.path.splitext(path)[1]}"
    os.makedirs(os.path.dirname(link), exist_ok=True)
    os.link(path, link)
os.symlink("..", f"{root}/Links/loop")
os.symlink("../Documents", f"{root}/Links/docs")

print(f"{distinct} distinct files, {copies} copies, {decoys} same-size decoys, 20 hard links")
