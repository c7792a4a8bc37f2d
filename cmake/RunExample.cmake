# Runs PROGRAM on the file INPUT; fails unless it ends well and prints what the file EXPECTED holds.
execute_process(COMMAND ${PROGRAM} INPUT_FILE ${INPUT} OUTPUT_VARIABLE printed ERROR_VARIABLE errors
                RESULT_VARIABLE result)
file(READ ${EXPECTED} expected)
if(NOT result EQUAL 0 OR NOT printed STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} < ${INPUT} ended with ${result}\nprinted:\n${printed}\nexpected:\n${expected}\n${errors}")
endif()
