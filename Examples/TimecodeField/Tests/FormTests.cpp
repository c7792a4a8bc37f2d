// What keys do to the field and what the screen then shows, without a terminal: bytes as one sends them go in, the lines
// of a window come out.

#include "../FieldFile.h"
#include "../Options.h"
#include "../TerminalForm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <type_traits>

namespace field {
namespace {

const std::string kUp = "\x1b[A", kDown = "\x1b[B", kRight = "\x1b[C", kLeft = "\x1b[D", kHome = "\x1b[H",
                  kEnd = "\x1b[F", kDelete = "\x1b[3~", kPageUp = "\x1b[5~", kPageDown = "\x1bOb", kBackTab = "\x1b[Z",
                  kEscape = "\x1b", kEraseLine = "\x15";

// A field as the command line would make it.
template <class Model>
struct FieldOf {
  // The arguments stand in one text, parted by spaces.
  explicit FieldOf(std::string_view text) {
    std::vector<std::string_view> arguments;
    while (!text.empty()) {
      arguments.push_back(text.substr(0, text.find(' ')));
      text.remove_prefix(std::min(text.size(), arguments.back().size() + 1));
    }
    Options options;
    std::string error;
    EXPECT_TRUE(parseOptions(arguments, &options, &error)) << error;
    if constexpr (std::is_same_v<Model, FieldModel>) {
      EXPECT_TRUE(!options.load || loadField(*options.load, model.get(), &error)) << error;
    }
    EXPECT_TRUE(prepareField(options, model.get(), &error)) << error;
  }

  // False when a key quit.
  bool send(std::string bytes) {
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
      if (start != std::string::npos) all += (all.empty() ? "" : " | ") + line.text.substr(start);
    }
    return all;
  }

  std::unique_ptr<Model> model = std::make_unique<Model>();
  FormState state;
};
using Field = FieldOf<FieldModel>;

TEST(TimecodeFieldKeys, AreTakenApart) {
  const auto character = [](char c) { return Key{Key::Character, c}; };
  const struct {
    const char* label;
    std::string bytes;
    bool isAll;
    std::vector<Key> keys;
    std::string rest;
  } rows[] = {
      {"characters", "1:q", false, {character('1'), character(':'), character('q')}, ""},
      {"controls",
       "\r\n\t\b\x7f\x03\x04\x15",
       false,
       {{Key::Enter},
        {Key::Enter},
        {Key::Tab},
        {Key::Backspace},
        {Key::Backspace},
        {Key::Quit},
        {Key::Quit},
        {Key::EraseLine}},
       ""},
      {"both kinds of arrows",
       "\x1b[A\x1bOB\x1b[C\x1bOD",
       false,
       {{Key::Up}, {Key::Down}, {Key::Right}, {Key::Left}},
       ""},
      {"ten",
       "\x1b[5~\x1b[6~\x1b[1;2A\x1b[1;2B",
       false,
       {{Key::PageUp}, {Key::PageDown}, {Key::PageUp}, {Key::PageDown}},
       ""},
      {"an escape may begin more", "\x1b", false, {}, "\x1b"},
      {"an escape alone", "\x1b", true, {{Key::Escape}}, ""},
      {"an escape and a key",
       "\x1b"
       "5",
       false,
       {{Key::Escape}, character('5')},
       ""},
      {"two escapes", "\x1b\x1b", true, {{Key::Escape}, {Key::Escape}}, ""},
      {"a sequence cut", "1\x1b[1;", false, {character('1')}, "\x1b[1;"},
      {"a sequence that never ends", "\x1b[1;", true, {{Key::Other}}, ""},
      {"a sequence broken off", "\x1b[1\x1b[A", false, {{Key::Other}, {Key::Up}}, ""},
      {"an unknown sequence", "\x1b[200~1", false, {{Key::Other}, character('1')}, ""},
      {"beyond ASCII",
       "\xc3\xa9\xe2\x80\x94"
       "1",
       false,
       {{Key::Other}, {Key::Other}, character('1')},
       ""},
      {"beyond ASCII, cut", "\xe2\x80", false, {}, "\xe2\x80"},
      {"no UTF-8", "\xff\x80", true, {{Key::Other}, {Key::Other}}, ""},
      {"a NUL",
       std::string("\0"
                   "1",
                   2),
       false,
       {{Key::Other}, character('1')},
       ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    std::string bytes = row.bytes;
    std::vector<Key> keys;
    while (const auto key = takeKey(&bytes, row.isAll)) keys.push_back(*key);
    EXPECT_EQ(keys, row.keys);
    EXPECT_EQ(bytes, row.rest);
  }
}

TEST(TimecodeFieldForm, DoesWhatKeysSay) {
  const struct {
    const char* label;
    std::string arguments;
    std::string bytes;
    std::string expected;  // the field, the line below it and the message
  } rows[] = {
      {"at first", "", "", "00:00:00;00 | ^^ frames"},
      // Selecting
      {"left and right stop", "", kLeft + kLeft + kLeft + kLeft + kRight, "00:00:00;00 | ^^ minutes"},
      {"the next format", "--value=1:02:03:04", "\t", "01:02:03.119 | ^^ seconds"},
      {"round and back", "--value=1:02:03:04", kBackTab + kBackTab, "1861  3  1 229 | ^^ beats"},
      {"first and last", "--subframes", kHome + "01" + kEnd + "02", "01:00:00;00.02 | ^^ subframes"},
      {"a segment goes", "--subframes", kEnd + "s", "00:00:00;00 | ^^ frames"},
      {"three frame digits", "--mode=119.88df --quarter-frames", kEnd, "00:00:00;000/0 | ^ quarter frames"},
      {"three frame digits", "--mode=119.88df --quarter-frames", kEnd + kLeft + kLeft, "00:00:00;000/0 | ^^ seconds"},
      // Stepping
      {"steps", "--value=59:29", kUp + kLeft + kUp + kPageUp + kDown, "00:01:10;02 | ^^ seconds"},
      {"ten", "", kPageUp + kPageUp + kPageDown, "00:00:00;10 | ^^ frames"},
      {"stops at bounds", "--min=5 --max=20", kPageUp + kPageUp + kPageUp, "00:00:00;20 | ^^ frames"},
      {"not below zero", "", kLeft + kDown, "00:00:00;00 | ^^ seconds"},
      {"below zero", "--negatives --value=10", kHome + kRight + kDown, "-00:01:00;10 | ^^ minutes"},
      {"to zero", "--value=1:02:03:04", kHome + kDelete, "00:02:03;04 | ^^ hours"},
      // Typing into a segment
      {"a digit waits", "", kLeft + "5", "00:00:5_;00 | ^^ seconds"},
      {"a full segment is set", "", kLeft + "59", "00:00:59;00 | ^^ seconds"},
      {"so is one that is left", "", kLeft + "5" + kRight, "00:00:05;00 | ^^ frames"},
      {"entered", "", kLeft + "5\r", "00:00:05;00 | ^^ seconds"},
      {"stepped", "", kLeft + "5" + kUp, "00:00:06;00 | ^^ seconds"},
      {"given up", "", kLeft + "5" + kEscape, "00:00:00;00 | ^^ seconds"},
      {"given up when set", "--value=7", "12" + kEscape, "00:00:00;07 | ^^ frames"},
      {"erased", "--value=7", "12\b", "00:00:00;1_ | ^^ frames"},
      {"erased whole", "--value=7", "1\b", "00:00:00;07 | ^^ frames"},
      {"a sign", "--negatives --value=1:0:0:0", kHome + "-5" + kRight, "-05:00:00;00 | ^^ minutes"},
      {"a sign alone stays", "--negatives", kHome + "-" + kRight, "-_:00:00;00 | ^^ hours | error: Not a number."},
      {"a command takes what was typed", "", kLeft + "5m", "00:00:05:00 | ^^ seconds"},
      {"bounds hold", "--max=20", "25", "00:00:00;20 | ^^ frames"},
      // Whole entries
      {"digits beyond the segment", "--value=7", "123", "00:00:00;07 | entry: 123 "},
      {"taken", "", "1234\r", "00:00:13;04 | ^^ frames"},
      {"a separator", "", kHome + "1:2:3:4\r", "01:02:03;04 | ^^ hours"},
      {"an amount", "--value=59:29", "+1\r", "00:01:00;02 | ^^ frames"},
      {"down", "--value=1:00", "-15\r", "00:00:00;15 | ^^ frames"},
      {"opened", "--value=1:00", "\r-15\r", "00:00:00;15 | ^^ frames"},
      {"nothing in it", "--value=1:00", "\r \r", "00:00:01;00 | ^^ frames"},
      {"given up", "--value=1:00", "+15" + kEscape, "00:00:01;00 | ^^ frames"},
      {"letters are text in it", "", "\rq", "00:00:00;00 | entry: q  | error: Illegal character."},
      {"fails and stays", "", "\rabc\r", "00:00:00;00 | entry: abc  | error: Illegal characters."},
      {"stray characters behind a number", "", "\r12x\r", "00:00:00;00 | entry: 12x  | error: Illegal character."},
      {"two signs", "", "++", "00:00:00;00 | entry: ++  | error: Excess + or -'s"},
      {"edited", "", "+13" + kLeft + "2" + kHome + kDelete + kEnd + "\b4\r", "00:00:01;24 | ^^ frames"},
      {"erased whole", "", "+13" + kEraseLine + "25\r", "00:00:00;25 | ^^ frames"},
      {"out of range", "--value=7", "+99999999999999999999\r",
       "00:00:00;07 | entry: +99999999999999999999  | error: Out of range."},
      {"preserving", "--value=1:2:3:4", "5:6\r", "01:02:05;06 | ^^ frames"},
      {"discarding", "--value=1:2:3:4", "i5:6\r", "00:00:05;06 | ^^ frames"},
      // Formats
      {"hours of time", "--format=hms", "1:02:03.5\r" + kLeft + kUp, "01:03:03.500 | ^^ minutes"},
      {"frames by thousands", "--format=frames --value=1234567", kLeft + kUp, "1235567 | ^^^ thousands"},
      {"a number that shrinks", "--format=samples --value=1500", kLeft + kDown + kDown, "0 | thousands"},
      {"decimals", "--format=seconds --value=1.25", kEnd + "DDd" + kUp, "1.25001 | ^^ decimals"},
      {"an entry is left", "--format=seconds", "1.5\t" + kBackTab, "1.500000 | ^ seconds"},
      {"one that fails is not", "", "\rabc\t", "00:00:00;00 | entry: abc  | error: Illegal characters."},
      {"audio rate", "--mode=25 --format=samples --value=48000", "a44100\r", "44100 | ^^^ samples"},
      {"an entry of bars", "--format=bars", "3.2.1.120\r" + kUp + kEnd + kPageDown, "3  3  1 110 | ^^^ ticks"},
      {"no bars below zero", "--format=bars --negatives --value=0.1", kDown + kDown,
       "error: Bars and beats count from zero up. | beats"},
      {"but anew", "--format=bars --negatives --value=0.1", kDown + kDown + "2",
       "error: Bars and beats count from zero up. | entry: 2 "},
      {"an entry of feet", "--format=feet", "12+05\r6\t" + kBackTab + kLeft + kUp, "0013+06 | ^^^^ feet"},
      {"feet of unequal length", "--format=feet --film=35mm_3perf --value=2+21", "0+05\r", "0000+05 | ^^ frames"},
      {"bars of no whole ticks", "--format=bars --mode=25 --tempo=132.7", "4.1.1.1\r", "4  1  1   1 | ^^ beats"},
      {"too far for 64 bits of ticks", "--format=feet", "\r999999999.5\r",
       "0000+00 | entry: 999999999.5  | error: Too many digits."},
      {"a sign alone", "--format=bars", "+\r", "0  1  1   0 | entry: +  | error: That is no entry."},
      {"film", "--format=feet --value=100+00",
       "gG"
       "G",
       "0040+00 | ^^ frames"},
      {"tempo", "--format=bars --value=8.1", "t60\rT3/4\r", "10  3  1   0 | ^^ beats"},
      {"half a signature", "", "T6\r",
       "00:00:00;00 | signature: 6  | error: A signature is two numbers from 1 to 1000, such as 6/8."},
      {"none", "", "a0\r",
       "00:00:00;00 | audio rate: 0  | error: An audio rate is a whole number of samples a second, up to 10000000."},
      {"no samples below zero", "--negatives --value=-1", "\t\t\t" + kLeft + kUp,
       "error: No SMPTE 272M audio frames conversion of negative time value | samples | error: No SMPTE 272M audio "
       "frames conversion of negative time value"},
      {"but anew", "--negatives --value=-1", "\t\t\t512\r", "512 | ^^^ samples"},
      // Settings
      {"no file", "", "w", "00:00:00;00 | ^^ frames | no file to save in: start with --save FILE"},
      {"the label stays", "--value=1:2:3:4 --mode=25", "mmm", "01:02:03;04 | ^^ frames"},
      {"one of subframes and quarter frames", "", "sf", "00:00:00;00/0 | ^^ frames"},
      {"negatives stay", "--negatives --value=-1", "n",
       "-00:00:00;01 | ^^ frames | error: The value is negative: negatives stay on."},
      {"no key", "", "x", "00:00:00;00 | ^^ frames | no such key: x"},
      {"beyond ASCII", "", "\xc3\xa9", "00:00:00;00 | ^^ frames"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    Field field(row.arguments);
    EXPECT_TRUE(field.send(row.bytes));
    EXPECT_EQ(field.text(), row.expected);
  }
}

TEST(TimecodeFieldForm, ScrubsNumbers) {
  const struct {
    std::string arguments;
    std::string bytes;
    std::string expected;  // the number with its segment in brackets, the line below it and the message
  } rows[] = {
      {"digits", "", "[0].000000 | ^ units"},
      {"digits --decimals=2 --value=95.5", kLeft + kUp, "1[0]5.50 | ^ tens"},
      {"digits --decimals=2 --value=3.25", kDown + kDown + kDown + kDown, "[-0].25 | ^^ units"},
      {"digits --decimals=1 --value=105.5", kHome + kDown + kDown, "[_]_-5.5 | ^ hundreds"},
      {"digits --decimals=1 --value=105.5", kHome + kDown + "5",
       "[_]_5.5 | ^ hundreds | error: segment with tag 2 doesn't exist"},
      {"digits --decimals=1 --value=105.5", kHome + kDown + kUp + kEnd + kPageUp, "106.[5] | ^ tenths"},
      {"digits --decimals=1 --value=105.5", kHome + kDown + kRight + kUp, "[6].5 | ^ units"},
      {"digits --decimals=0 --value=123", kLeft + "5", "1[0]8 | ^ tens"},
      {"digits --decimals=0 --value=10 --max=10", "9", "1[0] | ^ units | error: Out of range."},
      {"digits --decimals=3 --value=1.234", kEnd + "D", "1.2[3] | ^ hundredths"},
      {"digits --decimals=0", "\r9223372036854775806\r" + kHome + kUp, "[9]223372036854775806 | ^ 10^18"},
      {"digits --decimals=1 --value=7", "-1x\r", "[7].0 | entry: -1x  | error: Not a number."},
      {"whole", kUp + kPageUp + kLeft, "[11] | ^^ number"},
      {"whole --decimals=1 --max=12", kPageUp + kUp + kRight + kRight, "[11.2] | ^^^^ number"},
      {"whole --value=5", "12\r" + kUp + "\t" + kUp, "1[4].000000 | ^ units"},
      {"whole --value=5", "[" + kDown + kUp + "]" + kUp + kDelete, "[5] | ^ number"},
      {"whole", "m", "[0] | ^ number | no such key: m"},
  };
  for (const auto& row : rows) {
    FieldOf<NumberModel> field("--number " + row.arguments);
    EXPECT_TRUE(field.send(row.bytes));
    const FieldText shown = field.model->shown();
    std::string text = shown.text;
    text.insert(shown.selected.location + shown.selected.length, 1, ']').insert(shown.selected.location, 1, '[');
    EXPECT_EQ(text + field.text().substr(shown.text.size()), row.expected) << row.arguments;
    EXPECT_FALSE(field.send(kEscape + kEscape + "q"));
  }
}

TEST(TimecodeFieldForm, MarksTheSelectedSegment) {
  const struct {
    std::string arguments;
    std::string segments;
  } rows[] = {
      {"--value=1:02:03:04", "[01] [02] [03] [04] "},
      {"--subframes --value=1:02:03:04.05", "[01] [02] [03] [04] [05] "},
      {"--mode=120 --quarter-frames --value=1:02:03:104/3", "[01] [02] [03] [104] [3] "},
      {"--negatives --value=-1:02:03:04", "[-01] [02] [03] [04] "},
      {"--negatives --mode=120 --subframes --value=-1:02:03:104.05", "[-01] [02] [03] [104] [05] "},
  };
  for (const auto& row : rows) {
    Field field(row.arguments);
    field.send(kHome);
    std::string segments;
    for (int i = 0; i < std::ranges::count(row.segments, '['); ++i) {
      const FieldText shown = field.model->shown();
      segments += '[' + std::string(quill::substring(shown.text, shown.selected)) + "] ";
      field.send(kRight);
    }
    EXPECT_EQ(segments, row.segments);
  }
}

TEST(TimecodeFieldForm, EndsWithAKey) {
  for (const std::string bytes : {"q", "\x03", "\x04", "5q", "\r\x04"}) {
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
  for (const auto* keys : {"", "\x1b[D", "\x1b[H"}) {
    field.send(keys);
    const auto lines = screenLines(*field.model, field.state, {40, 3});
    const auto& [text, marked, isBold] = lines[1];
    EXPECT_LE(text.size(), 40u);
    EXPECT_EQ(marked.length, 1u);
    ASSERT_LT(marked.location, text.size());
    EXPECT_EQ(text[static_cast<std::size_t>(marked.location)], *keys == '\0'    ? ' '
                                                               : keys[2] == 'D' ? '8'
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
  const struct {
    std::string arguments;
    std::string range;
  } rows[] = {
      {"", "from 00:00:00;00 up"},
      {"--negatives", "no limits"},
      {"--negatives --max=1:00", "up to 00:00:01;00"},
      {"--max=30:00:00:00", "from 00:00:00;00 to 30:00:00;00"},
      {"--rollover=off", "from 00:00:00;00 to 99:59:59;29"},
      {"--rollover=off --negatives --mode=25 --subframes", "from -99:59:59:24.79 to 99:59:59:24.79"},
      {"--rollover=off --negatives --min=-5 --value=1:00", "from -00:00:00;05 to 99:59:59;29"},
  };
  for (const auto& row : rows) EXPECT_EQ(Field(row.arguments).model->range(), row.range);
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
        EXPECT_TRUE(field.send(kUp + "\t" + kUp + kHome + "1\tmD" + kDown + "[s"));
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
  const struct {
    std::vector<std::string_view> arguments;
    std::string error;
  } rows[] = {
      {{"--mode", "custom"}, "--mode \"custom\": The modes are 23.976 duration, "},
      {{"--mode"}, "--mode needs a value"},
      {{"--mode="}, "--mode \"\": The modes are "},
      {{"--format=film"}, "--format \"film\": The formats are smpte, hms, "},
      {{"--audio-rate=0"}, "--audio-rate \"0\": An audio rate is a whole number"},
      {{"--film=8mm"}, "--film \"8mm\": The films are 16mm, 35mm_4perf, "},
      {{"--tempo=0.5"}, "--tempo \"0.5\": A tempo is a number of beats a minute, from 1 to 10000."},
      {{"--tempo=120bpm"}, "--tempo \"120bpm\": A tempo is"},
      {{"--signature=4/0"}, "--signature \"4/0\": A signature is"},
      {{"--decimals=10"}, "--decimals \"10\": Decimal places are from 0 to 9."},
      {{"--interpretation", "both"}, "--interpretation \"both\": It is preserving or discarding."},
      {{"--rollover=yes"}, "--rollover \"yes\": It is on or off."},
      {{"--strict=1"}, "--strict takes no value"},
      {{"--subframes", "--quarter-frames"}, "--subframes and --quarter-frames exclude each other"},
      {{"--fast"}, "there is no option \"--fast\""},
      {{"1234"}, "\"1234\" is no option; entries are read from standard input"},
      {{"--value=abc"}, "--value \"abc\": Illegal characters."},
      {{"--value", "-1:00"}, "--value \"-1:00\": Negatives are off."},
      {{"--min", "-1:00"}, "--min \"-1:00\": Negatives are off."},
      {{"--min=1:00", "--max=10"}, "--max \"10\": The maximum is below the minimum."},
      {{"--max=999999999999:0:0:0"}, "--max \"999999999999:0:0:0\": Out of range."},
      {{"--number=all"}, "--number \"all\": A number is scrubbed by digits or whole."},
      {{"--number=whole", "--value=1.5"}, "--value \"1.5\": No such number can be typed here."},
      {{"--number=whole", "--mode=25"}, "--mode is not for numbers"},
      {{"--number=whole", "--save=x"}, "--load and --save are not for numbers"},
      {{"--value=\xe2\x80\x94:\xe2\x80\x94:\xe2\x80\x94:\xe2\x80\x94"}, "--value"},
  };
  for (const auto& row : rows) {
    Options options;
    std::string error;
    FieldModel model;
    NumberModel number;
    EXPECT_FALSE(parseOptions(row.arguments, &options, &error) &&
                 (options.isNumber() ? prepareField(options, &number, &error) : prepareField(options, &model, &error)))
        << row.error;
    EXPECT_EQ(error.substr(0, row.error.size()), row.error);
  }
}

}  // namespace
}  // namespace field
