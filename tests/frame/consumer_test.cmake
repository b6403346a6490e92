# Installs this build into a folder of its own, moves the folder, and builds and runs a program
# outside the tree with what is installed there.
#
#   cmake -D MODE=package|pkgconfig|layout -D BINARY_DIR=... -D SOURCE_DIR=... -D WORK_DIR=...
#         -D GENERATOR=... -D COMPILER=... -D FLAGS=... -D VERSION=... -D PKG_CONFIG=...
#         -P consumer_test.cmake
cmake_minimum_required(VERSION 3.25)
set(consumer ${CMAKE_CURRENT_LIST_DIR}/consumer)
set(prefix ${WORK_DIR}/moved)

function(run)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "OUTPUT" "COMMAND")
  execute_process(COMMAND ${arg_COMMAND}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT status EQUAL 0)
    list(JOIN arg_COMMAND " " line)
    message(FATAL_ERROR "${line}: failed (${status})\n${output}${errors}")
  endif()
  if(arg_OUTPUT)
    string(STRIP "${output}" output)
    set(${arg_OUTPUT} "${output}" PARENT_SCOPE)
  endif()
endfunction()

function(expect actual expected)
  if(NOT "${actual}" STREQUAL "${expected}")
    message(FATAL_ERROR "got \"${actual}\", expected \"${expected}\"")
  endif()
endfunction()

# What pkg-config answers in the environment of this test.
function(ask_pkg_config result)
  file(GLOB_RECURSE found ${prefix}/*/uxtree_Utils.pc)
  cmake_path(GET found PARENT_PATH folder)
  run(OUTPUT answer COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${folder} ${PKG_CONFIG} ${ARGN})
  set(${result} "${answer}" PARENT_SCOPE)
endfunction()

function(install_and_move)
  run(COMMAND ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR}/installed)
  file(RENAME ${WORK_DIR}/installed ${prefix})
endfunction()

function(test_package)
  install_and_move()
  set(build ${WORK_DIR}/build)
  run(COMMAND ${CMAKE_COMMAND} -S ${consumer} -B ${build} -G ${GENERATOR}
    -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_CXX_FLAGS=${FLAGS}
    -D CMAKE_PREFIX_PATH=${prefix} -D UXTREE_VERSION=${VERSION})
  run(COMMAND ${CMAKE_COMMAND} --build ${build})
  run(OUTPUT output COMMAND ${build}/consumer)
  expect("${output}" "<a>7</a>")
endfunction()

function(test_pkgconfig)
  install_and_move()
  ask_pkg_config(version --modversion uxtree_Utils)
  expect("${version}" ${VERSION})
  ask_pkg_config(options --cflags --libs uxtree_Utils)
  separate_arguments(options UNIX_COMMAND "${options}")
  separate_arguments(flags UNIX_COMMAND "${FLAGS}")
  ask_pkg_config(libraries --variable=libdir uxtree_Utils)

  run(COMMAND ${COMPILER} ${flags} -std=c++17 ${consumer}/main.cpp -o ${WORK_DIR}/consumer
    ${options})
  run(OUTPUT output COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libraries}
    ${WORK_DIR}/consumer)
  expect("${output}" "<a>7</a>")
endfunction()

# Where the pkg-config files point when the library folder is deeper or an absolute path.
function(expect_folders libdir expectedLibraries)
  set(build ${WORK_DIR}/build)
  file(REMOVE_RECURSE ${build} ${prefix})
  run(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${build} -G ${GENERATOR}
    -D CMAKE_CXX_COMPILER=${COMPILER} -D CMAKE_INSTALL_LIBDIR=${libdir}
    -D CMAKE_INSTALL_PREFIX=${prefix} -D UXTREE_BUILD_TESTS=OFF -D UXTREE_BUILD_TOOL=OFF)
  cmake_path(ABSOLUTE_PATH libdir BASE_DIRECTORY ${prefix} OUTPUT_VARIABLE folder)
  file(INSTALL ${build}/uxtree_host.pc ${build}/uxtree_Utils.pc DESTINATION ${folder}/pkgconfig)

  ask_pkg_config(libraries --variable=libdir uxtree_Utils)
  ask_pkg_config(headers --variable=includedir uxtree_host)
  cmake_path(NORMAL_PATH libraries)
  cmake_path(NORMAL_PATH headers)
  expect("${libraries}" ${expectedLibraries})
  expect("${headers}" ${prefix}/include)
endfunction()

function(test_layout)
  expect_folders(lib ${prefix}/lib)
  expect_folders(lib64 ${prefix}/lib64)
  expect_folders(lib/x86_64-linux-gnu ${prefix}/lib/x86_64-linux-gnu)
  expect_folders(${prefix}/elsewhere/lib ${prefix}/elsewhere/lib)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
cmake_language(CALL test_${MODE})
file(REMOVE_RECURSE ${WORK_DIR})
