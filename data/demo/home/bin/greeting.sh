#!/bin/sh
# Writes a greeting for the time of day.
set -eu
case $(date +%H) in
  0[5-9] | 1[01]) echo "$(date): good morning" ;;
  1[2-7]) echo "$(date): good afternoon" ;;
  *) echo "$(date): good evening" ;;
esac
