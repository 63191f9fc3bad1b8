# Debian packages: cpack --config build/release/CPackConfig.cmake -G DEB

set(CPACK_PACKAGE_NAME code-analyzer)
set(CPACK_PACKAGE_VENDOR "The code analyzer's maintainers")
set(CPACK_PACKAGE_CONTACT "${CODE_ANALYZER_CONTACT}")
if(CODE_ANALYZER_HOMEPAGE)
    set(CPACK_PACKAGE_HOMEPAGE_URL "${CODE_ANALYZER_HOMEPAGE}")
endif()
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages) # in the checkout itself they would be taken for changes
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli checks plugin check workbench dev check_dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# The packages that programs and libraries need are computed from them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/cmake/DebianScripts.cmake)
set(same "(= ${PROJECT_VERSION}-1)")

# debian_package(<component> <name> <section> <depends, beside what is computed> <summary> <description>)
macro(debian_package component name section depends summary description)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${depends}")
    set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${description}")
endmacro()

debian_package(cli code-analyzer devel "libcodeanalyzerchecks1 ${same}" "checker for PHP, HTML and CSS: command line and language server"
"Finds mistakes in PHP files, HTML and style sheets, also in templates. It
checks files, folders and what an editor has open, and writes reports for
people and for other programs.")

# debian_library(<component> <library> ...): the same for a shared library, and what programs that need it depend on.
macro(debian_library component library name)
    debian_package(${component} ${name} libs "" ${ARGN})
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/debian/${name}/shlibs
        CONTENT "${library} ${PROJECT_VERSION_MAJOR} ${name} (>= ${PROJECT_VERSION})\n")
    set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA
        "${CMAKE_SOURCE_DIR}/packaging/triggers;${CMAKE_BINARY_DIR}/debian/${name}/shlibs")
endmacro()

debian_library(checks libCodeAnalyzerChecks libcodeanalyzerchecks1
"checker for PHP, HTML and CSS: checks without a window"
"What the command line and the language server check with, for hosts in C++
that bring a parsing service of their own. Programs in other languages use
libcodeanalyzercheck1.")

debian_library(plugin libCodeAnalyzer libcodeanalyzer1 "checker for PHP, HTML and CSS: plug-in for IDEs"
"The plug-in that an IDE loads to show mistakes in PHP, HTML and style sheets
while they are typed, with its list of errors.")

debian_library(check libCodeAnalyzerCheck libcodeanalyzercheck1 "checker for PHP, HTML and CSS: C library"
"For programs of any language that want to have texts checked: they hand over
a text and receive records. It needs no window and no event loop.")

debian_package(workbench code-analyzer-workbench editors "code-analyzer ${same}, libcodeanalyzer1 ${same}"
"editor that shows mistakes in PHP, HTML and CSS"
"A small editor with a project tree, tabs and a list of errors. What is wrong
is marked in the text a moment after the last keystroke; a folder that is
opened is checked in the background.")

# The one version of Boost that the library understands.
math(EXPR next_boost "${Boost_MINOR_VERSION} + 1")
set(boost "libboost-dev (>= ${Boost_MAJOR_VERSION}.${Boost_MINOR_VERSION}), libboost-dev (<< ${Boost_MAJOR_VERSION}.${next_boost})")
debian_package(dev libcodeanalyzer-dev libdevel
"libcodeanalyzer1 ${same}, libcodeanalyzerchecks1 ${same}, qtbase5-dev, ${boost}"
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
