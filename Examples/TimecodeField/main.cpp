// TimecodeField: one timecode in several formats, or a number, in a terminal or fed with entries. See --help.
#include "FieldFile.h"
#include "Options.h"
#include "ScriptedForm.h"
#include "TerminalForm.h"

#include "Platform/Reports.h"

#include <exception>
#include <iostream>
#include <vector>

namespace {

constexpr int kFailed = 1;
constexpr int kUsageError = 2;

int usageError(std::string_view text) {
  std::cerr << "TimecodeField: " << text << "\nTry TimecodeField --help.\n";
  return kUsageError;
}

int failed(std::string_view text) {
  std::cerr << "TimecodeField: " << text << '\n';
  return kFailed;
}

int printed(std::string_view text) {
  std::cout << text << std::flush;
  return std::cout ? 0 : failed("cannot write to standard output");
}

// The number of entries that failed, or nothing when a stream broke.
template <class Model>
std::optional<std::uint64_t> edit(Model& model, const field::Options& options) {
  if (field::Terminal::isAvailable()) {
    field::runTerminalForm(model, options.save.value_or(""));
    return 0;
  }
  std::ios::sync_with_stdio(false);  // a stream of its own tells a read that failed from the end
  return field::runScriptedForm(model, options.inAllFormats, std::cin, std::cout);
}

int run(std::span<const std::string_view> arguments) {
  using field::Options;
  Options options;
  std::string error;
  if (!field::parseOptions(arguments, &options, &error)) return usageError(error);
  switch (options.action) {
    case Options::Action::Help: return printed(field::kHelp);
    case Options::Action::Version: return printed("TimecodeField " QUILL_EXAMPLE_VERSION "\n");
    case Options::Action::ListModes: return printed(examples::modeList("\n") + "\n");
    case Options::Action::Run: break;
  }

  // Standard output is for answers alone.
  const auto note = [](std::string_view line) { std::cerr << "TimecodeField: " << field::firstLine(line) << '\n'; };
  quill::setLogSink(note);
  quill::setLightAssertionSink(note);

  std::optional<std::uint64_t> failures;
  if (options.isNumber()) {
    field::NumberModel model;
    if (!field::prepareField(options, &model, &error)) return usageError(error);
    failures = edit(model, options);
  } else {
    field::FieldModel model;
    if (options.load && !field::loadField(*options.load, &model, &error)) return failed(error);
    if (!field::prepareField(options, &model, &error)) return usageError(error);
    failures = edit(model, options);
    if (failures && options.save && !field::saveField(model, *options.save, &error)) return failed(error);
  }
  if (!failures) return failed("cannot read the entries or write the answers");
  return options.strict && *failures > 0 ? kFailed : 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    return run(std::vector<std::string_view>(arguments + (argumentCount > 0), arguments + argumentCount));
  } catch (const std::exception& problem) {
    return failed(field::firstLine(problem.what()));
  }
}
