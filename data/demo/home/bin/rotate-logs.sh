#!/bin/sh
# Copies each log to <name>.log.old, over that of the last time, and empties it. The log isn't moved away, because a
# job that is running goes on writing to the file it has open.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
for log in "$home/Logs"/*.log; do
  [ -s "$log" ] || continue
  cp -p "$log" "$log.old"
  : > "$log"
done
