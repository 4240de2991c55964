#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"
#include "eIPMACPair.h"
#include "eMACAddressRange.h"
#include "network_values.h"

namespace {

EMACAddress Mac(const std::string& text) {
  EMACAddress address;
  address.SetAsString(text);
  return address;
}

using network_values::V4;

const std::string kMacRecord =
    std::string("386994449 287454021 6 ") + std::string("\x00\x11\x22\x33\x44\x55", 6);

TEST(EMACAddressRange, DefaultsAreZero) {
  const EMACAddressRange range;
  EXPECT_EQ(range.GetMACAddress().GetAsString(), "00:00:00:00:00:00");
  EXPECT_EQ(range.GetMACRangeCount(), 0u);  // unlike an IP range's 1
  EXPECT_EQ(range.GetMACMode(), 0);
}

TEST(EMACAddressRange, AccessorsCopyAndEmpty) {
  EMACAddressRange range;
  range.SetMACAddress(Mac("00:11:22:33:44:55"));
  range.SetMACRangeCount(12);
  range.SetMACMode(-3);
  EXPECT_EQ(range.GetMACAddress().GetAsString(), "00:11:22:33:44:55");
  EXPECT_EQ(range.GetMACRangeCount(), 12u);
  EXPECT_EQ(range.GetMACMode(), -3);
  const EMACAddressRange copy(range);
  EXPECT_EQ(copy.GetMACAddress(), range.GetMACAddress());
  EXPECT_EQ(copy.GetMACRangeCount(), 12u);
  EXPECT_EQ(copy.GetMACMode(), -3);
  EMACAddressRange assigned;
  assigned = range;
  assigned = assigned;
  EXPECT_EQ(assigned.GetMACMode(), -3);
  EMACAddressRange copied;
  copied.Copy(range);
  EXPECT_EQ(copied.GetMACRangeCount(), 12u);
  range.Empty();
  EXPECT_EQ(range.GetMACAddress().GetAsString(), "00:00:00:00:00:00");
  EXPECT_EQ(range.GetMACRangeCount(), 0u);
  EXPECT_EQ(range.GetMACMode(), 0);
}

TEST(EMACAddressRange, ArchiveForm) {
  EMACAddressRange range;
  range.SetMACAddress(Mac("00:11:22:33:44:55"));
  range.SetMACRangeCount(4000000000u);
  range.SetMACMode(-2);
  EXPECT_EQ(BytesOf(range), "353440017 " + kMacRecord + "4000000000 -2 ");
  EMACAddressRange read;
  read.SetMACMode(9);
  ReadFrom(BytesOf(range), read);
  EXPECT_EQ(read.GetMACAddress(), range.GetMACAddress());
  EXPECT_EQ(read.GetMACRangeCount(), 4000000000u);
  EXPECT_EQ(read.GetMACMode(), -2);
}

TEST(EMACAddressRange, WrongSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EMACAddressRange range;
        ReadFrom("353440018 " + kMacRecord + "1 0 ", range);
      },
      "x86_64/common/ehal/eMACAddressRange", 135, "EMACAddressRange::SerializeIn");
}

TEST(EMACAddressRange, WrongNestedMacSignatureIsReportedByTheMac) {
  ExpectSerializeError(
      [] {
        EMACAddressRange range;
        ReadFrom("353440017 1 287454021 6 abcdef1 0 ", range);
      },
      "x86_64/common/ehal/eMACAddress", 119, "EMACAddress::SerializeIn");
}

TEST(EIPMACPair, Defaults) {
  const EIPMACPair pair;
  EXPECT_EQ(pair.GetSourceIP(), V4(0, 0, 0, 0));
  EXPECT_EQ(pair.GetDestinationIP(), V4(0, 0, 0, 0));
  EXPECT_EQ(pair.GetSourceMAC().GetAsString(), "00:00:00:00:00:00");
  EXPECT_EQ(pair.GetDestinationMAC().GetAsString(), "00:00:00:00:00:00");
  EXPECT_FALSE(pair.IsSourceResolved());
  EXPECT_FALSE(pair.IsDestinationResolved());
}

EIPMACPair FilledPair() {
  EIPMACPair pair;
  pair.SetSourceIP(V4(10, 0, 0, 1));
  pair.SetDestinationIP(V4(10, 0, 0, 2));
  pair.SetSourceMAC(Mac("00:11:22:33:44:55"));
  pair.SetDestinationMAC(Mac("66:77:88:99:aa:bb"));
  pair.SetSourceResolved(true);
  return pair;
}

TEST(EIPMACPair, AccessorsCopyAndEmpty) {
  EIPMACPair pair = FilledPair();
  EXPECT_EQ(pair.GetSourceIP().GetAsString(), "10.0.0.1");
  EXPECT_EQ(pair.GetDestinationIP().GetAsString(), "10.0.0.2");
  EXPECT_EQ(pair.GetSourceMAC().GetAsString(), "00:11:22:33:44:55");
  EXPECT_EQ(pair.GetDestinationMAC().GetAsString(), "66:77:88:99:aa:bb");
  EXPECT_TRUE(pair.IsSourceResolved());
  EXPECT_FALSE(pair.IsDestinationResolved());  // setting a MAC does not resolve it
  pair.SetDestinationResolved(true);
  pair.SetSourceMAC(Mac("01:01:01:01:01:01"));
  EXPECT_TRUE(pair.IsSourceResolved());
  const EIPMACPair copy(pair);
  EXPECT_EQ(copy.GetSourceMAC().GetAsString(), "01:01:01:01:01:01");
  EXPECT_TRUE(copy.IsDestinationResolved());
  EIPMACPair assigned;
  assigned = pair;
  assigned = assigned;
  EXPECT_EQ(assigned.GetDestinationIP().GetAsString(), "10.0.0.2");
  EIPMACPair copied;
  copied.Copy(pair);
  EXPECT_TRUE(copied.IsSourceResolved());
  pair.Empty();
  EXPECT_EQ(pair.GetSourceIP(), V4(0, 0, 0, 0));
  EXPECT_EQ(pair.GetDestinationMAC().GetAsString(), "00:00:00:00:00:00");
  EXPECT_FALSE(pair.IsSourceResolved());
  EXPECT_FALSE(pair.IsDestinationResolved());
}

TEST(EIPMACPair, ArchiveForm) {
  const std::string expected = std::string("403772177 ") + "403771666 17 287454021 4 " +
                               std::string("\x0A\x00\x00\x01", 4) + "403771666 17 287454021 4 " +
                               std::string("\x0A\x00\x00\x02", 4) + kMacRecord +
                               "386994449 287454021 6 " + "\x66\x77\x88\x99\xAA\xBB" + "1 0 ";
  EXPECT_EQ(BytesOf(FilledPair()), expected);
}

TEST(EIPMACPair, RoundTrip) {
  EIPMACPair pair = FilledPair();
  pair.SetDestinationResolved(true);
  pair.SetSourceResolved(false);
  EIPMACPair read = FilledPair();
  ReadFrom(BytesOf(pair), read);
  EXPECT_EQ(read.GetSourceIP(), pair.GetSourceIP());
  EXPECT_EQ(read.GetDestinationIP(), pair.GetDestinationIP());
  EXPECT_EQ(read.GetSourceMAC(), pair.GetSourceMAC());
  EXPECT_EQ(read.GetDestinationMAC(), pair.GetDestinationMAC());
  EXPECT_FALSE(read.IsSourceResolved());
  EXPECT_TRUE(read.IsDestinationResolved());
}

TEST(EIPMACPair, ReadsOldAddressLayoutsInside) {
  EIPMACPair read;
  read.SetSourceIP(V4(9, 9, 9, 9));
  const std::string bytes = std::string("403772177 ") + "403771665 287454021 4 " +
                            std::string("\x0A\x00\x00\x05", 4) + "403771665 287454021 4 " +
                            std::string("\x0A\x00\x00\x06", 4) + kMacRecord + kMacRecord + "0 1 ";
  ReadFrom(bytes, read);
  EXPECT_EQ(read.GetSourceIP().GetAsString(), "10.0.0.5");
  EXPECT_EQ(read.GetDestinationIP().GetAsString(), "10.0.0.6");
  EXPECT_TRUE(read.IsDestinationResolved());
}

TEST(EIPMACPair, WrongSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EIPMACPair pair;
        ReadFrom("403772178 403771666 17 287454021 4 abcd", pair);
      },
      "x86_64/common/ehal/eIPMACPair", 99, "EIPMACPair::SerializeIn");
}

}  // namespace
