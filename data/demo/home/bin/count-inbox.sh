#!/bin/sh
# Counts the notes in the folder Inbox.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
echo "$(date): $(find "$home/Inbox" -type f | wc -l | tr -d ' ') notes in the inbox"
