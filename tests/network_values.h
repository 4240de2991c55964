// Builders and checks shared by the tests of the network value types.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "eBlob.h"
#include "eIPAddress.h"
#include "eIPAddressRange.h"
#include "eMACAddress.h"
#include "eMACAddressRange.h"

namespace network_values {

using Bytes = std::vector<unsigned char>;

inline EIPAddress V4(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
  const unsigned char bytes[4] = {a, b, c, d};
  EIPAddress address;
  address.SetAddress(bytes, eIPv4Address);
  return address;
}

// An IPv6 address from up to eight 16-bit groups; missing groups are zero.
inline EIPAddress V6(const std::vector<unsigned int>& groups) {
  unsigned char bytes[16] = {};
  for (std::size_t i = 0; i < groups.size() && i < 8; ++i) {
    bytes[2 * i] = static_cast<unsigned char>(groups[i] >> 8);
    bytes[2 * i + 1] = static_cast<unsigned char>(groups[i]);
  }
  EIPAddress address;
  address.SetAddress(bytes, eIPv6Address);
  return address;
}

inline EIPAddressRange Range(const EIPAddress& first, unsigned int count) {
  EIPAddressRange range;
  range.SetAddress(first);
  range.SetRangeCount(count);
  return range;
}

// A MAC address from its text form ("00:1a:2b:3c:4d:5e").
inline EMACAddress MAC(const std::string& text) {
  EMACAddress mac;
  mac.SetAsString(text);
  return mac;
}

inline EMACAddressRange MACRange(const std::string& first, unsigned int count, int mode) {
  EMACAddressRange range;
  range.SetMACAddress(MAC(first));
  range.SetMACRangeCount(count);
  range.SetMACMode(mode);
  return range;
}

inline Bytes Contents(const EBlob& blob) {
  if (blob.GetSize() == 0) return {};
  return Bytes(blob.GetData(), blob.GetData() + blob.GetSize());
}

inline EBlob Blob(const Bytes& bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

// Checks that operator< is irreflexive, asymmetric and transitive over `values`, and that
// incomparable values are exactly the equal ones.
template <typename T>
void ExpectStrictWeakOrder(const std::vector<T>& values) {
  for (const T& a : values) {
    EXPECT_FALSE(a < a);
    for (const T& b : values) {
      const bool less = a < b;
      const bool greater = b < a;
      EXPECT_FALSE(less && greater);
      EXPECT_EQ(!less && !greater, a == b);
      for (const T& c : values) {
        if (less && b < c) {
          EXPECT_TRUE(a < c);
        }
      }
    }
  }
}

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#define NETWORK_VALUES_HAVE_VIRTUAL_SLOTS 1
// Under the x86-64 C++ ABI a pointer to a virtual member holds 1 + its byte offset in the
// virtual table, which pins the declaration order of the virtual operations.
template <typename Member>
std::ptrdiff_t VirtualSlot(Member member) {
  struct Representation {
    std::uintptr_t pointer;
    std::ptrdiff_t adjustment;
  } representation{};
  static_assert(sizeof(Member) == sizeof(Representation), "unexpected member pointer size");
  std::memcpy(&representation, &member, sizeof representation);
  return static_cast<std::ptrdiff_t>((representation.pointer - 1) / sizeof(void*));
}
#endif

}  // namespace network_values
