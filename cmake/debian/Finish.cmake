# SPDX-License-Identifier: MIT
# CPack runs this when archives and packages are made, before it puts them into the build folder.
list(FILTER CPACK_PACKAGE_FILES INCLUDE REGEX "[.]deb$")
foreach(file IN LISTS CPACK_PACKAGE_FILES)
    execute_process(COMMAND bash ${CPACK_ROUTERINTERFACE_SOURCE}/cmake/debian/finish.sh ${file}
                    ${CPACK_ROUTERINTERFACE_SOURCE} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
