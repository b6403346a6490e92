# Warnings and sanitizers, as interface targets; everything built here links to one of them.
add_library(uxtree_warnings INTERFACE)
target_compile_options(uxtree_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wimplicit-fallthrough
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wcast-qual>
  $<$<BOOL:${UXTREE_WERROR}>:-Werror>
  -fno-semantic-interposition)

# The libraries.
add_library(uxtree_options INTERFACE)
# Tests, tools and examples: compiled for short runs, so neither optimised nor given the guards that
# take longest to compile and whose faults show all the same.
add_library(uxtree_program_options INTERFACE)
target_compile_options(uxtree_program_options INTERFACE $<$<CONFIG:Debug>:-O0>)

foreach(options uxtree_options uxtree_program_options)
  target_link_libraries(${options} INTERFACE uxtree_warnings)
  if(UXTREE_SANITIZE)
    target_compile_options(${options} INTERFACE
      -fsanitize=${UXTREE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${options} INTERFACE -fsanitize=${UXTREE_SANITIZE})
  endif()
endforeach()
# The script language aligns values to four bytes, strings among them, whose functions all sources
# share. The preset clang builds no scripts and keeps this check.
if(UXTREE_SANITIZE MATCHES "undefined" AND UXTREE_BUILD_SCRIPT)
  target_compile_options(uxtree_options INTERFACE -fno-sanitize=alignment)
endif()
if(UXTREE_SANITIZE MATCHES "undefined")
  target_compile_options(uxtree_program_options INTERFACE -fno-sanitize=null,alignment,vptr)
endif()

# Sources of one kind share most of what they include: compiled a few at a time, they take a fraction
# of the time. Not for clang-tidy, which tells of one source at a time.
function(uxtree_compile_together target)
  if(NOT CMAKE_CXX_CLANG_TIDY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 6)
  endif()
endfunction()
