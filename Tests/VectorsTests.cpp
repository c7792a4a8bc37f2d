// The labels in Vectors/ against counting from 0 on; another test compares all of Vectors/ with what the library says.
#include "SlowLabelWalker.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

TEST(Vectors, HoldTheLabelsThatCountingComesTo) {
  for (const bool isDropped : {false, true}) {
    std::ifstream file(std::string(QUILL_TEST_DATA "/../../Vectors/") + (isDropped ? "dropped.tsv" : "labels.tsv"));
    quill::SlowLabelWalker walker{nullptr};
    quill::SMPTEFieldSet before;
    std::string line, mode;
    std::int64_t frame = 0, last = 0;
    for (std::getline(file, line); std::getline(file, line);) {
      if (const std::string name = line.substr(0, line.find('\t')); std::exchange(mode, name) != name) {
        walker = {quill::timecodeModeRow(quill::timecodeModeNamed(name).value()), name.ends_with("duration")};
        frame = 0;
      }
      std::replace_if(
          line.begin(), line.end(), [](char c) { return c < '0' || c > '9'; }, ' ');
      std::istringstream cells(line.substr(mode.size()));
      quill::SMPTEFieldSet dropped, label;
      if (isDropped) cells >> dropped.hours >> dropped.minutes >> dropped.seconds >> dropped.frames;
      cells >> last >> label.hours >> label.minutes >> label.seconds >> label.frames;
      if (walker.isElapsed) cells >> label.subframes;
      for (; frame < last; ++frame, walker.next()) before = walker.label;
      EXPECT_TRUE(label == walker.label) << mode << line;
      EXPECT_TRUE(!isDropped || (before < dropped && dropped < label)) << mode << line;
    }
    EXPECT_GT(frame, 10000000);
  }
}
