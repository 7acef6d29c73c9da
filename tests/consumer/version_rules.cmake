# SPDX-License-Identifier: MIT
# Which versions can replace each other.
cmake_minimum_required(VERSION 3.21)
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/Compatibility.cmake)

function(expect version soversion rule)
    compatibility_of(${version} actual_soversion actual_rule)
    if(NOT actual_soversion STREQUAL soversion OR NOT actual_rule STREQUAL rule)
        message(FATAL_ERROR "${version} has ${actual_soversion} and ${actual_rule} instead of ${soversion} and ${rule}.")
    endif()
endfunction()
expect(0.1.0 0.1 SameMinorVersion)
expect(0.12.3 0.12 SameMinorVersion)
expect(1.0.0 1 SameMajorVersion)
expect(10.2.0 10 SameMajorVersion)
