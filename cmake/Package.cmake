# Debian packages: cpack --config build/release/CPackConfig.cmake -G DEB

set(CPACK_PACKAGE_NAME code-analyzer)
set(CPACK_PACKAGE_VENDOR "The code analyzer's maintainers")
set(CPACK_PACKAGE_CONTACT "${CODE_ANALYZER_CONTACT}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${CODE_ANALYZER_HOMEPAGE}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages) # in the checkout itself they would be taken for changes
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli plugin check workbench dev check_dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# The packages that programs and libraries need are computed from them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(same "(= ${PROJECT_VERSION}-1)")

# debian_package(<component> <name> <section> <depends, beside what is computed> <summary> <description>)
macro(debian_package component name section depends summary description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${description}")
endmacro()

debian_package(cli code-analyzer devel "" "checker for PHP, HTML and CSS: command line and language server"
"Finds mistakes in PHP files, HTML and style sheets, also in templates. It
checks files, folders and what an editor has open, and writes reports for
people and for other programs.")
set(CPACK_DEBIAN_CLI_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/triggers)

debian_package(plugin libcodeanalyzer1 libs "" "checker for PHP, HTML and CSS: plug-in for IDEs"
"The plug-in that an IDE loads to show mistakes in PHP, HTML and style sheets
while they are typed, with its list of errors.")
set(CPACK_DEBIAN_PLUGIN_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/triggers)

debian_package(check libcodeanalyzercheck1 libs "" "checker for PHP, HTML and CSS: C library"
"For programs of any language that want to have texts checked: they hand over
a text and receive records. It needs no window and no event loop.")
set(CPACK_DEBIAN_CHECK_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/triggers)

debian_package(workbench code-analyzer-workbench editors "code-analyzer ${same}, libcodeanalyzer1 ${same}"
"editor that shows mistakes in PHP, HTML and CSS"
"A small editor with a project tree, tabs and a list of errors. What is wrong
is marked in the text a moment after the last keystroke; a folder that is
opened is checked in the background.")

debian_package(dev libcodeanalyzer-dev libdevel
"code-analyzer ${same}, libcodeanalyzer1 ${same}, qtbase5-dev, libboost-dev (>= 1.74)"
"interfaces for hosts of the code validator"
"Headers, a CMake package and a pkg-config file for programs that load
libCodeAnalyzer.so.1, with a small host as an example.")
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)

debian_package(check_dev libcodeanalyzercheck-dev libdevel "libcodeanalyzercheck1 ${same}, libc6-dev"
"C header of the code validator's library"
"The header and a pkg-config file for programs that link
libCodeAnalyzerCheck.so.1, with examples in C and Python.")
set(CPACK_DEBIAN_CHECK_DEV_PACKAGE_SHLIBDEPS OFF)

include(CPack)
