#!/usr/bin/env bash
# In an unoptimised build with the undefined-behaviour sanitizer too, stubs have no instructions but their own three:
# a check before them would overwrite arguments.
# usage: stubs_with_sanitizer.sh compiler source-root
set -euo pipefail
compiler=$1 root=$2
object=$(mktemp)
trap 'rm -f "$object"' EXIT
"$compiler" -std=c++20 -O0 -fPIC -fsanitize=undefined -I"$root" -c "$root/zorvan/primitives/frame/Table.cpp" -o "$object"
objdump --disassemble --demangle --no-show-raw-insn "$object" | awk '
  /^[0-9a-f]+ </ { isStub = /<Zorvan::Primitives::(ippi|core)/ && !/firstCall/; line = 0; stubs += isStub; name = $2 }
  isStub && /^ / && ++line <= 3 && $2 != (line == 1 ? "movslq" : line == 2 ? "lea" : "jmp") {
    print name " has another instruction: " $0
    complaints++
  }
  END {
    print stubs + 0 " stubs, " complaints + 0 " complaints"
    exit stubs < 100 || complaints
  }'
