# Run at build time: writes the commit that is built, if git knows it, to FILE when it has changed.
execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --abbrev=12 --exclude=*
    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
file(CONFIGURE OUTPUT ${FILE} CONTENT "#define CODE_ANALYZER_COMMIT \"${commit}\"\n")
