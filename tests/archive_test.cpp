#include "eArchive.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include "archive_text.h"
#include "child_process.h"

namespace {

TEST(EArchive, FreshArchiveIsEmptyAndNeitherStoringNorLoading) {
  const EArchive archive;
  EXPECT_EQ(archive.GetMode(), eModeNone);
  EXPECT_FALSE(archive.IsStoring());
  EXPECT_FALSE(archive.IsLoading());
  EXPECT_EQ(archive.GetReadPosition(), 0u);
  EXPECT_EQ(archive.GetWritePosition(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetSize(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetData(), nullptr);
}

TEST(EArchive, SerializeErrorReportIsTheTextPrinted) {
  EXPECT_EQ(EArchive::SerializeErrorReport("common/ehal/eX", 12, "EX::SerializeIn"),
            "*** Exception in FILE common/ehal/eX, LINE 12:\n"
            "EX::SerializeIn - EArchive::SerializeError()\n");
  const ChildResult result = RunInChild([] { EArchive::SerializeError("f", 3, "g"); });
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output, "*** Exception in FILE f, LINE 3:\ng - EArchive::SerializeError()\n");
}

TEST(EArchive, ModeIsStoredUnchecked) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  EXPECT_TRUE(archive.IsStoring());
  archive.SetMode(eModeLoading);
  EXPECT_TRUE(archive.IsLoading());
  archive.SetMode(7);
  EXPECT_EQ(archive.GetMode(), 7);
  EXPECT_FALSE(archive.IsStoring());
  EXPECT_FALSE(archive.IsLoading());
}

TEST(EArchive, WorkedExampleWritesThirtyTwoBytesAndReadsBack) {
  EArchive archive = StoringArchive();
  const unsigned char blobBytes[] = {0x01, 0x02};
  archive << 7u << -2 << std::string("ab") << true << 5000000000UL;
  archive.WriteBlob(EBlob(blobBytes, 2));
  archive << static_cast<unsigned short>(65535);

  const std::string expected = std::string("7 -2 2 ab1 5000000000 2 ") + '\x01' + '\x02' + "65535 ";
  ASSERT_EQ(expected.size(), 32u);
  EXPECT_EQ(TextOf(archive), expected);
  EXPECT_EQ(archive.GetWritePosition(), 32u);

  unsigned int u = 0;
  int i = 0;
  std::string s;
  bool b = false;
  unsigned long l = 0;
  EBlob blob;
  unsigned short us = 0;
  archive >> u >> i >> s >> b >> l;
  archive.ReadBlob(blob);
  archive >> us;
  EXPECT_EQ(u, 7u);
  EXPECT_EQ(i, -2);
  EXPECT_EQ(s, "ab");
  EXPECT_TRUE(b);
  EXPECT_EQ(l, 5000000000UL);
  EXPECT_EQ(blob, EBlob(blobBytes, 2));
  EXPECT_EQ(us, 65535);
  EXPECT_EQ(archive.GetReadPosition(), 32u);
}

TEST(EArchive, NumberWritersMatchPrintfForms) {
  EArchive archive = StoringArchive();
  archive << 0u << UINT_MAX << INT_MIN << INT_MAX << 0 << -1;
  archive << static_cast<short>(-5) << static_cast<signed char>(-128);
  archive << static_cast<unsigned char>(255) << false << 0UL << ULONG_MAX;
  EXPECT_EQ(TextOf(archive),
            "0 4294967295 -2147483648 2147483647 0 -1 -5 -128 255 0 0 18446744073709551615 ");
}

TEST(EArchive, NumberWritersAgreeWithPrintfOnManyValues) {
  std::mt19937_64 generator(7);
  for (int n = 0; n < 20000; ++n) {
    const unsigned long wide = generator() >> (generator() % 64);
    const auto narrow = static_cast<unsigned int>(wide);
    const auto signedValue = static_cast<int>(narrow);
    char expected[80];
    std::snprintf(expected, sizeof expected, "%u %d %lu ", narrow, signedValue, wide);
    EArchive archive = StoringArchive();
    archive.WriteUnsignedInt(narrow).WriteSignedInt(signedValue).WriteUnsigned64Int(wide);
    ASSERT_EQ(TextOf(archive), expected);
  }
}

TEST(EArchive, StringIsWrittenWithSixtyFourBitLengthAndRawBytes) {
  EArchive archive = StoringArchive();
  archive << std::string("hello") << std::string();
  EXPECT_EQ(TextOf(archive), "5 hello0 ");
}

TEST(EArchive, RawStringOutEndsWithLineFeed) {
  EArchive archive = StoringArchive();
  archive.SerializeRawStringOut("abc");
  EXPECT_EQ(TextOf(archive), "abc\n");
}

TEST(EArchive, TolerantUnsignedReader) {
  EXPECT_EQ(LoadingArchive("abc12x").ReadUnsignedInt(), 12u);
  EXPECT_EQ(LoadingArchive("1-2 ").ReadUnsignedInt(), 72u);
  EXPECT_EQ(LoadingArchive("-1 ").ReadUnsignedInt(), 4294967267u);
  EXPECT_EQ(LoadingArchive("4294967296 ").ReadUnsignedInt(), 0u);
  EXPECT_EQ(LoadingArchive("-1 ").ReadSignedInt(), -1);
  EXPECT_EQ(LoadingArchive("- ").ReadSignedInt(), 0);
  EXPECT_EQ(LoadingArchive("-2147483648 ").ReadSignedInt(), INT_MIN);
  EXPECT_EQ(LoadingArchive("18446744073709551615 ").ReadUnsigned64Int(), ULONG_MAX);
  EXPECT_EQ(LoadingArchive("").ReadSignedInt(), 0);
}

TEST(EArchive, MinusInsideSignedTokenCountsAsDigitMinusThree) {
  // "-1-2": the first '-' is the sign, "1-2" accumulates to 72.
  EXPECT_EQ(LoadingArchive("-1-2 ").ReadSignedInt(), -72);
}

TEST(EArchive, ReadingPastTheEndYieldsZeroAndWrapsToTheStart) {
  EArchive archive = LoadingArchive("5 ");  // "5 " plus the terminating zero: size 3
  EXPECT_EQ(archive.ReadUnsignedInt(), 5u);
  EXPECT_EQ(archive.GetReadPosition(), 2u);
  EXPECT_EQ(archive.ReadUnsignedInt(), 0u);
  EXPECT_EQ(archive.GetReadPosition(), 4u);  // one beyond the size
  EXPECT_EQ(archive.ReadUnsignedInt(), 5u);  // starts over at position 0
}

TEST(EArchive, EmptyArchiveReadsZeroAndMovesOneBeyond) {
  EArchive archive;
  EXPECT_EQ(archive.ReadUnsignedInt(), 0u);
  EXPECT_EQ(archive.GetReadPosition(), 1u);
  std::string text = "x";
  archive >> text;
  EXPECT_EQ(text, "");
}

TEST(EArchive, TokenIsCutAtTwentyNineCharacters) {
  const std::string digits = "12345678901234567890123456789012345";  // 35 digits
  EArchive archive = LoadingArchive(digits + " ");
  char text[EArchive::kNumberTextCapacity];
  EXPECT_EQ(archive.BufferNumberText(text, sizeof text), 29u);
  EXPECT_EQ(std::string(text), digits.substr(0, 29));
  EXPECT_EQ(archive.GetReadPosition(), 30u);     // the 30th digit is skipped
  EXPECT_EQ(archive.ReadUnsignedInt(), 12345u);  // digits 31 to 35
}

TEST(EArchive, NumberReadersAccumulateOnlyTheCutToken) {
  const std::string digits = "12345678901234567890123456789012345";
  EArchive archive = LoadingArchive(digits + " ");
  unsigned int expected = 0;
  for (int i = 0; i < 29; ++i)
    expected = expected * 10 + static_cast<unsigned int>(digits[i] - '0');
  EXPECT_EQ(archive.ReadUnsignedInt(), expected);
  EXPECT_EQ(archive.GetReadPosition(), 30u);
}

TEST(EArchive, BufferNumberTextWithTinyCapacities) {
  EArchive archive = LoadingArchive("  123 ");
  char text[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(archive.BufferNumberText(text, 1), 0u);
  EXPECT_EQ(text[0], '\0');
  EXPECT_EQ(archive.GetReadPosition(), 3u);  // stopped at the token, then stepped past it
  EXPECT_EQ(archive.BufferNumberText(text, 3), 2u);
  EXPECT_STREQ(text, "23");
}

TEST(EArchive, NarrowReadersTruncate) {
  EArchive archive = LoadingArchive("256 65537 -129 70000 7 ");
  unsigned char uc = 1;
  unsigned short us = 0;
  signed char sc = 0;
  short s = 0;
  bool b = false;
  archive >> uc >> us >> sc >> s >> b;
  EXPECT_EQ(uc, 0);
  EXPECT_EQ(us, 1);
  EXPECT_EQ(sc, 127);
  EXPECT_EQ(s, 4464);
  EXPECT_TRUE(b);
}

TEST(EArchive, BoolRoundTrip) {
  EArchive archive = StoringArchive();
  archive << true << false;
  EXPECT_EQ(TextOf(archive), "1 0 ");
  bool a = false;
  bool b = true;
  archive >> a >> b;
  EXPECT_TRUE(a);
  EXPECT_FALSE(b);
  EXPECT_TRUE(LoadingArchive("4096 ").ReadUnsignedInt() != 0);
}

TEST(EArchive, StringLengthIsClampedToWhatRemains) {
  EArchive archive;
  archive.SetFromEBlob(EBlob("10 abcd", 7), false);
  std::string text;
  archive >> text;
  EXPECT_EQ(text, "abcd");
  EXPECT_EQ(archive.GetReadPosition(), 7u);
}

TEST(EArchive, BlobLengthIsClampedToWhatRemains) {
  EArchive archive;
  archive.SetFromEBlob(EBlob("9 xyz", 5), false);
  EBlob blob;
  archive.ReadBlob(blob);
  EXPECT_EQ(blob, EBlob("xyz", 3));
  EXPECT_EQ(archive.GetReadPosition(), 5u);
}

TEST(EArchive, SetFromEBlobTerminates) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob("abc", 3), true);
  const EBlob& buffer = archive.GetAsEBlob();
  EXPECT_EQ(buffer.GetSize(), 4u);
  EXPECT_EQ(buffer.GetData()[3], 0);
  EXPECT_EQ(archive.GetReadPosition(), 0u);
  EXPECT_EQ(archive.GetWritePosition(), 3u);
  EXPECT_TRUE(archive.IsLoading());
  // A later write overwrites the terminating zero.
  archive << 1u;
  EXPECT_EQ(TextOf(archive), "abc1 ");
}

TEST(EArchive, SetFromEBlobWithoutTerminator) {
  EArchive archive;
  archive.SetFromEBlob(EBlob("abc", 3), false);
  EXPECT_EQ(archive.GetAsEBlob().GetSize(), 3u);
  EXPECT_EQ(archive.GetWritePosition(), 3u);
  EXPECT_EQ(archive.GetMode(), eModeNone);
}

TEST(EArchive, SetFromEBlobOfItsOwnBuffer) {
  EArchive archive = StoringArchive();
  archive << 12u;
  archive.SetFromEBlob(archive.GetAsEBlob(), true);
  EXPECT_EQ(TextOf(archive), std::string("12 ") + '\0');
  EXPECT_EQ(archive.ReadUnsignedInt(), 12u);
}

TEST(EArchive, TwoRawStringReadsStayOnTheLineFeed) {
  EArchive archive;
  archive.SetFromEBlob(EBlob("abc\ndef", 7), false);
  std::string first;
  std::string second = "x";
  archive.SerializeRawStringIn(first).SerializeRawStringIn(second);
  EXPECT_EQ(first, "abc");
  EXPECT_EQ(second, "");
  EXPECT_EQ(archive.GetReadPosition(), 3u);
  // A number read skips the line feed.
  archive.SetFromEBlob(EBlob("ab\n12 ", 6), false);
  archive.SerializeRawStringIn(first);
  EXPECT_EQ(archive.ReadUnsignedInt(), 12u);
}

TEST(EArchive, RawStringInWithoutLineFeedTakesTheRest) {
  EArchive archive;
  archive.SetFromEBlob(EBlob("tail", 4), false);
  std::string text;
  archive.SerializeRawStringIn(text);
  EXPECT_EQ(text, "tail");
  EXPECT_EQ(archive.GetReadPosition(), 4u);
}

TEST(EArchive, AppendGrowsByDoubling) {
  EArchive archive;
  const unsigned char byte = 'x';
  archive.Append(1, &byte);
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 1u);
  archive.Append(1, &byte);
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 2u);
  archive.Append(1, &byte);
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 4u);
  const unsigned char many[10] = {};
  archive.Append(10, many);  // 13 bytes: 4 -> 8 -> 16
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 16u);
  EXPECT_EQ(archive.GetAsEBlob().GetSize(), 13u);
}

TEST(EArchive, GrowthKeepsEveryByteAcrossManyDoublings) {
  EArchive archive = StoringArchive();
  std::string expected;
  for (unsigned int n = 0; n < 100000; ++n) {
    archive << n * 40503u;
    expected += std::to_string(n * 40503u) + ' ';
  }
  EXPECT_EQ(TextOf(archive), expected);
  const unsigned int capacity = archive.GetAsEBlob().GetCapacity();
  EXPECT_EQ(capacity & (capacity - 1), 0u);  // doubled from 1
  EXPECT_GE(capacity, expected.size());
  EXPECT_LT(capacity / 2, expected.size());
}

TEST(EArchive, WritePositionBeyondTheSizeRestartsAtZero) {
  EArchive archive = StoringArchive();
  archive << 123u;
  archive.Empty();  // size 0, allocation kept
  archive << 4u;
  EXPECT_EQ(TextOf(archive), "4 ");
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 4u);
}

TEST(EArchive, EmptyResetsModePositionsAndSize) {
  EArchive archive = StoringArchive();
  archive << 1u << 2u;
  archive.ReadUnsignedInt();
  archive.Empty();
  EXPECT_EQ(archive.GetMode(), eModeNone);
  EXPECT_EQ(archive.GetReadPosition(), 0u);
  EXPECT_EQ(archive.GetWritePosition(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetSize(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 4u);
}

TEST(EArchive, CopyTakesModeBytesAndPositions) {
  EArchive archive = StoringArchive();
  archive << 1u << 2u;
  archive.ReadUnsignedInt();
  EArchive copy(archive);
  EXPECT_EQ(copy.GetMode(), eModeStoring);
  EXPECT_EQ(TextOf(copy), "1 2 ");
  EXPECT_EQ(copy.GetReadPosition(), 2u);
  EXPECT_EQ(copy.GetWritePosition(), 4u);
  EArchive assigned;
  assigned = archive;
  EXPECT_EQ(TextOf(assigned), "1 2 ");
  assigned = assigned;
  EXPECT_EQ(TextOf(assigned), "1 2 ");
  EXPECT_EQ(assigned.ReadUnsignedInt(), 2u);
}

TEST(EArchive, GetAsEBlobCopiesValidBytes) {
  EArchive archive = StoringArchive();
  archive << 99u;
  EBlob blob;
  archive.GetAsEBlob(blob);
  EXPECT_EQ(blob, EBlob("99 ", 3));
}

TEST(EArchive, ReadersAndWritersMixOnOneArchive) {
  EArchive archive;
  archive << 1u;
  EXPECT_EQ(archive.ReadUnsignedInt(), 1u);
  archive << 2u;
  EXPECT_EQ(archive.ReadUnsignedInt(), 2u);
}

// Random sequences of mixed values written and read back identically.
using Value = std::variant<unsigned int, int, unsigned long, std::string, bool, unsigned short,
                           short, unsigned char, signed char, EBlob>;

Value RandomValue(std::mt19937_64& generator) {
  const auto bits = generator();
  switch (generator() % 10) {
    case 0:
      return static_cast<unsigned int>(bits);
    case 1:
      return static_cast<int>(bits);
    case 2:
      return static_cast<unsigned long>(bits >> (bits % 64));
    case 3: {
      std::string text(generator() % 40, '\0');
      for (char& c : text)
        c = static_cast<char>(generator());
      return text;
    }
    case 4:
      return (bits & 1) != 0;
    case 5:
      return static_cast<unsigned short>(bits);
    case 6:
      return static_cast<short>(bits);
    case 7:
      return static_cast<unsigned char>(bits);
    case 8:
      return static_cast<signed char>(bits);
    default: {
      std::vector<unsigned char> bytes(generator() % 40);
      for (unsigned char& c : bytes)
        c = static_cast<unsigned char>(generator());
      return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
    }
  }
}

TEST(EArchive, RandomMixedSequencesRoundTrip) {
  std::mt19937_64 generator(2026);
  for (int round = 0; round < 300; ++round) {
    std::vector<Value> values(generator() % 60);
    for (Value& value : values)
      value = RandomValue(generator);
    EArchive out = StoringArchive();
    for (const Value& value : values) {
      std::visit([&out](const auto& v) { out << v; }, value);
    }
    EArchive in;
    in.SetMode(eModeLoading);
    in.SetFromEBlob(out.GetAsEBlob(), true);
    for (const Value& value : values) {
      Value back = value;
      std::visit(
          [&in](auto& v) {
            v = {};
            in >> v;
          },
          back);
      ASSERT_TRUE(back == value) << "round " << round;
    }
    EXPECT_EQ(in.GetReadPosition(), out.GetWritePosition());
  }
}

TEST(EArchive, ArbitraryBytesNeverReadOutOfBounds) {
  std::mt19937_64 generator(99);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes(generator() % 64, '\0');
    for (char& c : bytes)
      c = "0123456789- \n\xff"[generator() % 14];
    EArchive archive;
    archive.SetFromEBlob(EBlob(bytes.data(), static_cast<unsigned int>(bytes.size())),
                         generator() % 2 == 0);
    archive.SetWrapLimit(0);  // any number of wraps: the position stays in bounds through each
    std::string text;
    EBlob blob;
    for (int step = 0; step < 20; ++step) {
      switch (generator() % 5) {
        case 0:
          archive.ReadUnsignedInt();
          break;
        case 1:
          archive.ReadSignedInt();
          break;
        case 2:
          archive >> text;
          break;
        case 3:
          archive.ReadBlob(blob);
          break;
        default:
          archive.SerializeRawStringIn(text);
          break;
      }
      ASSERT_LE(archive.GetReadPosition(), archive.GetAsEBlob().GetSize() + 1);
    }
  }
}

}  // namespace

namespace {

// Every number reader gives what the tokeniser's text accumulates to, and leaves the read
// position where the tokeniser leaves it, whatever the bytes.
unsigned int Accumulate(const char* text, unsigned int length) {
  unsigned int value = 0;
  for (unsigned int i = 0; i < length; ++i)
    value = value * 10 + static_cast<unsigned int>(text[i] - '0');
  return value;
}

TEST(EArchive, NumberReadersAgreeWithTheTokeniserText) {
  std::mt19937_64 generator(4242);
  for (int round = 0; round < 3000; ++round) {
    std::string bytes(generator() % 48, '\0');
    for (char& c : bytes)
      c = "0123456789012345678-- x\n"[generator() % 24];
    if (generator() % 4 == 0) bytes.append(std::string(generator() % 40, '7'));
    EArchive byText = LoadingArchive(bytes);
    EArchive byNumber = LoadingArchive(bytes);
    EArchive bySigned = LoadingArchive(bytes);
    for (EArchive* archive : {&byText, &byNumber, &bySigned})
      archive->SetWrapLimit(0);  // the short inputs wrap often in twelve reads
    for (int step = 0; step < 12; ++step) {
      char text[EArchive::kNumberTextCapacity];
      const unsigned int length = byText.BufferNumberText(text, sizeof text);
      const unsigned int expected = Accumulate(text, length);
      const bool negative = length > 0 && text[0] == '-';
      unsigned int magnitude = 0;
      for (unsigned int i = negative ? 1 : 0; i < length; ++i) {
        magnitude = magnitude * 10 + static_cast<unsigned int>(text[i] - '0');
      }
      ASSERT_EQ(byNumber.ReadUnsignedInt(), expected) << bytes;
      ASSERT_EQ(bySigned.ReadSignedInt(), static_cast<int>(negative ? 0u - magnitude : magnitude));
      ASSERT_EQ(byNumber.GetReadPosition(), byText.GetReadPosition()) << bytes;
      ASSERT_EQ(bySigned.GetReadPosition(), byText.GetReadPosition()) << bytes;
    }
  }
}

}  // namespace

namespace {

TEST(EArchive, DigitsBeyondTheSizeAreNotPartOfTheToken) {
  EArchive archive = StoringArchive();
  archive.SerializeRawStringOut("12345678901234567890123456789");
  archive.SetFromEBlob(EBlob("42", 2), false);  // the old digits stay in the allocation
  ASSERT_GE(archive.GetAsEBlob().GetCapacity(), 30u);
  EXPECT_EQ(archive.ReadUnsignedInt(), 42u);
  EXPECT_EQ(archive.GetReadPosition(), 3u);
}

// Tokens of every length from 1 to 17 digits, ended by a blank, a '-', a letter, a line feed or
// a zero byte, deep inside a buffer and within its last sixteen bytes.
TEST(EArchive, EveryTokenLengthAndDelimiterReadsAsTheTokeniserText) {
  const std::string digits = "98765432109876543";
  for (std::size_t length = 1; length <= digits.size(); ++length) {
    for (const char delimiter : std::string("- x\n", 4) + '\0') {
      for (const std::size_t tail : {0, 3, 40}) {
        const std::string bytes =
            digits.substr(0, length) + delimiter + "5 " + std::string(tail, ' ');
        EArchive byText = LoadingArchive(bytes);
        EArchive byNumber = LoadingArchive(bytes);
        for (int step = 0; step < 3; ++step) {
          char text[EArchive::kNumberTextCapacity];
          const unsigned int count = byText.BufferNumberText(text, sizeof text);
          ASSERT_EQ(byNumber.ReadUnsignedInt(), Accumulate(text, count)) << bytes;
          ASSERT_EQ(byNumber.GetReadPosition(), byText.GetReadPosition()) << bytes;
        }
      }
    }
  }
}

// Every digit count of 32- and 64-bit numbers, at both ends, as printf writes them.
TEST(EArchive, NumberWritersMatchPrintfAtEveryDigitCount) {
  std::vector<unsigned long> values = {0, UINT_MAX, ULONG_MAX};
  for (unsigned long power = 10;; power *= 10) {
    values.insert(values.end(), {power - 1, power, power + 1});
    if (power > ULONG_MAX / 10) break;
  }
  for (const unsigned long wide : values) {
    const auto narrow = static_cast<unsigned int>(wide);
    const auto signedValue = static_cast<int>(narrow);
    const auto negated = static_cast<int>(0u - narrow);
    char expected[80];
    std::snprintf(expected, sizeof expected, "%u %d %d %lu ", narrow, signedValue, negated, wide);
    EArchive archive = StoringArchive();
    archive << narrow << signedValue << negated << wide;
    EXPECT_EQ(TextOf(archive), expected);
  }
}

// A number that fits the allocation exactly is written without growing it, near its end too.
TEST(EArchive, NumberAtTheEndOfTheAllocationDoesNotGrowIt) {
  EArchive archive = StoringArchive();
  archive << 12u;  // "12 ": capacity 1 -> 4
  ASSERT_EQ(archive.GetAsEBlob().GetCapacity(), 4u);
  archive.Empty();
  archive << 123u;
  EXPECT_EQ(TextOf(archive), "123 ");
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 4u);
  archive << 4294967295u;  // 15 bytes: 4 -> 8 -> 16
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 16u);
  archive << 0u;  // 17 bytes: 16 -> 32
  EXPECT_EQ(TextOf(archive), "123 4294967295 0 ");
  EXPECT_EQ(archive.GetAsEBlob().GetCapacity(), 32u);
}

TEST(EArchive, LongAndSignedTokensInsideALargeBuffer) {
  const std::string padding(40, ' ');
  EArchive archive = LoadingArchive("123456789012345 1234567890123456 99-1 4294967295 7" + padding);
  EXPECT_EQ(archive.ReadUnsignedInt(), static_cast<unsigned int>(123456789012345ULL));
  EXPECT_EQ(archive.ReadUnsignedInt(), static_cast<unsigned int>(1234567890123456ULL));
  EXPECT_EQ(archive.ReadUnsignedInt(), 9871u);  // "99-1": 99 * 100 - 3 * 10 + 1
  EXPECT_EQ(archive.ReadUnsignedInt(), 4294967295u);
  EXPECT_EQ(archive.ReadUnsignedInt(), 7u);
  EXPECT_EQ(archive.GetReadPosition(), 51u);
}

}  // namespace
