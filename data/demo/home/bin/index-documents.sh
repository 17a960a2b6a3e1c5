#!/bin/sh
# Writes the names of all documents to Index.txt.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
find "$home/Documents" -type f | sort > "$home/Index.txt"
