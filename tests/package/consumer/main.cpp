// A program outside the tree: makes a grid and prints its size.
#include <cstdio>

#include "vxgrid/vxgrid.h"

int main() {
  VXCore::VXScalarGrid grid;
  const float center[3] = {0, 0, 0}, extents[3] = {10, 10, 10};
  if (!VXCore::VXMakeGridFromCenterAndExtents(grid, center, extents, 0.5f)) return 1;
  std::printf("VXGrid %s: %u x %u x %u points\n", VXCore::VXGridGetRelease(), grid.GetXDim(),
              grid.GetYDim(), grid.GetZDim());
}
