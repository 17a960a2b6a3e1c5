#!/bin/sh
# Lists the invoices that aren't paid: those without a line "Paid".
set -eu
home=$(cd "$(dirname "$0")/.." && pwd)
echo "$(date): open invoices"
for invoice in "$home/Invoices"/*.txt; do
  [ -f "$invoice" ] || continue
  grep -q '^Paid' "$invoice" || echo "  $(basename "$invoice")"
done
