# Debian packages of the installed components; scripts/package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME exprparser)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "typed query language for models")
set(CPACK_PACKAGE_VENDOR "The exprparser developers")
set(CPACK_PACKAGE_CONTACT "The exprparser developers <noreply@exprparser.invalid>")
set(CPACK_COMPONENTS_ALL library development program)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(library_package "libexprparser${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME "${library_package}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
file(WRITE "${PROJECT_BINARY_DIR}/deb/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/deb/triggers")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "Compiles short expressions about models into objects that a program evaluates
on a model of its own.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libexprparser-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "The headers of exprparser, its CMake package and its pkg-config file.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME mmq)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "Evaluates expressions on models in XMI and JSON, judges models by rules, and
shows what the compiler makes of an expression.")

include(CPack)
