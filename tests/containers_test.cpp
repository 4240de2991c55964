#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eStringList.h"

namespace {

TEST(Containers, VectorOfUnsignedInt) {
  EArchive archive = StoringArchive();
  SerializeOut(archive, std::vector<unsigned int>{5, 6});
  EXPECT_EQ(TextOf(archive), "2 5 6 ");
  std::vector<unsigned int> back{9, 9, 9};
  EArchive in = LoadingArchive(TextOf(archive));
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{5, 6}));
}

TEST(Containers, EmptyVectorAndMap) {
  EArchive archive = StoringArchive();
  SerializeOut(archive, std::vector<unsigned int>{});
  SerializeOut(archive, std::map<unsigned int, std::string>{});
  EXPECT_EQ(TextOf(archive), "0 0 ");
  std::vector<unsigned int> vector{1};
  std::map<unsigned int, std::string> map{{1, "x"}};
  EArchive in = LoadingArchive(TextOf(archive));
  SerializeIn(in, vector);
  SerializeIn(in, map);
  EXPECT_TRUE(vector.empty());
  EXPECT_TRUE(map.empty());
}

TEST(Containers, MapInAscendingKeyOrder) {
  EArchive archive = StoringArchive();
  SerializeOut(archive, std::map<unsigned int, std::string>{{9, "nine"}, {2, "two"}});
  EXPECT_EQ(TextOf(archive), "2 2 3 two9 4 nine");
  std::map<unsigned int, std::string> back;
  EArchive in = LoadingArchive(TextOf(archive));
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::map<unsigned int, std::string>{{2, "two"}, {9, "nine"}}));
}

TEST(Containers, RepeatedMapKeyLastPairWins) {
  std::map<unsigned int, unsigned int> back;
  EArchive in = LoadingArchive("3 1 10 2 20 1 30 ");
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::map<unsigned int, unsigned int>{{1, 30}, {2, 20}}));
}

TEST(Containers, VectorOfRecords) {
  EStringList a;
  a.Add("a");
  EArchive archive = StoringArchive();
  SerializeOut(archive, std::vector<EStringList>{a, EStringList()});
  EXPECT_EQ(TextOf(archive), "2 286785536 1 1 a286785536 0 ");
  std::vector<EStringList> back;
  EArchive in = LoadingArchive(TextOf(archive));
  SerializeIn(in, back);
  ASSERT_EQ(back.size(), 2u);
  EXPECT_EQ(back[0].GetString(), "a");
  EXPECT_EQ(back[1].GetCount(), 0u);
}

TEST(Containers, CountBeyondTheDataReadsZeros) {
  std::vector<unsigned int> back;
  EArchive in = LoadingArchive("5 7 ");
  SerializeIn(in, back);
  // The item, then the read that found only the terminating zero byte: there the data ends.
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 0}));
  EXPECT_EQ(in.GetWrapCount(), 0u);
}

// A loading archive of exactly `bytes`, with no terminating zero byte after them.
EArchive UnterminatedArchive(const std::string& bytes) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(BlobOf(bytes), false);
  return archive;
}

TEST(Containers, AHugeVectorCountReadsTheItemsThereAndStopsAtTheEnd) {
  // The last item's read ends one past the 14 bytes: exactly the two items, no wrap.
  std::vector<unsigned int> back;
  EArchive exact = UnterminatedArchive("4000000000 7 8");
  SerializeIn(exact, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 8}));
  EXPECT_EQ(exact.GetReadPosition(), 15u);
  EXPECT_EQ(exact.GetWrapCount(), 0u);
  // With a blank and a terminating zero byte after them, one more read finds the end and yields
  // 0; the next read after the vector starts over at the count.
  EArchive terminated = LoadingArchive("4000000000 7 8 ");
  SerializeIn(terminated, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 8, 0}));
  EXPECT_EQ(terminated.GetReadPosition(), 17u);
  EXPECT_EQ(terminated.GetWrapCount(), 0u);
  EXPECT_EQ(terminated.ReadUnsignedInt(), 4000000000u);
  EXPECT_EQ(terminated.GetWrapCount(), 1u);
}

TEST(Containers, AVectorCountOneAboveTheItemsStopsAtTheEnd) {
  std::vector<unsigned int> back;
  EArchive exact = UnterminatedArchive("3 7 8");
  SerializeIn(exact, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 8}));
  EXPECT_EQ(exact.GetReadPosition(), 6u);
  EArchive terminated = LoadingArchive("3 7 8 ");
  SerializeIn(terminated, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 8, 0}));
  EXPECT_EQ(terminated.GetReadPosition(), 8u);
  EXPECT_EQ(terminated.GetWrapCount(), 0u);
}

TEST(Containers, AVectorCountEqualToTheItemsLeavesTheReaderOnTheEnd) {
  std::vector<unsigned int> back;
  EArchive in = LoadingArchive("2 7 8 ");
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{7, 8}));
  EXPECT_EQ(in.GetReadPosition(), 6u);  // on the terminating zero byte
}

TEST(Containers, AHugeMapCountReadsTheEntriesThereAndStopsAtTheEnd) {
  using Map = std::map<unsigned int, unsigned int>;
  Map back;
  EArchive exact = UnterminatedArchive("4000000000 1 10 2 20");
  SerializeIn(exact, back);
  EXPECT_EQ(back, (Map{{1, 10}, {2, 20}}));
  EXPECT_EQ(exact.GetReadPosition(), 21u);
  EXPECT_EQ(exact.GetWrapCount(), 0u);
  // With a terminating zero byte, the next key's read finds the end and yields 0; the value's
  // read starts over at the count. That entry is the last: it is kept as read.
  EArchive terminated = LoadingArchive("4000000000 1 10 2 20 ");
  SerializeIn(terminated, back);
  EXPECT_EQ(back, (Map{{0, 4000000000u}, {1, 10}, {2, 20}}));
  EXPECT_EQ(terminated.GetReadPosition(), 11u);
  EXPECT_EQ(terminated.GetWrapCount(), 1u);
}

TEST(Containers, AVectorStopsAfterTheItemWhoseReadsStartedOver) {
  // The third string's length finds the end, its bytes start over at position 0: it is the last.
  std::vector<std::string> back;
  EArchive in = LoadingArchive("4000000000 1 a1 b");
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::vector<std::string>{"a", "b", ""}));
  EXPECT_EQ(in.GetReadPosition(), 0u);
  EXPECT_EQ(in.GetWrapCount(), 1u);
}

TEST(Containers, AMapCountOneAboveTheEntriesStopsAtTheEnd) {
  using Map = std::map<unsigned int, unsigned int>;
  Map back;
  EArchive exact = UnterminatedArchive("3 1 10 2 20");
  SerializeIn(exact, back);
  EXPECT_EQ(back, (Map{{1, 10}, {2, 20}}));
  EXPECT_EQ(exact.GetReadPosition(), 12u);
  EXPECT_EQ(exact.GetWrapCount(), 0u);
}

TEST(Containers, VectorReaderAcceptsModeNone) {
  EArchive in;
  in.SetFromEBlob(EBlob("1 4 ", 4), false);
  std::vector<unsigned int> back;
  SerializeIn(in, back);
  EXPECT_EQ(back, (std::vector<unsigned int>{4}));
}

TEST(Containers, VectorWriterNeedsAStoringArchive) {
  for (const int mode : {eModeLoading, eModeNone}) {
    ExpectSerializeError(
        [mode] {
          EArchive archive;
          archive.SetMode(mode);
          SerializeOut(archive, std::vector<unsigned int>{1});
        },
        "common/include/eArchive", 157, "template<ItemType> SerializeOut(..,vector)");
  }
}

TEST(Containers, VectorReaderRefusesAStoringArchive) {
  ExpectSerializeError(
      [] {
        EArchive archive = StoringArchive();
        std::vector<unsigned int> items;
        SerializeIn(archive, items);
      },
      "common/include/eArchive", 172, "template<ItemType> SerializeIn(..,vector)");
}

TEST(Containers, VectorReaderClearsBeforeTheModeTest) {
  const ScopedThrowingSerializeErrors throwing;
  EArchive archive = StoringArchive();
  std::vector<unsigned int> items{1, 2};
  EXPECT_THROW(SerializeIn(archive, items), SerializeErrorThrown);
  EXPECT_TRUE(items.empty());
}

TEST(Containers, MapWriterNeedsAStoringArchive) {
  ExpectSerializeError(
      [] {
        EArchive archive;
        archive.SetMode(eModeLoading);
        SerializeOut(archive, std::map<unsigned int, unsigned int>{});
      },
      "common/include/eArchive", 270, "template<KeyType,ItemType> SerializeOut(..,map)");
}

TEST(Containers, MapReaderRefusesAStoringArchive) {
  ExpectSerializeError(
      [] {
        EArchive archive = StoringArchive();
        std::map<unsigned int, unsigned int> items;
        SerializeIn(archive, items);
      },
      "common/include/eArchive", 285, "template<KeyType,ItemType> SerializeIn(..,map)");
}

TEST(SerializeError, DefaultReportGoesToStandardOutputAndExitsWithOne) {
  const ChildResult result = RunInChild([] {
    std::printf("before ");
    EArchive::SerializeError("x86_64/common/ehal/eThing", 42, "eHal::EThing::SerializeIn");
  });
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "before *** Exception in FILE x86_64/common/ehal/eThing, LINE 42:\n"
            "eHal::EThing::SerializeIn - EArchive::SerializeError()\n");
}

void ReturningHandler(const char*, int, const char*) {}

TEST(SerializeError, AHandlerThatReturnsStillEndsTheProcess) {
  const ChildResult result = RunInChild([] {
    EArchive::SetSerializeErrorHandler(&ReturningHandler);
    EArchive::SerializeError("f", 1, "g");
  });
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, SerializeErrorReport("f", 1, "g"));
}

TEST(SerializeError, SetHandlerReturnsThePreviousOne) {
  const auto previous = EArchive::SetSerializeErrorHandler(&ReturningHandler);
  EXPECT_EQ(previous, nullptr);
  EXPECT_EQ(EArchive::SetSerializeErrorHandler(nullptr), &ReturningHandler);
}

}  // namespace
