#include "FieldFile.h"

#include "Platform/Archive.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>

namespace field {

using namespace quill;

namespace {

constexpr std::size_t kLongestFile = 1 << 20;  // bytes; a field has some thousands

// What a file holds. A host's own class is archived as the library's are: under an archive name and a version, its
// values under keys.
class SavedField final : public Object {
 public:
  static const ClassDescriptor descriptor;

  explicit SavedField(const FieldModel& model) : value_(copyOf(model.value())), formatter_(copyOf(model.formatter())) {}

  // Nothing but the two classes named is made, whatever the archive says.
  explicit SavedField(KeyedCoder& coder) {
    constexpr const ClassDescriptor* kValueClass[] = {&Timecode::descriptor};
    constexpr const ClassDescriptor* kFormatterClass[] = {&QKTimecodeFormatter::descriptor};
    value_ = std::static_pointer_cast<Timecode>(coder.decodeObject(kValueClass, "Value"));
    formatter_ = std::static_pointer_cast<QKTimecodeFormatter>(coder.decodeObject(kFormatterClass, "Formatter"));
  }

  void encodeWithCoder(KeyedCoder& coder) const override {
    coder.encodeObject(value_.get(), "Value");
    coder.encodeObject(formatter_.get(), "Formatter");
  }

  const ClassDescriptor& classDescriptor() const override { return descriptor; }
  const Ref<Timecode>& value() const { return value_; }
  const Ref<QKTimecodeFormatter>& formatter() const { return formatter_; }

 private:
  Ref<Timecode> value_;
  Ref<QKTimecodeFormatter> formatter_;
};

const ClassDescriptor SavedField::descriptor{
    "SavedField", "TimecodeField", 0, &Object::descriptor, nullptr, [](KeyedCoder& coder) -> Ref<Object> {
      return std::make_shared<SavedField>(coder);
    }};

[[noreturn]] void throwLastError() { throw std::system_error(errno, std::generic_category()); }

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throwLastError();
  std::string bytes(kLongestFile + 1, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad()) throwLastError();
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  if (bytes.size() > kLongestFile) throw std::runtime_error("it is too long");
  return bytes;
}

// Writes a file beside the one wanted, and gives it that name once it is whole.
void replaceFile(const std::string& path, const std::string& bytes) {
  namespace fs = std::filesystem;
  const fs::path target = fs::exists(path) ? fs::canonical(path) : fs::path(path);  // not a link to it
  if (fs::exists(target) && !fs::is_regular_file(target)) throw std::runtime_error("it is no regular file");
  std::string suffix = ".";
  appendInteger(suffix, std::random_device()());
  const fs::path temporary = fs::path(target) += suffix;
  try {
    std::ofstream file(temporary, std::ios::binary);
    file << bytes;
    file.close();
    if (!file) throwLastError();
    fs::rename(temporary, target);
  } catch (...) {
    std::error_code ignored;
    fs::remove(temporary, ignored);
    throw;
  }
}

std::string reason(const std::exception& problem) {
  const auto* systems = dynamic_cast<const std::system_error*>(&problem);
  return systems ? systems->code().message() : firstLine(problem.what());
}

}  // namespace

std::string archivedField(const FieldModel& model) { return archivedData(SavedField(model), ArchiveKind::Keyed); }

void restoreField(std::string_view archive, FieldModel* model) {
  const auto saved = unarchived<SavedField>(archive);
  if (!saved || !saved->formatter()) throw std::runtime_error("it holds no field");
  if (!model->restore(saved->value(), *saved->formatter())) throw std::runtime_error(model->message().text);
}

bool saveField(const FieldModel& model, const std::string& path, std::string* error) {
  try {
    replaceFile(path, archivedField(model));
    return true;
  } catch (const std::exception& problem) {
    *error = "cannot save " + examples::quoted(path) + ": " + reason(problem);
    return false;
  }
}

bool loadField(const std::string& path, FieldModel* model, std::string* error) {
  try {
    restoreField(readFile(path), model);
    return true;
  } catch (const std::exception& problem) {
    *error = "cannot load " + examples::quoted(path) + ": " + reason(problem);
    return false;
  }
}

}  // namespace field
