# Each public header compiles by itself as C++17 with warnings as errors, and vxgrid.h has them all.
# -DCOMPILER=... -DINCLUDE_DIR=... -DWORK_DIR=...
file(GLOB_RECURSE headers RELATIVE "${INCLUDE_DIR}" "${INCLUDE_DIR}/*.h")
list(LENGTH headers count)
if(count LESS 10)
  message(FATAL_ERROR "only ${count} public headers found under ${INCLUDE_DIR}")
endif()
file(MAKE_DIRECTORY "${WORK_DIR}")
set(failed)
foreach(header IN LISTS headers)
  file(WRITE "${WORK_DIR}/alone.cpp" "#include \"${header}\"\nint main() {}\n")
  execute_process(
    COMMAND "${COMPILER}" -std=c++17 -Wall -Wextra -Werror -fsyntax-only "-I${INCLUDE_DIR}"
            "${WORK_DIR}/alone.cpp"
    RESULT_VARIABLE result ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    list(APPEND failed "${header}")
    message(STATUS "${header}:\n${errors}")
  endif()
endforeach()
if(failed)
  message(FATAL_ERROR "headers that do not compile alone: ${failed}")
endif()
message(STATUS "${count} headers compile alone")

execute_process(COMMAND "${COMPILER}" -std=c++17 -MM "-I${INCLUDE_DIR}"
                        "${INCLUDE_DIR}/vxgrid/vxgrid.h"
                OUTPUT_VARIABLE included)
foreach(header IN LISTS headers)
  string(FIND "${included}" "${INCLUDE_DIR}/${header}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "vxgrid.h does not include ${header}")
  endif()
endforeach()
