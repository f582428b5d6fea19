# The fonts that Debian doesn't have. They lie beside the program in the build tree, in the layout in which they
# are installed, and so does a configuration with them: FONTCONFIG_FILE names it to a program that is run there.

# fetch_packages(FOLDER): has npm put the packages of packaging/fonts into FOLDER, unless they are there already.
function(fetch_packages folder)
    set(source ${PROJECT_SOURCE_DIR}/packaging/fonts)
    foreach(file .npmrc package.json package-lock.json)
        configure_file(${source}/${file} ${folder}/${file} COPYONLY)
    endforeach()
    file(SHA256 ${source}/package-lock.json wanted)
    set(stamp ${folder}/node_modules/.fetched) # gone with them
    if(EXISTS ${stamp})
        file(READ ${stamp} fetched)
        if(fetched STREQUAL wanted)
            return()
        endif()
    endif()

    set(way_out "-DDESKBROOM_FONTS=OFF builds without fonts of the program's own.")
    find_program(DESKBROOM_NPM npm)
    if(NOT DESKBROOM_NPM)
        message(FATAL_ERROR "npm, which fetches the program's fonts, isn't installed. ${way_out}")
    endif()
    message(STATUS "Fetching the program's fonts")
    execute_process(COMMAND ${DESKBROOM_NPM} ci WORKING_DIRECTORY ${folder} TIMEOUT 120
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message("${output}")
        message(FATAL_ERROR "npm couldn't fetch the program's fonts (${status}). ${way_out}")
    endif()
    file(WRITE ${stamp} ${wanted})
endfunction()

function(deskbroom_fonts)
    set(fonts ${CMAKE_BINARY_DIR}/share/fonts/deskbroom)
    string(REPLACE "&" "&amp;" fonts_in_xml ${fonts})
    configure_file(
        ${PROJECT_SOURCE_DIR}/packaging/fonts/fonts.conf.in ${CMAKE_BINARY_DIR}/fonts.conf @ONLY)
    if(NOT DESKBROOM_FONTS)
        file(REMOVE_RECURSE ${fonts})
        return()
    endif()
    fetch_packages(${CMAKE_BINARY_DIR}/fonts)
    # The package has a file for each range of letters, all with the same names inside, of which the toolkit
    # would load only one. Of the two formats the other one is named "Light" inside, whatever its weight.
    set(space_grotesk ${CMAKE_BINARY_DIR}/fonts/node_modules/@fontsource/space-grotesk)
    configure_file(${space_grotesk}/files/space-grotesk-latin-500-normal.woff
        ${fonts}/SpaceGrotesk-Medium.woff COPYONLY)
    configure_file(${space_grotesk}/LICENSE ${fonts}/SpaceGrotesk-LICENSE.txt COPYONLY)
    install(DIRECTORY ${fonts} DESTINATION ${CMAKE_INSTALL_DATADIR}/fonts)
endfunction()
