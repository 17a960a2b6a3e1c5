#!/bin/sh
# Chooses the picture of the day from the folder $PICTURES and copies it to Wallpaper.svg.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
set -- "$PICTURES"/*.svg
[ -f "$1" ] || { echo "$(date): there are no pictures in $PICTURES" >&2; exit 1; }
day=$(date +%j | sed 's/^0*//')
shift $((day % $#))
cp "$1" "$home/Wallpaper.svg"
echo "$(date): the picture is $(basename "$1")"
