find_program(RE2C re2c REQUIRED)

# Generates ${CMAKE_CURRENT_BINARY_DIR}/<name>.cpp from <name>.re and appends it to the list `out`.
function(re2c_sources out)
    foreach(grammar IN LISTS ARGN)
        get_filename_component(name ${grammar} NAME_WE)
        get_filename_component(path ${grammar} ABSOLUTE)
        set(target ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
        add_custom_command(
            OUTPUT ${target}
            COMMAND ${RE2C} -W -Werror -c -u --tags --no-generation-date --no-debug-info -o ${target} ${path}
            DEPENDS ${path}
            COMMENT "re2c ${name}.re"
            VERBATIM)
        list(APPEND generated ${target})
    endforeach()
    set(${out} ${${out}} ${generated} PARENT_SCOPE)
endfunction()
