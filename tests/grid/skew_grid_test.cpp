#include "vxgrid/grid/skew_grid.h"

#include <gtest/gtest.h>

#include <memory>   // for unique_ptr
#include <utility>  // for as_const, move

#include "support/grid_probes.h"
#include "vxgrid/grid/scalar_grid.h"

namespace VXCore {
namespace {

VXSkewGrid crystal_map() {
  VXSkewGrid map;
  map.SetDim(4, 3, 2);
  map.SetMid(1, 2, 3);
  map.SetUnitCell(31.5f, 42.25f, 57.75f, 78.5f, 97.25f, 112.0f, 30, 48, 50);
  map.SetSpaceGroup(1);
  map.GetValues()[23] = 4.5f;
  map.SetTitle("map");
  map.SetType(VXGridType::DifferenceMap);
  map.SetReentrant(true);
  map.SetFloatData("SIGMA", 0.5f);
  return map;
}

TEST(SkewGrid, IsABrioGridBehindTwoPointers) {
  VXSkewGrid map = crystal_map();
  const VXBrioGrid& brio = map.GetImpl().GetImpl();
  EXPECT_EQ(brio.GetValues(), std::as_const(map).GetValues());
  EXPECT_EQ(&map.AsRegularGrid(), &brio.GetFloats()[0]);
  EXPECT_EQ(map.AsRegularGrid().GetTitle(), "map");
  EXPECT_EQ(brio.GetReentrant(), 7u);
  EXPECT_EQ(brio.GetType(), VXGridType::DifferenceMap);
  EXPECT_TRUE(map && map.HasUnitCell() && map.HasSpaceGroup() && !map.IsRegular());
  // Tags of the grid are its own.
  EXPECT_FALSE(brio.HasData("SIGMA"));

  EXPECT_EQ(vxgrid_test::place_of(map, 17), vxgrid_test::place_of(brio, 17));
  float dx = 0, dy = 0, dz = 0;
  EXPECT_TRUE(map.GetImpl().PackingTransform(1, 0, 0, dx, dy, dz));
  EXPECT_NEAR(dx, 4 * 31.5f / 30, 1e-5f);
  map.GetImpl().SetOrientationSet(false);
  EXPECT_TRUE(map.HasUnitCell() && map.IsRegular());
}

TEST(SkewGrid, KeepsItsImplementationObjectsThroughEveryAssignment) {
  VXSkewGrid map;
  VXSkewGridImpl* const impl = &map.GetImpl();
  VXBrioGrid* const brio = &impl->GetImpl();
  const auto kept = [&] { return &map.GetImpl() == impl && &impl->GetImpl() == brio; };

  map = crystal_map();
  map = static_cast<const VXSkewGrid&>(map);
  EXPECT_TRUE(kept());
  EXPECT_TRUE(map.GetValues()[23] == 4.5f && map.GetFloatData("SIGMA") == 0.5f &&
              map.GetSpaceGroup() == 1);

  const VXSkewGrid other = crystal_map();
  map = other.GetImpl();
  EXPECT_TRUE(kept());
  VXScalarGrid scalar(2, 2, 2, 0, 0, 0, 0.5f, "scalar");
  scalar.SetType(VXGridType::Electrostatic);
  scalar.SetIntData("note", 3);
  map = scalar;
  EXPECT_TRUE(kept());
  EXPECT_EQ(map.GetType(), VXGridType::Electrostatic);
  EXPECT_TRUE(map.GetIntData("note") == 3 && map.GetTitle() == "scalar" && map.IsRegular());
  map.GetValues()[7] = 2.0f;
  map = map.AsRegularGrid();
  EXPECT_TRUE(kept());
  EXPECT_EQ(map.GetValues()[7], 2.0f);
}

TEST(SkewGrid, CopiesAreIndependentAndMovesLeaveAnEmptyGrid) {
  VXSkewGrid map = crystal_map();
  const std::unique_ptr<VXBase> made(map.CreateCopy());
  auto& copy = static_cast<VXSkewGrid&>(*made);
  copy.GetValues()[23] = -1.0f;
  EXPECT_EQ(map.GetValues()[23], 4.5f);
  EXPECT_EQ(copy.GetFloatData("SIGMA"), 0.5f);

  const VXSkewGrid moved(std::move(map));
  EXPECT_EQ(moved.GetValues()[23], 4.5f);
  copy.Clear();
  for (const VXSkewGrid* empty : {&std::as_const(map), &std::as_const(copy)}) {
    EXPECT_FALSE(*empty);
    EXPECT_FALSE(empty->HasUnitCell() || empty->HasSpaceGroup() || empty->HasData("SIGMA") ||
                 !empty->IsRegular());
  }
}

}  // namespace
}  // namespace VXCore
