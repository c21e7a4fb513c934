# Set ZEMTIME_SOURCE to a checkout, or replace it by vcpkg_from_git with the repository's address.
set(SOURCE_PATH "$ENV{ZEMTIME_SOURCE}")

vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES tool ZEMTIME_BUILD_TOOLS)
vcpkg_cmake_configure(SOURCE_PATH "${SOURCE_PATH}" OPTIONS ${features})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME ZemTime CONFIG_PATH lib/cmake/ZemTime)
vcpkg_fixup_pkgconfig()
if("tool" IN_LIST FEATURES)
    vcpkg_copy_tools(TOOL_NAMES zemtime AUTO_CLEAN)
endif()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
