#!/bin/sh
# Writes the time to Clock.txt every 20 seconds until it is terminated.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
trap 'rm -f "$home/Clock.txt"; kill "${!:-}" 2>/dev/null || :; exit 0' TERM INT
while true; do
  date '+%a %H:%M' > "$home/Clock.txt"
  sleep 20 &
  wait $!
done
