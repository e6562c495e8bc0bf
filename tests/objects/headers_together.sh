#!/usr/bin/env bash
# All headers of the kernels compile in one source, in either order: each includes what it needs, and no two give one
# name two meanings.
# usage: headers_together.sh compiler source-root [option...]
set -euo pipefail
compiler=$1 root=$2
shift 2
cd "$root"
mapfile -t headers < <(find zorvan/primitives/kernels -name '*.h' | LC_ALL=C sort)
((${#headers[@]} > 100))
for order in cat tac; do
  printf '#include "%s"\n' "${headers[@]}" | "$order" |
    "$compiler" -x c++ -std=c++20 -fsyntax-only -Wno-unused-function -I. -DZORVAN_VARIANT=VariantAvx512 "$@" -
done
echo "${#headers[@]} headers"
