#!/bin/sh
# Copies the Documents folder to Backups/Documents. rsync copies only the files that changed, and deletes those that no
# longer exist.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Backups/Documents"
if [ -x /usr/bin/rsync ]; then
  /usr/bin/rsync -a --delete "$home/Documents/" "$home/Backups/Documents/"
else
  cp -Rp "$home/Documents/." "$home/Backups/Documents/"
fi
echo "$(date): the documents are backed up"
