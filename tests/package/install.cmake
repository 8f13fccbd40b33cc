# Installs the build tree, and moves the result: a package that knows where it was installed would not survive that.
include(${CMAKE_CURRENT_LIST_DIR}/package.cmake)

file(REMOVE_RECURSE ${PREFIX} ${WORK_DIR})
run(ignored ${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${WORK_DIR})
file(RENAME ${WORK_DIR} ${PREFIX})
