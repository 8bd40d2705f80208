# Builds from the tree that this file is in:
#     vcpkg install morandel --overlay-ports=packaging/vcpkg

get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
# Both libraries come with each build; morandel::static is the static one.
set(VCPKG_POLICY_DLLS_IN_STATIC_LIBRARY enabled)

vcpkg_cmake_configure(SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS -DMORANDEL_BUILD_COMMAND=OFF -DMORANDEL_BUILD_TESTS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME morandel CONFIG_PATH lib/cmake/morandel)
vcpkg_fixup_pkgconfig()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include")
file(WRITE "${CURRENT_PACKAGES_DIR}/share/${PORT}/copyright"
  "The owner of Morandel has not chosen a license.\n")
