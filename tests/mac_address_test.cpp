#include "eMACAddress.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"
#include "network_values.h"

namespace {

using namespace network_values;

Bytes Contents(const EMACAddress& address) {
  const EBlob& blob = address.GetMACAddress();
  if (blob.GetSize() == 0) return {};
  return Bytes(blob.GetData(), blob.GetData() + blob.GetSize());
}

EMACAddress Mac(const Bytes& bytes) {
  EMACAddress address;
  address.SetMACAddress(Blob(bytes));
  return address;
}

TEST(EMACAddress, FreshAddressIsSixZeroBytes) {
  const EMACAddress address;
  EXPECT_EQ(Contents(address), Bytes(6, 0));
  EXPECT_EQ(address.GetAsString(), "00:00:00:00:00:00");
}

TEST(EMACAddress, EmptyGivesSixZeroBytes) {
  EMACAddress address = Mac({1, 2, 3, 4, 5, 6});
  address.Empty();
  EXPECT_EQ(Contents(address), Bytes(6, 0));
  address.SetAsString("01:02");
  address.Empty();
  EXPECT_EQ(Contents(address), Bytes(6, 0));
}

TEST(EMACAddress, SetMACAddressForcesSixBytes) {
  EXPECT_EQ(Mac({1, 2, 3, 4, 5, 6, 7, 8}).GetAsString(), "03:04:05:06:07:08");
  EXPECT_EQ(Mac({0xAA, 0xBB}).GetAsString(), "00:00:00:00:aa:bb");
  EXPECT_EQ(Mac({}).GetAsString(), "00:00:00:00:00:00");
  EXPECT_EQ(Mac({0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}).GetAsString(), "00:1a:2b:3c:4d:5e");
}

TEST(EMACAddress, CopyKeepsAnyLength) {
  EMACAddress three;
  three.SetAsString("00:11:22");
  const EMACAddress copy(three);
  EXPECT_EQ(Contents(copy), (Bytes{0x00, 0x11, 0x22}));
  EMACAddress assigned;
  assigned = three;
  assigned = assigned;
  EXPECT_EQ(Contents(assigned), (Bytes{0x00, 0x11, 0x22}));
  EMACAddress copied;
  copied.Copy(three);
  EXPECT_EQ(Contents(copied), (Bytes{0x00, 0x11, 0x22}));
}

TEST(EMACAddress, InequalityComparesSizeAndBytes) {
  EXPECT_FALSE(Mac({1, 2, 3, 4, 5, 6}) != Mac({1, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(Mac({1, 2, 3, 4, 5, 6}) != Mac({1, 2, 3, 4, 5, 7}));
  EMACAddress short3;
  short3.SetAsString("00:00:00");
  EXPECT_TRUE(short3 != EMACAddress());
  EXPECT_TRUE(Mac({1, 2, 3, 4, 5, 6}) == Mac({1, 2, 3, 4, 5, 6}));
}

TEST(EMACAddress, Swap) {
  EMACAddress a = Mac({1, 1, 1, 1, 1, 1});
  EMACAddress b;
  b.SetAsString("ff:ee");
  a.Swap(b);
  EXPECT_EQ(a.GetAsString(), "ff:ee");
  EXPECT_EQ(b.GetAsString(), "01:01:01:01:01:01");
}

TEST(EMACAddress, SetAsStringParsesPairsWithoutForcingTheLength) {
  EMACAddress address;
  address.SetAsString("00:1A:2b:3C:4d:5E");
  EXPECT_EQ(Contents(address), (Bytes{0x00, 0x1A, 0x2B, 0x3C, 0x4D, 0x5E}));
  address.SetAsString("00:11:22");
  EXPECT_EQ(Contents(address), (Bytes{0x00, 0x11, 0x22}));
  address.SetAsString("0011.2233.4455");
  EXPECT_EQ(Contents(address), (Bytes{0x00, 0x11, 0x22, 0x33, 0x44, 0x55}));
  // The colons go first, so single digits pair up across them.
  address.SetAsString("0:1:2:3:4:5");
  EXPECT_EQ(Contents(address), (Bytes{0x01, 0x23, 0x45}));
  address.SetAsString("");
  EXPECT_EQ(address.GetAsString(), "");
}

TEST(EMACAddress, ArchiveForm) {
  EXPECT_EQ(BytesOf(Mac({0x00, 0x11, 0x22, 0x33, 0x44, 0x55})),
            std::string("386994449 287454021 6 ") + std::string("\x00\x11\x22\x33\x44\x55", 6));
}

TEST(EMACAddress, ReadKeepsTheLengthAsItStands) {
  EMACAddress read = Mac({9, 9, 9, 9, 9, 9});
  ReadFrom(std::string("386994449 287454021 2 ") + "\xAB\xCD", read);
  EXPECT_EQ(Contents(read), (Bytes{0xAB, 0xCD}));
  // The blob's older hex form is accepted inside the record.
  ReadFrom("386994449 287454020 0A FF 01 \n", read);
  EXPECT_EQ(Contents(read), (Bytes{0x0A, 0xFF, 0x01}));
}

TEST(EMACAddress, RoundTrip) {
  const EMACAddress address = Mac({0xDE, 0xAD, 0xBE, 0xEF, 0x00, 0x01});
  EMACAddress read;
  ReadFrom(BytesOf(address), read);
  EXPECT_EQ(read, address);
}

TEST(EMACAddress, WrongSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EMACAddress address;
        ReadFrom("386994450 287454021 6 abcdef", address);
      },
      "x86_64/common/ehal/eMACAddress", 119, "EMACAddress::SerializeIn");
}

}  // namespace
