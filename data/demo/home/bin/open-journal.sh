#!/bin/sh
# Adds a heading with today's date to the journal.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
printf '\n%s\n\n' "$(date '+%A, %d %B %Y')" >> "$home/Documents/journal.txt"
