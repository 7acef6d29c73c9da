# SPDX-License-Identifier: MIT
# What the libraries have in common. The file names of libraries for Qt 6 contain the Qt version, so that both
# builds can be installed side by side.
include(${CMAKE_CURRENT_LIST_DIR}/Compatibility.cmake)

set(library_suffix "")
if(QT_MAJOR EQUAL 6)
    set(library_suffix "-qt6")
endif()
# The CMake package, and the namespace of its targets.
set(package RouterInterface${library_suffix})

compatibility_of(${PROJECT_VERSION} library_soversion package_compatibility)

# Shared libraries, unless the user or the project above says something else.
set(library_type SHARED)
if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
    set(library_type STATIC)
endif()

# Installed files find the libraries by relative paths, wherever they are installed.
file(RELATIVE_PATH from_programs_to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(library_run_path "$ORIGIN")
set(program_run_path "$ORIGIN/${from_programs_to_libraries}")

# The headers that programs may include, for a project that this one is a part of: it shall not see the other files.
set(public_include_folder ${PROJECT_BINARY_DIR}/include)

# add_record_library(<target> FOLDER <folder> MACRO <prefix> [COMPONENT <name>] [DESCRIPTION <text>]
#                    HEADERS <files> SOURCES <files>)
# FOLDER is the folder of its headers, both in the tree and below the include directory. <prefix>_BUILD is
# defined while the library itself is compiled, <prefix>_STATIC for a static library and programs that use it.
# COMPONENT is its name in find_package; by default, it is the name of the target without "Router". What the library
# needs is read from target_link_libraries() when the package is made.
function(add_record_library target)
    cmake_parse_arguments(arg "" "FOLDER;MACRO;COMPONENT;DESCRIPTION" "HEADERS;SOURCES" ${ARGN})
    if(NOT arg_COMPONENT)
        string(REGEX REPLACE "^Router" "" arg_COMPONENT ${target})
    endif()
    if(NOT arg_DESCRIPTION)
        set(arg_DESCRIPTION "${arg_COMPONENT} of the router interface")
    endif()
    add_library(${target} ${library_type} ${arg_SOURCES} ${arg_HEADERS})
    add_library(RouterInterface::${target} ALIAS ${target})
    if(library_suffix)
        add_library(${package}::${target} ALIAS ${target})
    endif()
    target_compile_definitions(${target} PRIVATE ${arg_MACRO}_BUILD)
    if(library_type STREQUAL "STATIC")
        target_compile_definitions(${target} PUBLIC ${arg_MACRO}_STATIC)
    endif()
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_include_directories(${target} INTERFACE
        $<BUILD_INTERFACE:${public_include_folder}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${target}${library_suffix}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${library_soversion}
        POSITION_INDEPENDENT_CODE ON
        INSTALL_RPATH "${library_run_path}"
        RECORD_COMPONENT ${arg_COMPONENT}
        RECORD_DESCRIPTION "${arg_DESCRIPTION}")
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
    set_property(GLOBAL APPEND PROPERTY record_libraries ${target})

    foreach(header IN LISTS arg_HEADERS)
        file(CONFIGURE OUTPUT ${public_include_folder}/${arg_FOLDER}/${header}
             CONTENT "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${header}\"\n" @ONLY)
    endforeach()
    if(ROUTERINTERFACE_INSTALL)
        install(TARGETS ${target} EXPORT ${package}${arg_COMPONENT}Targets
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${target}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${target} NAMELINK_COMPONENT Development
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
        install(FILES ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${arg_FOLDER} COMPONENT Headers)
    endif()
    list(TRANSFORM arg_HEADERS PREPEND "${arg_FOLDER}/")
    set_property(GLOBAL APPEND PROPERTY installed_headers ${arg_HEADERS})
endfunction()

# write_doxyfile(): the file for Doxygen, which documents the headers that are installed.
function(write_doxyfile)
    get_property(headers GLOBAL PROPERTY installed_headers)
    list(JOIN headers " " headers)
    file(WRITE ${PROJECT_BINARY_DIR}/Doxyfile "@INCLUDE = Doxyfile\nINPUT = docs/site/reference.dox ${headers}\n")
endfunction()

# install_program(<target>): programs are installed once, whatever the Qt version and the configuration. The one that is
# installed last stays.
function(install_program target)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${program_run_path}")
    install_files(Tools TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# install_files(<component> <arguments of install>...): install() if anything is to be installed.
function(install_files component)
    if(ROUTERINTERFACE_INSTALL)
        set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME ${component})
        install(${ARGN})
    endif()
endfunction()
