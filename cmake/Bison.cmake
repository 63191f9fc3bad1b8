find_program(BISON bison REQUIRED)

# Generates ${CMAKE_CURRENT_BINARY_DIR}/<name>.cpp from <name>.y and appends it to the list `out`.
function(bison_sources out)
    foreach(grammar IN LISTS ARGN)
        get_filename_component(name ${grammar} NAME_WE)
        get_filename_component(path ${grammar} ABSOLUTE)
        get_filename_component(folder ${path} DIRECTORY)
        file(GLOB skeletons CONFIGURE_DEPENDS ${folder}/*.m4)
        set(target ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
        add_custom_command(
            OUTPUT ${target}
            COMMAND ${BISON} -Wall -Werror --no-lines -o ${target} ${path}
            DEPENDS ${path} ${skeletons}
            COMMENT "bison ${name}.y"
            VERBATIM)
        list(APPEND generated ${target})
    endforeach()
    set(${out} ${${out}} ${generated} PARENT_SCOPE)
endfunction()
