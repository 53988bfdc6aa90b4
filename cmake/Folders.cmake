# The two shapes of target in this tree: a folder of sources, and a library made of folders.

# Compiles one folder of src/ as an object library of the folder's name. Calls within a library are
# not meant to be replaced by somebody else's. Two fields are not moved as one vector: pointers and
# places are mostly read soon after their parts were written one by one, and a load of more than was
# stored at once has to wait until all of it has left the processor.
function(add_source_folder name)
  add_library(folder_${name} OBJECT ${ARGN})
  target_compile_options(folder_${name} PRIVATE -fno-tree-slp-vectorize -fno-semantic-interposition)
  target_include_directories(folder_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
endfunction()

# Links folders into a shared library <name>, which others link as exprparser::<name>, whose symbols
# the version script cmake/lib<name>.map lists and whose HEADERS are installed, and into a static
# library <name>_static, which hides nothing, for the program, the tests, the fuzzers and the
# benchmarks.
function(add_folder_library name)
  cmake_parse_arguments(ARG "" "" "FOLDERS;LINK;LINK_PRIVATE;HEADERS" ${ARGN})
  foreach(kind SHARED STATIC)
    set(target ${name})
    if(kind STREQUAL "STATIC")
      set(target ${name}_static)
    endif()
    add_library(${target} ${kind})
    foreach(folder ${ARG_FOLDERS})
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:folder_${folder}>)
    endforeach()
    target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>")
    target_link_libraries(${target} PRIVATE ${ARG_LINK_PRIVATE} Threads::Threads)
    foreach(library ${ARG_LINK})
      if(kind STREQUAL "STATIC")
        target_link_libraries(${target} PUBLIC ${library}_static)
      else()
        target_link_libraries(${target} PUBLIC ${library})
      endif()
    endforeach()
  endforeach()

  add_library(exprparser::${name} ALIAS ${name})
  target_sources(${name} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${ARG_HEADERS})
  target_compile_features(${name} INTERFACE cxx_std_20)

  set(map "${PROJECT_SOURCE_DIR}/cmake/lib${name}.map")
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS "${map}")
  target_link_options(${name} PRIVATE "LINKER:--version-script=${map}")
  if(NOT EXPRPARSER_INSTRUMENT)
    target_link_options(${name} PRIVATE "LINKER:--no-undefined")
  endif()
endfunction()
