# Runs the smoke program with both hosts; each must print what EXPECTED holds.
file(READ ${EXPECTED} expected)
foreach(host EMBEDDED MINIMAL)
  set(folder ${WORK_DIR}/${host})
  file(REMOVE_RECURSE ${folder})
  file(MAKE_DIRECTORY ${folder})
  execute_process(COMMAND ${${host}} ${folder}
    OUTPUT_VARIABLE printed RESULT_VARIABLE result)
  file(WRITE ${folder}/printed.txt "${printed}")
  if(NOT result EQUAL 0 OR NOT printed STREQUAL expected)
    execute_process(COMMAND diff ${EXPECTED} ${folder}/printed.txt)
    message(FATAL_ERROR "${host} host: result ${result}, and not what ${EXPECTED} holds")
  endif()
endforeach()
