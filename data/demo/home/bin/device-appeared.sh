#!/bin/sh
# Notes that a device was plugged in. Its argument says of what kind.
set -eu
echo "$(date): there is a new device, $1"
