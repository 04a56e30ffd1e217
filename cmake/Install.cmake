# What is installed: the library, its headers, and the package that find_package() finds. The tool's
# folder installs the tool.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/MorveluneExtension)

install(TARGETS MorveluneExtension EXPORT MorveluneExtensionTargets
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT MorveluneExtensionTargets NAMESPACE Morvelune:: DESTINATION ${package_folder})

set(foreign_headers)
if(NOT MORVELUNE_PLATFORM STREQUAL "linux")
  set(foreign_headers PATTERN linux EXCLUDE)
endif()
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${foreign_headers})

# A static library leaves its own libraries to the program that links it.
set(packages_to_link)
if(MORVELUNE_PLATFORM STREQUAL "linux" AND NOT BUILD_SHARED_LIBS)
  list(JOIN linux_packages " " packages_to_link)
endif()
configure_package_config_file(cmake/MorveluneExtensionConfig.cmake.in MorveluneExtensionConfig.cmake
                              INSTALL_DESTINATION ${package_folder}
                              NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(MorveluneExtensionConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/MorveluneExtensionConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/MorveluneExtensionConfigVersion.cmake
        DESTINATION ${package_folder})
