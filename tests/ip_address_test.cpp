#include "eIPAddress.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"
#include "eInteger16Byte.h"
#include "network_values.h"

namespace {

using namespace network_values;

Bytes All16(const EIPAddress& address) {
  return Bytes(address.GetAddress(), address.GetAddress() + 16);
}

TEST(EIPAddress, DefaultIsIPv4Zero) {
  const EIPAddress address;
  EXPECT_EQ(address.GetType(), 17u);
  EXPECT_EQ(All16(address), Bytes(16, 0));
  EXPECT_EQ(address.GetAsString(), "0.0.0.0");
  EXPECT_EQ(address.GetAddressLength(), 4u);
}

TEST(EIPAddress, EmptyAndEmptyWithType) {
  EIPAddress address = V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1});
  address.Empty();
  EXPECT_EQ(address.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(All16(address), Bytes(16, 0));
  address = V4(1, 2, 3, 4);
  address.Empty(eIPv6Address);
  EXPECT_EQ(address.GetType(), unsigned{eIPv6Address});
  EXPECT_EQ(All16(address), Bytes(16, 0));
  address.Empty(5);
  EXPECT_EQ(address.GetType(), 5u);
  EXPECT_EQ(address.GetAddressLength(), 16u);
}

TEST(EIPAddress, SwapExchangesTypeAndAllBytes) {
  EIPAddress a = V4(1, 2, 3, 4);
  EIPAddress b = V6({0xfe80, 0, 0, 0, 0, 0, 0, 9});
  a.Swap(b);
  EXPECT_EQ(a.GetAsString(), "FE80:0:0:0:0:0:0:9");
  EXPECT_EQ(b.GetAsString(), "1.2.3.4");
}

TEST(EIPAddress, SetAddressByType) {
  EIPAddress address = V6({0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff});
  address.SetAddress(nullptr, eIPv4Address);  // null changes nothing
  EXPECT_EQ(address.GetType(), unsigned{eIPv6Address});
  const unsigned char bytes[16] = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 1, 2, 3, 4, 5, 6};
  address.SetAddress(bytes, eIPv4Address);  // four bytes copied, the rest kept
  EXPECT_EQ(address.GetAsString(), "9.8.7.6");
  EXPECT_EQ(address.GetAddress()[4], 0xFF);
  address.SetAddress(bytes, eIPv6Address);
  EXPECT_EQ(All16(address), Bytes(bytes, bytes + 16));
}

TEST(EIPAddress, SetAddressWithLengthZeroesFirst) {
  EIPAddress address = V6({0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff});
  const unsigned char bytes[3] = {10, 20, 30};
  address.SetAddress(bytes, 3, eIPv4Address);
  EXPECT_EQ(address.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(All16(address), (Bytes{10, 20, 30, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  // A null pointer still zeroes the bytes but keeps the type.
  address.SetAddress(nullptr, 3, eIPv6Address);
  EXPECT_EQ(address.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(All16(address), Bytes(16, 0));
  // A length above 16 copies 16.
  unsigned char many[32];
  std::memset(many, 0xAB, sizeof many);
  address.SetAddress(many, 32, eIPv6Address);
  EXPECT_EQ(All16(address), Bytes(16, 0xAB));
}

TEST(EIPAddress, SetAddressFromBlobKeepsBytesBeyondTheBlob) {
  EIPAddress address = V6({0x1111, 0x2222, 0x3333, 0x4444, 0x5555, 0x6666, 0x7777, 0x8888});
  const unsigned char two[2] = {0xAA, 0xBB};
  address.SetAddress(EBlob(two, 2), eIPv6Address);
  EXPECT_EQ(address.GetAsString(), "AABB:2222:3333:4444:5555:6666:7777:8888");
  // A longer blob copies only the type's length.
  unsigned char eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  address.SetAddress(EBlob(eight, 8), eIPv4Address);
  EXPECT_EQ(address.GetAsString(), "1.2.3.4");
  EXPECT_EQ(address.GetAddress()[4], 0x33);
}

TEST(EIPAddress, SetAddressFromInteger) {
  EIPAddress address;
  address.SetAddress(eHal::Integer16Byte(0x0102ul), eIPv6Address);
  EXPECT_EQ(address.GetAsString(), "0:0:0:0:0:0:0:102");
}

TEST(EIPAddress, AddressAsBlobHasTheTypeLength) {
  EXPECT_EQ(Contents(V4(10, 0, 0, 1).GetAddressAsBlob()), (Bytes{10, 0, 0, 1}));
  EXPECT_EQ(V6({1}).GetAddressAsBlob().GetSize(), 16u);
  EIPAddress unknown;
  unknown.Empty(99);
  EXPECT_EQ(unknown.GetAddressAsBlob().GetSize(), 16u);
}

TEST(EIPAddress, EncodeNeedsCapacityNotSize) {
  EBlob blob;
  blob.Empty(10);  // capacity 10, size 0
  V4(1, 2, 3, 4).Encode(blob, 2);
  EXPECT_EQ(blob.GetSize(), 6u);
  EXPECT_EQ(Contents(blob), (Bytes{0, 0, 1, 2, 3, 4}));
  V4(9, 9, 9, 9).Encode(blob, 7);  // 7 + 4 > 10: nothing written
  EXPECT_EQ(blob.GetSize(), 6u);
  V4(5, 6, 7, 8).Encode(blob, 0);  // inside the size: the size stays
  EXPECT_EQ(Contents(blob), (Bytes{5, 6, 7, 8, 3, 4}));
  V4(5, 6, 7, 8).Encode(blob, -1);
  EXPECT_EQ(blob.GetSize(), 6u);
  EBlob small;
  small.Empty(15);
  V6({1}).Encode(small, 0);
  EXPECT_EQ(small.GetSize(), 0u);
}

TEST(EIPAddress, DecodeReadsAtOffset) {
  unsigned char bytes[20] = {};
  bytes[2] = 0xFE;
  bytes[3] = 0x80;
  bytes[17] = 7;
  const EBlob blob(bytes, 20);
  EIPAddress address;
  address.Decode(blob, 2, eIPv6Address);
  EXPECT_EQ(address.GetAsString(), "FE80:0:0:0:0:0:0:7");
  address.Decode(blob, 16, eIPv4Address);
  EXPECT_EQ(address.GetAsString(), "0.7.0.0");
  // Bytes outside the blob are not read; the address keeps its bytes.
  address.Decode(blob, 10, eIPv6Address);
  EXPECT_EQ(address.GetType(), unsigned{eIPv6Address});
  EXPECT_EQ(address.GetAsString(), "7:0:0:0:0:0:0:7");
  address.Decode(blob, -1, eIPv4Address);
  EXPECT_EQ(address.GetAsString(), "0.7.0.0");
}

TEST(EIPAddress, MappedIPv4TakesTheLastFourBytes) {
  const EIPAddress mapped = V6({0, 0, 0, 0, 0, 0xffff, 0xc0a8, 0x0001});
  EXPECT_TRUE(mapped.IsIPv4MappedIPv6Address());
  EXPECT_EQ(mapped.GetMappedIPv4FromIPv6(), V4(192, 168, 0, 1));
  // No check that the address is mapped.
  EXPECT_EQ(V6({0x2001, 0, 0, 0, 0, 0, 0x0a00, 0x0002}).GetMappedIPv4FromIPv6(), V4(10, 0, 0, 2));
}

TEST(EIPAddress, IPv4MappedIgnoresTheType) {
  EIPAddress address = V6({0, 0, 0, 0, 0, 0xffff, 0, 0});
  address.SetType(eIPv4Address);
  EXPECT_TRUE(address.IsIPv4MappedIPv6Address());
  EXPECT_FALSE(V6({0, 0, 0, 0, 0, 0xfffe, 0, 0}).IsIPv4MappedIPv6Address());
  EXPECT_FALSE(V6({0, 0, 0, 0, 1, 0xffff, 0, 0}).IsIPv4MappedIPv6Address());
}

TEST(EIPAddress, NthByteFromOffset) {
  const EIPAddress address = V4(10, 1, 2, 3);
  EXPECT_EQ(address.GetNthByteFromOffset(24, 0), 0x0102);
  EXPECT_EQ(address.GetNthByteFromOffset(24, 0) & 0xFF, 0x02);
  EXPECT_EQ(address.GetNthByteFromOffset(24, 1), 0x0A01);
  EXPECT_EQ(address.GetNthByteFromOffset(24, 2), 0x0A);
  EXPECT_EQ(address.GetNthByteFromOffset(24, 3), 0);
  EXPECT_EQ(address.GetNthByteFromOffset(32, 0), 0x0203);
  // A bit length that is not a multiple of 8: the first 20 bits of 10.1.2.3 are 0x0A010 and
  // byte 0 from the low end is 0x10 (0x0A01 << 4 | 0x0 >> 4, here i = 2, k = 4).
  EXPECT_EQ(address.GetNthByteFromOffset(20, 0), (0x02 >> 4) + (0x01 << 4));
  EXPECT_EQ(address.GetNthByteFromOffset(20, 0) & 0xFF, 0x10);
  EXPECT_EQ(address.GetNthByteFromOffset(20, 1) & 0xFF, 0xA0);
  EXPECT_EQ(address.GetNthByteFromOffset(20, 2) & 0xFF, 0x00);
  EXPECT_EQ(address.GetNthByteFromOffset(0, 0), 0);
  EXPECT_EQ(address.GetNthByteFromOffset(200, 0), 0);  // beyond the 16 bytes
}

TEST(EIPAddress, SetNthByteAtOffset) {
  EIPAddress address = V4(10, 1, 2, 3);
  address.SetNthByteAtOffset(0x99, 24, 0);
  EXPECT_EQ(address.GetAsString(), "10.1.153.3");
  address.SetNthByteAtOffset(0x77, 24, 3);  // i < 0: nothing
  EXPECT_EQ(address.GetAsString(), "10.1.153.3");
  // Twenty bits: the byte straddles bytes 1 and 2; the bits outside the window are kept.
  EIPAddress ones = V4(255, 255, 255, 255);
  ones.SetNthByteAtOffset(0x00, 20, 0);
  EXPECT_EQ(ones.GetAsString(), "255.240.15.255");
  EIPAddress zeros = V4(0, 0, 0, 0);
  zeros.SetNthByteAtOffset(0xAB, 20, 0);
  EXPECT_EQ(zeros.GetAsString(), "0.10.176.0");
  EXPECT_EQ(zeros.GetNthByteFromOffset(20, 0) & 0xFF, 0xAB);
}

// Property: setting the n-th byte of a bit window and reading it back gives the byte (only its
// low k bits for the partial top byte of the window), for every window inside the address.
TEST(EIPAddress, SetNthByteIsTheInverseOfGet) {
  std::mt19937 random(11);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int bitLength = 8; bitLength <= 128; ++bitLength) {
    for (int n = 0; n <= (bitLength - 1) / 8; ++n) {
      unsigned char bytes[16];
      for (unsigned char& b : bytes)
        b = static_cast<unsigned char>(byte(random));
      EIPAddress address;
      address.SetAddress(bytes, eIPv6Address);
      const unsigned char value = static_cast<unsigned char>(byte(random));
      address.SetNthByteAtOffset(value, bitLength, n);
      const bool topByte = n == (bitLength - 1) / 8;
      const int kept = topByte ? (1 << ((bitLength - 1) % 8 + 1)) - 1 : 0xFF;
      ASSERT_EQ(address.GetNthByteFromOffset(bitLength, n) & 0xFF, value & kept)
          << bitLength << " " << n;
      // Bits after the window are untouched.
      EIPAddress before;
      before.SetAddress(bytes, eIPv6Address);
      before.Zero(0, static_cast<unsigned int>(bitLength));
      EIPAddress after = address;
      after.Zero(0, static_cast<unsigned int>(bitLength));
      ASSERT_EQ(after, before);
    }
  }
}

TEST(EIPAddress, ZeroClearsABitRange) {
  EIPAddress address = V4(10, 1, 2, 3);
  address.Zero(24, 32);
  EXPECT_EQ(address.GetAsString(), "10.1.2.0");
  EIPAddress ones = V4(255, 255, 255, 255);
  ones.Zero(20, 28);
  EXPECT_EQ(ones.GetAsString(), "255.255.240.15");
  ones.Zero(3, 5);  // inside one byte
  EXPECT_EQ(ones.GetAsString(), "231.255.240.15");
  // Works on all 16 bytes whatever the type; an end above 128 clears to the end.
  EIPAddress wide = V6({0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff});
  wide.SetType(eIPv4Address);
  wide.Zero(120, 1000);
  EXPECT_EQ(wide.GetAddress()[15], 0);
  EXPECT_EQ(wide.GetAddress()[14], 0xFF);
  // Invalid ranges change nothing.
  wide.Zero(8, 8);
  wide.Zero(9, 4);
  wide.Zero(128, 200);
  EXPECT_EQ(wide.GetAddress()[1], 0xFF);
  wide.Zero(0, 128);
  EXPECT_EQ(All16(wide), Bytes(16, 0));
}

TEST(EIPAddress, EqualityUsesTypeAndLength) {
  EIPAddress a = V4(1, 2, 3, 4);
  EIPAddress b = V6({0x0102, 0x0304, 0xffff});
  b.SetType(eIPv4Address);  // same first four bytes, different rest
  EXPECT_TRUE(a.IsEqual(b));
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a != b);
  b.SetType(eIPv6Address);
  EXPECT_FALSE(a == b);
  EIPAddress c = V6({0x0102, 0x0304, 0xffff});
  EXPECT_TRUE(b == c);
  c = V6({0x0102, 0x0304, 0xfffe});
  EXPECT_FALSE(b == c);
}

TEST(EIPAddress, EqualityWithDottedText) {
  EXPECT_TRUE(V4(192, 168, 0, 1).IsEqual(std::string("192.168.0.1")));
  EXPECT_FALSE(V4(192, 168, 0, 1).IsEqual(std::string("192.168.0.2")));
  EXPECT_FALSE(V6({0xc0a8, 0x0001}).IsEqual(std::string("192.168.0.1")));
  // Malformed text parses to the all-ones value.
  EXPECT_TRUE(V4(255, 255, 255, 255).IsEqual(std::string("not an address")));
  EXPECT_FALSE(V4(0, 0, 0, 0).IsEqual(std::string("")));
}

TEST(EIPAddress, OrderPutsIPv4First) {
  const EIPAddress allOnes = V4(255, 255, 255, 255);
  const EIPAddress any = V6({});
  const EIPAddress loopback = V6({0, 0, 0, 0, 0, 0, 0, 1});
  EXPECT_TRUE(allOnes < any);
  EXPECT_FALSE(any < allOnes);
  EXPECT_TRUE(any < loopback);
  EXPECT_TRUE(V4(9, 255, 255, 255) < V4(10, 0, 0, 0));
  EXPECT_TRUE(V4(10, 0, 0, 0) < V4(10, 0, 0, 1));
  EIPAddress unknown;
  unknown.Empty(5);
  EXPECT_TRUE(unknown < V4(0, 0, 0, 0));  // the smaller type value is less
  EXPECT_TRUE(loopback < V6({0xff02}));
}

TEST(EIPAddress, IPv4OrderIgnoresTheOtherTwelveBytes) {
  EIPAddress a = V6({0x0102, 0x0304, 0xffff});
  EIPAddress b = V6({0x0102, 0x0304, 0x0000, 0x1234});
  a.SetType(eIPv4Address);
  b.SetType(eIPv4Address);
  EXPECT_FALSE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_TRUE(a <= b);
  EXPECT_TRUE(a >= b);
}

TEST(EIPAddress, DerivedComparisons) {
  const EIPAddress low = V4(1, 1, 1, 1);
  const EIPAddress high = V4(1, 1, 1, 2);
  EXPECT_TRUE(low <= high);
  EXPECT_TRUE(low <= low);
  EXPECT_FALSE(high <= low);
  EXPECT_TRUE(high >= low);
  EXPECT_TRUE(low >= low);
  EXPECT_FALSE(low >= high);
}

// Property: the order is a strict weak order consistent with equality, and sorts IPv4 before
// IPv6 and otherwise like the unsigned bytes.
TEST(EIPAddress, OrderIsAStrictWeakOrder) {
  std::mt19937 random(3);
  std::uniform_int_distribution<int> smallByte(0, 2);
  std::vector<EIPAddress> addresses;
  for (int i = 0; i < 60; ++i) {
    unsigned char bytes[16];
    for (unsigned char& b : bytes)
      b = static_cast<unsigned char>(smallByte(random));
    EIPAddress address;
    address.SetAddress(bytes, i % 2 == 0 ? eIPv4Address : eIPv6Address);
    addresses.push_back(address);
  }
  ExpectStrictWeakOrder(addresses);
  for (const EIPAddress& a : addresses) {
    for (const EIPAddress& b : addresses) {
      if (a.GetType() != b.GetType()) {
        EXPECT_EQ(a < b, a.GetType() == eIPv4Address);
      }
    }
  }
  std::map<EIPAddress, int> keyed;
  for (const EIPAddress& a : addresses)
    keyed[a] = 1;
  const EIPAddress* previous = nullptr;
  for (const auto& entry : keyed) {
    if (previous != nullptr) {
      EXPECT_TRUE(*previous < entry.first);
      if (previous->GetType() == eIPv6Address) {
        EXPECT_EQ(entry.first.GetType(), unsigned{eIPv6Address});
      }
    }
    previous = &entry.first;
  }
}

TEST(EIPAddress, IsZero) {
  EXPECT_TRUE(V4(0, 0, 0, 0).IsZero());
  EXPECT_FALSE(V4(0, 0, 0, 1).IsZero());
  EXPECT_TRUE(V6({}).IsZero());
  EXPECT_FALSE(V6({0, 0, 0, 0, 0, 0, 0, 1}).IsZero());
  EIPAddress unknown = V6({0xffff});
  unknown.SetType(5);
  EXPECT_TRUE(unknown.IsZero());
  EIPAddress v4WithTail = V6({0, 0, 1});
  v4WithTail.SetType(eIPv4Address);
  EXPECT_TRUE(v4WithTail.IsZero());
}

TEST(EIPAddress, IsLoopback) {
  EXPECT_TRUE(V4(127, 0, 0, 1).IsLoopback());
  EXPECT_TRUE(V4(127, 255, 1, 2).IsLoopback());
  EXPECT_FALSE(V4(128, 0, 0, 1).IsLoopback());
  EXPECT_TRUE(V6({0, 0, 0, 0, 0, 0, 0, 1}).IsLoopback());
  EXPECT_FALSE(V6({0, 0, 0, 0, 0, 0, 0, 2}).IsLoopback());
  EXPECT_FALSE(V6({0x7f00, 0, 0, 0, 0, 0, 0, 1}).IsLoopback());
  EIPAddress unknown = V6({0, 0, 0, 0, 0, 0, 0, 1});
  unknown.SetType(7);
  EXPECT_FALSE(unknown.IsLoopback());
}

TEST(EIPAddress, IsMulticast) {
  EXPECT_FALSE(V4(223, 255, 255, 255).IsMulticast());
  EXPECT_TRUE(V4(224, 0, 0, 0).IsMulticast());
  EXPECT_TRUE(V4(239, 1, 2, 3).IsMulticast());
  EXPECT_TRUE(V4(240, 0, 0, 0).IsMulticast());  // deliberately included
  EXPECT_TRUE(V4(255, 255, 255, 255).IsMulticast());
  EXPECT_TRUE(V6({0xff02, 0, 0, 0, 0, 0, 0, 1}).IsMulticast());
  EXPECT_FALSE(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}).IsMulticast());
  EIPAddress unknown = V6({0xff02});
  unknown.SetType(3);
  EXPECT_FALSE(unknown.IsMulticast());
}

TEST(EIPAddress, IPv6ScopeTable) {
  EXPECT_EQ(V4(127, 0, 0, 1).GetIPv6Scope(), 0u);
  EXPECT_EQ(V6({}).GetIPv6Scope(), 0u);
  EXPECT_EQ(V6({0, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 1u);
  EXPECT_EQ(V6({0xff02, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 2u);
  EXPECT_EQ(V6({0xff12, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 2u);
  EXPECT_EQ(V6({0xff05, 0, 0, 0, 0, 0, 0, 2}).GetIPv6Scope(), 3u);
  EXPECT_EQ(V6({0xff0e, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 4u);
  EXPECT_EQ(V6({0xff01, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 4u);
  EXPECT_EQ(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 5u);
  EXPECT_EQ(V6({0xfebf, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 5u);
  EXPECT_EQ(V6({0xfec0, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 6u);
  EXPECT_EQ(V6({0xfeff, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 6u);
  EXPECT_EQ(V6({0xfe40, 0, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 7u);
  EXPECT_EQ(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}).GetIPv6Scope(), 7u);
  EXPECT_EQ(V6({0, 0, 0, 0, 0, 0, 0, 2}).GetIPv6Scope(), 7u);
}

TEST(EIPAddress, IncrementIPv4) {
  EIPAddress address = V4(10, 0, 0, 5);
  address.Increment(1, 24);
  EXPECT_EQ(address.GetAsString(), "10.0.1.5");
  EIPAddress top = V4(255, 255, 255, 255);
  top.Increment(1, 32);
  EXPECT_EQ(top.GetAsString(), "0.0.0.0");
  EIPAddress zeroPrefix = V4(10, 0, 0, 1);
  zeroPrefix.Increment(3, 0);  // prefix 0 adds n itself, like 32
  EXPECT_EQ(zeroPrefix.GetAsString(), "10.0.0.4");
  EIPAddress eight = V4(10, 0, 0, 1);
  eight.Increment(247, 8);  // 10 + 247 wraps the top byte
  EXPECT_EQ(eight.GetAsString(), "1.0.0.1");
}

// Property: IPv4 increment is 32-bit unsigned arithmetic on the big-endian value.
TEST(EIPAddress, IncrementIPv4MatchesWordArithmetic) {
  std::mt19937 random(5);
  for (int round = 0; round < 3000; ++round) {
    const std::uint32_t start = random();
    const unsigned int n = random() % 2 == 0 ? random() % 300 : random();
    const int prefix = static_cast<int>(random() % 33);
    EIPAddress address =
        V4(static_cast<unsigned char>(start >> 24), static_cast<unsigned char>(start >> 16),
           static_cast<unsigned char>(start >> 8), static_cast<unsigned char>(start));
    address.Increment(n, prefix);
    const std::uint32_t expected = start + (n << ((32 - prefix) % 32));
    const unsigned char* b = address.GetAddress();
    const std::uint32_t actual = (std::uint32_t{b[0]} << 24) | (std::uint32_t{b[1]} << 16) |
                                 (std::uint32_t{b[2]} << 8) | b[3];
    ASSERT_EQ(actual, expected) << start << " + " << n << " / " << prefix;
  }
}

TEST(EIPAddress, IncrementIPv6) {
  EIPAddress address = V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1});
  address.IncrementIPv6(1, 64);
  EXPECT_EQ(address.GetAsString(), "2001:DB8:0:1:0:0:0:1");
  EIPAddress upper = V6({0xffff, 0xffff, 0xffff, 0xffff, 0, 0, 0, 0});
  upper.IncrementIPv6(1, 64);
  EXPECT_EQ(upper.GetAsString(), "0:0:0:0:0:0:0:0");
  EIPAddress last = V6({0, 0, 0, 0, 0, 0, 0, 0xffff});
  last.Increment(1, 128);  // through Increment: the addend is n
  EXPECT_EQ(last.GetAsString(), "0:0:0:0:0:0:1:0");
  EIPAddress wrap = V6({0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff});
  wrap.IncrementIPv6(1, 128);
  EXPECT_TRUE(wrap.IsZero());
  EIPAddress top = V6({0x1000});
  top.IncrementIPv6(0x3, 1);  // 3 << 127: the high bit is lost beyond the top
  EXPECT_EQ(top.GetAsString(), "9000:0:0:0:0:0:0:0");
  EIPAddress none = V6({0x1000});
  none.IncrementIPv6(5, 0);  // shift of 128: everything is lost
  EXPECT_EQ(none.GetAsString(), "1000:0:0:0:0:0:0:0");
}

// Property: IPv6 increment is bytewise addition of n << (128 - prefix) modulo 2^128.
TEST(EIPAddress, IncrementIPv6MatchesBytewiseReference) {
  std::mt19937 random(9);
  for (int round = 0; round < 2000; ++round) {
    unsigned char bytes[16];
    for (unsigned char& b : bytes)
      b = static_cast<unsigned char>(random() % 3 == 0 ? 0xFF : random());
    const unsigned int n = random();
    const int prefix = 1 + static_cast<int>(random() % 128);
    EIPAddress address;
    address.SetAddress(bytes, eIPv6Address);
    address.IncrementIPv6(n, prefix);
    // Reference: addend bits placed bit by bit.
    unsigned char addend[16] = {};
    const int shift = 128 - prefix;
    for (int bit = 0; bit < 32; ++bit) {
      if (((n >> bit) & 1u) == 0) continue;
      const int position = bit + shift;  // from the least significant end
      if (position >= 128) continue;
      addend[15 - position / 8] |= static_cast<unsigned char>(1u << (position % 8));
    }
    unsigned int carry = 0;
    for (int i = 15; i >= 0; --i) {
      const unsigned int total = bytes[i] + addend[i] + carry;
      bytes[i] = static_cast<unsigned char>(total);
      carry = total >> 8;
    }
    ASSERT_EQ(All16(address), Bytes(bytes, bytes + 16)) << "round " << round;
  }
}

TEST(EIPAddress, IncrementIgnoresUnknownTypes) {
  EIPAddress unknown = V6({0, 0, 0, 0, 0, 0, 0, 1});
  unknown.SetType(9);
  unknown.Increment(1, 128);
  EXPECT_EQ(unknown.GetAddress()[15], 1);
}

TEST(EIPAddress, IncrementByWideValuesUsesAllSixteenBytes) {
  EIPAddress address = V4(0, 0, 0, 0);
  address.Increment(eHal::Integer16Byte(1ul));  // lands in byte 15, ignored by IPv4
  EXPECT_EQ(address.GetAsString(), "0.0.0.0");
  EXPECT_EQ(address.GetAddress()[15], 1);
  EIPAddress six = V6({0x2001, 0, 0, 0, 0, 0, 0, 0xffff});
  six.Increment(V6({0, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(six.GetAsString(), "2001:0:0:0:0:0:1:0");
}

TEST(EIPAddress, PlusIsBytewiseWithCarryAndAlwaysIPv4) {
  const EIPAddress sum = V4(10, 0, 0, 250) + V4(0, 0, 0, 10);
  EXPECT_EQ(sum.GetAsString(), "10.0.1.4");
  EXPECT_EQ((V4(255, 255, 255, 255) + V4(0, 0, 0, 1)).GetAsString(), "0.0.0.0");
  const EIPAddress wide = V6({0x2001, 0, 0, 0, 0, 0, 0, 0xffff}) + V6({0, 0, 0, 0, 0, 0, 0, 1});
  EXPECT_EQ(wide.GetType(), unsigned{eIPv4Address});  // deliberate: callers set the type
  EIPAddress typed = wide;
  typed.SetType(eIPv6Address);
  EXPECT_EQ(typed.GetAsString(), "2001:0:0:0:0:0:1:0");
  // An IPv4 left operand sums only four bytes.
  const EIPAddress four = V4(1, 1, 1, 1) + V6({0, 0, 0, 0, 0, 0, 0, 5});
  EXPECT_EQ(four.GetAsString(), "1.1.1.1");
  EXPECT_EQ(four.GetAddress()[15], 0);
}

TEST(EIPAddress, TextForms) {
  EXPECT_EQ(V4(192, 168, 0, 1).GetAsString(), "192.168.0.1");
  EXPECT_EQ(V4(255, 255, 255, 255).GetAsString(), "255.255.255.255");
  EXPECT_EQ(V6({0, 0, 0, 0, 0, 0, 0, 1}).GetAsString(), "0:0:0:0:0:0:0:1");
  EXPECT_EQ(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}).GetAsString(), "FE80:0:0:0:0:0:0:1");
  EXPECT_EQ(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}).GetAsString(), "2001:DB8:0:0:0:0:0:1");
  EXPECT_EQ(V6({0xffff, 0xabcd, 0x0a, 0xa0, 0x100, 0x1000, 0xf, 0}).GetAsString(),
            "FFFF:ABCD:A:A0:100:1000:F:0");
  EIPAddress unknown;
  unknown.Empty(42);
  EXPECT_EQ(unknown.GetAsString(), "unknown type");
}

TEST(EIPAddress, ArchiveFormOfIPv4) {
  EXPECT_EQ(BytesOf(V4(10, 0, 0, 1)),
            std::string("403771666 17 287454021 4 ") + std::string("\x0A\x00\x00\x01", 4));
}

TEST(EIPAddress, ArchiveFormOfIPv6) {
  const EIPAddress address = V6({0xfe80, 0, 0, 0, 0, 0, 0, 1});
  std::string expected = "403771666 18 287454021 16 ";
  expected += std::string("\xFE\x80", 2) + std::string(13, '\0') + "\x01";
  EXPECT_EQ(BytesOf(address), expected);
}

TEST(EIPAddress, RoundTrips) {
  for (const EIPAddress& address :
       {V4(10, 0, 0, 1), V4(255, 255, 255, 255), V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1})}) {
    EIPAddress read = V6({0x1234, 0x5678});
    ReadFrom(BytesOf(address), read);
    EXPECT_EQ(read, address);
  }
}

TEST(EIPAddress, OldSignatureReadsIPv4IntoAPrefilledAddress) {
  EIPAddress read = V6({0x1111, 0x2222, 0x3333, 0x4444, 0x5555, 0x6666, 0x7777, 0x8888});
  ReadFrom(std::string("403771665 287454021 4 ") + std::string("\xC0\xA8\x00\x01", 4), read);
  EXPECT_EQ(read.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(read.GetAsString(), "192.168.0.1");
  // The twelve bytes the old layout lacks keep their values.
  EXPECT_EQ(All16(read), (Bytes{0xC0, 0xA8, 0x00, 0x01, 0x33, 0x33, 0x44, 0x44, 0x55, 0x55, 0x66,
                                0x66, 0x77, 0x77, 0x88, 0x88}));
}

TEST(EIPAddress, ShortBlobLeavesTheRemainingBytes) {
  EIPAddress read = V6({0x1111, 0x2222, 0x3333, 0x4444, 0x5555, 0x6666, 0x7777, 0x8888});
  ReadFrom(std::string("403771666 18 287454021 2 ") + std::string("\xAB\xCD", 2), read);
  EXPECT_EQ(read.GetAsString(), "ABCD:2222:3333:4444:5555:6666:7777:8888");
}

TEST(EIPAddress, WrongSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EIPAddress address;
        ReadFrom("403771667 17 287454021 4 abcd", address);
      },
      "x86_64/common/ehal/eIPAddress", 522, "EIPAddress::SerializeIn");
}

TEST(EIPAddress, ReaderSetsTheTypeBeforeItChecksWhatFollows) {
  ScopedThrowingSerializeErrors throwing;
  // The type falls back to IPv4 as soon as the signature is read, even a refused one.
  EIPAddress refused = V6({0x1111, 0x2222});
  EXPECT_THROW(ReadFrom("403771667 18 287454021 16 ", refused), SerializeErrorThrown);
  EXPECT_EQ(refused.GetType(), unsigned{eIPv4Address});
  EXPECT_EQ(All16(refused), All16(V6({0x1111, 0x2222})));
  // The type of the current layout is taken before the address blob is read.
  EIPAddress typed = V4(10, 0, 0, 1);
  EXPECT_THROW(ReadFrom("403771666 18 1 4 abcd", typed), SerializeErrorThrown);
  EXPECT_EQ(typed.GetType(), unsigned{eIPv6Address});
  EXPECT_EQ(All16(typed), All16(V4(10, 0, 0, 1)));
}

TEST(EIPAddress, ArbitraryBytesNeverCrash) {
  ScopedThrowingSerializeErrors throwing;
  std::mt19937 random(13);
  for (int round = 0; round < 500; ++round) {
    std::string bytes = round % 2 == 0 ? "403771666 " : "403771665 ";
    const int length = static_cast<int>(random() % 40);
    for (int i = 0; i < length; ++i)
      bytes.push_back(static_cast<char>(random() % 2 == 0 ? '0' + random() % 10 : random()));
    EIPAddress address;
    address.SetType(eIPv6Address);
    try {
      ReadFrom(bytes, address);
    } catch (const SerializeErrorThrown&) {
    }
    // The old layout carries no type: whatever follows, the address is IPv4.
    if (round % 2 == 1) {
      EXPECT_EQ(address.GetType(), static_cast<unsigned int>(eIPv4Address));
    }
  }
}

#ifdef NETWORK_VALUES_HAVE_VIRTUAL_SLOTS
TEST(EIPAddress, VirtualOperationsKeepTheirSlotOrder) {
  // Slots 0 and 1 are the two destructors.
  EXPECT_EQ(VirtualSlot(static_cast<void (EIPAddress::*)()>(&EIPAddress::Empty)), 2);
  EXPECT_EQ(VirtualSlot(static_cast<void (EIPAddress::*)(int)>(&EIPAddress::Empty)), 3);
  EXPECT_EQ(VirtualSlot(&EIPAddress::Swap), 4);
  EXPECT_EQ(VirtualSlot(&EIPAddress::SerializeOut), 5);
  EXPECT_EQ(VirtualSlot(&EIPAddress::SerializeIn), 6);
}
#endif

}  // namespace
