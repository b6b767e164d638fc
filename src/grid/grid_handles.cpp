/// \file
/// The table of grid handles.
#include "vxgrid/grid/grid_handles.h"

#include <map>    // for map
#include <mutex>  // for mutex, lock_guard

namespace VXBrioMol {

namespace {

struct HandleTable {
  std::mutex mutex;
  std::map<int, VXCore::VXBrioGrid*> grids;
  int last = 0;
};

HandleTable& handle_table() {
  static HandleTable table;
  return table;
}

}  // namespace

int VXMakeGridHandle(VXCore::VXBrioGrid* grid) {
  if (!grid) return 0;
  HandleTable& table = handle_table();
  const std::lock_guard lock(table.mutex);
  table.grids.emplace(++table.last, grid);
  return table.last;
}

void VXFreeGridHandle(int handle) {
  HandleTable& table = handle_table();
  const std::lock_guard lock(table.mutex);
  table.grids.erase(handle);
}

VXCore::VXBrioGrid* VXDerefGridHandle(int handle) {
  HandleTable& table = handle_table();
  const std::lock_guard lock(table.mutex);
  const auto found = table.grids.find(handle);
  return found == table.grids.end() ? nullptr : found->second;
}

}  // namespace VXBrioMol
