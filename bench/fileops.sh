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

# The two copiers take turns, each round in the other order, and every run writes a fresh folder:
# timing one tool's runs after the other's, with deletions between them, would time ext4 growing
# slower as it scans past freshly deleted inodes, not the tools. Each run starts after a sync,
# so neither pays for the other's write-back.
rounds=${COPY_ROUNDS:-6}
times="$work/copy-times.txt"
: > "$times"
timed() { # name command...
  sync
  local t0 t1
  t0=$(date +%s%N)
  "${@:2}" >/dev/null
  t1=$(date +%s%N)
  echo "$1 $(( (t1 - t0) / 1000000 ))" >> "$times"
}
echo "copying the tree: $rounds rounds, cp -a and orwick-cli copy taking turns, after one of each not timed"
mkdir -p "$work/warm-cp" "$work/warm-orwick"
cp -a "$src" "$work/warm-cp/" && "$cli" copy "$src" "$work/warm-orwick" >/dev/null
for round in $(seq 1 "$rounds"); do
  mkdir -p "$work/cp-$round" "$work/orwick-$round"
  if [ $((round % 2)) = 1 ]; then
    timed "cp" cp -a "$src" "$work/cp-$round/"
    timed "orwick" "$cli" copy "$src" "$work/orwick-$round"
  else
    timed "orwick" "$cli" copy "$src" "$work/orwick-$round"
    timed "cp" cp -a "$src" "$work/cp-$round/"
  fi
done
diff -r "$src" "$work/orwick-1/tree" >/dev/null && echo "the copy matches the source"
rm -rf "$work"/cp-* "$work"/orwick-*
sync
awk '
  { t[$1, ++n[$1]] = $2; sum[$1] += $2 }
  function median(name,   i, j, k, a, m) {
    m = n[name]; for (i = 1; i <= m; i++) a[i] = t[name, i]
    for (i = 1; i <= m; i++) for (j = i + 1; j <= m; j++) if (a[j] < a[i]) { k = a[i]; a[i] = a[j]; a[j] = k }
    return m % 2 ? a[(m + 1) / 2] : (a[m / 2] + a[m / 2 + 1]) / 2
  }
  END {
    cpMean = sum["cp"] / n["cp"]; oMean = sum["orwick"] / n["orwick"]
    printf "copy: cp -a %.0f ms, orwick-cli copy %.0f ms (means of %d); medians %.0f and %.0f ms\n", cpMean, oMean, n["cp"], median("cp"), median("orwick")
    printf "ratio orwick-cli / cp -a: %.3f (mean), %.3f (median); target <= 1.0\n", oMean / cpMean, median("orwick") / median("cp")
  }' "$times"
printf "  each run (ms):"; tr '\n' ' ' < "$times"; echo

# The same copy with the file system's history taken out: each run gets a new ext4 made on a
# loop image (on disk), holding a fresh copy of the tree, so that neither tool pays for the
# inodes the other freed. Needs root (mount); skipped with a word otherwise.
if [ "$(id -u)" = 0 ] && command -v mkfs.ext4 >/dev/null; then
  fresh_times="$work/fresh-times.txt"
  : > "$fresh_times"
  mnt="$work/fresh-mnt"
  mkdir -p "$mnt"
  trap 'umount "$mnt" 2>/dev/null; rm -rf "$work"' EXIT
  on_fresh_fs() { # name command-prefix...: copies $mnt/tree to $mnt/out on a new file system
    truncate -s 2G "$work/fresh.img" && mkfs.ext4 -q -F "$work/fresh.img" && mount -o loop "$work/fresh.img" "$mnt" || return 1
    cp -a "$src" "$mnt/" && mkdir "$mnt/out" && sync
    local t0 t1
    t0=$(date +%s%N)
    "${@:2}" >/dev/null
    t1=$(date +%s%N)
    echo "$1 $(( (t1 - t0) / 1000000 ))" >> "$fresh_times"
    umount "$mnt" && rm -f "$work/fresh.img"
  }
  echo "copying the tree on a new file system each run: $rounds rounds, taking turns"
  for round in $(seq 1 "$rounds"); do
    if [ $((round % 2)) = 1 ]; then
      on_fresh_fs cp cp -a "$mnt/tree" "$mnt/out/"
      on_fresh_fs orwick "$cli" copy "$mnt/tree" "$mnt/out"
    else
      on_fresh_fs orwick "$cli" copy "$mnt/tree" "$mnt/out"
      on_fresh_fs cp cp -a "$mnt/tree" "$mnt/out/"
    fi
  done
  awk '{ sum[$1] += $2; n[$1]++ } END {
    printf "copy on a new file system: cp -a %.0f ms, orwick-cli copy %.0f ms (means of %d); ratio %.3f; target <= 1.0\n",
      sum["cp"] / n["cp"], sum["orwick"] / n["orwick"], n["cp"], (sum["orwick"] / n["orwick"]) / (sum["cp"] / n["cp"]) }' "$fresh_times"
  printf "  each run (ms):"; tr '\n' ' ' < "$fresh_times"; echo
else
  echo "copy on a new file system: skipped (needs root and mkfs.ext4 to make one)"
fi

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

