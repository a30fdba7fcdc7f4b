# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Manual pages and completion, filled from the settings table, cfg/default.cfg and the command line
# of mdlab. A build for another system cannot run the programs that fill them and goes without.
add_library(md_settings_doc STATIC tools/settings_doc.cpp)
target_link_libraries(md_settings_doc PUBLIC md_sim)

if(CMAKE_CROSSCOMPILING OR WIN32)
    return()
endif()
find_program(GZIP gzip REQUIRED)

add_executable(fill_manual tools/fill_manual.cpp)
target_link_libraries(fill_manual PRIVATE md_settings_doc)
if(TARGET md_lab)
    add_executable(fill_lab_manual lab/manual/fill_lab_manual.cpp)
    target_link_libraries(fill_lab_manual PRIVATE md_lab)
endif()

# md_fill(PROGRAM COMPONENT COMMAND...): the page and the completion of one program.
function(md_fill program component)
    set(out ${PROJECT_BINARY_DIR}/manual)
    file(MAKE_DIRECTORY ${out})
    set(page ${PROJECT_SOURCE_DIR}/docs/man/${program}.1.in)
    set(words ${PROJECT_SOURCE_DIR}/tools/completion/${program}.in)
    list(GET ARGN 0 filler)
    list(SUBLIST ARGN 1 -1 arguments)
    add_custom_command(
        OUTPUT ${out}/${program}.1.gz ${out}/${program}.1 ${out}/${program}
        COMMAND ${filler} ${page} ${arguments} > ${out}/${program}.1
        COMMAND ${GZIP} -9nkf ${out}/${program}.1
        COMMAND ${filler} ${words} ${arguments} > ${out}/${program}
        DEPENDS ${filler} ${page} ${words} ${PROJECT_SOURCE_DIR}/cfg/default.cfg
        VERBATIM)
    add_custom_target(${program}_manual ALL DEPENDS ${out}/${program}.1.gz)
    install(FILES ${out}/${program}.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT ${component})
    install(FILES ${out}/${program} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
            COMPONENT ${component})
endfunction()

md_fill(MD program fill_manual ${PROJECT_SOURCE_DIR}/cfg/default.cfg ${PROJECT_VERSION})
if(TARGET md_lab)
    md_fill(mdlab lab fill_lab_manual ${PROJECT_VERSION})
endif()
