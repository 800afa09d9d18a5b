#!/usr/bin/env bash
# Checks the Debian package built in the build folder (default build/): lintian finds no error,
# and the unpacked files alone start the application off screen up to its first frame.
set -euo pipefail
build=${1:-build}
deb=$(ls -t "$build"/marblecove_*.deb | head -n 1)
echo "checking $deb"

lintian --fail-on error "$deb"

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
id=org.marblecove.MarbleCove
for f in usr/bin/marblecove usr/share/applications/$id.desktop usr/share/metainfo/$id.metainfo.xml \
         usr/share/icons/hicolor/scalable/apps/$id.svg usr/share/icons/hicolor/48x48/apps/$id.png; do
    test -f "$root/$f" || { echo "missing from the package: /$f" >&2; exit 1; }
done
desktop-file-validate "$root/usr/share/applications/$id.desktop"
appstreamcli validate --no-net "$root/usr/share/metainfo/$id.metainfo.xml"

# A fresh home and an unrelated working folder: nothing from the build tree may help it start.
mkdir -p "$root/home"
cd "$root/home"
log=$root/run.log
if ! HOME=$root/home XDG_DATA_HOME=$root/home/data XDG_CONFIG_HOME=$root/home/config \
     XDG_RUNTIME_DIR=$root/home QT_QPA_PLATFORM=offscreen MARBLECOVE_EXIT_AFTER_FIRST_FRAME=1 \
     timeout 120 "$root/usr/bin/marblecove" >"$log" 2>&1; then
    cat "$log" >&2
    echo "the installed application did not reach its first frame" >&2
    exit 1
fi
# A studio already running would take the start over and exit at once, without drawing.
if ! grep -q 'first frame drawn' "$log"; then
    cat "$log" >&2
    echo "the installed application exited without drawing a frame" >&2
    exit 1
fi
# Screens that fail to load or bind say so; a clean start says nothing else.
if grep -v 'first frame drawn' "$log" | grep -E 'qrc:|QML|Warning|[Ee]rror' >&2; then
    echo "the installed application warned while starting" >&2
    exit 1
fi
echo "package ok: lintian clean of errors, installed binary drew its first frame"
