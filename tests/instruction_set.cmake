# The vector code must run on every processor of the Highway target that
# selects it.  AVX3_DL is chosen on Ice Lake and Zen 4, which lack AVX-VNNI:
# a VEX-encoded vpdpbusd/vpdpwssd (which a compiler may form from 16-bit
# multiply-adds) would fault there.
#   cmake -DOBJDUMP=objdump -DLIBRARY=liborvikopt.so -P instruction_set.cmake
execute_process(COMMAND ${OBJDUMP} -d --no-show-raw-insn ${LIBRARY} OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} could not read ${LIBRARY}")
endif()
string(REGEX MATCHALL "\\{vex\\} vpdp[a-z]+" found "${listing}")
list(LENGTH found count)
if(count GREATER 0)
  message(FATAL_ERROR "${LIBRARY} holds ${count} AVX-VNNI (VEX) instructions, e.g. ${found}")
endif()
message(STATUS "no AVX-VNNI instruction in ${LIBRARY}")
