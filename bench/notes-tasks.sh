#!/usr/bin/env bash
# The Tasks view's reading over 10,000 notes holding 50,000 tasks (five a note, with due and
# scheduled dates, priorities and recurrences, half done), in three levels of folders, through
# the reader the window uses: `orwick-cli tasks DIR`. Target: within one second.
#   bench/notes-tasks.sh BUILD_DIR
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" notes-tasks python3
folder="$work/vault"
mkdir -p "$folder"

echo "generating 10,000 notes with 50,000 tasks in $folder"
python3 - "$folder" <<'PY'
import os, random, sys
folder = sys.argv[1]
random.seed(3)
words = "call write review plan fix send read pay book clean".split()
for i in range(10000):
    sub = os.path.join(folder, f"area{i % 10}", f"project{i % 37}")
    os.makedirs(sub, exist_ok=True)
    lines = ["---", f"title: Note {i}", "---", "", "# Note", "", "Some text about the project.", ""]
    for t in range(5):
        task = f"- [{random.choice([' ', 'x'])}] {' '.join(random.choices(words, k=4))}"
        task += f" 📅 2024-{random.randint(1, 12):02d}-{random.randint(1, 28):02d}"
        if t % 2 == 0:
            task += f" ⏳ 2024-{random.randint(1, 12):02d}-{random.randint(1, 28):02d}"
        if t % 3 == 0:
            task += " " + random.choice(["⏫", "🔼", "🔽", "🔺"])
        if t == 4:
            task += " 🔁 every week"
        lines.append(task)
    lines.append("More text after the tasks.\n" * 20)
    with open(os.path.join(sub, f"note{i:05d}.md"), "w") as f:
        f.write("\n".join(lines))
PY
sync

best=""
for run in 1 2 3; do
  report=$("$cli" tasks "$folder" 2>&1 >/dev/null | tail -n 1)
  ms=$(sed -E 's/.*read in ([0-9]+) ms.*/\1/' <<<"$report")
  echo "run $run: $report"
  if [ -z "$best" ] || [ "$ms" -lt "$best" ]; then best=$ms; fi
done
count=$("$cli" tasks "$folder" 2>/dev/null | wc -l)
[ "$count" -eq 50000 ] || { echo "expected 50000 tasks, got $count" >&2; exit 1; }
echo "reading 50,000 tasks in 10,000 notes: best ${best} ms of 3 runs (target < 1000 ms)"
[ "$best" -lt 1000 ]
