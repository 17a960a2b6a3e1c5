#!/bin/sh
# Packs the folder Database into one file in Backups, and keeps the newest seven.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$home/Backups"
dump=$home/Backups/database-$(date +%Y-%m-%d).tar
tar -cf "$dump" -C "$home" Database
echo "$(date): dumped $(find "$home/Database" -type f | wc -l | tr -d ' ') tables"
find "$home/Backups" -name 'database-*.tar' | sort -r | tail -n +8 | while IFS= read -r old; do
  rm "$old"
done
