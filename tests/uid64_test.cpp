#include "eUid64.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"
#include "eFormatUtils.h"
#include "eIPAddress.h"
#include "eMACAddress.h"

namespace {

using Bytes = std::vector<unsigned char>;

EUID Uid(const Bytes& bytes) {
  EUID id;
  id.SetId(bytes.data(), bytes.size());
  return id;
}

Bytes Contents(const EUID& id) {
  return Bytes(id.GetId(), id.GetId() + 8);
}

EMACAddress Mac(const std::string& text) {
  EMACAddress address;
  address.SetAsString(text);
  return address;
}

TEST(EUID, DefaultAndEmptyAreZero) {
  EUID id;
  EXPECT_EQ(Contents(id), Bytes(8, 0));
  EXPECT_EQ(id.GetAsUint64(), 0u);
  id = Uid({1, 2, 3, 4, 5, 6, 7, 8});
  id.Empty();
  EXPECT_EQ(Contents(id), Bytes(8, 0));
}

TEST(EUID, CopySwapAndCompare) {
  const EUID a = Uid({1, 2, 3, 4, 5, 6, 7, 8});
  EUID b = Uid({8, 7, 6, 5, 4, 3, 2, 1});
  EXPECT_TRUE(a != b);
  EXPECT_FALSE(a != Uid({1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_TRUE(a == Uid({1, 2, 3, 4, 5, 6, 7, 8}));
  EUID c = a;
  c.Swap(b);
  EXPECT_EQ(Contents(c), (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(Contents(b), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EUID d;
  d.Copy(a);
  EXPECT_FALSE(d != a);
  d = c;
  d = d;
  EXPECT_FALSE(d != c);
  const EUID e(a);
  EXPECT_FALSE(e != a);
}

TEST(EUID, NumericAndBlobForms) {
  const EUID id = Uid({0x00, 0x11, 0x22, 0xFF, 0xFE, 0x33, 0x44, 0x55});
  EXPECT_EQ(id.GetAsUint64(), 0x001122FFFE334455ul);
  const EBlob blob = id.GetAsBlob();
  ASSERT_EQ(blob.GetSize(), 8u);
  EXPECT_EQ(Bytes(blob.GetData(), blob.GetData() + 8),
            (Bytes{0x00, 0x11, 0x22, 0xFF, 0xFE, 0x33, 0x44, 0x55}));
  EXPECT_EQ(Uid({0xFF, 0, 0, 0, 0, 0, 0, 1}).GetAsUint64(), 0xFF00000000000001ul);
}

TEST(EUID, SetIdFromBytes) {
  EUID id = Uid({9, 9, 9, 9, 9, 9, 9, 9});
  const unsigned char three[3] = {1, 2, 3};
  id.SetId(three, 3);
  EXPECT_EQ(Contents(id), (Bytes{1, 2, 3, 0, 0, 0, 0, 0}));
  const unsigned char ten[10] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  id.SetId(ten, 10);
  EXPECT_EQ(Contents(id), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  id.SetId(nullptr, 8);
  EXPECT_EQ(Contents(id), Bytes(8, 0));
}

TEST(EUID, SetIdFromBlobPadsAtTheEnd) {
  EUID id = Uid({9, 9, 9, 9, 9, 9, 9, 9});
  const unsigned char three[3] = {0xAA, 0xBB, 0xCC};
  id.SetId(EBlob(three, 3));
  EXPECT_EQ(id.GetAsString(), "aa:bb:cc:00:00:00:00:00");
  const unsigned char ten[10] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  id.SetId(EBlob(ten, 10));
  EXPECT_EQ(Contents(id), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  id.SetId(EBlob());
  EXPECT_EQ(Contents(id), Bytes(8, 0));
}

TEST(EUID, TextForms) {
  const EUID id = Uid({0x00, 0x11, 0x22, 0xFF, 0xFE, 0x33, 0x44, 0x55});
  EXPECT_EQ(id.GetAsString(), "00:11:22:ff:fe:33:44:55");
  EXPECT_EQ(id.GetAsByteString(), "00 11 22 ff fe 33 44 55");
  EXPECT_EQ(Uid({'A', 'B', 0, 'X', 'Y', 'Z', 'W', 'V'}).GetAsASCIIString(), "AB");
  EXPECT_EQ(Uid({'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H'}).GetAsASCIIString(), "ABCDEFGH");
  EXPECT_EQ(EUID().GetAsASCIIString(), "");
}

TEST(EUID, ArchiveForm) {
  EXPECT_EQ(BytesOf(Uid({0x00, 0x11, 0x22, 0xFF, 0xFE, 0x33, 0x44, 0x55})),
            std::string("1 287454021 8 ") + std::string("\x00\x11\x22\xFF\xFE\x33\x44\x55", 8));
}

TEST(EUID, RoundTrip) {
  const EUID id = Uid({0xDE, 0xAD, 0xBE, 0xEF, 0, 1, 2, 3});
  EUID read = Uid({1, 1, 1, 1, 1, 1, 1, 1});
  ReadFrom(BytesOf(id), read);
  EXPECT_FALSE(read != id);
}

TEST(EUID, ReadEmptiesFirstAndPadsAShortBlob) {
  EUID read = Uid({1, 1, 1, 1, 1, 1, 1, 1});
  ReadFrom(std::string("1 287454021 3 ") + "\xAA\xBB\xCC", read);
  EXPECT_EQ(read.GetAsString(), "aa:bb:cc:00:00:00:00:00");
  ReadFrom("1 287454021 0 ", read);
  EXPECT_EQ(Contents(read), Bytes(8, 0));
}

TEST(EUID, WrongVersionIsFatal) {
  ExpectSerializeError(
      [] {
        EUID id;
        ReadFrom("2 287454021 8 abcdefgh", id);
      },
      "x86_64/common/ehal/eUid64", 68, "EUID::SerializeIn");
}

TEST(EUIDConversions, MacToUid64AndBack) {
  EUID id;
  eHal::MacToUid64(Mac("00:11:22:33:44:55"), id);
  EXPECT_EQ(id.GetAsString(), "02:11:22:ff:fe:33:44:55");
  EMACAddress mac;
  EXPECT_TRUE(eHal::Uid64ToMac(id, mac));
  EXPECT_EQ(mac.GetAsString(), "00:11:22:33:44:55");
  // The universal/local bit is inverted both ways.
  eHal::MacToUid64(Mac("02:00:00:00:00:01"), id);
  EXPECT_EQ(id.GetAsString(), "00:00:00:ff:fe:00:00:01");
}

TEST(EUIDConversions, ShortMacGivesTheBareMarker) {
  EUID id = Uid({1, 2, 3, 4, 5, 6, 7, 8});
  eHal::MacToUid64(Mac("00:11:22"), id);
  EXPECT_EQ(id.GetAsString(), "00:00:00:ff:fe:00:00:00");
  // A longer address uses its first six bytes.
  eHal::MacToUid64(Mac("00:11:22:33:44:55:66"), id);
  EXPECT_EQ(id.GetAsString(), "02:11:22:ff:fe:33:44:55");
}

TEST(EUIDConversions, Uid64ToMacNeedsTheMarker) {
  EMACAddress mac = Mac("aa:bb:cc:dd:ee:ff");
  EXPECT_FALSE(eHal::Uid64ToMac(Uid({0x02, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77}), mac));
  EXPECT_EQ(mac.GetAsString(), "aa:bb:cc:dd:ee:ff");
  EXPECT_FALSE(eHal::Uid64ToMac(Uid({0, 0, 0, 0xFF, 0xFF, 0, 0, 0}), mac));
  EXPECT_EQ(mac.GetAsString(), "aa:bb:cc:dd:ee:ff");
}

TEST(EUIDConversions, LinkLocalAddresses) {
  EIPAddress address;
  eHal::MacToLinkLocalIp6(Mac("00:11:22:33:44:55"), address);
  EXPECT_EQ(address.GetType(), unsigned{eIPv6Address});
  EXPECT_EQ(address.GetAsString(), "FE80:0:0:0:211:22FF:FE33:4455");
  EXPECT_EQ(address.GetIPv6Scope(), 5u);
  eHal::Uid64ToLinkLocalIp6(Uid({1, 2, 3, 4, 5, 6, 7, 8}), address);
  EXPECT_EQ(address.GetAsString(), "FE80:0:0:0:102:304:506:708");
}

TEST(EFormatUtils, FormatsTheLowestBytes) {
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0x0A0B0C0D, 4, ":"), "0a:0b:0c:0d");
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0x0A0B0C0D, 2, ""), "0c0d");
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0x0A0B0C0D, 1, "-"), "0d");
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0x0A0B0C0D, 0, ":"), "");
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0xFFu, 3, " - "), "00 - 00 - ff");
  // A count above the value's width is limited to it.
  EXPECT_EQ(EFormatUtils::GetEDWORDAsFormattedString(0x0A0B0C0D, 6, ":"), "0a:0b:0c:0d");
  EXPECT_EQ(EFormatUtils::GetInt64AsFormattedString(0x0102030405060708ul, 8, ":"),
            "01:02:03:04:05:06:07:08");
  EXPECT_EQ(EFormatUtils::GetInt64AsFormattedString(0xABCDEF0123456789ul, 3, "."), "45.67.89");
  EXPECT_EQ(EFormatUtils::GetInt64AsFormattedString(0, 0, ":"), "");
  EXPECT_EQ(EFormatUtils::GetAsFormattedString(static_cast<unsigned short>(0xBEEF), 2, ":"),
            "be:ef");
}

}  // namespace
