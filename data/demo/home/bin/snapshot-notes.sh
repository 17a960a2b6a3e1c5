#!/bin/sh
# Keeps a copy of the file that is named as its argument in Snapshots, with the time in front of its name.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Snapshots"
cp -p "$1" "$home/Snapshots/$(date +%Y-%m-%d-%H%M%S) $(basename "$1")"
echo "$(date): kept a copy of $1"
