#!/bin/sh
# Takes the next picture of the folder $PICTURES, by the number of the day, and makes it Wallpaper.svg.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
set -- "$PICTURES"/*.svg
[ -f "$1" ] || { echo "$(date): there are no pictures in $PICTURES" >&2; exit 1; }
day=$(date +%j | sed 's/^0*//')
shift $((day % $#))
cp "$1" "$home/Wallpaper.svg"
echo "$(date): the picture is $(basename "$1")"
