#!/usr/bin/env bash
# The reference is written without a warning, and a member without a comment is one.
# usage: reference_test.sh doxygen Doxyfile scratch
set -euo pipefail
doxygen=$1 settings=$2 scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch"
write() {
  { cat "$settings"; printf 'OUTPUT_DIRECTORY = %s\n' "$scratch"; printf '%s\n' "$@"; } >"$scratch/Doxyfile"
  "$doxygen" "$scratch/Doxyfile"
}

write
for page in index namespaceZorvan_1_1Ipp structZorvan_1_1Rect page_operations_morphology; do
  [[ -s $scratch/html/$page.html ]] || {
    echo "There is no page $page."
    exit 1
  }
done
grep -q ippStsNullPtrErr "$scratch/html/namespaceZorvan_1_1Ipp.html" || {
  echo "The status codes are missing."
  exit 1
}

printf 'namespace Zorvan {\n/// Documented.\nclass Planted {\n public:\n  void member();\n};\n}\n' >"$scratch/Planted.h"
if write "INPUT += $scratch/Planted.h" 2>"$scratch/warnings"; then
  echo "A member without a comment passed."
  exit 1
fi
grep -q 'Member member() .* is not documented' "$scratch/warnings"
