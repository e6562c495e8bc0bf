#!/usr/bin/env bash
# The reference is written without a warning, and with an example of each member. A member without a comment or an
# example is a warning.
# usage: reference_test.sh doxygen Doxyfile scratch
set -euo pipefail
doxygen=$1 settings=$2 scratch=$3

rm -rf "$scratch"
mkdir -p "$scratch"
write() {
  { cat "$settings"; printf 'OUTPUT_DIRECTORY = %s\n' "$scratch"; printf '%s\n' "$@"; } >"$scratch/Doxyfile"
  "$doxygen" "$scratch/Doxyfile"
}

write "GENERATE_XML = YES"
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
python3 -B "$(dirname "${BASH_SOURCE[0]}")/reference/check_examples.py" "$scratch/xml"

# expectWarning text declaration...
expectWarning() {
  printf '%s\n' 'namespace Zorvan {' '/// Documented.' 'class Planted {' ' public:' "${@:2}" '};' '}' >"$scratch/Planted.h"
  if write "INPUT = $scratch/Planted.h" "USE_MDFILE_AS_MAINPAGE =" 2>"$scratch/warnings"; then
    echo "This passed: ${*:2}"
    exit 1
  fi
  grep -q "$1" "$scratch/warnings"
}
expectWarning 'Member member() .* is not documented' '  void member();'
expectWarning 'Planted.cpp' '  /// Without an example.' '  void member();'
