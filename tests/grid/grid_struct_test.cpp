#include "vxgrid/grid/grid_struct.h"

#include <gtest/gtest.h>

#include <climits>  // for INT_MAX, INT_MIN
#include <cstddef>  // for offsetof
#include <string>   // for string

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/pdb_struct.h"

namespace VXCore {
namespace {

TEST(GridStruct, HasItsFieldsInOrder) {
  const std::size_t scalars = 2 * sizeof(void*);
  EXPECT_TRUE(offsetof(GridStruct, xmid) == scalars && offsetof(GridStruct, xdim) == scalars + 12 &&
              offsetof(GridStruct, spacing) == scalars + 24 &&
              offsetof(GridStruct, name) == scalars + 32);
  EXPECT_TRUE(offsetof(PdbStruct, label) == 12 && offsetof(PdbStruct, type) == 32);
}

TEST(GridStruct, AllocatesZeroesAndFreesTheNamedBuffers) {
  GridStruct grid;
  grid.xdim = 3;
  grid.ydim = 2;
  grid.zdim = 2;
  EXPECT_EQ(vx_allocate_grid_struct(grid, true, false, -1), 1);
  ASSERT_NE(grid.integers, nullptr);
  EXPECT_EQ(grid.floats, nullptr);
  EXPECT_EQ(vx_allocate_grid_struct(grid, false, true, 40), 1);
  grid.integers[11] = 5;
  grid.floats[39] = 2.0f;
  vx_zero_grid_struct(grid, true, false, 0);
  EXPECT_EQ(grid.integers[11], 0);
  EXPECT_EQ(grid.floats[39], 2.0f);
  EXPECT_EQ(vx_reallocate_grid_struct(grid, 50, false, true), 1);
  EXPECT_EQ(grid.floats[39], 2.0f);
  grid.floats[49] = 1.0f;
  vx_zero_grid_struct(grid, false, true, 50);
  EXPECT_EQ(grid.floats[49], 0.0f);
  vx_deallocate_grid_struct(grid, true, true);
  EXPECT_TRUE(!grid.integers && !grid.floats);
  vx_deallocate_grid_struct(grid, true, true);

  grid.zdim = -1;
  EXPECT_EQ(vx_allocate_grid_struct(grid, true, true, 0), 0);
  EXPECT_TRUE(!grid.integers && !grid.floats);
}

TEST(GridStruct, OverflowsWhereAPlaneOrTheWholePasses31Bits) {
  struct Case {
    int x, y, z;
    bool overflow;
  };
  for (const Case& c :
       {Case{65536, 32768, 1, true}, Case{65536, 32767, 1, false}, Case{65536, 32768, 0, false},
        Case{0, INT_MAX, INT_MAX, false}, Case{1290, 1290, 1290, false},
        Case{1291, 1291, 1290, true}, Case{INT_MAX, 1, 1, false},
        Case{INT_MAX, INT_MAX, INT_MAX, true}, Case{-1, -65536, -32768, false},
        Case{-65536, 65536, -2, true}, Case{INT_MIN, INT_MAX, INT_MIN, true},
        Case{INT_MIN, INT_MAX, INT_MAX, false}}) {
    EXPECT_EQ(vx_grid_struct_overflow(c.x, c.y, c.z), c.overflow)
        << c.x << ' ' << c.y << ' ' << c.z;
  }
}

TEST(GridStruct, GoesToAGridAndBack) {
  VXBrioGrid grid;
  grid.SetDim(3, 2, 2);
  grid.SetMid(1, 2, 3);
  grid.SetSpacing(0.25f);
  grid.SetFloatsMultiple(2);
  grid.GetFloats()[1][11] = 7.0f;
  grid.GetIntegers()[0][4] = -3;
  GridStruct record;
  char name[] = "record";
  record.name = name;
  ASSERT_EQ(vx_convert_grid_object_to_grid_structure(record, grid), 1);
  EXPECT_TRUE(record.name == name && record.inverse_spacing == 4 && record.zdim == 2 &&
              record.ymid == 2);
  ASSERT_TRUE(record.floats && record.integers);
  EXPECT_EQ(record.floats[11], 7.0f);  // the selected field

  VXBrioGrid back;
  EXPECT_TRUE(VXConvertGridStructureToGridObject(back, record));
  EXPECT_EQ(back.GetTitle(), "record");
  EXPECT_EQ(back.GetValues()[11], 7.0f);
  EXPECT_EQ(back.GetIntegers()[0][4], -3);
  EXPECT_EQ(back.GetZMid(), 3.0f);
  vx_deallocate_grid_struct(record, true, true);

  record.inverse_spacing = 99.0f;
  EXPECT_EQ(vx_convert_grid_object_to_grid_structure(record, VXBrioGrid()), 1);
  EXPECT_EQ(record.inverse_spacing, 99.0f);
  EXPECT_TRUE(!record.floats && !record.integers);
  record.xdim = -5;
  EXPECT_FALSE(VXConvertGridStructureToGridObject(back, record));
}

}  // namespace
}  // namespace VXCore
