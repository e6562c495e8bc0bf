# Installs the library, its public headers, a CMake package and a pkg-config file. All paths in these are relative to
# the files themselves, so an installed tree may be moved.
#
# Two components: `runtime`, which is all that a program needs to start, and `development`.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(zorvan_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZorvanIpp)

# A CMake older than 3.23 has no file sets and finds the headers by the include directory.
install(TARGETS zorvan_ipp EXPORT ZorvanIpp
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  FILE_SET HEADERS COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# Headers of the examples that programs copy: regions by column and row, the code of an exception.
install(FILES ${PROJECT_SOURCE_DIR}/examples/common/region.h ${PROJECT_SOURCE_DIR}/examples/common/status_code.h
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zorvan-ipp/examples COMPONENT development)
install(EXPORT ZorvanIpp FILE ZorvanIppConfig.cmake NAMESPACE Zorvan:: DESTINATION ${zorvan_package_dir}
  COMPONENT development)

write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZorvanIppConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZorvanIppConfigVersion.cmake DESTINATION ${zorvan_package_dir}
  COMPONENT development)

file(RELATIVE_PATH zorvan_prefix_from_pkgconfig
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH zorvan_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH zorvan_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
string(REGEX REPLACE "/$" "" zorvan_prefix_from_pkgconfig ${zorvan_prefix_from_pkgconfig})
configure_file(${PROJECT_SOURCE_DIR}/cmake/zorvan-ipp.pc.in ${PROJECT_BINARY_DIR}/zorvan-ipp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zorvan-ipp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)
