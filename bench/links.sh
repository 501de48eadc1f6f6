#!/usr/bin/env bash
# Updating links after a move: a folder of 500 notes moved inside a vault of 5,000 notes (about
# 2 KB each, three relative Markdown links and two wikilinks apiece, a third of them pointing into
# the moved folder) with `orwick-cli move`, which moves the folder and then reads the vault and
# rewrites the notes whose links changed, as the window does. The folder goes back and forth
# five times; each run must update links. Target: each whole run (move and link update) under
# one second.
#   bench/links.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" links python3
vault="$work/vault"

echo "generating a vault of 5,000 notes in $vault"
python3 - "$vault" <<'PY'
import os, random, sys
vault = sys.argv[1]
random.seed(11)
os.makedirs(os.path.join(vault, ".obsidian"))
paths = [f"projects/alpha/note{i:03d}.md" for i in range(500)]
paths += [f"area{f:02d}/note{i:03d}.md" for f in range(50) for i in range(90)]
words = "alpha beta gamma delta project meeting notes review draft idea plan".split()
for path in paths:
    folder = os.path.dirname(path)
    os.makedirs(os.path.join(vault, folder), exist_ok=True)
    links = []
    for _ in range(3):
        target = random.choice(paths[:500]) if random.random() < 0.33 else random.choice(paths)
        links.append(f"[{os.path.basename(target)}]({os.path.relpath(target, folder)})")
    wikis = [f"[[{os.path.splitext(os.path.basename(random.choice(paths)))[0]}]]" for _ in range(2)]
    body = ("Some text about " + " ".join(random.choices(words, k=12)) + ".\n") * 20
    with open(os.path.join(vault, path), "w") as f:
        f.write(f"# {path}\n\n{body}\nSee {', '.join(links)} and {' '.join(wikis)}.\n")
PY
mkdir -p "$vault/archive"

status=0
from="$vault/projects"
to="$vault/archive"
for run in 1 2 3 4 5; do
  start=$(date +%s%N)
  output=$("$cli" move "$from/alpha" "$to")
  end=$(date +%s%N)
  ms=$(( (end - start) / 1000000 ))
  updated=$(grep -o 'Updated links in [0-9]* notes' <<<"$output" || true)
  echo "run $run: ${ms} ms — ${updated:-no links updated}"
  [ -n "$updated" ] || { echo "no links were updated" >&2; exit 1; }
  [ "$ms" -lt 1000 ] || status=1
  tmp=$from; from=$to; to=$tmp
done
# Every link still reaches a note that exists.
python3 - "$vault" <<'PY' || status=1
import os, re, sys
vault = sys.argv[1]
broken = checked = 0
for folder, _, files in os.walk(vault):
    for name in files:
        if name.endswith(".md"):
            text = open(os.path.join(folder, name)).read()
            for target in re.findall(r"\]\(([^)\s]+)\)", text):
                checked += 1
                broken += not os.path.exists(os.path.join(folder, target))
print(f"{checked} links checked, {broken} broken")
sys.exit(1 if broken else 0)
PY
echo "target: each run under 1000 ms"
exit $status
