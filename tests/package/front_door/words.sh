#!/usr/bin/env bash
# Each command of ./run prints its help without starting anything, ends with an error on an unknown word, and passes
# the known words on.
# usage: words.sh source scratch
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/clone.sh"
fresh_clone "$1" "$2"

failed=0
fail() {
  echo "./run $*"
  failed=1
}

# ends_with code word... - runs ./run with the words; what it prints is in $said.
ends_with() {
  local expected=$1 code=0
  shift
  : >"$calls"
  said=$(./run "$@" 2>&1 </dev/null) || code=$?
  ((code == expected)) || fail "$*: ends with $code, not $expected: $said"
}

explains() {
  ends_with 0 "$@"
  [[ $said == *"./run $1"* ]] || fail "$*: explains nothing: $said"
  [[ ! -s $calls ]] || fail "$*: started $(<"$calls")"
}

refuses() {
  ends_with 2 "$@"
  [[ ! -s $calls ]] || fail "$*: started $(<"$calls")"
}

# hands_on call word... - a command that ends with the call of a tool.
hands_on() {
  local call=$1
  shift
  ends_with 0 "$@"
  grep -qxF -- "$call" "$calls" || fail "$*: does not call: $call"
}

for command in demo test bench check coverage fuzz python docs format; do
  explains "$command" --help
  explains "$command" -h
  refuses "$command" nonsense
  refuses "$command" --nonsense
  refuses "$command" ""
done
for word in "" help -h --help; do
  ends_with 0 $word
  [[ $said == *"./run bench"* ]] || fail "$word: is no overview: $said"
done
refuses nonsense

: >picture.png
refuses demo picture.png picture.png
refuses demo .
refuses demo --threshold
refuses demo --open= picture.png
refuses test quick full
refuses test quick quik
refuses test -R
refuses bench --variant
refuses bench --variant=
refuses bench --variant=Avx2
refuses bench --benchmark_
refuses bench --sizes=large
refuses bench --sizes=640x480,
refuses bench --layout=
refuses bench compare before
refuses bench measure --long
refuses bench measure --short --short
refuses check debug nonsense
refuses fuzz 0
refuses fuzz -1
refuses fuzz 1.5
refuses fuzz 1 1
refuses fuzz facades containers
refuses fuzz 20 "facades containers"
refuses docs --help=no

hands_on "run_demo $PWD/build/release picture.png" demo picture.png
hands_on "run_demo $PWD/build/release --threshold=40 --name=discs picture.png" \
  demo --threshold=40 --name=discs picture.png
hands_on "ctest --preset release --parallel $(nproc) --label-regex quick -R Fill.* --rerun-failed" \
  test quick -R 'Fill.*' --rerun-failed
hands_on "run_coverage $PWD $PWD/build/coverage" coverage
hands_on "run_bench $PWD/build/release --quick --variant=VariantAvx2 --benchmark_filter=Copy" \
  bench --quick --variant=VariantAvx2 --benchmark_filter=Copy
hands_on "run_bench $PWD/build/release --variant=all --sizes=limits" bench --variant=all --sizes=limits
hands_on "run_bench $PWD/build/release --sizes=640x480,64x64" bench --sizes=640x480,64x64
hands_on "run_bench $PWD/build/release --ours --layout=all --seconds=1" bench --ours --layout=all --seconds=1
hands_on "measure $PWD/build/release --short" bench measure --short
hands_on "compare.py before after --rounds=2" bench compare before after --rounds=2
hands_on "run_fuzz $PWD/build/fuzz 20 facades" fuzz facades 20
hands_on "run_fuzz $PWD/build/fuzz 600 facades" fuzz facades
hands_on "run_fuzz $PWD/build/fuzz 20 $(cd "$1/tests/fuzz/corpus" && ls | sed 's/\.txt$//' | paste -sd ' ')" fuzz 20
exit "$failed"
