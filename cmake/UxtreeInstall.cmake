# Install rules, the CMake package and the pkg-config files. All paths are relative to the place
# where a file is found, so that an installed tree may be moved as a whole.
include(CMakePackageConfigHelpers)

# The libraries stand side by side, whatever the folder is called.
set_target_properties(uxtree_host uxtree_Utils uxtree_kit PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS uxtree_host uxtree_Utils uxtree_kit EXPORT uxtree_UtilsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
# Whoever links static libraries also links what stands behind them.
set(find_static_dependencies "")
set(static_requires "")
set(static_libraries "")
if(NOT BUILD_SHARED_LIBS)
  set(find_static_dependencies "include(CMakeFindDependencyMacro)\nfind_dependency(EXPAT)")
  set(static_requires expat)
  foreach(library ${CMAKE_DL_LIBS} stdc++ c++ m)
    if(library IN_LIST CMAKE_CXX_IMPLICIT_LINK_LIBRARIES OR library STREQUAL CMAKE_DL_LIBS)
      string(APPEND static_libraries " -l${library}")
    endif()
  endforeach()
endif()
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/uxtree_Utils)
install(EXPORT uxtree_UtilsTargets NAMESPACE uxtree:: DESTINATION ${package_dir} COMPONENT dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/uxtree_UtilsConfig.cmake.in
  ${PROJECT_BINARY_DIR}/uxtree_UtilsConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/uxtree_UtilsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/uxtree_UtilsConfig.cmake
  ${PROJECT_BINARY_DIR}/uxtree_UtilsConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT dev)

# The way back from the folder of the pkg-config files depends on the depth of the library folder
# (lib, lib64, lib/x86_64-linux-gnu). Folders given as absolute paths stay what they are.
file(RELATIVE_PATH prefix_from_pkgconfig
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(folder LIBDIR INCLUDEDIR)
  string(TOLOWER pc_${folder} variable)
  set(${variable} ${CMAKE_INSTALL_${folder}})
  cmake_path(ABSOLUTE_PATH ${variable} BASE_DIRECTORY "\${prefix}")
endforeach()
foreach(name uxtree_host uxtree_Utils uxtree_kit uxtree_c)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()
