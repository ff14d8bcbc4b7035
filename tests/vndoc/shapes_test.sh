#!/bin/bash
# Draws every shape, and compares what Chromium and librsvg make of the picture.
# shapes_test.sh VNDOC
set -euo pipefail
vndoc=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

shapes=$(sed -n 's/^ *vns[A-Za-z0-9]* = \([0-9]*\),.*/\1/p' "$(dirname "$0")/../../include/vndoc6/chart/shapes.h")
{
  echo '{"Steps": ['
  number=0
  for shape in $shapes; do
    number=$((number + 1))
    [ $number = 1 ] || echo ','
    echo "{\"Key\": \"s$number\", \"Label\": \"Check the order\", \"Figure\": {\"Shape\": $shape}}"
  done
  echo ']}'
} >"$folder/shapes.json"
"$vndoc" from-json "$folder/shapes.json" "$folder/shapes.vn6"
"$vndoc" render "$folder/shapes.vn6" -o "$folder/shapes.svg"
"$vndoc" render "$folder/shapes.vn6" -o "$folder/librsvg.png" --scale 1

drawn=$(grep -c '<g class="step"' "$folder/shapes.svg")
if [ "$drawn" != "$(wc -w <<<"$shapes")" ]; then
  echo "shapes: $drawn of $(wc -w <<<"$shapes") are drawn"
  exit 1
fi
size=$(sed -n 's/.*<svg[^>]* width="\([0-9]*\)[0-9.]*" height="\([0-9]*\).*/\1,\2/p' "$folder/shapes.svg" | head -1)
chromium --headless --no-sandbox --disable-gpu --no-first-run --hide-scrollbars \
  --user-data-dir="$folder/profile" --window-size="$size" --screenshot="$folder/chromium.png" \
  "file://$folder/shapes.svg" >/dev/null 2>"$folder/log"
# In boxes of 12 pixels: letters differ by the fonts' smoothing, shapes do not.
python3 - "$folder/librsvg.png" "$folder/chromium.png" <<'P'
import struct, sys, zlib

def read(name):
    data = open(name, 'rb').read()
    at, packed = 8, b''
    while at < len(data):
        length, kind = struct.unpack('>I4s', data[at:at + 8])
        part = data[at + 8:at + 8 + length]
        if kind == b'IHDR':
            width, height, _, colour = struct.unpack('>IIBB', part[:10])
        if kind == b'IDAT':
            packed += part
        at += length + 12
    size = {0: 1, 2: 3, 4: 2, 6: 4}[colour]
    raw, before, rows = zlib.decompress(packed), bytearray(width * size), []
    for y in range(height):
        start = y * (width * size + 1)
        kind, row = raw[start], bytearray(raw[start + 1:start + 1 + width * size])
        for i in range(len(row)):
            left = row[i - size] if i >= size else 0
            up, corner = before[i], before[i - size] if i >= size else 0
            if kind == 1:
                row[i] = (row[i] + left) & 255
            elif kind == 2:
                row[i] = (row[i] + up) & 255
            elif kind == 3:
                row[i] = (row[i] + (left + up) // 2) & 255
            elif kind == 4:
                guess = left + up - corner
                row[i] = (row[i] + min((left, up, corner), key=lambda v: abs(guess - v))) & 255
        rows.append(row[0::size])
        before = row
    return width, height, rows

(width, height, a), (wide, high, b) = read(sys.argv[1]), read(sys.argv[2])
box, different, most = 12, 0, 40
for y in range(0, min(height, high) - box, box):
    for x in range(0, min(width, wide) - box, box):
        mean = [sum(sum(row[x:x + box]) for row in rows[y:y + box]) / box ** 2 for rows in (a, b)]
        different += abs(mean[0] - mean[1]) > most
if abs(width - wide) > 2 or abs(height - high) > 2 or different:
    sys.exit(f'shapes: {width} x {height} and {wide} x {high} pixels, {different} places differ')
P
