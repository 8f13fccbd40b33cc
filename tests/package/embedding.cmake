# The example finds, builds and links the package, and prints what stands beside it. With the environment variable
# PAGEPROBE_UPDATE it writes that file anew; review its difference.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)

build_against_package(${SOURCE_DIR}/examples/embedding)
run(output ${WORK_DIR}/build/embedding)
if(DEFINED ENV{PAGEPROBE_UPDATE})
    file(WRITE ${SOURCE_DIR}/examples/embedding/embedding.output "${output}")
endif()
file(READ ${SOURCE_DIR}/examples/embedding/embedding.output expected)
expect_equal("The output" "${output}" "${expected}")
