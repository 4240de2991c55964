#include "eBlob.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "detail/eBlobSize.h"
#include "eArchive.h"

namespace {

EBlob Bytes(std::vector<unsigned char> bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

std::vector<unsigned char> Contents(const EBlob& blob) {
  if (blob.GetSize() == 0) return {};
  return std::vector<unsigned char>(blob.GetData(), blob.GetData() + blob.GetSize());
}

using V = std::vector<unsigned char>;

TEST(EBlob, DefaultHasNoAllocation) {
  const EBlob blob;
  EXPECT_EQ(blob.GetData(), nullptr);
  EXPECT_EQ(blob.GetSize(), 0u);
  EXPECT_EQ(blob.GetCapacity(), 0u);
}

TEST(EBlob, SetDataAllocatesExactly) {
  EBlob blob("abcd", 4);
  EXPECT_EQ(blob.GetSize(), 4u);
  EXPECT_EQ(blob.GetCapacity(), 4u);
  blob.SetData("xy", 2);  // reuses the allocation
  EXPECT_EQ(blob.GetCapacity(), 4u);
  EXPECT_EQ(Contents(blob), (V{'x', 'y'}));
  blob.SetData("123456", 6);
  EXPECT_EQ(blob.GetCapacity(), 6u);
}

TEST(EBlob, CopyAndAssignCopyValidBytesOnly) {
  EBlob blob;
  blob.SetSize(100, false);
  blob.SetData("ab", 2);
  const EBlob copy(blob);
  EXPECT_EQ(copy.GetCapacity(), 2u);
  EXPECT_EQ(copy, blob);
  EBlob assigned;
  assigned = blob;
  assigned = assigned;
  EXPECT_EQ(Contents(assigned), (V{'a', 'b'}));
}

TEST(EBlob, TwoPartSetData) {
  EBlob blob("12", 2, "345", 3);
  EXPECT_EQ(Contents(blob), (V{'1', '2', '3', '4', '5'}));
  // Without a first part the second goes to index 0 and the size is still the total.
  EBlob header(nullptr, 2, "ab", 2);
  EXPECT_EQ(header.GetSize(), 4u);
  EXPECT_EQ(header.GetData()[0], 'a');
  EXPECT_EQ(header.GetData()[1], 'b');
  EBlob untouched("zz", 2);
  untouched.SetData(nullptr, 3, nullptr, 4);
  EXPECT_EQ(Contents(untouched), (V{'z', 'z'}));
  untouched.SetData("q", 0, "r", 0);
  EXPECT_EQ(Contents(untouched), (V{'z', 'z'}));
}

TEST(EBlob, SetSizeReservesWithoutRaisingTheSize) {
  EBlob blob("abcdef", 6);
  blob.SetSize(10, true);
  EXPECT_EQ(blob.GetSize(), 6u);
  EXPECT_EQ(blob.GetCapacity(), 10u);
  EXPECT_EQ(Contents(blob), (V{'a', 'b', 'c', 'd', 'e', 'f'}));
  blob.SetSize(3, true);
  EXPECT_EQ(Contents(blob), (V{'a', 'b', 'c'}));
  EXPECT_EQ(blob.GetCapacity(), 10u);
  blob.SetSize(2, false);
  EXPECT_EQ(blob.GetSize(), 0u);
}

TEST(EBlob, EmptyKeepsALargeEnoughAllocation) {
  EBlob blob("abcd", 4);
  blob.Empty(2);
  EXPECT_EQ(blob.GetSize(), 0u);
  EXPECT_EQ(blob.GetCapacity(), 4u);
  blob.Empty(8);
  EXPECT_EQ(blob.GetCapacity(), 8u);
}

TEST(EBlob, NewBufAndFreeBuf) {
  EBlob blob("abcd", 4);
  blob.NewBuf(16);
  EXPECT_EQ(blob.GetCapacity(), 16u);
  EXPECT_EQ(blob.GetSize(), 4u);
  blob.FreeBuf();
  EXPECT_EQ(blob.GetData(), nullptr);
  EXPECT_EQ(blob.GetCapacity(), 16u);
  blob.SetData("xy", 2);  // a freed blob is reallocated before use
  EXPECT_EQ(Contents(blob), (V{'x', 'y'}));
}

TEST(EBlob, RoomIsTheCapacityOfAnAllocationOnly) {
  EBlob blob;
  blob.SetSize(8, false);
  EXPECT_EQ(blob.Room(), 8u);
  blob.FreeBuf();
  EXPECT_EQ(blob.GetCapacity(), 8u);
  EXPECT_EQ(blob.Room(), 0u);
}

// Only the archive can make the key of EBlob::Resize, in any of the ways a caller could try.
static_assert(!std::is_default_constructible_v<EBlob::ResizeKey>);
static_assert(!std::is_aggregate_v<EBlob::ResizeKey>);

TEST(EBlob, ReadingIntoABlobReplacesItsBytes) {
  EArchive archive = LoadingArchive("2 xy5 abcde");
  EBlob blob("0123456789", 10);
  archive.ReadBlob(blob);
  EXPECT_EQ(Contents(blob), (V{'x', 'y'}));
  EXPECT_EQ(blob.GetCapacity(), 10u);  // the allocation was large enough
  archive.ReadBlob(blob);
  EXPECT_EQ(Contents(blob), (V{'a', 'b', 'c', 'd', 'e'}));
  EBlob small("q", 1);
  EArchive again = LoadingArchive("3 xyz");
  again.ReadBlob(small);
  EXPECT_EQ(Contents(small), (V{'x', 'y', 'z'}));
  EXPECT_EQ(small.GetCapacity(), 3u);  // grown to exactly the length read
}

TEST(EBlobSize, ASumNear4GiBIsRefusedInsteadOfWrapping) {
  using eHal::detail::BlobSizeOfSum;
  // An archive's terminating zero byte after a blob of 0, 2^32 - 2 and 2^32 - 1 bytes.
  EXPECT_EQ(BlobSizeOfSum(0, 1), 1u);
  EXPECT_EQ(BlobSizeOfSum(0xFFFFFFFEu, 1), 0xFFFFFFFFu);
  EXPECT_THROW(BlobSizeOfSum(0xFFFFFFFFu, 1), std::bad_alloc);
  EXPECT_EQ(BlobSizeOfSum(0xFFFFFFFFu, 0), 0xFFFFFFFFu);
  EXPECT_THROW(BlobSizeOfSum(0xFFFFFFFFu, 0xFFFFFFFFu), std::bad_alloc);
  EXPECT_TRUE(eHal::detail::FitsInBlob(0xFFFFFFFEu, 1));
  EXPECT_FALSE(eHal::detail::FitsInBlob(0xFFFFFFFFu, 1));
  EXPECT_FALSE(eHal::detail::FitsInBlob(1, 0xFFFFFFFFu));
}

TEST(EBlobSize, AByteCountBeyondWhatABlobHoldsIsRefused) {
  using eHal::detail::BlobSize;
  EXPECT_EQ(BlobSize(0), 0u);
  EXPECT_EQ(BlobSize(0xFFFFFFFFu), 0xFFFFFFFFu);
  EXPECT_THROW(BlobSize(0x100000000u), std::bad_alloc);
}

TEST(EBlob, SwapAndTruncate) {
  EBlob a("ab", 2);
  EBlob b("xyz", 3);
  a.Swap(b);
  EXPECT_EQ(Contents(a), (V{'x', 'y', 'z'}));
  EXPECT_EQ(Contents(b), (V{'a', 'b'}));
  EXPECT_FALSE(a.TruncateToSize(4));
  EXPECT_TRUE(a.TruncateToSize(1));
  EXPECT_EQ(Contents(a), (V{'x'}));
}

TEST(EBlob, AppendGrowsExactly) {
  EBlob blob("ab", 2);
  EXPECT_TRUE(blob.Append(EBlob("cde", 3)));
  EXPECT_EQ(blob.GetCapacity(), 5u);
  EXPECT_TRUE(blob += EBlob("f", 1));
  EXPECT_EQ(Contents(blob), (V{'a', 'b', 'c', 'd', 'e', 'f'}));
  EXPECT_TRUE(blob.Append(blob));
  EXPECT_EQ(blob.GetSize(), 12u);
  EXPECT_TRUE(blob.Append(EBlob()));
  EXPECT_EQ(blob.GetSize(), 12u);
}

TEST(EBlob, MemsetInsideAndClippedToCapacity) {
  EBlob blob;
  blob.SetSize(8, false);
  EXPECT_EQ(blob.Memset(0xAA, 2, 3), 5u);
  EXPECT_EQ(blob.GetSize(), 5u);
  EXPECT_EQ(Contents(blob), (V{0, 0, 0xAA, 0xAA, 0xAA}));
  EXPECT_EQ(blob.Memset(0xBB, 6, 10), 8u);
  EXPECT_EQ(blob.GetSize(), 8u);
  EXPECT_EQ(blob.GetData()[7], 0xBB);
  EXPECT_EQ(blob.Memset(0xCC, 100, 1), 8u);  // offset clamped to the capacity
  EXPECT_EQ(blob.Memset(0xDD, 1, 0), 8u);    // count 0 sets up to the end
  EXPECT_EQ(blob.GetData()[1], 0xDD);
  EBlob none;
  EXPECT_EQ(none.Memset(1, 0, 4), 0u);
  EXPECT_EQ(none.GetSize(), 0u);
}

TEST(EBlob, RemoveLeadingBytes) {
  EBlob blob("abcd", 4);
  EXPECT_FALSE(blob.RemoveLeadingBytes(0));
  EXPECT_EQ(blob.GetSize(), 4u);
  EXPECT_TRUE(blob.RemoveLeadingBytes(1));
  EXPECT_EQ(Contents(blob), (V{'b', 'c', 'd'}));
  EXPECT_TRUE(blob.RemoveLeadingBytes(3));
  EXPECT_EQ(blob.GetSize(), 0u);
  EXPECT_TRUE(blob.RemoveLeadingBytes(0));  // an empty blob has nothing left to keep
}

TEST(EBlob, ForceSizeTreatsContentsAsBigEndian) {
  EBlob grow = Bytes({0xAB});
  grow.ForceSize(4);
  EXPECT_EQ(Contents(grow), (V{0, 0, 0, 0xAB}));
  EBlob shrink = Bytes({0x12, 0x34});
  shrink.ForceSize(1);
  EXPECT_EQ(Contents(shrink), (V{0x34}));
  EBlob same = Bytes({1, 2});
  same.ForceSize(2);
  EXPECT_EQ(Contents(same), (V{1, 2}));
  EBlob empty;
  empty.ForceSize(2);
  EXPECT_EQ(Contents(empty), (V{0, 0}));
}

TEST(EBlob, GetAtIsBoundedByCapacityForRawDestinations) {
  EBlob blob;
  blob.SetSize(6, false);
  blob.SetData("ab", 2);
  unsigned char out[6] = {};
  EXPECT_TRUE(blob.GetAt(out, 0, 6));  // reserved bytes are readable
  EXPECT_EQ(out[0], 'a');
  EXPECT_FALSE(blob.GetAt(out, 1, 6));
  EXPECT_TRUE(blob.GetAt(out, 6, 0));
}

TEST(EBlob, GetAtIsBoundedBySizeForBlobDestinations) {
  const EBlob blob("abcdef", 6);
  EBlob part;
  EXPECT_TRUE(blob.GetAt(part, 2, 3));
  EXPECT_EQ(Contents(part), (V{'c', 'd', 'e'}));
  EXPECT_EQ(part.GetCapacity(), 3u);
  EXPECT_FALSE(blob.GetAt(part, 4, 3));
  EXPECT_EQ(Contents(part), (V{'c', 'd', 'e'}));
}

TEST(EBlob, EqualityAndPrefixCompare) {
  EXPECT_EQ(EBlob(), EBlob());
  EXPECT_EQ(EBlob("ab", 2), EBlob("ab", 2));
  EXPECT_NE(EBlob("ab", 2), EBlob("abc", 3));
  const EBlob blob("abc", 3);
  EXPECT_TRUE(blob.Compare(reinterpret_cast<const unsigned char*>("ab"), 2));
  EXPECT_FALSE(blob.Compare(reinterpret_cast<const unsigned char*>("abcd"), 4));
  EXPECT_FALSE(blob.Compare(nullptr, 1));
  EXPECT_FALSE(blob.Compare(blob, 0));  // length 0 is false even for equal blobs
  EXPECT_TRUE(blob.Compare(EBlob("abx", 3), 2));
  EXPECT_FALSE(blob.Compare(EBlob("a", 1), 2));
}

TEST(EBlob, OrderingIsLexicographicWithNullFirst) {
  EXPECT_TRUE(Bytes({0x01, 0xFF}) < Bytes({0x02}));
  EXPECT_FALSE(Bytes({0x02}) < Bytes({0x01, 0xFF}));
  EXPECT_TRUE(Bytes({0x01}) < Bytes({0x01, 0x00}));
  EXPECT_FALSE(Bytes({0x01}) < Bytes({0x01}));
  EXPECT_TRUE(Bytes({0x80}) < Bytes({0x81}));
  EBlob emptyWithAllocation;
  emptyWithAllocation.SetSize(1, false);
  EXPECT_TRUE(EBlob() < emptyWithAllocation);
  EXPECT_FALSE(emptyWithAllocation < EBlob());
  EXPECT_FALSE(Bytes({0x00}) < EBlob());
  EXPECT_FALSE(EBlob() < EBlob());
}

TEST(EBlob, InvertAndIncrement) {
  EBlob blob = Bytes({0x0F, 0xF0});
  ~blob;
  EXPECT_EQ(Contents(blob), (V{0xF0, 0x0F}));

  EBlob a = Bytes({0x00, 0xFF});
  EXPECT_EQ(a.IncrementBy(1), 0u);
  EXPECT_EQ(Contents(a), (V{0x01, 0x00}));
  EBlob b = Bytes({0xFF, 0xFF});
  EXPECT_EQ(b.IncrementBy(1), 1u);
  EXPECT_EQ(Contents(b), (V{0x00, 0x00}));
  EBlob c = Bytes({0x00, 0x00, 0xFF});
  EXPECT_EQ(c.IncrementBy(0x0102), 0u);
  EXPECT_EQ(Contents(c), (V{0x00, 0x02, 0x01}));
  EBlob d = Bytes({0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
  EXPECT_EQ(d.IncrementBy(1), 0u);  // the carry ripples past the fourth byte
  EXPECT_EQ(Contents(d), (V{0x01, 0, 0, 0, 0, 0}));
  EBlob e = Bytes({0x01});
  EXPECT_EQ(e.IncrementBy(0x1FF), 1u);  // only the low byte of n reaches a one-byte blob
  EXPECT_EQ(Contents(e), (V{0x00}));
  EBlob f;
  EXPECT_EQ(f.IncrementBy(5), 0u);
}

TEST(EBlob, HexString) {
  EXPECT_EQ(Bytes({0x0A, 0xFF}).GetHexString(), "0A FF ");
  EXPECT_EQ(EBlob().GetHexString(), "");
  EBlob blob;
  blob.SetHexString("0A FF ");
  EXPECT_EQ(Contents(blob), (V{0x0A, 0xFF}));
  blob.SetHexString("abc");
  EXPECT_EQ(Contents(blob), (V{0xAB, 0xC0}));
  blob.SetHexString("A B");
  EXPECT_EQ(Contents(blob), (V{0xA0, 0xB0}));
  blob.SetFromSerializableString("zz1g");
  EXPECT_EQ(Contents(blob), (V{0x10}));
  blob.SetHexString("");
  EXPECT_EQ(blob.GetSize(), 0u);
}

TEST(EBlob, HexDump) {
  std::vector<unsigned char> bytes(17);
  for (unsigned char i = 0; i < 17; ++i)
    bytes[i] = i;
  EXPECT_EQ(Bytes(bytes).GetHexDumpOfPacket(),
            "\t00000000 : 00 01 02 03 04 05 06 07  08 09 0A 0B 0C 0D 0E 0F \n"
            "\t00000010 : 10");
  EXPECT_EQ(EBlob().GetHexDumpOfPacket(), "");
  std::vector<unsigned char> many(33, 0xEE);
  const std::string dump = Bytes(many).GetHexDumpOfPacket();
  EXPECT_NE(dump.find("\n\t00000020 : EE"), std::string::npos);
}

TEST(EBlob, HexHelpers) {
  const EBlob blob;
  EXPECT_EQ(blob.AsciiToHex('7'), 7);
  EXPECT_EQ(blob.AsciiToHex('b'), 11);
  EXPECT_EQ(blob.AsciiToHex('F'), 15);
  EXPECT_EQ(blob.AsciiToHex('g'), 0);
  EXPECT_EQ(blob.HexToAscii(0x1C), 'C');
  char text[4];
  blob.HexToText(static_cast<char>(0xA5), text);
  EXPECT_STREQ(text, "A5 ");
}

TEST(EBlob, ArchiveFormRoundTrip) {
  const EBlob blob = Bytes({0x0A, 0xFF});
  EXPECT_EQ(BytesOf(blob), std::string("287454021 2 ") + '\x0A' + '\xFF');
  EBlob back("zzz", 3);
  ReadFrom(BytesOf(blob), back);
  EXPECT_EQ(back, blob);
  EXPECT_EQ(BytesOf(EBlob()), "287454021 0 ");
}

TEST(EBlob, ReadsTheOldHexStringForm) {
  EBlob blob;
  ReadFrom("287454020 0A FF \n", blob);
  EXPECT_EQ(Contents(blob), (V{0x0A, 0xFF}));
}

TEST(EBlob, WrongSignatureIsASerializationError) {
  ExpectSerializeError(
      [] {
        EBlob blob;
        ReadFrom("287454022 0 ", blob);
      },
      "x86_64/common/ehal/eBlob", 536, "EBlob::SerializeIn");
}

TEST(EBlob, ReportIsExactText) {
  const ChildResult result = RunInChild([] {
    EBlob blob;
    ReadFrom("1 ", blob);
  });
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.output,
            "*** Exception in FILE x86_64/common/ehal/eBlob, LINE 536:\n"
            "EBlob::SerializeIn - EArchive::SerializeError()\n");
}

TEST(EBlob, HandlerReplacesTheReport) {
  const ScopedThrowingSerializeErrors throwing;
  EBlob blob;
  try {
    ReadFrom("5 ", blob);
    FAIL() << "no error raised";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/eBlob");
    EXPECT_EQ(error.line, 536);
    EXPECT_EQ(error.function, "EBlob::SerializeIn");
  }
}

}  // namespace
