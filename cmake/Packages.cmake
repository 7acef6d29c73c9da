# SPDX-License-Identifier: MIT
# Debian packages and the source archive, by CPack. scripts/debian.sh makes them from the right builds.
#
# Each library is a package of its own, named after its SONAME as Debian does. The other components are:
#
#     Development    what is used with one version of Qt: links or archives, CMake package, pkg-config, qmake
#     Headers        what programs for both versions share; also what is installed without naming a component
#     Tools          the programs
#     Translations   texts in other languages
#     Documentation  the pages
if(NOT ROUTERINTERFACE_INSTALL OR NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

set(CPACK_PACKAGE_NAME routerinterface)
set(CPACK_PACKAGE_VENDOR "the RouterInterface developers")
set(CPACK_PACKAGE_CONTACT "RouterInterface developers <developers@routerinterface.invalid>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)

# The source archive: what is in the tree, without builds.
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME routerinterface-${PROJECT_VERSION})
set(CPACK_SOURCE_IGNORE_FILES "^${PROJECT_SOURCE_DIR}/build[^/]*/" "/[.]git/" "/[.]git$" "/[.]cache/" "[.]user$"
    "/__pycache__/")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# What CPack leaves open.
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/Finish.cmake)
set(CPACK_ROUTERINTERFACE_SOURCE ${PROJECT_SOURCE_DIR})

set(this_version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
set(long_description "Clients and a router exchange requests, replies and events about mastership,
ports and the parameters of a direction-finding receiver. This package is
a part of the C++ library for these messages and of its programs.")
# CPack would put it before each description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

# debian_package(<component> <name> <section> <synopsis> [ALL] [DEPENDS <packages>...]): the package of a component. ALL
# is for files that do not depend on the processor; the others also depend on what their programs are linked with.
macro(debian_package component name section synopsis)
    cmake_parse_arguments(deb "ALL" "" "DEPENDS" ${ARGN})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${synopsis}\n${long_description}")
    list(JOIN deb_DEPENDS ", " depends)
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
    if(deb_ALL)
        set(CPACK_DEBIAN_${upper}_PACKAGE_ARCHITECTURE all)
    else()
        set(CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS ON)
    endif()
endmacro()

set(qt_development_5 qtbase5-dev)
set(qt_development_6 qt6-base-dev)
string(TOLOWER ${package} lower_package)

# Each library. While packages are made, the other libraries are found where they were built.
get_property(record_libraries GLOBAL PROPERTY record_libraries)
set(packages_of_libraries "")
foreach(target IN LISTS record_libraries)
    if(library_type STREQUAL "STATIC")
        break()
    endif()
    get_target_property(folder ${target} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
    string(TOLOWER lib${target}${library_suffix} name)
    string(REGEX REPLACE "([0-9])$" "\\1-" name "${name}")
    string(APPEND name ${library_soversion})
    get_target_property(description ${target} RECORD_DESCRIPTION)
    split_needs(${target} needs modules)
    set(depends "")
    foreach(need IN LISTS needs)
        list(APPEND depends "${package_of_${need}} ${this_version}")
    endforeach()
    debian_package(${target} ${name} libs "${description}" DEPENDS ${depends})
    set(package_of_${target} ${name})
    list(APPEND packages_of_libraries "${name} ${this_version}")
endforeach()

set(development lib${lower_package}-dev)
set(kind "development files")
if(library_type STREQUAL "STATIC")
    # Its files have the names of those for shared libraries.
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_PROVIDES "${development} ${this_version}")
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_CONFLICTS ${development})
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_REPLACES ${development})
    set(development lib${lower_package}-static-dev)
    set(kind "static libraries")
endif()
debian_package(Development ${development} libdevel "Records of the router interface for Qt ${QT_MAJOR}: ${kind}"
    DEPENDS ${packages_of_libraries} "librouterinterface-headers ${this_version}" ${qt_development_${QT_MAJOR}})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
debian_package(Headers librouterinterface-headers libdevel "Records of the router interface: headers" ALL)
# The programs use the libraries up to RouterLink.
set(packages_of_programs "")
if(packages_of_libraries)
    foreach(target RouterLink ${all_libraries_RouterLink})
        list(APPEND packages_of_programs "${package_of_${target}} ${this_version}")
    endforeach()
endif()
debian_package(Tools routerinterface-tools utils "Programs for messages of the router interface, a simulated router"
    DEPENDS ${packages_of_programs})
debian_package(Translations routerinterface-l10n localization "Records of the router interface: translations" ALL)
debian_package(Documentation routerinterface-doc doc "Records of the router interface: documentation" ALL)

include(CPack)
