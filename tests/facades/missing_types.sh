#!/usr/bin/env bash
# Calls of operations with a pixel type for which they do not exist compile, but do not link:
# missing_types.sh <compiler> <include folder> <library> <source> <folder for objects>
set -eu
compiler=$1 include=$2 library=$3 source=$4 out=$5
mkdir -p "$out"
for case in 0 1 2 3 4 5 6 7; do
  "$compiler" -std=c++17 -DCASE=$case -I "$include" -c "$source" -o "$out/$case.o" || {
    echo "case $case does not compile"
    exit 1
  }
  if LC_ALL=C "$compiler" "$out/$case.o" "$library" -o "$out/$case" 2>"$out/$case.txt"; then
    echo "case $case links"
    exit 1
  fi
  grep -q "undefined reference" "$out/$case.txt" || {
    echo "case $case fails otherwise:"
    cat "$out/$case.txt"
    exit 1
  }
done
