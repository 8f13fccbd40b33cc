# pageprobe_embed_payload(target): compiles the page script into a target.
#
# The texts come from src/wrappers/web/payload, in the order of its sections.txt, and from the npm packages that they
# name in "// embed: <package>/<file>" lines.

set(PAYLOAD_SOURCE_DIR ${PROJECT_SOURCE_DIR}/src/wrappers/web/payload)
set(PAYLOAD_PACKAGE_DIR ${PROJECT_SOURCE_DIR}/node_modules)

function(pageprobe_embed_payload target)
    pageprobe_install_page_packages()

    set(output ${CMAKE_CURRENT_BINARY_DIR}/payloadtexts.cpp)
    file(STRINGS ${PAYLOAD_SOURCE_DIR}/sections.txt files REGEX "^[^#]")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PAYLOAD_SOURCE_DIR}/sections.txt)

    set(dependencies ${PAYLOAD_SOURCE_DIR}/namespace.js)
    foreach(file IN LISTS files)
        if(EXISTS ${PAYLOAD_SOURCE_DIR}/${file})
            list(APPEND dependencies ${PAYLOAD_SOURCE_DIR}/${file})
        else()
            message(FATAL_ERROR "The payload lacks ${file}, which sections.txt names.")
        endif()
    endforeach()

    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PAYLOAD_SOURCE_DIR} -DPACKAGE_DIR=${PAYLOAD_PACKAGE_DIR}
            -DOUTPUT=${output} -P ${PROJECT_SOURCE_DIR}/cmake/EmbedPayload.cmake
        DEPENDS ${dependencies} ${PAYLOAD_SOURCE_DIR}/sections.txt ${PROJECT_SOURCE_DIR}/cmake/EmbedPayload.cmake
            ${PROJECT_SOURCE_DIR}/package-lock.json
        COMMENT "Embedding the page script"
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
endfunction()

# Gets the npm packages that the lock file pins, unless they are there.
function(pageprobe_install_page_packages)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/package-lock.json)
    if(EXISTS ${PAYLOAD_PACKAGE_DIR}/.package-lock.json
            AND NOT ${PROJECT_SOURCE_DIR}/package-lock.json IS_NEWER_THAN ${PAYLOAD_PACKAGE_DIR}/.package-lock.json)
        return()
    endif()

    find_program(NPM_PROGRAM npm)
    if(NOT NPM_PROGRAM)
        message(FATAL_ERROR "The page script embeds npm packages: npm is needed to get them. Install Node.js 18 or "
            "later, or run \"npm ci\" in ${PROJECT_SOURCE_DIR} elsewhere and copy its node_modules here.")
    endif()
    message(STATUS "Getting the npm packages that the page script embeds")
    execute_process(COMMAND ${NPM_PROGRAM} ci --no-audit --no-fund
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "\"npm ci\" failed in ${PROJECT_SOURCE_DIR}:\n${output}")
    endif()
endfunction()
