#!/usr/bin/env bash
# The information for the loader: the library's soname, the libraries that it needs, no relocations in code, no
# executable stack.
# usage: shared_object.sh library soname
set -euo pipefail
library=$1 soname=$2

failed=0
fail() {
  echo "$library: $*"
  failed=1
}

dynamic=$(readelf -dW "$library")
found=$(sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p' <<<"$dynamic")
[[ $found == "$soname" ]] || fail "its soname is '$found', not '$soname'."

while read -r needed; do
  case $needed in
    libstdc++.so.* | libgcc_s.so.* | libm.so.* | libc.so.* | ld-linux-x86-64.so.*) ;;
    *) fail "it needs $needed, which is not part of the standard library." ;;
  esac
done < <(sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' <<<"$dynamic")

grep -q TEXTREL <<<"$dynamic" && fail "its code has relocations: something was built without -fPIC."

stack=$(readelf -lW "$library" | grep GNU_STACK || true)
[[ $stack == *"RW "* ]] || fail "its stack can be executed: $stack"

exit "$failed"
