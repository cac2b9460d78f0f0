# The CMake package and the pkg-config file that other projects link the library with.

include(CMakePackageConfigHelpers)
set(vx_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VXNetworking")

configure_package_config_file(cmake/VXNetworkingConfig.cmake.in VXNetworkingConfig.cmake
    INSTALL_DESTINATION "${vx_package_dir}")
write_basic_package_version_file(VXNetworkingConfigVersion.cmake COMPATIBILITY SameMinorVersion)
# Below the prefix, unless somebody gave a path of its own.
cmake_path(APPEND vx_pc_libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
cmake_path(APPEND vx_pc_includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
configure_file(cmake/VXNetworking.pc.in VXNetworking.pc @ONLY)

install(EXPORT VXNetworkingTargets NAMESPACE VX:: DESTINATION "${vx_package_dir}"
    COMPONENT dev)
install(FILES
        "${PROJECT_BINARY_DIR}/VXNetworkingConfig.cmake"
        "${PROJECT_BINARY_DIR}/VXNetworkingConfigVersion.cmake"
    DESTINATION "${vx_package_dir}" COMPONENT dev)
install(FILES "${PROJECT_BINARY_DIR}/VXNetworking.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
