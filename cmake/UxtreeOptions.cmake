# Warnings and sanitizers, as one interface target that everything built here links to.
add_library(uxtree_options INTERFACE)
target_compile_options(uxtree_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Wimplicit-fallthrough
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wcast-qual>
  $<$<BOOL:${UXTREE_WERROR}>:-Werror>
  -fno-semantic-interposition)
if(UXTREE_SANITIZE)
  target_compile_options(uxtree_options INTERFACE
    -fsanitize=${UXTREE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(uxtree_options INTERFACE -fsanitize=${UXTREE_SANITIZE})
endif()
