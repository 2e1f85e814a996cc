# SPDX-License-Identifier: GPL-3.0-or-later
# Speeds building up where the tools are installed. Both choices can be turned off or made by hand.
option(TAVRIN_FAST_TOOLS "Use ccache and the mold linker where they are installed" ON)
if(NOT TAVRIN_FAST_TOOLS)
    return()
endif()

find_program(TAVRIN_CCACHE ccache)
if(TAVRIN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TAVRIN_CCACHE}")
    if(TAVRIN_PCH)
        # Without these, ccache has nothing to do with precompiled headers.
        set(CMAKE_CXX_COMPILER_LAUNCHER
            "${CMAKE_COMMAND}" -E env
            CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
            "${TAVRIN_CCACHE}")
    endif()
endif()

find_program(TAVRIN_MOLD mold)
if(TAVRIN_MOLD AND NOT "${CMAKE_EXE_LINKER_FLAGS}" MATCHES "-fuse-ld=")
    add_link_options(-fuse-ld=mold)
endif()
