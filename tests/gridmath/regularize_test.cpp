// Resampling of oriented and periodic grids against the field they were filled from.
#include "vxgrid/gridmath/regularize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <gemmi/math.hpp>
#include <vector>

#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/grid_functions.h"
#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridmath/motions.h"
#include "vxgrid/gridmath/sampling.h"

namespace {

using namespace VXCore;
using vxgrid_test::dims_of;
using vxgrid_test::MessageCapture;
using vxgrid_test::place_of;
using vxgrid_test::values_of;
using Field = std::function<double(double, double, double)>;

double linear(double x, double y, double z) {
  return 5 + x - 2 * y + 0.5 * z;
}

void fill(VXBrioGrid& grid, const Field& field) {
  for (unsigned int e = 0; e < grid.GetSize(); ++e) {
    const auto [x, y, z] = place_of(grid, e);
    grid.GetValues()[e] = static_cast<float>(field(x, y, z));
  }
}

// Triclinic, with steps of three different lengths.
VXBrioGrid triclinic(unsigned int nx, unsigned int ny, unsigned int nz) {
  VXBrioGrid grid;
  grid.SetDim(nx, ny, nz);
  grid.SetMid(2, -1, 3);
  grid.SetUnitCell(12, 15, 20, 75, 100, 115, 24, 25, 32);
  return grid;
}

// The lattice index of a place in double precision, with the inverse that gemmi forms.
std::array<double, 3> index_of(const VXBrioGrid& grid, const std::array<float, 3>& place) {
  float o[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  grid.GetOrientation(o);
  const gemmi::Mat33 orientation(o[0], o[1], o[2], o[3], o[4], o[5], o[6], o[7], o[8]);
  const gemmi::Vec3 offset(place[0] - grid.GetXMid(), place[1] - grid.GetYMid(),
                           place[2] - grid.GetZMid());
  const gemmi::Vec3 steps = orientation.inverse().multiply(offset) / double{grid.GetSpacing()};
  const auto dim = dims_of(grid);
  return {steps.x + (dim[0] - 1) / 2.0, steps.y + (dim[1] - 1) / 2.0, steps.z + (dim[2] - 1) / 2.0};
}

// Smallest distance of an index to the ends of the source, negative outside.
double depth(const VXBrioGrid& source, const std::array<double, 3>& index) {
  double result = 1e9;
  for (std::size_t axis = 0; axis < 3; ++axis)
    result = std::min({result, index[axis], dims_of(source)[axis] - 1 - index[axis]});
  return result;
}

// Every point of `out` has the linear field inside the source and 0 outside; those within a
// thousandth of a cell of the surface are not judged.
void expect_linear_inside(const VXBrioGrid& source, const VXBrioGrid& out) {
  std::size_t inside = 0;
  for (unsigned int e = 0; e < out.GetSize(); ++e) {
    const auto p = place_of(out, e);
    const double d = depth(source, index_of(source, p));
    if (std::abs(d) < 1e-3) continue;
    if (d > 0) ++inside;
    EXPECT_NEAR(out.GetValues()[e], d > 0 ? linear(p[0], p[1], p[2]) : 0.0, 2e-4) << e;
  }
  EXPECT_GT(inside, out.GetSize() / 20);
  EXPECT_LT(inside, out.GetSize());
}

TEST(Regularize, a_triclinic_grid_keeps_a_linear_field_inside_and_is_0_outside) {
  VXBrioGrid source = triclinic(20, 17, 23);
  fill(source, linear);
  source.SetTitle("map");
  VXBrioGrid out;
  ASSERT_TRUE(VXMakeRegularGrid(out, source, 0.4f));
  EXPECT_EQ(out.GetTitle(), "map");
  EXPECT_EQ(out.GetSpacing(), 0.4f);
  EXPECT_FALSE(out.GetOrientationSet());
  expect_linear_inside(source, out);

  const float centre[3] = {3, 0, 2};
  const float extents[3] = {9, 5, 7};
  ASSERT_TRUE(VXMakeRegularSubGrid(out, source, centre, extents, 0.3f, false));
  EXPECT_EQ(out.GetXDim(), 31u);
  EXPECT_EQ(out.GetYDim(), 17u);
  expect_linear_inside(source, out);

  // A turned grid as well, and a spacing of 0 that means the source's.
  const float quarter[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  VXRotate(source, quarter);
  fill(source, linear);
  const float turned[3] = {1, 2, 3};
  ASSERT_TRUE(VXMakeRegularSubGrid(out, source, turned, extents, 0.0f, false));
  EXPECT_EQ(out.GetSpacing(), source.GetSpacing());
  expect_linear_inside(source, out);
}

TEST(Regularize, a_grid_without_orientation_at_its_own_spacing_is_copied_with_its_tags) {
  VXBrioGrid source;
  source.SetDim(3, 4, 5);
  source.SetSpacing(0.5f);
  source.SetReentrant(true);
  source.SetFloatData("SIGMA", 2.0f);
  source.GetValues()[7] = 3.0f;
  for (const float spacing : {0.0f, 0.5f}) {
    VXBrioGrid out;
    ASSERT_TRUE(VXMakeRegularGrid(out, source, spacing));
    EXPECT_EQ(out.GetSize(), 60u);
    EXPECT_EQ(out.GetValues()[7], 3.0f);
    EXPECT_TRUE(out.HasData("SIGMA"));
    EXPECT_EQ(out.GetReentrant(), 7u);
  }
  VXBrioGrid out;
  ASSERT_TRUE(VXMakeRegularGrid(out, source, 0.25f));
  EXPECT_EQ(out.GetXDim(), 7u);  // the extents are dim*spacing
  EXPECT_FALSE(out.HasData("SIGMA"));
  EXPECT_FALSE(VXMakeRegularGrid(source, source, 0.25f));
}

TEST(Regularize, scalar_and_skew_forms_carry_type_and_tags) {
  VXBrioGrid source = triclinic(20, 17, 23);
  fill(source, linear);
  source.SetType(VXGridType::DifferenceMap);
  VXSkewGrid skew{VXSkewGridImpl(source)};
  skew.SetFloatData("SIGMA", 2.0f);
  const float centre[3] = {3, 0, 2}, extents[3] = {9, 5, 7}, half[3] = {4.5f, 2.5f, 3.5f};
  VXScalarGrid out, cut, whole;
  VXBrioGrid brio;
  ASSERT_TRUE(VXMakeRegularSubGrid(out, skew, centre, extents, 0.3f, false));
  ASSERT_TRUE(VXMakeRegularSubGrid(brio, source, centre, extents, 0.3f, false));
  EXPECT_EQ(values_of(out), values_of(brio));
  ASSERT_TRUE(VXMakeRegularSubGrid(cut, out, centre, half, 0.3f, false));
  const auto [x, y, z] = place_of(cut, cut.GetSize() / 2);
  EXPECT_NEAR(cut[cut.GetSize() / 2], linear(x, y, z), 1e-4);
  ASSERT_TRUE(VXMakeRegularGrid(whole, skew, 0.5f));
  for (const VXScalarGrid* grid : {&out, &cut, &whole})
    EXPECT_TRUE(grid->GetType() == VXGridType::DifferenceMap &&
                grid->GetFloatData("SIGMA") == 2.0f);
}

// A tiny step along one edge would turn fifty values into gigabytes at that spacing.
TEST(Regularize, a_box_out_of_all_proportion_to_the_grid_is_refused) {
  VXBrioGrid source;
  source.SetDim(2, 5, 5);
  source.SetUnitCell(100, 100, 100, 90, 90, 90, 100000, 10, 10);
  source.SetReentrant(true);
  VXBrioGrid out;
  out.SetDim(2, 2, 2);
  EXPECT_FALSE(VXMakeRegularGrid(out, source, 0.0f));
  EXPECT_EQ(out.GetSize(), 8u);
  VXScalarGrid scalar;
  EXPECT_FALSE(VXMakeRegularGrid(scalar, VXSkewGrid{VXSkewGridImpl(source)}, 0.0f));
  EXPECT_EQ(scalar.GetSize(), 0u);
  // A spacing that the caller names is the caller's affair.
  EXPECT_TRUE(VXMakeRegularGrid(out, source, 2.0f));
  EXPECT_EQ(out.GetYDim(), 21u);
}

// A cell with a closing plane, sampled far beyond its own box.
TEST(Regularize, wrapping_continues_a_crystal_periodically) {
  VXBrioGrid source = triclinic(25, 26, 33);
  const double tau = 2 * std::acos(-1.0);
  const auto periodic = [&](const std::array<double, 3>& index) {
    return std::cos(tau * index[0] / 24) + 2 * std::sin(tau * (index[1] / 25 + 2 * index[2] / 32));
  };
  for (unsigned int e = 0; e < source.GetSize(); ++e) {
    source.GetValues()[e] =
        static_cast<float>(periodic({double(e % 25), double(e / 25 % 26), double(e / 650)}));
  }
  // Trilinear blending of the periodic lattice in double precision.
  const auto blended = [&](const std::array<double, 3>& f) {
    double sum = 0;
    for (int corner = 0; corner < 8; ++corner) {
      double weight = 1;
      std::array<double, 3> node{};
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const bool high = (corner >> axis & 1) != 0;
        const double t = f[axis] - std::floor(f[axis]);
        node[axis] = std::floor(f[axis]) + (high ? 1 : 0);
        weight *= high ? t : 1 - t;
      }
      sum += weight * periodic(node);
    }
    return sum;
  };
  const float centres[][3] = {{2, -1, 3}, {40, 35, -50}, {-300, 200, 100}};
  for (const auto& centre : centres) {
    const float extents[3] = {30, 12, 16};
    VXBrioGrid out;
    ASSERT_TRUE(VXMakeRegularSubGrid(out, source, centre, extents, 0.7f, true));
    for (unsigned int i = 0; i < out.GetSize(); ++i)
      ASSERT_NEAR(out.GetValues()[i], blended(index_of(source, place_of(out, i))), 2e-3) << i;
  }
  // Reentrant grids wrap by themselves: no corner of the box is left at 0.
  source.SetReentrant(true);
  VXBrioGrid whole;
  ASSERT_TRUE(VXMakeRegularGrid(whole, source, 0.5f));
  EXPECT_NE(whole.GetValues()[0], 0.0f);
  // A step that is longer than the cell stays inside it too.
  const float wide[3] = {4000, 4000, 4000};
  VXBrioGrid coarse;
  ASSERT_TRUE(VXMakeRegularSubGrid(coarse, source, centres[0], wide, 100.0f, true));
  EXPECT_TRUE(VXGridHasNonZeroValue(coarse));
  for (const float value : values_of(coarse))
    EXPECT_LE(std::abs(value), 3.01f);
  // So do steps of so many cells that single precision cannot count them.
  VXBrioGrid even;
  even.SetSpacing(1.0f);
  even.SetDim(8, 4, 4);
  std::fill_n(even.GetValues(), even.GetSize(), 2.0f);
  for (const float step : {59714968.0f, 127205920.0f, 968426432.0f}) {
    VXBrioGrid far;
    far.SetSpacing(step);
    far.SetDim(41, 1, 1);
    far.SetMid(20.0f * step, 0, 0);
    EXPECT_EQ(vx_regularize_grid_reenterent(even, far), 1);
    EXPECT_EQ(values_of(far), std::vector<float>(far.GetSize(), 2.0f)) << step;
  }
}

TEST(Regularize, a_target_without_size_is_laid_over_the_corners_of_the_source) {
  VXBrioGrid source = triclinic(20, 17, 23);
  fill(source, linear);
  VXBrioGrid out;
  ASSERT_EQ(vx_regularize_grid(source, out), 1);
  std::array<float, 24> corners{};
  vx_get_corners_of_grid(corners.data(), source);
  float low = corners[0], high = corners[0];
  for (std::size_t i = 0; i < 24; i += 3) {
    low = std::min(low, corners[i]);
    high = std::max(high, corners[i]);
  }
  EXPECT_EQ(out.GetXDim(), 1 + static_cast<unsigned int>((high - low) / source.GetSpacing()));
  EXPECT_EQ(out.GetYMid(), source.GetYMid());
  expect_linear_inside(source, out);
  // Points on the first and the last plane stay 0.
  VXBrioGrid ones;
  ones.SetDim(5, 5, 5);
  ones.SetSpacing(1.0f);
  out = ones;
  fill(ones, [](double, double, double) { return 1; });
  ASSERT_EQ(vx_regularize_grid(ones, out), 1);
  const std::vector<float> values = values_of(out);
  EXPECT_EQ(std::count(values.begin(), values.end(), 1.0f), 27);

  float centre[3] = {3, 0, 2};
  float half[3] = {3, 2, 1};
  VXBrioGrid block;
  ASSERT_EQ(vx_make_regularized_subgrid(source, centre, half, 0.25f, block), 1);
  EXPECT_EQ(dims_of(block), (std::array{25u, 17u, 9u}));
  EXPECT_NEAR(block.GetValues()[0], linear(0, -2, 1), 2e-4);
  VXBrioGrid wrapped;
  ASSERT_EQ(vx_make_regularized_subgrid_reenterent(source, centre, half, 0.0f, wrapped), 1);
  EXPECT_EQ(wrapped.GetSpacing(), source.GetSpacing());
  const auto [x, y, z] = place_of(wrapped, 0);
  EXPECT_NEAR(wrapped.GetValues()[0], linear(x, y, z), 2e-4);
  EXPECT_EQ(vx_make_regularized_subgrid(VXBrioGrid(), centre, half, 0.0f, wrapped), 0);
  half[0] = 1e12f;
  EXPECT_EQ(vx_make_regularized_subgrid(source, centre, half, 0.1f, wrapped), 0);
}

// Rows are mapped and sampled with the work of each axis shared; the values are those of the flat
// functions point by point, to the last bit.
TEST(Regularize, rows_give_what_single_points_give) {
  VXBrioGrid source = triclinic(12, 13, 11);
  for (std::size_t e = 0; e < source.GetSize(); ++e)
    source.GetValues()[e] = std::sin(static_cast<float>(e * e % 1000));
  VXBrioGrid out;
  const float centre[3] = {2, -1, 3};
  const float extents[3] = {6, 5, 4};
  // Halves and quarters, so that every way to write a lattice point gives the same float.
  ASSERT_TRUE(VXMakeRegularSubGrid(out, source, centre, extents, 0.25f, false));
  std::vector<float> places;
  ASSERT_TRUE(out.SpatialCoords(places));
  ASSERT_EQ(vx_untransform_coordinates_by_grid_orientation(places.data(),
                                                           static_cast<int>(out.GetSize()), source),
            1);
  GridStruct record;
  ASSERT_EQ(vx_convert_grid_object_to_grid_structure(record, source), 1);
  std::vector<float> expected(out.GetSize());
  vi_map_to_atoms_from_grid(places.data(), static_cast<int>(out.GetSize()), expected.data(), record,
                            2);
  EXPECT_EQ(values_of(out), expected);
  vx_deallocate_grid_struct(record, true, true);
}

TEST(Regularize, sizes_beyond_an_int_and_hollow_sources_are_refused_by_name) {
  const float mid[3] = {0, 0, 0};
  const float value = 1;
  VXBrioGrid out;
  out.SetDim(2, 2, 2);
  const std::string overflow =
      "Unable to regularize grid due to input grid signed integer overflow: ";
  const struct {
    int dims[3];
    std::string memory, sizes;
  } cases[] = {{{65536, 65536, 2}, "65536 x 65536", "65536 x 65536 x 2"},
               {{1024, 1024, 4096}, "1048576 x 4096", "1024 x 1024 x 4096"},
               {{5, 0, 5}, "", "5 x 0 x 5"},
               {{2, -1, 2}, "", "2 x -1 x 2"}};
  const auto regularized = [&](VXBrioGrid& to, int wrap, const float* from, const int* dims,
                               float spacing, const float* orientation, const float* corners) {
    return vx_regularize_grid_from_grid_params(to, wrap, from, mid, dims, spacing, orientation,
                                               corners);
  };
  for (const auto& c : cases) {
    MessageCapture capture;
    EXPECT_EQ(regularized(out, 0, &value, c.dims, 1, nullptr, nullptr), 0);
    EXPECT_EQ(capture.messages.size(), c.memory.empty() ? 1u : 2u);
    EXPECT_EQ(capture.messages.back().second, overflow + c.sizes);
    if (!c.memory.empty()) {
      EXPECT_EQ(capture.messages[0].second,
                "Grid dimensions too large for memory size: " + c.memory);
    }
  }
  // A target that its corners make too large.
  const std::vector<float> values(8, 1.0f);
  const int dims[3] = {2, 2, 2};
  std::array<float, 24> corners{};
  corners[3] = corners[4] = corners[5] = 5000;
  VXBrioGrid empty;
  MessageCapture capture;
  EXPECT_EQ(regularized(empty, 0, values.data(), dims, 1, nullptr, corners.data()), 0);
  EXPECT_TRUE(capture.warned("Grid dimensions too large for memory size: 25010001 x 5001"));
  EXPECT_TRUE(capture.warned(
      "Unable to regularize grid due to output grid signed integer overflow: 5001 x 5001 x 5001"));
  EXPECT_EQ(empty.GetSize(), 0u);
  EXPECT_EQ(regularized(empty, 0, values.data(), dims, 1, nullptr, nullptr), 0);
  // No span, no inverse, no number: the target is cleared and nothing more.
  const float flat[9] = {1, 0, 0, 0, 1, 0, 1, 1, 0};
  for (const int wrap : {0, 1}) {
    EXPECT_EQ(regularized(out, wrap, values.data(), dims, 0, nullptr, nullptr), 0);
    EXPECT_EQ(regularized(out, wrap, values.data(), dims, NAN, nullptr, nullptr), 0);
    EXPECT_EQ(regularized(out, wrap, values.data(), dims, 1, flat, nullptr), 0);
  }
  EXPECT_FALSE(VXGridHasNonZeroValue(out));
}

TEST(Regularize, unusable_boxes_fail_without_values) {
  const VXBrioGrid source = triclinic(5, 5, 5), empty;
  VXBrioGrid out;
  const float centre[3] = {0, 0, 0}, extents[3] = {1, 1, 1}, endless[3] = {1e9f, 1, 1};
  MessageCapture quiet;
  EXPECT_FALSE(VXMakeRegularSubGrid(out, source, nullptr, extents, 0.5f, false));
  EXPECT_FALSE(VXMakeRegularSubGrid(out, source, centre, nullptr, 0.5f, false));
  EXPECT_FALSE(VXMakeRegularSubGrid(out, source, centre, endless, 0.5f, false));
  EXPECT_FALSE(VXMakeRegularSubGrid(out, empty, centre, extents, 0.0f, false));
  EXPECT_FALSE(VXMakeRegularSubGrid(out, empty, centre, extents, 0.5f, false));
  // Where single precision has no step of a period left, wrapping stops.
  const float far[3] = {1e20f, 0, 0};
  EXPECT_FALSE(VXMakeRegularSubGrid(out, source, far, extents, 0.5f, true));
  // A million cells away it still ends, soon.
  const float away[3] = {3e6f, 0, 0};
  EXPECT_TRUE(VXMakeRegularSubGrid(out, source, away, extents, 0.5f, true));
}

TEST(Regularize, a_block_of_whole_points_encloses_the_points) {
  VXBrioGrid source;
  source.SetDim(11, 9, 7);
  source.SetSpacing(0.5f);
  source.SetMid(1, 2, 3);
  fill(source, linear);
  const float points[6] = {0.3f, 1.1f, 2.6f, 1.4f, 1.9f, 2.9f};
  VXBrioGrid out;
  ASSERT_EQ(vx_make_subgrid_that_encloses_points(source, points, 2, 0.25f, out), 1);
  EXPECT_EQ(out.GetSpacing(), 0.5f);
  for (unsigned int e = 0; e < out.GetSize(); ++e) {
    const auto [x, y, z] = place_of(out, e);
    EXPECT_NEAR(out.GetValues()[e], linear(x, y, z), 1e-5);
  }
  EXPECT_EQ(place_of(out, 0)[0], 0.0f);                  // the point before 0.05
  EXPECT_EQ(place_of(out, out.GetXDim() - 1)[0], 1.5f);  // the point before 1.65
  const float far_low[6] = {-90, -90, -90, 1, 2, 3};
  ASSERT_EQ(vx_make_subgrid_that_encloses_points(source, far_low, 2, 100.0f, out), 1);
  EXPECT_EQ(out.GetSize(), source.GetSize());
  ASSERT_EQ(vx_make_subgrid_that_encloses_points(source, points, 1, 0.0f, out), 1);
  ASSERT_EQ(out.GetSize(), 1u);
  EXPECT_NEAR((*out.GetFloats().GetValues(0)), linear(0, 1, 2.5), 1e-5);
}

TEST(Regularize, a_block_beside_the_grid_is_refused_by_axis_and_side) {
  VXBrioGrid source;
  source.SetDim(5, 5, 5);
  source.SetSpacing(1.0f);
  const struct {
    float point[3];
    const char* message;
  } cases[] = {{{-9, -9, -9}, "maximum x of points is less than original grid"},
               {{9, 9, 9}, "minimum x of points is greater than original grid"},
               {{-9, 9, 0}, "minimum y of points is greater than original grid"},
               {{0, -9, 9}, "minimum z of points is greater than original grid"},
               {{0, -9, 0}, "maximum y of points is less than original grid"},
               {{0, 0, -9}, "maximum z of points is less than original grid"}};
  VXBrioGrid out;
  for (const auto& c : cases) {
    MessageCapture capture;
    EXPECT_EQ(vx_make_subgrid_that_encloses_points(source, c.point, 1, 1.0f, out), 0);
    ASSERT_EQ(capture.messages.size(), 1u);
    EXPECT_EQ(capture.messages[0].second, c.message);
  }
  const float nan[3] = {NAN, NAN, NAN};
  const float origin[3] = {0, 0, 0};
  EXPECT_EQ(vx_make_subgrid_that_encloses_points(source, nan, 1, 1.0f, out), 0);
  EXPECT_EQ(vx_make_subgrid_that_encloses_points(source, origin, 1, -1.5f, out), 0);
  EXPECT_EQ(vx_make_subgrid_that_encloses_points(source, origin, 0, 1.0f, out), 0);
  EXPECT_EQ(vx_make_subgrid_that_encloses_points(VXBrioGrid(), origin, 1, 1.0f, out), 0);
}

}  // namespace
