#!/bin/sh
# Logs that it was started. A real notifier would receive its messages through the registered Mach service.
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
echo "$(date): a message has arrived" >> "$home/Logs/notifier.log"
