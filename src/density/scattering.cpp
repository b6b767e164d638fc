// Finding a row of the scattering table.
#include "vxgrid/density/scattering.h"

namespace VXCore {

namespace {

template <class Wanted>
int find_row(Wanted wanted) {
  for (int row = 0; row < scatter_count; ++row) {
    if (wanted(scatter_data[row])) return row;
  }
  return -1;
}

}  // namespace

int find_scatter_row(int z, int charge) {
  if (z == 0) return -1;
  int row = find_row([=](const scatterT& s) { return s.z == z && s.charge == charge; });
  if (row < 0) row = find_row([=](const scatterT& s) { return s.z == z && s.charge == 0; });
  if (row < 0) row = find_row([=](const scatterT& s) { return s.z == z; });
  return row;
}

}  // namespace VXCore
