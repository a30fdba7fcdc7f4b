# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# The tests of a cross-build: GoogleTest from its sources; programs start through the emulator where
# there is one. Tests that start programs know POSIX only, so Windows builds none of them.
add_compile_options(-Wno-restrict)  # GCC 12 warns of its own strings on 32-bit systems
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
if(WIN32)
    foreach(source ${TEST_SOURCES})
        file(STRINGS ${source} starts_programs REGEX "support/program\\.h|<(unistd|sys/wait)\\.h>")
        if(starts_programs)
            list(REMOVE_ITEM TEST_SOURCES ${source})
        endif()
    endforeach()
endif()
if(CMAKE_CROSSCOMPILING_EMULATOR)
    # Tests copy and link it; the program sees the name that it was called by.
    set(MD_TO_TEST ${PROJECT_BINARY_DIR}/bin/MD.emulated)
    file(WRITE ${MD_TO_TEST} "#!/bin/sh\nexec ${CMAKE_CROSSCOMPILING_EMULATOR} -0 \"$0\" "
                             "${PROJECT_BINARY_DIR}/bin/MD \"$@\"\n")
    file(CHMOD ${MD_TO_TEST} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
         GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()
