// Bytes handed between archives, blobs and envelopes without a copy: ReleaseAsEBlob,
// MoveFromEBlob, EBlob's moves, an envelope's TakeMessage and GetMessageBytes; and copies of
// large blocks at every distance between source and destination.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "eArchive.h"
#include "eDHCPStats.h"
#include "eMessage.h"

namespace {

std::string Text(const EBlob& blob) {
  return std::string(blob.GetView());
}

TEST(ArchiveHandover, ReleaseAsEBlobHandsTheBytesOverAndEmptiesTheArchive) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << 12u << -3 << std::string("ab");
  const unsigned char* const data = archive.GetAsEBlob().GetData();
  const EBlob bytes = archive.ReleaseAsEBlob();
  EXPECT_EQ(Text(bytes), "12 -3 2 ab");
  EXPECT_EQ(bytes.GetData(), data);  // the same allocation, not a copy
  EXPECT_EQ(bytes.GetCapacity(), 16u);
  EXPECT_EQ(archive.GetMode(), eModeNone);
  EXPECT_EQ(archive.GetAsEBlob().GetSize(), 0u);
  EXPECT_EQ(archive.GetAsEBlob().GetData(), nullptr);
  EXPECT_EQ(archive.GetWritePosition(), 0u);
  archive.SetMode(eModeStoring);
  archive << 5u;
  EXPECT_EQ(Text(archive.GetAsEBlob()), "5 ");
}

TEST(ArchiveHandover, MoveFromEBlobTakesTheBlobAndItsTerminatingZeroInPlace) {
  EArchive out;
  out.SetMode(eModeStoring);
  out << 7u << 8u;  // capacity 4, then 8 (doubling); the allocation holds more
  EBlob bytes = out.ReleaseAsEBlob();
  const unsigned char* const data = bytes.GetData();
  EArchive in;
  in.SetMode(eModeLoading);
  in.MoveFromEBlob(std::move(bytes), true);
  EXPECT_EQ(bytes.GetData(), nullptr);
  EXPECT_EQ(bytes.GetSize(), 0u);
  EXPECT_EQ(in.GetAsEBlob().GetData(), data);
  EXPECT_EQ(in.GetAsEBlob().GetSize(), 5u);
  EXPECT_EQ(in.GetAsEBlob().GetData()[4], 0);
  EXPECT_EQ(in.GetReadPosition(), 0u);
  EXPECT_EQ(in.GetWritePosition(), 4u);
  EXPECT_EQ(in.ReadUnsignedInt(), 7u);
  EXPECT_EQ(in.ReadUnsignedInt(), 8u);
}

TEST(ArchiveHandover, MoveFromEBlobGrowsAnExactBlobForItsZero) {
  EBlob exact("42 ", 3);
  ASSERT_EQ(exact.GetCapacity(), 3u);
  EArchive in;
  in.SetMode(eModeLoading);
  in.MoveFromEBlob(std::move(exact), true);
  EXPECT_EQ(std::string(in.GetAsEBlob().GetView()), std::string("42 \0", 4));
  EXPECT_EQ(in.GetAsEBlob().GetCapacity(), 4u);
  EXPECT_EQ(in.GetWritePosition(), 3u);
  EXPECT_EQ(in.ReadUnsignedInt(), 42u);
}

TEST(ArchiveHandover, MoveFromEBlobOfAnEmptyBlobIsSetFromEBlob) {
  EArchive in;
  in.MoveFromEBlob(EBlob(), true);
  EXPECT_EQ(std::string(in.GetAsEBlob().GetView()), std::string("\0", 1));
  EXPECT_EQ(in.GetWritePosition(), 0u);
}

TEST(ArchiveHandover, BlobMovesTakeTheAllocationAndLeaveTheSourceEmpty) {
  EBlob source("abc", 3);
  const unsigned char* const data = source.GetData();
  EBlob moved(std::move(source));
  EXPECT_EQ(moved.GetData(), data);
  EXPECT_EQ(Text(moved), "abc");
  EXPECT_EQ(source.GetData(), nullptr);
  EXPECT_EQ(source.GetSize(), 0u);
  EXPECT_EQ(source.GetCapacity(), 0u);
  EBlob target("xy", 2);
  target = std::move(moved);
  EXPECT_EQ(target.GetData(), data);
  EXPECT_EQ(target.GetCapacity(), 3u);
  EXPECT_EQ(moved.GetData(), nullptr);
  target = std::move(target);
  EXPECT_EQ(Text(target), "abc");
}

TEST(ArchiveHandover, AnEnvelopeTakesAndGivesItsPayloadWithoutACopy) {
  EBlob payload("1 2 3 ", 6);
  const unsigned char* const data = payload.GetData();
  eHal::EMessage message;
  message.SetMessage(static_cast<eHal::EMessage::eMessageType>(4), std::move(payload));
  EXPECT_EQ(message.GetMessageType(), 4u);
  EXPECT_EQ(message.GetMessageBytes().GetData(), data);
  EXPECT_EQ(Text(message.GetMessage()), "1 2 3 ");
  const EBlob taken = message.TakeMessage();
  EXPECT_EQ(taken.GetData(), data);
  EXPECT_EQ(message.GetMessageBytes().GetSize(), 0u);
  EXPECT_EQ(message.GetMessageBytes().GetData(), nullptr);
}

// The bytes of the one-off path (fresh archives, copies) and of the hand-over path are the same.
TEST(ArchiveHandover, TheHandedOverBytesAreThoseOfTheCopyingPath) {
  EDHCPStats stats;
  stats.SetDHCPDiscoversSent(123456);
  stats.SetDHCPReleasesSent(3);
  EArchive copying;
  copying.SetMode(eModeStoring);
  copying << stats;
  const EBlob copied = copying.GetAsEBlob();
  EArchive handing;
  handing.SetMode(eModeStoring);
  handing << stats;
  EBlob handed = handing.ReleaseAsEBlob();
  EXPECT_EQ(Text(handed), "1 123456 0 0 0 0 0 0 3 ");
  EXPECT_EQ(handed, copied);
  EArchive in;
  in.SetMode(eModeLoading);
  in.MoveFromEBlob(std::move(handed), true);
  EDHCPStats back;
  in >> back;
  EXPECT_FALSE(back != stats);
}

// Large appends from every distance modulo 4 KiB between the source and the archive's bytes (the
// source moves by one byte at a time, the archive keeps its allocation) come out byte for byte,
// and so does a blob read back from the archive after an odd number of bytes.
TEST(ArchiveHandover, LargeCopiesAreExactAtEveryDistance) {
  std::string source(2 * 4096 + 9000, '\0');
  for (std::size_t i = 0; i < source.size(); ++i)
    source[i] = static_cast<char>(i * 131 + 7);
  const auto* const bytes = reinterpret_cast<const unsigned char*>(source.data());
  EArchive archive;
  for (const unsigned int length : {2049u, 9000u}) {
    for (unsigned int offset = 0; offset < 4096 + 16; ++offset) {
      archive.Empty();
      archive.SetMode(eModeStoring);
      archive.Append(length, bytes + offset);
      ASSERT_EQ(archive.GetAsEBlob().GetView(), source.substr(offset, length)) << offset;
    }
  }
  const EBlob blob(bytes, 9000);
  for (unsigned int prefix = 0; prefix < 20; ++prefix) {
    archive.Empty();
    archive.SetMode(eModeStoring);
    archive.SerializeRawStringOut(std::string(prefix, 'x'));
    archive << blob;
    std::string skipped;
    archive.SerializeRawStringIn(skipped);
    EBlob back;
    archive >> back;
    ASSERT_EQ(back, blob) << prefix;
  }
}

}  // namespace
