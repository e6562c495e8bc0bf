#!/usr/bin/env bash
# The reference is written without a warning, and with an example of each member. A member without a comment or an
# example is a warning.
# usage: reference_test.sh doxygen Doxyfile scratch
set -euo pipefail
doxygen=$1 settings=$2 scratch=$3
docs=$(dirname "${BASH_SOURCE[0]}")

rm -rf "$scratch"
mkdir -p "$scratch"
write() {
  { cat "$settings"; printf 'OUTPUT_DIRECTORY = %s\n' "$scratch"; printf '%s\n' "$@"; } >"$scratch/Doxyfile"
  bash "$docs/write_reference" "$doxygen" "$scratch/Doxyfile" "$scratch"
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
python3 -B "$docs/reference/check_examples.py" "$scratch/xml"
pictures=$(grep -oh '<img src="[^"]*"' "$scratch"/html/page_*.html | cut -d'"' -f2 | sort -u)
[[ $pictures == *pictures/docs/images/* && $pictures == *pictures/examples/recipes/* ]]
for picture in $pictures; do
  [[ -s $scratch/html/$picture ]] || {
    echo "There is no picture $picture."
    exit 1
  }
done

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
