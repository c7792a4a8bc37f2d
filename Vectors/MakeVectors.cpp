// MakeVectors: the tables of Docs/vectors.md, for those who write timecode arithmetic of their own.
//
//     MakeVectors FOLDER            writes the compact tables
//     MakeVectors --all FOLDER      writes the tables with every minute of a day
//     MakeVectors --check FOLDER    fails where the compact tables are not what the library says
#include "Framework/QuillFoundation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <numeric>
#include <set>
#include <stdexcept>

namespace {

using namespace quill;

using Integer = std::int64_t;
constexpr Integer kMinute = 60, kHour = 3600, kDay = 86400;

std::string number(Integer value) {
  std::string text;
  appendInteger(text, value);
  return text;
}

void addLine(std::string& table, std::initializer_list<std::string_view> cells) {
  for (const char* tab = ""; const std::string_view cell : cells) {
    table.append(tab).append(cell);
    tab = "\t";
  }
  table += '\n';
}

// Reads and shows labels of a mode: all hours, and subframes where a frame need not start on one.
class Labels {
 public:
  explicit Labels(const TimecodeModeRow& mode) {
    formatter_.setCurrentTimecode(std::make_shared<QKTimecode>(0, QKTimecodeBestTimeRate, mode.mode));
    formatter_.setSMPTEHas24HourRollover(false);
    formatter_.setSMPTEDisplaysSubframes(mode.kind == TimecodeModeKind::Duration);
  }

  std::string ofTimecode(QKTimecode& timecode) const { return formatter_.stringForObjectValue(&timecode).value(); }

  Ref<QKTimecode> timecodeAt(std::string_view label) {
    Ref<Object> read;
    std::string error;
    if (!formatter_.getObjectValue(&read, label, &error)) throw std::runtime_error(std::string(label) + ": " + error);
    return std::static_pointer_cast<QKTimecode>(read);
  }

 private:
  QKTimecodeFormatter formatter_;
};

// ---- Which rows ----

// Seconds of labels before which and at which there are rows.
std::set<Integer> boundaries(bool all) {
  std::set<Integer> seconds{1, 2, 10, 59, kHour + kMinute, kHour + 10 * kMinute, 2 * kHour, 10 * kHour, 12 * kHour};
  for (Integer minute = 1; minute <= 11; ++minute) seconds.insert(minute * kMinute);
  for (const Integer minute : {19, 20, 21, 30, 50, 59, 60}) seconds.insert(minute * kMinute);
  for (const Integer minute : {10, 9, 1, 0}) seconds.insert(kDay - minute * kMinute);
  for (const Integer second : {kDay - kHour, kDay + kMinute}) seconds.insert(second);
  for (Integer second = kMinute; all && second <= kDay; second += kMinute) seconds.insert(second);
  return seconds;
}

// The first frames, those where the sequences of audio frames change their step or start over, and two before and two
// from each boundary on.
std::set<Integer> framesOfLabels(const TimecodeModeRow& mode, bool all) {
  std::set<Integer> frames{0, 1, 2, 3, 4, 5, 6, 22, 23, 46, 47, 70, 71, 99, 100, 101};
  for (const Integer seconds : boundaries(all)) {
    const Integer first =
        mode.kind == TimecodeModeKind::Duration
            ? (seconds * mode.rateNumerator + mode.rateDenominator - 1) / mode.rateDenominator
            : frameFromLabel(*SMPTECounting::ofMode(mode.mode), {0, seconds / kMinute, seconds % kMinute, 0, 0});
    for (Integer frame = first - 2; frame < first + 2; ++frame) frames.insert(frame);
  }
  return frames;
}

// The first feet of each gauge frame by frame, then one frame before and two from the start of longer footages on.
std::set<Integer> framesOfFootages(bool all) {
  std::set<Integer> frames;
  for (Integer frame = 0; frame <= (all ? 20000 : 130); ++frame) frames.insert(frame);
  for (const FilmTypeRow& film : kFilmTypeTable) {
    for (const Integer feet : {10, 11, 99, 100, 1000, 10000}) {
      const Integer first = frameOfFootage(film.type, feet, 0);
      for (Integer frame = first - 1; frame < first + 2; ++frame) frames.insert(frame);
    }
  }
  return frames;
}

// ---- The tables ----

// The frame is the one that the label reads as.
std::string labelTable(bool all) {
  std::string table;
  addLine(table, {"mode", "frame", "label", "seconds", "samples_48000", "samples_44100"});
  for (const TimecodeModeRow& mode : kTimecodeModeTable) {
    Labels labels(mode);
    QKTimecode at48000(0, QKTimecodeBestTimeRate, mode.mode, 48000);
    QKTimecode at44100(0, QKTimecodeBestTimeRate, mode.mode, 44100);
    for (const Integer frame : framesOfLabels(mode, all)) {
      at48000.setVideoFrames(static_cast<std::uint64_t>(frame));
      at44100.setVideoFrames(static_cast<std::uint64_t>(frame));
      const std::string label = labels.ofTimecode(at48000);
      const MediaTime time = at48000.timeValue();
      const Integer divisor = std::gcd(time.value, Integer{time.timescale});
      addLine(table, {mode.shortName, number(labels.timecodeAt(label)->signedVideoFrames()), label,
                      number(time.value / divisor) + "/" + number(time.timescale / divisor),
                      number(saturatingFromUInt64(at48000.audioFrames())),
                      number(saturatingFromUInt64(at44100.audioFrames()))});
    }
  }
  return table;
}

std::string droppedTable(bool all) {
  std::string table;
  addLine(table, {"mode", "dropped", "frame", "label"});
  for (const TimecodeModeRow& mode : kTimecodeModeTable) {
    Labels labels(mode);
    for (Integer minute = 0; minute < kDay / kMinute; ++minute) {
      const Integer hours = minute / 60, minutes = minute % 60;
      const bool isChosen = all || ((hours == 0 || hours == 23) && (minutes < 12 || minutes % 10 == 9));
      for (Integer frames = 0; isChosen && isDroppedLabel(mode.mode, minutes, 0, frames); ++frames) {
        std::string label;
        appendPadded(label, hours, 2);
        appendPadded(label += ':', minutes, 2);
        appendPadded(label += ":00;", frames, mode.countingRate > 100 ? 3 : 2);
        const Ref<QKTimecode> read = labels.timecodeAt(label);
        addLine(table, {mode.shortName, label, number(read->signedVideoFrames()), labels.ofTimecode(*read)});
      }
    }
  }
  return table;
}

std::string footageTable(bool all) {
  std::string table = "frame";
  for (const FilmTypeRow& film : kFilmTypeTable) table.append("\t").append(film.name.substr(film.name.find('_') + 1));
  table += '\n';
  QKExtendedTimecode timecode(0, QKTimecodeBestTimeRate, QKSMPTETimecodeMode_24);
  for (const Integer frame : framesOfFootages(all)) {
    timecode.setVideoFrames(static_cast<std::uint64_t>(frame));
    appendInteger(table, frame);
    for (const FilmTypeRow& film : kFilmTypeTable) {
      Integer feet = 0, frames = 0;
      timecode.setFilmType(film.type);
      timecode.getFFFeet(&feet, &frames, nullptr);
      appendInteger(table += '\t', feet);
      appendInteger(table += '+', frames);
    }
    table += '\n';
  }
  return table;
}

constexpr struct {
  const char* fileName;
  std::string (*make)(bool all);
} kTables[] = {{"labels.tsv", labelTable}, {"dropped.tsv", droppedTable}, {"footage.tsv", footageTable}};

// ---- Files ----

int complain(const std::filesystem::path& path, std::string_view text) {
  std::cerr << path.string() << ": " << text << '\n';
  return 1;
}

int write(const std::filesystem::path& path, const std::string& table) {
  std::ofstream file(path, std::ios::binary);
  return file << table << std::flush ? 0 : complain(path, "cannot be written");
}

int check(const std::filesystem::path& path, const std::string& table) {
  std::ifstream file(path, std::ios::binary);
  const std::string found{std::istreambuf_iterator<char>(file), {}};
  if (found == table) return 0;
  const auto end = std::mismatch(found.begin(), found.end(), table.begin(), table.end()).first;
  return complain(path, "line " + number(std::count(found.begin(), end, '\n') + 1) + " is not what the library says");
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view choice = count == 3 ? arguments[1] : "";
  if (count != 2 && choice != "--all" && choice != "--check") {
    std::cerr << "usage: MakeVectors [--all | --check] FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = arguments[count - 1];
  int status = 0;
  try {
    if (choice != "--check") std::filesystem::create_directories(folder);
    for (const auto& [fileName, make] : kTables) {
      const std::string table = make(choice == "--all");
      status |= choice == "--check" ? check(folder / fileName, table) : write(folder / fileName, table);
    }
  } catch (const std::exception& error) {
    return complain(folder, error.what());
  }
  return status;
}
