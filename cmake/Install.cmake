# What `cmake --install` puts in place, in three components: library, development and program.
include(CMakePackageConfigHelpers)

set(header_folder "${CMAKE_INSTALL_INCLUDEDIR}/exprparser")
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/exprparser")

install(TARGETS orv fliodram exprparser EXPORT exprparser
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    COMPONENT library NAMELINK_COMPONENT development
  FILE_SET HEADERS DESTINATION "${header_folder}" COMPONENT development
  INCLUDES DESTINATION "${header_folder}")

# find_package(exprparser): before 1.0, a minor version may break what was built for another.
install(EXPORT exprparser NAMESPACE exprparser:: FILE exprparser-config.cmake
  DESTINATION "${package_folder}" COMPONENT development)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/exprparser-config-version.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/exprparser-config-version.cmake"
  DESTINATION "${package_folder}" COMPONENT development)

# pkg-config exprparser: the folders are found from where the file is, so that a tree can move.
file(RELATIVE_PATH prefix_from_pkgconfig
  "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${PROJECT_SOURCE_DIR}/cmake/exprparser.pc.in"
  "${PROJECT_BINARY_DIR}/exprparser.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/exprparser.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

if(EXPRPARSER_PROGRAM)
  install(TARGETS mmq DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT program)
  set(generated "${PROJECT_BINARY_DIR}/tools/mmq/generated")
  if(NOT EXPRPARSER_INSTRUMENT)
    install(FILES "${generated}/mmq.1.gz"
      DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT program)
    install(FILES "${generated}/mmq"
      DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT program)
    # Debian looks elsewhere for what its packages bring.
    set(zsh_folder site-functions)
    if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
      set(zsh_folder vendor-completions)
    endif()
    install(FILES "${generated}/_mmq"
      DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder}" COMPONENT program)
    install(FILES "${generated}/mmq.fish"
      DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT program)
  endif()
endif()
