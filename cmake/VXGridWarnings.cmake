# Warnings, and the two floating-point rules that the results rest on.
function(vxgrid_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                           -ffp-contract=off)
  if(VXGRID_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
