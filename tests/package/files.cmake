# The package holds what hosts and testers need, and none of the rest.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)

file(GLOB_RECURSE files RELATIVE ${PREFIX} ${PREFIX}/*)

set(wanted bin/pageprobe etc/webwrapper.ini lib/extensions/web/standardselect.js)
foreach(library probelog ostrelhook pageprobeLib)
    list(APPEND wanted ${LIBDIR}/lib${library}.so ${LIBDIR}/lib${library}.so.${SOVERSION} ${LIBDIR}/lib${library}.so.${VERSION})
endforeach()
foreach(file Config ConfigVersion Targets)
    list(APPEND wanted ${LIBDIR}/cmake/pageprobe/pageprobe${file}.cmake)
endforeach()
foreach(header probelog/tracepoint ostrelhook/functioncallresult ostrelhook/inspector wrappers/web/htmlcomponent
        wrappers/web/webobject wrappers/web/objectfactory wrappers/web/payload wrappers/web/wrapperconfig
        wrappers/web/reflection/webclasses wrappers/web/reflection/csscolor wrappers/web/controls/customcontrols)
    list(APPEND wanted include/pageprobe/${header}.h)
endforeach()
foreach(file IN LISTS wanted)
    if(NOT file IN_LIST files)
        message(SEND_ERROR "${file} is missing")
    endif()
endforeach()

# Each file is of a kind that belongs there.
set(library "lib(probelog|ostrelhook|pageprobeLib)\\.so(\\.[0-9.]+)?")
set(kinds "bin/pageprobe" "etc/webwrapper\\.ini" "lib/extensions/web/[^/]+\\.js" "${LIBDIR}/${library}"
    "${LIBDIR}/cmake/pageprobe/pageprobe[A-Za-z-]+\\.cmake"
    "include/pageprobe/(probelog|ostrelhook|wrappers/web(/controls|/toolkits|/reflection)?)/[a-z]+\\.h")
list(JOIN kinds "|" kinds)
foreach(file IN LISTS files)
    if(NOT file MATCHES "^(${kinds})$")
        message(SEND_ERROR "${file} does not belong into the package")
    endif()
endforeach()

# What only the library itself uses stays at home.
foreach(header csspropertynames evaluateasjson gentlesleep liveobjects payloadtexts scripttext controls/extensioncall reflection/cssproperties
        reflection/htmlevent reflection/tableinterface reflection/tables)
    if(include/pageprobe/wrappers/web/${header}.h IN_LIST files)
        message(SEND_ERROR "The internal header ${header}.h is in the package")
    endif()
endforeach()

# Nothing that people read names the machine that built it.
foreach(file IN LISTS files)
    if(file MATCHES "\\.(h|cmake|js|ini)$")
        file(READ ${PREFIX}/${file} text)
        foreach(place ${SOURCE_DIR} ${BINARY_DIR})
            string(FIND "${text}" "${place}" position)
            if(NOT position EQUAL -1)
                message(SEND_ERROR "${file} names ${place}")
            endif()
        endforeach()
    endif()
endforeach()
