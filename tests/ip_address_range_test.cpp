#include "eIPAddressRange.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"
#include "network_values.h"

namespace {

using namespace network_values;

EIPAddress V6Last(unsigned char last) {
  unsigned char bytes[16] = {};
  bytes[15] = last;
  EIPAddress address;
  address.SetAddress(bytes, eIPv6Address);
  return address;
}

TEST(EIPAddressRange, DefaultIsIPv4ZeroWithCountOne) {
  EIPAddressRange range;
  EXPECT_EQ(range.GetIPAddress(), V4(0, 0, 0, 0));
  EXPECT_EQ(range.GetRangeCount(), 1u);
  range = Range(V6Last(1), 9);
  range.Empty();
  EXPECT_EQ(range.GetIPAddress(), V4(0, 0, 0, 0));
  EXPECT_EQ(range.GetRangeCount(), 1u);
}

TEST(EIPAddressRange, CopyAndAssign) {
  const EIPAddressRange range = Range(V4(10, 0, 0, 1), 5);
  const EIPAddressRange copy(range);
  EXPECT_EQ(copy, range);
  EIPAddressRange assigned;
  assigned = range;
  assigned = assigned;
  EXPECT_EQ(assigned, range);
  EIPAddressRange copied;
  copied.Copy(range);
  EXPECT_EQ(copied.GetRangeCount(), 5u);
  EXPECT_EQ(copied.GetIPAddress().GetAsString(), "10.0.0.1");
}

TEST(EIPAddressRange, EqualityNeedsAddressAndCount) {
  EXPECT_TRUE(Range(V4(1, 2, 3, 4), 2).IsEqual(Range(V4(1, 2, 3, 4), 2)));
  EXPECT_FALSE(Range(V4(1, 2, 3, 4), 2) == Range(V4(1, 2, 3, 4), 3));
  EXPECT_FALSE(Range(V4(1, 2, 3, 4), 2) == Range(V4(1, 2, 3, 5), 2));
  EXPECT_TRUE(Range(V4(1, 2, 3, 4), 2) != Range(V6Last(1), 2));
}

TEST(EIPAddressRange, OrderByAddressThenCount) {
  const EIPAddressRange two = Range(V4(10, 0, 0, 1), 2);
  const EIPAddressRange three = Range(V4(10, 0, 0, 1), 3);
  const EIPAddressRange before = Range(V4(9, 255, 255, 255), 100);
  EXPECT_TRUE(two < three);
  EXPECT_FALSE(three < two);
  EXPECT_TRUE(before < two);
  EXPECT_TRUE(before < three);
  EXPECT_FALSE(two < before);
  EXPECT_TRUE(Range(V4(255, 255, 255, 255), 1000) < Range(V6Last(0), 1));
  EXPECT_FALSE(two < two);
}

// Property: a map keyed by ranges keeps them in (address, count) order and unique.
TEST(EIPAddressRange, OrderIsAStrictWeakOrder) {
  std::mt19937 random(17);
  std::vector<EIPAddressRange> ranges;
  for (int i = 0; i < 50; ++i) {
    const EIPAddress first = random() % 3 == 0
                                 ? V6Last(static_cast<unsigned char>(random() % 3))
                                 : V4(10, 0, 0, static_cast<unsigned char>(random() % 3));
    ranges.push_back(Range(first, random() % 3));
  }
  ExpectStrictWeakOrder(ranges);
  std::map<EIPAddressRange, int> keyed;
  for (const EIPAddressRange& range : ranges)
    keyed[range] = 0;
  const EIPAddressRange* previous = nullptr;
  for (const auto& entry : keyed) {
    if (previous != nullptr) {
      EXPECT_TRUE(previous->GetIPAddress() < entry.first.GetIPAddress() ||
                  (previous->GetIPAddress() == entry.first.GetIPAddress() &&
                   previous->GetRangeCount() < entry.first.GetRangeCount()));
    }
    previous = &entry.first;
  }
}

TEST(EIPAddressRange, SetIPAddressesFromAndThru) {
  EIPAddressRange range;
  range.SetIPAddresses(Blob({10, 0, 0, 1}), Blob({10, 0, 0, 9}));
  EXPECT_EQ(range.GetIPAddress().GetAsString(), "10.0.0.1");
  EXPECT_EQ(range.GetRangeCount(), 9u);
  range.SetIPAddresses(Blob({10, 0, 0, 9}), Blob({10, 0, 0, 1}));
  EXPECT_EQ(range.GetRangeCount(), 1u);
  EXPECT_EQ(range.GetIPAddress().GetAsString(), "10.0.0.9");
  range.SetIPAddresses(Blob({10, 0, 0, 5}), Blob({10, 0, 0, 5}));
  EXPECT_EQ(range.GetRangeCount(), 1u);
}

TEST(EIPAddressRange, SetIPAddressesUsesTheCapacity) {
  EIPAddressRange range;
  // A blob holding two bytes reads as 0.
  range.SetIPAddresses(Blob({0, 0}), Blob({0, 0, 0, 4}));
  EXPECT_EQ(range.GetRangeCount(), 5u);
  // A blob whose size is 0 but whose allocation holds four bytes is read through the allocation.
  EBlob reserved = Blob({0, 0, 0, 7});
  reserved.Empty();
  EXPECT_EQ(reserved.GetSize(), 0u);
  range.SetIPAddresses(Blob({0, 0, 0, 1}), reserved);
  EXPECT_EQ(range.GetRangeCount(), 7u);
  // The first address becomes IPv4 from the first blob.
  EIPAddressRange six = Range(V6Last(3), 1);
  six.SetIPAddresses(Blob({192, 168, 1, 1}), Blob({192, 168, 1, 10}));
  EXPECT_EQ(six.GetIPAddress().GetAsString(), "192.168.1.1");
  EXPECT_EQ(six.GetRangeCount(), 10u);
}

TEST(EIPAddressRange, AddressesAtFromAndThru) {
  const EIPAddressRange range = Range(V4(10, 0, 0, 250), 10);
  EXPECT_EQ(Contents(range.GetIPAddressThru()), (Bytes{10, 0, 1, 3}));
  EXPECT_EQ(Contents(range.GetIPAddressAt(0)), (Bytes{10, 0, 0, 250}));
  EXPECT_EQ(Contents(range.GetIPAddressAt(6)), (Bytes{10, 0, 1, 0}));
  EXPECT_EQ(Contents(range.GetIPAddressFrom()), (Bytes{10, 0, 0, 250}));
  EXPECT_EQ(Contents(Range(V4(255, 255, 255, 255), 2).GetIPAddressThru()), (Bytes{0, 0, 0, 0}));
  // A count of 0 gives the address before the first, modulo 2^32.
  EXPECT_EQ(Contents(Range(V4(10, 0, 0, 0), 0).GetIPAddressThru()), (Bytes{9, 255, 255, 255}));
  const EIPAddressRange six = Range(V6Last(5), 3);
  EXPECT_EQ(six.GetIPAddressFrom().GetSize(), 16u);
  EXPECT_EQ(Contents(six.GetIPAddressThru()), (Bytes{0, 0, 0, 2}));  // first four bytes only
}

TEST(EIPAddressRange, ArchiveForm) {
  EXPECT_EQ(BytesOf(Range(V4(10, 0, 0, 1), 3)),
            std::string("1145324612 403771666 17 287454021 4 ") +
                std::string("\x0A\x00\x00\x01", 4) + "3 ");
}

TEST(EIPAddressRange, RoundTrip) {
  for (const EIPAddressRange& range : {Range(V4(10, 0, 0, 1), 3), Range(V6Last(9), 4000000000u)}) {
    EIPAddressRange read = Range(V4(1, 1, 1, 1), 77);
    ReadFrom(BytesOf(range), read);
    EXPECT_EQ(read, range);
  }
}

TEST(EIPAddressRange, ReadsTheOldAddressLayoutInside) {
  EIPAddressRange read = Range(V6Last(9), 77);
  ReadFrom(
      std::string("1145324612 403771665 287454021 4 ") + std::string("\x0A\x00\x00\x02", 4) + "12 ",
      read);
  EXPECT_EQ(read.GetIPAddress().GetAsString(), "10.0.0.2");
  EXPECT_EQ(read.GetRangeCount(), 12u);
}

TEST(EIPAddressRange, WrongSignatureIsFatal) {
  ExpectSerializeError(
      [] {
        EIPAddressRange range;
        ReadFrom("1145324613 403771666 17 287454021 4 abcd3 ", range);
      },
      "x86_64/common/ehal/eIPAddressRange", 195, "EIPAddressRange::SerializeIn");
}

}  // namespace
