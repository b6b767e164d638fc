# The installed package: headers, library, find_package(VXGrid) and pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS vxgrid EXPORT VXGridTargets FILE_SET HEADERS)
install(EXPORT VXGridTargets NAMESPACE VXGrid:: DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/VXGrid")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VXGridConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/VXGridConfig.cmake"
                              INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/VXGrid")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VXGridConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VXGridConfig.cmake"
              "${PROJECT_BINARY_DIR}/VXGridConfigVersion.cmake"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/VXGrid")
configure_file("${PROJECT_SOURCE_DIR}/cmake/vxgrid.pc.in" "${PROJECT_BINARY_DIR}/vxgrid.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vxgrid.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
