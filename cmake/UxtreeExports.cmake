# What leaves a library: the names that its public headers mark, whatever the standard library's
# headers make visible by themselves.
include(CheckLinkerFlag)
find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)

# Linkers without version scripts are left with what the compiler hides.
set(probe ${PROJECT_BINARY_DIR}/version_script_probe.map)
file(WRITE ${probe} "{ global: main; local: *; };\n")
check_linker_flag(CXX "-Wl,--version-script=${probe}" UXTREE_LINKER_HAS_VERSION_SCRIPTS)

# uxtree_export_only(TARGET MARK HEADER...)
function(uxtree_export_only target mark)
  get_target_property(type ${target} TYPE)
  if(NOT UXTREE_LINKER_HAS_VERSION_SCRIPTS OR NOT type STREQUAL "SHARED_LIBRARY")
    return()
  endif()
  set(dev ${PROJECT_SOURCE_DIR}/tools/dev)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  add_custom_command(OUTPUT ${script}
    COMMAND ${Python3_EXECUTABLE} ${dev}/make_version_script.py ${mark} ${script} ${ARGN}
    DEPENDS ${dev}/make_version_script.py ${dev}/exported_names.py ${ARGN} VERBATIM)
  target_sources(${target} PRIVATE ${script})
  target_link_options(${target} PRIVATE -Wl,--version-script=${script})
  set_target_properties(${target} PROPERTIES LINK_DEPENDS ${script})
endfunction()
