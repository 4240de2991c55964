// The archive's bound on work: reads wrap to position 0 at most the wrap limit times, so that no
// count or stream makes a reader loop or allocate beyond a fixed multiple of its input.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eStringList.h"

namespace {

constexpr const char* kWrapFile = "common/ehal/eArchive";
constexpr int kWrapLine = 150;
constexpr const char* kWrapFunction = "EArchive read beyond its wrap limit";

// Runs `read` with serialisation errors thrown; true when it ended in the wrap-limit report.
bool RefusedForWraps(const std::function<void()>& read) {
  ScopedThrowingSerializeErrors throwing;
  try {
    read();
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, kWrapFile);
    EXPECT_EQ(error.line, kWrapLine);
    EXPECT_EQ(error.function, kWrapFunction);
    return true;
  }
  return false;
}

// Whether a read was refused for its wraps, and how long it took.
struct Outcome {
  bool refused;
  double milliseconds;
};

Outcome Timed(const std::function<void()>& read) {
  const auto start = std::chrono::steady_clock::now();
  const bool refused = RefusedForWraps(read);
  const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
  return {refused, took.count()};
}

// Generous even for the sanitizer build; the reads took tens of seconds before they were bounded.
constexpr double kFewMilliseconds = 500;

// An item that notes the capacity of the vector it is read into when the first one is read.
struct CapacityProbe {
  unsigned int value = 0;
};
const std::vector<CapacityProbe>* gProbed = nullptr;
std::size_t gFirstCapacity = 0;

EArchive& operator>>(EArchive& archive, CapacityProbe& item) {
  if (gProbed != nullptr && gProbed->empty()) gFirstCapacity = gProbed->capacity();
  item.value = archive.ReadUnsignedInt();
  return archive;
}

TEST(EArchiveLimits, TheDefaultAllowsFourWraps) {
  EXPECT_EQ(EArchive::kDefaultWrapLimit, 4u);
  EArchive archive = LoadingArchive("5 ");
  EXPECT_EQ(archive.GetWrapLimit(), 4u);
  EXPECT_EQ(archive.GetWrapCount(), 0u);
}

TEST(EArchiveLimits, WrapsUpToTheLimitReadAsBeforeAndTheNextIsRefused) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(BlobOf("5 "), false);
  archive.SetWrapLimit(3);
  EXPECT_EQ(archive.ReadUnsignedInt(), 5u);
  for (unsigned int wrap = 1; wrap <= 3; ++wrap) {
    EXPECT_EQ(archive.ReadUnsignedInt(), 0u);  // past the end
    EXPECT_EQ(archive.GetReadPosition(), 3u);
    EXPECT_EQ(archive.ReadUnsignedInt(), 5u);  // starts over at position 0
    EXPECT_EQ(archive.GetWrapCount(), wrap);
  }
  EXPECT_EQ(archive.ReadUnsignedInt(), 0u);
  EXPECT_TRUE(RefusedForWraps([&archive] { archive.ReadUnsignedInt(); }));
  EXPECT_EQ(archive.GetWrapCount(), 3u);
}

TEST(EArchiveLimits, EveryReaderCountsItsWrap) {
  const std::vector<std::function<void(EArchive&)>> readers = {
      [](EArchive& a) { a.ReadUnsignedInt(); },
      [](EArchive& a) { a.ReadSignedInt(); },
      [](EArchive& a) { a.ReadUnsigned64Int(); },
      [](EArchive& a) {
        char text[8];
        a.BufferNumberText(text, sizeof text);
      },
  };
  for (const auto& read : readers) {
    EArchive archive = LoadingArchive("7 ");
    archive.SetWrapLimit(1);
    read(archive);
    read(archive);  // past the end
    read(archive);  // wraps
    EXPECT_EQ(archive.GetWrapCount(), 1u);
    EXPECT_TRUE(RefusedForWraps([&] {
      read(archive);
      read(archive);
      read(archive);
    }));
  }
}

TEST(EArchiveLimits, StringAndBlobLengthsPastTheEndCountAsAWrap) {
  // A line never runs past the end (it stops on it), but it starts over after a read that did.
  EArchive archive = LoadingArchive("3 abc");
  std::string text;
  archive >> text;
  EXPECT_EQ(text, "abc");
  archive >> text;  // the length runs past the end, the bytes start over at 0
  EXPECT_EQ(archive.GetWrapCount(), 1u);
  EBlob blob;
  archive.ReadBlob(blob);
  EXPECT_EQ(archive.GetWrapCount(), 1u);
  archive.ReadBlob(blob);
  EXPECT_EQ(archive.GetWrapCount(), 2u);
  EXPECT_EQ(archive.ReadUnsignedInt(), 3u);
  EXPECT_EQ(archive.ReadUnsignedInt(), 0u);  // runs past the end
  archive.SerializeRawStringIn(text);
  EXPECT_EQ(archive.GetWrapCount(), 3u);
  EXPECT_EQ(text, std::string("3 abc\0", 6));  // the whole line, the terminating zero byte too
}

TEST(EArchiveLimits, ZeroAllowsAnyNumberOfWraps) {
  EArchive archive = LoadingArchive("5 ");
  archive.SetWrapLimit(0);
  for (int pass = 0; pass <= 1000; ++pass) {
    ASSERT_EQ(archive.ReadUnsignedInt(), 5u);
    ASSERT_EQ(archive.ReadUnsignedInt(), 0u);  // past the end; the next read starts over
  }
  EXPECT_EQ(archive.GetWrapCount(), 1000u);
}

// An archive of no data with a limit of two wraps, after one wrap.
EArchive WrappedOnce() {
  EArchive archive = LoadingArchive("");
  archive.SetWrapLimit(2);
  archive.ReadUnsignedInt();  // past the end
  archive.ReadUnsignedInt();  // starts over
  return archive;
}

TEST(EArchiveLimits, ReplacingTheDataResetsTheCountAndKeepsTheLimit) {
  EArchive archive = WrappedOnce();
  EXPECT_EQ(archive.GetWrapCount(), 1u);
  archive.SetFromEBlob(BlobOf("1 "), false);
  EXPECT_EQ(archive.GetWrapCount(), 0u);
  EXPECT_EQ(archive.GetWrapLimit(), 2u);
  archive.ReadUnsignedInt();
  archive.ReadUnsignedInt();
  archive.ReadUnsignedInt();
  EXPECT_EQ(archive.GetWrapCount(), 1u);
  archive.Empty();
  EXPECT_EQ(archive.GetWrapCount(), 0u);
  EXPECT_EQ(archive.GetWrapLimit(), 2u);
}

TEST(EArchiveLimits, ACopyReadsOnWithTheSameCountAndLimit) {
  const EArchive archive = WrappedOnce();
  const EArchive copy(archive);
  EXPECT_EQ(copy.GetWrapCount(), 1u);
  EXPECT_EQ(copy.GetWrapLimit(), 2u);
  EArchive assigned;
  assigned = archive;
  EXPECT_EQ(assigned.GetWrapCount(), 1u);
  EXPECT_EQ(assigned.GetWrapLimit(), 2u);
}

TEST(EArchiveLimits, TheRefusalIsTheFixedReportAndExitStatusOne) {
  ExpectSerializeError(
      [] {
        // Each pass over the data reads the 1, then runs past the end; the fifth wrap is refused.
        EArchive archive = LoadingArchive("1 ");
        for (int read = 0; read < 100; ++read)
          archive.ReadUnsignedInt();
      },
      kWrapFile, kWrapLine, kWrapFunction);
}

TEST(EArchiveLimits, AHugeVectorCountEndsWithTheDataAndSmall) {
  std::vector<unsigned int> numbers;
  EArchive archive = LoadingArchive("4000000000 1 ");
  EXPECT_FALSE(RefusedForWraps([&] { SerializeIn(archive, numbers); }));
  // The item, then the read that found only the terminating zero byte and ran past the end;
  // nothing is reserved from the count.
  EXPECT_EQ(numbers, (std::vector<unsigned int>{1, 0}));
  EXPECT_LE(numbers.capacity(), 2u);
  EXPECT_EQ(archive.GetReadPosition(), 15u);
  EXPECT_EQ(archive.GetWrapCount(), 0u);
}

TEST(EArchiveLimits, WithoutALimitReadsGoRoundTheDataButAContainerStopsAtItsEnd) {
  EArchive archive = LoadingArchive("7 1 2 ");
  archive.SetWrapLimit(0);
  std::vector<unsigned int> numbers;
  SerializeIn(archive, numbers);
  EXPECT_EQ(numbers, (std::vector<unsigned int>{1, 2, 0}));
  EXPECT_EQ(archive.GetWrapCount(), 0u);
  for (const unsigned int expected : {7u, 1u, 2u, 0u, 7u})
    EXPECT_EQ(archive.ReadUnsignedInt(), expected);
  EXPECT_EQ(archive.GetWrapCount(), 2u);
}

TEST(EArchiveLimits, AVectorReservesAtMostHalfTheBytesLeft) {
  // Nine bytes follow the count (four items, the terminating zero byte): at most four reserved.
  EArchive archive = LoadingArchive("1000000 1 2 3 4 ");
  std::vector<CapacityProbe> items;
  gProbed = &items;
  EXPECT_FALSE(RefusedForWraps([&] { SerializeIn(archive, items); }));
  gProbed = nullptr;
  EXPECT_LE(gFirstCapacity, 4u);
  EXPECT_EQ(items.size(), 5u);  // the four items, then the read that ran past the end
}

TEST(EArchiveLimits, AHugeStringListCountEndsQuickly) {
  // The string list's signature, then a count near 2^32 over two short strings.
  EStringList list;
  const Outcome outcome = Timed([&] { ReadFrom("286785536 4000000000 1 a 2 bc ", list); });
  EXPECT_TRUE(outcome.refused);
  EXPECT_LT(outcome.milliseconds, kFewMilliseconds);
  EXPECT_LE(list.GetCount(), 50u);
}

TEST(EArchiveLimits, NestedHugeCountsEndQuickly) {
  // A map whose values are string lists with a count near 2^32: each wrap lands on the map's
  // count again, read as a string length or a key, followed by a valid list signature.
  std::map<unsigned int, EStringList> entries;
  EArchive mapArchive = LoadingArchive("4000000000 286785536 286785536 4000000000 ");
  const Outcome map = Timed([&] { SerializeIn(mapArchive, entries); });
  EXPECT_TRUE(map.refused);
  EXPECT_LT(map.milliseconds, kFewMilliseconds);
  std::vector<EStringList> lists;
  EArchive vectorArchive = LoadingArchive("4000000000 286785536 4000000000 ");
  const Outcome vector = Timed([&] { SerializeIn(vectorArchive, lists); });
  EXPECT_TRUE(vector.refused);
  EXPECT_LT(vector.milliseconds, kFewMilliseconds);
  EXPECT_LE(lists.size(), 10u);
}

}  // namespace
