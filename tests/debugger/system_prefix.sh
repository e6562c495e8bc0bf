#!/usr/bin/env bash
# Passes if an installation under /usr, staged in a folder, has its script for gdb in gdb's folder for the libraries
# of the system, and in no other folder.
# usage: system_prefix.sh cmake build libdir stage
set -euo pipefail
cmake=$1 build=$2 libdir=$3 stage=$4

rm -rf "$stage"
DESTDIR=$stage "$cmake" --install "$build" --prefix /usr >/dev/null
library=$(realpath "$stage/usr/$libdir/libzorvan_ipp.so")
expected=usr/share/gdb/auto-load/usr/$libdir/$(basename "$library")-gdb.py
found=$(cd "$stage" && find . -name '*-gdb.py' -printf '%P\n')
echo "found $found"
[ "$found" = "$expected" ]
