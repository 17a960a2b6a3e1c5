#!/bin/sh
# Copies the file given as the argument to Snapshots, and puts the time before its name.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Snapshots"
cp -p "$1" "$home/Snapshots/$(date +%Y-%m-%d-%H%M%S) $(basename "$1")"
echo "$(date): kept a copy of $1"
