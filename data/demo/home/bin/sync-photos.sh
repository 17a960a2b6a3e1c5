#!/bin/sh
# Copies the Pictures folder to the volume "Photos" if it is mounted.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
volume=$home/Volumes/Photos
if [ ! -d "$volume" ]; then
  echo "$(date): the volume Photos isn't mounted"
  exit 0
fi
cp -Rp "$home/Pictures" "$volume/"
echo "$(date): the pictures are on the volume Photos"
