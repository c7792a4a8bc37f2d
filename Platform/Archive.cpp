// An archive is one map in CBOR (Docs/archive-format.md). The writer cannot know how many values an object will write:
// it writes them and then sets the head of definite length before them. What comes before the root object in the
// archive, the class versions, is written last.
//
// The reader keeps no tree. After the check of the form it knows where the objects are, and the entries of those that
// are being decoded; every value is read from its bytes when it is asked for.

#include "Archive.h"

#include "IntegerMath.h"
#include "TextServices.h"
#include "detail/Cbor.h"

#include <algorithm>

namespace quill::inline v0 {

using detail::appendHead;
using detail::CborItem;
using detail::CborMajor;

namespace {

constexpr std::string_view kFormat = "QuillFoundation archive";
constexpr std::uint64_t kFormatVersion = 1;
constexpr std::string_view kKindNames[] = {"keyed", "sequential"};
constexpr std::string_view kStart = "\xD9\xD9\xF7";  // tag 55799: self-described CBOR

[[noreturn]] void misused(const char* problem) { throw std::logic_error(problem); }

// A value in an archive, and the key that it is asked for by, empty in a sequential archive.
struct Value {
  Value(std::string_view bytes, std::size_t offset) : Value(bytes, offset, {}) {}
  Value(std::string_view bytes, std::size_t offset, std::string_view name)
      : item(detail::cborItemAt(bytes, offset)), key(name) {}

  CborItem item;
  std::string_view key;

  [[noreturn]] void fail(const std::string& problem) const {
    throw ArchiveError(key.empty() ? problem : "the key \"" + std::string(key) + "\" holds " + problem, item.begin);
  }
  [[noreturn]] void failAs(const char* wanted) const {
    fail(std::string(item.kind()) + " where " + wanted + " is asked for");
  }

  bool isInteger() const { return item.major == CborMajor::Unsigned || item.major == CborMajor::Negative; }
  std::int64_t int64(std::int64_t lowest, std::int64_t highest) const {
    if (!isInteger()) failAs("an integer");
    const auto magnitude = static_cast<std::int64_t>(item.argument & kInt64Highest);
    const std::int64_t value = item.major == CborMajor::Negative ? ~magnitude : magnitude;
    if (item.argument > kInt64Highest || value < lowest || value > highest) {
      fail("an integer that is out of range");
    }
    return value;
  }
  std::int64_t int64() const { return int64(kInt64Lowest, kInt64Highest); }
  std::int32_t int32() const {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(int64(Limits::min(), Limits::max()));
  }
  std::uint64_t uint64(std::uint64_t highest) const {
    if (!isInteger()) failAs("an integer");
    if (item.major == CborMajor::Negative || item.argument > highest) {
      fail("an integer that is out of range");
    }
    return item.argument;
  }
  double float64() const {
    if (item.isFloat()) return item.floatValue();
    if (!isInteger()) failAs("a double");
    const Number integer = number();
    if (integer != Number(integer.doubleValue())) fail("an integer that is no exact double");
    return integer.doubleValue();
  }
  bool boolean() const {
    if (!item.isBool()) failAs("a boolean");
    return item.argument == 21;
  }
  Number number() const {
    if (item.isBool()) return Number::boolean(boolean());
    if (item.isFloat()) return item.floatValue();
    if (item.major == CborMajor::Unsigned && item.argument > kInt64Highest) return item.argument;
    return int64();
  }
  Number number(char type) const {
    switch (type) {
      case 'i': return int32();
      case 'I': return uint64(std::numeric_limits<std::uint32_t>::max());
      case 'q': return int64();
      case 'Q': return uint64(kUInt64Highest);
      default: return float64();
    }
  }
};

void checkTypes(std::string_view types, std::size_t count) {
  if (types.find_first_not_of("iIqQd") != types.npos) misused("a type that archives do not know");
  if (types.size() != count) misused("as many types as values are needed");
}

bool derivesFromOneOf(const ClassDescriptor* descriptor, ClassSet classes) {
  for (; descriptor; descriptor = descriptor->superclass) {
    if (std::find(classes.begin(), classes.end(), descriptor) != classes.end()) return true;
  }
  return false;
}

}  // namespace

std::string archivedData(const Object& object, ArchiveKind kind) {
  ArchiveWriter writer(kind);
  writer.encodeRoot(&object);
  return writer.bytes();
}

Ref<Object> unarchivedObject(std::string_view bytes, ClassSet classes) {
  return ArchiveReader(bytes).decodeRoot(classes);
}

// ---- Writing ----

// An array or map that is being written.
class ArchiveWriter::Level {
 public:
  // One of that many that begin together.
  Level(ArchiveWriter& writer, std::size_t nested)
      : writer_(writer), outer_(writer.level_), depth_((outer_ ? outer_->depth_ : 1) + nested) {
    if (depth_ > detail::kMostNested) writer.fail("objects that are nested too deep");
    writer.level_ = this;
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() {
    writer_.level_ = outer_;
    if (!isClosed_) writer_.state_ = State::Failed;
  }

  // What is written from here on is in it.
  void begin() { start_ = writer_.root_.size(); }
  void count() { ++count_; }
  // Writes a key, valid UTF-8. False, and nothing, for one that has been written.
  bool addKey(std::string_view key) {
    std::string& root = writer_.root_;
    const auto textOf = [&](const Key& one) { return std::string_view(root).substr(one.begin, one.size); };
    const auto place = std::lower_bound(keys_.begin(), keys_.end(), key, [&](const Key& one, std::string_view wanted) {
      return one.size != wanted.size() ? one.size < wanted.size() : textOf(one) < wanted;
    });
    if (place != keys_.end() && textOf(*place) == key) return false;
    appendHead(root, CborMajor::Text, key.size());
    root += key;
    keys_.insert(place, {root.size() - key.size(), key.size()});
    ++count_;
    return true;
  }
  void close(CborMajor major) {
    std::string head;
    appendHead(head, major, count_);
    writer_.root_.insert(start_, head);
    isClosed_ = true;
  }

 private:
  // The text of a key, in what is written.
  struct Key {
    std::size_t begin;
    std::size_t size;
  };

  ArchiveWriter& writer_;
  Level* outer_;
  std::size_t depth_;  // arrays and maps, with that of the whole archive
  std::size_t start_ = 0;
  std::uint64_t count_ = 0;
  std::vector<Key> keys_;  // short ones first
  bool isClosed_ = false;
};

ArchiveWriter::ArchiveWriter(ArchiveKind kind) : kind_(kind) {}

ArchiveWriter::~ArchiveWriter() = default;

void ArchiveWriter::fail(const std::string& problem) {
  state_ = State::Failed;
  throw ArchiveError(problem);
}

void ArchiveWriter::encodeRoot(const Object* object) {
  if (state_ != State::Empty) misused("an archive has one root object");
  state_ = State::Writing;
  appendObject(object);
  if (state_ == State::Writing) state_ = State::Done;
}

std::string ArchiveWriter::bytes() const {
  if (state_ != State::Done) misused("an archive that is not complete");
  std::string out(kStart);
  out.reserve(root_.size() + 256);
  const auto text = [&](std::string_view name) { detail::appendText(out, name); };
  appendHead(out, CborMajor::Map, 5);
  text("format"), text(kFormat);
  text("version"), appendHead(out, CborMajor::Unsigned, kFormatVersion);
  text("kind"), text(kKindNames[static_cast<std::size_t>(kind_)]);
  text("classes"), appendHead(out, CborMajor::Map, versions_.size());
  for (const auto& [name, version] : versions_) text(name), detail::appendInteger(out, version);
  text("root");
  return out += root_;
}

void ArchiveWriter::beginValue(std::string_view key) {
  if (!allowsKeyedCoding() || !level_) misused("a key outside of an object of a keyed archive");
  if (!detail::isValidText(key)) fail("a key that is no valid UTF-8");
  if (!level_->addKey(key)) fail("the key \"" + std::string(key) + "\" is written twice");
}

void ArchiveWriter::beginValue() {
  if (allowsKeyedCoding() || !level_) misused("no key, outside of an object of a sequential archive");
  level_->count();
}

void ArchiveWriter::encodeInt64(std::int64_t value, std::string_view key) {
  beginValue(key);
  detail::appendInteger(root_, value);
}

void ArchiveWriter::encodeDouble(double value, std::string_view key) {
  beginValue(key);
  detail::appendDouble(root_, value);
}

void ArchiveWriter::encodeBool(bool value, std::string_view key) {
  beginValue(key);
  detail::appendBool(root_, value);
}

void ArchiveWriter::encodeObject(const Object* object, std::string_view key) {
  beginValue(key);
  appendObject(object);
}

void ArchiveWriter::encodeValues(std::string_view types, std::initializer_list<Number> values) {
  checkTypes(types, values.size());
  const Number* value = values.begin();
  for (const char type : types) {
    beginValue();
    switch (type) {
      case 'i': appendNumber(static_cast<std::int32_t>(value->int64Value())); break;
      case 'I': appendNumber(static_cast<std::uint32_t>(value->uint64Value())); break;
      case 'q': appendNumber(value->int64Value()); break;
      case 'Q': appendNumber(value->uint64Value()); break;
      default: appendNumber(value->doubleValue()); break;
    }
    ++value;
  }
}

void ArchiveWriter::encodeObject(const Object* object) {
  beginValue();
  appendObject(object);
}

void ArchiveWriter::appendNumber(const Number& number) {
  switch (number.kind()) {
    case Number::Kind::Signed: detail::appendInteger(root_, number.int64Value()); break;
    case Number::Kind::Unsigned: appendHead(root_, CborMajor::Unsigned, number.uint64Value()); break;
    case Number::Kind::Double: detail::appendDouble(root_, number.doubleValue()); break;
    case Number::Kind::Boolean: detail::appendBool(root_, number.boolValue()); break;
  }
}

void ArchiveWriter::appendObject(const Object* object) {
  if (!object) return detail::appendNull(root_);
  if (const auto* text = classCast<TextObject>(object)) {
    return detail::appendText(root_, text->text());
  }
  if (const auto* number = classCast<Number>(object)) return appendNumber(*number);
  if (const auto* numbered = classCast<NumberedObjects>(object)) {
    Level level(*this, 1);
    level.begin();
    for (const auto& [number, held] : numbered->objects()) {
      level.count();
      detail::appendInteger(root_, number);
      appendObject(held.get());
    }
    return level.close(CborMajor::Map);
  }

  const auto [place, isNew] = numbers_.try_emplace(object, numbers_.size());
  if (!isNew) {
    appendHead(root_, CborMajor::Tag, detail::kTagReference);
    return appendHead(root_, CborMajor::Unsigned, place->second);
  }
  const ClassDescriptor& descriptor = object->classDescriptor();
  if (!descriptor.archiveName) {
    fail(std::string("the class ") + descriptor.name + " archives nothing");
  }
  for (const ClassDescriptor* c = &descriptor; c; c = c->superclass) {
    if (c->archiveName) versions_.try_emplace(c->archiveName, c->version);
  }
  const bool isKeyed = allowsKeyedCoding();
  Level level(*this, isKeyed ? 2 : 1);
  appendHead(root_, CborMajor::Tag, detail::kTagShareable);
  if (isKeyed) {
    appendHead(root_, CborMajor::Array, 2);
    detail::appendText(root_, descriptor.archiveName);
    level.begin();
  } else {
    level.begin();
    level.count();
    detail::appendText(root_, descriptor.archiveName);
  }
  object->encodeWithCoder(*this);
  level.close(isKeyed ? CborMajor::Map : CborMajor::Array);
}

std::int64_t ArchiveWriter::versionForClassName(std::string_view archiveName) const {
  const auto found = versions_.find(archiveName);
  return found == versions_.end() ? 0 : found->second;
}

// ---- Reading ----

// An object, or numbered objects, that are being decoded. References lead anywhere, so these are nested deeper than
// the bytes may be, and are bounded on their own.
class ArchiveReader::Level {
 public:
  Level(ArchiveReader& reader, std::size_t offset)
      : reader_(reader), outer_(reader.level_), depth_(outer_ ? outer_->depth_ + 1 : 1) {
    if (depth_ > detail::kMostNested) {
      throw ArchiveError("objects that are nested too deep", offset);
    }
    reader.level_ = this;
  }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;
  ~Level() { reader_.level_ = outer_; }

  std::vector<Entry> entries;  // of a keyed object
  std::size_t next = 0;        // offset of the next value of a sequential object
  std::uint64_t left = 0;      // its values from there on

 private:
  ArchiveReader& reader_;
  Level* outer_;
  std::size_t depth_;
};

ArchiveReader::ArchiveReader(std::string_view bytes) : bytes_(bytes) {
  if (!bytes.starts_with(kStart)) throw ArchiveError("no archive", 0);
  shareable_ = detail::checkCborForm(bytes);
  const std::vector<Entry> entries = entriesOf(kStart.size());
  const auto valueOf = [&](std::string_view key) {
    const Entry* const entry = find(entries, key);
    if (!entry) {
      throw ArchiveError("an archive without \"" + std::string(key) + "\"", kStart.size());
    }
    return Value(bytes_, entry->offset, key);
  };
  const auto textOf = [&](const Value& value) {
    if (value.item.major != CborMajor::Text) value.failAs("a text");
    return detail::cborString(bytes_, value.item);
  };
  const Value format = valueOf("format"), version = valueOf("version"), kind = valueOf("kind");
  if (textOf(format) != kFormat) format.fail("the name of another format");
  if (version.uint64(kUInt64Highest) != kFormatVersion) version.fail("an unknown version");
  if (textOf(kind) == kKindNames[1]) {
    kind_ = ArchiveKind::Sequential;
  } else if (textOf(kind) != kKindNames[0]) {
    kind.fail("an unknown kind");
  }
  versions_ = entriesOf(valueOf("classes").item.begin);
  for (const Entry& entry : versions_) Value(bytes_, entry.offset).int64();
  root_ = valueOf("root").item.begin;
}

ArchiveReader::~ArchiveReader() = default;

// Short keys first, for few are of one length.
bool ArchiveReader::Entry::operator<(std::string_view other) const {
  return key.size() != other.size() ? key.size() < other.size() : key < other;
}

// In order; integer keys are left out.
std::vector<ArchiveReader::Entry> ArchiveReader::entriesOf(std::size_t mapOffset) const {
  const Value value(bytes_, mapOffset);
  const CborItem& map = value.item;
  if (map.major != CborMajor::Map) value.failAs("a map");
  std::vector<Entry> entries;
  entries.reserve(static_cast<std::size_t>(map.argument));
  std::size_t offset = map.next;
  for (std::uint64_t left = map.argument; left > 0; --left) {
    const CborItem key = detail::cborItemAt(bytes_, offset);
    offset = key.next;
    if (key.major == CborMajor::Text) {
      const std::string_view text = detail::cborString(bytes_, key);
      offset += text.size();
      entries.push_back({text, offset});
    }
    if (left > 1) offset = detail::cborEnd(bytes_, offset);  // of the whole archive all but the root
  }
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a < b.key; });
  return entries;
}

const ArchiveReader::Entry* ArchiveReader::find(const std::vector<Entry>& entries, std::string_view key) {
  const auto place = std::lower_bound(entries.begin(), entries.end(), key);
  return place != entries.end() && place->key == key ? &*place : nullptr;
}

const ArchiveReader::Entry* ArchiveReader::find(std::string_view key) const {
  if (!allowsKeyedCoding() || !level_) misused("a key outside of an object of a keyed archive");
  return find(level_->entries, key);
}

std::size_t ArchiveReader::nextValue() {
  if (allowsKeyedCoding() || !level_) misused("no key, outside of an object of a sequential archive");
  const std::size_t offset = level_->next;
  if (level_->left == 0) throw ArchiveError("an object with too few values", offset);
  --level_->left;
  level_->next = detail::cborEnd(bytes_, offset);
  return offset;
}

Ref<Object> ArchiveReader::decodeRoot(ClassSet classes) { return objectAt(root_, classes); }

bool ArchiveReader::containsValueForKey(std::string_view key) { return find(key) != nullptr; }

std::int32_t ArchiveReader::decodeInt32(std::string_view key) {
  const Entry* const entry = find(key);
  return entry ? Value(bytes_, entry->offset, key).int32() : 0;
}

std::int64_t ArchiveReader::decodeInt64(std::string_view key) {
  const Entry* const entry = find(key);
  return entry ? Value(bytes_, entry->offset, key).int64() : 0;
}

double ArchiveReader::decodeDouble(std::string_view key) {
  const Entry* const entry = find(key);
  return entry ? Value(bytes_, entry->offset, key).float64() : 0;
}

bool ArchiveReader::decodeBool(std::string_view key) {
  const Entry* const entry = find(key);
  return entry && Value(bytes_, entry->offset, key).boolean();
}

Ref<Object> ArchiveReader::decodeObject(ClassSet classes, std::string_view key) {
  const Entry* const entry = find(key);
  return entry ? objectAt(entry->offset, classes) : nullptr;
}

void ArchiveReader::decodeValues(std::string_view types, std::span<Number> values) {
  checkTypes(types, values.size());
  for (std::size_t i = 0; i < types.size(); ++i) {
    values[i] = Value(bytes_, nextValue()).number(types[i]);
  }
}

Ref<Object> ArchiveReader::decodeObject(ClassSet classes) { return objectAt(nextValue(), classes); }

Ref<Object> ArchiveReader::objectAt(std::size_t offset, ClassSet classes) {
  const Value value(bytes_, offset);
  const CborItem& item = value.item;
  const auto require = [&](const ClassDescriptor& descriptor) {
    if (std::find(classes.begin(), classes.end(), &descriptor) == classes.end()) {
      value.failAs("an object of another class");
    }
  };
  if (item.isNull()) return nullptr;
  if (item.isTag(detail::kTagShareable) || item.isTag(detail::kTagReference)) {
    return sharedObjectAt(offset, classes);
  }
  if (item.major == CborMajor::Text || item.major == CborMajor::Bytes) {
    require(TextObject::descriptor);
    return std::make_shared<TextObject>(std::string(detail::cborString(bytes_, item)));
  }
  if (value.isInteger() || item.isFloat() || item.isBool()) {
    require(Number::descriptor);
    return std::make_shared<Number>(value.number());
  }
  if (item.major != CborMajor::Map) value.failAs("an object");
  require(NumberedObjects::descriptor);
  const Level level(*this, offset);
  const auto numbered = std::make_shared<NumberedObjects>();
  std::size_t next = item.next;
  for (std::uint64_t left = item.argument; left > 0; --left) {
    const std::int64_t number = Value(bytes_, next).int64();
    next = detail::cborEnd(bytes_, next);
    numbered->objects()[number] = objectAt(next, classes);
    next = detail::cborEnd(bytes_, next);
  }
  return numbered;
}

// The object at a tag that makes it shareable, or that refers to such a one.
Ref<Object> ArchiveReader::sharedObjectAt(std::size_t offset, ClassSet classes) {
  const CborItem tag = detail::cborItemAt(bytes_, offset);
  if (tag.isTag(detail::kTagReference)) {
    const CborItem number = detail::cborItemAt(bytes_, tag.next);
    offset = shareable_[static_cast<std::size_t>(number.argument)];
  }
  const Value array(bytes_, detail::cborItemAt(bytes_, offset).next);
  if (array.item.major != CborMajor::Array) array.failAs("the array of an object");
  if (array.item.argument == 0) array.fail("an object without a class");
  const Value name(bytes_, array.item.next);
  if (name.item.major != CborMajor::Text) name.failAs("the name of a class");
  const ClassDescriptor& descriptor = classNamed(detail::cborString(bytes_, name.item), name.item.begin, classes);

  const auto [place, isNew] = decoded_.try_emplace(offset, Decoded{&descriptor, false, nullptr});
  Decoded& decoded = place->second;
  if (!isNew) {
    if (!decoded.isDone) throw ArchiveError("an object that holds itself", tag.begin);
    if (decoded.descriptor != &descriptor) {
      throw ArchiveError("an object that is of another class already", tag.begin);
    }
    return decoded.object;
  }
  try {
    Level level(*this, offset);
    const std::size_t values = detail::cborEnd(bytes_, name.item.begin);
    if (!allowsKeyedCoding()) {
      level.next = values;
      level.left = array.item.argument - 1;
    } else if (array.item.argument == 2) {
      level.entries = entriesOf(values);
    } else {
      array.fail("an object of a keyed archive that is no pair");
    }
    decoded.object = descriptor.makeWithCoder(*this);
    decoded.isDone = true;
  } catch (...) {
    decoded_.erase(place);
    throw;
  }
  return decoded.object;
}

// What a class stands for follows from the registrations, so a registered one must at least be what the caller can take.
const ClassDescriptor& ArchiveReader::classNamed(std::string_view name, std::size_t offset, ClassSet classes) const {
  const ClassDescriptor* found = nullptr;
  for (const ClassDescriptor* one : classes) {
    if (!found && one->archiveName && one->archiveName == name) found = one;
  }
  if (!found) {
    const auto place = registered_.find(name);
    if (place != registered_.end()) found = place->second;
    if (!found && className() == "DesignerXMLDecoder") {
      found = DecodingRegistration::processWideClass(name);
    }
    if (found && !derivesFromOneOf(found, classes)) found = nullptr;
  }
  if (!found || !found->makeWithCoder) {
    // A name out of the archive may be long.
    const std::string shown(substring(name, {0, 64}));
    throw ArchiveError("an object of the class \"" + shown + "\", which is not asked for", offset);
  }
  return *found;
}

std::int64_t ArchiveReader::versionForClassName(std::string_view archiveName) const {
  const Entry* const entry = find(versions_, archiveName);
  return entry ? Value(bytes_, entry->offset).int64() : 0;
}

void ArchiveReader::setClass(const ClassDescriptor* descriptor, std::string_view archiveName) {
  if (descriptor) {
    registered_.insert_or_assign(std::string(archiveName), descriptor);
  } else if (const auto place = registered_.find(archiveName); place != registered_.end()) {
    registered_.erase(place);
  }
}

}  // namespace quill::inline v0
