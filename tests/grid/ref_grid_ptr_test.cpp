#include "vxgrid/grid/ref_grid_ptr.h"

#include <gtest/gtest.h>

#include <utility>  // for as_const

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

struct Pointers {
  bool base, const_base, scalar, const_scalar, skew, const_skew;
  bool operator==(const Pointers&) const = default;
};

Pointers set_in(const VXRefGridPtr& ptr) {
  const VXGridAbstractBase* const const_base = ptr;
  VXGridAbstractBase* const base = ptr;
  const VXScalarGrid* const const_scalar = ptr;
  VXScalarGrid* const scalar = ptr;
  const VXSkewGrid* const const_skew = ptr;
  VXSkewGrid* const skew = ptr;
  return {!!base, !!const_base, !!scalar, !!const_scalar, !!skew, !!const_skew};
}

TEST(RefGridPtr, SetsThePointersThatItsArgumentAllows) {
  VXScalarGrid scalar;
  VXSkewGrid skew;
  VXBrioGrid brio;
  EXPECT_EQ(set_in(VXRefGridPtr()), (Pointers{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(set_in(VXRefGridPtr(&scalar)), (Pointers{1, 1, 1, 1, 0, 0}));
  EXPECT_EQ(set_in(VXRefGridPtr(&std::as_const(scalar))), (Pointers{0, 1, 0, 1, 0, 0}));
  EXPECT_EQ(set_in(VXRefGridPtr(&skew)), (Pointers{1, 1, 0, 0, 1, 1}));
  EXPECT_EQ(set_in(VXRefGridPtr(&std::as_const(skew))), (Pointers{0, 1, 0, 0, 0, 1}));

  const auto any = [](VXBase& object) { return set_in(VXRefGridPtr(&object)); };
  const auto any_const = [](const VXBase& object) { return set_in(VXRefGridPtr(&object)); };
  EXPECT_EQ(any(scalar), (Pointers{1, 0, 1, 0, 0, 0}));
  EXPECT_EQ(any(skew), (Pointers{1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(any(brio), (Pointers{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(any_const(scalar), (Pointers{0, 1, 0, 1, 0, 0}));
  EXPECT_EQ(any_const(skew), (Pointers{0, 1, 0, 0, 0, 1}));
  EXPECT_EQ(any_const(brio), (Pointers{0, 0, 0, 0, 0, 0}));
}

TEST(RefGridPtr, ChangesThroughAMutableBaseButAnswersNothing) {
  VXScalarGrid scalar(2, 3, 4, 1, 2, 3, 0.5f, "", nullptr);
  VXRefGridPtr ptr(static_cast<VXBase*>(&scalar));
  EXPECT_FALSE(ptr.IsValid());
  EXPECT_EQ(ptr.GetValues(), scalar.GetValues());
  EXPECT_EQ(std::as_const(ptr).GetValues(), nullptr);
  EXPECT_TRUE(ptr.SetTitle("new") && ptr.SetType(3));
  EXPECT_TRUE(scalar.GetTitle() == "new" && scalar.GetType() == 3);
  EXPECT_TRUE(ptr.GetTitle() == "" && ptr.GetType() == 0);
  EXPECT_EQ(ptr.GetSize() + ptr.GetXDim() + ptr.GetYDim() + ptr.GetZDim(), 0u);
  EXPECT_EQ(ptr.GetSpacing(), 0.0f);
  unsigned int dim = 7;
  float mid = 7;
  EXPECT_FALSE(ptr.GetDim(dim, dim, dim) || ptr.GetMid(mid, mid, mid) || ptr.IsSpacingSet() ||
               ptr.IsDataType(type_ids::scalar_grid));
  ptr.Clear();
  EXPECT_EQ(scalar.GetSize(), 0u);
}

TEST(RefGridPtr, AnswersForASkewGridAndChangesOnlyWhatIsNotConst) {
  VXSkewGrid skew;
  skew.SetDim(2, 3, 4);
  skew.SetMid(1, 2, 3);
  skew.SetSpacing(0.5f);
  skew.SetType(VXGridType::RegularMap);
  VXRefGridPtr ptr(&std::as_const(skew));
  EXPECT_TRUE(ptr.IsValid() && ptr.IsSkew() && ptr.IsSpacingSet());
  EXPECT_TRUE(ptr.IsDataType(type_ids::skew_grid));
  EXPECT_NE(ptr.GetDataType(), skew.GetDataType());
  EXPECT_TRUE(ptr.GetType() == VXGridType::RegularMap && ptr.GetSize() == 24 &&
              ptr.GetYDim() == 3 && ptr.GetZMid() == 3);
  EXPECT_EQ(std::as_const(ptr).GetValues(), skew.GetValues());
  EXPECT_EQ(ptr.GetValues(), nullptr);
  EXPECT_FALSE(ptr.SetTitle("no") || ptr.SetType(1));
  ptr.Clear();
  EXPECT_EQ(skew.GetSize(), 24u);
  EXPECT_TRUE(VXRefGridPtr(&skew).SetType(1));
  EXPECT_EQ(skew.GetType(), 1u);
}

}  // namespace
}  // namespace VXCore
