# The variants: their names and instruction sets, from the list that the sources expand too.

set(ZORVAN_VARIANTS_LIST ${PROJECT_SOURCE_DIR}/zorvan/primitives/frame/Variants.def)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ZORVAN_VARIANTS_LIST})
file(STRINGS ${ZORVAN_VARIANTS_LIST} zorvan_variant_lines REGEX "^VARIANT\\(")
foreach(line IN LISTS zorvan_variant_lines)
  string(REGEX MATCH "^VARIANT\\((.*), \"(.*)\"\\)$" matched "${line}")
  if(NOT matched)
    message(FATAL_ERROR "Not a line of the form VARIANT(tag, \"options\"): ${line}")
  endif()
  list(APPEND ZORVAN_VARIANTS ${CMAKE_MATCH_1})
  separate_arguments(ZORVAN_OPTIONS_${CMAKE_MATCH_1} UNIX_COMMAND "-march=x86-64 -mtune=generic ${CMAKE_MATCH_2}")
endforeach()

# Kernels use vectors explicitly: a compiler that vectorises the short peels and tails of rows, or replaces them
# with calls, makes them slower. Kernels throw nothing, and exception tables would add a symbol that the variants
# share. Functions and loops start on cache lines: otherwise the time of a short loop depends, by up to a factor of two,
# on whether what comes before makes it cross a line.
set(zorvan_kernel_options
  -fno-builtin -fno-exceptions -falign-functions=64 -falign-loops=64
  $<$<CXX_COMPILER_ID:GNU>:-fno-tree-vectorize -fno-tree-loop-distribute-patterns>
  $<$<CXX_COMPILER_ID:Clang>:-fno-vectorize -fno-slp-vectorize>)

# zorvan_add_kernels(name source... [OPTIONS option...])
# Builds the families' sources once for each variant, as object libraries <name>_<variant>. In the sources
# ZORVAN_VARIANT is the tag of the variant. They are built only for the targets that link them.
function(zorvan_add_kernels name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "OPTIONS")
  foreach(variant IN LISTS ZORVAN_VARIANTS)
    set(target ${name}_${variant})
    add_library(${target} OBJECT EXCLUDE_FROM_ALL ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${target} PRIVATE zorvan_library_compile)
    target_compile_definitions(${target} PRIVATE ZORVAN_VARIANT=${variant})
    target_compile_options(${target} PRIVATE
      ${ZORVAN_OPTIONS_${variant}} ${zorvan_kernel_options} ${arg_OPTIONS})
  endforeach()
endfunction()
