// Levels, sinks and threads of VXThrow.
#include "vxgrid/toolkit/core/error_handler.h"

#include <gtest/gtest.h>

#include <string>  // for string, to_string
#include <thread>  // for thread
#include <vector>  // for vector

#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;
using Level = VXErrorLevel;

// A message from an initialiser must neither crash nor wait for others.
const bool spoke_while_loading = [] {
  VXThrow.Verbose("loading");
  return true;
}();

TEST(VXThrow, HandsOnWhatReachesTheLevel) {
  ASSERT_TRUE(spoke_while_loading);
  for (const Level from :
       {Level::Verbose, Level::Debug, Level::Info, Level::Warning, Level::Error}) {
    MessageCapture capture(from);
    VXThrow.Verbose("%s", "v");
    VXThrow.Debug("%s", "d");
    VXThrow.Info("%s", "i");
    VXThrow.Warning("%s", "w");
    VXThrow.Error("%s", "e");
    std::string heard;
    for (const auto& [level, text] : capture.messages)
      heard += "vdiwe"[static_cast<std::size_t>(level)] + text;
    EXPECT_EQ(heard, std::string("vvddiiwwee").substr(2 * static_cast<std::size_t>(from)));
  }
  EXPECT_EQ(VXThrow.GetLevel(), Level::Info);
}

TEST(VXThrow, FormatsLiteralsButNeverStrings) {
  MessageCapture capture;
  VXThrow.Warning("%d of %s is %.1f%%", 3, "x", 12.5);
  VXThrow.Warning(std::string("100%s %n"));
  VXThrow.Info(std::string("%d"));
  const std::string longer(5000, 'a');
  VXThrow.Error("<%s>", longer.c_str());
  EXPECT_TRUE(capture.warned("3 of x is 12.5%"));
  EXPECT_TRUE(capture.warned("100%s %n"));
  EXPECT_TRUE(capture.has(Level::Info, "%d"));
  EXPECT_TRUE(capture.has(Level::Error, "<" + longer + ">"));
}

TEST(VXThrow, GoesToStandardErrorWithoutASink) {
  testing::internal::CaptureStderr();
  VXThrow.Info("report");
  VXThrow.Debug("trace");
  VXThrow.Warning("trouble");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "report\nWarning: trouble\n");
}

TEST(VXThrow, LosesNoMessageOfAnyThread) {
  constexpr int threads = 8, each = 500;
  MessageCapture capture;
  std::vector<std::thread> running;
  for (int t = 0; t < threads; ++t)
    running.emplace_back([t] {
      for (int i = 0; i < each; ++i)
        VXThrow.Warning("%d of %d", i, t);
    });
  for (auto& thread : running)
    thread.join();
  EXPECT_EQ(capture.messages.size(), std::size_t{threads * each});
  for (int t = 0; t < threads; ++t)
    EXPECT_TRUE(capture.warned(std::to_string(each - 1) + " of " + std::to_string(t)));
}

TEST(VXThrow, LetsASinkSpeakAndStepDown) {
  int heard = 0;
  testing::internal::CaptureStderr();
  VXThrow.SetSink([&heard](Level, const std::string&) {
    ++heard;
    VXThrow.Info("from the sink");
    VXThrow.SetSink({});
  });
  VXThrow.Warning("first");
  VXThrow.Info("second");
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "from the sink\nsecond\n");
}

}  // namespace
