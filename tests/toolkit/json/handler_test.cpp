// Tagged data as keys of a document and back, and the handlers for types of their own.
#include "vxgrid/toolkit/json/handler.h"

#include <gtest/gtest.h>

#include <limits>  // for numeric_limits
#include <string>  // for string
#include <vector>  // for vector

#include "support/messages.h"

namespace VXCore {
namespace {

using vxgrid_test::MessageCapture;

std::string to_json(const VXBase& base, const JSONReservedNames& reserved = {}) {
  JSONBuffer buffer;
  JSONWriter writer(buffer);
  writer.StartObject();
  VXGenBaseDataJSON(writer, base, json_flags::generic_data, reserved);
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

bool from_json(VXBase& base, const std::string& text, const JSONReservedNames& reserved = {}) {
  JSONDocument document;
  return JSONParseHelper(document, text) && VXParseBaseDataJSON(base, document, reserved);
}

// A pair of numbers, told from all other objects by its type.
struct Pair {
  int a = 0;
  int b = 0;
};

class PairHandler : public VXJSONHandlerBase {
 public:
  PairHandler() : VXJSONHandlerBase(DataTypeId<Pair>::get()) {}
  bool Read(VXBase& object, unsigned int tag, const JSONValue& value) const override {
    const JSONValue* a = JSONFindKey(value, "a");
    return a && a->IsInt() && object.SetData(tag, Pair{a->GetInt(), 0}) &&
           VXParseBaseDataJSON(object, value, {"a", "type"});
  }
  bool VRead(VXBase& object, unsigned int tag, const JSONValue& array, bool empty) const override {
    EXPECT_EQ(empty, array.Empty());
    return object.SetData(tag, std::vector<Pair>(array.Size()));
  }
  bool Write(const VXBaseData& /*datum*/, JSONWriter& writer, unsigned int flags) const override {
    writer.Uint(flags);
    return true;
  }
  bool VWrite(const VXBaseData& /*datum*/, JSONWriter& /*writer*/,
              unsigned int /*flags*/) const override {
    return false;
  }
  const char* GetJsonType() const override { return "test_pair"; }
  TypeId GetVDataType() const override { return DataTypeId<std::vector<Pair>>::get(); }
  unsigned int GetFlavor() const override { return 0; }
};

class JsonHandlers : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(VXRegisterJSONHandler(new PairHandler)); }
};

TEST(JsonData, come_back_with_their_types_and_digits) {
  VXBase base;
  base.SetData("b", true);
  base.SetData("i", -2147483647);
  base.SetData("u", 4294967295u);
  base.SetData("f", 0.1f);
  base.SetData("whole", 3.0f);
  base.SetData("d", 0.1);
  base.SetData("t", "x\n\"");
  base.SetData("vi", std::vector<int>{1, -2});
  base.SetData("vu", std::vector<unsigned int>{1, 2});
  base.SetData("vf", std::vector<float>{1.0f, 0.3f});
  base.SetData("vd", std::vector<double>{1.0, 0.3});
  base.SetData("vt", std::vector<std::string>{"", "y"});
  base.SetData("a3", std::array<float, 3>{1.0f, 2.0f, 3.5f});
  base.SetData("a6", std::array<float, 6>{1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.5f});
  base.SetData("ei", std::vector<int>());
  base.SetData("eu", std::vector<unsigned int>());
  base.SetData("ef", std::vector<float>());
  base.SetData("ed", std::vector<double>());
  base.SetData("et", std::vector<std::string>());
  const std::string text = to_json(base);
  VXBase back;
  ASSERT_TRUE(from_json(back, text));
  ASSERT_TRUE(back.GetBaseImpl());
  ASSERT_EQ(back.GetBaseImpl()->GetAllData().size(), 19u);
  for (const auto& datum : base.GetBaseImpl()->GetAllData()) {
    const VXBaseData* found = back.GetBaseImpl()->FindData(datum->GetTag());
    ASSERT_TRUE(found) << VXGetTag(datum->GetTag());
    EXPECT_EQ(found->GetDataType(), datum->GetDataType()) << VXGetTag(datum->GetTag());
  }
  // All digits are there, so that the copy makes the same document.
  EXPECT_EQ(to_json(back), text);
  EXPECT_EQ(back.GetIntData("i"), -2147483647);
  EXPECT_EQ(back.GetDoubleData("d"), 0.1);
  EXPECT_EQ(back.GetStringData("t"), "x\n\"");
  EXPECT_EQ((*back.FindDataValue<std::vector<float>>("vf"))[1], 0.3f);
}

TEST(JsonData, show_as_plain_keys_with_hints_only_where_json_has_no_word) {
  VXBase base;
  base.SetData("n", 1);
  base.SetData("x", 1.0f);
  EXPECT_EQ(to_json(base), R"({"n":1,"x":1.0})");
  base.SetData("d", 2.0);
  EXPECT_EQ(to_json(base), R"({"n":1,"x":1.0,"d":2.0,"vxhint":{"d":"double"}})");
  EXPECT_EQ(to_json(base, {"d", "x"}), R"({"n":1})");
  EXPECT_EQ(to_json(VXBase()), "{}");
  const MessageCapture heard;
  base.SetData("x", std::numeric_limits<float>::infinity());
  EXPECT_EQ(to_json(base, {"d"}), R"({"n":1,"x":0.0})");
  EXPECT_TRUE(heard.warned("JSON: \"x\": 1 not finite, written as 0"));
}

TEST(JsonData, of_other_writers_become_the_nearest_type) {
  VXBase base;
  ASSERT_TRUE(from_json(base, R"({"i":7,"big":3000000000,"x":1.5,"mixed":[1,2.5],"values":[1],
      "vxhint":{"i":7,"x":"unsigned","big":"float9"}})",
                        {"values"}));
  EXPECT_EQ(base.GetIntData("i"), 7);
  EXPECT_EQ(base.GetFloatData("big"), 3e9f);
  EXPECT_EQ(base.GetFloatData("x"), 1.5f);
  EXPECT_EQ((*base.FindDataValue<std::vector<float>>("mixed"))[1], 2.5f);
  EXPECT_FALSE(base.HasData("values"));
  EXPECT_FALSE(base.HasData("vxhint"));
}

TEST(JsonData, without_a_type_here_are_left_out_by_name) {
  for (const char* value : {"null", "[]", "[true]", "[[1]]", "[1,\"a\"]", "{}",
                            "{\"type\":\"no such\"}", "[{}]", "{\"type\":1}"}) {
    const MessageCapture heard;
    VXBase base;
    EXPECT_TRUE(from_json(base, "{\"k\":" + std::string(value) + ",\"next\":1}"));
    EXPECT_TRUE(heard.warned("JSON: generic data \"k\" cannot be kept, ignored")) << value;
    EXPECT_FALSE(base.HasData("k")) << value;
    EXPECT_EQ(base.GetIntData("next"), 1);
  }
  std::string many = "{";
  for (int i = 0; i <= 10000; ++i)
    many += "\"n" + std::to_string(i) + "\":1,";
  many.back() = '}';
  const MessageCapture heard;
  VXBase base;
  EXPECT_TRUE(from_json(base, many));
  EXPECT_TRUE(heard.warned("JSON: generic data \"n10000\" cannot be kept, ignored"));
  EXPECT_TRUE(base.HasData("n9999"));
}

TEST_F(JsonHandlers, are_found_by_the_word_of_a_document_and_by_the_type_of_a_datum) {
  EXPECT_FALSE(VXRegisterJSONHandler(nullptr));
  EXPECT_FALSE(VXRegisterJSONHandler(new PairHandler));
  VXBase base;
  base.SetData("p", Pair{1, 2});
  base.SetData("v", std::vector<Pair>(2));
  EXPECT_EQ(to_json(base), R"({"p":512,"v":null,"vxhint":{"v":"test_pair"}})");

  VXBase back;
  ASSERT_TRUE(from_json(back, R"({"p":{"type":"test_pair","a":5},"v":[{"type":"test_pair"},{}],
      "e":[],"vxhint":{"e":"test_pair"}})"));
  EXPECT_EQ(back.FindDataValue<Pair>("p")->a, 5);
  EXPECT_EQ(back.FindDataValue<std::vector<Pair>>("v")->size(), 2u);
  EXPECT_TRUE(back.FindDataValue<std::vector<Pair>>("e")->empty());
  EXPECT_FALSE(from_json(back, R"({"p":{"type":"test_pair","a":"x"}})"));
}

TEST_F(JsonHandlers, documents_in_documents_end_at_a_depth) {
  std::string outer;
  for (int i = 0; i < 100000; ++i)
    outer += R"({"type":"test_pair","a":1,"in":)";
  const std::string text = outer + "1" + std::string(100000, '}');
  const MessageCapture heard;
  VXBase base;
  EXPECT_TRUE(from_json(base, "{\"in\":" + text + "}"));
  EXPECT_TRUE(heard.warned("JSON: generic data \"in\" cannot be kept, ignored"));
  // The count starts anew.
  EXPECT_TRUE(from_json(base, R"({"in":{"type":"test_pair","a":7}})"));
  EXPECT_EQ(base.FindDataValue<Pair>("in")->a, 7);
}

}  // namespace
}  // namespace VXCore
