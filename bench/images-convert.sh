#!/usr/bin/env bash
# The picture tools against ImageMagick, in the same run, on 200 photo-like JPEGs of 12 MP
# (4000 × 3000; the first and every tenth turned by its EXIF orientation), cache warm:
#   orwick-cli image convert *.jpg --to webp --quality 80     (one process; the engine's job
#                                                              works on one picture per core)
#     vs convert X.jpg -auto-orient -quality 80 X.webp, file by file, xargs -P2
#   orwick-cli image resize *.jpg --longest 1600 --quality 80
#     vs convert X.jpg -auto-orient -resize '1600x1600>' -quality 80 X.jpg, file by file, xargs -P2
# (target: orwick-cli at most 1.0 × ImageMagick's time for each). ImageMagick runs with
# MAGICK_THREAD_LIMIT=1 so that its two processes don't fight over the two cores.
#   bench/images-convert.sh BUILD_DIR     (ORWICK_BENCH_RUNS, default 1; ORWICK_BENCH_PICTURES, default 200)
BENCH_TMPDIR=${BENCH_TMPDIR:-/var/tmp}
here=$(dirname "$(realpath "$0")")
source "$here/preamble.bash" "${1:-}" images-convert hyperfine convert exiftool python3
runs=${ORWICK_BENCH_RUNS:-1}
pictures=${ORWICK_BENCH_PICTURES:-200}
# The real ImageMagick, not a stand-in script earlier on PATH.
im=$(command -v convert-im6.q16 || command -v convert)
export MAGICK_THREAD_LIMIT=1
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" XDG_CONFIG_HOME="$work/home/.config"
mkdir -p "$XDG_DATA_HOME" "$XDG_CONFIG_HOME"

# Four different photo-like pictures: a plasma fractal (soft gradients and edges) enlarged, with
# grain, at quality 90 — the size and entropy of a camera's JPEG. Then copies of them.
echo "making $pictures JPEGs of 4000 × 3000"
mkdir -p "$work/base" "$work/ours" "$work/theirs" "$work/out"
for seed in 1 2 3 4; do
  "$im" -size 1000x750 -seed "$seed" plasma:fractal -resize '4000x3000!' -attenuate 0.4 +noise Gaussian \
    -quality 90 "$work/base/$seed.jpg"
done
for i in $(seq 1 "$pictures"); do
  cp "$work/base/$(( i % 4 + 1 )).jpg" "$work/ours/photo$i.jpg"
done
for i in $(seq 10 10 "$pictures") 1; do
  exiftool -q -n -Orientation=6 -overwrite_original "$work/ours/photo$i.jpg"
done
cp "$work"/ours/*.jpg "$work/theirs/"
echo "$(ls "$work/ours" | wc -l) pictures, $(du -sh "$work/ours" | cut -f1) each side"
cat "$work"/ours/*.jpg "$work"/theirs/*.jpg > /dev/null # warm the cache

ratios() { python3 "$here/hyperfine-ratios.py" "$@"; } # csv, reference command name

# Each command's prepare clears only what it made, so both results stay after the last run.
cleanOurs="rm -f $work/ours/*.webp; find $work/ours -name '* px).jpg' -delete"
cleanTheirs="rm -f $work/out/*"
time_pair() { # name, orwick-cli arguments, ImageMagick arguments between input and output, output suffix
  echo "== $1"
  hyperfine --runs "$runs" --style basic -i --export-csv "$work/$1.csv" \
    --prepare "$cleanOurs" --prepare "$cleanTheirs" \
    --command-name orwick-cli "$cli image $2 $work/ours/*.jpg" \
    --command-name convert "cd $work/theirs && ls | xargs -P2 -I{} $im {} $3 $work/out/{}.$4" \
    > "$work/$1.log" 2>&1 || { cat "$work/$1.log"; exit 1; }
  ratios "$work/$1.csv" convert
}

time_pair webp "convert --to webp --quality 80" "-auto-orient -quality 80" webp
echo "  made: orwick-cli $(ls "$work"/ours/*.webp | wc -l) files, $(du -ch "$work"/ours/*.webp | tail -1 | cut -f1);" \
     "convert $(ls "$work"/out/*.webp | wc -l) files, $(du -ch "$work"/out/*.webp | tail -1 | cut -f1)"
echo "  turned photo1: orwick-cli $(identify -format '%wx%h' "$work/ours/photo1.webp")," \
     "convert $(identify -format '%wx%h' "$work/out/photo1.jpg.webp")"

time_pair resize "resize --longest 1600 --quality 80" "-auto-orient -resize 1600x1600\\> -quality 80" jpg
echo "  made: orwick-cli $(ls "$work"/ours/*px\).jpg | wc -l) files, $(du -ch "$work"/ours/*px\).jpg | tail -1 | cut -f1);" \
     "convert $(ls "$work"/out/*.jpg | wc -l) files, $(du -ch "$work"/out/*.jpg | tail -1 | cut -f1)"
echo "  turned photo1: orwick-cli $(identify -format '%wx%h' "$work/ours/photo1 (1600 px).jpg")," \
     "convert $(identify -format '%wx%h' "$work/out/photo1.jpg.jpg")"
