#!/usr/bin/env bash
# Makes the pictures of the user guide (docs/guide/images) and the README's anew, with the tour.
# shellcheck source=scripts/common.sh
source "$(dirname "$(readlink -f "$0")")/common.sh"

target=docs/guide/images
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
./run --tour "$folder" --only guide-en --only guide-zh
mkdir -p "$target"
rm "$folder"/screenshots/*-guide.png # of the guide itself
for picture in "$folder"/screenshots/*-guide-*.png; do
    name=$(basename "$picture")
    convert "$picture" -resize '900x>' -dither None -colors 96 -strip -define png:compression-level=9 \
        "$target/${name#*-guide-}"
done
convert "$folder"/screenshots/*-guide-en-window.png -strip docs/screenshot.png
say "$(find "$target" -name '*.png' | wc -l) pictures in $target"
