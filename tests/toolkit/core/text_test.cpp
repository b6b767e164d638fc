// Numbers and text, also under a foreign locale.
#include "vxgrid/toolkit/core/text.h"

#include <gtest/gtest.h>
#include <locale.h>  // for newlocale, uselocale
#include <stdlib.h>  // for system

#include <bit>      // for bit_cast
#include <cmath>    // for isinf, isnan
#include <limits>   // for numeric_limits
#include <random>   // for mt19937
#include <string>   // for string
#include <tuple>    // for tuple
#include <utility>  // for pair
#include <vector>   // for vector

#include "support/messages.h"
#include "support/temp_dir.h"

// The C library keeps the search path that LOCPATH gave it.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:__argz_add_sep";
}

namespace {

using namespace VXCore;
using Strings = std::vector<std::string>;

TEST(StringTokenize, SplitsAtEverySeparator) {
  struct Case {
    std::string text, separators;
    bool drop_empty;
    Strings tokens;
  };
  const Case cases[] = {{"  Mid:  1\t2 3 ", " \t\n", true, {"Mid:", "1", "2", "3"}},
                        {"", " ", true, {}},
                        {"   ", " ", true, {}},
                        {"one", " ", true, {"one"}},
                        {"a,,b,", ",", false, {"a", "", "b", ""}},
                        {"", ",", false, {""}},
                        {"a b", "", true, {"a b"}}};
  Strings tokens{"left", "over", "from", "before", "five"};
  for (const Case& c : cases) {
    EXPECT_EQ(VXStringTokenize(tokens, c.text, c.separators, c.drop_empty), c.tokens.size());
    EXPECT_EQ(tokens, c.tokens) << c.text;
  }
}

TEST(StringToNumber, TakesOneNumberWithWhiteSpaceAroundIt) {
  const std::pair<const char*, float> taken[] = {
      {"1.5e+00    ", 1.5f}, {"\t-2\r\n", -2.0f}, {"+3.25", 3.25f},
      {".5", 0.5f},          {"5.", 5.0f},        {"1e-46", 0.0f},
      {"1e-60", 0.0f},       {"-1e-400", -0.0f},  {"3.4028235e38", 3.4028235e38f}};
  for (const auto& [text, expected] : taken) {
    float number = 7.0f;
    double finer = 7.0;
    EXPECT_TRUE(VXStringToNumber(text, number) && VXStringToNumber(text, finer)) << text;
    EXPECT_EQ(number, expected) << text;
  }
  for (const std::string text :
       {"1e39", "-1e400", "", "   ", "+-1", "++1", "1.5x", "1 2", "0x10", "1,5", "e5", "--"}) {
    float number = 7.0f;
    double finer = 7.0;
    EXPECT_FALSE(VXStringToNumber(text, number)) << text;
    EXPECT_EQ(number, 7.0f) << text;
    EXPECT_EQ(VXStringToNumber(text, finer), text == "1e39") << text;
  }
  float number = 0.0f;
  EXPECT_TRUE(VXStringToNumber("nan", number) && VXIsNaN(number));
  EXPECT_TRUE(VXStringToNumber("-inf", number) && std::isinf(number));
}

TEST(StringToNumber, TakesWholeNumbersOfABase) {
  const std::tuple<const char*, int, unsigned int> taken[] = {
      {" 42 ", 10, 42}, {"+7", 10, 7},    {"4294967295", 10, 4294967295u},
      {"fF", 16, 255},  {"0x1F", 16, 31}, {"101", 2, 5}};
  for (const auto& [text, base, expected] : taken) {
    unsigned int number = 5;
    EXPECT_TRUE(VXStringToNumber(text, number, base)) << text;
    EXPECT_EQ(number, expected) << text;
  }
  const std::pair<const char*, int> refused[] = {{"4294967296", 10}, {"-1", 10}, {"3.0", 10},
                                                 {"", 10},           {"0x", 16}, {"0x-1", 16},
                                                 {"102", 2},         {"1", 1},   {"1", 37}};
  for (const auto& [text, base] : refused) {
    unsigned int number = 5;
    EXPECT_FALSE(VXStringToNumber(text, number, base)) << text;
    EXPECT_EQ(number, 5u) << text;
  }
  int number = 5;
  EXPECT_TRUE(VXStringToNumber("-2147483648", number));
  EXPECT_EQ(number, std::numeric_limits<int>::min());
  EXPECT_FALSE(VXStringToNumber("2147483648", number));
}

TEST(NumberToString, WritesAsPrintf) {
  EXPECT_EQ(VXNumberToString(1.5f, 'e', 2), "1.50e+00");
  EXPECT_EQ(VXNumberToString(1.5f, 'E', 1), "1.5E+00");
  EXPECT_EQ(VXNumberToString(1e20f, 'g', 4), "1e+20");
  EXPECT_EQ(VXNumberToString(-3.4028235e38f, 'f', 60).size(), 1u + 39u + 1u + 60u);
  EXPECT_EQ(VXNumberToString(255u, 16), "ff");
  EXPECT_EQ(VXNumberToString(4294967295u, 2), std::string(32, '1'));
  EXPECT_EQ(VXNumberToString(35u, 36), "z");
  EXPECT_EQ(VXNumberToString(1u, 1), "");
}

TEST(Numbers, SurviveAWayThroughText) {
  std::mt19937 random(20240517);
  int checked = 0;
  while (checked < 20000) {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(value)) continue;
    // Nine significant digits tell all floats apart.
    float back = 0.0f;
    ASSERT_TRUE(VXStringToNumber(VXNumberToString(value, 'e', 8), back));
    ASSERT_EQ(back, value);
    ++checked;
  }
}

// Makes a locale whose decimal point is a comma, when the tools of the C library are there.
class CommaLocale {
 public:
  CommaLocale() {
    const std::string command =
        "localedef -f UTF-8 -i de_DE '" + folder_.file("comma") + "' >/dev/null 2>&1";
    const int status = system(command.c_str());
    if (status == 0) {
      setenv("LOCPATH", folder_.file("").c_str(), 1);
      locale_ = newlocale(LC_ALL_MASK, "comma", nullptr);
      unsetenv("LOCPATH");
    }
    if (locale_) before_ = uselocale(locale_);
  }
  ~CommaLocale() {
    if (!locale_) return;
    uselocale(before_);
    freelocale(locale_);
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  explicit operator bool() const { return locale_ != nullptr; }

 private:
  vxgrid_test::TempDir folder_;
  locale_t locale_ = nullptr;
  locale_t before_ = nullptr;
};

TEST(Numbers, KeepTheDecimalPointInEveryLocale) {
  const CommaLocale comma;
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma could be made";
  ASSERT_EQ(std::string(localeconv()->decimal_point), ",");
  float number = 0.0f;
  EXPECT_TRUE(VXStringToNumber("1.5", number));
  EXPECT_EQ(number, 1.5f);
  EXPECT_FALSE(VXStringToNumber("1,5", number));
  EXPECT_TRUE(VXStringToNumber("1.25e-43", number));
  EXPECT_GT(number, 0.0f);
  EXPECT_EQ(VXNumberToString(1.5f, 'f', 1), "1.5");
  EXPECT_EQ(format_text("%.2f", 0.25), "0.25");
  vxgrid_test::MessageCapture capture;
  VXThrow.Warning("sigma %1.3f", 0.5);
  EXPECT_TRUE(capture.warned("sigma 0.500"));
  EXPECT_EQ(std::string(localeconv()->decimal_point), ",");
}

TEST(FloatCompare, IsAbsolute) {
  EXPECT_TRUE(VXFloatCompare(2.7f, 2.70001f, 0.0001f));
  EXPECT_FALSE(VXFloatCompare(2.7f, 2.71f, 0.0001f));
  EXPECT_TRUE(VXFloatCompare(1.0f, 1.5f, 0.5f));
  EXPECT_FALSE(VXFloatCompare(1e6f, 1e6f + 1.0f, 0.5f));
  const float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_TRUE(VXFloatCompare(infinity, infinity, 0.0f));
  EXPECT_FALSE(VXFloatCompare(nan, nan, 1.0f));
}

TEST(Truncate, CutsTowardsZeroAndLeavesWholeNumbersAlone) {
  EXPECT_EQ(VXTruncate(1.2345678, 100000), 1.23456);
  EXPECT_EQ(VXTruncate(-1.2345678, 100000), -1.23456);
  EXPECT_EQ(VXTruncate(0.000009, 100000), 0.0);
  for (const double value : {1e300, -1e17, 9007199254740993.0, 1e12 + 0.1})
    EXPECT_EQ(VXTruncate(value, 100000), value);
  EXPECT_TRUE(VXIsNaN(VXTruncate(std::numeric_limits<double>::quiet_NaN(), 10)));
  EXPECT_EQ(VXTruncate(1.5, 0), 1.5);
}

TEST(FileExtension, IsBehindTheLastDotOfTheNameAlone) {
  const std::pair<std::string, std::string> cases[] = {
      {"a.map", "map"},          {"x.y/a.mtz", "mtz"}, {"x.y/a", ""}, {"a.b.grd", "grd"},
      {"a.map.gz", "map"},       {"a.gz", ""},         {"a.", ""},    {"", ""},
      {"dir.d/a.gz.agd", "agd"}, {"A.MAP", "MAP"}};
  for (const auto& [name, extension] : cases)
    EXPECT_EQ(VXFileExtension(name), extension) << name;
  EXPECT_EQ(VXFileExtension("a.mtz.gz", ""), "gz");
}

}  // namespace
