# Plants each fault that CheckLayout.cmake looks for in a folder under SCRATCH, and wants it found there; and wants
# nothing found where there is no fault.
function(expect label outcome file content)
  file(REMOVE_RECURSE ${SCRATCH})
  file(WRITE ${SCRATCH}/Platform/Plain.h "#include \"Export.h\"\n// see Framework/Other.h\n")
  file(WRITE ${SCRATCH}/Framework/Other.h "#include \"../Platform/Plain.h\"\n")
  file(WRITE ${SCRATCH}/${file} "${content}")
  execute_process(COMMAND ${CMAKE_COMMAND} -D ROOT=${SCRATCH} -P ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/CheckLayout.cmake
                  RESULT_VARIABLE result ERROR_VARIABLE output)
  if(outcome STREQUAL quiet AND NOT result EQUAL 0)
    message(SEND_ERROR "${label}: found in error:\n${output}")
  elseif(outcome STREQUAL found AND (result EQUAL 0 OR NOT output MATCHES "${file}"))
    message(SEND_ERROR "${label}: not found:\n${output}")
  endif()
endfunction()

expect("no fault" quiet Framework/Third.h "#include \"Other.h\"\n")
expect("an include of the other folder" found Platform/Bad.h "#include \"../Framework/Other.h\"\n")
expect("the same, spaced" found Platform/detail/Bad.cpp " #  include <Framework/Other.h>\n")
expect("a header named like one of C's" found Platform/Locale.h "")
expect("a header named like one of C++'s" found Framework/Format "")
