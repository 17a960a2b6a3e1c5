#!/bin/sh
# Copies each log to <name>.log.old, replacing the previous copy, and empties it. The log isn't renamed, because a
# running job would keep writing to the file that it has open.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
for log in "$home/Logs"/*.log; do
  [ -s "$log" ] || continue
  cp -p "$log" "$log.old"
  : > "$log"
done
