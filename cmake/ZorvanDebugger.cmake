# gdb loads <library file>-gdb.py automatically: from the folder of the library, if the user allows that folder, and
# otherwise, for libraries of the system, from a folder of gdb's own, which needs no permission.

set(zorvan_gdb_script ${PROJECT_SOURCE_DIR}/zorvan/debugger/gdb.py)
file(GENERATE OUTPUT $<TARGET_FILE:zorvan_ipp>-gdb.py INPUT ${zorvan_gdb_script})

if(ZORVAN_IPP_INSTALL)
  # The prefix is known only when the library is installed.
  install(CODE "
    set(folder \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}\")
    if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
      string(PREPEND folder \"/usr/share/gdb/auto-load\")
    endif()
    file(INSTALL \"${zorvan_gdb_script}\" DESTINATION \"\${folder}\" TYPE FILE
      RENAME \"$<TARGET_FILE_NAME:zorvan_ipp>-gdb.py\")" COMPONENT development)
endif()
