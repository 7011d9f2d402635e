# Installs the engine for find_package(jet): its public headers, its libraries and the package
# files. `cmake --install BUILD --component jet --prefix PREFIX` installs nothing else.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

get_property(engine_targets DIRECTORY PROPERTY BUILDSYSTEM_TARGETS)
install(TARGETS ${engine_targets}
    EXPORT jetTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT jet)
file(GLOB public_headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
list(FILTER public_headers EXCLUDE REGEX "impl\\.h$")
install(FILES ${public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/jet COMPONENT jet)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/jet)
install(EXPORT jetTargets NAMESPACE jet:: DESTINATION ${package_folder} COMPONENT jet)
configure_package_config_file(jetConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/jetConfig.cmake
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/jetConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
        ${CMAKE_CURRENT_BINARY_DIR}/jetConfig.cmake
        ${CMAKE_CURRENT_BINARY_DIR}/jetConfigVersion.cmake
    DESTINATION ${package_folder}
    COMPONENT jet)
