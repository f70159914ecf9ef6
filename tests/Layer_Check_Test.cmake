cmake_minimum_required(VERSION 3.25)
# A tree of three layers with one upward include planted: the check must
# refuse it by file and line, pass the layers that keep to their order, and
# leave its stamp only when it passes.
file(REMOVE_RECURSE ${WORK})
file(WRITE ${WORK}/src/platform/Files.h "#pragma once\n")
file(WRITE ${WORK}/src/core/Rules.h "#pragma once\n#include \"platform/Files.h\"\n")
file(WRITE ${WORK}/src/core/Rules.cpp "#include \"core/Rules.h\"\n#include <QString>\n  #  include \"store/Rows.h\" // reaches up\n")
file(WRITE ${WORK}/src/store/Rows.h "#pragma once\n#include \"core/Rules.h\"\n#include \"platform/Files.h\"\n")

function(run_check layer allowed stamp out_result out_text)
  execute_process(COMMAND ${CMAKE_COMMAND} -DROOT=${WORK}/src -DLAYER=${layer} -DALLOWED=${allowed}
                          -DSTAMP=${stamp} -P ${CHECK}
                  RESULT_VARIABLE result ERROR_VARIABLE text OUTPUT_VARIABLE text)
  set(${out_result} ${result} PARENT_SCOPE)
  set(${out_text} "${text}" PARENT_SCOPE)
endfunction()

run_check(core "core,platform" ${WORK}/core.checked result text)
if(result EQUAL 0)
  message(FATAL_ERROR "an upward include from core into store passed the check")
endif()
if(NOT text MATCHES "core/Rules.cpp: #  include \"store/Rows.h\"")
  message(FATAL_ERROR "the refusal does not name the file and its include:\n${text}")
endif()
if(EXISTS ${WORK}/core.checked)
  message(FATAL_ERROR "a refused layer left its stamp")
endif()

run_check(store "store,core,platform" ${WORK}/store.checked result text)
if(NOT result EQUAL 0 OR NOT EXISTS ${WORK}/store.checked)
  message(FATAL_ERROR "a layer that includes only downward was refused:\n${text}")
endif()
