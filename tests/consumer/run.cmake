# SPDX-License-Identifier: MIT
# Installs the build BUILD into an empty folder and uses it from there, like the program of a user.
cmake_minimum_required(VERSION 3.21)

function(run)
    execute_process(COMMAND ${ARGN} TIMEOUT 240
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed with ${result}:\n${output}")
    endif()
endfunction()

# Installed programs must find their libraries by themselves, and no variable may redirect the installation.
unset(ENV{LD_LIBRARY_PATH})
unset(ENV{DESTDIR})
set(installed ${FOLDER}/installed)

file(REMOVE_RECURSE ${FOLDER})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${installed})

# The package, with CMake.
string(REPLACE ";" "\\;" prefix_path "${installed};${PREFIX_PATH}")
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${FOLDER}/build -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${COMPILER}
    "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${prefix_path}" -DPACKAGE=${PACKAGE}
    -DEVERY_HEADER=${EVERY_HEADER}
    -DINCLUDE_FOLDER=${installed}/${INCLUDE_FOLDER})
run(${CMAKE_COMMAND} --build ${FOLDER}/build)
run(${FOLDER}/build/consumer)

# The folder is moved, so that absolute paths of the installation do not help.
set(moved ${FOLDER}/moved)
file(RENAME ${installed} ${moved})
foreach(program IN LISTS PROGRAMS)
    run(${moved}/${PROGRAM_FOLDER}/${program} --version)
endforeach()

foreach(name router.xsd router.ksy router.lua router_messages.lua router_files.lua)
    if(NOT EXISTS ${moved}/share/RouterInterface/${name})
        message(FATAL_ERROR "share/RouterInterface/${name} is not installed.")
    endif()
endforeach()

# One library and Qt, with the compiler alone. The program knows where that library is; if it is a shared one, it must
# find the other one.
if(NOT LIBRARY_TYPE STREQUAL "SHARED")
    return()
endif()
separate_arguments(flags UNIX_COMMAND "${FLAGS}")
list(TRANSFORM QT_INCLUDE_FOLDERS PREPEND "-isystem;" OUTPUT_VARIABLE qt_includes)
run(${COMPILER} ${flags} -std=c++17 -fPIC -Wall -Wextra -Werror ${qt_includes} -I${moved}/${INCLUDE_FOLDER}
    ${SOURCE}/one_record.cpp -o ${FOLDER}/one_record
    -L${moved}/${LIBRARY_FOLDER} -l${LIBRARY} -Wl,-rpath,${moved}/${LIBRARY_FOLDER} ${QT_LIBRARY})
run(${FOLDER}/one_record)
