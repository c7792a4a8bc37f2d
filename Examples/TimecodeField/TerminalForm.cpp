#include "TerminalForm.h"

#include "FieldFile.h"

#include "Platform/Reports.h"

#include <algorithm>
#include <span>
#include <utility>

namespace field {

using namespace quill;

namespace {

// How long the rest of a key's sequence may take to come. After that an escape character was the Escape key.
constexpr int kKeyMilliseconds = 50;

struct KeyRow {
  std::string_view keys;
  std::string_view meaning;
};

constexpr KeyRow kFieldKeys[] = {
    {"Left Right", "segment"},
    {"Up Down", "step"},
    {"PgUp PgDn", "ten steps"},
    {"Tab", "next format"},
    {"0-9", "type"},
    {"+ - :", "whole entry"},
    {"Enter", "take it, or start one"},
    {"Esc", "give up"},
    {"Del", "zero"},
    {"m M", "mode"},
    {"g G", "film gauge"},
    {"a t T", "rate, tempo, signature"},
    {"d D", "decimals"},
    {"s f", "subframes, quarters"},
    {"n r", "negatives, rollover"},
    {"i", "interpretation"},
    {"[ ]", "minimum, maximum here"},
    {"w ? q", "save, all keys, quit"},
};

constexpr KeyRow kNumberKeys[] = {
    {"Left Right", "digit, or a tenth"},
    {"Up Down", "step"},
    {"PgUp PgDn", "ten steps"},
    {"Tab", "by digits, or whole"},
    {"0-9", "type"},
    {"- .", "whole entry"},
    {"Enter", "take it, or start one"},
    {"Esc", "give up"},
    {"Del", "zero"},
    {"d D", "decimals"},
    {"[ ]", "minimum, maximum here"},
    {"? q", "all keys, quit"},
};

std::span<const KeyRow> keysOf(const FieldModel&) { return kFieldKeys; }
std::span<const KeyRow> keysOf(const NumberModel&) { return kNumberKeys; }

// The keys in two columns, or, where there is no room for that, one after the other.
std::vector<std::string> keyLines(std::span<const KeyRow> allKeys, std::size_t columns, std::size_t rows) {
  constexpr std::size_t kKeysWidth = 16, kWidth = 40;
  const std::size_t half = (allKeys.size() + 1) / 2;
  std::vector<std::string> lines;
  if (columns >= 2 * kWidth - 2 && rows >= half) {
    lines.resize(half);
    for (std::size_t i = 0; i < allKeys.size(); ++i) {
      std::string& line = lines[i % half];
      const std::size_t start = i / half * kWidth;  // 0 or kWidth
      line.resize(start, ' ');
      line += allKeys[i].keys;
      line.resize(start + kKeysWidth, ' ');
      line += allKeys[i].meaning;
    }
    return lines;
  }
  for (const auto& [keys, meaning] : allKeys) {
    const std::string item = std::string(keys) + " " + std::string(meaning);
    if (lines.empty() || lines.back().size() + 2 + item.size() > columns) {
      lines.push_back(item);
    } else {
      lines.back() += "  " + item;
    }
  }
  return lines;
}

// In a window too small for all lines those with the highest ranks are left out first.
struct RankedLine {
  int rank;
  ScreenLine line;
};

constexpr int kSpace = 9;

// Room for the names of the formats at the left, in a window that has it.
std::size_t nameWidth(std::size_t columns) { return columns < 30 ? 0 : 9; }

std::string nameText(std::string_view name, std::size_t columns) {
  std::string text = "  ";
  if (nameWidth(columns) > 0) text += name;
  text.resize(2 + nameWidth(columns), ' ');
  return text;
}

// What is being edited: bold, its selected segment in reverse.
template <class Model>
ScreenLine editedLine(const Model& model, std::string_view name, std::size_t columns) {
  const std::string text = nameText(name, columns);
  const FieldText field = model.shown();
  return {.text = text + field.text,
          .marked = {text.size() + field.selected.location, field.selected.length},
          .isBold = true};
}

// Below it: which segment is selected, for eyes and terminals that do not see it in reverse.
template <class Model>
ScreenLine markerLine(const Model& model, std::size_t columns) {
  const quill::Range selected = model.shown().selected;
  std::string text(2 + nameWidth(columns) + static_cast<std::size_t>(selected.location), ' ');
  text.append(static_cast<std::size_t>(selected.length), '^');
  return {.text = text.append(" ").append(model.selectedName())};
}

std::string_view entryName(const FieldModel& model) { return model.purpose().name; }
std::string_view entryName(const NumberModel&) { return "entry"; }

// Or what is being entered, and its cursor; of a long one, the part around it.
template <class Model>
ScreenLine entryLine(const Model& model, std::size_t columns) {
  const std::string prompt = "  " + std::string(entryName(model)) + ": ";
  const std::size_t room = std::max(columns, prompt.size() + 2) - prompt.size();
  const std::size_t start = model.cursor() < room ? 0 : model.cursor() - room + 1;
  return {.text = prompt + model.typed().substr(start) + ' ', .marked = {prompt.size() + model.cursor() - start, 1}};
}

template <class Model>
void addEditedLines(std::vector<RankedLine>& lines, const Model& model, std::string_view name, std::size_t columns) {
  const bool isEntry = model.typing() == Model::Typing::Entry;
  lines.push_back({0, editedLine(model, name, columns)});
  lines.push_back({3, isEntry ? entryLine(model, columns) : markerLine(model, columns)});
}

void addRows(std::vector<RankedLine>& lines, const FieldModel& model, std::size_t columns) {
  for (const Row& row : kRows) {
    if (row.format == model.formatter().timecodeFormat()) {
      addEditedLines(lines, model, row.name, columns);
    } else {
      lines.push_back({4, {.text = nameText(row.name, columns) + model.text(row.format)}});
    }
  }
}

void addRows(std::vector<RankedLine>& lines, const NumberModel& model, std::size_t columns) {
  addEditedLines(lines, model, model.scrubbing(), columns);
}

ScreenLine messageLine(const Message& message, const FormState& state) {
  if (message.text.empty()) return {.text = "  " + state.status};
  return {.text = (message.isError ? "  error: " : "  ") + message.text, .isBold = message.isError};
}

std::string scales(const FieldModel& model) {
  const Timecode& value = model.value();
  std::string text = "  ";
  text += timecodeModeShortName(value.timecodeMode());
  text += "  ";
  appendInteger(text, value.audioFrameRate());
  text += " Hz  ";
  text += examples::shortName(*filmTypeRow(value.filmType()));
  text += "  ";
  appendShortest(text, value.tempo());
  text += " bpm  ";
  appendInteger(text, value.timeSignatureNumerator());
  text += '/';
  appendInteger(text, value.timeSignatureDenominator());
  return text;
}

std::string rules(const FieldModel& model) {
  const QKTimecodeFormatter& formatter = model.formatter();
  std::string text = "  ";
  text += formatter.SMPTEStringInterpretation() == OrbSMPTEStringInterpretationDiscardingUpper ? "discarding"
                                                                                               : "preserving";
  text += formatter.SMPTEHas24HourRollover() ? "  24 h rollover" : "  no rollover";
  if (formatter.allowsNegative()) text += "  negatives";
  return text;
}

void addSettings(std::vector<RankedLine>& lines, const FieldModel& model) {
  lines.push_back({5, {.text = scales(model)}});
  lines.push_back({6, {.text = rules(model)}});
}

void addSettings(std::vector<RankedLine>&, const NumberModel&) {}

template <class Model>
void editEntry(Model& model, const Key& key) {
  switch (key.code) {
    case Key::Character: model.type(key.character); break;
    case Key::Left: model.moveCursorBy(-1); break;
    case Key::Right: model.moveCursorBy(1); break;
    case Key::Home: model.moveCursorBy(INT64_MIN); break;
    case Key::End: model.moveCursorBy(INT64_MAX); break;
    case Key::Backspace: model.eraseBefore(); break;
    case Key::Delete: model.eraseAfter(); break;
    case Key::EraseLine: model.eraseAll(); break;
    case Key::Enter: model.confirm(); break;
    case Key::Escape: model.giveUp(); break;
    default: break;
  }
}

void save(const FieldModel& model, FormState& state) {
  if (state.file.empty()) {
    state.status = "no file to save in: start with --save FILE";
  } else if (saveField(model, state.file, &state.status)) {
    state.status = "saved in " + firstLine(state.file);
  }
}

void handleCommand(FieldModel& model, FormState& state, char key) {
  switch (key) {
    case 'm': model.cycleMode(1); break;
    case 'M': model.cycleMode(-1); break;
    case 'a': model.openEntry(FieldModel::kAudioRate); break;
    case 't': model.openEntry(FieldModel::kTempo); break;
    case 'T': model.openEntry(FieldModel::kSignature); break;
    case 'g': model.cycleFilm(1); break;
    case 'G': model.cycleFilm(-1); break;
    case 'd': model.addDecimals(1); break;
    case 'D': model.addDecimals(-1); break;
    case 's': model.toggleSubframes(); break;
    case 'f': model.toggleQuarterFrames(); break;
    case 'n': model.toggleNegatives(); break;
    case 'r': model.toggleRollover(); break;
    case 'i': model.toggleInterpretation(); break;
    case '[': model.toggleMinimum(); break;
    case ']': model.toggleMaximum(); break;
    case 'w': save(model, state); break;
    case '?': state.keysComeFirst = true; break;
    default: state.status = std::string("no such key: ") + key; break;
  }
}

void handleCommand(NumberModel& model, FormState& state, char key) {
  switch (key) {
    case 'd': model.addDecimals(1); break;
    case 'D': model.addDecimals(-1); break;
    case '[': model.toggleMinimum(); break;
    case ']': model.toggleMaximum(); break;
    case '?': state.keysComeFirst = true; break;
    default: state.status = std::string("no such key: ") + key; break;
  }
}

}  // namespace

template <class Model>
std::vector<ScreenLine> screenLines(const Model& model, const FormState& state, TerminalSize size) {
  const auto columns = static_cast<std::size_t>(std::max(size.columns, 1));
  const auto rows = static_cast<std::size_t>(std::max(size.rows, 1));
  constexpr int kKeysLast = 7;
  const int keysRank = state.keysComeFirst ? 1 : kKeysLast;
  std::vector<RankedLine> ranked = {{kSpace, {}}};
  addRows(ranked, model, columns);
  ranked.insert(ranked.end(), {{2, messageLine(model.message(), state)}, {kSpace, {}}});
  addSettings(ranked, model);
  ranked.insert(ranked.end(), {{6, {.text = "  " + model.range()}}, {kSpace, {}}});
  const std::size_t indent = columns < 60 ? 0 : 2;
  for (const auto& text : keyLines(keysOf(model), columns - indent, rows - std::min(rows, ranked.size()))) {
    ranked.push_back({keysRank, {.text = std::string(indent, ' ') + text}});
  }
  while (ranked.size() > rows) {
    auto last = ranked.begin();
    for (auto line = ranked.begin(); line != ranked.end(); ++line) {
      if (line->rank >= last->rank) last = line;
    }
    ranked.erase(last);
  }

  std::vector<ScreenLine> lines;
  for (auto& [rank, line] : ranked) {
    line.text = substring(line.text, {0, columns});
    lines.push_back(std::move(line));
  }
  lines.resize(rows);
  return lines;
}

std::string drawing(const std::vector<ScreenLine>& lines) {
  std::string bytes;
  std::uint64_t row = 1;
  for (const auto& [text, marked, isBold] : lines) {
    const std::string_view before = substring(text, {0, marked.location});
    const std::string_view inside = substring(text, marked);
    const std::string_view after = std::string_view(text).substr(before.size() + inside.size());
    // Cleared first: after a character in the last column a terminal would clear that one.
    bytes += "\x1b[";
    appendInteger(bytes, row++);
    bytes += ";1H\x1b[0m\x1b[2K";
    if (isBold) bytes += "\x1b[1m";
    bytes += before;
    if (!inside.empty()) bytes.append("\x1b[7m").append(inside).append("\x1b[27m");
    bytes += after;
  }
  return bytes;
}

template <class Model>
bool handleKey(Model& model, FormState& state, const Key& key) {
  const bool keysCameFirst = std::exchange(state.keysComeFirst, false);
  state.status.clear();
  if (key == Key{Key::Character, '?'} && keysCameFirst) return true;
  if (key.code == Key::Quit) return false;
  const bool tabs = key.code == Key::Tab || key.code == Key::BackTab;
  if (model.typing() == Model::Typing::Entry && !tabs) {
    editEntry(model, key);
    return true;
  }
  switch (key.code) {
    case Key::Backspace: model.eraseBefore(); return true;
    case Key::EraseLine: model.eraseAll(); return true;
    case Key::Escape: model.giveUp(); return true;
    case Key::Enter:
      if (model.typing() == Model::Typing::Nothing) {
        model.clearMessage();
        model.openEntry();
      } else {
        model.confirm();
      }
      return true;
    case Key::Character:
      if (model.type(key.character)) return true;
      break;
    default: break;
  }

  // All other keys take what was typed, and do nothing where that fails.
  const bool isTaken = model.confirm();
  if (key == Key{Key::Character, 'q'}) return false;
  if (!isTaken) return true;
  switch (key.code) {
    case Key::Left: model.selectBy(-1); break;
    case Key::Right: model.selectBy(1); break;
    case Key::Tab: model.cycleFormat(1); break;
    case Key::BackTab: model.cycleFormat(-1); break;
    case Key::Home: model.selectFirst(); break;
    case Key::End: model.selectLast(); break;
    case Key::Up: model.step(1); break;
    case Key::Down: model.step(-1); break;
    case Key::PageUp: model.step(10); break;
    case Key::PageDown: model.step(-10); break;
    case Key::Delete: model.zeroSegment(); break;
    case Key::Character: handleCommand(model, state, key.character); break;
    default: break;
  }
  return true;
}

template <class Model>
void runTerminalForm(Model& model, const std::string& file) {
  FormState state;
  state.file = file;
  const auto note = [&state](std::string_view line) { state.status = "log: " + firstLine(line); };
  struct Sinks {
    explicit Sinks(const LogSink& sink) : log(setLogSink(sink)), light(setLightAssertionSink(sink)) {}
    ~Sinks() { setLogSink(log), setLightAssertionSink(light); }
    LogSink log;
    LightAssertionSink light;
  } const sinks(note);

  Terminal terminal;
  std::string bytes;
  while (true) {
    terminal.show(drawing(screenLines(model, state, terminal.size())));
    const auto event = terminal.wait(&bytes, bytes.empty() ? -1 : kKeyMilliseconds);
    if (event == Terminal::Event::Closed) return;
    while (const auto key = takeKey(&bytes, event == Terminal::Event::Timeout)) {
      if (!handleKey(model, state, *key)) return;
    }
  }
}

template std::vector<ScreenLine> screenLines(const FieldModel&, const FormState&, TerminalSize);
template std::vector<ScreenLine> screenLines(const NumberModel&, const FormState&, TerminalSize);
template bool handleKey(FieldModel&, FormState&, const Key&);
template bool handleKey(NumberModel&, FormState&, const Key&);
template void runTerminalForm(FieldModel&, const std::string&);
template void runTerminalForm(NumberModel&, const std::string&);

}  // namespace field
