// JSON texts and numbers as written, and what parsing refuses.
#include "vxgrid/toolkit/json/helpers.h"

#include <gtest/gtest.h>

#include <cmath>    // for nextafter
#include <cstring>  // for memcpy
#include <limits>   // for numeric_limits
#include <random>   // for mt19937
#include <string>   // for string
#include <vector>   // for vector

#include "support/messages.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXCore {
namespace {

using vxgrid_test::MessageCapture;

template <class Write>
std::string written(Write write) {
  JSONBuffer buffer;
  JSONWriter writer(buffer);
  write(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

std::string cut_text(const std::vector<float>& numbers, int decimals) {
  return written(
      [&](JSONWriter& w) { JSONWriteCutArray(w, numbers.data(), numbers.size(), decimals); });
}

TEST(JsonNumbers, are_cut_towards_zero_and_never_rounded) {
  EXPECT_EQ(cut_text({0.0f, -0.0f, 1.0f, -2.5f, 1e9f, 0.1f}, 8),
            "[0.0,-0.0,1.0,-2.5,1000000000.0,0.1]");
  // 0.999999999 is 1 in single precision; the number below 1 is 0.99999994...
  EXPECT_EQ(cut_text({std::nextafter(1.0f, 0.0f), -1.9999999f}, 5), "[0.99999,-1.99999]");
  EXPECT_EQ(cut_text({1e-8f, 1.9e-8f, -9e-9f, 1e-6f, 1.23456e-6f}, 8),
            "[0.0,1e-8,-0.0,9.9e-7,0.00000123]");
  // Beyond 2^53 there is nothing behind the decimals to lose.
  EXPECT_EQ(cut_text({std::ldexp(1.0f, 60), 1e30f}, 8),
            "[1152921504606847000.0,1.0000000150474662e30]");
  EXPECT_EQ(cut_text({7.9f, -0.5f}, 0), "[7.0,-0.0]");
  EXPECT_EQ(cut_text({}, 8), "[]");
}

TEST(JsonNumbers, cut_in_bulk_read_as_those_cut_one_by_one) {
  std::mt19937 random(20260727);
  std::vector<float> numbers(20000);
  int ignored = 0;
  for (float& number : numbers) {
    do {
      const auto bits = static_cast<std::uint32_t>(random());
      std::memcpy(&number, &bits, sizeof number);
      // Half of them of the size that maps have.
      if (random() % 2) {
        const int exponent = static_cast<int>(random() % 40) - 25;
        number = std::ldexp(std::frexp(number, &ignored), exponent);
      }
    } while (!std::isfinite(number));
  }
  for (const int decimals : {0, 5, 6, 7, 8, 9}) {
    JSONDocument document;
    ASSERT_TRUE(JSONParseHelper(document, cut_text(numbers, decimals)));
    ASSERT_EQ(document.Size(), numbers.size());
    const int factor = static_cast<int>(std::pow(10.0, decimals));
    for (rapidjson::SizeType i = 0; i < document.Size(); ++i) {
      const double expected = VXTruncate(numbers[i], factor);
      // The parser is allowed three units in the last place for numbers of many digits.
      ASSERT_NEAR(document[i].GetDouble(), expected, std::fabs(expected) * 1e-15) << numbers[i];
      if (std::fabs(expected) < 1e6) {
        ASSERT_EQ(document[i].GetDouble(), expected) << numbers[i];
      }
    }
  }
}

TEST(JsonNumbers, of_data_keep_all_their_digits_in_the_fewest) {
  const auto text = [](auto number) {
    return written([&](JSONWriter& w) { JSONWriteNumber(w, number); });
  };
  EXPECT_EQ(text(0.1f), "0.1");
  EXPECT_EQ(text(0.1), "0.1");
  EXPECT_EQ(text(16777216.0f), "16777216.0");
  EXPECT_EQ(text(1.0 / 3.0), "0.3333333333333333");
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    float number = 0.0f;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) continue;
    JSONDocument document;
    ASSERT_TRUE(JSONParseHelper(document, text(number)));
    ASSERT_EQ(static_cast<float>(document.GetDouble()), number);
  }
}

TEST(JsonNumbers, that_are_not_finite_become_zero_and_are_counted) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  std::size_t count = 0;
  const std::vector<float> numbers{1.5f, nan, inf, -inf};
  EXPECT_EQ(written([&](JSONWriter& w) {
              count = JSONWriteCutArray(w, numbers.data(), numbers.size(), 8);
            }),
            "[1.5,0.0,0.0,0.0]");
  EXPECT_EQ(count, 3u);
  EXPECT_EQ(written([&](JSONWriter& w) { EXPECT_FALSE(JSONWriteNumber(w, nan)); }), "0.0");
  const MessageCapture heard;
  JSONWarnNotFinite("values", 0);
  JSONWarnNotFinite("values", 3);
  ASSERT_EQ(heard.messages.size(), 1u);
  EXPECT_TRUE(heard.warned("JSON: \"values\": 3 not finite, written as 0"));
}

TEST(JsonTexts, are_always_utf_8_and_keep_every_character) {
  const std::string all = std::string("a\"\\\n\x01\0z", 7) + "\xC3\x85\xE2\x82\xAC\xF0\x9F\x94\xAC";
  const auto text_back = [](const std::string& text) {
    JSONDocument document;
    EXPECT_TRUE(JSONParseHelper(document, written([&](JSONWriter& w) { JSONWriteText(w, text); })));
    return std::string(document.GetString(), document.GetStringLength());
  };
  EXPECT_EQ(text_back(all), all);
  const std::string bad = "\xEF\xBF\xBD";
  // Latin-1, a lone continuation, an overlong form, a surrogate, one beyond the last, a cut one.
  for (const char* text : {"\xC5", "\x80", "\xC0", "\xF5", "\xE2"})
    EXPECT_EQ(text_back(std::string("x") + text), "x" + bad);
  EXPECT_EQ(text_back("\xED\xA0\x80"), bad + bad + bad);
  EXPECT_EQ(text_back("\xE2\x82"), bad + bad);

  EXPECT_EQ(VXEscapeJSON("a\"b\\c\b\f\n\r\t\x1f/\xC3\x85"),
            "a\\\"b\\\\c\\b\\f\\n\\r\\t\\u001f/\xC3\x85");
}

TEST(JsonParse, refuses_what_is_no_document_and_says_where) {
  const struct {
    std::string text;
    const char* warning;
  } cases[] = {
      {"", "JSON: parse error at offset 0: The document is empty."},
      {"{\"a\":1,}", "JSON: parse error at offset 7: Missing a name for object member."},
      {"[1,2", "JSON: parse error at offset 4: Missing a comma or ']' after an array element."},
      {"[1e999]", "JSON: parse error at offset 1: Number too big to be stored in double."},
      {"[NaN]", "JSON: parse error at offset 1: Invalid value."},
      {std::string("[1]\0[2]", 7),
       "JSON: parse error at offset 3: The document root must not be "
       "followed by other values."},
      {std::string("[1,\0]", 5), "JSON: parse error at offset 3: Invalid value."},
      {"[1] x",
       "JSON: parse error at offset 4: The document root must not be followed by other "
       "values."}};
  for (const auto& c : cases) {
    const MessageCapture heard;
    JSONDocument document;
    EXPECT_FALSE(JSONParseHelper(document, c.text)) << c.text;
    ASSERT_EQ(heard.messages.size(), 1u);
    EXPECT_EQ(heard.messages[0].second, c.warning);
  }
}

TEST(JsonParse, numbers_of_many_digits_do_no_harm) {
  const MessageCapture heard;
  for (const char* exponent : {"", "e300", "e-300", "e308", ".0e300"}) {
    for (const std::size_t digits : {25U, 100U, 400U, 2000U}) {
      JSONDocument document;
      JSONParseHelper(document, "[" + std::string(digits, '8') + exponent + "]");
      JSONParseHelper(document, "[0." + std::string(digits, '0') + "8" + exponent + "]");
    }
  }
  JSONDocument document;
  EXPECT_TRUE(JSONParseHelper(document, "[0e300,0.00e300,-0e-300]"));
  EXPECT_TRUE(JSONParseHelper(document, "[" + std::string(30, '1') + "]"));
  EXPECT_NEAR(document[0].GetDouble(), 1.1111111111111111e29, 1e15);
}

TEST(JsonParse, depth_costs_no_stack) {
  const std::size_t depth = 2000000;
  std::string text(depth, '[');
  const MessageCapture heard;
  {
    JSONDocument document;
    EXPECT_FALSE(JSONParseHelper(document, text));
  }
  text.append(depth, ']');
  JSONDocument document;
  EXPECT_TRUE(JSONParseHelper(document, text));
}

TEST(JsonKeys, answer_with_a_message_when_absent_or_of_another_type) {
  JSONDocument document;
  ASSERT_TRUE(JSONParseHelper(document, R"({"t":"a\u0000b","n":7,"a":[1]})"));
  std::string text;
  float number = 0.0f;
  const MessageCapture heard;
  EXPECT_EQ(JSONGetText(document, "t", text), JSONAnswer::present);
  EXPECT_EQ(text, std::string("a\0b", 3));
  EXPECT_EQ(JSONGetNumber(document, "n", number), JSONAnswer::present);
  EXPECT_EQ(number, 7.0f);
  EXPECT_EQ(JSONGetText(document, "x", text), JSONAnswer::absent);
  EXPECT_NE(JSONGetArray(document, "a"), nullptr);
  EXPECT_TRUE(heard.messages.empty());

  EXPECT_EQ(JSONGetText(document, "n", text), JSONAnswer::wrong);
  EXPECT_TRUE(heard.warned("JSON: key \"n\" must be a text"));
  EXPECT_EQ(JSONGetNumber(document, "t", number), JSONAnswer::wrong);
  EXPECT_TRUE(heard.warned("JSON: key \"t\" must be a number"));
  EXPECT_EQ(JSONGetArray(document, "t"), nullptr);
  EXPECT_TRUE(heard.warned("JSON: key \"t\" must be an array"));
  EXPECT_EQ(JSONGetArray(document, "x"), nullptr);
  EXPECT_TRUE(heard.warned("JSON: key \"x\" is missing"));
  EXPECT_EQ(JSONFindKey(document["a"], "a"), nullptr);
}

TEST(JsonVersion, is_two_whole_numbers_up_to_the_present_one) {
  for (const char* version : {"0.91", "0.9", "0.0"})
    EXPECT_TRUE(compatibleJSONVersion(version)) << version;
  for (const char* version :
       {"0.92", "1.0", "", ".", "0", "0.", "0.9 ", " 0.9", "0.9.1", "-0.9", "0.99999999999", "x"}) {
    const MessageCapture heard;
    EXPECT_FALSE(compatibleJSONVersion(version)) << version;
    EXPECT_TRUE(heard.warned("JSON: version " + std::string(version) + " is not supported"));
  }
}

}  // namespace
}  // namespace VXCore
