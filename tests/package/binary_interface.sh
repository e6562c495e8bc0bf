#!/usr/bin/env bash
# Compares what compiled programs rely on with the stored description: exported functions, layouts of classes, values of
# enumerators, the soname. The library needs debug information.
# usage: binary_interface.sh library hidden description [--store]
# hidden: a file in abidw's language that leaves out all types except those of the public headers
set -euo pipefail
library=$1 hidden=$2 description=$3 store=${4:-}

if ! command -v abidw >/dev/null; then
  echo "skipped: abidw is not installed (package abigail-tools)"
  exit 77
fi

found=$(mktemp)
trap 'rm -f "$found"' EXIT
# Without the place of the build.
abidw --suppressions "$hidden" --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed \
  --exported-interfaces-only --type-id-style hash "$library" | sed "s#path='[^']*/\(zorvan/\)#path='\1#" >"$found"

if [[ $store ]]; then
  cp "$found" "$description"
elif ! abidiff "$description" "$found"; then
  echo "The binary interface differs from $description. HACKING.md says what to do. If the change is meant:"
  echo "  bash ${BASH_SOURCE[0]} $library $hidden $description --store"
  exit 1
fi
