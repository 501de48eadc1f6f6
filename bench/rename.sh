#!/usr/bin/env bash
# Batch rename against Debian's `rename` (the Perl one, package rename), in the same run: the
# same expression applied to 10,000 files in a fresh folder each run, the two taking turns.
#   orwick-cli rename *.jpg --replace 'IMG_(\d+)' --with 'photo-$1' --regex
#   rename 's/IMG_(\d+)/photo-$1/' *.jpg
# orwick-cli works out the preview (every new name checked against the others and the disk) and
# commits as one job of the engine: one rename per file (only names that wait for one another go
# through a temporary name); rename renames each file once.
#
# Where orwick-cli's time goes (Release, 10,000 files, ~100 ms run on its own; strace and perf):
#   start-up ~10 ms (orwick-cli hands rename on to orwick-cli-full, which loads ~60 libraries),
#   arguments and one read of the folder ~7 ms, preview and the printed lines ~12 ms, the renames
#   ~60 ms (10,000 renameat2: the same kernel work as rename's 10,000 rename(2), which also does
#   a stat of each new name), the engine's report ~2 ms, the link scan after it (one read of the
#   folder, no notes found) ~3.5 ms, exit ~3.5 ms. A temporary name for every file would double
#   the renames: ~120 ms in the kernel alone, more than the whole of rename's run (~113 ms).
# Both programs' times include the same subshell and the shell's expansion of the 10,000 names.
#   bench/rename.sh BUILD_DIR
# On disk, not in a memory file system: /var/tmp unless BENCH_TMPDIR says otherwise.
BENCH_TMPDIR=${BENCH_TMPDIR:-/var/tmp}
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" rename
perlRename=$(command -v file-rename || command -v rename || true)
[ -n "$perlRename" ] && "$perlRename" --version 2>&1 | grep -q "File::Rename" \
  || { echo "Debian's rename (Perl) is needed: apt-get install rename (make bench installs it)" >&2; exit 1; }
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" XDG_CONFIG_HOME="$work/home/.config"
mkdir -p "$XDG_DATA_HOME"

count=${RENAME_FILES:-10000}
rounds=${RENAME_ROUNDS:-5}
fresh() { # folder: $count small files IMG_00000.jpg…, synced
  mkdir -p "$1" && (cd "$1" && seq -f 'IMG_%05g.jpg' 0 $((count - 1)) | xargs touch) && sync
}
times="$work/times.txt"
: > "$times"
timed() { # name folder command...: runs the command in the folder on its *.jpg
  local t0 t1
  t0=$(date +%s%N)
  (cd "$2" && "${@:3}" ./*.jpg >/dev/null)
  t1=$(date +%s%N)
  echo "$1 $(( (t1 - t0) / 1000000 ))" >> "$times"
}
orwick() { "$cli" rename "$@" --replace 'IMG_(\d+)' --with 'photo-$1' --regex; }
perlRenameRun() { "$perlRename" 's/IMG_(\d+)/photo-$1/' "$@"; }

echo "renaming $count files: $rounds rounds, orwick-cli rename and $perlRename taking turns, after one of each not timed"
fresh "$work/warm-o" && fresh "$work/warm-p"
(cd "$work/warm-o" && orwick ./*.jpg >/dev/null) && (cd "$work/warm-p" && perlRenameRun ./*.jpg)
diff <(ls "$work/warm-o") <(ls "$work/warm-p") >/dev/null || { echo "the two tools gave different names" >&2; exit 1; }
[ "$(ls "$work/warm-o" | grep -c '^photo-')" = "$count" ] || { echo "orwick-cli didn't rename every file" >&2; exit 1; }
echo "both give the same $count names"
for round in $(seq 1 "$rounds"); do
  fresh "$work/o-$round" && fresh "$work/p-$round"
  if [ $((round % 2)) = 1 ]; then
    timed orwick "$work/o-$round" orwick; timed perl "$work/p-$round" perlRenameRun
  else
    timed perl "$work/p-$round" perlRenameRun; timed orwick "$work/o-$round" orwick
  fi
done
# Mean and median of each program's rounds, and the ratios of both.
summary() { # name: "mean median" of that program's times
  awk -v who="$1" '$1 == who { print $2 }' "$times" | sort -n | awk '{ t[++n] = $1; sum += $1 } END {
    m = n % 2 ? t[(n + 1) / 2] : (t[n / 2] + t[n / 2 + 1]) / 2
    printf "%.1f %.1f", sum / n, m }'
}
read -r orwickMean orwickMedian <<< "$(summary orwick)"
read -r perlMean perlMedian <<< "$(summary perl)"
echo "rename $count files over $rounds rounds: orwick-cli mean $orwickMean ms, median $orwickMedian ms;" \
  "rename (perl) mean $perlMean ms, median $perlMedian ms"
awk -v om="$orwickMean" -v pm="$perlMean" -v od="$orwickMedian" -v pd="$perlMedian" \
  'BEGIN { printf "ratio orwick-cli / rename: %.2f (means), %.2f (medians)\n", om / pm, od / pd }'
printf "  each run (ms):"; tr '\n' ' ' < "$times"; echo
