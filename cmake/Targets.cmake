# pageprobe_setup(target): what every target of this project shares.
function(pageprobe_setup target)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:pageprobe_warnings>)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>)
endfunction()

# pageprobe_add_test(name LABEL unit|page|e2e SOURCES ... [LIBRARIES ...] [TIMEOUT seconds]
#                    [ENVIRONMENT name=value ...])
function(pageprobe_add_test name)
    cmake_parse_arguments(arg "" "LABEL;TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    pageprobe_setup(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE PAGEPROBE_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        PAGEPROBE_BINARY_DIR="${PROJECT_BINARY_DIR}")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest)
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${arg_ENVIRONMENT}")
endfunction()
