#!/bin/sh
# Moves each file in the folder Queue to Sent, and puts the time before its name.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Sent"
find "$home/Queue" -type f | while IFS= read -r letter; do
  mv "$letter" "$home/Sent/$(date +%Y-%m-%d-%H%M%S) $(basename "$letter")"
  echo "$(date): sent $(basename "$letter")"
done
