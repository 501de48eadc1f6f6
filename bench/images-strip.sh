#!/usr/bin/env bash
# Removing metadata from 1,000 JPEGs (camera, date, GPS, XMP and IPTC in each): `orwick-cli image
# strip`, through the engine (atomic writes, old versions kept for undo), against
# `exiftool -all= -overwrite_original`, in the same run, each on its own fresh copies of the same
# files (target: orwick-cli ≤ 1.0 × exiftool).
#   bench/images-strip.sh BUILD_DIR
# On disk, not in a memory file system: /var/tmp unless BENCH_TMPDIR says otherwise.
BENCH_TMPDIR=${BENCH_TMPDIR:-/var/tmp}
source "$(dirname "$(realpath "$0")")/preamble.bash" "${1:-}" images-strip hyperfine exiftool convert
here=$(dirname "$(realpath "$0")")
# The kept old versions of this run stay in the work folder, never in the real home.
export HOME="$work/home" XDG_DATA_HOME="$work/home/.local/share" XDG_CACHE_HOME="$work/home/.cache" \
       XDG_CONFIG_HOME="$work/home/.config"
mkdir -p "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_CONFIG_HOME"

count=${STRIP_FILES:-1000}
echo "making one 2000 × 1500 JPEG with EXIF, GPS, XMP and IPTC, copied $count times"
convert -size 2000x1500 plasma:fractal -seed 7 -quality 90 "$work/photo.jpg"
exiftool -q -overwrite_original -Make=Canon "-Model=Canon EOS R5" "-DateTimeOriginal=2024:05:01 10:20:30" \
  -GPSLatitude=51.5042 -GPSLatitudeRef=N -GPSLongitude=0.1250 -GPSLongitudeRef=W -GPSAltitude=12 \
  -XMP:Rating=4 -XMP:City=London -XMP:Creator="A. Photographer" -IPTC:City=London -IPTC:Caption-Abstract=Harbour \
  -Comment="taken on the pier" "$work/photo.jpg"
mkdir -p "$work/master"
for i in $(seq -w 1 "$count"); do cp "$work/photo.jpg" "$work/master/photo-$i.jpg"; done
du -sh "$work/master" | awk '{ print "  " $1 " in all" }'

# Each run starts on fresh copies (made by --prepare, not timed), and syncs first so neither tool
# pays for the other's write-back.
fresh() { echo "rm -rf '$work/$1' '$XDG_DATA_HOME' && mkdir -p '$XDG_DATA_HOME' && cp -a '$work/master' '$work/$1' && sync"; }
hyperfine --runs "${STRIP_RUNS:-3}" --export-csv "$work/strip.csv" --style basic \
  --prepare "$(fresh orwick)" -n orwick-cli "'$cli' image strip '$work/orwick'/*.jpg" \
  --prepare "$(fresh exiftool)" -n exiftool "exiftool -q -all= -overwrite_original '$work/exiftool'/*.jpg"

# Both did the job: no GPS tag left in any file.
for tool in orwick exiftool; do
  left=$( { exiftool -q -q -if '$GPSLatitude' -p '$FileName' "$work/$tool" 2>/dev/null || true; } | wc -l)
  [ "$left" = 0 ] || { echo "$tool left GPS in $left files" >&2; exit 1; }
done
echo "strip $count JPEGs:"
python3 "$here/hyperfine-ratios.py" "$work/strip.csv" orwick-cli --inverse
echo "target: orwick-cli / exiftool ≤ 1.0"
