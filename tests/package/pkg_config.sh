#!/usr/bin/env bash
# Builds and runs a program with the options that pkg-config prints for an installed tree. The loader finds the library
# by the environment or by the program's run path.
# usage: pkg_config.sh compiler prefix libdir source program
set -euo pipefail
compiler=$1 prefix=$2 libdir=$3 source=$4 program=$5

export PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs 'zorvan-ipp >= 1.0')"
"$compiler" -std=c++17 "$source" "${flags[@]}" -o "$program"
folder=$(pkg-config --variable=libdir zorvan-ipp)
LD_LIBRARY_PATH=$folder "$program"

"$compiler" -std=c++17 "$source" "${flags[@]}" -Wl,-rpath,"$folder" -o "$program"
"$program"
