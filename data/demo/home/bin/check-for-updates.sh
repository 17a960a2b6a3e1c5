#!/bin/sh
# Compares the installed version with the newest one. Both are read from files, so no network is needed.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
installed=$(cat "$home/Application/installed.txt")
newest=$(cat "$home/Application/newest.txt")
if [ "$installed" = "$newest" ]; then
  echo "$(date): version $installed is the newest"
else
  echo "$(date): version $newest is available; $installed is installed"
fi
