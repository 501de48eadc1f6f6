#!/usr/bin/env python3
"""Generates the folder-comparison benchmark trees: LEFT and RIGHT of FILES files each (default
30,000) in nested folders, equal but for 300 changed files (half the same size with one byte
changed, half another size), 300 files only on the left and 300 only on the right. Sizes from
200 bytes to 64 KB. Deterministic (fixed seed). CHANGED 0 makes the changed files equal instead
(the sync benchmark: 300 to copy, 300 to remove).

  compare-trees.py LEFT RIGHT [FILES [CHANGED]]
"""
import os
import random
import sys

left, right = sys.argv[1], sys.argv[2]
count = int(sys.argv[3]) if len(sys.argv) > 3 else 30000
differ = max(1, count // 100)
changing = sys.argv[4] != "0" if len(sys.argv) > 4 else True
rng = random.Random(20)
pool = rng.randbytes(8 << 20)


def write(path, data, mtime=1_600_000_000):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        f.write(data)
    os.utime(path, (mtime, mtime))


def relative(i):
    return f"d{i % 40}/e{(i // 40) % 25}/file{i}.dat"


for i in range(count):
    size = rng.choice([200, 900, 3000, 8000, 20000, 65000])
    offset = rng.randrange(len(pool) - size)
    data = pool[offset:offset + size]
    path = relative(i)
    if i < differ:  # only on the left
        write(f"{left}/{path}", data)
    elif i < 2 * differ:  # only on the right
        write(f"{right}/{path}", data)
    elif i < 3 * differ and changing:  # changed
        write(f"{left}/{path}", data)
        if i % 2:
            changed = bytearray(data)
            changed[-1] ^= 1
            write(f"{right}/{path}", bytes(changed))
        else:
            write(f"{right}/{path}", data + b"more")
    else:
        write(f"{left}/{path}", data)
        write(f"{right}/{path}", data)
