#!/usr/bin/env python3
"""Generates the search benchmark tree: a home-like folder of about 150,000 files.

Deterministic (fixed seed). Documents, photos, music and source projects under the usual
folders; names from a word list with accents here and there ("résumé", "café"); most files are
short text, some are binary (a NUL early on); projects carry build folders (node_modules beside
package.json, target beside Cargo.toml, __pycache__) and a .git folder; hidden folders (.config,
.cache, .local/share) hold their share of files.

  search-tree.py ROOT [FILES]
"""
import os
import random
import sys

root = sys.argv[1]
total = int(sys.argv[2]) if len(sys.argv) > 2 else 150_000
rng = random.Random(11)
words = ("report budget invoice letter notes plan draft summary meeting travel photo holiday family "
         "recipe music album track lecture thesis chapter figure backup config server client parser "
         "render widget index cache model state window pane résumé café naïve übersicht año").split()
exts = [".txt", ".md", ".pdf", ".jpg", ".png", ".mp3", ".cpp", ".h", ".py", ".rs", ".json", ".csv", ".odt", ".bin"]
sentences = ["The quarterly numbers look fine.", "Call the plumber on Tuesday.", "TODO: tidy the parser.",
             "Lorem ipsum dolor sit amet.", "Résumé attached, see you soon.", "fn main() { println!(\"hi\"); }",
             "int main() { return 0; }", "SELECT * FROM orders;", "Meeting moved to Friday."]
made = 0


def write(path, binary):
    global made
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as f:
        if binary:
            f.write(b"\x89BIN\x00" + rng.randbytes(rng.randrange(64, 2048)))
        else:
            lines = [rng.choice(sentences) for _ in range(rng.randrange(1, 40))]
            if rng.random() < 0.002:
                lines.insert(rng.randrange(len(lines)), "the secret word is quokka")
            f.write(("\n".join(lines) + "\n").encode())
    made += 1


def name():
    n = rng.choice(words)
    if rng.random() < 0.5:
        n += "-" + rng.choice(words)
    if rng.random() < 0.4:
        n += " " + str(rng.randrange(1, 3000))
    return n


def fill(folder, count, depth):
    for _ in range(count):
        if made >= total:
            return
        if depth < 5 and rng.random() < 0.08:
            fill(os.path.join(folder, name()), rng.randrange(5, 60), depth + 1)
            continue
        ext = rng.choice(exts)
        write(os.path.join(folder, name() + ext), ext in (".jpg", ".png", ".mp3", ".pdf", ".bin", ".odt"))


def project(folder, kind):
    if kind == "node":
        write(os.path.join(folder, "package.json"), False)
        fill(os.path.join(folder, "node_modules"), 400, 3)
    elif kind == "rust":
        write(os.path.join(folder, "Cargo.toml"), False)
        fill(os.path.join(folder, "target", "debug"), 300, 3)
    else:
        fill(os.path.join(folder, "__pycache__"), 50, 4)
    fill(os.path.join(folder, ".git", "objects"), 200, 4)
    fill(os.path.join(folder, "src"), 150, 2)


places = ["Documents", "Pictures", "Music", "Downloads", "Desktop", ".config", ".cache", ".local/share"]
while made < total:
    place = rng.choice(places + ["Projects"])
    if place == "Projects":
        project(os.path.join(root, "Projects", name().replace(" ", "_")), rng.choice(["node", "rust", "python"]))
    else:
        fill(os.path.join(root, place, name()), rng.randrange(50, 400), 1)
print(f"{made} files")
