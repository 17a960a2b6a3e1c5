#!/bin/sh
# Moves the files directly in Downloads to a folder for their kind. Everything else stays where it is, and so does a
# file whose name is already taken in that folder.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)

move() {
  if [ -e "$home/Downloads/$2/$(basename "$1")" ]; then
    echo "$(date): $2 has a $(basename "$1") already"
    return
  fi
  mkdir -p "$home/Downloads/$2"
  mv "$1" "$home/Downloads/$2/"
  echo "$(date): $(basename "$1") is in $2"
}

for file in "$home/Downloads"/*; do
  [ -f "$file" ] || continue
  case $file in
    *.jpg | *.png | *.svg) move "$file" Pictures ;;
    *.txt | *.md | *.pdf) move "$file" Texts ;;
    *.zip | *.tar | *.tgz) move "$file" Archives ;;
  esac
done
