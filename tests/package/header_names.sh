#!/usr/bin/env bash
# The names that an installed header adds to the file that includes it: it may define and undefine only macros that
# begin with ZORVAN_, a user's own macros keep their values, and the internal wrapping arithmetic is not visible.
# usage: header_names.sh compiler include-folder
set -euo pipefail
compiler=$1
cd "$2"

failed=0
fail() {
  echo "$*"
  failed=1
}

preprocess() { "$compiler" -std=c++17 -E -x c++ -I. "$@" -; }

# Every #define and #undef that stands in a file of the library; those of the standard library are its own matter.
own_directives() {
  preprocess -dD | awk '
    /^# [0-9]+ "/ { own = $3 ~ /^"(\.\/)?zorvan\// }
    own && /^#(define|undef) /'
}

# Macro names that a user may have.
users_macros='-DSTATUS=mine -DPLAIN_STATUS=mine -DX=mine -DDECLARE=mine -DAPI=mine'
users_values() { preprocess -dM $users_macros | grep '^#define [A-Z_]* mine$' | LC_ALL=C sort; }

while read -r header; do
  others=$(own_directives <<<"#include \"$header\"" | grep -vE '^#(define|undef) ZORVAN_' || true)
  [[ -z $others ]] || fail "$header changes macros that are not the library's:"$'\n'"$others"

  changed=$(diff <(users_values </dev/null) <(users_values <<<"#include \"$header\"") || true)
  [[ -z $changed ]] || fail "$header changes the user's own macros:"$'\n'"$changed"
done < <(find . -name '*.h' -printf '%P\n' | LC_ALL=C sort)

own_directives <<<'#include "zorvan/ipp.h"' | grep -q '^#define ZORVAN_' || fail "The library's own macros were not found."

"$compiler" -std=c++17 -fsyntax-only -x c++ -I. - <<'USER' || fail "Names of the library's insides are taken."
#include "zorvan/ipp.h"
namespace Zorvan { enum { wrappedSum, wrappedProduct }; }
USER

exit "$failed"
