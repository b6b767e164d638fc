// Lattices whose values stand in the byte order that a mark in front of them names.
#ifndef VXGRID_SRC_TOOLKIT_VXB_ORDERED_VALUES_H
#define VXGRID_SRC_TOOLKIT_VXB_ORDERED_VALUES_H

#include <type_traits>  // for is_same_v

#include "vxgrid/toolkit/core/host_grids.h"
#include "vxgrid/toolkit/vxb/handler.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore::detail {

template <class T>
char order_mark() {
  return std::is_same_v<T, float> ? VXBFloatEndian() : VXBIntEndian();
}

template <class T>
bool is_other_order(int mark) {
  return std::is_same_v<T, float> ? VXBFloatEndian(mark) : VXBIntEndian(mark);
}

template <class T>
void reverse_values(VXFixedGrid<T>& grid) {
  ArraySwapBytes(grid.GetValues(), grid.GetSize());
}

template <class T>
void reverse_values(VXFixedMultiGrid<T>& grids) {
  for (unsigned int i = 0; i < grids.GetNumGrids(); ++i)
    reverse_values(grids[i]);
}

/// Writes the mark, and the host grid part as the handler's writer for its class does.
template <class T, class Part>
bool write_ordered(VXHost::vxostream& out, const Part& part, VXBinaryIOHandlerBase& handler) {
  return out.put(order_mark<T>()) && handler.WriteAs(out, part, VXBClassId<Part>::get());
}

/// Reads what write_ordered has written, on a machine of either byte order.
template <class T, class Part>
unsigned int read_ordered(RecordReader& in, Part& part, VXBinaryIOHandlerBase& handler) {
  const int mark = in.getbyte();
  if (mark < 0) return VXBStatus::StreamEnded;
  const unsigned int status = handler.ReadAs(in, part, VXBClassId<Part>::get());
  if (status == VXBStatus::Success && is_other_order<T>(mark)) reverse_values(part);
  return status;
}

}  // namespace VXCore::detail

#endif
