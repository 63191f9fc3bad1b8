# What is installed where, in seven parts: `cli` (command line, server), `checks` (what it loads), `plugin` (what an IDE
# loads), `check` (the C library), what programs are built with (`dev` for the first two libraries, `check_dev` for the
# third), and `workbench`.

# The SDK's target for others, under its own name: nothing of this build may leak into it.
add_library(sdk_export INTERFACE)
set_target_properties(sdk_export PROPERTIES EXPORT_NAME SDK)
target_compile_features(sdk_export INTERFACE cxx_std_20)
target_include_directories(sdk_export INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/code-analyzer>)
target_link_libraries(sdk_export INTERFACE Qt5::Core Qt5::Gui Qt5::Widgets Boost::headers)

install(TARGETS CodeAnalyzerChecks LIBRARY COMPONENT checks NAMELINK_COMPONENT dev)
install(TARGETS CodeAnalyzer LIBRARY COMPONENT plugin NAMELINK_COMPONENT dev)
install(TARGETS CodeAnalyzerCheck LIBRARY COMPONENT check NAMELINK_COMPONENT check_dev)
install(TARGETS code-analyzer RUNTIME COMPONENT cli)
install(TARGETS code-analyzer-workbench RUNTIME COMPONENT workbench)

# All that there is to read lies in one folder, so that links between pages lead somewhere; the server finds it there.
set(documents ${CMAKE_INSTALL_DATADIR}/doc/code-analyzer)
# moved_page(<page> <name> <link> <link there>): a page as it is there.
function(moved_page page name link there)
    file(READ ${page} text)
    string(REPLACE "](${link}" "](${there}" text "${text}")
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/documents/${name} CONTENT "${text}" @ONLY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page})
    install(FILES ${CMAKE_BINARY_DIR}/documents/${name} DESTINATION ${documents} COMPONENT cli)
endfunction()
moved_page(CHANGELOG.md versions.md docs/ "")
moved_page(docs/README.md README.md ../CHANGELOG.md versions.md)
install(DIRECTORY docs/ DESTINATION ${documents} COMPONENT cli
    FILES_MATCHING PATTERN "*.md" PATTERN "*.json" PATTERN "*.png" PATTERN "architecture.md" EXCLUDE
    PATTERN "README.md" EXCLUDE)
install(DIRECTORY examples/host DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libcodeanalyzer-dev/examples COMPONENT dev)
install(DIRECTORY examples/c examples/python
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libcodeanalyzercheck-dev/examples COMPONENT check_dev)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -R -d "${CODE_ANALYZER_DATE} 12:00"
    OUTPUT_VARIABLE changelog_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(packaging/changelog.in ${CMAKE_BINARY_DIR}/changelog.Debian @ONLY)
execute_process(COMMAND gzip -9nkf ${CMAKE_BINARY_DIR}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
set(package_names code-analyzer libcodeanalyzerchecks1 libcodeanalyzer1 libcodeanalyzercheck1 code-analyzer-workbench libcodeanalyzer-dev
    libcodeanalyzercheck-dev)
set(package_components cli checks plugin check workbench dev check_dev)
foreach(package component IN ZIP_LISTS package_names package_components)
    install(FILES packaging/copyright ${CMAKE_BINARY_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endforeach()

if(CODE_ANALYZER_HOMEPAGE)
    set(homepage_element "<url type=\"homepage\">${CODE_ANALYZER_HOMEPAGE}</url>")
endif()
configure_file(packaging/code-analyzer-workbench.metainfo.xml.in
    ${CMAKE_BINARY_DIR}/code-analyzer-workbench.metainfo.xml @ONLY)
install(FILES packaging/code-analyzer-workbench.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT workbench)
install(FILES ${CMAKE_BINARY_DIR}/code-analyzer-workbench.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT workbench)
install(FILES packaging/code-analyzer-workbench.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT workbench)
foreach(size 16 22 24 32 48 64 128 256)
    install(FILES packaging/icons/${size}.png RENAME code-analyzer-workbench.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps COMPONENT workbench)
endforeach()

# Man pages and completions say what the programs say.
find_program(HELP2MAN help2man REQUIRED)
set(manual ${CMAKE_BINARY_DIR}/manual)
add_custom_command(OUTPUT ${manual}/man1/code-analyzer.1.gz
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/make-manual.sh ${CMAKE_BINARY_DIR}/bin ${PROJECT_VERSION}
        ${CODE_ANALYZER_DATE} ${manual}
    DEPENDS code-analyzer code-analyzer-workbench scripts/make-manual.sh
    COMMENT "Making man pages and completions" VERBATIM)
add_custom_target(manual ALL DEPENDS ${manual}/man1/code-analyzer.1.gz)
install(DIRECTORY ${manual}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT cli
    PATTERN "*workbench*" EXCLUDE)
install(FILES ${manual}/man1/code-analyzer-workbench.1.gz
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT workbench)
install(FILES ${manual}/bash/code-analyzer
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT cli)
install(FILES ${manual}/zsh/_code-analyzer
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT cli)
install(FILES ${manual}/fish/code-analyzer.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT cli)

# What ./run builds: all that is installed, also where tests are part of the whole build.
add_custom_target(installed DEPENDS CodeAnalyzer CodeAnalyzerChecks CodeAnalyzerCheck code-analyzer
    code-analyzer-workbench manual)

include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/CodeAnalyzer)
configure_package_config_file(packaging/CodeAnalyzerConfig.cmake.in ${CMAKE_BINARY_DIR}/CodeAnalyzerConfig.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/CodeAnalyzerConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(DIRECTORY SDK/Kesh DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/code-analyzer COMPONENT dev)
install(FILES SDK/CodeAnalyzerCheck.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/code-analyzer COMPONENT check_dev)
install(TARGETS sdk_export EXPORT CodeAnalyzerTargets)
install(EXPORT CodeAnalyzerTargets NAMESPACE CodeAnalyzer:: DESTINATION ${package_dir} COMPONENT dev)
install(FILES ${CMAKE_BINARY_DIR}/CodeAnalyzerConfig.cmake ${CMAKE_BINARY_DIR}/CodeAnalyzerConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT dev)
# They say where they are from where they are, so that the whole may be moved.
file(RELATIVE_PATH up_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(pkgconfig_names code-analyzer code-analyzer-check)
set(pkgconfig_components dev check_dev)
foreach(name component IN ZIP_LISTS pkgconfig_names pkgconfig_components)
    configure_file(packaging/${name}.pc.in ${CMAKE_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${component})
endforeach()
install(DIRECTORY editors/neovim DESTINATION ${documents} COMPONENT cli)
