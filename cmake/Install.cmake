# SPDX-License-Identifier: MIT
# The CMake package: find_package(RouterInterface), or RouterInterface-qt6 for the Qt 6 build.
include(CMakePackageConfigHelpers)

set(package RouterInterface${library_suffix})
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/${package})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/RouterInterfaceConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/${package}Config.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/${package}Config.cmake ${PROJECT_BINARY_DIR}/${package}ConfigVersion.cmake
        DESTINATION ${package_folder})
install(EXPORT RouterInterfaceTargets NAMESPACE RouterInterface:: DESTINATION ${package_folder})

# Descriptions of the forms for other programs.
install(FILES schema/router.xsd schema/router.ksy schema/router.lua schema/router_messages.lua schema/router_files.lua
        DESTINATION ${CMAKE_INSTALL_DATADIR}/${package})
