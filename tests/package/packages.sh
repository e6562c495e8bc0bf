#!/usr/bin/env bash
# Makes the Debian packages and the tarball of a build, and uses them: a program is built against the development
# package and runs with the runtime package alone.
# usage: packages.sh cmake generator compiler outside build scratch
set -euo pipefail
cmake=$1 generator=$2 compiler=$3 outside=$4 build=$5 scratch=$6
skipped=77

for tool in dpkg dpkg-shlibdeps lintian; do
  command -v $tool >/dev/null || {
    echo "skipped: there is no $tool"
    exit $skipped
  }
done

rm -rf "$scratch"
mkdir -p "$scratch/root/var/lib/dpkg"
cd "$scratch"
"$(dirname "$cmake")/cpack" --config "$build/CPackConfig.cmake" -B "$scratch/packages" >cpack.log || {
  cat cpack.log
  exit 1
}
debs=("$scratch"/packages/*.deb)
((${#debs[@]} == 2)) || {
  echo "Two Debian packages were expected, not: ${debs[*]}"
  exit 1
}
runtime=$(dpkg-deb -f "${debs[0]}" Package)
development=$(dpkg-deb -f "${debs[1]}" Package)
if [[ $runtime == *-dev ]]; then
  read -r runtime development <<<"$development $runtime"
  debs=("${debs[1]}" "${debs[0]}")
fi
lintian --allow-root --fail-on error "${debs[@]}"

# In a root of their own, which has no packages that they could depend on.
install=(dpkg --root="$scratch/root" --force-depends --force-not-root --force-script-chrootless --no-triggers)
"${install[@]}" --install "${debs[@]}" >dpkg.log 2>&1 || {
  cat dpkg.log
  exit 1
}
"$cmake" -S "$outside" -B program -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_STANDARD=17 \
  -DCMAKE_PREFIX_PATH="$scratch/root/usr" >configure.log
"$cmake" --build program
program/outside

"${install[@]}" --remove "$development" >>dpkg.log 2>&1
left=$(find root/usr -type f -o -type l | sort)
for file in $left; do
  case $file in
    root/usr/lib/*libzorvan_ipp.so.*.*.* | root/usr/lib/*libzorvan_ipp.so.? | root/usr/share/doc/"$runtime"/*) ;;
    *)
      echo "The runtime package holds $file."
      exit 1
      ;;
  esac
done
library=$(find "$scratch/root/usr/lib" -name 'libzorvan_ipp.so.?' -printf '%h')
[[ $library ]] || {
  echo "The runtime package holds no library."
  exit 1
}
env -i LD_LIBRARY_PATH="$library" program/outside

mkdir tarball
tar -xf packages/*.tar.gz -C tarball --strip-components=1
for file in include/zorvan/ipp.h 'lib*/libzorvan_ipp.so' 'lib*/pkgconfig/zorvan-ipp.pc'; do
  find tarball -path "tarball/$file" | grep -q . || {
    echo "The tarball lacks $file."
    exit 1
  }
done
