#!/usr/bin/env bash
# Renders the shipped PNGs from their SVG sources. Run it after editing an SVG and commit
# both files: the app loads the PNGs and the build never renders them.
set -euo pipefail
cd "$(dirname "$0")"

if ! command -v rsvg-convert >/dev/null; then
    echo "rsvg-convert not found: sudo apt-get install librsvg2-bin" >&2
    exit 1
fi

# 800 x 800 sheet, four 400 x 400 cells; the SVG paints its own white background.
rsvg-convert --width 800 --height 800 --output turtles.png turtles.svg
# Transparent around the rounded badge.
rsvg-convert --width 256 --height 256 --output MarbleCoveLogo.png MarbleCoveLogo.svg

# The desktop icon, one PNG per standard hicolor size; the SVG itself is the scalable one.
for size in 16 24 32 48 64 128 256 512; do
    mkdir -p "icons/hicolor/${size}x${size}/apps"
    rsvg-convert --width $size --height $size \
        --output "icons/hicolor/${size}x${size}/apps/org.marblecove.MarbleCove.png" MarbleCoveLogo.svg
done

echo "rendered turtles.png, MarbleCoveLogo.png and the desktop icons"
