// A first program: reflections to a map, the map to a file, a model scored against it.
#include <cstdio>

#include "vxgrid/vxgrid.h"

using namespace VXCore;

int main(int argc, char** argv) {
  VXSkewGrid map;
  VXGraphMol model;
  if (argc != 3 || !VXReadMTZ(argv[1], map, VXMTZMapType::Fwt) || !VXReadMolecule(argv[2], model))
    return 1;
  VXWriteGrid("first.map", map);
  std::printf("RSCC %.3f, RSR %.3f\n", VXRSCC(map, model, 1.5), VXRSR(map, model, 1.5));
}
