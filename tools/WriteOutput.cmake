# SPDX-License-Identifier: MIT
# Runs PROGRAM with the list ARGUMENTS and keeps what it writes in the file OUTPUT.
execute_process(COMMAND ${PROGRAM} ${ARGUMENTS} OUTPUT_FILE ${OUTPUT} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    file(REMOVE ${OUTPUT})
    message(FATAL_ERROR "${PROGRAM} ${ARGUMENTS} failed with ${result}")
endif()
