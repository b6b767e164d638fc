# Coverage counters for libFuzzer and both sanitizers in everything that a fuzz target runs through.
# Whatever links the library gets the sanitizers' runtime along with it.
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
endfunction()
