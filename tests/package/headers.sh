#!/usr/bin/env bash
# Compiles each installed header alone, as C++17 and with warnings as errors, and compares the installed
# headers with those that the umbrella header includes: they have to be the same.
# usage: headers.sh compiler include-folder
set -euo pipefail
compiler=$1
cd "$2"

failed=0
while read -r header; do
  echo "#include \"$header\"" |
    "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ -I. - || {
    echo "$header does not compile alone."
    failed=1
  }
done < <(find . -name '*.h' -printf '%P\n' | sort)

reached=$(echo '#include "zorvan/ipp.h"' | "$compiler" -std=c++17 -MM -x c++ -I. - | tr -s ' \\' '\n' |
  sed -n 's,^\(\./\)\?\(zorvan/.*\),\2,p' | LC_ALL=C sort)
if ! diff <(find . -type f -printf '%P\n' | LC_ALL=C sort) <(echo "$reached"); then
  echo "Installed headers (<) and headers that zorvan/ipp.h reaches (>) differ: see the list of headers in"
  echo "zorvan/CMakeLists.txt."
  failed=1
fi
exit "$failed"
