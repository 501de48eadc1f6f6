#!/usr/bin/env bash
# The file operations engine against the tools a user would otherwise run, in the same run:
#  1. copying a tree of 20,000 small files and three 100 MB files to another folder on the same
#     disk: `orwick-cli copy` against `cp -a` (target: orwick-cli ≤ 1.0 × cp -a);
#  1b. copying a sparse 1 GiB disk image holding 4 KiB of data, against `cp -a` (target: < 0.1 s,
#     and the copy stays sparse);
#  2. moving that tree within one file system: one rename per top-level item (counted by strace);
#  3. moving 10,000 files to the Trash with `orwick-cli trash` (target: under 2 s).
#   bench/fileops.sh BUILD_DIR
# On disk, not in a memory file system: /var/tmp unless BENCH_TMPDIR says otherwise.
BENCH_TMPDIR=${BENCH_TMPDIR:-/var/tmp}
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" fileops hyperfine
# The Trash and trash log of this run stay in the work folder, never in the real home.
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share"
mkdir -p "$XDG_DATA_HOME"

src="$work/tree"
echo "generating 20,000 small files and 3 × 100 MB in $src"
mkdir -p "$src"
for d in $(seq 0 19); do
  mkdir -p "$src/module$d"
  (
    cd "$src/module$d"
    for s in $(seq 0 9); do
      mkdir -p "part$s"
      for f in $(seq 0 99); do
        printf 'module %d part %d file %d\n' "$d" "$s" "$f" > "part$s/file$f.txt"
      done
    done
  )
done
for b in 1 2 3; do
  head -c $((100 * 1024 * 1024)) /dev/urandom > "$src/big$b.bin"
done
sync

# Trashing 10,000 files, first (before the copies below delete anything: ext4 scans past
# recently deleted inodes when it makes new ones, which would time the file system, not us).
# Each run gets its own home, so nothing is deleted between runs either.
# The same run times two yardsticks on fresh folders of the same disk: making 10,000 empty files
# (the least any Trash must do: one .trashinfo per item), and `gio trash`, GLib's Trash.
echo "trashing 10,000 files, 3 runs (with the floor and gio trash beside each)"
TIMEFORMAT='%R %U %S'
fresh() { # folder: 10,000 files, synced
  mkdir -p "$1" && (cd "$1" && seq 0 9999 | sed 's/$/.txt/' | xargs touch) && sync
}
for run in 1 2 3; do
  home="$work/trash-home-$run"
  mkdir -p "$home/.local/share"
  fresh "$work/trashme-$run"
  { time HOME="$home" XDG_DATA_HOME="$home/.local/share" "$cli" trash "$work/trashme-$run"/*.txt >/dev/null; } 2>> "$work/trash-times.txt"
  [ "$(find "$home/.local/share/Trash/files" -type f | wc -l)" = 10000 ] || { echo "not every file reached the Trash" >&2; exit 1; }
  mkdir -p "$work/floor-$run"
  { time (cd "$work/floor-$run" && seq 0 9999 | sed 's/$/.trashinfo/' | xargs touch); } 2>> "$work/floor-times.txt"
  if command -v gio >/dev/null; then
    gioHome="$work/gio-home-$run"
    mkdir -p "$gioHome/.local/share"
    fresh "$work/gio-$run"
    { time HOME="$gioHome" XDG_DATA_HOME="$gioHome/.local/share" gio trash "$work/gio-$run"/*.txt; } 2>> "$work/gio-times.txt"
  fi
done
mean() { awk '{ wall += $1; cpu += $2 + $3; if ($1 > max) max = $1 } END { printf "%.0f ms wall (mean of %d), %.0f ms max, %.0f ms CPU", wall / NR * 1000, NR, max * 1000, cpu / NR * 1000 }' "$1"; }
echo "trash 10,000 files: orwick-cli $(mean "$work/trash-times.txt"); target < 2000 ms"
echo "  floor, making 10,000 empty files: $(mean "$work/floor-times.txt")"
[ -s "$work/gio-times.txt" ] && echo "  gio trash: $(mean "$work/gio-times.txt")"
awk 'FNR == 1 { file++ } { wall[file] += $1; n[file]++ } END {
  printf "  orwick-cli / floor = %.2f", (wall[1] / n[1]) / (wall[2] / n[2])
  if (file > 2) printf ", orwick-cli / gio trash = %.2f", (wall[1] / n[1]) / (wall[3] / n[3])
  printf "\n" }' "$work/trash-times.txt" "$work/floor-times.txt" $( [ -s "$work/gio-times.txt" ] && echo "$work/gio-times.txt")

csv="$work/copy.csv"
mkdir -p "$work/cp" "$work/orwick"
hyperfine --shell=none --warmup 1 --runs 5 --export-csv "$csv" \
  --prepare "sh -c 'rm -rf $work/cp/tree $work/orwick/tree && sync'" \
  --command-name "cp -a" "cp -a $src $work/cp/" \
  --command-name orwick-cli "$cli copy $src $work/orwick"
diff -r "$src" "$work/orwick/tree" >/dev/null && echo "the copy matches the source"
rm -rf "$work/cp/tree" "$work/orwick/tree"

# command,mean,stddev,median,user,system,min,max
awk -F, '
  $1 == "cp -a" { cpMean = $2; cpMedian = $4 }
  $1 == "orwick-cli" { oMean = $2; oMedian = $4 }
  END {
    printf "copy: cp -a %.0f ms, orwick-cli copy %.0f ms (means)\n", cpMean * 1000, oMean * 1000
    printf "ratio orwick-cli / cp -a: %.3f (mean), %.3f (median); target <= 1.0\n", oMean / cpMean, oMedian / cpMedian
  }' "$csv"

# A sparse disk image: holes stay holes, and the copy takes no longer than its data.
image="$work/sparse/disk.img"
mkdir -p "$work/sparse" "$work/sparse-cp" "$work/sparse-orwick"
truncate -s 1G "$image"
head -c 4096 /dev/urandom | dd of="$image" bs=4096 seek=131072 conv=notrunc status=none
sync
sparseCsv="$work/sparse.csv"
hyperfine --shell=none --warmup 1 --runs 10 --export-csv "$sparseCsv" \
  --prepare "rm -f $work/sparse-cp/disk.img $work/sparse-orwick/disk.img" \
  --command-name "cp -a" "cp -a $image $work/sparse-cp/" \
  --command-name orwick-cli "$cli copy $image $work/sparse-orwick"
"$cli" copy "$image" "$work/sparse-orwick" >/dev/null
cmp -s "$image" "$work/sparse-orwick/disk.img" && echo "the sparse copy matches the image"
echo "sparse copy allocates $(du -k "$work/sparse-orwick/disk.img" | cut -f1) KiB of its 1 GiB"
awk -F, '
  $1 == "cp -a" { cpMean = $2 }
  $1 == "orwick-cli" { oMean = $2 }
  END { printf "sparse 1 GiB image: cp -a %.1f ms, orwick-cli copy %.1f ms (means); ratio %.2f; target < 100 ms\n", cpMean * 1000, oMean * 1000, oMean / cpMean }' "$sparseCsv"

# Moving within one file system renames each top-level item once.
top=$(find "$src" -mindepth 1 -maxdepth 1 | wc -l)
mkdir -p "$work/moved"
start=$(date +%s.%N)
if command -v strace >/dev/null; then
  strace -f -qq -e trace=rename,renameat,renameat2 -o "$work/strace.txt" "$cli" move "$src"/* "$work/moved" >/dev/null
  renames=$(grep -c 'rename' "$work/strace.txt" || true)
else
  "$cli" move "$src"/* "$work/moved" >/dev/null
  renames="(strace not installed)"
fi
end=$(date +%s.%N)
echo "move within one file system: $top top-level items, $renames renames, $(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.0f", (b - a) * 1000 }') ms (under strace)"

