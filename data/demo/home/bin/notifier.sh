#!/bin/sh
# Notes that it was started. A real one would read its messages from the name that the job file registers.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
echo "$(date): somebody has something to announce" >> "$home/Logs/notifier.log"
