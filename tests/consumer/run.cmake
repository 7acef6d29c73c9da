# Installs the build BUILD into a folder of its own, builds the consumer against it and runs it.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed with ${result}:\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${FOLDER})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${FOLDER}/installed)
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${FOLDER}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_PREFIX_PATH=${FOLDER}/installed -DPACKAGE=${PACKAGE}
    -DINCLUDE_FOLDER=${FOLDER}/installed/${INCLUDE_FOLDER})
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${FOLDER}/build/consumer)
