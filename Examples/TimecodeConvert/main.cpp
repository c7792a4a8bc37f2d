// TimecodeConvert: timecode values from one notation into another, from the command line or standard input. See --help.
#include "Options.h"

#include "Platform/Reports.h"

#include <exception>
#include <iostream>

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int complain(std::string_view text, int status) {
  std::cerr << "timecode-convert: " << text << '\n';
  return status;
}

int printed(std::string_view text) {
  std::cout << text << std::flush;
  return std::cout ? 0 : complain("cannot write to standard output", kFailed);
}

// Prints a line for a value, an empty one where it fails; what is wrong with it goes to standard error behind the place
// where it stands. A value fails too when the library reports anything about it, such as ticks beyond 64 bits.
bool convertValue(convert::Converter& converter, std::string_view text, const std::string& place) {
  std::string result, error, report;
  const auto note = [&report](std::string_view line) {
    if (report.empty()) report = examples::firstLine(line);
  };
  const quill::LogSink log = quill::setLogSink(note);
  const quill::LightAssertionSink light = quill::setLightAssertionSink(note);
  const bool isConverted = converter.convert(text, &result, &error) && report.empty();
  quill::setLogSink(log);
  quill::setLightAssertionSink(light);
  if (!isConverted) {
    result.clear();
    complain(place + examples::quoted(text) + ": " + (error.empty() ? report : error), kFailed);
  }
  std::cout << result << '\n';
  return isConverted;
}

int convertLines(convert::Converter& converter) {
  std::ios::sync_with_stdio(false);  // a stream of its own tells a read that failed from the end
  int status = 0;
  std::uint64_t number = 0;
  for (std::string line; std::getline(std::cin, line);) {
    ++number;
    if (line.ends_with('\r')) line.pop_back();
    if (line.find_first_not_of(" \t") == std::string::npos) {
      std::cout << '\n';
    } else if (!convertValue(converter, line, "line " + std::to_string(number) + ": ")) {
      status = kFailed;
    }
  }
  return std::cin.bad() ? complain("cannot read standard input", kFailed) : status;
}

int run(std::span<const std::string_view> arguments) {
  using convert::Options;
  Options options;
  std::string error;
  if (!convert::parseOptions(arguments, &options, &error)) {
    return complain(error + "\nTry timecode-convert --help.", kUsageError);
  }
  switch (options.action) {
    case Options::Action::Help: return printed(convert::kHelp);
    case Options::Action::Version: return printed("timecode-convert " QUILL_EXAMPLE_VERSION "\n");
    case Options::Action::ListModes: return printed(examples::modeList("\n") + "\n");
    case Options::Action::Convert: break;
  }
  convert::Converter converter(options.settings);
  int status = 0;
  for (const std::string_view value : options.values) {
    if (!convertValue(converter, value, "")) status = kFailed;
  }
  if (options.values.empty()) status = convertLines(converter);
  const int written = printed("");
  return status == 0 ? written : status;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    return run(std::vector<std::string_view>(arguments + (argumentCount > 0), arguments + argumentCount));
  } catch (const std::exception& problem) {
    return complain(examples::firstLine(problem.what()), kFailed);
  }
}
