#!/usr/bin/env bash
# A program that tests entries ends with an error if a mistyped option would select nothing.
# usage: options.sh program
set -euo pipefail
program=$1

failed=0
# ends_with code option...
ends_with() {
  local expected=$1 code=0 said
  shift
  said=$("$program" "$@" 2>&1 </dev/null) || code=$?
  ((code == expected)) || {
    echo "$*: ends with $code, not $expected: $(tail -n 3 <<<"$said")"
    failed=1
  }
}

few=(--level=few --entry=ippiSet_8u_C1R)
ends_with 0 "${few[@]}" --variant=VariantSse2 --seed=18446744073709551615
ends_with 0 --gtest_list_tests
for option in --variant=VariantSse5 --variant=variantSse2 --entry=ippiSett_8u_C1R \
  --seed=abc --seed=1x --seed= --seed=-1 --seed=18446744073709551616 \
  --rounds=0 --rounds=many --rounds=2147483648 --expected-index=two --expected-index=-1 --expected-cache=much \
  --level=quik --gtest_filter=Set.ippiSett* --vairant=VariantSse2 VariantSse2; do
  ends_with 2 "${few[@]}" "$option"
done
exit "$failed"
