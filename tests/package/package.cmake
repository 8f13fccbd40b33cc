# What the tests of the package share. PREFIX is the installation, WORK_DIR a folder for the test alone.
cmake_minimum_required(VERSION 3.25)

# The installation has to find its own folder, and its libraries without help.
unset(ENV{OSTREL_PREFIX})
unset(ENV{LD_LIBRARY_PATH})

# run(output command...): runs a command, which has to succeed, and gives what it writes to its standard output.
function(run output)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message("${out}\n${err}")
        message(FATAL_ERROR "\"${command}\" gave ${result}.")
    endif()
    set(${output} "${out}" PARENT_SCOPE)
endfunction()

# expect_equal(what actual expected)
function(expect_equal what actual expected)
    if(NOT actual STREQUAL expected)
        message("${what} is\n${actual}\nand not\n${expected}")
        message(FATAL_ERROR "${what} is not as expected.")
    endif()
endfunction()

# build_against_package(source_dir): configures and builds a project that finds the package, in WORK_DIR/build.
function(build_against_package source_dir)
    file(REMOVE_RECURSE ${WORK_DIR}/build)
    run(ignored ${CMAKE_COMMAND} -S ${source_dir} -B ${WORK_DIR}/build -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${PREFIX}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})
    run(ignored ${CMAKE_COMMAND} --build ${WORK_DIR}/build)
endfunction()
