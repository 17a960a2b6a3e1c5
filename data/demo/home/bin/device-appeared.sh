#!/bin/sh
# Logs that a device was plugged in. The argument is its kind.
set -eu
echo "$(date): new device: $1"
