#!/usr/bin/env bash
# Compares the names that the library exports with the checked-in list.
# usage: exported_names.sh library list
set -euo pipefail
library=$1 list=$2

# Constructors and destructors have several symbols with one name; the list has the name.
names() { nm -DC --defined-only "$library" | cut -d' ' -f3- | LC_ALL=C sort -u; }

if ! diff "$list" <(names); then
  echo "Names of the list (<) and names that the library exports (>) differ. If the change is meant:"
  echo "  nm -DC --defined-only $library | cut -d' ' -f3- | LC_ALL=C sort -u > $list"
  exit 1
fi
