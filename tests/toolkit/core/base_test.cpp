// Tags, tagged data and type identifiers of the root object.
#include "vxgrid/toolkit/core/base.h"

#include <gtest/gtest.h>

#include <array>   // for array
#include <set>     // for set
#include <string>  // for string, to_string
#include <thread>  // for thread
#include <vector>  // for vector

namespace {

using namespace VXCore;

// Runs before or after the initialisers of other files, in an order that nobody promises.
const unsigned int tag_from_an_initialiser = VXGetTag("made while loading");

struct Unlisted {
  int x = 0;
};

TEST(Tags, AreOneNumberPerTextAndGiveItBack) {
  EXPECT_EQ(VXGetTag("made while loading"), tag_from_an_initialiser);
  EXPECT_STREQ(VXGetTag(tag_from_an_initialiser), "made while loading");
  EXPECT_NE(VXGetTag("made While loading"), tag_from_an_initialiser);
  EXPECT_EQ(VXGetTag(""), VXGetTag(static_cast<const char*>(nullptr)));
  EXPECT_STREQ(VXGetTag(4000000000u), "");
}

TEST(Tags, AgreeBetweenThreadsThatMakeThemAtTheSameTime) {
  constexpr std::size_t threads = 8, tags = 2000;
  std::array<std::vector<unsigned int>, threads> seen;
  std::vector<std::thread> running;
  for (auto& mine : seen)
    running.emplace_back([&mine] {
      for (std::size_t i = 0; i < tags; ++i)
        mine.push_back(VXGetTag(("shared tag " + std::to_string(i)).c_str()));
    });
  for (auto& thread : running)
    thread.join();
  for (const auto& mine : seen)
    EXPECT_EQ(mine, seen[0]);
  EXPECT_EQ(std::set(seen[0].begin(), seen[0].end()).size(), tags);
  for (std::size_t i = 0; i < tags; ++i)
    ASSERT_EQ(VXGetTag(seen[0][i]), "shared tag " + std::to_string(i));
}

TEST(TaggedData, ComesBackByTextAndByNumberAndIsReplaced) {
  VXBase object;
  EXPECT_FALSE(object.HasData("resolution") || object.GetBoolData("flag"));
  EXPECT_EQ(object.GetFloatData("resolution"), 0.0f);
  EXPECT_EQ(object.GetStringData("text"), "");
  EXPECT_FALSE(object.DeleteData("resolution"));
  EXPECT_EQ(object.GetBaseImpl(), nullptr) << "asking made an implementation";

  const unsigned int tag = VXGetTag("resolution");
  EXPECT_TRUE(object.SetFloatData("resolution", 2.5f));
  EXPECT_TRUE(object.SetFloatData(tag, 1.5f));
  EXPECT_EQ(object.GetFloatData("resolution"), 1.5f);
  EXPECT_EQ(object.GetBaseImpl()->GetAllData().size(), 1u);
  EXPECT_NE(object.GetBaseImpl()->FindData(tag), nullptr);

  object.SetBoolData("flag", true);
  object.SetIntData("count", -3);
  object.SetStringData(std::string("text"), "abc");
  object.SetData("literal", "xyz");
  EXPECT_TRUE(object.GetBoolData("flag") && object.GetIntData("count") == -3);
  EXPECT_EQ(object.GetStringData("text"), "abc");
  EXPECT_EQ(object.GetStringData("literal"), "xyz");

  EXPECT_TRUE(object.DeleteData(tag));
  EXPECT_FALSE(object.HasData("resolution"));
  EXPECT_TRUE(object.HasData("flag"));
  object.Clear();
  EXPECT_FALSE(object.HasData("flag"));
}

TEST(TaggedData, OfAnotherTypeCountsAsAbsent) {
  VXBase object;
  object.SetIntData("n", 5);
  EXPECT_TRUE(object.HasData("n"));
  EXPECT_EQ(object.GetFloatData("n"), 0.0f);
  unsigned int n = 9;
  EXPECT_FALSE(object.GetData("n", n));
  EXPECT_EQ(n, 9u);
  // An unlisted type comes back, and meets neither a listed one nor another unlisted one.
  std::vector<Unlisted> many;
  Unlisted back;
  object.SetData("u", Unlisted{7});
  EXPECT_TRUE(object.GetData("u", back) && back.x == 7);
  EXPECT_FALSE(object.GetData("u", many));
  EXPECT_EQ(object.GetIntData("u"), 0);
}

TEST(TaggedData, IsCopiedDeepAndReplacedByAssignmentButMergedByVXCopyBaseData) {
  VXBase source;
  source.SetIntData("a", 1);
  source.SetIntData("b", 2);

  VXBase copy(source);
  source.SetIntData("a", 10);
  EXPECT_EQ(copy.GetIntData("a"), 1);

  VXBase target;
  target.SetIntData("b", 20);
  target.SetIntData("c", 30);
  VXBase merged(target);
  VXCopyBaseData(merged, source);
  EXPECT_EQ((std::array{merged.GetIntData("a"), merged.GetIntData("b"), merged.GetIntData("c")}),
            (std::array{10, 2, 30}));

  target = source;
  EXPECT_FALSE(target.HasData("c"));
  EXPECT_EQ(target.GetIntData("a"), 10);
  const VXBase moved(std::move(target));
  EXPECT_EQ(moved.GetIntData("a"), 10);
}

}  // namespace
