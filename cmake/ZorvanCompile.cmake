# The options for every source of the project.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Contraction is off everywhere: a compiler that fuses multiplications and additions would make the variants
# differ in the last bit.
add_library(zorvan_compile INTERFACE)
target_compile_features(zorvan_compile INTERFACE cxx_std_20)
target_compile_options(zorvan_compile INTERFACE
  -ffp-contract=off
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
  $<$<BOOL:${ZORVAN_IPP_WARNINGS_AS_ERRORS}>:-Werror>)
