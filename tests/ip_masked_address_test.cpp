#include "eIPMaskedAddress.h"

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

EIPMaskedAddress Masked(const EIPAddress& address, unsigned int prefix) {
  EIPMaskedAddress masked(address);
  masked.SetMaskPrefixNumber(prefix);
  return masked;
}

Bytes Mask16(const EIPMaskedAddress& masked) {
  return Bytes(masked.GetMaskBytes(), masked.GetMaskBytes() + 16);
}

TEST(EIPMaskedAddress, DefaultIsIPv4ZeroWithAllOnesMask) {
  const EIPMaskedAddress masked;
  EXPECT_EQ(masked.GetType(), unsigned{eIPv4Address});
  EXPECT_TRUE(masked.IsZero());
  EXPECT_EQ(masked.GetMaskAsString(), "255.255.255.255");
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 32u);
}

TEST(EIPMaskedAddress, FromAnAddressTakesTheDefaultPrefix) {
  const EIPMaskedAddress four(V4(10, 1, 2, 3));
  EXPECT_EQ(four.GetAsString(), "10.1.2.3");
  EXPECT_EQ(four.GetMaskPrefixNumber(), 24u);
  const EIPMaskedAddress six(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(six.GetMaskPrefixNumber(), 64u);
  EXPECT_EQ(six.GetMaskAsString(), "FFFF:FFFF:FFFF:FFFF:0:0:0:0");
  EIPAddress odd;
  odd.Empty(5);
  EXPECT_EQ(Mask16(EIPMaskedAddress(odd)),
            (Bytes{0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  const EIPMaskedAddress copy(Masked(V4(1, 2, 3, 4), 12));
  EXPECT_EQ(copy.GetMaskPrefixNumber(), 12u);
  EXPECT_EQ(copy.GetAsString(), "1.2.3.4");
}

TEST(EIPMaskedAddress, TheTwoEmptyDefaultsDiffer) {
  EIPMaskedAddress masked = Masked(V6({0x2001, 0, 0, 0, 0, 0, 0, 1}), 128);
  masked.Empty();
  EXPECT_EQ(masked.GetType(), unsigned{eIPv4Address});
  EXPECT_TRUE(masked.IsZero());
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 32u);  // /32
  // Mask bytes beyond the first four keep their values.
  EXPECT_EQ(Mask16(masked), Bytes(16, 0xFF));
  masked.Empty(eIPv4Address);
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 24u);  // /24
  EXPECT_EQ(Mask16(masked), (Bytes{0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  masked.Empty(eIPv6Address);
  EXPECT_EQ(masked.GetType(), unsigned{eIPv6Address});
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 64u);
}

TEST(EIPMaskedAddress, VirtualEmptyRunsThroughTheBase) {
  EIPMaskedAddress masked = Masked(V4(1, 2, 3, 4), 8);
  EIPAddress& base = masked;
  base.Empty();
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 32u);
  base.Empty(eIPv6Address);
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 64u);
}

TEST(EIPMaskedAddress, SetMaskPrefixNumber) {
  EIPMaskedAddress masked;
  EXPECT_TRUE(masked.SetMaskPrefixNumber(0));
  EXPECT_EQ(Mask16(masked), Bytes(16, 0));
  EXPECT_TRUE(masked.SetMaskPrefixNumber(128));
  EXPECT_EQ(Mask16(masked), Bytes(16, 0xFF));
  EXPECT_FALSE(masked.SetMaskPrefixNumber(129));
  EXPECT_EQ(Mask16(masked), Bytes(16, 0xFF));
  EXPECT_TRUE(masked.SetMaskPrefixNumber(21));
  EXPECT_EQ(Mask16(masked), (Bytes{0xFF, 0xFF, 0xF8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(masked.GetMaskAsString(), "255.255.248.0");
  EXPECT_TRUE(masked.SetMaskPrefixNumber(127));
  EXPECT_EQ(masked.GetMaskBytes()[15], 0xFE);
}

TEST(EIPMaskedAddress, PrefixNumberRoundTripsForEveryLength) {
  EIPMaskedAddress six(V6({1}));
  EIPMaskedAddress four(V4(1, 2, 3, 4));
  for (unsigned int n = 0; n <= 128; ++n) {
    ASSERT_TRUE(six.SetMaskPrefixNumber(n));
    EXPECT_EQ(six.GetMaskPrefixNumber(), n);
    ASSERT_TRUE(four.SetMaskPrefixNumber(n));
    EXPECT_EQ(four.GetMaskPrefixNumber(), std::min(n, 32u));  // IPv4 counts four bytes
  }
}

TEST(EIPMaskedAddress, NonContiguousMaskYieldsItsLeadingRun) {
  EIPMaskedAddress masked(V4(1, 2, 3, 4));
  masked.HostSetMaskFromDWORD(0xFF00FF00);
  EXPECT_EQ(masked.GetMaskAsString(), "255.0.255.0");
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 8u);
  masked.HostSetMaskFromDWORD(0xFFFFB000);  // 1011 in the third byte
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 17u);
}

TEST(EIPMaskedAddress, StaticBlobForms) {
  const unsigned char mask[4] = {0xFF, 0xFF, 0xF0, 0x00};
  EXPECT_EQ(EIPMaskedAddress::GetMaskPrefixNumber(EBlob(mask, 4)), 20u);
  const unsigned char wide[6] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  EXPECT_EQ(EIPMaskedAddress::GetMaskPrefixNumber(EBlob(wide, 6)), 32u);  // four bytes examined
  EXPECT_EQ(EIPMaskedAddress::GetMaskPrefixNumber(EBlob()), 0u);
  EBlob blob;
  EXPECT_TRUE(EIPMaskedAddress::SetMaskPrefixNumber(blob, 20));
  EXPECT_EQ(Contents(blob), (Bytes{0xFF, 0xFF, 0xF0, 0x00}));
  EXPECT_TRUE(EIPMaskedAddress::SetMaskPrefixNumber(blob, 100));
  EXPECT_EQ(Contents(blob), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
  // Above 128 the result is false; the blob holds the untouched default mask.
  EXPECT_FALSE(EIPMaskedAddress::SetMaskPrefixNumber(blob, 129));
  EXPECT_EQ(Contents(blob), (Bytes{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST(EIPMaskedAddress, SetMaskAndGetMask) {
  EIPMaskedAddress masked = Masked(V6({1}), 128);
  const unsigned char two[2] = {0xFF, 0xC0};
  masked.SetMask(EBlob(two, 2), eIPv4Address);  // the type argument is not used
  EXPECT_EQ(Mask16(masked), (Bytes{0xFF, 0xC0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(masked.GetMaskPrefixNumber(), 10u);
  EXPECT_EQ(masked.GetMaskAsBlob().GetSize(), 16u);
  unsigned char twenty[20];
  for (unsigned char& b : twenty)
    b = 0xFF;
  masked.SetMask(EBlob(twenty, 20), eIPv6Address);
  EXPECT_EQ(Mask16(masked), Bytes(16, 0xFF));
  EIPMaskedAddress four = Masked(V4(1, 2, 3, 4), 24);
  EBlob out;
  four.GetMask(out);
  EXPECT_EQ(Contents(out), (Bytes{0xFF, 0xFF, 0xFF, 0x00}));
  EXPECT_EQ(Contents(four.GetMaskAsBlob()), (Bytes{0xFF, 0xFF, 0xFF, 0x00}));
}

TEST(EIPMaskedAddress, DwordForms) {
  EIPMaskedAddress masked(V4(10, 1, 2, 3));
  masked.HostSetMaskFromDWORD(0xFFFFFF00);
  EXPECT_EQ(masked.GetMaskAsString(), "255.255.255.0");
  EXPECT_EQ(masked.GetMaskHost(), 0xFFFFFF00u);
  EXPECT_EQ(masked.GetMaskNetwork(), 0x00FFFFFFu);
  // Network order: the value's bytes as they lie in memory.
  const unsigned char bytes[4] = {0xFF, 0xF0, 0x00, 0x00};
  unsigned int network = 0;
  std::memcpy(&network, bytes, 4);
  masked.NetworkSetMaskFromDWORD(network);
  EXPECT_EQ(masked.GetMaskAsString(), "255.240.0.0");
  EXPECT_EQ(masked.GetMaskHost(), 0xFFF00000u);
  EXPECT_EQ(masked.GetMaskNetwork(), network);
  masked.HostSetMaskFromDWORD(0x12345678);
  EXPECT_EQ(masked.GetMaskNetwork(), 0x78563412u);
}

TEST(EIPMaskedAddress, SubnetOfTenOneTwoThree) {
  const EIPMaskedAddress masked = Masked(V4(10, 1, 2, 3), 24);
  EXPECT_EQ(masked.GetNetworkAddress().GetAsString(), "10.1.2.0");
  EXPECT_EQ(masked.GetBroadcastAddress().GetAsString(), "10.1.2.255");
  EXPECT_EQ(masked.GetMaskAsString(), "255.255.255.0");
  EXPECT_EQ(masked.GetMaskHost(), 0xFFFFFF00u);
  EXPECT_EQ(masked.GetNetworkAddress().GetType(), unsigned{eIPv4Address});
}

TEST(EIPMaskedAddress, IPv6NetworkAndBroadcast) {
  const EIPMaskedAddress masked = Masked(V6({0x2001, 0xdb8, 1, 2, 3, 4, 5, 6}), 48);
  EXPECT_EQ(masked.GetNetworkAddress().GetAsString(), "2001:DB8:1:0:0:0:0:0");
  EXPECT_EQ(masked.GetBroadcastAddress().GetAsString(), "2001:DB8:1:FFFF:FFFF:FFFF:FFFF:FFFF");
  EXPECT_EQ(masked.GetNetworkAddress().GetType(), unsigned{eIPv6Address});
}

TEST(EIPMaskedAddress, IsOnSameNetwork) {
  const EIPMaskedAddress masked = Masked(V4(10, 1, 2, 3), 24);
  EXPECT_TRUE(masked.IsOnSameNetwork(V4(10, 1, 2, 200)));
  EXPECT_FALSE(masked.IsOnSameNetwork(V4(10, 1, 3, 3)));
  const EIPMaskedAddress any = Masked(V4(10, 1, 2, 3), 0);
  EXPECT_TRUE(any.IsOnSameNetwork(V4(200, 0, 0, 1)));
  EXPECT_FALSE(any.IsOnSameNetwork(V6({})));  // lengths differ, even with a zero mask
  const EIPMaskedAddress six = Masked(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}), 64);
  EXPECT_TRUE(six.IsOnSameNetwork(V6({0x2001, 0xdb8, 0, 0, 9, 9, 9, 9})));
  EXPECT_FALSE(six.IsOnSameNetwork(V6({0x2001, 0xdb8, 0, 1, 0, 0, 0, 1})));
  EIPAddress unknown;
  unknown.Empty(5);  // 16 bytes like IPv6
  EXPECT_TRUE(six.IsOnSameNetwork(V6({0x2001, 0xdb8})) && !six.IsOnSameNetwork(unknown));
}

TEST(EIPMaskedAddress, HostAddressWrapsWithinTheHostPart) {
  const EIPMaskedAddress net = Masked(V4(10, 1, 2, 0), 24);
  EXPECT_EQ(net.GetHostAddress(0).GetAsString(), "10.1.2.1");
  EXPECT_EQ(net.GetHostAddress(1).GetAsString(), "10.1.2.2");
  EXPECT_EQ(net.GetHostAddress(254).GetAsString(), "10.1.2.255");
  EXPECT_EQ(net.GetHostAddress(255).GetAsString(), "10.1.2.0");
  EXPECT_EQ(net.GetHostAddress(-5).GetAsString(), "10.1.2.1");
  // The host number starts from the network, not from this object's address.
  EXPECT_EQ(Masked(V4(10, 1, 2, 77), 24).GetHostAddress(0).GetAsString(), "10.1.2.1");
  EXPECT_EQ(Masked(V4(10, 1, 2, 77), 16).GetHostAddress(300).GetAsString(), "10.1.1.45");
}

TEST(EIPMaskedAddress, HostAddressOfLongPrefixesIsTheAddressItself) {
  // A /32 IPv4 mask is not above 126, but leaves no host bits: the network itself.
  EXPECT_EQ(Masked(V4(10, 1, 2, 77), 32).GetHostAddress(3).GetAsString(), "10.1.2.77");
  EXPECT_EQ(Masked(V4(10, 1, 2, 77), 31).GetHostAddress(0).GetAsString(), "10.1.2.77");
  EXPECT_EQ(Masked(V4(10, 1, 2, 77), 31).GetHostAddress(1).GetAsString(), "10.1.2.76");
  const EIPAddress own = Masked(V6({0x2001, 0, 0, 0, 0, 0, 0, 7}), 127).GetHostAddress(3);
  EXPECT_EQ(own.GetAsString(), "2001:0:0:0:0:0:0:7");
  EXPECT_EQ(Masked(V6({0x2001, 0, 0, 0, 0, 0, 0, 7}), 128).GetHostAddress(0).GetAsString(),
            "2001:0:0:0:0:0:0:7");
}

TEST(EIPMaskedAddress, IPv6HostAddressUsesOnlyTheFirstMaskWord) {
  // A prefix of 32 or more leaves no host bits in mask bytes 0-3: always the network.
  const EIPMaskedAddress six = Masked(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 0x55}), 64);
  EXPECT_EQ(six.GetHostAddress(0).GetAsString(), "2001:DB8:0:0:0:0:0:0");
  EXPECT_EQ(six.GetHostAddress(99).GetAsString(), "2001:DB8:0:0:0:0:0:0");
  // A shorter prefix adds the host number, incremented with prefix length 32, at the 32nd bit
  // from the top.
  const EIPMaskedAddress wide = Masked(V6({0x2001, 0xdb8}), 16);
  EXPECT_EQ(wide.GetHostAddress(0).GetAsString(), "2001:1:0:0:0:0:0:0");
  EXPECT_EQ(wide.GetHostAddress(0x10000).GetAsString(), "2001:1:0:0:0:0:0:0");
}

TEST(EIPMaskedAddress, EqualityComparesAddressAndMask) {
  EXPECT_TRUE(Masked(V4(1, 2, 3, 4), 24) == Masked(V4(1, 2, 3, 4), 24));
  EXPECT_FALSE(Masked(V4(1, 2, 3, 4), 24) == Masked(V4(1, 2, 3, 4), 25));
  EXPECT_FALSE(Masked(V4(1, 2, 3, 4), 24) == Masked(V4(1, 2, 3, 5), 24));
  // Only the 4 mask bytes of an IPv4 address count.
  EIPMaskedAddress a = Masked(V4(1, 2, 3, 4), 24);
  EIPMaskedAddress b = a;
  const unsigned char longer[6] = {0xFF, 0xFF, 0xFF, 0x00, 0xAB, 0xCD};
  b.SetMask(EBlob(longer, 6), eIPv4Address);
  EXPECT_TRUE(a == b);
  EXPECT_TRUE(a != Masked(V4(1, 2, 3, 4), 8));
}

TEST(EIPMaskedAddress, SwapTakesTheMaskOnlyFromAMaskedAddress) {
  EIPMaskedAddress a = Masked(V4(1, 1, 1, 1), 8);
  EIPMaskedAddress b = Masked(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}), 64);
  EIPAddress& other = b;
  a.Swap(other);
  EXPECT_EQ(a.GetAsString(), "FE80:0:0:0:0:0:0:1");
  EXPECT_EQ(a.GetMaskPrefixNumber(), 64u);
  EXPECT_EQ(b.GetAsString(), "1.1.1.1");
  EXPECT_EQ(b.GetMaskPrefixNumber(), 8u);
  EIPAddress plain = V4(9, 9, 9, 9);
  a.Swap(plain);
  EXPECT_EQ(a.GetAsString(), "9.9.9.9");
  EXPECT_EQ(plain.GetAsString(), "FE80:0:0:0:0:0:0:1");
  EXPECT_EQ(Mask16(a)[7], 0xFF);  // the /64 mask stayed
  // Through the base: the virtual call reaches the masked swap.
  EIPMaskedAddress c = Masked(V4(2, 2, 2, 2), 16);
  EIPAddress& base = c;
  EIPMaskedAddress d = Masked(V4(3, 3, 3, 3), 30);
  base.Swap(d);
  EXPECT_EQ(c.GetMaskPrefixNumber(), 30u);
  EXPECT_EQ(d.GetMaskPrefixNumber(), 16u);
}

TEST(EIPMaskedAddress, ArchiveForm) {
  const EIPMaskedAddress masked = Masked(V4(10, 1, 2, 3), 24);
  const std::string expected = std::string("403771666 17 287454021 4 ") + "\x0A\x01\x02\x03" +
                               "420548881 287454021 4 " + std::string("\xFF\xFF\xFF\x00", 4);
  EXPECT_EQ(BytesOf(masked), expected);
  // The free operator reaches the override through the base.
  const EIPAddress& base = masked;
  EXPECT_EQ(BytesOf(base), expected);
}

TEST(EIPMaskedAddress, RoundTrips) {
  for (const EIPMaskedAddress& masked :
       {Masked(V4(10, 1, 2, 3), 24), Masked(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}), 56)}) {
    EIPMaskedAddress read = Masked(V6({0xaaaa}), 3);
    ReadFrom(BytesOf(masked), read);
    EXPECT_TRUE(read == masked);
    EXPECT_EQ(read.GetMaskPrefixNumber(), masked.GetMaskPrefixNumber());
  }
}

TEST(EIPMaskedAddress, ReadsTheOldAddressLayout) {
  EIPMaskedAddress read = Masked(V6({0x1111, 0x2222, 0x3333, 0x4444}), 128);
  ReadFrom(std::string("403771665 287454021 4 ") + std::string("\x0A\x00\x00\x07", 4) +
               "420548881 287454021 4 " + std::string("\xFF\xFF\x00\x00", 4),
           read);
  EXPECT_EQ(read.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(read.GetAsString(), "10.0.0.7");
  EXPECT_EQ(read.GetAddress()[4], 0x33);  // bytes the old layout lacks keep their values
  // The mask is applied with SetMask: the bytes beyond the blob become zero.
  EXPECT_EQ(Mask16(read), (Bytes{0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(EIPMaskedAddress, WrongMaskSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EIPMaskedAddress masked;
        ReadFrom(std::string("403771666 17 287454021 4 ") + "\x0A\x01\x02\x03" +
                     "420548882 287454021 4 " + std::string("\xFF\xFF\xFF\x00", 4),
                 masked);
      },
      "x86_64/common/ehal/eIPMaskedAddress", 211, "EIPMaskedAddress::SerializeIn");
}

TEST(EIPMaskedAddress, WrongAddressSignatureIsReportedByTheAddress) {
  ExpectSerializeError(
      [] {
        EIPMaskedAddress masked;
        ReadFrom("420548881 287454021 4 abcd", masked);
      },
      "x86_64/common/ehal/eIPAddress", 522, "EIPAddress::SerializeIn");
}

#ifdef NETWORK_VALUES_HAVE_VIRTUAL_SLOTS
TEST(EIPMaskedAddress, OverridesKeepTheBaseSlots) {
  EXPECT_EQ(VirtualSlot(static_cast<void (EIPMaskedAddress::*)()>(&EIPMaskedAddress::Empty)), 2);
  EXPECT_EQ(VirtualSlot(static_cast<void (EIPMaskedAddress::*)(int)>(&EIPMaskedAddress::Empty)), 3);
  EXPECT_EQ(VirtualSlot(&EIPMaskedAddress::Swap), 4);
  EXPECT_EQ(VirtualSlot(&EIPMaskedAddress::SerializeOut), 5);
  EXPECT_EQ(VirtualSlot(&EIPMaskedAddress::SerializeIn), 6);
}
#endif

}  // namespace
