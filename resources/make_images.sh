#!/bin/bash
# Makes the PNG and ICO files from their SVG sources.
#   make_images.sh          writes png/*.png and logo.ico
#   make_images.sh --check  writes nothing; fails when a file is missing, of the wrong size or not in images.qrc
# Needs rsvg-convert (librsvg2-bin) and icotool (icoutils) to write, nothing but a shell to check.
set -euo pipefail
export LC_ALL=C
cd "$(dirname "$0")"

readonly icon_sizes=(48 16 24 32 64 256) # a plain pixmap of the file shows its first size
failures=0

fail() {
    echo "make_images: $1" >&2
    failures=$((failures + 1))
}

# The size an SVG asks for, "width height", is the size of its picture at 100 %.
svg_size() {
    sed -nE '1,/<svg /s/.* width="([0-9]+)" height="([0-9]+)".*/\1 \2/p' "$1" | head -n 1
}

# "width height" from the header of a PNG: two big-endian words at byte 16.
png_size() {
    od -An -tu1 -j16 -N8 "$1" | awk '{ print ($1 * 256 + $2) * 65536 + $3 * 256 + $4,
                                             ($5 * 256 + $6) * 65536 + $7 * 256 + $8 }'
}

# The small emblems are drawn on their own pixel grid; 64 and 256 share one drawing.
emblem_of() {
    local own="svg/logo/logo-$1.svg"
    if [[ -f $own ]]; then echo "$own"; else echo svg/logo/logo.svg; fi
}

require_tools() {
    local tool
    for tool in rsvg-convert icotool; do
        command -v "$tool" >/dev/null || fail "$tool is not installed"
    done
    ((failures == 0)) || exit 1
}

write_pngs() {
    local svg name
    rm -f png/*.png
    for svg in svg/*.svg; do
        name=$(basename "$svg" .svg)
        rsvg-convert --zoom 1 --output "png/$name.png" "$svg"
        rsvg-convert --zoom 2 --output "png/$name@2x.png" "$svg"
    done
}

write_logo() {
    local folder size frames=()
    folder=$(mktemp -d)
    for size in "${icon_sizes[@]}"; do
        rsvg-convert --width "$size" --height "$size" --output "$folder/$size.png" "$(emblem_of "$size")"
        if ((size < 256)); then frames+=("$folder/$size.png"); else frames+=("--raw=$folder/$size.png"); fi
    done
    icotool --create --output=logo.ico "${frames[@]}"
    rm -r "$folder"
}

check_png() { # file, width, height
    if [[ ! -f $1 ]]; then
        fail "$1 is missing"
    elif [[ $(png_size "$1") != "$2 $3" ]]; then
        fail "$1 is $(png_size "$1"), not $2 $3"
    elif ! grep -qF "<file alias=\"${1#png/}\">$1</file>" images.qrc; then
        fail "$1 is not listed in images.qrc under its own name"
    fi
}

check_pictures() {
    local svg png name width height
    for svg in svg/*.svg; do
        name=$(basename "$svg" .svg)
        if ! read -r width height < <(svg_size "$svg"); then
            fail "$svg states no size in whole pixels"
            continue
        fi
        check_png "png/$name.png" "$width" "$height"
        check_png "png/$name@2x.png" $((2 * width)) $((2 * height))
    done
    for png in png/*.png; do
        name=$(basename "$png" .png)
        [[ -f svg/${name%@2x}.svg ]] || fail "$png has no SVG source"
    done
}

# Each navigation icon is one drawing in two colours.
check_pairs() {
    local pair idle selected
    for pair in control_1:control_2 current_1:current_2 calibration_1:calibration_2 save_table:save_table_1 \
        about_1:about_2; do
        idle=svg/${pair%:*}.svg selected=svg/${pair#*:}.svg
        if [[ $(sed 's/#8c6927/#ffffff/g; /<title>/d' "$idle") != "$(sed '/<title>/d' "$selected")" ]]; then
            fail "$selected differs from $idle in more than its colour"
        fi
    done
}

check_listed_files() {
    local file
    while read -r file; do
        [[ -f $file ]] || fail "images.qrc lists $file, which does not exist"
    done < <(sed -nE 's/.*<file[^>]*>([^<]+)<.*/\1/p' images.qrc)
    grep -qF '<file alias="logo.ico">logo.ico</file>' images.qrc || fail "logo.ico is not listed in images.qrc"
}

case "${1-}" in
'')
    require_tools
    write_pngs
    write_logo
    ;;
--check)
    check_pictures
    check_pairs
    check_listed_files
    ;;
*)
    echo "usage: make_images.sh [--check]" >&2
    exit 2
    ;;
esac
exit $((failures > 0))
