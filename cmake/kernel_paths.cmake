# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# The row kernels, built once for each instruction set of the processor; which of them a run uses is
# decided at its start (lib/md/decision/row_kernels.h).

# A release builds them with -O3 even where the rest gets less: the scalar ones are fast by the
# compiler's vectors. They pass no vector between files, so its calling convention does not matter.
set(kernel_options $<$<CONFIG:Release>:-O3> -fno-math-errno -Wno-psabi)

# One line a path: its name, then what the compiler needs for it.
function(md_kernel_path name)
    set(source lib/md/decision/row_kernels_${name}.cpp)
    string(TOUPPER ${name} upper)
    target_sources(md_sim PRIVATE ${source})
    target_compile_definitions(md_sim PRIVATE MD_KERNELS_${upper})
    set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS "${kernel_options};${ARGN}")
endfunction()

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
    md_kernel_path(ssse3 -mssse3)
    md_kernel_path(avx2 -mavx2)
    # GCC 12 takes its own header's undefined vectors for uninitialised ones.
    md_kernel_path(avx512 -mavx512bw -mprefer-vector-width=512
                   $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    md_kernel_path(neon)
endif()
set_source_files_properties(lib/md/feature/cell_sums.cpp lib/md/feature/block_records.cpp
                            lib/md/decision/row_distances.cpp
                            PROPERTIES COMPILE_OPTIONS "${kernel_options}")
