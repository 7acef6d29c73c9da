# SPDX-License-Identifier: MIT
# Runs PROGRAM, with ARGUMENT if given. It must exit with 0 and print exactly the content of EXPECTED.
# Its output is written to ACTUAL.
cmake_minimum_required(VERSION 3.21)

execute_process(COMMAND ${PROGRAM} ${ARGUMENT}
                OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE status)
file(WRITE ${ACTUAL} "${output}")
file(READ ${EXPECTED} expected)

if(NOT status EQUAL 0)
    message(FATAL_ERROR "the exit status is ${status}, not 0\n${output}${errors}")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "the output differs; compare ${EXPECTED} with ${ACTUAL}\n${output}${errors}")
endif()
