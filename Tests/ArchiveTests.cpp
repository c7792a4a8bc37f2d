#include "../Platform/Archive.h"

#include "../Platform/IntegerMath.h"
#include "ArchivedMarker.h"

#include <gtest/gtest.h>

#include <bit>
#include <functional>

namespace quill {
namespace {

static_assert(!std::is_constructible_v<ArchiveReader, std::string>, "its bytes would be gone");
static_assert(std::is_constructible_v<ArchiveReader, const std::string&>);

constexpr ArchiveKind kKinds[] = {ArchiveKind::Keyed, ArchiveKind::Sequential};

// Bytes of hex digits; 'a text' stands for its CBOR, of at most 23 bytes.
std::string bytesOf(std::string_view hex) {
  std::string bytes;
  for (std::size_t i = 0; i < hex.size(); ++i) {
    const auto digit = [&](char c) { return c <= '9' ? c - '0' : c - 'A' + 10; };
    if (hex[i] == '\'') {
      const std::string_view text = hex.substr(i + 1, hex.find('\'', i + 1) - i - 1);
      bytes.append(1, static_cast<char>(0x60 + text.size())).append(text);
      i += text.size() + 1;
    } else if (hex[i] != ' ') {
      bytes += static_cast<char>(digit(hex[i]) * 16 + digit(hex[i + 1]));
      ++i;
    }
  }
  return bytes;
}

std::string byteHex(std::size_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte / 16], kDigits[byte % 16]};
}

// An archive with that root object, and two versions: Chapter 9, Marker 300.
std::string archiveOf(ArchiveKind kind, const std::string& rootHex) {
  return bytesOf("D9D9F7 A5 'format' 'QuillFoundation archive' 'version' 01 'kind'" +
                 std::string(kind == ArchiveKind::Keyed ? "'keyed'" : "'sequential'") +
                 "'classes' A2 'Chapter' 09 'Marker' 19012C 'root'" + rootHex);
}
std::string keyedArchiveOf(const std::string& rootHex) { return archiveOf(ArchiveKind::Keyed, rootHex); }

// A marker of a keyed archive.
std::string markerHex(const std::string& entries) { return "D81C 82 'Marker'" + entries; }

// The rows of a table, "a = b; c = d".
std::vector<std::vector<std::string>> rowsOf(std::string_view table) {
  std::vector<std::vector<std::string>> rows(1, std::vector<std::string>(1));
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table.substr(i, 3) == " = ") {
      rows.back().emplace_back(), i += 2;
    } else if (table.substr(i, 2) == "; ") {
      rows.emplace_back(1), i += 1;
    } else {
      rows.back().back() += table[i];
    }
  }
  return rows;
}

Ref<Marker> decoded(std::string_view bytes) {
  return std::static_pointer_cast<Marker>(unarchivedObject(bytes, kMarkerClasses));
}

// The error that something ends in, or a test failure and an empty one.
ArchiveError errorOf(const std::function<void()>& run) {
  try {
    run();
  } catch (const ArchiveError& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return ArchiveError("");
}

std::string problemAt(std::string_view problem, std::size_t byte) {
  return std::string(problem) + ", at byte " + std::to_string(byte);
}

class Archive : public testing::Test {
 protected:
  Archive() { takeAllLabels(); }
};

TEST_F(Archive, KeepsEveryValueOfEveryType) {
  const std::int64_t integers[] = {0,           -1,   23,    24,    -24,        -25,        255,         256,
                                   -256,        -257, 65535, 65536, 4294967295, 4294967296, -4294967297, kInt64Highest,
                                   kInt64Lowest};
  const std::uint64_t doubles[] = {
      0x8000000000000000, 1, 0x7FEFFFFFFFFFFFFF, 0xFFF0000000000000, 0x7FF8000000000000, 0xFFFC00000000BEEF,
      0x7FF0000000000001};
  for (const ArchiveKind kind : kKinds) {
    for (const std::int64_t integer : integers) {
      Chapter chapter;
      chapter.position = integer;
      chapter.track = static_cast<std::int32_t>(integer);
      chapter.isLocked = integer % 2 != 0;
      const Ref<Chapter> read = unarchived<Chapter>(archivedData(chapter, kind));
      ASSERT_TRUE(read) << integer;
      EXPECT_TRUE(read->position == integer) << integer;
      EXPECT_TRUE(read->track == chapter.track && read->isLocked == chapter.isLocked) << integer;
    }
    for (const std::uint64_t bits : doubles) {
      Marker marker;
      marker.rate = std::bit_cast<double>(bits);
      EXPECT_EQ(std::bit_cast<std::uint64_t>(decoded(archivedData(marker, kind))->rate), bits);
    }
  }
}

TEST_F(Archive, ConvertsSequentialValuesToTheirTypes) {
  class Values : public Marker {
   public:
    void encodeWithCoder(KeyedCoder& coder) const override {
      coder.encodeValues("iIqQdd", {4294967297, -1, 1e300, -1, kInt64Highest, Number::boolean(true)});
    }
  };
  EXPECT_TRUE(archivedData(Values(), ArchiveKind::Sequential)
                  .ends_with(bytesOf("87 'Marker' 01 1AFFFFFFFF 1B7FFFFFFFFFFFFFFF 1BFFFFFFFFFFFFFFFF "
                                     "FB43E0000000000000 FB3FF0000000000000")));
  // One value, read as whatever type is asked for.
  static char type;
  static Number read;
  const ClassDescriptor one{"One", "One", 0, &Object::descriptor, nullptr, [](KeyedCoder& coder) -> Ref<Object> {
                              coder.decodeValues({&type, 1}, {&read, 1});
                              return nullptr;
                            }};
  const ClassDescriptor* const classes[] = {&one};
  // The types that take a value (no others do), the value, what is read and what is read as a double.
  for (const auto& row :
       rowsOf("iIqQd = 1A7FFFFFFF = 2147483647; IqQd = 1A80000000 = 2147483648; IqQd = 1AFFFFFFFF = 4294967295; "
              "qQd = 1B0000000100000000 = 4294967296; qQ = 1B7FFFFFFFFFFFFFFF = 9223372036854775807; "
              "Qd = 1B8000000000000000 = 9223372036854775808 = 9223372036854776000; Q = 1BFFFFFFFFFFFFFFFF = "
              "18446744073709551615; "
              "iqd = 3A7FFFFFFF = -2147483648; qd = 3A80000000 = -2147483649; "
              "qd = 3B7FFFFFFFFFFFFFFF = -9223372036854775808 = -9223372036854776000; x = 3B8000000000000000 = 0; "
              "d = FB3FE0000000000000 = 0.5; x = F5 = 0")) {
    const std::string archive = archiveOf(ArchiveKind::Sequential, "D81C 82 'One'" + row[1]);
    for (const char asked : {'i', 'I', 'q', 'Q', 'd'}) {
      type = asked;
      if (row[0].find(asked) == std::string::npos) {
        EXPECT_THROW(unarchivedObject(archive, classes), ArchiveError) << asked << row[1];
      } else {
        EXPECT_NO_THROW(unarchivedObject(archive, classes)) << asked << row[1];
        EXPECT_EQ(read.description(), asked == 'd' ? row.back() : row[2]) << asked << row[1];
      }
    }
  }
}

TEST_F(Archive, KeepsObjectsAndTheirIdentity) {
  const auto text = std::make_shared<TextObject>("Z\u00E4hler \xFF no UTF-8 \xC3");
  const auto integer = std::make_shared<Number>(-5), most = std::make_shared<Number>(kUInt64Highest);
  const auto real = std::make_shared<Number>(0.1), boolean = std::make_shared<Number>(Number::boolean(true));
  for (const ArchiveKind kind : kKinds) {
    Marker marker;
    EXPECT_EQ(decoded(archivedData(marker, kind))->label, nullptr);
    for (const Ref<Object>& label : std::initializer_list<Ref<Object>>{text, integer, most, real, boolean}) {
      marker.label = label;
      const Ref<Object> read = decoded(archivedData(marker, kind))->label;
      ASSERT_TRUE(read && read->isEqual(*label)) << label->description();
      const auto* number = classCast<Number>(read.get());
      EXPECT_TRUE(!number || number->kind() == static_cast<const Number&>(*label).kind());
    }
    const auto numbered = std::make_shared<NumberedObjects>(), inner = std::make_shared<NumberedObjects>();
    const auto shared = std::make_shared<Chapter>(), twin = std::make_shared<Chapter>();
    numbered->objects() = {{-3, inner}, {0, nullptr}, {1, shared}, {2, twin}, {kInt64Highest, shared}};
    inner->objects() = {{kInt64Lowest, std::make_shared<TextObject>("deep")}};
    marker.label = numbered;
    marker.next = shared;
    const Ref<Marker> read = decoded(archivedData(marker, kind));
    ASSERT_TRUE(classCast<NumberedObjects>(read->label.get()));
    const auto& objects = static_cast<const NumberedObjects&>(*read->label).objects();
    ASSERT_EQ(objects.size(), 5u);
    EXPECT_EQ(objects.at(0), nullptr);
    EXPECT_TRUE(objects.at(1) == read->next && objects.at(kInt64Highest) == read->next && objects.at(2) != read->next);
    const auto* readInner = classCast<NumberedObjects>(objects.at(-3).get());
    ASSERT_TRUE(readInner);
    EXPECT_EQ(readInner->objects().at(kInt64Lowest)->description(), "deep");
    ArchiveWriter writer(kind);
    writer.encodeRoot(nullptr);
    EXPECT_EQ(unarchivedObject(writer.bytes(), kMarkerClasses), nullptr);
  }
}

TEST_F(Archive, WritesACycleAndRefusesToDecodeIt) {
  for (const ArchiveKind kind : kKinds) {
    const auto first = std::make_shared<Marker>(), second = std::make_shared<Marker>();
    first->next = second;
    second->next = first;
    const std::string bytes = archivedData(*first, kind);
    EXPECT_EQ(errorOf([&] { decoded(bytes); }).what(), problemAt("an object that holds itself", bytes.size() - 3));
    second->next = nullptr;
  }
}

TEST_F(Archive, StoresAVersionForEachClassName) {
  for (const ArchiveKind kind : kKinds) {
    const std::string bytes = archivedData(Chapter(), kind);
    const ArchiveReader reader(bytes);
    EXPECT_EQ(reader.versionForClassName("Chapter"), -5);
    EXPECT_EQ(reader.versionForClassName("Marker"), 2);
    EXPECT_EQ(reader.versionForClassName("Object"), 0);
  }
  // The version of the archive, not of the class.
  EXPECT_EQ(decoded(archiveOf(ArchiveKind::Sequential, "D81C 87 'Marker' 00 F90000 00 00 F6 F6"))->version, 300);
}

// The example of Docs/archive-format.md.
constexpr const char* kExample =
    "D9D9F7 A5 66666F726D6174 77"
    "5175696C6C466F756E646174696F6E2061726368697665 6776657273696F6E 01 646B696E64 656B65796564"
    "67636C6173736573 A1 664D61726B6572 02 64726F6F74 D81C 82 664D61726B6572 A7 6756657273696F6E"
    "02 68506F736974696F6E 39BBAF 6452617465 FB403DF851EB851EB8 65547261636B 03 664C6F636B6564 F5"
    "654C6162656C 6674616B652031 644E657874 D81C 82 664D61726B6572 A7 6756657273696F6E 02"
    "68506F736974696F6E 00 6452617465 FB0000000000000000 65547261636B 00 664C6F636B6564 F4"
    "654C6162656C F6 644E657874 F6";

TEST_F(Archive, HasTheBytesOfTheExample) {
  Marker marker;
  marker.position = -48048;
  marker.rate = 29.97;
  marker.track = 3;
  marker.isLocked = true;
  marker.label = std::make_shared<TextObject>("take 1");
  marker.next = std::make_shared<Marker>();
  EXPECT_EQ(archivedData(marker, ArchiveKind::Keyed), bytesOf(kExample));
  const Ref<Marker> read = decoded(bytesOf(kExample));
  EXPECT_EQ(read->position, -48048);
  EXPECT_EQ(read->label->description(), "take 1");
}

// ---- Which classes an archive may name ----

const std::string kChapterHex = "D81C 82 'Chapter' A0";

class HostChapter : public Chapter {
 public:
  static const ClassDescriptor descriptor;
  using Chapter::Chapter;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
};
const ClassDescriptor HostChapter::descriptor{
    "HostChapter", "HostChapter", 0, &Chapter::descriptor, makeDefault<HostChapter>, makeDecoded<HostChapter>};

TEST_F(Archive, MakesOnlyClassesThatAreAskedForOrRegistered) {
  const std::string bytes = keyedArchiveOf(kChapterHex);
  const auto *chapter = &Chapter::descriptor, *marker = &Marker::descriptor, *host = &HostChapter::descriptor;
  const struct {
    const char* label;
    std::vector<const ClassDescriptor*> classes;
    const ClassDescriptor *registered, *made;
  } rows[] = {
      {"asked for", {chapter}, nullptr, chapter},
      {"the base is asked for", {marker, &TextObject::descriptor}, nullptr, nullptr},
      {"nothing is asked for", {}, chapter, nullptr},
      {"base and registration", {marker}, chapter, chapter},
      {"another class", {marker}, host, host},
      {"the set goes first", {chapter}, marker, chapter},
      {"no such class", {&TextObject::descriptor}, chapter, nullptr},
      {"it decodes nothing", {&Object::descriptor}, &Object::descriptor, nullptr},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    ArchiveReader reader(bytes);
    reader.setClass(row.registered, "Chapter");
    if (row.made) {
      EXPECT_EQ(&reader.decodeRoot(row.classes)->classDescriptor(), row.made);
    } else {
      EXPECT_EQ(errorOf([&] { reader.decodeRoot(row.classes); }).what(),
                problemAt("an object of the class \"Chapter\", which is not asked for", bytes.size() - 9));
    }
  }
}

TEST_F(Archive, ChecksAnObjectAgainAtEachReference) {
  // A label that is no class of the next marker, which refers to it.
  const std::string bytes = keyedArchiveOf(markerHex("A2 'Label' D81C 82 'HostChapter' A0 'Next' D81D01"));
  Marker::labelClasses = {&HostChapter::descriptor};
  HostReader reader("ArchiveReader", bytes);
  EXPECT_EQ(errorOf([&] { reader.decodeRoot(kMarkerClasses); }).what(),
            problemAt("an object of the class \"HostChapter\", which is not asked for", bytes.size() - 21));
  // Now it is one of them; both are one object.
  ArchiveReader open(bytes);
  open.setClass(&HostChapter::descriptor, "HostChapter");
  const auto marker = std::static_pointer_cast<Marker>(open.decodeRoot(kMarkerClasses));
  EXPECT_EQ(marker->label, marker->next);
}

TEST_F(Archive, RegistersInTheProcessWhileADesignerDecodes) {
  Marker marker;
  marker.next = std::make_shared<Marker>();
  marker.label = std::make_shared<Marker>();
  Marker::labelClasses = {&Object::descriptor};  // so the label is found through the table alone
  for (const ArchiveKind kind : kKinds) {
    marker.position = 0;
    const std::string bytes = archivedData(marker, kind);
    Marker::classInTable = nullptr;
    EXPECT_THROW(HostReader("DesignerDecoder", bytes).decodeRoot(kMarkerClasses), ArchiveError);
    EXPECT_TRUE(ArchiveReader{std::string_view(bytes)}.decodeRoot(kMarkerClasses));  // takes registrations itself
    EXPECT_EQ(Marker::classInTable, nullptr);
    EXPECT_TRUE(HostReader("DesignerXMLDecoder", bytes).decodeRoot(kMarkerClasses));
    EXPECT_EQ(Marker::classInTable, &Marker::descriptor);
    EXPECT_EQ(DecodingRegistration::processWideClass("Marker"), nullptr);
    marker.position = Marker::kPoison;
    const std::string poisoned = archivedData(marker, kind);
    EXPECT_THROW(HostReader("DesignerXMLDecoder", poisoned).decodeRoot(kMarkerClasses), std::runtime_error);
    EXPECT_EQ(DecodingRegistration::processWideClass("Marker"), nullptr);
  }
  const std::string bytes = keyedArchiveOf(kChapterHex);
  const ClassDescriptor* const base[] = {&Marker::descriptor};
  HostReader designer("DesignerXMLDecoder", bytes), other("DesignerDecoder", bytes);
  {
    const DecodingRegistration none(other, Chapter::descriptor);
    EXPECT_EQ(DecodingRegistration::processWideClass("Chapter"), nullptr);
    const DecodingRegistration one(designer, Chapter::descriptor);
    EXPECT_TRUE(designer.decodeRoot(base));
    EXPECT_THROW(other.decodeRoot(base), ArchiveError);
  }
  EXPECT_THROW(HostReader("DesignerXMLDecoder", bytes).decodeRoot(base), ArchiveError);
}

// ---- What is wrong with an archive ----

TEST_F(Archive, NamesTheByteOfAValueThatIsNotAsAsked) {
  const auto expectError = [](ArchiveKind kind, const std::string& root, std::size_t fromEnd,
                              const std::string& problem) {
    const std::string bytes = archiveOf(kind, root);
    const ArchiveError error = errorOf([&] { decoded(bytes); });
    EXPECT_EQ(error.what(), problemAt(problem, bytes.size() - fromEnd)) << root;
    EXPECT_EQ(error.byteOffset(), bytes.size() - fromEnd) << root;
  };
  for (const auto& row : rowsOf("Position = 6161 = a text where an integer is asked for; "
                                "Position = FB0000000000000000 = a double where an integer is asked for; "
                                "Position = F6 = null where an integer is asked for; "
                                "Position = 1B8000000000000000 = an integer that is out of range; "
                                "Position = 3B8000000000000000 = an integer that is out of range; "
                                "Track = 1A80000000 = an integer that is out of range; "
                                "Track = 3A80000000 = an integer that is out of range; "
                                "Rate = F4 = a boolean where a double is asked for; "
                                "Rate = 1B0020000000000001 = an integer that is no exact double; "
                                "Rate = 3BFFFFFFFFFFFFFFFF = an integer that is out of range; "
                                "Locked = 01 = an integer where a boolean is asked for"))
    expectError(ArchiveKind::Keyed, markerHex("A1 '" + row[0] + "'" + row[1]), bytesOf(row[1]).size(),
                "the key \"" + row[0] + "\" holds " + row[2]);
  // Behind the bytes: how many there are from the fault to the end.
  for (const auto& row : rowsOf("A1 'Next' 6161 = 2 = a text where an object of another class is asked for; "
                                "A1 'Next' A0 = 1 = a map where an object of another class is asked for; "
                                "A1 'Label' 80 = 1 = an array where an object is asked for; "
                                "A1 'Label' C101 = 2 = a tag where an object is asked for; "
                                "A1 'Label' F7 = 1 = a simple value where an object is asked for; "
                                "A1 'Label' A1616100 = 3 = a text where an integer is asked for; "
                                "A1 'Label' D81C6161 = 2 = a text where the array of an object is asked for; "
                                "A1 'Label' D81C80 = 1 = an object without a class; "
                                "A1 'Label' D81C8101 = 1 = an integer where the name of a class is asked for; "
                                "01 = 1 = an integer where a map is asked for"))
    expectError(ArchiveKind::Keyed, markerHex(row[0]), std::stoul(row[1]), row[2]);
  expectError(ArchiveKind::Keyed, "D81C 81 'Marker'", 8, "an object of a keyed archive that is no pair");
  expectError(ArchiveKind::Keyed, "D81C 83 'Marker' A000", 10, "an object of a keyed archive that is no pair");
  for (const auto& row :
       rowsOf("83 'Marker' 0000 = 0 = an object with too few values; "
              "83 'Marker' 00F4 = 1 = a boolean where a double is asked for; "
              "87 'Marker' 00000000F601 = 1 = an integer where an object of another class is asked for"))
    expectError(ArchiveKind::Sequential, "D81C" + row[0], std::stoul(row[1]), row[2]);
}

TEST_F(Archive, NamesTheByteWhereTheFormIsWrong) {
  const std::size_t start = keyedArchiveOf("").size();
  for (const auto& row :
       rowsOf(" = 0 = the archive ends where a value is due; D81C = 2 = the archive ends where a value is due; "
              "1A0000 = 0 = a value that is cut short; 1C = 0 = an invalid first byte; "
              "9F00FF = 0 = an indefinite length; FF = 0 = an indefinite length; F81F = 0 = an invalid simple value; "
              "636162 = 0 = a text that is longer than the archive; "
              "7B7FFFFFFFFFFFFFFF = 0 = a text that is longer than the archive; "
              "5BFFFFFFFFFFFFFFFF = 0 = a byte string that is longer than the archive; "
              "9BFFFFFFFFFFFFFFFF = 0 = an array that is longer than the archive; "
              "BB8000000000000000 = 0 = a map that is longer than the archive; "
              "A2 00 00 00 = 0 = a map that is longer than the archive; 63 61C328 = 2 = a text that is no valid UTF-8; "
              "63 EDA080 = 1 = a text that is no valid UTF-8; 0000 = 1 = bytes behind the archive; "
              "A3 616100 6162A10500 78016100 = 9 = a key that the map has already; "
              "A2 0500 180500 = 3 = a key that the map has already; A1 8000 = 1 = an array as a key; "
              "A1 C0616100 = 1 = a tag as a key; A1 F500 = 1 = a boolean as a key; "
              "D81D00 = 2 = a reference to no object before it; "
              "82 D81CF6 D81D01 = 6 = a reference to no object before it; "
              "82 D81CF6 D81D60 = 6 = a reference to no object before it")) {
    const std::string bytes = keyedArchiveOf(row[0]);
    EXPECT_EQ(errorOf([&] { ArchiveReader{std::string_view(bytes)}; }).what(),
              problemAt(row[2], start + std::stoul(row[1])))
        << row[0];
  }
  const std::tuple<std::string_view, std::string_view, const char*> headers[] = {
      {"\xD9\xD9\xF7", "\xD9\xD9\xF8", "no archive, at byte 0"},
      {"\xA5", "\x05", "bytes behind the archive, at byte 4"},
      {"QuillF", "quillF", "the key \"format\" holds the name of another format, at byte 11"},
      {"version\x01", "version\x02", "the key \"version\" holds an unknown version, at byte 43"},
      {"keyed", "kexed", "the key \"kind\" holds an unknown kind, at byte 49"},
      {"root", "roof", "an archive without \"root\", at byte 3"},
      {"Chapter\x09", "Chapter\x60", "a text where an integer is asked for, at byte 72"},
  };
  for (const auto& [from, to, problem] : headers) {
    std::string bytes = keyedArchiveOf(kChapterHex);
    bytes.replace(bytes.find(from), from.size(), to);
    EXPECT_STREQ(errorOf([&] { ArchiveReader{std::string_view(bytes)}; }).what(), problem);
  }
  EXPECT_THROW(ArchiveReader{std::string_view()}, ArchiveError);
}

// ---- Archives as another program may write them ----

TEST_F(Archive, TakesADoubleInAnyExactForm) {
  for (const auto& row :
       rowsOf("F93E00 = 3FF8000000000000; F98000 = 8000000000000000; F90001 = 3E70000000000000; "
              "F97BFF = 40EFFC0000000000; F9FC00 = FFF0000000000000; F97E01 = 7FF8040000000000; "
              "FA80000001 = B6A0000000000000; FA7F7FFFFF = 47EFFFFFE0000000; FA7F800001 = 7FF0000020000000; "
              "05 = 4014000000000000; 20 = BFF0000000000000; 1BFFFFFFFFFFFFF800 = 43EFFFFFFFFFFFFF; "
              "3B7FFFFFFFFFFFFFFF = C3E0000000000000")) {
    const double rate = decoded(keyedArchiveOf(markerHex("A1 'Rate'" + row[0])))->rate;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(rate), std::stoull(row[1], nullptr, 16)) << row[0];
  }
}

TEST_F(Archive, IgnoresWhatNobodyAsksFor) {
  // Wide heads, keys in any order, unknown keys that hold anything, and a marker that only a later reference reaches.
  const Ref<Marker> marker = decoded(
      keyedArchiveOf(markerHex("A8 05F7 25F7 6161 42FFFE 6162 C063616161 6163 82 F8FF D81C 82 'Marker' A1 'Position' "
                               "182A 'Next' D81D01 7A00000008 506F736974696F6E 1B0000000000000007 'Track' 1903E8")));
  EXPECT_TRUE(marker->position == 7 && marker->track == 1000);
  EXPECT_TRUE(marker->version == 0 && marker->rate == 0 && !marker->isLocked && !marker->label);
  EXPECT_EQ(static_cast<Marker&>(*marker->next).position, 42);
  EXPECT_EQ(decoded(archiveOf(ArchiveKind::Sequential, "D81C 89 'Marker' 07 00 00 00 F6 F6 00 F7"))->position, 7);
}

TEST_F(Archive, NestsObjectsToABoundedDepth) {
  for (const ArchiveKind kind : kKinds) {
    auto chain = std::make_shared<Marker>();
    for (int most = kind == ArchiveKind::Keyed ? 31 : 63; most > 0; --most) {
      EXPECT_TRUE(decoded(archivedData(*chain, kind)));
      const auto outer = std::make_shared<Marker>();
      outer->next = chain;
      chain = outer;
    }
    EXPECT_STREQ(errorOf([&] { archivedData(*chain, kind); }).what(), "objects that are nested too deep");
  }
  const auto numbered = std::make_shared<NumberedObjects>();
  numbered->objects()[0] = numbered;
  EXPECT_THROW(archivedData(*numbered, ArchiveKind::Keyed), ArchiveError);
  numbered->objects().clear();

  std::string arrays, tags;
  for (int i = 0; i < 100000; ++i) arrays += "81", tags += "C1";
  const std::size_t start = keyedArchiveOf("").size();
  const auto byteOf = [&](const std::string& root) {
    return errorOf([&] { decoded(keyedArchiveOf(root)); }).byteOffset() - start;
  };
  EXPECT_EQ(byteOf(arrays + "00"), 63u);
  EXPECT_EQ(byteOf(tags), 100000u);
  EXPECT_EQ(byteOf(tags + "00"), 0u);

  // Objects side by side, each of which refers to the one before: the way from the root to the first is as deep, and
  // twice as deep through numbered objects.
  for (const std::size_t count : {63u, 64u, 32u, 33u}) {
    const auto reference = [](std::size_t index) { return "D81D 18" + byteHex(index); };
    std::string root = "A2 'a' 98" + byteHex(count) + markerHex("A0");
    for (std::size_t i = 1; i < count; ++i)
      root += markerHex(count > 33 ? "A1 'Next'" : "A1 'Label' A100") + reference(i);
    const std::string bytes = keyedArchiveOf(markerHex(root + "'Next'" + reference(count)));
    if (count == 63 || count == 32) {
      EXPECT_TRUE(decoded(bytes)->next);
    } else {
      EXPECT_THROW(decoded(bytes), ArchiveError) << count;
    }
  }
}

// Whether the bytes decode. All that may go wrong is an ArchiveError at a byte of them.
bool isReadable(std::string_view bytes) {
  try {
    return unarchivedObject(bytes, kMarkerClasses) != nullptr;
  } catch (const ArchiveError& error) {
    EXPECT_LE(error.byteOffset(), bytes.size());
    return false;
  }
}

TEST_F(Archive, EndsInAValueOrAnErrorForAnyBytes) {
  const auto shared = std::make_shared<Chapter>();
  shared->label = std::make_shared<TextObject>("\u00E9");
  const auto numbered = std::make_shared<NumberedObjects>();
  numbered->objects() = {{-1, shared}, {7, std::make_shared<Number>(2.5)}};
  Marker marker;
  marker.rate = 29.97;
  marker.label = numbered;
  marker.next = shared;
  for (const std::string& archive :
       {archivedData(marker, kKinds[0]), archivedData(marker, kKinds[1]), bytesOf(kExample)}) {
    ASSERT_TRUE(isReadable(archive));
    for (std::size_t length = 0; length < archive.size(); ++length)
      EXPECT_FALSE(isReadable(archive.substr(0, length))) << length;
    EXPECT_FALSE(isReadable(archive + '\0'));
    int readable = 0, unreadable = 0;
    for (std::size_t i = 0; i < archive.size(); ++i) {
      std::string changed = archive;
      for (int flip = 1; flip < 256; ++flip) {
        changed[i] = static_cast<char>(archive[i] ^ flip);
        ++(isReadable(changed) ? readable : unreadable);
      }
    }
    EXPECT_TRUE(readable > 0 && unreadable > 0);
  }
}

// ---- What callers may not do ----

TEST_F(Archive, RefusesToWriteWhatCannotBeRead) {
  struct Silent : Object {
    const ClassDescriptor& classDescriptor() const override {
      static const ClassDescriptor silent{"Silent", "Silent", 0, &Object::descriptor, nullptr};
      return silent;
    }
  };
  struct Odd : Marker {
    explicit Odd(std::vector<std::string> names) : keys(std::move(names)) {}
    void encodeWithCoder(KeyedCoder& coder) const override {
      for (const std::string& key : keys) coder.encodeBool(true, key);
    }
    std::vector<std::string> keys;
  };
  const auto problem = [](const Object& object) {
    return std::string(errorOf([&] { archivedData(object, ArchiveKind::Keyed); }).what());
  };
  EXPECT_EQ(problem(Silent()), "the class Silent archives nothing");
  EXPECT_EQ(problem(Odd({"a", "b", "a"})), "the key \"a\" is written twice");
  EXPECT_EQ(problem(Odd({"\xFF"})), "a key that is no valid UTF-8");
}

TEST_F(Archive, FailsLoudlyWhenACoderIsMisused) {
  const std::string bytes = bytesOf(kExample);
  ArchiveReader reader(bytes);
  ArchiveWriter keyed(ArchiveKind::Keyed), sequential(ArchiveKind::Sequential);
  Number number;
  EXPECT_THROW(reader.decodeBool("outside"), std::logic_error);
  EXPECT_THROW(reader.decodeObject({}), std::logic_error);
  EXPECT_THROW(reader.encodeBool(true, "key"), std::logic_error);
  EXPECT_THROW(reader.decodeValues("x", std::span(&number, 1)), std::logic_error);
  EXPECT_THROW(reader.decodeValues("ii", std::span(&number, 1)), std::logic_error);
  EXPECT_THROW(keyed.encodeBool(true, "outside"), std::logic_error);
  EXPECT_THROW(keyed.encodeValues("i", {1}), std::logic_error);
  EXPECT_THROW(keyed.decodeBool("key"), std::logic_error);
  EXPECT_THROW(keyed.bytes(), std::logic_error);
  EXPECT_THROW(sequential.encodeBool(true, "key"), std::logic_error);
  EXPECT_THROW(sequential.encodeValues("iq", {1}), std::logic_error);
  sequential.encodeRoot(nullptr);
  EXPECT_THROW(sequential.encodeRoot(nullptr), std::logic_error);
}

}  // namespace
}  // namespace quill
