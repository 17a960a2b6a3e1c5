#!/bin/sh
# Starts a new clipboard history. A login item is an ordinary program that is started once after login.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
echo "$(date): the clipboard is empty" > "$home/Clipboard.txt"
