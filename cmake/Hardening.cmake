# What Debian builds with, for the programs that users run; the other presets have checks of their own.

# Programs are position-independent by the compiler's default. Asked for by -fPIE they would be so in another way than
# Qt's libraries allow: link-time optimisation then takes addresses of signals that are not those of the libraries.
set(hardening -fstack-protector-strong -fstack-clash-protection -Wformat -Werror=format-security -D_FORTIFY_SOURCE=2)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
    list(APPEND hardening -fcf-protection)
endif()
# The place of the build must not be seen in what comes out.
list(APPEND hardening -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=.)
add_compile_options("$<$<CONFIG:Release>:${hardening}>")
add_link_options(-Wl,-z,relro)
