# An overlay port, which builds the sources around it: vcpkg install murv --overlay-ports=packaging/vcpkg
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS features FEATURES tool MURV_BUILD_TOOLS)
string(COMPARE EQUAL "${VCPKG_LIBRARY_LINKAGE}" dynamic shared)
vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS -DMURV_BUILD_TESTS=OFF -DMURV_BUILD_EXAMPLES=OFF -DMURV_BUILD_SHARED=${shared} ${features})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(CONFIG_PATH lib/cmake/murv)
vcpkg_fixup_pkgconfig()
if("tool" IN_LIST FEATURES)
    vcpkg_copy_tools(TOOL_NAMES murv AUTO_CLEAN)
endif()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
