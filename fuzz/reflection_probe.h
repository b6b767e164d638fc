// What the fuzz targets of reflection formats have in common: read, and write what was read.
#ifndef VXGRID_FUZZ_REFLECTION_PROBE_H
#define VXGRID_FUZZ_REFLECTION_PROBE_H

#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <cstdlib>  // for abort
#include <string>   // for string

#include "vxgrid/reflection/phs.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/reflection/vxx.h"
#include "vxgrid/reflection/xplor.h"
#include "vxgrid/toolkit/names.h"

inline std::string vxx_bytes(const VXCore::VXReflection& set) {
  VXCore::vxosstream out;
  if (!VXCore::VXWriteReflectionVXX(out, set)) std::abort();
  return out.str();
}

inline VXCore::VXReflection set_of_vxx(const std::string& bytes) {
  VXCore::vxisstream in(bytes.data(), bytes.size());
  VXCore::VXReflection set;
  if (VXCore::VXReadReflectionVXX(in, set) != 0) std::abort();
  return set;
}

/// A set that came through VXX once, which drops the cell of a group that did not take it, comes
/// through it as it is.
inline void probe_round_trip(const VXCore::VXReflection& set) {
  const std::string once = vxx_bytes(set_of_vxx(vxx_bytes(set)));
  if (vxx_bytes(set_of_vxx(once)) != once) std::abort();
}

inline void probe_writers(VXCore::VXReflection& set) {
  VXCore::vxosstream text;
  VXCore::VXWriteReflectionPHS(text, set);
  VXCore::VXWriteReflectionXPLOR(text, set);
}

/// Reads a text, into a fresh set and one that holds something; a set that was read has indices.
template <class Reader>
void probe_text_reader(Reader reader, const std::uint8_t* data, std::size_t size) {
  using namespace VXCore;
  VXThrow.SetSink([](VXErrorLevel, const std::string&) {});
  VXReflection set;
  for (int i = 0; i < 2; ++i) {
    vxisstream in(reinterpret_cast<const char*>(data), size);
    const bool is_read = reader(in, set);
    int h = 0;
    int k = 0;
    int l = 0;
    const bool has_rows = set.GetCount() > 0 && set.GetHKLElement(h, k, l, 0);
    if (is_read != has_rows) std::abort();
    if (!is_read) return;
  }
  probe_round_trip(set);
  probe_writers(set);
}

#endif
