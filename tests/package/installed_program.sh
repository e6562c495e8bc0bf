#!/usr/bin/env bash
# Installs a program that uses the installed library: with the run path that the documentation names it starts from
# its own folder.
# usage: installed_program.sh cmake generator compiler outside library-prefix scratch
set -euo pipefail
cmake=$1 generator=$2 compiler=$3 outside=$4 library=$5 scratch=$6

rm -rf "$scratch"
"$cmake" -S "$outside" -B "$scratch/build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_STANDARD=17 \
  -DCMAKE_PREFIX_PATH="$library" -DCMAKE_INSTALL_RPATH_USE_LINK_PATH=ON
"$cmake" --build "$scratch/build"
"$cmake" --install "$scratch/build" --prefix "$scratch/program"
"$scratch/program/bin/outside"
