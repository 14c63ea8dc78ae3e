# Installs the build tree into a scratch prefix, then builds and runs a client
# against it with find_package, and checks the pkg-config file resolves there.
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G Ninja
                        -DCMAKE_PREFIX_PATH=${prefix} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK_DIR}/build COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND ${WORK_DIR}/build/consumer COMMAND_ERROR_IS_FATAL ANY)
file(GLOB pc_file ${prefix}/*/pkgconfig/orvik.pc)
file(READ ${pc_file} pc_text)
if(NOT pc_text MATCHES "prefix=\\$\\{pcfiledir\\}")
  message(FATAL_ERROR "orvik.pc is not relocatable")
endif()
