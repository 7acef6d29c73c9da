# SPDX-License-Identifier: MIT
# What programs need to find the installed libraries: the CMake package, find_package(RouterInterface) or
# RouterInterface-qt6 for the Qt 6 build, and for each library a file for pkg-config and one for qmake. All of it is made
# from what the libraries are linked with.
if(NOT ROUTERINTERFACE_INSTALL)
    return()
endif()
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/${package})
set(pkg_config_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
# Where qmake finds such files by itself if the prefix is that of Qt.
set(qmake_folder ${CMAKE_INSTALL_LIBDIR}/qt${QT_MAJOR}/mkspecs/features)

# split_needs(<target> <libraries> <modules>): what the library is linked with: other record libraries, modules of Qt.
function(split_needs target libraries modules)
    get_property(all GLOBAL PROPERTY record_libraries)
    get_target_property(needs ${target} INTERFACE_LINK_LIBRARIES)
    set(found_libraries "")
    set(found_modules "")
    foreach(need IN LISTS needs)
        string(REGEX REPLACE "^\\$<LINK_ONLY:(.*)>$" "\\1" need "${need}")
        string(REGEX REPLACE "^RouterInterface(-qt6)?::" "" need "${need}")
        if(need IN_LIST all)
            list(APPEND found_libraries ${need})
        elseif(need MATCHES "^Qt${QT_MAJOR}::(.+)$")
            list(APPEND found_modules ${CMAKE_MATCH_1})
        else()
            message(FATAL_ERROR "${target} needs ${need}. cmake/Install.cmake must tell programs where to find that.")
        endif()
    endforeach()
    set(${libraries} "${found_libraries}" PARENT_SCOPE)
    set(${modules} "${found_modules}" PARENT_SCOPE)
endfunction()

# write_pkg_config_file(<target> <libraries> <modules> <flags>). The file of the debug configuration has the name of its
# library: both can be installed.
function(write_pkg_config_file target libraries modules definitions)
    file(RELATIVE_PATH to_prefix /${pkg_config_folder} /)
    string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
    set(postfix "$<$<CONFIG:Debug>:${CMAKE_DEBUG_POSTFIX}>")
    set(pc_name ${target}${library_suffix}${postfix})
    set(pc_library ${pc_name})
    get_target_property(pc_description ${target} RECORD_DESCRIPTION)
    set(pc_requires "")
    foreach(library IN LISTS libraries)
        list(APPEND pc_requires "${library}${library_suffix}${postfix} = ${PROJECT_VERSION}")
    endforeach()
    foreach(module IN LISTS modules)
        list(APPEND pc_requires "Qt${QT_MAJOR}${module}")
    endforeach()
    list(JOIN pc_requires ", " pc_requires)
    list(TRANSFORM definitions PREPEND " -D")
    list(JOIN definitions "" pc_flags)
    # CMake and qmake pass this on by themselves, but the files of Qt for pkg-config do not have it.
    get_target_property(options Qt${QT_MAJOR}::Core INTERFACE_COMPILE_OPTIONS)
    if("-fPIC" IN_LIST options)
        string(PREPEND pc_flags " -fPIC")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Library.pc.in ${PROJECT_BINARY_DIR}/${target}.pc.in @ONLY)
    set(output ${PROJECT_BINARY_DIR}/pkgconfig/${pc_name}.pc)
    file(GENERATE OUTPUT ${output} INPUT ${PROJECT_BINARY_DIR}/${target}.pc.in)
    install_files(Development FILES ${output} DESTINATION ${pkg_config_folder})
endfunction()

# write_qmake_file(<target> <libraries> <modules> <definitions>), with all libraries that it needs, those first that need
# others.
function(write_qmake_file target libraries modules definitions)
    file(RELATIVE_PATH to_prefix /${qmake_folder} /)
    string(REGEX REPLACE "/$" "" to_prefix "${to_prefix}")
    set(file_pattern "${CMAKE_${library_type}_LIBRARY_PREFIX}${target}${library_suffix}")
    set(file_suffix "${CMAKE_${library_type}_LIBRARY_SUFFIX}")
    set(link_options "")
    foreach(library IN LISTS target libraries)
        string(APPEND link_options " -l${library}${library_suffix}$\${postfix}")
    endforeach()
    string(TOLOWER "${modules}" modules)
    list(JOIN modules " " modules)
    list(JOIN definitions " " definitions)
    # qmake looks for lower-case names, whatever the case in CONFIG.
    string(TOLOWER ${target} name)
    set(output ${PROJECT_BINARY_DIR}/qmake/${name}.prf)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Library.prf.in ${output} @ONLY)
    install_files(Development FILES ${output} DESTINATION ${qmake_folder})
endfunction()

get_property(record_libraries GLOBAL PROPERTY record_libraries)
set(components "")
set(component_facts "")
foreach(target IN LISTS record_libraries)
    get_target_property(component ${target} RECORD_COMPONENT)
    split_needs(${target} libraries modules)
    list(APPEND components ${component})
    set(needs "")
    set(all_libraries_${target} "")
    set(all_modules_${target} ${modules})
    set(all_definitions_${target} "")
    get_target_property(definitions ${target} INTERFACE_COMPILE_DEFINITIONS)
    if(definitions)
        set(all_definitions_${target} ${definitions})
    endif()
    foreach(library IN LISTS libraries)
        get_target_property(needed ${library} RECORD_COMPONENT)
        list(APPEND needs ${needed})
        list(APPEND all_libraries_${target} ${library} ${all_libraries_${library}})
        list(APPEND all_modules_${target} ${all_modules_${library}})
        list(APPEND all_definitions_${target} ${all_definitions_${library}})
    endforeach()
    list(REVERSE all_libraries_${target})
    list(REMOVE_DUPLICATES all_libraries_${target})
    list(REVERSE all_libraries_${target})
    list(REMOVE_DUPLICATES all_modules_${target})
    string(APPEND component_facts
        "set(_target_of_${component} ${target})\nset(_needs_of_${component} \"${needs}\")\nset(_modules_of_${component} \"${modules}\")\n")
    if(NOT definitions)
        set(definitions "")
    endif()
    write_pkg_config_file(${target} "${libraries}" "${modules}" "${definitions}")
    write_qmake_file(${target} "${all_libraries_${target}}" "${all_modules_${target}}" "${all_definitions_${target}}")
    install(EXPORT ${package}${component}Targets NAMESPACE ${package}:: DESTINATION ${package_folder}
            COMPONENT Development)
endforeach()

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/RouterInterfaceConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/${package}Config.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
                                 COMPATIBILITY ${package_compatibility})
install_files(Development FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake
              ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake DESTINATION ${package_folder})

# The pages, with what they link to; and the site that is made from them, if somebody has made it.
set(ROUTERINTERFACE_SITE ${PROJECT_SOURCE_DIR}/build/site CACHE PATH "The folder of the finished site, to be installed")
file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/*.md)
install_files(Documentation FILES ${pages} DESTINATION ${CMAKE_INSTALL_DOCDIR})
install_files(Documentation DIRECTORY docs examples schema DESTINATION ${CMAKE_INSTALL_DOCDIR}
              PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE)
install_files(Documentation DIRECTORY ${ROUTERINTERFACE_SITE}/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/html OPTIONAL)

# Descriptions of the forms for other programs. They do not depend on the version of Qt.
install_files(Headers FILES schema/router.xsd schema/router.ksy schema/router.lua schema/router_messages.lua
              schema/router_files.lua DESTINATION ${CMAKE_INSTALL_DATADIR}/RouterInterface)
