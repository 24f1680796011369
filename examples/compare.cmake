# Runs PROGRAM and compares what it writes to standard output with the file EXPECTED.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}: ${error}")
endif()
file(READ ${EXPECTED} expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} wrote\n${output}\ninstead of\n${expected}")
endif()
