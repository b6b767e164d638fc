// Feeds arbitrary bytes to the conversion of mmCIF reflections, and small sets of them on to the
// map. Works in a temporary folder of its own; gemmi's remarks go nowhere.
#include <stdlib.h>  // for mkdtemp, setenv

#include <cstddef>     // for size_t
#include <cstdint>     // for uint8_t
#include <cstdlib>     // for abort, atexit
#include <filesystem>  // for path, remove_all, temp_directory_path
#include <fstream>     // for ofstream
#include <iostream>    // for cerr
#include <new>         // for bad_alloc
#include <string>      // for string

#include "small_set.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mmcif_map.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/names.h"

namespace {

std::string& folder() {
  static std::string path;
  return path;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::string pattern =
      (std::filesystem::temp_directory_path() / "vxgrid-fuzz-mmcif-XXXXXX").string();
  if (!mkdtemp(pattern.data()) || setenv("TMPDIR", pattern.c_str(), 1) != 0) std::abort();
  folder() = pattern;
  std::atexit([] { std::filesystem::remove_all(folder()); });
  std::cerr.rdbuf(nullptr);
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace VXCore;
  const std::string source = folder() + "/source.cif";
  const std::string converted = folder() + "/seen.mtz";
  std::ofstream(source, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  vx_cif_to_mtz(source, folder() + "/whole.mtz", false);
  for (const auto& file : std::filesystem::directory_iterator(folder()))
    if (file.path().filename().string().rfind("whole_", 0) == 0)
      std::filesystem::remove(file.path());
  if (!vx_cif_to_mtz(source, converted, true)) return 0;

  VXReflection set;
  try {
    vxifstream in(converted);
    if (!VXReadReflectionMTZ(in, set, VXMTZColumnNames()) || !is_small(set)) return 0;
    set.Expand();
  } catch (const std::bad_alloc&) {
    return 0;
  }
  if (!is_small(set)) return 0;
  for (const unsigned int maptype :
       {VXMTZMapType::Fo, VXMTZMapType::Fc, VXMTZMapType::Fwt, VXMTZMapType::Fdelwt}) {
    VXSkewGrid grid;
    if (VXReadCIFGridFile(source, grid, maptype) && grid.GetSize() < 27) std::abort();
  }
  return 0;
}
