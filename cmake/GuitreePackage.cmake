# The package that find_package(guitree CONFIG) finds: one component for each library that was built.

get_property(guitree_components GLOBAL PROPERTY GUITREE_COMPONENTS)
set(GUITREE_COMPONENT_TABLE "")
foreach(component IN LISTS guitree_components)
  get_property(needs GLOBAL PROPERTY GUITREE_NEEDS_${component})
  get_property(packages GLOBAL PROPERTY GUITREE_PACKAGES_${component})
  string(APPEND GUITREE_COMPONENT_TABLE "set(_guitree_needs_${component} \"${needs}\")\n"
         "set(_guitree_packages_${component} \"${packages}\")\n")
endforeach()

set(guitree_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/guitree")
configure_package_config_file(cmake/guitreeConfig.cmake.in "${guitree_BINARY_DIR}/guitreeConfig.cmake"
                              INSTALL_DESTINATION "${guitree_package_dir}")
write_basic_package_version_file("${guitree_BINARY_DIR}/guitreeConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${guitree_BINARY_DIR}/guitreeConfig.cmake" "${guitree_BINARY_DIR}/guitreeConfigVersion.cmake"
              cmake/Findutf8proc.cmake
        DESTINATION "${guitree_package_dir}")
