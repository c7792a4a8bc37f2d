# The one list of flags that every target of this project is compiled with. They are private: no user of the library
# inherits them.
function(quill_compile_options target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /utf-8 /fp:precise
      $<$<BOOL:${QUILL_WARNINGS_AS_ERRORS}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Woverloaded-virtual -ffp-contract=off
      $<$<BOOL:${QUILL_WARNINGS_AS_ERRORS}>:-Werror>
      $<$<BOOL:${QUILL_FUZZ}>:-fsanitize=fuzzer-no-link>)
    # GCC 12 sees overlapping copies in "text" + std::string where there are none.
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
  endif()
endfunction()
