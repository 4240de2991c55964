#include "eUniqueIDGenerator.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <list>
#include <random>
#include <string>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "list_id_generator.h"

namespace {

constexpr unsigned int kMax = 0xFFFFFFFF;

// A generator read from archive bytes.
EUniqueIDGenerator Loaded(const std::string& bytes) {
  EUniqueIDGenerator generator;
  ReadFrom(bytes, generator);
  return generator;
}

// Reserves `count` new identifiers and returns them as text, each followed by a blank.
std::string Reserve(EUniqueIDGenerator& generator, int count) {
  std::string ids;
  for (int i = 0; i < count; ++i)
    ids += std::to_string(generator.ReserveNewID()) + " ";
  return ids;
}

// The literal walk's state in the generator's archive form.
std::string LiteralBytes(const ListGenerator& literal) {
  EArchive archive = StoringArchive();
  archive.WriteSignedInt(0x1101001);
  archive.WriteUnsignedInt(literal.GetLastID());
  for (const ListGenerator::Range& range : literal.GetRanges())
    archive.WriteUnsignedInt(range.first).WriteUnsignedInt(range.last);
  archive.WriteUnsignedInt(0);
  return TextOf(archive);
}

// A literal walk read from well-formed generator bytes.
ListGenerator LiteralRead(const std::string& bytes) {
  EArchive archive = LoadingArchive(bytes);
  archive.ReadUnsignedInt();
  const unsigned int last = archive.ReadUnsignedInt();
  std::list<ListGenerator::Range> ranges;
  for (unsigned int first = archive.ReadUnsignedInt(); first != 0;
       first = archive.ReadUnsignedInt()) {
    const unsigned int rangeLast = archive.ReadUnsignedInt();
    ranges.emplace_back(first, rangeLast);
  }
  if (ranges.empty()) ranges.emplace_back();
  return ListGenerator(std::move(ranges), last);
}

TEST(EUniqueIDGenerator, ConstantsAndDefaultRange) {
  EXPECT_EQ(EUniqueIDGenerator::ReservedIDValue, 0u);
  EXPECT_EQ(EUniqueIDGenerator::MaxIDValue, kMax);
  const EUniqueIDGenerator::IDRange all;
  EXPECT_EQ(all.first, 1u);
  EXPECT_EQ(all.last, kMax);
  const EUniqueIDGenerator::IDRange some(4, 9);
  EXPECT_EQ(some.first, 4u);
  EXPECT_EQ(some.last, 9u);
}

TEST(EUniqueIDGenerator, FreshGeneratorArchive) {
  const EUniqueIDGenerator generator;
  EXPECT_EQ(BytesOf(generator), "17829889 0 1 4294967295 0 ");
  EXPECT_EQ(generator.GetNextID(), 1u);
}

TEST(EUniqueIDGenerator, HandsOutInIncreasingOrderAndDoesNotReuseBehindTheCounter) {
  EUniqueIDGenerator generator;
  EXPECT_EQ(Reserve(generator, 3), "1 2 3 ");
  generator.UnReserveID(2);
  EXPECT_EQ(BytesOf(generator), "17829889 3 2 2 4 4294967295 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 4u);
  EXPECT_EQ(generator.GetNextID(), 5u);
}

TEST(EUniqueIDGenerator, WrapsAroundAfterTheTop) {
  EUniqueIDGenerator generator;
  EXPECT_EQ(Reserve(generator, 3), "1 2 3 ");
  generator.UnReserveID(2);
  EXPECT_TRUE(generator.ReserveID(kMax));
  EXPECT_EQ(generator.GetNextID(), 0u);  // a hint only, wrapping as unsigned arithmetic does
  EXPECT_EQ(generator.ReserveNewID(), 2u);
  EXPECT_EQ(generator.ReserveNewID(), 4u);
  EXPECT_EQ(BytesOf(generator), "17829889 4 5 4294967294 0 ");
}

TEST(EUniqueIDGenerator, WrapsToTheLowestRangeWhenTheCounterIsAboveEveryRange) {
  EUniqueIDGenerator generator = Loaded("17829889 20 3 5 9 12 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 3u);  // candidate 21 lies above every range
  EXPECT_EQ(generator.ReserveNewID(), 4u);
  EXPECT_EQ(BytesOf(generator), "17829889 4 5 5 9 12 0 ");
}

TEST(EUniqueIDGenerator, ReleasedIdentifierAheadOfTheCounterIsReused) {
  EUniqueIDGenerator generator = Loaded("17829889 2 3 3 8 4294967295 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 3u);
  EXPECT_EQ(generator.ReserveNewID(), 8u);  // 4 to 7 are in use
}

TEST(EUniqueIDGenerator, ReserveIDSplitsARangeAndMovesTheCounter) {
  EUniqueIDGenerator generator;
  EXPECT_TRUE(generator.ReserveID(5));
  EXPECT_EQ(BytesOf(generator), "17829889 5 1 4 6 4294967295 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 6u);
}

TEST(EUniqueIDGenerator, ReserveIDOfAnIdentifierInUseOrZeroFails) {
  EUniqueIDGenerator generator;
  EXPECT_FALSE(generator.ReserveID(0));
  EXPECT_EQ(Reserve(generator, 2), "1 2 ");
  EXPECT_FALSE(generator.ReserveID(2));
  EXPECT_EQ(generator.GetNextID(), 3u);  // a failed reservation leaves the counter
  EXPECT_EQ(BytesOf(generator), "17829889 2 3 4294967295 0 ");
}

TEST(EUniqueIDGenerator, ReserveIDAtTheEdgesOfRanges) {
  EUniqueIDGenerator generator = Loaded("17829889 0 3 6 9 9 0 ");
  EXPECT_TRUE(generator.ReserveID(3));  // raises the first
  EXPECT_TRUE(generator.ReserveID(6));  // lowers the last
  EXPECT_TRUE(generator.ReserveID(9));  // removes a one-identifier range
  EXPECT_EQ(BytesOf(generator), "17829889 9 4 5 0 ");
  EXPECT_FALSE(generator.ReserveID(10));  // no range ends at or above it
}

TEST(EUniqueIDGenerator, ReleasesMergeWithNeighbours) {
  EUniqueIDGenerator generator;
  EXPECT_EQ(Reserve(generator, 6), "1 2 3 4 5 6 ");
  generator.UnReserveID(4);
  generator.UnReserveID(5);
  EXPECT_EQ(BytesOf(generator), "17829889 6 4 5 7 4294967295 0 ");
  generator.UnReserveID(6);  // bridges [4,5] and [7, max]
  EXPECT_EQ(BytesOf(generator), "17829889 6 4 4294967295 0 ");
  generator.UnReserveID(2);  // on its own
  generator.UnReserveID(1);  // extends [2,2] downwards
  EXPECT_EQ(BytesOf(generator), "17829889 6 1 2 4 4294967295 0 ");
  generator.UnReserveID(3);
  EXPECT_EQ(BytesOf(generator), "17829889 6 1 4294967295 0 ");
}

TEST(EUniqueIDGenerator, ReleasingZeroOrAFreeIdentifierDoesNothing) {
  EUniqueIDGenerator generator = Loaded("17829889 7 2 3 9 4294967295 0 ");
  const std::string before = BytesOf(generator);
  generator.UnReserveID(0);
  generator.UnReserveID(2);
  generator.UnReserveID(3);
  generator.UnReserveID(100);
  generator.UnReserveID(kMax);
  EXPECT_EQ(BytesOf(generator), before);
}

TEST(EUniqueIDGenerator, ReleaseAboveTheHighestRangeIsNotReturned) {
  EUniqueIDGenerator generator = Loaded("17829889 0 2 5 0 ");
  generator.UnReserveID(6);  // just above: the range grows
  generator.UnReserveID(8);  // more than one above: lost
  EXPECT_EQ(BytesOf(generator), "17829889 0 2 6 0 ");
}

TEST(EUniqueIDGenerator, ExhaustionReturnsZeroAndReleasesAreDeliberatelyLost) {
  EUniqueIDGenerator generator = Loaded("17829889 0 5 5 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 5u);
  EXPECT_EQ(BytesOf(generator), "17829889 5 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 0u);
  EXPECT_EQ(generator.GetNextID(), 1u);  // the last identifier is reset to 0
  EXPECT_FALSE(generator.ReserveID(5));
  generator.UnReserveID(5);
  EXPECT_EQ(BytesOf(generator), "17829889 0 0 ");
  EXPECT_EQ(generator.ReserveNewID(), 0u);
}

TEST(EUniqueIDGenerator, EmptyCopySwap) {
  EUniqueIDGenerator a = Loaded("17829889 8 2 3 9 4294967295 0 ");
  EUniqueIDGenerator b;
  b.Copy(a);
  EXPECT_EQ(BytesOf(b), BytesOf(a));
  b.Copy(b);
  EXPECT_EQ(BytesOf(b), BytesOf(a));
  const EUniqueIDGenerator c(a);
  EXPECT_EQ(BytesOf(c), BytesOf(a));
  EUniqueIDGenerator d;
  d = c;
  EXPECT_EQ(BytesOf(d), BytesOf(a));
  a.Empty();
  EXPECT_EQ(BytesOf(a), "17829889 0 1 4294967295 0 ");
  EXPECT_EQ(BytesOf(b), "17829889 8 2 3 9 4294967295 0 ");  // the copies are independent
  a.Swap(b);
  EXPECT_EQ(BytesOf(a), "17829889 8 2 3 9 4294967295 0 ");
  EXPECT_EQ(BytesOf(b), "17829889 0 1 4294967295 0 ");
}

TEST(EUniqueIDGenerator, ArchiveRoundTripIntoAPrefilledGenerator) {
  const std::string bytes = "17829889 8 2 3 9 4294967295 0 ";
  EUniqueIDGenerator generator = Loaded("17829889 1 5 6 0 ");
  ReadFrom(bytes, generator);
  EXPECT_EQ(BytesOf(generator), bytes);
  EXPECT_EQ(generator.ReserveNewID(), 9u);
}

TEST(EUniqueIDGenerator, ArchiveWithOnlyTheTerminatorGetsTheDefaultRange) {
  const EUniqueIDGenerator generator = Loaded("17829889 12 0 ");
  EXPECT_EQ(BytesOf(generator), "17829889 12 1 4294967295 0 ");
}

TEST(EUniqueIDGenerator, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        EUniqueIDGenerator generator;
        ReadFrom("17829890 0 1 4294967295 0 ", generator);
      },
      "x86_64/common/ehal/eUniqueIDGenerator", 101, "EUniqueIDGenerator::SerializeIn");
}

TEST(EUniqueIDGenerator, ArchiveOperatorsWriteAndReadTheRecord) {
  EUniqueIDGenerator generator;
  generator.ReserveID(3);
  EArchive archive = StoringArchive();
  archive << generator;
  EXPECT_EQ(TextOf(archive), "17829889 3 1 2 4 4294967295 0 ");
  EArchive loading = LoadingArchive(TextOf(archive));
  EUniqueIDGenerator back;
  loading >> back;
  EXPECT_EQ(BytesOf(back), TextOf(archive));
}

// Streams that no generator writes: the ranges kept stay disjoint and ascending, and reading
// ends where the data does.
TEST(EUniqueIDGenerator, ReadingDamagedRangeLists) {
  struct Case {
    const char* bytes;
    const char* read;
  };
  const Case cases[] = {
      {"17829889 3 10 20 5 6 30 40 0 ", "17829889 3 10 20 30 40 0 "},     // out of order
      {"17829889 0 10 20 15 25 0 ", "17829889 0 10 20 0 "},               // overlapping
      {"17829889 0 10 20 20 25 0 ", "17829889 0 10 20 0 "},               // sharing an identifier
      {"17829889 0 9 3 0 ", "17829889 0 1 4294967295 0 "},                // first above last
      {"17829889 0 2 3 4 5 7 8 0 ", "17829889 0 2 5 7 8 0 "},             // adjacent: joined
      {"17829889 4 2 3 9 4294967295", "17829889 4 2 3 9 4294967295 0 "},  // no terminator
      {"17829889 0 5 ", "17829889 0 1 4294967295 0 "},                    // ends inside a range
      {"17829889 7 ", "17829889 7 1 4294967295 0 "},                      // ends before the ranges
      {"17829889 ", "17829889 0 1 4294967295 0 "},      // ends before the last identifier
      {"17829889 0 3 4 -1 4 0 ", "17829889 0 3 4 0 "},  // "-1" is a large first
  };
  for (const Case& c : cases) {
    EXPECT_EQ(BytesOf(Loaded(c.bytes)), c.read) << c.bytes;
  }
}

TEST(EUniqueIDGenerator, ReadingAStreamThatNeverEndsTheListStopsAtTheEndOfTheData) {
  // Read literally, this stream would be read again and again from its start.
  std::string bytes = "17829889 0 ";
  for (unsigned int first = 1; first < 2000; first += 4)
    bytes += std::to_string(first) + " " + std::to_string(first + 1) + " ";
  bytes += "9000 ";
  const EUniqueIDGenerator generator = Loaded(bytes);
  const std::string read = BytesOf(generator);
  EXPECT_EQ(read.substr(0, 17), "17829889 0 1 2 5 ");
  EXPECT_EQ(read.substr(read.size() - 12), "1997 1998 0 ");
}

// --- The map-based generator against the literal list walk -----------------------------------

// Small spaces cut into pieces near both ends of the identifier space, as archive bytes.
const char* const kFragmentedStates[] = {
    "17829889 4294967290 3 4 7 7 10 15 4294967288 4294967293 0 ",
    "17829889 0 1 2 4294967295 4294967295 0 ",
    "17829889 4294967295 2 3 5 5 9 9 0 ",
    "17829889 12 5 5 0 ",
    "17829889 4294967200 4294967190 4294967195 4294967199 4294967295 0 ",
    "17829889 0 1 4294967295 0 ",
};

class Differential {
 public:
  explicit Differential(unsigned int seed) : m_Random(seed) {}

  void Run(int steps) {
    Load(kFragmentedStates[m_Random() % std::size(kFragmentedStates)]);
    for (int step = 0; step < steps && !::testing::Test::HasFailure(); ++step)
      Step(step);
  }

 private:
  void Step(int step) {
    const unsigned int choice = m_Random() % 100;
    std::string what;
    if (choice < 35) {
      what = "ReserveNewID";
      EXPECT_EQ(m_Fast.ReserveNewID(), m_Literal.ReserveNewID());
    } else if (choice < 55) {
      const unsigned int id = PickId();
      what = "ReserveID " + std::to_string(id);
      EXPECT_EQ(m_Fast.ReserveID(id), m_Literal.ReserveID(id));
    } else if (choice < 85) {
      const unsigned int id = PickId();
      what = "UnReserveID " + std::to_string(id);
      m_Fast.UnReserveID(id);
      m_Literal.UnReserveID(id);
    } else if (choice < 90) {
      what = "Copy";
      EUniqueIDGenerator copy = Loaded(kFragmentedStates[0]);
      copy.Copy(m_Fast);
      const EUniqueIDGenerator constructed(copy);
      m_Fast = constructed;
    } else if (choice < 96) {
      what = "round trip";
      EUniqueIDGenerator read = Loaded(kFragmentedStates[1]);
      const std::string bytes = BytesOf(m_Fast);
      ReadFrom(bytes, read);
      m_Fast.Swap(read);
      m_Literal = LiteralRead(bytes);
    } else if (choice < 98) {
      what = "Empty";
      m_Fast.Empty();
      m_Literal.Empty();
    } else {
      what = "load";
      Load(kFragmentedStates[m_Random() % std::size(kFragmentedStates)]);
    }
    EXPECT_EQ(BytesOf(m_Fast), LiteralBytes(m_Literal)) << "step " << step << ": " << what;
    EXPECT_EQ(m_Fast.GetNextID(), m_Literal.GetNextID()) << "step " << step << ": " << what;
  }

  void Load(const std::string& bytes) {
    ReadFrom(bytes, m_Fast);
    m_Literal = LiteralRead(bytes);
  }

  // Identifiers where the ranges are: near the bottom and the top of the space, next to the
  // counter, anywhere, and 0.
  unsigned int PickId() {
    const unsigned int near = m_Random() % 24;
    switch (m_Random() % 6) {
      case 0:
        return near;
      case 1:
        return kMax - near;
      case 2:
        return kMax - 100 - near;
      case 3:
        return m_Fast.GetNextID() + near - 12;
      case 4:
        return static_cast<unsigned int>(m_Random());
      default:
        return m_Random() % 3 == 0 ? 0 : near % 16;
    }
  }

  std::mt19937 m_Random;
  EUniqueIDGenerator m_Fast;
  ListGenerator m_Literal;
};

TEST(EUniqueIDGenerator, MatchesTheListWalkOnRandomSequences) {
  for (unsigned int seed = 1; seed <= 200; ++seed) {
    Differential(seed).Run(800);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

TEST(EUniqueIDGenerator, MatchesTheListWalkUntilASmallSpaceIsExhausted) {
  EUniqueIDGenerator fast = Loaded(kFragmentedStates[0]);
  ListGenerator literal = LiteralRead(kFragmentedStates[0]);
  std::string handedOut;
  for (int i = 0; i < 16; ++i) {
    const unsigned int id = fast.ReserveNewID();
    ASSERT_EQ(id, literal.ReserveNewID());
    ASSERT_EQ(BytesOf(fast), LiteralBytes(literal));
    handedOut += std::to_string(id) + " ";
  }
  EXPECT_EQ(handedOut,
            "4294967291 4294967292 4294967293 3 4 7 10 11 12 13 14 15 4294967288 4294967289 "
            "4294967290 0 ");
  fast.UnReserveID(7);
  literal.UnReserveID(7);
  EXPECT_EQ(BytesOf(fast), "17829889 0 0 ");
  EXPECT_EQ(LiteralBytes(literal), "17829889 0 0 ");
}

}  // namespace
