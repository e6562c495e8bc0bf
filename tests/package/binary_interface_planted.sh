#!/usr/bin/env bash
# Changes the interface of a small library in several ways: binary_interface.sh has to report each.
# usage: binary_interface_planted.sh compiler folder
set -euo pipefail
compiler=$1 folder=$2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

command -v abidw >/dev/null || { echo "skipped: abidw is not installed (package abigail-tools)"; exit 77; }

rm -rf "$folder"
mkdir -p "$folder"
printf '[suppress_type]\n  source_location_not_regexp = /Image.h$\n  drop = yes\n' >"$folder/hidden"
header='namespace Zorvan {
enum class Status { ok, noMemory };
class [[gnu::visibility("default")]] Image {
public:
  virtual ~Image();
  Status resize(int width, int height);
  int area() const;

private:
  int width = 0, height = 0;
};
}'
source='#include "Image.h"
namespace Zorvan {
namespace { struct Hidden { int count = 0; }; Hidden hidden; }
Image::~Image() {}
Status Image::resize(int newWidth, int newHeight) { width = newWidth; height = newHeight; ++hidden.count; return Status::ok; }
int Image::area() const { return width * height; }
}'

# library name header source - builds it in zorvan/ below a folder of its own.
library() {
  mkdir -p "$folder/$1/zorvan"
  echo "$2" >"$folder/$1/zorvan/Image.h"
  echo "$3" >"$folder/$1/zorvan/Image.cpp"
  "$compiler" -g -shared -fPIC -fvisibility=hidden -Wl,-soname,"${4:-libimage.so.1}" \
    "$folder/$1/zorvan/Image.cpp" -o "$folder/$1/libimage.so"
}
compare() { bash "$here/binary_interface.sh" "$folder/$1/libimage.so" "$folder/hidden" "$folder/stored" "${@:2}"; }

failed=0
# reports name text header source [soname]
reports() {
  local report
  library "$1" "${@:3}"
  if report=$(compare "$1"); then
    echo "$1: not reported"
    failed=1
  elif [[ $report != *$2* ]]; then
    echo "$1: no '$2' in the report: $report"
    failed=1
  fi
}

library first "$header" "$source"
compare first --store
if grep -F "$folder" "$folder/stored"; then
  echo "The description names the place of the build."
  failed=1
fi
# Elsewhere, with another body and another hidden type.
library second "$header" "${source/int count/long long count}"
compare second || failed=1

reports a_member "Image" "${header/height = 0/height = 0, depth = 0}" "$source"
reports the_order_of_members "Image" "${header/width = 0, height = 0/height = 0, width = 0}" "$source"
reports a_virtual_function "Image" "${header/int area/virtual int area}" "$source"
reports an_enumerator "Status" "${header/ok, noMemory/ok, noFile, noMemory}" "$source"
reports a_removed_function "area" "${header/  int area() const;/}" "${source/int Image::area() const*height; \}/}"
reports a_parameter "resize" "${header/int height)/long height)}" "${source/int newHeight/long newHeight}"
reports the_soname "libimage.so.2" "$header" "$source" libimage.so.2
exit "$failed"
