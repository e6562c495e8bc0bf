#!/usr/bin/env bash
# Passes if the table of differences between variants names exactly the existing tests.
# usage: documented_differences.sh page program
set -euo pipefail
page=$1 program=$2

named=$(sed -nE 's/^\|.*\| ([a-z][A-Za-z]+) \|$/\1/p' "$page" | sort -u)
tested=$("$program" --gtest_list_tests --gtest_filter='VariantDifferences.*' | sed -nE 's|^  ([^/]+)/.*|\1|p' | sort -u)
echo "$tested"
diff <(echo "$named") <(echo "$tested")
