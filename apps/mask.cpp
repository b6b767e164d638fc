// vxgrid mask: a grid with the region of a model cleared, or kept.
#include <algorithm>   // for max
#include <cstddef>     // for size_t
#include <functional>  // for not_equal_to, plus
#include <numeric>     // for inner_product
#include <vector>      // for vector

#include <CLI/CLI.hpp>

#include "command.h"
#include "grid_file.h"
#include "length_option.h"
#include "model_file.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/gaussian/molecule_masks.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/gridmath/sampling.h"
#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

namespace {

using namespace VXCore;

std::size_t count_changed(const std::vector<float>& before, const float* now) {
  return std::inner_product(before.begin(), before.end(), now, std::size_t{0}, std::plus(),
                            std::not_equal_to());
}

class MaskCommand : public Command {
 public:
  void add_options(CLI::App& app) override {
    app.add_option("GRID", input_, "Grid or map file to read")->required();
    app.add_option("MODEL", model_file_, model_file_help)->required();
    app.add_option("-o,--output", output_, grid_output_help)->required();
    app.add_option("-k,--keep", keep_, "The side of the model's surface that keeps its values")
        ->check(CLI::IsMember({"outside", "inside"}))
        ->capture_default_str();
    app.add_option("-t,--threshold", threshold_, "Density of the model at its surface")
        ->check(is_length())
        ->capture_default_str();
    app.add_flag("--smooth", smooth_,
                 "Fade by exp(-density * threshold) instead of cutting at the surface");
  }

  bool run(const Console& console) override {
    VXBrioGrid grid;
    if (!is_writeable(output_, console) || !read_grid(input_, grid, console)) return false;
    VXGraphMol model;
    if (!read_model(model_file_, model, console)) return false;
    const std::vector<float> before(grid.GetValues(), grid.GetValues() + grid.GetSize());
    const bool masked = grid.IsRegular() ? VXMaskGridByMolecule(grid, model, type(), threshold_)
                                         : mask_crystal_lattice(grid, model);
    if (!masked) return console.fail(input_ + ": cannot be masked by " + model_file_);
    // A model that lies in another frame than the map changes none.
    return write_grid(output_, grid,
                      format_text("%zu of them changed", count_changed(before, grid.GetValues())),
                      console);
  }

 private:
  unsigned int type() const {
    const bool inside = keep_ == "inside";
    if (smooth_) return inside ? mask_gaussian_smooth_inverse : mask_gaussian_smooth;
    return inside ? mask_gaussian_inverse : mask_gaussian;
  }

  /// The library masks lattices along x, y and z. On any other one the density of the model is read
  /// from a finer grid around it.
  bool mask_crystal_lattice(VXBrioGrid& grid, const VXGraphMol& model) const {
    constexpr float finest = 0.25f;
    VXBrioGrid density;
    if (!VXMakeMolecularGaussianGrid(density, model, std::max(finest, grid.GetSpacing() / 2)))
      return false;
    GridStruct record;
    record.floats = density.GetValues();
    record.spacing = density.GetSpacing();
    density.GetMid(record.xmid, record.ymid, record.zmid);
    record.xdim = static_cast<int>(density.GetXDim());
    record.ydim = static_cast<int>(density.GetYDim());
    record.zdim = static_cast<int>(density.GetZDim());

    // Values are masked at a threshold of 0.5; the density is brought to that.
    constexpr float fixed_threshold = 0.5f;
    const float scale = smooth_ ? threshold_ / fixed_threshold : fixed_threshold / threshold_;
    const std::size_t plane = std::size_t{grid.GetXDim()} * grid.GetYDim();
    std::vector<float> places(3 * plane);
    std::vector<float> mask(plane);
    for (std::size_t first = 0; first < grid.GetSize(); first += plane) {
      for (std::size_t i = 0; i < plane; ++i) {
        float* const p = &places[3 * i];
        grid.ElementToSpatialCoord(static_cast<unsigned int>(first + i), p[0], p[1], p[2]);
      }
      mask.assign(plane, 0.0f);
      constexpr int trilinear_at_floats = 2;
      vi_map_to_atoms_from_grid(places.data(), static_cast<int>(plane), mask.data(), record,
                                trilinear_at_floats);
      for (float& value : mask)
        value *= scale;
      if (!VXMaskGridValues(grid.GetValues() + first, mask.data(), static_cast<unsigned int>(plane),
                            type()))
        return false;
    }
    return true;
  }

  std::string input_;
  std::string model_file_;
  std::string output_;
  std::string keep_ = "outside";
  float threshold_ = 0.5f;
  bool smooth_ = false;
};

}  // namespace

std::unique_ptr<Command> make_mask_command() {
  return std::make_unique<MaskCommand>();
}

}  // namespace vxgrid_app
