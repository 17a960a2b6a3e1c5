#!/bin/sh
# Adds today's date to the journal, so that writing can begin.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
printf '\n%s\n\n' "$(date '+%A, %d %B %Y')" >> "$home/Documents/journal.txt"
