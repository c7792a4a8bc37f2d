#include "../Platform/Archive.h"

#include "../Platform/IntegerMath.h"
#include "ArchivedMarker.h"
#include "TextTable.h"

#include <bit>
#include <functional>

namespace quill {
namespace {

static_assert(!std::is_constructible_v<ArchiveReader, std::string>, "its bytes would be gone");

constexpr ArchiveKind kKinds[] = {ArchiveKind::Keyed, ArchiveKind::Sequential};

// "Marker(position track locked label next)"; a marker that was met before is its number.
std::string shown(const Object* object, std::vector<const Object*>& met) {
  if (!object) return "nil";
  std::string text;
  if (const auto* numbered = classCast<NumberedObjects>(object)) {
    for (const auto& [n, held] : numbered->objects()) text += std::to_string(n) + ":" + shown(held.get(), met) + " ";
    return "{" + text + "}";
  }
  const auto* marker = classCast<Marker>(object);
  if (!marker) return object->description();
  for (std::size_t i = 0; i < met.size(); ++i)
    if (met[i] == object) return "#" + std::to_string(i);
  met.push_back(object);
  text.append(object->classDescriptor().name).append("(").append(std::to_string(marker->position));
  text.append(" ").append(std::to_string(marker->track)).append(marker->isLocked ? " locked " : " open ");
  text += shown(marker->label.get(), met) + " ";
  return text + shown(marker->next.get(), met) + ")";
}

// What is decoded, or the error, after how many bytes there are from the fault to the end.
std::string outcomeOf(const std::function<Ref<Object>()>& decode, std::size_t size = 0) {
  std::vector<const Object*> met;
  try {
    return shown(decode().get(), met);
  } catch (const ArchiveError& error) {
    const std::string place = ", at byte " + std::to_string(error.byteOffset()), text = error.what();
    if (!text.ends_with(place)) return text;
    return std::to_string(size - error.byteOffset()) + ' ' + text.substr(0, text.size() - place.size());
  } catch (const std::logic_error& error) {
    return std::string("misused: ") + error.what();
  }
}
std::string outcomeOf(const std::string& bytes) {
  return outcomeOf([&] { return unarchivedObject(bytes, kMarkerClasses); }, bytes.size());
}

class Archive : public testing::Test {
 protected:
  Archive() { takeAllLabels(); }
};

TEST_F(Archive, KeepsObjectsAndTheirIdentity) {
  const auto numbered = std::make_shared<NumberedObjects>(), inner = std::make_shared<NumberedObjects>();
  const auto shared = std::make_shared<Chapter>(), twin = std::make_shared<Chapter>();
  inner->objects() = {{kInt64Lowest, std::make_shared<TextObject>("Z\u00E4hler \xFF no UTF-8 \xC3")}};
  numbered->objects() = {{-3, inner}, {0, nullptr}, {1, shared}, {2, twin}, {kInt64Highest, shared}};
  for (const Number& n : {Number(kUInt64Highest), Number(-5), Number(0.1), Number::boolean(true)})
    numbered->objects()[1 - static_cast<std::int64_t>(numbered->objects().size())] = std::make_shared<Number>(n);
  Marker marker;
  marker.isLocked = true, marker.label = numbered, marker.next = shared;
  std::vector<const Object*> met;
  const std::string text = shown(&marker, met);
  EXPECT_NE(text.find(" 9223372036854775807:#1 } #1)"), text.npos) << text;
  for (const ArchiveKind kind : kKinds) {
    const std::string bytes = archivedData(marker, kind);
    EXPECT_EQ(outcomeOf(bytes), text);
    const ArchiveReader reader(bytes);
    EXPECT_TRUE(reader.versionForClassName("Chapter") == -5 && reader.versionForClassName("Object") == 0);
    ArchiveWriter writer(kind);
    writer.encodeRoot(nullptr);
    EXPECT_EQ(outcomeOf(writer.bytes()), "nil");
    twin->next = shared, shared->next = twin;  // is written, and not decoded
    EXPECT_EQ(outcomeOf(archivedData(*twin, kind)), "3 an object that holds itself");
    twin->next = shared->next = nullptr;
  }
  // The version of the archive, not of the class.
  const std::string bytes = archiveOf(ArchiveKind::Sequential, "D81C 87 'Marker' 00 F90000 00 00 F6 F6");
  EXPECT_EQ(std::static_pointer_cast<Marker>(unarchivedObject(bytes, kMarkerClasses))->version, 300);
}

TEST_F(Archive, WritesTheShortestIntegersAndReadsThemBack) {
  eachRowIn("archives.txt", "integers", [](const Cells& row) {
    const std::string root = "D81C 87 'Marker'" + row.at(0) + "FB3FF8000000000000 00 00 F6 F6";
    const std::string bytes = archiveOf(ArchiveKind::Sequential, root);
    EXPECT_EQ(outcomeOf(bytes), "Marker(" + row.at(1) + " 0 open nil nil)");
    const Ref<Object> marker = unarchivedObject(bytes, kMarkerClasses);
    EXPECT_TRUE(archivedData(*marker, ArchiveKind::Sequential).ends_with(bytesOf(root)));
  });
}

// ---- Which classes an archive may name ----

struct HostChapter : Chapter {
  static const ClassDescriptor descriptor;
  using Chapter::Chapter;
  const ClassDescriptor& classDescriptor() const override { return descriptor; }
};
const ClassDescriptor HostChapter::descriptor{
    "HostChapter", "HostChapter", 0, &Chapter::descriptor, makeDefault<HostChapter>, makeDecoded<HostChapter>};
const ClassDescriptor* const kClasses[] = {&Marker::descriptor,     &Chapter::descriptor, &HostChapter::descriptor,
                                           &TextObject::descriptor, &Object::descriptor,  nullptr};

TEST_F(Archive, MakesOnlyClassesThatAreAskedForOrRegistered) {
  eachRowIn("archives.txt", "classes", [](const Cells& row) {
    const auto namedIn = [](const std::string& names) {
      std::vector<const ClassDescriptor*> found;
      for (const std::string& name : partsOf(names, " "))
        for (const ClassDescriptor* one : kClasses)
          if (name == (one ? one->name : "nil")) found.push_back(one);
      return found;
    };
    const std::string bytes = keyedArchiveOf("D81C 82 'Chapter' A0");
    ArchiveReader reader(bytes);
    for (const ClassDescriptor* one : namedIn(row.at(1))) reader.setClass(one, "Chapter");
    EXPECT_EQ(outcomeOf([&] { return reader.decodeRoot(namedIn(row.at(0))); }, bytes.size()), row.at(2));
  });
  // Again at each reference: a label that is no class of the next marker, which refers to it, or now is one.
  const std::string referring = keyedArchiveOf(markerHex("A2 'Label' D81C 82 'HostChapter' A0 'Next' D81D01"));
  Marker::labelClasses = {&HostChapter::descriptor};
  HostReader reader("ArchiveReader", referring);
  EXPECT_EQ(outcomeOf([&] { return reader.decodeRoot(kMarkerClasses); }, referring.size()),
            "21 an object of the class \"HostChapter\", which is not asked for");
  ArchiveReader open(referring);
  open.setClass(&HostChapter::descriptor, "HostChapter");
  EXPECT_EQ(outcomeOf([&] { return open.decodeRoot(kMarkerClasses); }),
            "Marker(0 0 open HostChapter(0 0 open nil nil) #1)");
}

TEST_F(Archive, RegistersInTheProcessWhileADesignerDecodes) {
  Marker marker;
  marker.next = std::make_shared<Marker>(), marker.label = std::make_shared<Marker>();
  Marker::labelClasses = {&Object::descriptor};  // so the label is found through the table alone
  for (const ArchiveKind kind : kKinds) {
    for (const bool isPoisoned : {false, true}) {
      marker.position = isPoisoned ? Marker::kPoison : 0;
      const std::string bytes = archivedData(marker, kind);
      Marker::classInTable = nullptr;
      EXPECT_THROW(HostReader("DesignerDecoder", bytes).decodeRoot(kMarkerClasses), std::runtime_error);
      EXPECT_EQ(Marker::classInTable, nullptr);
      try {
        EXPECT_TRUE(HostReader("DesignerXMLDecoder", bytes).decodeRoot(kMarkerClasses) && !isPoisoned);
      } catch (const std::runtime_error&) {
        EXPECT_TRUE(isPoisoned);
      }
      EXPECT_EQ(Marker::classInTable, &Marker::descriptor);
      EXPECT_EQ(DecodingRegistration::processWideClass("Marker"), nullptr);
    }
  }
  const std::string bytes = keyedArchiveOf("D81C 82 'Chapter' A0");
  HostReader designer("DesignerXMLDecoder", bytes), other("DesignerDecoder", bytes);
  const DecodingRegistration none(other, Chapter::descriptor);
  EXPECT_THROW(designer.decodeRoot({kClasses, 1}), ArchiveError);
  const DecodingRegistration one(designer, Chapter::descriptor);
  EXPECT_TRUE(designer.decodeRoot({kClasses, 1}));
  EXPECT_THROW(other.decodeRoot({kClasses, 1}), ArchiveError);
}

// ---- What an archive may hold, and what not ----

TEST_F(Archive, IsReadOrNamesTheByteThatIsWrong) {
  for (const ArchiveKind kind : kKinds) {
    const char* const section = kind == ArchiveKind::Keyed ? "keyed roots" : "sequential roots";
    eachRowIn("archives.txt", section,
              [kind](const Cells& row) { EXPECT_EQ(outcomeOf(archiveOf(kind, row.at(0))), row.at(1)); });
  }
  eachRowIn("archives.txt", "headers", [](const Cells& row) {
    std::string bytes = keyedArchiveOf("F6");
    const std::string from = bytesOf(row.at(0));
    EXPECT_EQ(outcomeOf(bytes.replace(bytes.find(from), from.size(), bytesOf(row.at(1)))), row.at(2));
  });
  eachRowIn("archives.txt", "doubles", [](const Cells& row) {
    const auto marker = unarchivedObject(keyedArchiveOf(markerHex("A1 'Rate'" + row.at(0))), kMarkerClasses);
    const double rate = static_cast<Marker&>(*marker).rate;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(rate), std::stoull(row.at(1), nullptr, 16));
  });
}

TEST_F(Archive, NestsObjectsToABoundedDepth) {
  for (const ArchiveKind kind : kKinds) {
    auto chain = std::make_shared<Marker>();
    for (int most = kind == ArchiveKind::Keyed ? 31 : 63; most > 0; --most) {
      EXPECT_TRUE(unarchivedObject(archivedData(*chain, kind), kMarkerClasses));
      const auto inner = std::exchange(chain, std::make_shared<Marker>());
      chain->next = inner;
    }
    EXPECT_THROW(archivedData(*chain, kind), ArchiveError);
  }
  const auto numbered = std::make_shared<NumberedObjects>();
  numbered->objects()[0] = numbered;
  EXPECT_THROW(archivedData(*numbered, ArchiveKind::Keyed), ArchiveError);
  numbered->objects().clear();
  EXPECT_EQ(outcomeOf(keyedArchiveOf(repeated("81", 100000) + "00")), "99938 values that are nested too deep");
  EXPECT_EQ(outcomeOf(keyedArchiveOf(repeated("C1", 100000))), "0 the archive ends where a value is due");
  // Objects side by side, each of which refers to the one before: the way from the root to the first is as deep, and
  // twice as deep through numbered objects.
  for (const int count : {63, 64, 32, 33}) {
    std::string root = "A2 'a' 98" + hexOf(count) + markerHex("A0");
    for (int i = 1; i < count; ++i)
      root += markerHex(count > 33 ? "A1 'Next' D81D 18" : "A1 'Label' A100 D81D 18") + hexOf(i);
    const std::string bytes = keyedArchiveOf(markerHex(root + "'Next' D81D 18" + hexOf(count)));
    EXPECT_EQ(outcomeOf(bytes).starts_with("Marker("), count == 63 || count == 32) << count;
  }
}

// ---- What callers may not do ----

struct Silent : Object {};

struct Odd : Marker {
  explicit Odd(std::vector<std::string> names) : keys(std::move(names)) {}
  void encodeWithCoder(KeyedCoder& coder) const override {
    for (const std::string& key : keys) coder.encodeBool(true, key);
  }
  std::vector<std::string> keys;
};

TEST_F(Archive, RefusesToWriteWhatCannotBeReadAndFailsLoudlyWhenMisused) {
  const std::string bytes = keyedArchiveOf("F6");
  ArchiveReader reader(bytes);
  ArchiveWriter keyed(ArchiveKind::Keyed), done(ArchiveKind::Sequential);
  done.encodeRoot(nullptr);
  Number number;
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] {
         archivedData(Odd({"a", "a"}), ArchiveKind::Keyed);
       },
       "the key \"a\" is written twice"},
      {[&] { archivedData(Odd({"\xFF"}), ArchiveKind::Keyed); }, "a key that is no valid UTF-8"},
      {[&] { archivedData(Silent(), ArchiveKind::Keyed); }, "the class Object archives nothing"},
      {[&] { reader.decodeBool("outside"); }, "misused: a key outside of an object of a keyed archive"},
      {[&] { reader.decodeObject({}); }, "misused: no key, outside of an object of a sequential archive"},
      {[&] { reader.encodeBool(true, "key"); }, "misused: a coder that does not write: ArchiveReader"},
      {[&] {
         reader.decodeValues("x", {&number, 1});
       },
       "misused: a type that archives do not know"},
      {[&] {
         reader.decodeValues("ii", {&number, 1});
       },
       "misused: as many types as values are needed"},
      {[&] { keyed.decodeBool("key"); }, "misused: a coder that does not read: ArchiveWriter"},
      {[&] { keyed.bytes(); }, "misused: an archive that is not complete"},
      {[&] { done.encodeRoot(nullptr); }, "misused: an archive has one root object"},
  };
  for (const auto& [run, problem] : rows) EXPECT_EQ(outcomeOf([&run = run] { return run(), Ref<Object>(); }), problem);
}

}  // namespace
}  // namespace quill
