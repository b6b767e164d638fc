// Makes the seeds of the fuzz targets: one folder for each, small files of every kind a reader
// knows.
//
// Usage: make_corpus FOLDER
#include <array>       // for array
#include <filesystem>  // for path, create_directories
#include <fstream>     // for ofstream
#include <iostream>    // for cerr
#include <optional>    // for optional
#include <string>      // for string
#include <utility>     // for swap
#include <vector>      // for vector

#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/mtz.hpp>  // for Mtz

#include "vxgrid/gaussian/containers.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/legacy_file.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/reflection/formats.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/serial/grid_fields.h"
#include "vxgrid/serial/grid_json.h"
#include "vxgrid/serial/reflection_vxb.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/molecule_file.h"
#include "vxgrid/toolkit/mol/pdb_data.h"
#include "vxgrid/toolkit/names.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace {

namespace fs = std::filesystem;

bool all_written = true;

void note(bool written, const fs::path& path) {
  if (written) return;
  all_written = false;
  std::cerr << "not written: " << path << '\n';
}

void write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  note(out.good(), path);
}

// A crystal grid of 4 x 3 x 5 points without a right angle.
VXCore::VXBrioGrid crystal_grid() {
  VXCore::VXBrioGrid grid;
  grid.SetDim(4, 3, 5);
  std::vector<float> values(60);
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = 0.5f * static_cast<float>(i) - 7.0f;
  grid.SetValues(values.data(), 60);
  grid.SetUnitCell(10, 12, 14, 80, 95, 107, 8, 9, 5);
  grid.SetSpaceGroup(1);
  grid.SetTitle("seed");
  return grid;
}

std::string ccp4_bytes(const std::array<int, 3>& axes) {
  VXCore::VXCCP4Map map;
  VXCore::VXGridToCCP4(map, crystal_grid());
  map.MAPC = axes[0];
  map.MAPR = axes[1];
  map.MAPS = axes[2];
  map.NLABL = 1;
  map.NSYMBT = 160;
  map.symmetry.resize(2);
  for (auto& record : map.symmetry)
    record.fill(' ');
  VXCore::vxosstream out;
  map.Write(out);
  return out.str();
}

// Numbers turned around, texts left alone.
std::string in_other_byte_order(std::string map) {
  for (std::size_t at = 0; at + 4 <= map.size(); at += 4) {
    if (at == 208 || (at >= 224 && at < 1024 + 160)) continue;
    std::swap(map[at], map[at + 3]);
    std::swap(map[at + 1], map[at + 2]);
  }
  return map;
}

void make_ccp4(const fs::path& folder) {
  const std::string plain = ccp4_bytes({1, 2, 3});
  std::string bytes_mode = plain.substr(0, 1024 + 160) + std::string(60, '\x40');
  bytes_mode[12] = 0;
  for (const char* target : {"ccp4_map", "ccp4_reader"}) {
    write(folder / target / "xyz", plain);
    write(folder / target / "zxy", ccp4_bytes({3, 1, 2}));
    write(folder / target / "yzx_other_order", in_other_byte_order(ccp4_bytes({2, 3, 1})));
    write(folder / target / "bytes", bytes_mode);
    write(folder / target / "surplus", plain + "surplus");
  }
}

void make_other_grids(const fs::path& folder) {
  const auto in_format = [](const VXCore::VXBrioGrid& grid, unsigned int type) {
    VXCore::vxosstream out;
    VXCore::VXWriteGrid(out, grid, type);
    return out.str();
  };
  VXCore::VXBrioGrid grid = crystal_grid();
  write(folder / "ascii" / "seed", in_format(grid, VXCore::VXGridFileType::Ascii));
  write(folder / "grd" / "crystal", in_format(grid, VXCore::VXGridFileType::GRD));
  grid.SetFloatsMultiple(3);
  grid.SetIntegersMultiple(2);
  grid.SetXReentrant();
  write(folder / "grd" / "fields", in_format(grid, VXCore::VXGridFileType::GRD));
  // The values of the one box that the format knows are a megabyte; a reader takes a short file.
  write(folder / "grasp" / "seed", in_format(grid, VXCore::VXGridFileType::GRASP).substr(0, 1024));
}

void make_xplor(const fs::path& folder) {
  std::string text = "\n       1 !NTITLE\n REMARKS seed\n";
  text += "       4       0       1       4       0       2       4       0       1\n";
  for (const char* number : {" 0.10000E+02", " 0.90000E+02"}) {
    for (int i = 0; i < 3; ++i)
      text += number;
  }
  text += "\nZYX\n";
  for (int section = 0; section < 2; ++section) {
    text += "       " + std::to_string(section) + "\n";
    for (int i = 0; i < 6; ++i)
      text += " 0.25000E+00";
    text += "\n";
  }
  write(folder / "xplor" / "text", text);

  std::string binary;
  const auto put = [&](auto value) {
    binary.append(reinterpret_cast<const char*>(&value), sizeof value);
  };
  put(84);
  put(1);
  binary += std::string(80, ' ');
  put(84);
  put(36);
  for (const int number : {4, 0, 1, 4, 0, 2, 4, 0, 1})
    put(number);
  put(36);
  put(48);
  for (const double number : {10.0, 10.0, 10.0, 90.0, 90.0, 90.0})
    put(number);
  put(48);
  put(3);
  binary += "ZYX";
  put(3);
  for (int section = 0; section < 2; ++section) {
    for (const int word : {4, section, 4, 48})
      put(word);
    for (int i = 0; i < 6; ++i)
      put(0.25 * i);
    put(48);
  }
  write(folder / "xplor" / "binary", binary);
}

void make_legacy(const fs::path& folder) {
  VXCore::GridStruct record;
  record.xmid = record.ymid = record.zmid = 1;
  record.xdim = 2;
  record.ydim = record.zdim = 3;
  record.spacing = record.inverse_spacing = 1;
  VXCore::vx_allocate_grid_struct(record, true, true, -1);
  VXCore::vx_zero_grid_struct(record, true, true, -1);
  fs::create_directories(folder / "legacy_grid");
  for (int selector = 1; selector <= 3; ++selector) {
    const fs::path path = folder / "legacy_grid" / std::to_string(selector);
    note(VXCore::vi_write_grid(0, record, 1, path.c_str(), selector) == 1, path);
  }
  VXCore::vx_deallocate_grid_struct(record, true, true);
}

void make_molecules(const fs::path& folder) {
  VXMol::VXGraphMol molecule;
  for (const unsigned int element : {7u, 6u, 6u, 8u})
    molecule.NewAtom(element);
  const std::array<float, 12> coords{0, 0, 0, 1.46f, 0, 0, 2.0f, 1.42f, 0, 1.25f, 2.4f, 0};
  molecule.SetCoords(coords.data());
  VXMol::VXSetPDBData(molecule, "CRYST1",
                      "   10.000   12.000   14.000  90.00  90.00  90.00 P 1           1");
  fs::create_directories(folder / "molecule");
  for (const char* name : {"seed.pdb", "seed.cif"}) {
    const fs::path path = folder / "molecule" / name;
    note(VXMol::VXWriteMolecule(path.string(), molecule), path);
  }
}

// The library reads MTZ files and writes none.
void make_mtz(const fs::path& folder) {
  gemmi::Mtz mtz;
  mtz.title = "seed";
  mtz.spacegroup = gemmi::find_spacegroup_by_number(19);
  mtz.add_base();
  mtz.add_dataset("seed");
  mtz.add_column("FP", 'F', -1, -1, false);
  mtz.add_column("FWT", 'F', -1, -1, false);
  mtz.add_column("PHWT", 'P', -1, -1, false);
  mtz.set_cell_for_all(gemmi::UnitCell(10, 12, 14, 90, 90, 90));
  mtz.nreflections = 4;
  for (int i = 1; i <= 4; ++i) {
    const auto f = static_cast<float>(i);
    for (const float value : {f, 2.0f, 1.0f, 10.0f * f, 9.0f * f, 45.0f})
      mtz.data.push_back(value);
  }
  std::string bytes;
  mtz.write_to_string(bytes);
  write(folder / "mtz" / "seed", bytes);
}

void make_mmcif_map(const fs::path& folder) {
  const std::string crystal =
      "_cell.length_a 10\n_cell.length_b 12\n_cell.length_c 14\n_cell.angle_alpha 90\n"
      "_cell.angle_beta 90\n_cell.angle_gamma 90\n_symmetry.space_group_name_H-M 'P 21 21 21'\n";
  std::string merged = "loop_\n";
  for (const char* item : {"index_h", "index_k", "index_l", "status", "F_meas_au", "F_calc",
                           "phase_calc", "pdbx_FWT", "pdbx_PHWT", "pdbx_DELFWT", "pdbx_DELPHWT"})
    merged += std::string("_refln.") + item + "\n";
  merged += "1 2 1 o 10 9 30 12.5 40 2 140\n-2 0 3 f 7(2) ? ? 6 0 3 180\n";
  std::string unmerged =
      "loop_\n_diffrn_radiation.diffrn_id\n_diffrn_radiation.wavelength_id\n"
      "1 1\nloop_\n";
  for (const char* item : {"diffrn_id", "index_h", "index_k", "index_l", "intensity_net",
                           "intensity_sigma", "pdbx_image_id"})
    unmerged += std::string("_diffrn_refln.") + item + "\n";
  unmerged += "1 1 2 1 100 5 1\n1 -1 2 1 90 5 2.5\n2 3 3 1 9 5 7\n";
  write(folder / "mmcif_map" / "merged", "data_one\n" + crystal + merged);
  write(folder / "mmcif_map" / "unmerged", "data_one\n" + crystal + unmerged);
  write(folder / "mmcif_map" / "both", "data_one\n" + crystal + merged + "data_two\n" + unmerged);
}

void make_reflections(const fs::path& folder) {
  VXCore::VXReflection set;
  set.SetCount(2);
  const std::array<int, 2> indices{-12, 3};
  const std::array<float, 2> values{0.5f, 12.25f};
  set.SetHKL(indices.data(), indices.data(), indices.data(), 2);
  for (unsigned int column = 0; column <= VXCore::VXReflectionColumn::Stolsq; ++column)
    set.SetColumn(column, values.data(), 2);
  set.SetRFree(indices.data(), 2);
  set.SetABCD(values.data(), values.data(), values.data(), values.data(), 2);
  set.SetTitle("seed");
  const std::array<float, 6> cell{10, 12, 14, 90, 90, 90};
  set.SetSymmetry(VXCore::VXXtal::VXSymmetry(19, VXCore::VXXtal::VXUnitCell(cell.data())));
  for (const char* format : {"vxx", "phs", "fob"}) {
    const bool is_xplor = std::string(format) == "fob";
    const fs::path path = folder / (std::string("reflection_") + (is_xplor ? "xplor" : format)) /
                          ("seed." + std::string(format));
    fs::create_directories(path.parent_path());
    note(VXCore::VXWriteReflection(path.string(), set), path);
  }
  // The library reads these and writes none.
  const std::string hkl = "HKL -12 3 1 10.5 0.25 90.0 0.75\nHKL 3 0 2 1e1 1 1000 0.5\n";
  write(folder / "reflection_hkl" / "seed", hkl);
  write(folder / "reflection_phs" / "hkl", hkl);
  std::string cif = "data_seed\nloop_\n";
  for (const char* item : {"index_h", "index_k", "index_l", "F_squared_meas", "F_meas_au",
                           "F_meas_sigma_au", "F_calc", "phase_meas", "phase_calc", "fom"})
    cif += std::string("_refln.") + item + "\n";
  write(folder / "reflection_cif" / "seed",
        cif + "-12 3 1 100 10.5 0.25 9 90 -90 0.75\n3 0 2 4 ? 1 . 0 0 1\n#\nloop_\n");
}

// The first byte says of which class the object is.
void make_vxb(const fs::path& folder) {
  VXCore::VXBinaryIOHandler handler;
  VXCore::VXInitReflectionHandlers(handler);
  const auto seed = [&](char kind, const VXCore::VXBase& object, const char* name) {
    VXCore::vxosstream out;
    note(handler.WriteObject(out, object), folder / "vxb" / name);
    write(folder / "vxb" / name, kind + out.str());
  };
  VXCore::VXBrioGrid brio = crystal_grid();
  brio.SetFloatsMultiple(2);
  const VXCore::VXSkewGrid skew{VXCore::VXSkewGridImpl(brio)};
  VXCore::VXScalarGrid scalar(2, 2, 2, 0, 0, 0, 1, "seed");
  scalar.SetData("inner", skew);
  VXCore::VXGaussian gaussian(1, 2, 3, 4, 5, 6);
  gaussian.SetStringData("atom", "CA");
  VXCore::VXGaussianContainer gaussians;
  gaussians.AddGaussian(gaussian);
  gaussians.AddGaussian(VXCore::VXGaussian());
  gaussians.SetIntData("count", 2);
  VXCore::VXReflection set;
  set.SetCount(2);
  const std::array<int, 2> indices{1, -2};
  const std::array<float, 2> values{0.5f, 12.25f};
  set.SetHKL(indices.data(), indices.data(), indices.data(), 2);
  set.SetFobs(values.data(), 2);
  set.SetRESO(0.1, 0.2);
  VXCore::VXMultiGrid<int> fields;
  fields.SetDim(2, 3, 2);
  fields.SetNumGrids(2);
  VXCore::VXContainer data;
  data.SetBoolData("b", true);
  data.SetData("u", 1u);
  data.SetData("f", std::vector<float>{1, 2});
  data.SetData("d", std::vector<double>{1, 2});
  data.SetData("t", std::vector<std::string>{"a", "bc"});
  data.SetData("c", std::array<float, 6>{});
  data.SetData("p", std::array<float, 3>{});
  seed(0, scalar, "scalar");
  seed(1, skew, "skew");
  seed(2, brio, "brio");
  seed(3, gaussian, "gaussian");
  seed(4, gaussians, "gaussians");
  seed(5, set, "reflections");
  seed(6, fields, "fields");
  seed(7, data, "data");
}

void make_json_and_records(const fs::path& folder) {
  const VXCore::VXSkewGrid skew{VXCore::VXSkewGridImpl(crystal_grid())};
  VXCore::VXScalarGrid scalar(2, 2, 3, 0, 0, 0, 1, "seed");
  scalar.SetType(VXCore::VXGridType::Ux);
  scalar.SetData("inner", skew);
  scalar.SetData("grids", std::vector<VXCore::VXScalarGrid>(2));
  scalar.SetData("d", 0.1);
  scalar.SetData("u", std::vector<unsigned int>{1, 2});
  scalar.SetData("t", std::vector<std::string>{"a", "bc"});
  scalar.SetData("c", std::array<float, 6>{});
  scalar.SetBoolData("b", true);
  const auto document = [](const auto& grid) {
    return VXCore::VXGridToJSON(grid, VXCore::grid_json_flavor);
  };
  write(folder / "grid_json" / "scalar", document(scalar));
  write(folder / "grid_json" / "skew", document(skew));
  write(folder / "grid_json" / "empty", document(VXCore::VXScalarGrid()));

  using Vector = std::vector<std::optional<VXCore::VXSkewGrid>>;
  const Vector grids{skew, std::nullopt, VXCore::VXSkewGrid()};
  const VXPipe::VXField<Vector> field("grids");
  VXPipe::VXRecord record;
  VXPipe::VXSetGridValue(record, VXPipe::VXField<VXCore::VXScalarGrid>("scalar"), scalar);
  VXPipe::VXSetValue(record, field, grids);
  VXPipe::VXSetValue(record, VXPipe::VXField<int>("int"), 7);
  VXPipe::VXSetValue(record, VXPipe::VXField<double>("double"), 0.5);
  VXPipe::VXSetValue(record, VXPipe::VXField<std::string>("text"), std::string("seed"));
  const auto seed = [&](const char* name, const VXPipe::VXBytes& bytes) {
    write(folder / "record" / name, {bytes.begin(), bytes.end()});
  };
  seed("record", record.ToBytes());
  seed("scalar", VXPipe::VXFieldType<VXCore::VXScalarGrid>::ToBytes(scalar));
  seed("vector", record.GetBytes(field));
  write(folder / "record" / "json",
        VXPipe::VXVectorFieldType<VXCore::VXSkewGrid>().BytesToJSON(record.GetBytes(field)));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_corpus FOLDER\n";
    return 2;
  }
  const fs::path folder = argv[1];
  make_ccp4(folder);
  make_other_grids(folder);
  make_xplor(folder);
  make_legacy(folder);
  make_molecules(folder);
  make_mtz(folder);
  make_mmcif_map(folder);
  make_reflections(folder);
  make_vxb(folder);
  make_json_and_records(folder);
  return all_written ? 0 : 1;
}
