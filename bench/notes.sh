#!/usr/bin/env bash
# Loading the properties of a folder of 10,000 notes (front matter of six to ten properties and a
# body of one to eight KB each, a few hundred other files with the properties attribute) through
# the loader the window uses: `orwick-cli props DIR`. Target: under one second.
#   bench/notes.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" notes python3
folder="$work/notes"
mkdir -p "$folder"

echo "generating 10,000 notes in $folder"
python3 - "$folder" <<'PY'
import os, random, sys
folder = sys.argv[1]
random.seed(7)
statuses = ["todo", "doing", "done", "blocked"]
words = "alpha beta gamma delta project meeting notes review draft idea plan".split()
for i in range(10000):
    lines = ["---", f"title: Note {i}", f"status: {random.choice(statuses)}",
             f"due: 2024-{random.randint(1, 12):02d}-{random.randint(1, 28):02d}",
             f"priority: {random.randint(1, 5)}", f"done: {random.choice(['true', 'false'])}",
             "tags: [" + ", ".join(random.sample(words, 3)) + "]"]
    if i % 3 == 0:
        lines += ["aliases:", "  - \"first alias\"", "  - second"]
    if i % 5 == 0:
        lines.append('quote: "she said \\"hi\\" and left"')
    lines.append("---")
    body = ("Some text about " + " ".join(random.choices(words, k=12)) + ".\n") * random.randint(12, 100)
    with open(os.path.join(folder, f"note{i:05d}.md"), "w") as f:
        f.write("\n".join(lines) + "\n\n# Note\n\n" + body)
for i in range(300):
    path = os.path.join(folder, f"image{i:03d}.png")
    with open(path, "wb") as f:
        f.write(b"\x89PNG fake")
    os.setxattr(path, "user.app.orwick.properties", b'{"rating":4,"tags":["photo"]}')
PY

# Warm the page cache once, as a folder the user just opened would be.
"$cli" props "$folder" >/dev/null 2>&1

best=""
for run in 1 2 3 4 5; do
  report=$("$cli" props "$folder" 2>&1 >/dev/null | tail -n 1)
  ms=$(sed -E 's/.*read in ([0-9]+) ms.*/\1/' <<<"$report")
  if [ -z "$best" ] || [ "$ms" -lt "$best" ]; then best=$ms; fi
done
echo "$report"
start=$(date +%s%N)
lines=$("$cli" props "$folder" 2>/dev/null | wc -l)
whole=$(( ($(date +%s%N) - start) / 1000000 ))
echo "loading the properties of 10,300 items: best ${best} ms of 5 runs (target < 1000 ms)"
echo "whole orwick-cli props run, JSON printing included: ${whole} ms for ${lines} lines"
[ "$best" -lt 1000 ]
