# cmake -DONE=PROGRAM -DOTHER=PROGRAM -P CompareOutputs.cmake: fails unless both succeed and print the
# same, which is something.
foreach(program ONE OTHER)
  execute_process(COMMAND ${${program}} OUTPUT_VARIABLE ${program}_PRINTED ERROR_VARIABLE errors
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${${program}} failed: ${result}\n${${program}_PRINTED}${errors}")
  endif()
endforeach()
if(NOT ONE_PRINTED STREQUAL OTHER_PRINTED)
  message(FATAL_ERROR "${ONE} printed:\n${ONE_PRINTED}\n${OTHER} printed:\n${OTHER_PRINTED}")
endif()
if(NOT ONE_PRINTED MATCHES "event: iglu:.*completion: false")
  message(FATAL_ERROR "Both printed:\n${ONE_PRINTED}")
endif()
