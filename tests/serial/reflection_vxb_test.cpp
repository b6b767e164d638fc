#include "vxgrid/serial/reflection_vxb.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/bad_input.h"
#include "support/messages.h"
#include "support/vxb_bytes.h"
#include "vxgrid/reflection/vxx.h"

namespace VXCore {
namespace {

using vxgrid_test::vxb_record;
using vxgrid_test::VXBTurner;

VXBinaryIOHandler& handler() {
  static VXBinaryIOHandler made;
  static const bool is_filled = (VXInitReflectionHandlers(made), true);
  static_cast<void>(is_filled);
  return made;
}

std::string written(const VXReflection& set) {
  vxosstream out;
  EXPECT_TRUE(handler().WriteObject(out, set));
  return out.str();
}

unsigned int read(const std::string& bytes, VXReflection& set) {
  vxisstream in(bytes);
  return handler().ReadObject(in, set);
}

std::string vxx(const VXReflection& set) {
  vxosstream out;
  EXPECT_TRUE(VXWriteReflectionVXX(out, set));
  return out.str();
}

std::string unknown() {
  return vxb_record("Future", "abc");
}

VXReflection full_set() {
  VXReflection set;
  set.SetTitle("a set");
  set.SetCount(4);
  const int h[] = {1, -2, 3, 4}, k[] = {0, 1, -1, 70000}, l[] = {5, 6, 7, -8};
  set.SetHKL(h, k, l, 4);
  const float row[] = {0.5f, -1, 1e10f, 3};
  for (const auto column : {VXReflectionColumn::Phase, VXReflectionColumn::Fobs,
                            VXReflectionColumn::Sigma, VXReflectionColumn::Phidelwt})
    set.SetColumn(column, row, 4);
  set.SetRFree(h, 4);
  set.SetABCD(row, row, row, row, 4);
  set.SetSymmetry(VXXtal::VXSymmetry(4, VXXtal::VXUnitCell(10, 11, 12, 90, 95, 90)));
  set.SetRESO(0.001, 0.25);
  vxisstream in(unknown());
  handler().ReadObject(in, set);
  return set;
}

TEST(ReflectionVXB, a_set_survives_with_tags_and_unknown_records_and_in_the_other_byte_order) {
  const VXReflection set = full_set();
  const std::string bytes = written(set);
  EXPECT_NE(bytes.find(unknown()), std::string::npos);
  for (const std::string& source : {bytes, VXBTurner::turned(bytes)}) {
    VXReflection back;
    ASSERT_EQ(read(source, back), VXBStatus::Success);
    EXPECT_EQ(back.GetResolution(), 2.0);
    EXPECT_EQ(back.GetTitle(), "a set");
    EXPECT_EQ(back.GetSymmetry().GetNumber(), 4u);
    std::vector<int> h(4), k(4), l(4);
    ASSERT_TRUE(back.GetHKL(h.data(), k.data(), l.data()));
    EXPECT_EQ(k, (std::vector<int>{0, 1, -1, 70000}));
    std::vector<float> phases(4);
    ASSERT_TRUE(back.GetPhidelwt(phases.data()));
    EXPECT_EQ(phases, (std::vector<float>{0.5f, -1, 1e10f, 3}));
    EXPECT_FALSE(back.GetFcalc(phases.data()));
    EXPECT_EQ(vxx(back), vxx(set));
    EXPECT_EQ(written(back), bytes);
  }
}

TEST(ReflectionVXB, the_record_is_a_group_of_the_tagged_data_and_the_vxx_stream) {
  VXReflection set = full_set();
  set.VXBase::Clear();
  const std::string stream = vxb_record("VXVXBReflection", vxx(set));
  EXPECT_EQ(written(set), vxb_record("VXReflection", stream));
  set.SetIntData("n", 1);
  const std::string bytes = written(set);
  EXPECT_EQ(bytes.substr(17, 10), "\11VXBasePOD");
  EXPECT_EQ(bytes.substr(bytes.size() - stream.size()), stream);
  // What follows the stream in a record of another writer is not taken for a part of it.
  VXReflection back;
  EXPECT_EQ(read(vxb_record("VXReflection", stream + unknown()), back), VXBStatus::Success);
  EXPECT_EQ(vxx(back), vxx(set));
  EXPECT_NE(written(back).find(unknown()), std::string::npos);
}

TEST(ReflectionVXB, the_group_says_why_it_cannot_be_read) {
  struct {
    std::string payload;
    unsigned int status;
  } const cases[] = {{std::string("\0x", 2), 6},
                     {"\4ab", 6},
                     {"\2ab", 8},
                     {std::string("\2ab\0\0\0\0", 7), 8},
                     {std::string("\2ab\0\0\0\0x", 8), 9},
                     {"\2ab\7\1\1\1x", 9},
                     {"\17VXVXBReflection\7\1\1\1x", 4}};
  for (const auto& c : cases) {
    VXReflection back;
    EXPECT_EQ(read(vxb_record("VXReflection", c.payload), back), c.status)
        << testing::PrintToString(c.payload);
  }
  VXReflection back;
  EXPECT_EQ(read(written(full_set()).substr(0, 100), back), VXBStatus::ShortRecord);
}

TEST(ReflectionVXB, functors_carry_their_tags_and_copies_do_the_same) {
  VXCollectWriteFxn<VXReflection> group("VXReflection");
  EXPECT_FALSE(group.IsCompressed());
  EXPECT_EQ(group.GetCompression(), "gz");
  group.Add(VXReflectionPODWriteFxn());
  group.Add(VXReflectionWriteFxn());
  const std::unique_ptr<VXWriteFxnBase> copy(group.CreateCopy());
  EXPECT_EQ(copy->GetTag(), "VXReflection");
  EXPECT_EQ(copy->GetType(), VXReflection().GetDataType());
  vxosstream out;
  EXPECT_TRUE((*copy)(out, full_set(), handler()));
  EXPECT_EQ(out.str(), written(full_set()));
  vxosstream nothing;
  EXPECT_TRUE(VXCollectWriteFxn<VXReflection>("VXReflection")(nothing, full_set(), handler()));
  EXPECT_EQ(nothing.str(), "");
  EXPECT_EQ(VXReflectionPODWriteFxn().GetTag(), "VXBasePOD");
  EXPECT_EQ(VXReflectionWriteFxn().GetTag(), "VXVXBReflection");
  VXReflection set;
  vxisstream in("x");
  EXPECT_EQ(VXReflectionReadFxn()(in, set, 0, handler()), VXBStatus::Success);
}

TEST(ReflectionVXB, a_record_cut_at_any_byte_fails_and_damaged_ones_do_no_harm) {
  const vxgrid_test::MessageCapture messages;
  const std::string good = written(full_set());
  vxgrid_test::for_every_cut(good, [&](const std::string& cut, std::size_t length) {
    VXReflection back;
    EXPECT_NE(read(cut, back), VXBStatus::Success) << length;
  });
  vxgrid_test::for_random_bytes(good, 1000, [&](const std::string& bytes) {
    VXReflection back;
    read(bytes, back);
    written(back);
  });
}

}  // namespace
}  // namespace VXCore
