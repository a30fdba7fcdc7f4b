# SPDX-FileCopyrightText: 2026 the MD simulator authors
# SPDX-License-Identifier: BSD-2-Clause

# Compiler and linker flags that platforms and the finished program need, added to md_flags.

# The path of the build folder does not get into the program: two builds give the same bytes.
target_compile_options(md_flags INTERFACE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.")

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^i[3-6]86$")
    # The old floating-point unit keeps more digits than a double and rounds twice.
    target_compile_options(md_flags INTERFACE -msse2 -mfpmath=sse)
endif()

if(WIN32)
    # printf and scanf by the language's standard, not by the system's own library; one file to copy.
    target_compile_definitions(md_flags INTERFACE __USE_MINGW_ANSI_STDIO=1)
    target_link_options(md_flags INTERFACE -static)
    # Vectors of 32 bytes are not aligned on this system's stack, even if the code asks for it. Debian's
    # compiler takes the moves that do not need it by itself; the assembler does it for the others.
    target_compile_options(md_flags INTERFACE -Wa,-muse-unaligned-vector-move)
else()
    target_compile_definitions(md_flags INTERFACE _FILE_OFFSET_BITS=64)  # on 32-bit systems too
endif()

# Hardening as the distribution builds its own packages; the sanitizers bring their own checks.
if(NOT WIN32)
    set(hardened $<CONFIG:Release,RelWithDebInfo>)
    target_compile_options(md_flags INTERFACE $<${hardened}:-fstack-protector-strong>
                                              $<${hardened}:-fPIE>)
    # Some distributions' compilers set a value of their own; a second one would be an error.
    target_compile_options(md_flags INTERFACE $<${hardened}:-U_FORTIFY_SOURCE>
                                              $<${hardened}:-D_FORTIFY_SOURCE=2>)
    target_link_options(md_flags INTERFACE $<${hardened}:-pie> $<${hardened}:-Wl,-z,relro,-z,now>)
endif()
