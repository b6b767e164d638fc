// From deposited structure factors to a map: gemmi turns the mmCIF file into an MTZ file, which is
// then read like any other.
#include "vxgrid/reflection/mmcif_map.h"

#include <cmath>      // for fabs
#include <cstddef>    // for size_t
#include <exception>  // for exception
#include <iostream>   // for cerr
#include <limits>     // for numeric_limits
#include <string>     // for string
#include <utility>    // for move
#include <vector>     // for vector

#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/cif.hpp>       // for parse_one_block, read_memory
#include <gemmi/cif2mtz.hpp>   // for CifToMtz
#include <gemmi/fail.hpp>      // for fail
#include <gemmi/fileutil.hpp>  // for file_open
#include <gemmi/mtz.hpp>       // for Mtz
#include <gemmi/refln.hpp>     // for as_refln_blocks, ReflnBlock

#include "vxgrid/reflection/mtz.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace {

namespace cif = gemmi::cif;

constexpr std::size_t first_block_limit = 1073741824;

cif::Document read_document(const std::string& input, bool first_block_only) {
  gemmi::file_open(input.c_str(), "rb");  // says what is wrong when it cannot
  vxifstream in(input);
  std::string text;
  in.read(text, first_block_only ? first_block_limit : std::numeric_limits<std::size_t>::max());
  if (!first_block_only) return cif::read_memory(text.data(), text.size(), input.c_str());
  cif::Document document;
  document.source = input;
  cif::parse_one_block(document,
                       tao::pegtl::memory_input<>(text.data(), text.size(), input.c_str()));
  return document;
}

// Refuses what gemmi would turn into ints, and add up, without a look at the range. Seven
// characters are more than the indices of any crystal have.
void check_numbers(const gemmi::ReflnBlock& block) {
  if (!block.ok()) return;
  const auto check_column = [&](const char* tag, auto is_in_range) {
    const int column = block.find_column_index(tag);
    if (column < 0) return;
    const std::vector<std::string>& values = block.default_loop->values;
    for (auto i = static_cast<std::size_t>(column); i < values.size();
         i += block.default_loop->width()) {
      if (!is_in_range(values[i])) gemmi::fail(tag, " is out of range: ", values[i].substr(0, 40));
    }
  };
  for (const char* tag : {"index_h", "index_k", "index_l"})
    check_column(tag, [](const std::string& text) { return text.size() <= 7; });
  if (!block.is_unmerged()) return;
  check_column("diffrn_id", [](const std::string& text) { return text.size() <= 3; });
  check_column("pdbx_image_id",
               [](const std::string& text) { return std::fabs(cif::as_number(text, 1.0)) <= 1e6; });
}

gemmi::Mtz convert_block(const gemmi::ReflnBlock& block) {
  check_numbers(block);
  gemmi::CifToMtz converter;
  converter.history = {"From gemmi-cif2mtz 0.7.1"};
  gemmi::Mtz mtz = converter.convert_block_to_mtz(block, std::cerr);
  // gemmi's name for this column until 0.6, for which maps would look in vain.
  for (gemmi::Mtz::Column& column : mtz.columns) {
    if (column.label == "DELPHWT") column.label = "PHDELWT";
  }
  // The writer hands this to fwrite, which takes no null pointer even for no reflections.
  mtz.data.reserve(1);
  return mtz;
}

std::string path_of_block(const std::string& output, const std::string& block_name) {
  if (block_name.find('/') != std::string::npos)
    gemmi::fail("block name cannot be part of a file name: ", block_name);
  const std::size_t stem = output.size() < 4 ? output.size() : output.size() - 4;
  return output.substr(0, stem) + "_" + block_name + ".mtz";
}

}  // namespace

bool vx_cif_to_mtz(const std::string& input, const std::string& output, bool first_block_only) {
  try {
    const std::vector<gemmi::ReflnBlock> blocks =
        gemmi::as_refln_blocks(std::move(read_document(input, first_block_only).blocks));
    // Or what an earlier call has written would pass for this file's data.
    if (blocks.empty()) gemmi::fail("no data block in ", input);
    for (const gemmi::ReflnBlock& block : blocks) {
      convert_block(block).write_to_file(
          first_block_only ? output : path_of_block(output, block.block.name));
    }
  } catch (const std::exception& failure) {
    VXThrow.Warning("Warning: %s.", failure.what());
    return false;
  }
  return true;
}

bool VXReadCIFGridFile(const std::string& filename, VXSkewGrid& grid, unsigned int maptype) {
  const std::string target = VXFileTempDirectory("") + "/convert.mtz";
  if (!vx_cif_to_mtz(filename, target, true)) {
    VXThrow.Warning("Warning: Failed to convert and make map from the input file, %s.",
                    filename.c_str());
    return false;
  }
  VXMTZColumns columns;
  return VXMTZ(target).MakeMap(grid, maptype, columns, /*automatic=*/false, /*check_only=*/false);
}

}  // namespace VXCore
