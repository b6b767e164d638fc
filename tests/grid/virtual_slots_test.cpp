// The order of virtual operations is part of the interface: callers built against an earlier header
// call by slot.
#include <gtest/gtest.h>

#include <cstddef>  // for size_t
#include <cstdint>  // for uintptr_t
#include <cstring>  // for memcpy
#include <vector>   // for vector

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/ref_grid_ptr.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

/// The slot of a virtual member function. The Itanium C++ ABI stores one plus its offset in the
/// table of virtual functions, in which the destructor takes the slots 0 and 1.
template <class Member>
std::size_t slot(Member member) {
  std::uintptr_t words[sizeof(Member) / sizeof(std::uintptr_t)];
  std::memcpy(words, &member, sizeof member);
  return (words[0] - 1) / sizeof(void*);
}

template <class Grid>
std::vector<std::size_t> base_slots() {
  return {slot(&Grid::Clear),      slot(&Grid::GetDataType),  slot(&Grid::IsDataType),
          slot(&Grid::CreateCopy), slot(&Grid::GetTitle),     slot(&Grid::SetTitle),
          slot(&Grid::GetSpacing), slot(&Grid::IsSpacingSet), slot(&Grid::GetSize),
          slot(&Grid::GetDim),     slot(&Grid::GetXDim),      slot(&Grid::GetYDim),
          slot(&Grid::GetZDim),    slot(&Grid::GetMid),       slot(&Grid::GetXMid),
          slot(&Grid::GetYMid),    slot(&Grid::GetZMid)};
}

void expect_in_order(const std::vector<std::size_t>& slots, std::size_t first) {
  for (std::size_t i = 0; i < slots.size(); ++i)
    EXPECT_EQ(slots[i], first + i) << "entry " << i;
}

class VirtualSlots : public testing::Test {
 protected:
  void SetUp() override {
#if !defined(__x86_64__) || !defined(__GNUC__)
    GTEST_SKIP() << "member pointers are read in the Itanium form of x86-64";
#endif
  }
};

TEST_F(VirtualSlots, AreTheSameForAllGridsUpToZMid) {
  expect_in_order(base_slots<VXScalarGrid>(), 2);
  expect_in_order(base_slots<VXBrioGrid>(), 2);
  expect_in_order(base_slots<VXSkewGrid>(), 2);
}

TEST_F(VirtualSlots, OfAScalarGridGoOnWithQueriesSettersReallocAndSetValues) {
  using Grid = VXScalarGrid;
  expect_in_order(
      {slot(&Grid::IsTitleSet), slot(&Grid::IsXMidSet), slot(&Grid::IsYMidSet),
       slot(&Grid::IsZMidSet), slot(&Grid::SetSpacing), slot(&Grid::SetMid), slot(&Grid::SetXMid),
       slot(&Grid::SetYMid), slot(&Grid::SetZMid), slot(&Grid::SetDim), slot(&Grid::SetXDim),
       slot(&Grid::SetYDim), slot(&Grid::SetZDim), slot(&Grid::Realloc), slot(&Grid::SetValues)},
      19);
}

TEST_F(VirtualSlots, OfARefGridPtrStandInTheirOwnOrder) {
  using Ptr = VXRefGridPtr;
  const auto const_values = slot(static_cast<const float* (Ptr::*)() const>(&Ptr::GetValues));
  const auto values = slot(static_cast<float* (Ptr::*)()>(&Ptr::GetValues));
  expect_in_order(
      {slot(&Ptr::Clear),      slot(&Ptr::GetDataType), slot(&Ptr::GetDim),  slot(&Ptr::GetMid),
       slot(&Ptr::GetXMid),    slot(&Ptr::GetYMid),     slot(&Ptr::GetZMid), slot(&Ptr::GetSpacing),
       slot(&Ptr::GetTitle),   slot(&Ptr::GetType),     const_values,        values,
       slot(&Ptr::GetXDim),    slot(&Ptr::GetYDim),     slot(&Ptr::GetZDim), slot(&Ptr::GetSize),
       slot(&Ptr::IsDataType), slot(&Ptr::IsSkew),      slot(&Ptr::IsValid), slot(&Ptr::SetTitle),
       slot(&Ptr::SetType),    slot(&Ptr::IsSpacingSet)},
      2);
}

}  // namespace
}  // namespace VXCore
