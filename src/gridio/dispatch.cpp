// Reading and writing grids in any format.
#include "vxgrid/gridio/dispatch.h"

#include <algorithm>  // for max
#include <array>      // for array
#include <memory>     // for unique_ptr
#include <new>        // for bad_alloc
#include <utility>    // for move

#include "gridio/ccp4_reader.h"
#include "gridio/grasp_reader.h"
#include "gridio/grd.h"
#include "gridio/xplor.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/ascii.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/gridio/grasp.h"
#include "vxgrid/gridmath/interpolate.h"
#include "vxgrid/gridmath/regularize.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/files.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

namespace {

struct CloseStream {
  void operator()(VXHost::vxistream* stream) const { VXHost::VXCloseIStream(stream); }
};
using OpenStream = std::unique_ptr<VXHost::vxistream, CloseStream>;

VXBrioGrid& brio_of(const VXSkewGrid& grid) {
  return grid.GetImpl().GetImpl();
}

unsigned int type_of(const std::string& name) {
  return VXGetGridFileType(VXMol::VXGetFileExtension(name.c_str()));
}

bool has_same_geometry(const VXGridAbstractBase& a, const VXGridAbstractBase& b) {
  return a.GetXDim() == b.GetXDim() && a.GetYDim() == b.GetYDim() && a.GetZDim() == b.GetZDim() &&
         a.GetXMid() == b.GetXMid() && a.GetYMid() == b.GetYMid() && a.GetZMid() == b.GetZMid() &&
         a.GetSpacing() == b.GetSpacing();
}

bool read_grasp(VXHost::vxistream& in, VXBrioGrid& grid) {
  grid.Clear();
  constexpr unsigned int dim = detail::grasp_dim;
  if (!grid.SetDim(dim, dim, dim)) return false;
  float scale = 0.0f;
  std::array<float, 3> mid{};
  detail::read_grasp_map(in, grid.GetValues(), &scale, mid.data());
  grid.SetSpacing(1.0f / scale);
  grid.SetMid(mid[0], mid[1], mid[2]);
  return true;
}

// The title stays behind; the format's own function is the way to it.
bool read_ascii(VXHost::vxistream& in, VXBrioGrid& grid) {
  VXGrid<float> source;
  const bool is_read = VXReadAsciiGrid(in, source);
  if (!has_same_geometry(grid, source)) {
    grid.SetSpacing(source.GetSpacing()) &&
        grid.SetDim(source.GetXDim(), source.GetYDim(), source.GetZDim()) &&
        grid.SetMid(source.GetXMid(), source.GetYMid(), source.GetZMid());
  }
  if (grid.GetFloats().GetNumGrids() == 0) return is_read;
  VXFixedGrid<float>& target = grid.GetFloats()[0];
  if (has_same_geometry(target, source)) target.AdoptValues(source.TakeValues());
  return is_read;
}

// All grids go onto the one box of the format; a larger one is stretched until it fits.
bool write_grasp(VXHost::vxostream& out, const VXBrioGrid& grid) {
  VXBrioGrid box;
  std::array<float, 3> mid{};
  grid.GetMid(mid[0], mid[1], mid[2]);
  box.SetMid(mid[0], mid[1], mid[2]);
  constexpr unsigned int dim = detail::grasp_dim;
  if (!box.SetDim(dim, dim, dim)) return false;
  float spacing = grid.GetSpacing();
  const unsigned int largest = std::max({grid.GetXDim(), grid.GetYDim(), grid.GetZDim()});
  constexpr float per_dim = 0.015384615f;
  if (largest > dim) spacing = static_cast<float>(largest) * spacing * per_dim;
  box.SetSpacing(spacing);
  VXInterpolateBetweenGrids(box, grid);
  if (!box.GetValues()) return false;
  return VXWriteDelphiMap(out, box.GetValues(), 1.0f / box.GetSpacing(), mid.data()) != 0;
}

bool reported(bool result, const char* format) {
  if (!result) VXThrow.Warning("Problem reading %s grid file", format);
  return result;
}

// A stream on a file whose extension can be read; null, with a warning, otherwise.
OpenStream open_grid(const std::string& name, unsigned int type) {
  if (!VXIsReadableGrid(type)) {
    VXThrow.Warning("File %s does not contain a readable grid file.", name.c_str());
    return nullptr;
  }
  OpenStream in(VXHost::VXOpenIStream(name.c_str()));
  if (!in) VXThrow.Warning("Unable to open grid file: %s.", name.c_str());
  return in;
}

std::unique_ptr<VXHost::vxostream> create_grid(const std::string& name) {
  std::unique_ptr<VXHost::vxostream> out(VXHost::VXOpenOStream(name.c_str()));
  if (!out) VXThrow.Warning("Unable to open file for grid writing: %s", name.c_str());
  return out;
}

}  // namespace

bool VXReadGrid(VXHost::vxistream& in, VXBrioGrid& grid, unsigned int type) {
  switch (type) {
    case VXGridFileType::GRASP:
      return reported(read_grasp(in, grid), "Grasp");
    case VXGridFileType::GRD:
      return reported(detail::read_grd(in, grid), "GRD");
    case VXGridFileType::CCP4:
      return reported(detail::read_ccp4_grid(in, grid), "CCP4");
    case VXGridFileType::XPLOR:
      return reported(detail::read_xplor_grid(in, grid), "XPLOR");
    case VXGridFileType::Ascii:
      return reported(read_ascii(in, grid), "Ascii");
    default:
      VXThrow.Error("File does not contain a readable grid file");
      return false;
  }
}

bool VXReadGrid(VXHost::vxistream& in, VXBrioGrid& grid, unsigned int type, bool regularize) {
  if (!regularize) return VXReadGrid(in, grid, type);
  VXBrioGrid source;
  if (!VXReadGrid(in, source, type)) return false;
  VXMakeRegularGrid(grid, source, 0.0f);
  return true;
}

bool VXReadGrid(VXHost::vxistream& in, VXSkewGrid& grid, unsigned int type) {
  try {
    return VXReadGrid(in, brio_of(grid), type);
  } catch (const std::bad_alloc&) {
    VXThrow.Warning("Unable to allocate enough memory to read VXSkewGrid.");
    return false;
  }
}

bool VXReadGrid(VXHost::vxistream& in, VXScalarGrid& grid, unsigned int type) {
  try {
    VXSkewGrid source;
    return VXReadGrid(in, source, type) && VXMakeRegularGrid(grid, source, 0.0f);
  } catch (const std::bad_alloc&) {
    VXThrow.Warning("Unable to allocate enough memory to read VXScalarGrid.");
    return false;
  }
}

bool VXReadGrid(const std::string& name, VXBrioGrid& grid) {
  return VXReadGrid(name, grid, false);
}

bool VXReadGrid(const std::string& name, VXBrioGrid& grid, bool regularize) {
  const unsigned int type = type_of(name);
  const OpenStream in = open_grid(name, type);
  if (!in) return false;
  if (in->eof()) {
    VXThrow.Warning("Unable to open grid file: %s.", name.c_str());
    return false;
  }
  return VXReadGrid(*in, grid, type, regularize);
}

bool VXReadGrid(const std::string& name, VXSkewGrid& grid) {
  try {
    const unsigned int type = type_of(name);
    const OpenStream in = open_grid(name, type);
    if (!in) return false;
    const bool is_read = VXReadGrid(*in, brio_of(grid), type);
    // The tags that a format reads stand on the grid behind this one.
    VXCopyBaseData(grid, brio_of(grid));
    return is_read;
  } catch (const std::bad_alloc&) {
    VXThrow.Warning("Unable to allocate enough memory to read VXSkewGrid from %s.", name.c_str());
    return false;
  }
}

bool VXReadGrid(const std::string& name, VXScalarGrid& grid) {
  try {
    VXSkewGrid source;
    return VXReadGrid(name, source) && VXMakeRegularGrid(grid, source, 0.0f);
  } catch (const std::bad_alloc&) {
    VXThrow.Warning("Unable to allocate enough memory to read VXScalarGrid from %s.", name.c_str());
    return false;
  }
}

bool VXWriteGrid(VXHost::vxostream& out, const VXBrioGrid& grid, unsigned int type) {
  switch (type) {
    case VXGridFileType::GRASP:
      return write_grasp(out, grid);
    case VXGridFileType::GRD:
      return detail::write_grd(out, grid);
    case VXGridFileType::CCP4:
      return VXWriteCCP4Grid(out, grid);
    case VXGridFileType::Ascii:
      return grid.GetFloats().GetNumGrids() > 0 && VXWriteAsciiGrid(out, grid.GetFloats()[0]);
    default:
      VXThrow.Error("Error: %s is not a writeable grid file format", VXGetGridFormatString(type));
      return false;
  }
}

bool VXWriteGrid(VXHost::vxostream& out, const VXSkewGrid& grid, unsigned int type) {
  return VXWriteGrid(out, brio_of(grid), type);
}

bool VXWriteGrid(VXHost::vxostream& out, const VXScalarGrid& grid, unsigned int type) {
  if (type == VXGridFileType::CCP4) return VXWriteCCP4Grid(out, grid);
  return VXWriteGrid(out, VXSkewGrid(grid), type);
}

bool VXWriteGrid(const std::string& name, const VXBrioGrid& grid) {
  const auto out = create_grid(name);
  if (!out) return false;
  const bool is_written = VXWriteGrid(*out, grid, type_of(name));
  // Only the end tells whether the bytes arrived.
  return out->close() && is_written;
}

bool VXWriteGrid(const std::string& name, const VXSkewGrid& grid) {
  return VXWriteGrid(name, brio_of(grid));
}

bool VXWriteGrid(const std::string& name, const VXScalarGrid& grid) {
  if (type_of(name) == VXGridFileType::CCP4) return VXWriteCCP4Grid(name, grid);
  return VXWriteGrid(name, VXSkewGrid(grid));
}

int vx_read_grid_object(const char* name, VXBrioGrid& grid) {
  VXHost::vxifstream in(name);
  return VXReadGrid(in, grid, VXGetGridFileType(VXMol::VXGetFileExtension(name))) ? 1 : 0;
}

int vx_write_grid_object(const char* name, const VXBrioGrid& grid) {
  return VXWriteGrid(std::string(name ? name : ""), grid) ? 1 : 0;
}

}  // namespace VXCore
