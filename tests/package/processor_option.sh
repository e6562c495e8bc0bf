#!/usr/bin/env bash
# Configures the library with -march=native in the builder's options: every source must still be compiled for
# the processor of its variant, or the plain one. The last -march option of a command is in effect.
# usage: processor_option.sh cmake generator compiler source build
set -euo pipefail
cmake=$1 generator=$2 compiler=$3 source=$4 build=$5

rm -rf "$build"
"$cmake" -S "$source" -B "$build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS=-march=native \
  -DZORVAN_IPP_TESTS=OFF >/dev/null

sources=0
while read -r command; do
  [[ $command == *"-march=native"* ]] || { echo "The option did not arrive: $command"; exit 1; }
  [[ ${command##*-march=} == x86-64* ]] || { echo "Compiled for this machine: $command"; exit 1; }
  sources=$((sources + 1))
done < <(sed -n 's/^ *"command": //p' "$build/compile_commands.json")
echo "$sources sources are compiled for the processors of their own."
((sources > 0))
