# To be sourced: makes a new clone of ./run and what it reads, and a PATH in which every tool is a fake that starts
# nothing and records its call in the file $calls.

# fresh_clone source scratch - leaves the shell in the clone.
fresh_clone() {
  local source=$1 scratch=$2 tool
  calls=$scratch/calls
  rm -rf "$scratch"
  mkdir -p "$scratch"/{tools,clone/{examples,bench,python,zorvan/primitives/frame,tests/{coverage,fuzz}}}
  cp "$source/run" "$source/README.md" "$scratch/clone"
  cp "$source/zorvan/primitives/frame/Variants.def" "$scratch/clone/zorvan/primitives/frame"
  cp -r "$source/tests/fuzz/corpus" "$scratch/clone/tests/fuzz"
  : >"$calls"

  cp "$source/tests/package/front_door/fake_cmake" "$scratch/tools/cmake"
  for tool in ctest ninja g++ c++ clang++ apt-get sudo doxygen valgrind clang-format clang-tidy; do
    fake "$scratch/tools/$tool" "$tool"
  done
  fake "$scratch/clone/examples/run_demo" run_demo
  fake "$scratch/clone/bench/run_bench" run_bench
  fake "$scratch/clone/bench/measure" measure
  fake "$scratch/clone/bench/compare.py" compare.py
  fake "$scratch/clone/tests/fuzz/run_fuzz" run_fuzz
  fake "$scratch/clone/tests/coverage/run_coverage" run_coverage
  fake "$scratch/clone/python/run_tests" run_tests
  fake "$scratch/clone/python/run_wheel" run_wheel
  # Every package is installed.
  printf '#!/bin/sh\necho installed\n' >"$scratch/tools/dpkg-query"
  # There are tests where the folder was configured with them.
  printf '%s\n' '[ "$1" != --preset ] || grep -qx ZORVAN_IPP_TESTS:BOOL=ON "build/$2/CMakeCache.txt" && exit' \
    'echo "No tests were found!!!"; exit 8' >>"$scratch/tools/ctest"
  chmod +x "$scratch"/tools/*

  export calls PATH="$scratch/tools:$PATH"
  cd "$scratch/clone"
}

# fake file name
fake() {
  printf '#!/bin/sh\necho "%s $*" >>"$calls"\n' "$2" >"$1"
  chmod +x "$1"
}
