# Flags for every target of the project.
add_library(deskbroom_flags INTERFACE)
target_compile_features(deskbroom_flags INTERFACE cxx_std_23)
target_compile_definitions(deskbroom_flags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_CONTEXTLESS_CONNECT # known from Qt 6.7 on
    QT_NO_FOREACH
    QT_NO_KEYWORDS # GLib's headers use `signals` as a name
    QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(deskbroom_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wold-style-cast -Wnon-virtual-dtor
    $<$<BOOL:${DESKBROOM_WARNINGS_AS_ERRORS}>:-Werror>)
if(DESKBROOM_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(deskbroom_flags INTERFACE ${sanitizers})
    target_link_options(deskbroom_flags INTERFACE ${sanitizers})
endif()

# deskbroom_library(NAME [SUBFOLDER ...] LINKS ...)
#
# One folder of src/ as one static library. It sees only the headers of what it links, so an include
# that points upwards doesn't compile. Every file of the folder belongs to it: a file per type, and
# none that is not built.
function(deskbroom_library name)
    cmake_parse_arguments(arg "" "" "SUBFOLDERS;LINKS;PRIVATE_LINKS" ${ARGN})
    set(globs "*.h" "*.cpp")
    foreach(subfolder IN LISTS arg_SUBFOLDERS)
        list(APPEND globs "${subfolder}/*.h" "${subfolder}/*.cpp")
    endforeach()
    file(GLOB sources CONFIGURE_DEPENDS ${globs})
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    foreach(subfolder IN LISTS arg_SUBFOLDERS)
        target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/${subfolder})
    endforeach()
    target_link_libraries(${name} PUBLIC deskbroom_flags ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
endfunction()
