#!/bin/sh
# Says hello, with the part of the day.
set -eu
case $(date +%H) in
  0[5-9] | 1[01]) echo "$(date): good morning" ;;
  1[2-7]) echo "$(date): good afternoon" ;;
  *) echo "$(date): good evening" ;;
esac
