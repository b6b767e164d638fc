# Warnings, and the two floating-point rules that the results rest on.
function(vxgrid_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                           -ffp-contract=off)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 sees overlap in a text literal plus std::string, which is not there (GCC bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(VXGRID_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
