#include "eIPAddress.h"

#include <algorithm>
#include <cstring>

#include "eBlob.h"
#include "eByteOrder.h"
#include "eInetAddr.h"
#include "eInteger16Byte.h"
#include "eRecordSchema.h"
#include "eTextDigits.h"

using eHal::detail::BlobOfCodec;
using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::kSignedOutUnsignedIn;
using eHal::detail::Layout;
using eHal::detail::Property;
using eHal::detail::ReadBigEndian32;
using eHal::detail::ReadRecord;
using eHal::detail::Set;
using eHal::detail::Write;
using eHal::detail::WriteBigEndian32;
using eHal::detail::WriteDecimal;
using eHal::detail::WriteUpperHex;

struct EIPAddress::Schema {
  // The address bytes travel as a blob of 4 or 16 bytes, by the type before them.
  static void SetAddressBytes(EIPAddress& address, const EBlob& bytes) {
    address.SetAddress(bytes, address.m_Type);
  }

  static constexpr auto kFields = std::make_tuple(
      Field("Type", &EIPAddress::m_Type, kSignedOutUnsignedIn),
      Property<EIPAddress>("Address",
                           BlobOfCodec<&EIPAddress::GetAddressAsBlob, SetAddressBytes>{}));
  // The old layout carries no type: the address is IPv4.
  static constexpr Layout kLayouts[] = {{0x18111112}, {0x18111111, From("Address")}};
  // The type is set before the signature is checked, so a refused record still leaves it.
  static constexpr auto kOnSignature = Set(&EIPAddress::m_Type, unsigned{eIPv4Address});
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPAddress", 522,
                                              "EIPAddress::SerializeIn"};
};

void EIPAddress::Empty() {
  // Qualified, so that a derived class's Empty(int) does not run in place of this one.
  EIPAddress::Empty(eIPv4Address);
}

void EIPAddress::Empty(int type) {
  m_Type = static_cast<unsigned int>(type);
  std::memset(m_Address, 0, sizeof m_Address);
}

void EIPAddress::Swap(EIPAddress& other) {
  std::swap(m_Type, other.m_Type);
  std::swap(m_Address, other.m_Address);
}

void EIPAddress::SerializeOut(EArchive& archive) const {
  Write<Schema>(archive, *this);
}

void EIPAddress::SerializeIn(EArchive& archive) {
  ReadRecord<Schema>(archive, *this);
}

void EIPAddress::SetAddress(const unsigned char* bytes, unsigned int type) {
  if (bytes == nullptr) return;
  m_Type = type;
  std::memcpy(m_Address, bytes, AddressLength(type));
}

void EIPAddress::SetAddress(const unsigned char* bytes, unsigned int length, unsigned int type) {
  Zero(0, 128);
  if (bytes == nullptr) return;
  m_Type = type;
  std::memcpy(m_Address, bytes, std::min(length, kMaxAddressLength));
}

void EIPAddress::SetAddress(const EBlob& blob, unsigned int type) {
  m_Type = type;
  const unsigned int count = std::min(AddressLength(type), blob.GetSize());
  if (count > 0) std::memcpy(m_Address, blob.GetData(), count);
}

void EIPAddress::SetAddress(const eHal::Integer16Byte& value, unsigned int type) {
  m_Type = type;
  value.Get(m_Address);
}

EBlob EIPAddress::GetAddressAsBlob() const {
  return EBlob(m_Address, GetAddressLength());
}

void EIPAddress::Encode(EBlob& blob, int offset) const {
  const unsigned int length = GetAddressLength();
  if (offset < 0 || static_cast<unsigned long>(offset) + length > blob.GetCapacity()) return;
  const unsigned int start = static_cast<unsigned int>(offset);
  for (unsigned int i = 0; i < length; ++i)
    blob.Memset(m_Address[i], start + i, 1);
}

void EIPAddress::Decode(const EBlob& blob, int offset, int type) {
  m_Type = static_cast<unsigned int>(type);
  if (offset < 0) return;
  blob.GetAt(m_Address, static_cast<unsigned int>(offset), GetAddressLength());
}

EIPAddress EIPAddress::GetMappedIPv4FromIPv6() const {
  EIPAddress mapped;
  mapped.SetAddress(m_Address + 12, eIPv4Address);
  return mapped;
}

namespace {
// Where the n-th byte from the least significant end of the first `bitLength` bits lies: it
// ends `bits` bits into byte `index` (1..8), the rest coming from byte index - 1.
struct NthBytePlace {
  int index;
  int bits;
};

bool FindNthByte(int bitLength, int n, NthBytePlace& place) {
  if (bitLength < 1) return false;
  const long index = static_cast<long>((bitLength - 1) / 8) - n;
  if (index < 0 || index >= static_cast<long>(EIPAddress::kMaxAddressLength)) return false;
  place.index = static_cast<int>(index);
  place.bits = (bitLength - 1) % 8 + 1;
  return true;
}
}  // namespace

int EIPAddress::GetNthByteFromOffset(int bitLength, int n) const {
  NthBytePlace place{};
  if (!FindNthByte(bitLength, n, place)) return 0;
  const int low = m_Address[place.index] >> (8 - place.bits);
  if (place.index == 0) return low;
  return low + (m_Address[place.index - 1] << place.bits);
}

void EIPAddress::SetNthByteAtOffset(unsigned char value, int bitLength, int n) {
  NthBytePlace place{};
  if (!FindNthByte(bitLength, n, place)) return;
  const int k = place.bits;
  unsigned char& low = m_Address[place.index];
  low = static_cast<unsigned char>((low & (0xFF >> k)) | (value << (8 - k)));
  if (place.index == 0) return;
  unsigned char& high = m_Address[place.index - 1];
  high = static_cast<unsigned char>((high & (0xFF << (8 - k))) | (value >> k));
}

void EIPAddress::Zero(unsigned int first, unsigned int end) {
  if (first >= end || first >= 128) return;
  eHal::Integer16Byte bits = GetAsInteger();
  bits.Zero(static_cast<int>(first), static_cast<int>(std::min(end, 128u)));
  bits.Get(m_Address);
}

bool EIPAddress::IsEqual(const EIPAddress& other) const {
  return m_Type == other.m_Type && std::memcmp(m_Address, other.m_Address, GetAddressLength()) == 0;
}

bool EIPAddress::IsEqual(const std::string& text) const {
  const unsigned int parsed = EInetAddr(text.c_str());
  const unsigned char bytes[4] = {
      static_cast<unsigned char>(parsed), static_cast<unsigned char>(parsed >> 8),
      static_cast<unsigned char>(parsed >> 16), static_cast<unsigned char>(parsed >> 24)};
  EIPAddress other;
  other.SetAddress(bytes, eIPv4Address);
  return IsEqual(other);
}

bool EIPAddress::operator<(const EIPAddress& other) const {
  if (m_Type != other.m_Type) return m_Type < other.m_Type;
  return std::memcmp(m_Address, other.m_Address, GetAddressLength()) < 0;
}

bool EIPAddress::IsZero() const {
  if (m_Type != eIPv4Address && m_Type != eIPv6Address) return true;
  const unsigned char* const end = m_Address + GetAddressLength();
  return std::all_of(m_Address, end, [](unsigned char byte) { return byte == 0; });
}

namespace {
bool IsIPv6Loopback(const unsigned char* bytes) {
  return std::all_of(bytes, bytes + 15, [](unsigned char byte) { return byte == 0; }) &&
         bytes[15] == 1;
}
}  // namespace

bool EIPAddress::IsLoopback() const {
  if (m_Type == eIPv4Address) return m_Address[0] == 127;
  if (m_Type == eIPv6Address) return IsIPv6Loopback(m_Address);
  return false;
}

bool EIPAddress::IsMulticast() const {
  if (m_Type == eIPv4Address) return ReadBigEndian32(m_Address) > 0xDFFFFFFFu;
  if (m_Type == eIPv6Address) return m_Address[0] == 0xFF;
  return false;
}

bool EIPAddress::IsIPv4MappedIPv6Address() const {
  static constexpr unsigned char kPrefix[12] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
  return std::memcmp(m_Address, kPrefix, sizeof kPrefix) == 0;
}

unsigned int EIPAddress::GetIPv6Scope() const {
  if (m_Type != eIPv6Address || IsZero()) return 0;
  if (IsIPv6Loopback(m_Address)) return 1;
  if (m_Address[0] == 0xFF) {
    switch (m_Address[1] & 0x0F) {
      case 2:
        return 2;
      case 5:
        return 3;
      default:
        return 4;
    }
  }
  if (m_Address[0] == 0xFE) {
    if ((m_Address[1] & 0xC0) == 0x80) return 5;
    if ((m_Address[1] & 0xC0) == 0xC0) return 6;
  }
  return 7;
}

void EIPAddress::Increment(unsigned int n, int prefixLength) {
  if (m_Type == eIPv4Address) {
    const unsigned int shift = (32u - static_cast<unsigned int>(prefixLength)) & 31u;
    WriteBigEndian32(m_Address, ReadBigEndian32(m_Address) + (n << shift));
  } else if (m_Type == eIPv6Address) {
    IncrementIPv6(n, prefixLength);
  }
}

void EIPAddress::IncrementIPv6(unsigned int n, int prefixLength) {
  eHal::Integer16Byte addend(static_cast<unsigned long>(n));
  addend <<= 128u - static_cast<unsigned int>(prefixLength);
  Increment(addend);
}

void EIPAddress::Increment(const eHal::Integer16Byte& value) {
  eHal::Integer16Byte sum = GetAsInteger();
  sum += value;
  sum.Get(m_Address);
}

void EIPAddress::Increment(const EIPAddress& other) {
  Increment(other.GetAsInteger());
}

EIPAddress EIPAddress::operator+(const EIPAddress& other) const {
  EIPAddress sum;
  unsigned int carry = 0;
  for (int i = static_cast<int>(GetAddressLength()) - 1; i >= 0; --i) {
    const unsigned int total = m_Address[i] + other.m_Address[i] + carry;
    sum.m_Address[i] = static_cast<unsigned char>(total);
    carry = total >> 8;
  }
  return sum;
}

std::string EIPAddress::GetAsString() const {
  char text[48];
  char* out = text;
  if (m_Type == eIPv4Address) {
    for (int i = 0; i < 4; ++i) {
      if (i > 0) *out++ = '.';
      out = WriteDecimal(out, m_Address[i]);
    }
  } else if (m_Type == eIPv6Address) {
    for (int group = 0; group < 8; ++group) {
      if (group > 0) *out++ = ':';
      const unsigned int value = (m_Address[2 * group] << 8) | m_Address[2 * group + 1];
      out = WriteUpperHex(out, value);
    }
  } else {
    return "unknown type";
  }
  return std::string(text, out);
}

eHal::Integer16Byte EIPAddress::GetAsInteger() const {
  eHal::Integer16Byte value;
  value.Set(m_Address);
  return value;
}

template class ERecord<EIPAddress>;
