# Debian packages: `cpack` in the build folder of the `package` preset makes three of them, the
# libraries, what is needed to build against them, and the command-line tool.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME uxtree)
set(CPACK_PACKAGE_VENDOR "uxtree_Utils contributors")
set(CPACK_PACKAGE_CONTACT "uxtree_Utils contributors <contributors@uxtree.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "operations on option and data trees")
set(CPACK_COMPONENTS_ALL runtime dev tool)
if(UXTREE_BUILD_SCRIPT)
  list(APPEND CPACK_COMPONENTS_ALL script)
endif()
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/bindings/script)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libuxtree-utils0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "operations on option and data trees - libraries
 Searches, reads, rewrites, copies and compares trees of settings and results
 kept as XML, collects and applies their values by identifier, outlines XML
 files and imports radiation spectra. An embedded host keeps the trees.")
file(WRITE ${PROJECT_BINARY_DIR}/package_docs/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package_docs/triggers)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libuxtree-utils-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION
  "operations on option and data trees - development files
 Headers, CMake package and pkg-config files for programs that use the
 uxtree_Utils library.")
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME uxtree)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_TOOL_DESCRIPTION
  "operations on option and data trees - command line
 The command uxtree shows, outlines, queries, edits and compares XML trees,
 saves and applies themes of values, and imports and plots radiation spectra.")
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
set(CPACK_DEBIAN_SCRIPT_PACKAGE_NAME libuxtree-script0)
set(CPACK_DEBIAN_SCRIPT_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_SCRIPT_DESCRIPTION
  "operations on option and data trees - scripts
 The operations of uxtree_Utils for scripts in the language of AngelScript, for
 programs that run such scripts, and the language of the command uxtree run.")
set(CPACK_COMPONENT_SCRIPT_DEPENDS runtime)
set(CPACK_DEBIAN_SCRIPT_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package_docs/triggers)
if(UXTREE_BUILD_SCRIPT)
  list(APPEND CPACK_COMPONENT_TOOL_DEPENDS script)
  list(APPEND CPACK_COMPONENT_DEV_DEPENDS script)
endif()

# What Debian expects beside the files: the licence and the changes, for each package.
set(doc_source ${PROJECT_BINARY_DIR}/package_docs)
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REGEX REPLACE "\n([^\n])" "\n \\1" licence "${licence}")
file(WRITE ${doc_source}/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/

Files: *
Copyright: uxtree_Utils contributors
License: Expat
 ${licence}")
string(TIMESTAMP change_date "%a, %d %b %Y 00:00:00 +0000" UTC)
file(WRITE ${doc_source}/changelog
"uxtree (${PROJECT_VERSION}) unstable; urgency=medium

  * Release ${PROJECT_VERSION}; the project's CHANGELOG.md tells what is in it.

 -- uxtree_Utils contributors <contributors@uxtree.invalid>  ${change_date}
")
execute_process(COMMAND gzip -9nf ${doc_source}/changelog COMMAND_ERROR_IS_FATAL ANY)
foreach(component RUNTIME DEV TOOL SCRIPT)
  string(TOLOWER ${component} name)
  set(doc_folder ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME})
  install(FILES ${doc_source}/copyright ${doc_source}/changelog.gz
    DESTINATION ${doc_folder} COMPONENT ${name})
endforeach()

include(CPack)
