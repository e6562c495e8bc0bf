# What `cpack` makes of a build: Debian packages of the runtime and of the development files, and a tarball.
#
# The runtime package carries the major version in its name, so that two of them can be installed beside each
# other; the development package wants the runtime of exactly its own version.

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME zorvan-ipp)
set(CPACK_PACKAGE_VENDOR "Zorvan.Ipp")
set(CPACK_PACKAGE_CONTACT "Zorvan.Ipp developers <developers@zorvan-ipp.invalid>")
set(CPACK_PACKAGE_FILE_NAME zorvan-ipp-${PROJECT_VERSION}-linux-x86_64)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The file that tells packages of programs which runtime they depend on, and the trigger that makes the loader find
# the library.
set(zorvan_debian ${PROJECT_BINARY_DIR}/debian)
foreach(file IN ITEMS changelog shlibs)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/${file}.in ${zorvan_debian}/${file} @ONLY)
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzorvan-ipp${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${zorvan_debian}/shlibs ${PROJECT_SOURCE_DIR}/packaging/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "image-processing operations, shared library
Fill, copy, convert, arithmetic, logic, comparison, statistics, grey-scale
morphology, the Laplace filter and flood fill on rectangles of images of one
channel. Each operation exists in six variants, from SSE2 to AVX-512; the
first call picks the one that fits the processor.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzorvan-ipp-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libzorvan-ipp${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "image-processing operations, development files
Headers, a CMake package, a pkg-config file, and a printer of images for gdb.")

# Debian keeps a copyright file and the changes of each package in a folder of its own.
find_program(zorvan_gzip gzip)
mark_as_advanced(zorvan_gzip)
if(zorvan_gzip)
  set(changes ${zorvan_debian}/changelog.gz)
  execute_process(COMMAND ${zorvan_gzip} --best --no-name --stdout ${zorvan_debian}/changelog OUTPUT_FILE ${changes})
  foreach(component IN ITEMS RUNTIME DEVELOPMENT)
    string(TOLOWER ${component} name)
    install(FILES ${changes} ${PROJECT_SOURCE_DIR}/packaging/debian/copyright
      DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME} COMPONENT ${name})
  endforeach()
endif()

include(CPack)
