# SPDX-License-Identifier: MIT
# compatibility_of(<version> <soversion> <rule>): which versions can replace each other. The name of a library and its
# CMake package say the same: before version 1 those with the same minor number, afterwards those with the same major
# number.
function(compatibility_of version soversion rule)
    string(REGEX MATCH "^([0-9]+)\\.([0-9]+)\\." numbers "${version}")
    if(CMAKE_MATCH_1 EQUAL 0)
        set(${soversion} 0.${CMAKE_MATCH_2} PARENT_SCOPE)
        set(${rule} SameMinorVersion PARENT_SCOPE)
    else()
        set(${soversion} ${CMAKE_MATCH_1} PARENT_SCOPE)
        set(${rule} SameMajorVersion PARENT_SCOPE)
    endif()
endfunction()
