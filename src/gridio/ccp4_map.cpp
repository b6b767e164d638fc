// The image of a CCP4 map file: reading, writing and reporting it.
#include "vxgrid/gridio/ccp4_map.h"

#include <algorithm>  // for clamp, find
#include <cstdint>    // for int64_t
#include <span>       // for span
#include <string>     // for string

#include "gridio/ccp4_layout.h"
#include "toolkit/host/bounded_read.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

namespace {

const char* axis_name(int axis) {
  switch (axis) {
    case 1:
      return "X";
    case 2:
      return "Y";
    case 3:
      return "Z";
    default:
      return "Bad Axes";
  }
}

long long last_index(int first, int points) {
  return std::int64_t{first} + points - 1;
}

// Tells of bytes behind the values, which do no harm.
void report_surplus(VXHost::vxistream& in, const VXCCP4Header& header, std::size_t value_count) {
  std::array<char, 4096> dropped;
  long long surplus = 0;
  while (const std::size_t taken = in.read(dropped.data(), dropped.size())) {
    surplus += static_cast<long long>(taken);
  }
  if (surplus == 0) return;
  const auto count = static_cast<long long>(value_count);
  const long long initial = header.MODE == 0 ? count : count * 4;
  VXThrow.Warning(
      "Read %lld bytes more, initial bytes %lld, total data bytes = %lld (should be %lld)", surplus,
      initial, initial + surplus, count * 4);
}

}  // namespace

bool VXCCP4Map::Read(VXHost::vxistream& in) {
  symmetry.clear();
  values.clear();
  const bool reversed = detail::read_ccp4_header(in, *this);
  if (!detail::is_readable_ccp4_mode(*this)) {
    VXThrow.Error("VXCCP4Map::Can only read CCP4 Maps of type 2 (Real Numbers)");
    return false;
  }
  if (!detail::has_ccp4_axes(*this)) {
    VXThrow.Error("VXCCP4Map::Map axes must correspond to 1(x) 2(y) or 3(z)");
    return false;
  }
  if (!VXHost::detail::read_claimed(in, detail::ccp4_symmetry_count(*this), symmetry)) return false;
  const auto count = detail::ccp4_value_count(*this);
  if (!count) return false;
  if (*count > 0) {
    const auto layout = detail::ccp4_layout(*this);
    if (!layout) {
      VXThrow.Error("VXCCP4Map::indices not independent!");
      return false;
    }
    if (!detail::read_ccp4_values(in, *this, *layout, reversed, values)) return false;
  }
  report_surplus(in, *this, *count);
  return true;
}

bool VXCCP4Map::Write(VXHost::vxostream& out) {
  if (values.empty()) return false;
  const auto header = detail::ccp4_header_record(*this);
  const std::span record(header);
  const auto write = [&](std::span<const unsigned char> bytes) {
    return out.write(bytes.data(), bytes.size()) == bytes.size();
  };
  // A reader finds what kind of map it was even where it cannot be written.
  bool written = write(record.first(detail::ccp4_leading_bytes));
  if (MODE != 2) {
    VXThrow.Error("VXCCP4Map::Can only write CCP4 Maps of type 2 (Real Numbers)");
    return false;
  }
  written = write(record.subspan(detail::ccp4_leading_bytes)) && written;
  for (auto& operation : symmetry) {
    written = out.write(operation.data(), operation.size()) == operation.size() && written;
    operation.back() = '\0';
  }
  if (NC > 0 && NR > 0 && NS > 0) {
    const auto count = detail::ccp4_value_count(*this);
    const auto layout = detail::ccp4_layout(*this);
    if (!layout) {
      VXThrow.Error("VXCCP4Map::indices not independent!");
      return false;
    }
    if (!count || *count > values.size()) return false;
    written = detail::write_ccp4_values(out, *layout, {values.data(), *count}) && written;
  }
  return out.flush() && written;
}

void VXCCP4Map::Clear() {
  NSYMBT = NLABL = LSKFLG = 0;
  SKWMAT.fill(0);
  SKWTRN.fill(0);
  reserved.fill(0);
  for (auto& label : labels)
    label.fill(' ');
  symmetry.clear();
  values.clear();
}

void VXCCP4Map::Dump(bool all) const {
  VXThrow.Info("\tNumber of columns, rows, sections ...............   %4d %4d %4d", NC, NR, NS);
  VXThrow.Info("\tMap mode ........................................   %2d", MODE);
  VXThrow.Info("\tStart and stop points on columns, rows, sections   %4d %4lld %4d %4lld %4d %4lld",
               NCSTART, last_index(NCSTART, NC), NRSTART, last_index(NRSTART, NR), NSSTART,
               last_index(NSSTART, NS));
  VXThrow.Info("\tGrid sampling on x, y, z ........................   %4d %4d %4d", NX, NY, NZ);
  VXThrow.Info(
      "\tCell dimensions .................................  %3.5f %3.5f %3.5f %3.5f %3.5f %3.5f", A,
      B, C, Alpha, Beta, Gamma);
  VXThrow.Info("\tFast, medium, slow axes .........................    %s    %s    %s",
               axis_name(MAPC), axis_name(MAPR), axis_name(MAPS));
  VXThrow.Info("\tMinimum density .................................    %1.5f", AMIN);
  VXThrow.Info("\tMaximum density .................................    %1.5f", AMAX);
  VXThrow.Info("\tMean density ....................................    %1.5f", AMEAN);
  VXThrow.Info("\tRms deviation from mean density .................    %1.5f", ARMS);
  VXThrow.Info("\tSpace-group .....................................   %4d", ISPG);
  VXThrow.Info("\tNumber of titles ................................    %d", NLABL);
  VXThrow.Info(" Labels: ");
  for (int i = 0; i < std::clamp(NLABL, 0, static_cast<int>(labels.size())); ++i) {
    const auto& label = labels[static_cast<std::size_t>(i)];
    const std::string text(label.begin(), std::find(label.begin(), label.end(), '\0'));
    VXThrow.Info("\t*%s*", text.c_str());
  }
  if (!all) return;
  VXThrow.Info("NC      %d", NC);
  VXThrow.Info("NR      %d", NR);
  VXThrow.Info("NS      %d", NS);
  VXThrow.Info("Mode    %d", MODE);
  VXThrow.Info("NCSTART %d", NCSTART);
  VXThrow.Info("NRSTART %d", NRSTART);
  VXThrow.Info("NSSTART %d", NSSTART);
  VXThrow.Info("NX      %d", NX);
  VXThrow.Info("NY      %d", NY);
  VXThrow.Info("NZ      %d", NZ);
  VXThrow.Info("A       %f", A);
  VXThrow.Info("B       %f", B);
  VXThrow.Info("C       %f", C);
  VXThrow.Info("Alpha   %f", Alpha);
  VXThrow.Info("Beta    %f", Beta);
  VXThrow.Info("Gamma   %f", Gamma);
  VXThrow.Info("MAPC    %d", MAPC);
  VXThrow.Info("MAPR    %d", MAPR);
  VXThrow.Info("MAPS    %d", MAPS);
  VXThrow.Info("AMIN    %f", AMIN);
  VXThrow.Info("AMAX    %f", AMAX);
  VXThrow.Info("AMEAN   %f", AMEAN);
  VXThrow.Info("ISPG    %d", ISPG);
  VXThrow.Info("NSYMBT  %d", NSYMBT);
  VXThrow.Info("LSKFLG  %d", LSKFLG);
  for (std::size_t row = 0; row < 9; row += 3) {
    VXThrow.Info("SKWMAT: %0.6f %0.6f %0.6f", SKWMAT[row], SKWMAT[row + 1], SKWMAT[row + 2]);
  }
  VXThrow.Info("SKWTRN: %2.4f %2.4f %2.4f", SKWTRN[0], SKWTRN[1], SKWTRN[2]);
  VXThrow.Info("ARMS    %f", ARMS);
  VXThrow.Info("NLABL   %d", NLABL);
  VXThrow.Info("===========================");
}

}  // namespace VXCore
