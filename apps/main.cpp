// Entry of the program vxgrid.
#include <unistd.h>  // for isatty

#include <iostream>  // for cout, cerr

#include "program.h"

int main(int argc, char** argv) {
  return vxgrid_app::run_program({argv + 1, argv + argc},
                                 {std::cout, std::cerr, isatty(STDERR_FILENO) == 1});
}
