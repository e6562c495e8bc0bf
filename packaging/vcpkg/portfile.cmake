# An overlay port of the sources that it lies in: vcpkg install zorvan-ipp --overlay-ports=packaging/vcpkg

if(NOT VCPKG_LIBRARY_LINKAGE STREQUAL "dynamic")
  message(FATAL_ERROR "The library is shared: use a triplet with dynamic linkage, such as x64-linux-dynamic.")
endif()

get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
vcpkg_cmake_configure(SOURCE_PATH "${SOURCE_PATH}" OPTIONS -DZORVAN_IPP_TESTS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME ZorvanIpp CONFIG_PATH lib/cmake/ZorvanIpp)
vcpkg_fixup_pkgconfig()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENCE")
