#!/bin/sh
# Compares pictures a test saved with the golden pictures kept in the repository.
#   compare_golden.sh SHOTS_DIR GOLDEN_DIR NAME...
# SHOTS_DIR/NAME.png must have the golden picture's size, and at most 1 % of its
# pixels may differ from GOLDEN_DIR/NAME.png by more than 10 % in a channel: font
# rendering may move a few edge pixels between systems, nothing more.
set -u
shots=$1 golden=$2
shift 2
status=0
for name in "$@"; do
  shot=$shots/$name.png
  if [ ! -f "$shot" ]; then echo "golden: $name: no picture was saved"; status=1; continue; fi
  want=$(identify -format '%wx%h' "$golden/$name.png")
  got=$(identify -format '%wx%h' "$shot")
  if [ "$want" != "$got" ]; then echo "golden: $name: size $got, expected $want"; status=1; continue; fi
  total=$(echo "$want" | awk -Fx '{print $1 * $2}')
  diff=$(compare -metric AE -fuzz 10% "$shot" "$golden/$name.png" null: 2>&1)
  limit=$((total / 100))
  if [ "${diff%%.*}" -gt "$limit" ] 2>/dev/null; then
    echo "golden: $name: $diff of $total pixels differ (at most $limit may)"; status=1
  else
    echo "golden: $name: $diff of $total pixels differ"
  fi
done
exit $status
