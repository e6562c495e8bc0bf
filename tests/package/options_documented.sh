#!/usr/bin/env bash
# The page on building has a row for each option of the build, and no other.
# usage: options_documented.sh CMakeLists.txt page
set -euo pipefail
if ! diff <(sed -n 's/^option(\(ZORVAN_IPP_[A-Z_]*\) .*/\1/p' "$1" | sort) \
  <(sed -n 's/^| `\(ZORVAN_IPP_[A-Z_]*\)` .*/\1/p' "$2" | sort); then
  echo "Options of the build (<) and rows of $2 (>) differ."
  exit 1
fi
