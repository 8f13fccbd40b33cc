# What "cmake --install" gives: the command, the libraries, the headers for hosts, the CMake package and the data that
# the library reads below OSTREL_PREFIX. Nothing of it holds a path of the machine that built it.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/pageprobe)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/pageprobe)
set(source_dir ${PROJECT_SOURCE_DIR}/src)

# Installs the headers of a library under the paths that they have in the tree.
function(pageprobe_public_headers target)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${source_dir} FILES ${ARGN})
    target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()

# Of the wrappers a host gets what exports something, and the header below, which those include.
set(wrapper_headers ${source_dir}/wrappers/web/composing.h)
file(GLOB_RECURSE candidates CONFIGURE_DEPENDS ${source_dir}/wrappers/web/*.h)
foreach(header IN LISTS candidates)
    file(STRINGS ${header} exports REGEX "PAGEPROBELIB_EXPORT")
    if(exports)
        list(APPEND wrapper_headers ${header})
    endif()
endforeach()

# All of the framework and of the tracing library is for hosts.
file(GLOB framework_headers CONFIGURE_DEPENDS ${source_dir}/ostrelhook/*.h)
file(GLOB tracing_headers CONFIGURE_DEPENDS ${source_dir}/probelog/*.h)
pageprobe_public_headers(probelog ${tracing_headers})
pageprobe_public_headers(ostrelhook ${framework_headers})
pageprobe_public_headers(pageprobeLib ${wrapper_headers})

install(TARGETS probelog ostrelhook pageprobeLib EXPORT pageprobeTargets FILE_SET HEADERS DESTINATION ${header_dir})
install(TARGETS pageprobe)
install(EXPORT pageprobeTargets NAMESPACE pageprobe:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/pageprobeConfig.cmake.in
    ${PROJECT_BINARY_DIR}/pageprobeConfig.cmake INSTALL_DESTINATION ${package_dir})
# Until 1.0 every minor version may change what hosts are built against.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pageprobeConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/pageprobeConfig.cmake ${PROJECT_BINARY_DIR}/pageprobeConfigVersion.cmake
    DESTINATION ${package_dir})

# The library looks in "lib", wherever this platform keeps its libraries.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/lib/extensions/web DESTINATION lib/extensions FILES_MATCHING PATTERN "*.js")
install(FILES ${PROJECT_SOURCE_DIR}/etc/webwrapper.ini DESTINATION etc)

# The command of the build tree finds the same data as an installed one would, as they stand in the source tree.
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/lib/extensions ${PROJECT_BINARY_DIR}/lib/extensions SYMBOLIC)
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/etc ${PROJECT_BINARY_DIR}/etc SYMBOLIC)
