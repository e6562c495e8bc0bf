#!/usr/bin/env bash
# In a fresh clone any two commands of ./run work in any order, and so does each of them after the README's install
# commands, and in a build folder that was configured by hand.
# usage: orders.sh source scratch
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/clone.sh"
fresh_clone "$1" "$2"

commands=(demo test bench coverage python docs "fuzz 20" "check valgrind" "check lint" "check compilers")
failed=0 tried=0

works_after() {
  local before=$1 command=$2 said
  tried=$((tried + 1))
  if ! said=$(./run $command 2>&1 </dev/null); then
    echo "./run $command fails after $before: $(tail -n 1 <<<"$said")"
    failed=1
  fi
}

for first in "${commands[@]}"; do
  rm -rf build after_first
  works_after "nothing" "$first"
  mv build after_first
  for second in "${commands[@]}"; do
    rm -rf build
    cp -r after_first build
    works_after "./run $first" "$second"
  done
done

mapfile -t install < <(sed -n 's/^    \(sudo \)\?cmake /cmake /p' README.md)
((${#install[@]} >= 3)) || { echo "The README's install commands are not found."; failed=1; }
for command in "${commands[@]}"; do
  rm -rf build
  for line in "${install[@]}"; do eval "$line"; done
  works_after "the README's install commands" "$command"

  rm -rf build
  cmake -S . -B build/release
  works_after "a cmake by hand" "$command"
done

echo "$tried commands tried."
exit "$failed"
