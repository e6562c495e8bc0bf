#!/usr/bin/env bash
# Installs the build afresh under a folder and, if a second one is given, moves it there.
# usage: install.sh cmake build prefix [moved]
set -euo pipefail
cmake=$1 build=$2 prefix=$3 moved=${4:-}

rm -rf "$prefix" ${moved:+"$moved"}
"$cmake" --install "$build" --prefix "$prefix"
if [[ $moved ]]; then
  mv "$prefix" "$moved"
  if grep -rIF "$prefix" "$moved"; then
    echo "The files above name the place from which the tree was moved."
    exit 1
  fi
fi
