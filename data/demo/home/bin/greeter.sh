#!/bin/sh
# Writes one line to whoever is connected: the connection is what the script has as its output.
set -eu
echo "Hello! It is $(date '+%H:%M') here, and this script ran only because you came."
