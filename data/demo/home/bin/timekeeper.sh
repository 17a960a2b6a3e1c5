#!/bin/sh
# Logs the time every ten minutes until it is terminated.
set -eu
trap 'kill "${!:-}" 2>/dev/null || :; exit 0' TERM INT
while true; do
  date -u '+%Y-%m-%dT%H:%M:%SZ'
  sleep 600 &
  wait $!
done
