# The compiler of translation catalogues, which comes without a CMake module of its own.
find_program(DESKBROOM_LRELEASE lrelease PATHS /usr/lib/qt6/bin NO_DEFAULT_PATH REQUIRED)

# deskbroom_translations(TARGET FILE ...): compiles catalogues (.ts) into the target's resources, where they
# are `:/translations/NAME.qm`.
function(deskbroom_translations target)
    set(compiled "")
    foreach(source IN LISTS ARGN)
        get_filename_component(name ${source} NAME_WE)
        set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.qm)
        add_custom_command(OUTPUT ${output}
            COMMAND ${DESKBROOM_LRELEASE} -silent ${source} -qm ${output}
            DEPENDS ${source} VERBATIM)
        list(APPEND compiled ${output})
    endforeach()
    qt_add_resources(${target} translations
        PREFIX /translations BASE ${CMAKE_CURRENT_BINARY_DIR} FILES ${compiled})
endfunction()
