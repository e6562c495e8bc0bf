#!/usr/bin/env bash
# Copies what a project needs that has the library as a folder.
# usage: copy_sources.sh source copy
set -euo pipefail
source=$1 copy=$2

rm -rf "$copy"
mkdir -p "$copy"
cp -R "$source"/{CMakeLists.txt,cmake,zorvan} "$copy"
