# Install rules, the CMake package and the pkg-config files; all paths are relative to the prefix.
include(CMakePackageConfigHelpers)

install(TARGETS uxtree_host uxtree_Utils EXPORT uxtree_UtilsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/uxtree_Utils)
install(EXPORT uxtree_UtilsTargets NAMESPACE uxtree:: DESTINATION ${package_dir} COMPONENT dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/uxtree_UtilsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/uxtree_UtilsConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/uxtree_UtilsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/uxtree_UtilsConfig.cmake
  ${PROJECT_BINARY_DIR}/uxtree_UtilsConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT dev)
foreach(name uxtree_host uxtree_Utils)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()
