#!/bin/sh
# Greets each client: the connection is the standard output of this script.
set -eu
echo "Hello! It is $(date '+%H:%M') here, and this script was started by your connection."
