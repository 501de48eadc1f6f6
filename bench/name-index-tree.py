#!/usr/bin/env python3
"""Generates the name index benchmark tree: a home-like folder of 150,000 names that the index
takes in (files and folders that are not hidden), plus what it leaves out (hidden folders, a
node_modules beside its package.json, a .git folder), which are not counted.

Deterministic (fixed seed). Files are empty: only names matter. About one name in a thousand is
not UTF-8, and some carry accents.

  name-index-tree.py ROOT [NAMES]
"""
import os
import random
import sys

root = sys.argv[1].encode()
total = int(sys.argv[2]) if len(sys.argv) > 2 else 150_000
rng = random.Random(7)
words = ("report budget invoice letter notes plan draft summary meeting travel photo holiday family "
         "recipe music album track lecture thesis chapter figure backup config server client parser "
         "render widget index cache model state window pane quarterly tax scan receipt "
         "résumé café naïve übersicht año").split()
exts = [".txt", ".md", ".pdf", ".jpg", ".png", ".mp3", ".cpp", ".h", ".py", ".rs", ".json", ".csv", ".odt"]
tops = ["Documents", "Pictures", "Music", "Projects", "Downloads", "Desktop", "Videos"]


def name_of(folder):
    w = rng.choice(words)
    if rng.random() < 0.5:
        w += rng.choice(["_", "-", " "]) + rng.choice(words)
    if rng.random() < 0.4:
        w += " " + str(rng.randrange(1990, 2030))
    text = w.encode()
    if rng.random() < 0.001:
        text += b"-\xe9\xff"  # not UTF-8
    if not folder:
        text += rng.choice(exts).encode()
    return text


def touch(path):
    os.close(os.open(path, os.O_CREAT | os.O_WRONLY, 0o644))


os.makedirs(root, exist_ok=True)
folders = []  # (path, depth)
names = 0
for top in tops:
    path = os.path.join(root, top.encode())
    os.makedirs(path, exist_ok=True)
    folders.append((path, 1))
    names += 1

while names < total:
    recent = rng.random() < 0.7
    parent, depth = rng.choice(folders[-100:]) if recent else rng.choice(folders)
    is_folder = depth < 9 and rng.random() < 0.08
    path = os.path.join(parent, name_of(is_folder))
    if os.path.lexists(path):
        continue
    if is_folder:
        os.mkdir(path)
        folders.append((path, depth + 1))
    else:
        touch(path)
    names += 1

# What the index leaves out.
for hidden in [b".config/app", b".cache/thumbnails", b".local/share/Trash"]:
    os.makedirs(os.path.join(root, hidden), exist_ok=True)
    for i in range(200):
        touch(os.path.join(root, hidden, b"hidden-%d.dat" % i))
site = os.path.join(root, b"Projects", b"site")
os.makedirs(os.path.join(site, b"node_modules", b"left-pad"), exist_ok=True)
for i in range(500):
    touch(os.path.join(site, b"node_modules", b"left-pad", b"module-%d.js" % i))
touch(os.path.join(site, b"package.json"))
os.makedirs(os.path.join(site, b".git", b"objects"), exist_ok=True)
print(f"{names} names in {len(folders)} folders under {root.decode()}")
