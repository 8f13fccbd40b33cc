# The installed command runs with the libraries and the data that were installed with it.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)
set(command ${PREFIX}/bin/pageprobe)

run(version ${command} --version)
expect_equal("The version" "${version}" "pageprobe ${VERSION}\n")

run(libraries ldd ${command})
foreach(library pageprobeLib ostrelhook probelog)
    if(NOT libraries MATCHES "lib${library}\\.so\\.${SOVERSION} => ([^ ]+)")
        message(FATAL_ERROR "The command does not link ${library}:\n${libraries}")
    endif()
    file(REAL_PATH ${CMAKE_MATCH_1} found)
    expect_equal("The command's ${library}" "${found}" "${PREFIX}/${LIBDIR}/lib${library}.so.${VERSION}")
endforeach()

# The settings and the extension scripts are those of this installation,
run(config ${command} config)
string(REGEX MATCH "^[^\n]*" first_line "${config}")
expect_equal("The global settings file" "${first_line}" "# global file: ${PREFIX}/etc/webwrapper.ini")
run(payload ${command} payload)
file(READ ${PREFIX}/lib/extensions/web/standardselect.js extension)
string(FIND "${payload}" "${extension}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "The payload lacks the extension scripts of the installation.")
endif()

# unless the user names another one.
file(REMOVE_RECURSE ${WORK_DIR})
file(WRITE ${WORK_DIR}/lib/extensions/web/own.js "var ownExtension = 1;\n")
run(payload ${CMAKE_COMMAND} -E env OSTREL_PREFIX=${WORK_DIR} ${command} payload)
if(NOT payload MATCHES "var ownExtension = 1;" OR payload MATCHES "var __ostrel__standardselectExtension")
    message(FATAL_ERROR "The payload does not have the extension scripts of OSTREL_PREFIX alone.")
endif()

# A reader that has seen enough does no harm.
execute_process(COMMAND ${command} payload COMMAND head -n 1 OUTPUT_VARIABLE head ERROR_VARIABLE err)
string(REGEX MATCH "^[^\n]*\n" first_line "${payload}")
expect_equal("The first line of the payload" "${head}${err}" "${first_line}")
