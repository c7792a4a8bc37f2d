# Runs PROGRAM on the file INPUT, NAME.in, in that file's folder, and compares what it prints with NAME.out. Beside them
# may stand:
#   NAME.args     its arguments, as a shell would split them
#   NAME.status   the exit status, instead of 0
#   NAME.err      what must stand in its standard error, which otherwise must be empty
cmake_policy(VERSION 3.25)
function(read_beside extension default result)
  cmake_path(REPLACE_EXTENSION INPUT ${extension} OUTPUT_VARIABLE file)
  set(text "${default}")
  if(EXISTS ${file})
    file(READ ${file} text)
  endif()
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

read_beside(out "" expected)
read_beside(err "" expected_errors)
read_beside(args "" arguments)
read_beside(status 0 expected_status)
separate_arguments(arguments UNIX_COMMAND "${arguments}")
string(STRIP "${expected_status}" expected_status)
string(STRIP "${expected_errors}" expected_errors)

cmake_path(GET INPUT PARENT_PATH folder)
execute_process(COMMAND ${PROGRAM} ${arguments} INPUT_FILE ${INPUT} WORKING_DIRECTORY ${folder}
                OUTPUT_VARIABLE printed ERROR_VARIABLE errors RESULT_VARIABLE status)
string(FIND "${errors}" "${expected_errors}" place)
if(expected_errors STREQUAL "" AND NOT errors STREQUAL "")
  set(place -1)
endif()
if(NOT status EQUAL expected_status OR NOT printed STREQUAL expected OR place EQUAL -1)
  message(FATAL_ERROR "${INPUT} ended with ${status}, expected ${expected_status}\nprinted:\n${printed}\n"
    "expected:\n${expected}\nerrors:\n${errors}\nexpected among them:\n${expected_errors}")
endif()
