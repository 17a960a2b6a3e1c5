#!/bin/sh
# Copies the Documents folder to Backups/Documents. With rsync only what has changed is copied, and what was deleted
# goes from the copy too.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Backups/Documents"
if [ -x /usr/bin/rsync ]; then
  /usr/bin/rsync -a --delete "$home/Documents/" "$home/Backups/Documents/"
else
  cp -Rp "$home/Documents/." "$home/Backups/Documents/"
fi
echo "$(date): the documents are backed up"
