// What keys do to the field and what the screen then shows, without a terminal: bytes as one sends them go in, the lines
// of a window come out. Rows stand in Tests/Data/field.txt.

#include "../../../Tests/TextTable.h"
#include "../FieldFile.h"
#include "../Options.h"
#include "../TerminalForm.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <type_traits>

namespace field {
namespace {

using quill::Cells, quill::eachRowIn;

// What a terminal sends for "1<up><page down>": a key by its name, any byte in hex.
std::string bytesOf(std::string_view keys) {
  static const std::map<std::string, std::string_view> sent = {
      {"up", "\x1b[A"},       {"down", "\x1b[B"},      {"right", "\x1b[C"},   {"left", "\x1b[D"},
      {"home", "\x1b[H"},     {"end", "\x1b[F"},       {"delete", "\x1b[3~"}, {"back tab", "\x1b[Z"},
      {"page up", "\x1b[5~"}, {"page down", "\x1bOb"}, {"escape", "\x1b"},    {"erase line", "\x15"},
      {"enter", "\r"},        {"tab", "\t"},           {"backspace", "\b"}};
  return quill::bytesIn(keys, sent);
}

std::vector<std::string_view> argumentsIn(std::string_view text) {  // parted by spaces
  std::vector<std::string_view> arguments;
  while (!text.empty()) {
    arguments.push_back(text.substr(0, text.find(' ')));
    text.remove_prefix(std::min(text.size(), arguments.back().size() + 1));
  }
  return arguments;
}

// A field as the command line would make it.
template <class Model>
struct FieldOf {
  explicit FieldOf(std::string_view arguments) {
    Options options;
    std::string error;
    EXPECT_TRUE(parseOptions(argumentsIn(arguments), &options, &error)) << error;
    if constexpr (std::is_same_v<Model, FieldModel>) {
      EXPECT_TRUE(!options.load || loadField(*options.load, model.get(), &error)) << error;
    }
    EXPECT_TRUE(prepareField(options, model.get(), &error)) << error;
  }

  // False when a key quit.
  bool send(std::string_view keys) {
    std::string bytes = bytesOf(keys);
    while (const auto key = takeKey(&bytes, true)) {
      if (!handleKey(*model, state, *key)) return false;
    }
    return true;
  }

  // "00:00:12;34 | ^^ frames | error: ...": the row, the line below it and the message, if there is one.
  std::string text() const {
    std::string all;
    for (const auto& line : screenLines(*model, state, {78, 3})) {
      const std::size_t start = line.text.find_first_not_of(' ', all.empty() ? 11 : 0);
      if (start != std::string::npos)
        all += (all.empty() ? "" : " | ") + line.text.substr(start, line.text.find_last_not_of(' ') + 1 - start);
    }
    return all;
  }

  std::unique_ptr<Model> model = std::make_unique<Model>();
  FormState state;
};
using Field = FieldOf<FieldModel>;

// The cells from one on, as they stand in the row.
std::string restOf(const Cells& row, std::size_t first) {
  std::string rest = row.at(first);
  while (++first < row.size()) rest += " | " + row[first];
  return rest;
}

TEST(TimecodeFieldKeys, AreTakenApart) {
  constexpr const char* kNames[] = {"",      "Enter",     "Escape", "Tab",       "BackTab",  "Left",
                                    "Right", "Up",        "Down",   "PageUp",    "PageDown", "Home",
                                    "End",   "Backspace", "Delete", "EraseLine", "Quit",     "Other"};
  eachRowIn("field.txt", "keys", [&](const Cells& row) {
    std::string bytes = bytesOf(row.at(0)), keys;
    while (const auto key = takeKey(&bytes, row.at(3) == "all"))
      keys += key->code == Key::Character ? std::string(1, key->character) : '<' + std::string(kNames[key->code]) + '>';
    EXPECT_EQ(keys, row.at(1));
    EXPECT_EQ(bytes, bytesOf(row.at(2)));
  });
}

TEST(TimecodeFieldForm, DoesWhatKeysSay) {
  eachRowIn("field.txt", "timecode field", [](const Cells& row) {
    Field field(row.at(1));
    EXPECT_TRUE(field.send(row.at(2)));
    EXPECT_EQ(field.text(), restOf(row, 3));
  });
}

TEST(TimecodeFieldForm, ScrubsNumbers) {
  eachRowIn("field.txt", "number field", [](const Cells& row) {
    FieldOf<NumberModel> field("--number " + row.at(0));
    EXPECT_TRUE(field.send(row.at(1)));
    const FieldText shown = field.model->shown();
    std::string text = shown.text;
    text.insert(shown.selected.location + shown.selected.length, 1, ']').insert(shown.selected.location, 1, '[');
    EXPECT_EQ(text + field.text().substr(shown.text.size()), restOf(row, 2));
    EXPECT_FALSE(field.send("<escape><escape>q"));
  });
}

TEST(TimecodeFieldForm, MarksTheSelectedSegment) {
  eachRowIn("field.txt", "segments", [](const Cells& row) {
    Field field(row.at(0));
    field.send("<home>");
    std::string segments;
    for (std::size_t i = 0; i < quill::partsOf(row.at(1), " ").size(); ++i) {
      const FieldText shown = field.model->shown();
      segments += (i == 0 ? "[" : " [") + std::string(quill::substring(shown.text, shown.selected)) + ']';
      field.send("<right>");
    }
    EXPECT_EQ(segments, row[1]);
  });
}

TEST(TimecodeFieldForm, EndsWithAKey) {
  for (const std::string bytes : {"q", "<03>", "<04>", "5q", "<enter><04>"}) {
    EXPECT_FALSE(Field("").send(bytes)) << bytes;
  }
}

TEST(TimecodeFieldForm, FitsAnyWindow) {
  Field field("--value=1:00:12:04");
  for (const bool keysComeFirst : {false, true}) {
    for (const int columns : {1, 2, 3, 12, 40, 59, 60, 79, 80, 200}) {
      for (const int rows : {1, 2, 3, 8, 10, 16, 24, 60}) {
        SCOPED_TRACE(testing::Message() << columns << " x " << rows);
        field.state.keysComeFirst = keysComeFirst;
        const auto lines = screenLines(*field.model, field.state, {columns, rows});
        EXPECT_EQ(lines.size(), static_cast<std::size_t>(rows));
        bool showsField = false;
        for (const auto& line : lines) {
          EXPECT_LE(line.text.size(), static_cast<std::size_t>(columns)) << line.text;
          const std::string row = columns < 30 ? "  01:00:12;04" : "  smpte    01:00:12;04";
          showsField |= line.text == row.substr(0, line.text.size()) && !line.text.empty();
        }
        EXPECT_TRUE(showsField);
      }
    }
  }
}

TEST(TimecodeFieldForm, ShowsWhatMattersInASmallWindow) {
  Field field("--value=1:00:12:04 --max=2:0:0:0 --interpretation=discarding");
  const auto text = [&] {
    std::string all;
    for (const auto& line : screenLines(*field.model, field.state, {40, 14})) all += line.text + '\n';
    return all;
  };
  for (const auto* part : {"smpte    01:00:12;04\n", "\n                    ^^ frames\n", "seconds  3612.141867\n",
                           "29.97df  48000 Hz  35mm_4perf  120 bpm", "discarding", "feet     6766+00\n",
                           "from 00:00:00;00 to 02:00:00;00\n"}) {
    EXPECT_NE(text().find(part), std::string::npos) << part << "\n" << text();
  }
  field.send("?");
  for (const auto* part : {"01:00:12;04\n", "interpretation", "[ ] minimum", "w ? q save, all keys, quit"}) {
    EXPECT_NE(text().find(part), std::string::npos) << part << "\n" << text();
  }
}

TEST(TimecodeFieldForm, ShowsTheCursorOfALongEntry) {
  Field field("");
  field.send("+" + std::string(300, '7') + "8");
  for (const auto* keys : {"", "<left>", "<home>"}) {
    field.send(keys);
    const auto lines = screenLines(*field.model, field.state, {40, 3});
    const auto& [text, marked, isBold] = lines[1];
    EXPECT_LE(text.size(), 40u);
    EXPECT_EQ(marked.length, 1u);
    ASSERT_LT(marked.location, text.size());
    EXPECT_EQ(text[static_cast<std::size_t>(marked.location)], *keys == '\0'    ? ' '
                                                               : keys[1] == 'l' ? '8'
                                                                                : '+')
        << text;
  }
}

TEST(TimecodeFieldModel, GoesThroughAllModes) {
  Field field("--value=1:02:03:04 --min=1:00:00:02 --max=2:00:00:02");
  std::string names;
  for (std::size_t i = 0; i < std::size(quill::kTimecodeModeTable); ++i) {
    EXPECT_TRUE(field.model->cycleMode(i < 5 ? -1 : 20));
    const auto& row = *quill::timecodeModeRow(field.model->value().timecodeMode());
    names += std::string(row.shortName) + ' ';
    const std::string frames = row.kind == quill::TimecodeModeKind::Drop ? ";" : ":";
    const std::string zero = row.countingRate > 100 ? "0" : "";
    EXPECT_EQ(field.model->text(), "01:02:03" + frames + zero + "04");
    EXPECT_EQ(field.model->range(), "from 01:00:00" + frames + zero + "02 to 02:00:00" + frames + zero + "02");
  }
  EXPECT_EQ(names,
            "29.97 29.97 duration 25 24 23.976 24 25 29.97 duration 29.97 29.97df 30 50 "
            "59.94 duration 59.94 59.94df 60 90 100 119.88 duration ");
}

TEST(TimecodeFieldModel, SaysItsRange) {
  eachRowIn("field.txt", "ranges", [](const Cells& row) { EXPECT_EQ(Field(row.at(0)).model->range(), row.at(1)); });
}

TEST(TimecodeFieldModel, KeepsWhatFails) {
  Field field("--value=1:02:03:04 --min=1:00:00:00");
  for (const auto* entry :
       {"abc", "12x", "+99999999999999999999", "1/2", "\xe2\x80\x94:\xe2\x80\x94:\xe2\x80\x94:\xe2\x80\x94"}) {
    EXPECT_FALSE(field.model->takeEntry(entry));
    EXPECT_TRUE(field.model->message().isError);
    EXPECT_EQ(field.model->text(), "01:02:03;04") << entry;
  }
  EXPECT_FALSE(field.model->setMaximum("30:00"));
  EXPECT_EQ(field.model->message().text, "The maximum is below the minimum.");
  EXPECT_FALSE(field.model->setMinimum("-1"));
  EXPECT_EQ(field.model->range(), "from 01:00:00;00 up");
}

TEST(TimecodeFieldFile, HoldsValueAndSettings) {
  const std::string path = testing::TempDir() + "TimecodeField-" + std::to_string(std::random_device()());
  const Field saved(
      "--mode=119.88 --audio-rate=44100 --film=16mm --tempo=132.7 --signature=7/8 --decimals=2 "
      "--interpretation=discarding --negatives --quarter-frames "
      "--rollover=off --min=-25:00:00.00 --max=25:00:00.00 --value=-1:02:03.50 --format=hms");
  std::string error;
  ASSERT_TRUE(saveField(*saved.model, path, &error)) << error;
  const Field loaded("--load=" + path);
  const auto screen = [](const Field& field) { return drawing(screenLines(*field.model, field.state, {80, 24})); };
  EXPECT_EQ(screen(loaded), screen(saved));

  // What is given beside it overrides it, and nothing else changes.
  const Field overridden("--load=" + path + " --format=frames --value=+100 --max=-1000");
  EXPECT_EQ(overridden.model->range(), "from -10789210 to -1000");
  EXPECT_EQ(overridden.model->text(), "-446273");
  EXPECT_EQ(overridden.model->text(quill::QKTimecodeFormatHMS), "-01:02:02.67");

  EXPECT_FALSE(saveField(*saved.model, path + "/field", &error));
  EXPECT_EQ(error, "cannot save \"" + path + "/field\": Not a directory");
  EXPECT_FALSE(saveField(*saved.model, testing::TempDir(), &error));
  EXPECT_EQ(error, "cannot save \"" + testing::TempDir() + "\": it is no regular file");
  std::filesystem::remove(path);
  EXPECT_FALSE(loadField(path, loaded.model.get(), &error));
  EXPECT_EQ(error, "cannot load \"" + path + "\": No such file or directory");
}

// Cut anywhere an archive is refused; changed anywhere it is refused, or gives a field that works.
TEST(TimecodeFieldFile, MayBeDamaged) {
  const std::string whole = archivedField(*Field("--negatives --value=-1:02:03:04 --max=2:00:00:00").model);
  int refused = 0;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    Field field("--value=5");
    EXPECT_THROW(restoreField(std::string_view(whole).substr(0, i), field.model.get()), std::exception) << i;
    for (const int change : {1, 0xFF}) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ change);
      try {
        restoreField(damaged, field.model.get());
        EXPECT_TRUE(field.send("<up><tab><up><home>1<tab>mD<down>[s"));
        EXPECT_FALSE(screenLines(*field.model, field.state, {80, 24}).empty());
        field.model = std::move(Field("--value=5").model);
      } catch (const std::exception&) {
        ++refused;
        EXPECT_EQ(field.model->text(), "00:00:00;05");
      }
    }
  }
  EXPECT_GT(refused, 4000);
}

TEST(TimecodeFieldOptions, SayWhatIsWrong) {
  eachRowIn("field.txt", "wrong options", [](const Cells& row) {
    Options options;
    std::string error;
    FieldModel model;
    NumberModel number;
    EXPECT_FALSE(parseOptions(argumentsIn(row.at(0)), &options, &error) &&
                 (options.isNumber() ? prepareField(options, &number, &error) : prepareField(options, &model, &error)));
    EXPECT_EQ(error.substr(0, row.at(1).size()), row[1]);
  });
}

}  // namespace
}  // namespace field
