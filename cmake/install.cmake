# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# What `cmake --install` and the packages hold. The programs are in a folder of their own, beside
# links to ffmpeg and ffprobe, which they look for there; bin/ has a launcher for each.
set(MD_PRIVATE_DIR ${CMAKE_INSTALL_LIBEXECDIR}/md)
file(RELATIVE_PATH MD_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBEXECDIR}/md)
configure_file(tools/launcher.sh.in launcher/MD @ONLY)
# The build has a folder of them too, for the search path of whoever works from a clone.
set(MD_FROM_BIN ../bin)
foreach(program MD mdlab make_clip)
    configure_file(tools/launcher.sh.in path/${program} @ONLY)
endforeach()

# Links to the tools found here go into the build and an installed tree, links to where Debian has
# them into the package.
foreach(tool ffmpeg ffprobe)
    find_program(MD_TOOL_${tool} ${tool})
    if(MD_TOOL_${tool} AND NOT WIN32)
        file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
        file(CREATE_LINK ${MD_TOOL_${tool}} ${PROJECT_BINARY_DIR}/bin/${tool} SYMBOLIC)
        install(FILES ${PROJECT_BINARY_DIR}/bin/${tool} DESTINATION ${MD_PRIVATE_DIR}
                COMPONENT found_tools)
    endif()
    if(NOT WIN32)
        file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/debian)
        file(CREATE_LINK ../../bin/${tool} ${PROJECT_BINARY_DIR}/debian/${tool} SYMBOLIC)
        install(FILES ${PROJECT_BINARY_DIR}/debian/${tool} DESTINATION ${MD_PRIVATE_DIR}
                COMPONENT debian_tools EXCLUDE_FROM_ALL)
    endif()
endforeach()

# md_install(PROGRAM COMPONENT PACKAGE): a program, its launcher, and the documents that Debian's
# policy asks of the package it is in.
function(md_install program component package)
    install(TARGETS ${program} RUNTIME DESTINATION ${MD_PRIVATE_DIR} COMPONENT ${component})
    install(PROGRAMS ${PROJECT_BINARY_DIR}/launcher/MD DESTINATION ${CMAKE_INSTALL_BINDIR}
            RENAME ${program} COMPONENT ${component})
    set(doc ${CMAKE_INSTALL_DATADIR}/doc/${package})
    install(FILES LICENSE DESTINATION ${doc} RENAME copyright COMPONENT ${component})
    install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${doc} COMPONENT ${component})
endfunction()

find_program(GZIP gzip)
if(GZIP)
    execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md
                    OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
endif()
md_install(MD program md)
install(FILES cfg/default.cfg cfg/raw.cfg README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/md
        COMPONENT program)
# Pictures and pages that README and the manual point at.
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/md COMPONENT program
        PATTERN man EXCLUDE)
if(TARGET mdlab)
    md_install(mdlab lab mdlab)
endif()

# All that `cmake --install` needs, without the tests.
add_custom_target(product)
foreach(part MD mdlab MD_manual mdlab_manual)
    if(TARGET ${part})
        add_dependencies(product ${part})
    endif()
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "MD developers <md@lists.example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "simulator of a motion-detection block, exact to the bit")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL program debian_tools)
if(TARGET mdlab)
    list(APPEND CPACK_COMPONENTS_ALL lab)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_MD_PACKAGE_NAME md)
set(CPACK_DEBIAN_MD_PACKAGE_SECTION video)
set(CPACK_DEBIAN_MD_PACKAGE_DEPENDS ffmpeg)
set(CPACK_DEBIAN_MD_DESCRIPTION
"Reads a video, compares each frame block by block with an earlier one, and
turns the moving blocks into a box. Leaves the box, overlay videos, and dumps
of every value for hardware benches.")
set(CPACK_DEBIAN_MDLAB_PACKAGE_NAME mdlab)
set(CPACK_DEBIAN_MDLAB_PACKAGE_SECTION video)
set(CPACK_DEBIAN_MDLAB_PACKAGE_DEPENDS "md (= ${PROJECT_VERSION}), snakemake")
set(CPACK_DEBIAN_MDLAB_DESCRIPTION
"The companion program: finds the first wrong block between two sets of
dumps, shows on one page why a block is or is not active, and runs many
settings over labelled clips.")
include(CPack)
cpack_add_component(program GROUP md)
cpack_add_component(debian_tools GROUP md)
cpack_add_component(lab GROUP mdlab)
