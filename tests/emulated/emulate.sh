#!/bin/sh
# emulate.sh MODEL PROGRAM [ARGUMENT...]   runs a test program on an emulated processor
# emulate.sh --first-calls all|N MODEL PROGRAM NAMES
#   makes the first call of a process through each entry that the program NAMES prints, or through every N-th. A
#   program cannot start itself again here: the new process would run on the real processor.
set -eu
skip() { echo "skipped: $1"; exit 77; }
run() { qemu-x86_64 -cpu "$model" "$@"; }

firstCalls=no
if [ "$1" = --first-calls ]; then firstCalls=$2; shift 2; fi
model=$1; program=$2; shift 2

command -v qemu-x86_64 >/dev/null || skip "qemu-x86_64 is not installed (package qemu-user)"
# Sanitizers need a memory layout that the emulator does not provide.
if grep -qaE '__(asan|tsan|msan)_init' "$program"; then skip "the program is built with a sanitizer"; fi

if [ $firstCalls = no ]; then
  run "$program" "$@"
  exit
fi
failures=0 calls=0
[ "$firstCalls" != all ] || firstCalls=1
for flag in --race $("$1" | awk -v n="$firstCalls" 'NR % n == 0 { print "--call=" $0 }'); do
  calls=$((calls + 1))
  said=$(run "$program" "$flag" 2>/dev/null) || said="$said (the process failed)"
  if [ -n "$said" ]; then failures=$((failures + 1)); echo "$flag: $said"; fi
done
echo "$calls first calls on $model, $failures failures"
[ $calls -gt 1 ] && [ $failures -eq 0 ]
