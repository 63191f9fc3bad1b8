# Debian packages: cpack --config build/release/CPackConfig.cmake -G DEB

set(CPACK_PACKAGE_NAME code-analyzer)
set(CPACK_PACKAGE_VENDOR "The code analyzer's maintainers")
set(CPACK_PACKAGE_CONTACT "The code analyzer's maintainers <maintainers@code-analyzer.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages) # in the checkout itself they would be taken for changes
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL cli workbench dev)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# The packages that programs and libraries need are computed from them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(CPACK_DEBIAN_CLI_PACKAGE_NAME code-analyzer)
set(CPACK_DEBIAN_CLI_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_CLI_PACKAGE_CONTROL_EXTRA ${CMAKE_SOURCE_DIR}/packaging/triggers)
set(CPACK_COMPONENT_CLI_DESCRIPTION "checker for PHP, HTML and CSS: command line, language server and plug-in
Finds syntax errors in PHP files, and unknown names in HTML and style sheets,
also in templates. It checks files, folders and what an editor has open, and
 writes reports for people and for other programs.

The package also holds libCodeAnalyzer.so.1, the plug-in that an IDE loads.")

set(CPACK_DEBIAN_WORKBENCH_PACKAGE_NAME code-analyzer-workbench)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS "code-analyzer (= ${PROJECT_VERSION}-1)")
set(CPACK_COMPONENT_WORKBENCH_DESCRIPTION "editor that shows mistakes in PHP, HTML and CSS
A small editor with a project tree, tabs and a list of errors. What is wrong
is marked in the text a moment after the last keystroke; a folder that is
opened is checked in the background.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcodeanalyzer-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "code-analyzer (= ${PROJECT_VERSION}-1), qtbase5-dev, libboost-dev")
set(CPACK_COMPONENT_DEV_DESCRIPTION "interfaces for hosts of the code validator
Headers, a CMake package and a pkg-config file for programs that load
libCodeAnalyzer.so.1, with a small host as an example.")

include(CPack)
