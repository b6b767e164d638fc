# Coverage counters for libFuzzer and both sanitizers in everything that a fuzz target runs through.
# Whatever links the library gets the sanitizers' runtime along with it.

set(VXGRID_JSON_IGNORELIST
    "-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/sanitizer_ignore.txt")

function(vxgrid_instrument_for_fuzzing target)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(WARNING "VXGRID_BUILD_FUZZ needs clang, whose libFuzzer it uses; no fuzz targets are "
                    "built with ${CMAKE_CXX_COMPILER_ID}. Configure with "
                    "-DCMAKE_CXX_COMPILER=clang++.")
    return()
  endif()
  target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined
                                           -fno-sanitize-recover=undefined
                                           -fno-omit-frame-pointer -g)
  target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  # Where RapidJSON's bodies are made.
  file(GLOB json_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/toolkit/json/*.cpp"
                                           "${PROJECT_SOURCE_DIR}/src/toolkit/pipe/*.cpp"
                                           "${PROJECT_SOURCE_DIR}/src/serial/grid_*.cpp")
  set_source_files_properties(${json_sources} PROPERTIES COMPILE_OPTIONS "${VXGRID_JSON_IGNORELIST}")
endfunction()
