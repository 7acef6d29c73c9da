# SPDX-License-Identifier: MIT
# What the libraries have in common. The file names of libraries for Qt 6 contain the Qt version, so that both
# builds can be installed side by side.
set(library_suffix "")
if(QT_MAJOR EQUAL 6)
    set(library_suffix "-qt6")
endif()

# Installed files find the libraries by relative paths, wherever they are installed.
file(RELATIVE_PATH from_programs_to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(library_run_path "$ORIGIN")
set(program_run_path "$ORIGIN/${from_programs_to_libraries}")

# add_record_library(<target> FOLDER <folder> MACRO <prefix> HEADERS <files> SOURCES <files>)
# FOLDER is the folder of its headers, both in the tree and below the include directory. <prefix>_BUILD is
# defined while the library itself is compiled.
function(add_record_library target)
    cmake_parse_arguments(arg "" "FOLDER;MACRO" "HEADERS;SOURCES" ${ARGN})
    add_library(${target} SHARED ${arg_SOURCES} ${arg_HEADERS})
    add_library(RouterInterface::${target} ALIAS ${target})
    target_compile_definitions(${target} PRIVATE ${arg_MACRO}_BUILD)
    target_compile_features(${target} PUBLIC cxx_std_17)
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME ${target}${library_suffix}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "${library_run_path}")
    if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
    install(TARGETS ${target} EXPORT RouterInterfaceTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(FILES ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${arg_FOLDER})
    list(TRANSFORM arg_HEADERS PREPEND "${arg_FOLDER}/")
    set_property(GLOBAL APPEND PROPERTY installed_headers ${arg_HEADERS})
endfunction()

# write_doxyfile(): the file for Doxygen, which documents the headers that are installed.
function(write_doxyfile)
    get_property(headers GLOBAL PROPERTY installed_headers)
    list(JOIN headers " " headers)
    file(WRITE ${PROJECT_BINARY_DIR}/Doxyfile "@INCLUDE = Doxyfile\nINPUT = docs/site/reference.dox ${headers}\n")
endfunction()

# install_program(<target>)
function(install_program target)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${program_run_path}")
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
