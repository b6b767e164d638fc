// Writes a copy of a model, moved by a vector: shift_model IN OUT DX DY DZ (Angstrom).
#include <cstdio>
#include <cstdlib>

#include "vxgrid/vxgrid.h"

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fprintf(stderr, "usage: shift_model IN OUT DX DY DZ\n");
    return 2;
  }
  VXCore::VXGraphMol model;
  if (!VXCore::VXReadMolecule(argv[1], model)) return 1;
  const double shift[3] = {std::atof(argv[3]), std::atof(argv[4]), std::atof(argv[5])};
  VXCore::VXTranslate(model, shift);
  return VXCore::VXWriteMolecule(argv[2], model) ? 0 : 1;
}
