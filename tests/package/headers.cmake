# Each installed header compiles by itself, twice included, without a warning.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)

file(REMOVE_RECURSE ${WORK_DIR})
set(include_dir ${PREFIX}/include/pageprobe)
file(GLOB_RECURSE headers RELATIVE ${include_dir} ${include_dir}/*.h)
foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER ${header} name)
    file(WRITE ${WORK_DIR}/${name}.cpp "#include \"${header}\"\n#include \"${header}\"\n")
endforeach()
file(WRITE ${WORK_DIR}/CMakeLists.txt [[
cmake_minimum_required(VERSION 3.25)
project(headers LANGUAGES CXX)
find_package(pageprobe REQUIRED)
# By themselves, imported headers are spared all warnings.
set_property(TARGET pageprobe::probelog pageprobe::ostrelhook pageprobe::pageprobeLib PROPERTY SYSTEM FALSE)
file(GLOB sources *.cpp)
add_library(headers OBJECT ${sources})
target_link_libraries(headers PRIVATE pageprobe::pageprobeLib)
target_compile_options(headers PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Werror)
]])
build_against_package(${WORK_DIR})
