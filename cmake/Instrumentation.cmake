# Warnings for every target, and the instrumentation that a preset asks for.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(EXPRPARSER_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()
# A unity build includes source files, and g++ takes them for headers: there a class with a member
# of an unnamed namespace is no mistake.
if((CMAKE_UNITY_BUILD OR EXPRPARSER_UNITY_HOSTS) AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wno-subobject-linkage)
endif()

if(EXPRPARSER_INSTRUMENT STREQUAL "sanitize")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
elseif(EXPRPARSER_INSTRUMENT STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(EXPRPARSER_INSTRUMENT STREQUAL "fuzz")
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
elseif(EXPRPARSER_INSTRUMENT STREQUAL "coverage")
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
elseif(EXPRPARSER_INSTRUMENT)
  message(FATAL_ERROR "EXPRPARSER_INSTRUMENT is sanitize, thread, fuzz or coverage, "
                      "not ${EXPRPARSER_INSTRUMENT}")
endif()
