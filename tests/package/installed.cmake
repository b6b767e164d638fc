# Installs the build into a scratch prefix, then configures, builds and runs a program outside the
# tree against it, once through find_package and once through pkg-config.
# -DBUILD_DIR=... -DCONSUMER_DIR=... -DWORK_DIR=... -DLIB_DIR=lib/... -DCOMPILER=... -DCXX_FLAGS=...
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGV}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

set(prefix "${WORK_DIR}/prefix")
file(REMOVE_RECURSE "${WORK_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")
run("${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G Ninja
    "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/consumer")
if(NOT output MATCHES "VXGrid 5.0.0.0: 21 x 21 x 21 points")
  message(FATAL_ERROR "the consumer printed: ${output}")
endif()

find_program(pkg_config pkg-config)
if(pkg_config)
  set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIB_DIR}/pkgconfig")
  execute_process(COMMAND "${pkg_config}" "--define-variable=prefix=${prefix}" --cflags --libs vxgrid
                  OUTPUT_VARIABLE flags RESULT_VARIABLE result OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know vxgrid")
  endif()
  separate_arguments(flags)
  separate_arguments(extra UNIX_COMMAND "${CXX_FLAGS}")
  run("${COMPILER}" ${extra} "${CONSUMER_DIR}/main.cpp" ${flags} "-Wl,-rpath,${prefix}/${LIB_DIR}"
      -o "${WORK_DIR}/by_pkg_config")
  run("${WORK_DIR}/by_pkg_config")
endif()
