#!/usr/bin/env bash
# Passes if the printed text and the pictures of a recipe are the stored ones.
# usage: check_recipe.sh program same_picture stored-folder output-folder
set -euo pipefail
program=$1 same_picture=$2 stored=$3 out=$4

rm -rf "$out"
mkdir -p "$out"
cd "$out"
"$program" >printed.txt
diff "$stored/printed.txt" printed.txt
for picture in before.png after.png; do
  "$same_picture" "$stored/$picture" "$picture"
done
