#!/usr/bin/env bash
# Configures a project that has the library as a folder, with several build types: the library's own sources are
# compiled with optimisation unless the type is Debug. The last optimisation option of a command is in effect.
# usage: build_types.sh cmake generator compiler source outside build
set -euo pipefail
cmake=$1 generator=$2 compiler=$3 source=$4 outside=$5 build=$6

failed=0
# The empty type, that of a project without one, and types that CMake does not define have no options.
for type in "" Profile Release RelWithDebInfo MinSizeRel Debug debug; do
  expected='-O[123s]'
  [[ ${type,,} != debug ]] || expected=none
  rm -rf "$build"
  "$cmake" -S "$outside" -B "$build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_BUILD_TYPE="$type" \
    -DZORVAN_IPP_FOLDER="$source" >/dev/null

  sources=0
  while read -r command; do
    level=none
    [[ $command != *" -O"* ]] || level=-O${command##* -O} level=${level%% *}
    [[ $level == $expected ]] || { echo "Build type '$type': $level in $command"; failed=1; break; }
    sources=$((sources + 1))
  done < <(sed -n 's/^ *"command": //p' "$build/compile_commands.json")
  echo "Build type '$type': $sources sources"
  ((sources > 0)) || failed=1
done
exit "$failed"
