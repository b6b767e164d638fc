// An open MTZ file: what columns it has, which of them make a map, and that map.
#include "vxgrid/reflection/mtz.h"

#include <algorithm>    // for all_of, find
#include <array>        // for array
#include <cstddef>      // for size_t
#include <new>          // for bad_alloc
#include <string_view>  // for string_view

#include "density/map_statistics.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore {
namespace {

// Column types of MTZ files.
constexpr std::string_view amplitude_types = "FGJK";
constexpr std::string_view phase_types = "P";
constexpr std::string_view sigma_types = "LMQ";
constexpr std::string_view free_r_types = "I";

bool is_of(std::string_view types, char type) {
  return types.find(type) != std::string_view::npos;
}

bool is_automatic(unsigned int maptype) {
  switch (maptype) {
    case VXMTZMapType::Fo:
    case VXMTZMapType::Fc:
    case VXMTZMapType::TwoFoFc:
    case VXMTZMapType::TwoFoFcSigmaA:
    case VXMTZMapType::Fwt:
    case VXMTZMapType::Fdelwt:
      return true;
    default:
      return false;
  }
}

unsigned int grid_type_of(unsigned int maptype) {
  switch (maptype) {
    case VXMTZMapType::FoFc:
    case VXMTZMapType::Fdelwt:
    case VXMTZMapType::FcAuto:
      return VXGridType::DifferenceMap;
    default:
      return VXGridType::RegularMap;
  }
}

void report_columns(const VXMTZColumns& cols) {
  VXThrow.Verbose("Automatically chosen MTZ Columns");
  VXThrow.Verbose("MTZ Column\tFWT\t%s", cols.GetFwt().c_str());
  VXThrow.Verbose("MTZ Column\tPHIFWT\t%s", cols.GetPhiwt().c_str());
  VXThrow.Verbose("MTZ Column\tFDELWT\t%s", cols.GetFdelwt().c_str());
  VXThrow.Verbose("MTZ Column\tPHIDELWT\t%s", cols.GetPhidelwt().c_str());
  VXThrow.Verbose("MTZ Column\tFC\t%s", cols.GetFc().c_str());
  VXThrow.Verbose("MTZ Column\tPHIC\t%s", cols.GetPhic().c_str());
  VXThrow.Verbose("MTZ Column\tF\t%s", cols.GetFobs().c_str());
  VXThrow.Verbose("MTZ Column\tPHI\t%s", cols.GetPhi().c_str());
  VXThrow.Verbose("MTZ Column\tSIGF\t%s", cols.GetSigmaA().c_str());
}

// A column that a map type wants: where the reader puts it, its label, and how that is reported.
struct WantedColumn {
  unsigned int index;
  std::string label;
  std::string note;
};

// Empty for what is no map type. For Fo an empty phase label becomes that of the calculated phase.
std::vector<WantedColumn> wanted_columns(unsigned int maptype, VXMTZColumns& cols) {
  namespace index = VXMTZColumnIndex;
  switch (maptype) {
    case VXMTZMapType::Fo:
      if (cols.GetPhi().empty()) {
        cols.SetPhi(cols.GetPhic());
        VXThrow.Warning("Using PHIC in place of PHI for observed map.");
      }
      return {{index::FP, cols.GetFobs(), " FObs:   Using column "},
              {index::PHI, cols.GetPhi(), " Phi:    Using column "}};
    case VXMTZMapType::Fc:
    case VXMTZMapType::FcAuto:
      return {{index::FC, cols.GetFc(), " Fc:   Using column "},
              {index::PHIC, cols.GetPhic(), " Phic: Using column "}};
    case VXMTZMapType::TwoFoFc:
    case VXMTZMapType::FoFc:
    case VXMTZMapType::ThreeFoTwoFc:
    case VXMTZMapType::FiveFoThreeFc:
      return {{index::FP, cols.GetFobs(), " FObs: Using column "},
              {index::FC, cols.GetFc(), " Fc:   Using column "},
              {index::PHIC, cols.GetPhic(), " Phic: Using column "}};
    case VXMTZMapType::TwoFoFcSigmaA:
    case VXMTZMapType::FoFcSigmaA:
      return {{index::FP, cols.GetFobs(), " FObs: Using column "},
              {index::FC, cols.GetFc(), " Fc:   Using column "},
              {index::PHIC, cols.GetPhic(), " Phic: Using column "},
              {index::SIGFP, cols.GetSigmaA(), " SigmaA: Using column "}};
    case VXMTZMapType::Fwt:
      return {{index::FWT, cols.GetFwt(), " Fwt:   Using column "},
              {index::PHWT, cols.GetPhiwt(), " Phiwt: Using column "}};
    case VXMTZMapType::Fdelwt:
      return {{index::DELFWT, cols.GetFdelwt(), " Fdelwt:   Using column "},
              {index::PHDELWT, cols.GetPhidelwt(), " Phidelwt: Using column "}};
    default:
      return {};
  }
}

void report_wanted(const std::vector<WantedColumn>& wanted) {
  for (const WantedColumn& column : wanted)
    VXThrow.Verbose(column.note + column.label);
}

// What the reader is to look for: nothing that the map has no use for. The SigmaA types go by the
// default labels of coefficients and phases besides their own.
VXMTZColumnNames names_to_read(unsigned int maptype, const std::vector<WantedColumn>& wanted) {
  VXMTZColumnNames names;
  const bool by_default =
      maptype == VXMTZMapType::TwoFoFcSigmaA || maptype == VXMTZMapType::FoFcSigmaA;
  if (!by_default) {
    for (unsigned int index = VXMTZColumnIndex::FP; index < VXMTZColumnIndex::count; ++index)
      names.SetColumnName(index, std::string());
  }
  for (const WantedColumn& column : wanted)
    names.SetColumnName(column.index, column.label);
  return names;
}

// Scales the map and leaves its statistics where map files have them.
void scale_map(VXSkewGrid& grid) {
  const VXSkewGrid& values = grid;
  const auto statistics = detail::measure_map(values.GetValues(), values.GetSize());
  const float sigma = detail::normalize_by_sigma(grid, statistics);
  VXBrioGrid& brio = grid.GetImpl().GetImpl();
  brio.SetFloatData("AMIN", statistics.minimum);
  brio.SetFloatData("AMAX", statistics.maximum);
  brio.SetFloatData("ARMS", sigma);
  brio.SetFloatData("AMEAN", static_cast<float>(statistics.mean()));
}

std::string joined(const std::vector<std::string>& labels) {
  std::string text;
  for (const std::string& label : labels) {
    if (&label != &labels.front()) text += '|';
    text += label;
  }
  return text;
}

}  // namespace

VXMTZColumns::VXMTZColumns() : impl_(std::make_unique<VXMTZColumnsPrivate>()) {}
VXMTZColumns::VXMTZColumns(const VXMTZColumns& other)
    : impl_(std::make_unique<VXMTZColumnsPrivate>(*other.impl_)) {}
VXMTZColumns& VXMTZColumns::operator=(const VXMTZColumns& other) {
  *impl_ = *other.impl_;
  return *this;
}
VXMTZColumns::~VXMTZColumns() = default;

struct VXMTZ::Private {
  explicit Private(const std::string& name);
  std::vector<std::string> labels_of(std::string_view wanted_types) const;

  std::string filename;
  vxifstream stream;
  std::vector<std::string> labels;
  std::vector<char> types;
  bool valid = false;
  std::vector<std::string> amplitudes;
  std::vector<std::string> phases;
  std::vector<std::string> sigmas;
  std::vector<std::string> free_r;
};

VXMTZ::Private::Private(const std::string& name) : filename(name) {
  if (VXFileExtension(filename, "gz") != "mtz") return;
  if (!stream.open(filename)) {
    VXThrow.Error("Unable to open file %s", filename.c_str());
    return;
  }
  VXGetMTZFileColumnNamesAndTypes(stream, labels, types);
  stream.rewind();
  valid = !labels.empty();
  amplitudes = labels_of(amplitude_types);
  phases = labels_of(phase_types);
  sigmas = labels_of(sigma_types);
  free_r = labels_of(free_r_types);
}

std::vector<std::string> VXMTZ::Private::labels_of(std::string_view wanted_types) const {
  std::vector<std::string> found;
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (is_of(wanted_types, types[i])) found.push_back(labels[i]);
  }
  return found;
}

VXMTZ::VXMTZ(const std::string& filename) : private_(std::make_unique<Private>(filename)) {}

VXMTZ::VXMTZ(const VXMTZ& other) : VXMTZ(other.private_->filename) {}

VXMTZ& VXMTZ::operator=(const VXMTZ& other) {
  if (this != &other) private_ = std::make_unique<Private>(other.private_->filename);
  return *this;
}

VXMTZ::~VXMTZ() = default;

bool VXMTZ::IsValid() const {
  return private_->valid;
}

bool VXMTZ::FindColumn(const std::string& label) const {
  const auto& labels = private_->labels;
  return std::find(labels.begin(), labels.end(), label) != labels.end();
}

bool VXMTZ::FindColumns(const std::vector<std::string>& labels) const {
  for (const std::string& label : labels) {
    if (FindColumn(label)) continue;
    PrintColumns();
    VXThrow.Error("Requested column '%s' not found.", label.c_str());
    return false;
  }
  return true;
}

void VXMTZ::PrintColumns(vxostream& os) const {
  os << "Available Columns:\n";
  VXThrow.Warning("Available columns:");
  for (const std::string& label : private_->labels)
    os << "\t" << label << "\n";
}

void VXMTZ::PrintColumns() const {
  PrintColumns(vxerr);
}

const std::vector<std::string>& VXMTZ::GetAmplitudes() const {
  return private_->amplitudes;
}
const std::vector<std::string>& VXMTZ::GetPhases() const {
  return private_->phases;
}
const std::vector<std::string>& VXMTZ::GetSigmaA() const {
  return private_->sigmas;
}
const std::vector<std::string>& VXMTZ::GetFreeR() const {
  return private_->free_r;
}

bool VXMTZ::AutoGetColumns(VXMTZColumns& cols) const {
  if (FindColumn("FC"))
    cols.SetFc("FC");
  else if (FindColumn("F-model"))
    cols.SetFc("F-model");

  if (FindColumn("PHIC"))
    cols.SetPhic("PHIC");
  else if (FindColumn("PHIF-model"))
    cols.SetPhic("PHIF-model");

  // "F-obs" fills the calculated amplitude: callers rely on the field that it has always gone to.
  if (FindColumn("F"))
    cols.SetFobs("F");
  else if (FindColumn("FP"))
    cols.SetFobs("FP");
  else if (FindColumn("F-obs"))
    cols.SetFc("F-obs");

  for (const char* label : {"SIGF", "SIGFP", "SIGF-Obs"}) {
    if (!FindColumn(label)) continue;
    cols.SetSigmaA(label);
    break;
  }

  using MapLabels = std::array<const char*, 4>;
  for (const MapLabels& set : {MapLabels{"DELFWT", "PHDELWT", "FWT", "PHWT"},
                               MapLabels{"FOFCWT", "PHFOFCWT", "2FOFCWT", "PH2FOFCWT"}}) {
    if (!std::all_of(set.begin(), set.end(), [this](const char* l) { return FindColumn(l); }))
      continue;
    cols.SetFdelwt(set[0]);
    cols.SetPhidelwt(set[1]);
    cols.SetFwt(set[2]);
    cols.SetPhiwt(set[3]);
    return true;
  }
  return false;
}

bool VXMTZ::MakeMap(VXSkewGrid& grid, unsigned int maptype) const {
  VXMTZColumns cols;
  return MakeMap(grid, maptype, cols, true, false);
}

bool VXMTZ::MakeMap(VXSkewGrid& grid, unsigned int maptype, VXMTZColumns& cols, bool automatic,
                    bool check_only) const {
  if (!IsValid()) return false;
  if (automatic) {
    if (!is_automatic(maptype)) {
      VXThrow.Error(
          "Maptype must be one of Fdelwt, Fwt, 2Fo-Fc, 2Fo-FcSigmaA or Fc for automatically "
          "opening an mtz file.");
      return false;
    }
    if (!AutoGetColumns(cols)) {
      VXThrow.Warning("Could not find appropriate columns for auto opening.");
      return false;
    }
    report_columns(cols);
  }

  const unsigned int grid_type = grid_type_of(maptype);
  const std::vector<WantedColumn> wanted = wanted_columns(maptype, cols);
  if (wanted.empty()) {
    VXThrow.Error("Unknown map type");
    return false;
  }
  std::vector<std::string> labels;
  for (const WantedColumn& column : wanted)
    labels.push_back(column.label);
  // The observed map alone is reported once its columns are known to be there.
  if (maptype != VXMTZMapType::Fo) report_wanted(wanted);
  if (!FindColumns(labels)) {
    VXThrow.Warning("Unable to find desired columns in file %s", private_->filename.c_str());
    PrintColumns();
    return false;
  }
  if (maptype == VXMTZMapType::Fo) report_wanted(wanted);
  if (maptype == VXMTZMapType::FcAuto) maptype = VXMTZMapType::Fc;
  if (check_only) {
    VXThrow.Info("MTZ File should be okay for reading.");
    return true;
  }

  const VXMTZColumnNames names = names_to_read(maptype, wanted);
  VXReflection refl;
  private_->stream.rewind();
  try {
    if (!VXReadReflectionMTZ(private_->stream, refl, names)) return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
  refl.Expand();
  if (!refl.MakeMap(grid, maptype)) {
    VXThrow.Warning("Could not expand input map to desired maptype.");
    return false;
  }
  scale_map(grid);
  grid.SetType(grid_type);
  grid.SetStringData("mtz_filename", private_->filename);
  for (const char* tag : {"FObs", "Sigma", "RFree"})
    grid.DeleteData(tag);
  grid.SetStringData("fobs", joined(private_->amplitudes));
  grid.SetStringData("sigma", joined(private_->sigmas));
  grid.SetStringData("rfree", joined(private_->free_r));
  return true;
}

bool VXReadMTZ(const std::string& filename, VXSkewGrid& grid, unsigned int maptype) {
  return VXMTZ(filename).MakeMap(grid, maptype);
}

}  // namespace VXCore
