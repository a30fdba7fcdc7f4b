# The tests of a cross-build: GoogleTest from its sources, and no test that starts programs, since
# those know POSIX alone or would need the tools of that platform.
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(source ${TEST_SOURCES})
    file(STRINGS ${source} starts_programs REGEX "support/program\\.h|<(unistd|sys/wait)\\.h>")
    if(starts_programs)
        list(REMOVE_ITEM TEST_SOURCES ${source})
    endif()
endforeach()
