#!/usr/bin/env bash
# Puts the saved state in trouble the ways a real computer can (full disk, read-only mount,
# folders and files a non-root user cannot write, things in the way, damaged and foreign
# files, a second start) and prints, per fault, what the child sees.
# Needs root (mounts, other users); run it through `make reliability`.
set -uo pipefail

build=${1:-build}
probe="$PWD/$build/tools/storeprobe"
app="$PWD/$build/app/marblecove"
if [ "$(id -u)" -ne 0 ]; then echo "reliability: run as root (it mounts file systems and switches users)"; exit 1; fi
[ -x "$probe" ] || { echo "reliability: $probe is missing; build first"; exit 1; }

work=$(mktemp -d /tmp/marblecove-reliability.XXXXXX)
chmod 755 "$work"
trap 'umount -q "$work"/*/data 2>/dev/null; rm -rf "$work"' EXIT
rows=()

# A fresh home for one fault: $data is the data folder, $store the preferences file.
fresh() {
  home="$work/$1"
  mkdir -p "$home/data" "$home/run"
  chmod 700 "$home/run"
  data="$home/data"
  folder="$data/org.marblecove.MarbleCove"
  store="$folder/preferences.sqlite"
}
run() { XDG_DATA_HOME="$data" XDG_RUNTIME_DIR="$home/run" QT_QPA_PLATFORM=offscreen "$@" 2>/dev/null; }
as_nobody() { chown -R nobody:nogroup "$home"; run setpriv --reuid=nobody --regid=nogroup --clear-groups "$@"; }
row() { rows+=("| $1 | $2 |"); }

fresh normal; run "$probe" seed
row "nothing wrong (for comparison)" "$(run "$probe")"

fresh ro-file; run "$probe" seed; chmod 444 "$store"
row "store file read-only (non-root user)" "$(as_nobody "$probe")"

fresh ro-folder; run "$probe" seed; chmod 555 "$folder"
row "data folder read-only (non-root user)" "$(as_nobody "$probe")"

fresh ro-mount; run "$probe" seed
row "data folder on a read-only mount" "$(XDG_DATA_HOME="$data" XDG_RUNTIME_DIR="$home/run" unshare -m sh -c \
  "mount --bind '$data' '$data' && mount -o remount,bind,ro '$data' && '$probe'" 2>/dev/null)"

fresh full-start; mount -t tmpfs -o size=1m tmpfs "$data"; run "$probe" seed
dd if=/dev/zero of="$data/filler" bs=64k 2>/dev/null
row "disk full at start" "$(run "$probe")"
umount "$data"

fresh full-later; mount -t tmpfs -o size=1m tmpfs "$data"; run "$probe" seed
row "disk fills while playing, then space is freed" "$(run "$probe" fill "$data/filler")"
umount "$data"

fresh file-for-folder; touch "$folder"
row "a file where the data folder should be" "$(run "$probe")"

fresh folder-for-store; mkdir -p "$store"
row "a folder where the store file should be" "$(run "$probe")"

fresh foreign; mkdir -p "$folder"; sqlite3 "$store" "CREATE TABLE notes (text); INSERT INTO notes VALUES ('keep me');"
cp "$store" "$home/original"
seen=$(run "$probe")
kept=$(cmp -s "$home/original" "$folder"/preferences.sqlite.unreadable-*/preferences.sqlite && echo "set aside unchanged" || echo "NOT kept")
row "another program's database in the store's place" "$seen | the other file: $kept"

fresh damaged; run "$probe" seed; printf 'damage' | dd of="$store" bs=1 seek=100 conv=notrunc 2>/dev/null
head -c 4096 /dev/urandom | dd of="$store" bs=1 seek=4096 conv=notrunc 2>/dev/null
printf 'log' > "$store-wal"
seen=$(run "$probe")
kept=$(ls "$folder"/preferences.sqlite.unreadable-*/ 2>/dev/null | tr '\n' ' ')
row "damaged store with its log" "$seen | set aside: $kept"

fresh second; run "$probe" seed
if [ -x "$app" ]; then
  XDG_DATA_HOME="$data" XDG_RUNTIME_DIR="$home/run" QT_QPA_PLATFORM=offscreen "$app" 2>/dev/null & first=$!
  sleep 4
  start=$(date +%s%N); run timeout 20 "$app"; code=$?; took=$(( ($(date +%s%N) - start) / 1000000 ))
  alive=$(kill -0 $first 2>/dev/null && echo "first studio still running" || echo "first studio gone")
  row "a second start while the studio runs" "second start ends at once (exit $code, ${took} ms); $alive"
  kill -9 $first; wait $first 2>/dev/null
  XDG_DATA_HOME="$data" XDG_RUNTIME_DIR="$home/run" QT_QPA_PLATFORM=offscreen "$app" 2>/dev/null & again=$!
  sleep 4
  row "start after the studio was killed (stale lock)" "$(kill -0 $again 2>/dev/null && echo "the studio opens" || echo "the studio does NOT open")"
  kill $again; wait $again 2>/dev/null
fi

echo "| fault | what the child sees |"
echo "|---|---|"
printf '%s\n' "${rows[@]}"
