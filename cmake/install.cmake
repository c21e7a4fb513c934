include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS zemtime EXPORT ZemTimeTargets)
install(DIRECTORY Zem DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZemTime)
install(EXPORT ZemTimeTargets NAMESPACE ZemTime:: FILE ZemTimeConfig.cmake
    DESTINATION ${package_dir})
write_basic_package_version_file(ZemTimeConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZemTimeConfigVersion.cmake DESTINATION ${package_dir})

configure_file(cmake/zemtime.pc.in zemtime.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zemtime.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
