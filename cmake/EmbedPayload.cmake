# Writes the C++ source that holds the page script: cmake -DSOURCE_DIR=... -DPACKAGE_DIR=... -DOUTPUT=... -P <this file>
cmake_minimum_required(VERSION 3.25)

set(section_count 25)

# Reads a page script file, with the texts of the packages that it embeds.
function(read_script file result)
    file(READ ${SOURCE_DIR}/${file} text)
    # one regular expression for one line: a list of all matches would break at the semicolons of the script
    while(text MATCHES "[ \t]*// embed: ([^\n]+)\n")
        set(line "${CMAKE_MATCH_0}")
        set(package_file ${PACKAGE_DIR}/${CMAKE_MATCH_1})
        if(NOT EXISTS ${package_file})
            message(FATAL_ERROR "${file} embeds ${CMAKE_MATCH_1}, which is not in ${PACKAGE_DIR}: run \"npm ci\".")
        endif()
        file(READ ${package_file} package_text)
        string(REPLACE "${line}" "${package_text}\n" text "${text}")
    endwhile()
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

# Appends a constant to the source. Raw string literals take the text as it stands.
function(append_text name text)
    if(text MATCHES "\\)payload\"")
        message(FATAL_ERROR "The page script holds the text that ends a literal.")
    endif()
    file(APPEND ${OUTPUT}.new "const char ${name}[] = R\"payload(${text})payload\";\n\n")
endfunction()

file(STRINGS ${SOURCE_DIR}/sections.txt files REGEX "^[^#]")
foreach(file IN LISTS files)
    if(NOT EXISTS ${SOURCE_DIR}/${file})
        message(FATAL_ERROR "The payload lacks ${file}, which sections.txt names.")
        continue()
    endif()
    read_script(${file} text)
    if(file MATCHES "^([0-9][0-9])[a-z]?-")
        string(APPEND section_${CMAKE_MATCH_1} "${text}")
    elseif(file MATCHES "^xpath-(support|engine)\\.js$")
        set(xpath_${CMAKE_MATCH_1} "${text}")
    else()
        message(FATAL_ERROR "${file} has no place: a section's file begins with its number.")
    endif()
endforeach()

# What follows these three is a line break that getJSCode puts there itself.
string(STRIP "${section_${section_count}}" section_${section_count})
string(STRIP "${xpath_support}" xpath_support)
string(STRIP "${xpath_engine}" xpath_engine)

file(WRITE ${OUTPUT}.new "// Made from src/wrappers/web/payload by cmake/EmbedPayload.cmake.\n"
    "#include \"wrappers/web/payloadtexts.h\"\n\nnamespace Ostrel::WebWrapper {\n\nnamespace {\n\n")
set(table "")
foreach(number RANGE 1 ${section_count})
    if(number LESS 10)
        set(number 0${number})
    endif()
    if(NOT section_${number})
        message(FATAL_ERROR "The payload has no section ${number}.")
    endif()
    append_text(section${number} "${section_${number}}")
    string(APPEND table "section${number}, ")
endforeach()
file(APPEND ${OUTPUT}.new "} // namespace\n\nconst char *const payloadSections[] = { ${table}nullptr };\n\n")

read_script(namespace.js namespace_init)
append_text(namespaceInitText "${namespace_init}")
append_text(xpathSupport "${xpath_support}")
append_text(xpathEngine "${xpath_engine}")
file(APPEND ${OUTPUT}.new "const char *const xpathSupportText = xpathSupport;\n"
    "const char *const xpathEngineText = xpathEngine;\n\n} // namespace Ostrel::WebWrapper\n")
file(RENAME ${OUTPUT}.new ${OUTPUT})
