# SPDX-License-Identifier: MIT
# CPack runs this when packages are made, before it puts them into the build folder.
foreach(file IN LISTS CPACK_PACKAGE_FILES)
    execute_process(COMMAND bash ${CPACK_ROUTERINTERFACE_SOURCE}/cmake/debian/finish.sh ${file}
                    ${CPACK_ROUTERINTERFACE_SOURCE} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
