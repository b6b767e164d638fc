// Reading and writing reflection sets in any format, by the extension of a file name.
#include "vxgrid/reflection/formats.h"

#include <algorithm>  // for find_if
#include <array>      // for array
#include <new>        // for bad_alloc

#include "vxgrid/reflection/cif.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/phs.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/reflection/vxx.h"
#include "vxgrid/reflection/xplor.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace {

struct Row {
  ReflectionFormat format;
  bool (*read)(vxistream&, VXReflection&);
  // Null unless the format is writable.
  bool (*write)(vxostream&, VXReflection&);
  bool (*takes)(const VXReflection&);
};

bool read_mtz(vxistream& is, VXReflection& refl) {
  return VXReadReflectionMTZ(is, refl, VXMTZColumnNames());
}

bool read_vxx(vxistream& is, VXReflection& refl) {
  return VXReadReflectionVXX(is, refl) == 0;
}

bool write_vxx(vxostream& os, VXReflection& refl) {
  return VXWriteReflectionVXX(os, refl);
}

bool takes_any(const VXReflection& /*refl*/) {
  return true;
}

bool takes_phases(const VXReflection& refl) {
  const VXReflectionImpl& set = *refl.GetImpl();
  return set.has_column(VXReflectionColumn::Fobs) && set.has_column(VXReflectionColumn::Phase) &&
         set.has_column(VXReflectionColumn::FOM);
}

constexpr std::array<Row, 7> rows{
    {{{"mtz", "MTZ reflections", false}, read_mtz, nullptr, nullptr},
     {{"cif", "mmCIF structure factors", false}, VXReadReflectionCIF, nullptr, nullptr},
     {{"phs", "PHS phases", true}, VXReadReflectionPHS, VXWriteReflectionPHS, takes_phases},
     {{"fob", "XPLOR reflections", true}, VXReadReflectionXPLOR, VXWriteReflectionXPLOR, takes_any},
     {{"cv", "XPLOR reflections", true}, VXReadReflectionXPLOR, VXWriteReflectionXPLOR, takes_any},
     {{"hkl", "HKL reflections", false}, VXReadReflectionHKL, nullptr, nullptr},
     {{"vxx", "VXX reflections", true}, read_vxx, write_vxx, takes_any}}};

const Row* find_row(const std::string& filename) {
  const std::string extension = VXFileExtension(filename);
  const auto found = std::find_if(
      rows.begin(), rows.end(), [&](const Row& row) { return extension == row.format.extension; });
  return found == rows.end() ? nullptr : &*found;
}

}  // namespace

const ReflectionFormat* find_reflection_format(const std::string& filename) {
  const Row* row = find_row(filename);
  return row ? &row->format : nullptr;
}

bool VXReadReflection(const std::string& filename, VXReflection& refl) {
  const Row* row = find_row(filename);
  vxifstream in;
  if (!row || !in.open(filename)) return false;
  try {
    if (!row->read(in, refl)) return false;
  } catch (const std::bad_alloc&) {
    refl.Clear();
    return false;
  }
  if (refl.GetTitle().empty()) refl.SetTitle(filename);
  return true;
}

bool VXWriteReflection(const std::string& filename, VXReflection& refl) {
  if (!VXIsWritableReflection(filename, refl)) return false;
  vxofstream out;
  if (!out.open(filename)) return false;
  const bool is_written = find_row(filename)->write(out, refl);
  // Only the end tells whether the bytes arrived.
  return out.close() && is_written;
}

bool VXIsWritableReflection(const std::string& filename, const VXReflection& refl) {
  if (refl.GetCount() == 0 || !refl.GetImpl()->has_indices()) return false;
  const Row* row = find_row(filename);
  return row && row->takes && row->takes(refl);
}

}  // namespace VXCore
