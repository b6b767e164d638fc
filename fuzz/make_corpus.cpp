// Makes the seeds of the fuzz targets: one folder for each, small files of every kind a reader
// knows.
//
// Usage: make_corpus FOLDER
#include <array>       // for array
#include <filesystem>  // for path, create_directories
#include <fstream>     // for ofstream
#include <iostream>    // for cerr
#include <string>      // for string
#include <utility>     // for swap
#include <vector>      // for vector

#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/mtz.hpp>  // for Mtz

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/legacy_file.h"
#include "vxgrid/gridio/ccp4_map.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/molecule_file.h"
#include "vxgrid/toolkit/mol/pdb_data.h"
#include "vxgrid/toolkit/names.h"

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
  return all_written ? 0 : 1;
}
