# Installs this build into a folder of its own, moves the folder, and builds and runs a program
# outside the tree with what is installed there.
#
#   cmake -D MODE=package|pkgconfig|layout|c -D BINARY_DIR=... -D SOURCE_DIR=... -D WORK_DIR=...
#         -D GENERATOR=... -D COMPILER=... -D FLAGS=... -D VERSION=... -D PKG_CONFIG=...
#         -D C_COMPILER=... -D C_FLAGS=... -D SANITIZE=... -D PYTHON=... -D VALGRIND=...
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

# The first steps in C and in Python's ctypes, each built or run with what is installed alone. Under
# a sanitizer Python is left out, since only a program built with it can load such libraries;
# valgrind is for libraries without one.
set(first_steps "30 values, the first is 1: 1
Find/LocalPoints = 12
theme \"before\": 30 values
Find/LocalPoints = 4
line 2, column 8: (memory):2:8: mismatched tag: expected </b>")

function(expect_first_steps)
  set(files ${SOURCE_DIR}/examples/dialog.xml ${WORK_DIR}/result.xml ${WORK_DIR}/theme.xml)
  run(OUTPUT output COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libraries} ${ARGN} ${files})
  expect("${output}" "${first_steps}")
  file(READ ${WORK_DIR}/result.xml result)
  if(NOT result MATCHES ">12</LocalPoints>")
    message(FATAL_ERROR "the changed value is not in the saved tree")
  endif()
  file(REMOVE ${WORK_DIR}/result.xml ${WORK_DIR}/theme.xml)
endfunction()

# A path in C, run under whatever comes first.
function(expect_selection)
  run(OUTPUT output COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${libraries} ${ARGN}
    "//Find/*[. < 10]/@Label" ${SOURCE_DIR}/examples/dialog.xml)
  expect("${output}" "LocalPoints@Label: Local Points")
endfunction()

function(test_c)
  install_and_move()
  ask_pkg_config(version --modversion uxtree_c)
  expect("${version}" ${VERSION})
  ask_pkg_config(options --cflags --libs uxtree_c)
  foreach(library uxtree_kit uxtree_Utils uxtree_host)
    if(NOT "${options} " MATCHES "-l${library} ")
      message(FATAL_ERROR "uxtree_c does not name ${library}: ${options}")
    endif()
  endforeach()
  separate_arguments(options UNIX_COMMAND "${options}")
  separate_arguments(flags UNIX_COMMAND "${C_FLAGS}")
  ask_pkg_config(libraries --variable=libdir uxtree_c)

  run(COMMAND ${C_COMPILER} ${flags} -std=c99 -pedantic-errors -Wall -Wextra -Werror
    ${SOURCE_DIR}/examples/first_steps.c -o ${WORK_DIR}/first_steps ${options})
  expect_first_steps(${WORK_DIR}/first_steps)
  run(COMMAND ${C_COMPILER} ${flags} -std=c99 -pedantic-errors -Wall -Wextra -Werror
    ${SOURCE_DIR}/examples/select.c -o ${WORK_DIR}/select ${options})
  expect_selection(${WORK_DIR}/select)
  if(NOT SANITIZE)
    expect_first_steps(${PYTHON} ${SOURCE_DIR}/examples/first_steps_ctypes.py
      ${libraries}/libuxtree_kit.so)
    if(VALGRIND)
      set(checked ${VALGRIND} -q --leak-check=full --show-leak-kinds=all --error-exitcode=9
        --suppressions=${consumer}/valgrind.supp)
      expect_first_steps(${checked} ${WORK_DIR}/first_steps)
      expect_selection(${checked} ${WORK_DIR}/select)
    else()
      message(FATAL_ERROR "valgrind is missing")
    endif()
  endif()
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
