// The labels in Vectors/ against counting from 0 on; another test compares all of Vectors/ with what the library says.
#include "SlowLabelWalker.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

TEST(Vectors, HoldTheLabelsThatCountingComesTo) {
  for (const bool isDropped : {false, true}) {
    std::ifstream file(std::string(QUILL_TEST_DATA "/../../Vectors/") + (isDropped ? "dropped.tsv" : "labels.tsv"));
    quill::SlowLabelWalker labels(1, 0);
    quill::SlowElapsedWalker elapsed(1, 1);
    quill::SMPTEFieldSet before;
    std::string line, mode;
    std::int64_t frame = 0, last = 0;
    for (std::getline(file, line); std::getline(file, line);) {
      if (const std::string name = line.substr(0, line.find('\t')); std::exchange(mode, name) != name) {
        const std::int64_t whole = std::stoi(name) + (name.find('.') < name.size() ? 1 : 0);  // 30 of "29.97"
        labels = {whole, name.ends_with("df") ? whole / 15 : 0};
        elapsed = {whole * 1000, 1001};
        frame = 0;
      }
      std::replace_if(
          line.begin(), line.end(), [](char c) { return c < '0' || c > '9'; }, ' ');
      std::istringstream cells(line.substr(mode.size()));
      const bool isDuration = mode.ends_with("duration");
      quill::SMPTEFieldSet dropped, label;
      if (isDropped) cells >> dropped.hours >> dropped.minutes >> dropped.seconds >> dropped.frames;
      cells >> last >> label.hours >> label.minutes >> label.seconds >> label.frames;
      if (isDuration) cells >> label.subframes;
      for (; frame < last; ++frame, labels.next(), elapsed.next()) before = labels.label();
      EXPECT_TRUE(label == (isDuration ? elapsed.label() : labels.label())) << mode << line;
      EXPECT_TRUE(!isDropped || (before < dropped && dropped < label)) << mode << line;
    }
    EXPECT_GT(frame, 10000000);
  }
}
