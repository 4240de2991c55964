#include "eIPMaskedAddress.h"

#include <algorithm>
#include <cstring>

#include "eBlob.h"
#include "eByteOrder.h"
#include "eRecordSchema.h"

using eHal::detail::BasePartCodec;
using eHal::detail::BlobOfCodec;
using eHal::detail::KeptDescription;
using eHal::detail::Layout;
using eHal::detail::PartCodec;
using eHal::detail::Property;
using eHal::detail::ReadBigEndian32;
using eHal::detail::ReadRecord;
using eHal::detail::WriteBigEndian32;
using eHal::detail::WriteFields;

// The address record as EIPAddress writes it, then the mask: a signature of its own and the 4 or
// 16 mask bytes as a blob.
struct EIPMaskedAddress::Schema {
  // The mask bytes, read back for the address type read before them.
  static void SetMaskBytes(EIPMaskedAddress& masked, const EBlob& bytes) {
    masked.SetMask(bytes, static_cast<int>(masked.GetType()));
  }

  struct MaskSchema {
    static constexpr auto kFields = std::make_tuple(Property<EIPMaskedAddress>(
        "Mask", BlobOfCodec<&EIPMaskedAddress::GetMaskAsBlob, SetMaskBytes>{}));
    static constexpr Layout kLayouts[] = {{0x19111111}};
    static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPMaskedAddress", 211,
                                                "EIPMaskedAddress::SerializeIn"};
  };

  static constexpr auto kFields =
      std::make_tuple(Property<EIPMaskedAddress>("Address", BasePartCodec<EIPAddress>{}),
                      Property<EIPMaskedAddress>("Mask", PartCodec<MaskSchema>{}));
};

namespace {
constexpr unsigned char kPartialMaskBytes[8] = {0x00, 0x80, 0xC0, 0xE0, 0xF0, 0xF8, 0xFC, 0xFE};

// The prefix length a fresh mask of this type gets.
unsigned int DefaultPrefixLength(unsigned int type) {
  return type == eIPv6Address ? 64 : 24;
}
}  // namespace

EIPMaskedAddress::EIPMaskedAddress() {
  std::memset(m_Mask, 0xFF, 4);
}

EIPMaskedAddress::EIPMaskedAddress(const EIPAddress& address) : EIPAddress(address) {
  SetMaskPrefixNumber(DefaultPrefixLength(GetType()));
}

void EIPMaskedAddress::Empty() {
  EIPAddress::Empty();
  std::memset(m_Mask, 0xFF, 4);
}

void EIPMaskedAddress::Empty(int type) {
  EIPAddress::Empty(type);
  SetMaskPrefixNumber(DefaultPrefixLength(GetType()));
}

void EIPMaskedAddress::Swap(EIPAddress& other) {
  EIPAddress::Swap(other);
  if (auto* masked = dynamic_cast<EIPMaskedAddress*>(&other)) std::swap(m_Mask, masked->m_Mask);
}

void EIPMaskedAddress::SerializeOut(EArchive& archive) const {
  WriteFields<Schema>(archive, *this);
}

void EIPMaskedAddress::SerializeIn(EArchive& archive) {
  ReadRecord<Schema>(archive, *this);
}

void EIPMaskedAddress::Describe(ERecordVisitor& visitor, const char* name) const {
  eHal::detail::Describe<Schema>(visitor, name, *this);
}

const ERecordDescription& EIPMaskedAddress::Description() {
  return KeptDescription<Schema>();
}

std::vector<ERecordLayout> EIPMaskedAddress::Layouts() {
  std::vector<ERecordLayout> layouts = EIPAddress::Layouts();
  for (ERecordLayout& layout : layouts)
    layout.fields.push_back("Mask");
  return layouts;
}

bool EIPMaskedAddress::SetMaskPrefixNumber(unsigned int n) {
  if (n > 8 * kMaxAddressLength) return false;
  const unsigned int full = n / 8;
  std::memset(m_Mask, 0xFF, full);
  if (full < kMaxAddressLength) {
    m_Mask[full] = kPartialMaskBytes[n % 8];
    std::memset(m_Mask + full + 1, 0, kMaxAddressLength - full - 1);
  }
  return true;
}

unsigned int EIPMaskedAddress::GetMaskPrefixNumber() const {
  unsigned int count = 0;
  const unsigned int length = GetAddressLength();
  for (unsigned int i = 0; i < length; ++i) {
    if (m_Mask[i] == 0xFF) {
      count += 8;
      continue;
    }
    for (unsigned int bit = 0x80; (m_Mask[i] & bit) != 0; bit >>= 1)
      ++count;
    break;
  }
  return count;
}

unsigned int EIPMaskedAddress::GetMaskPrefixNumber(const EBlob& mask) {
  EIPMaskedAddress masked;
  masked.SetMask(mask, eIPv4Address);
  return masked.GetMaskPrefixNumber();
}

bool EIPMaskedAddress::SetMaskPrefixNumber(EBlob& mask, unsigned int n) {
  EIPMaskedAddress masked;
  const bool result = masked.SetMaskPrefixNumber(n);
  masked.GetMask(mask);
  return result;
}

void EIPMaskedAddress::SetMask(const EBlob& mask, int /*type*/) {
  const unsigned int count = std::min(kMaxAddressLength, mask.GetSize());
  std::memset(m_Mask, 0, sizeof m_Mask);
  if (count > 0) std::memcpy(m_Mask, mask.GetData(), count);
}

void EIPMaskedAddress::GetMask(EBlob& mask) const {
  mask.SetData(m_Mask, GetAddressLength());
}

EBlob EIPMaskedAddress::GetMaskAsBlob() const {
  return EBlob(m_Mask, GetAddressLength());
}

void EIPMaskedAddress::NetworkSetMaskFromDWORD(unsigned int mask) {
  std::memcpy(m_Mask, &mask, 4);
}

void EIPMaskedAddress::HostSetMaskFromDWORD(unsigned int mask) {
  WriteBigEndian32(m_Mask, mask);
}

unsigned int EIPMaskedAddress::GetMaskHost() const {
  return ReadBigEndian32(m_Mask);
}

unsigned int EIPMaskedAddress::GetMaskNetwork() const {
  const unsigned int host = GetMaskHost();
  return (host >> 24) | ((host >> 8) & 0xFF00u) | ((host << 8) & 0xFF0000u) | (host << 24);
}

std::string EIPMaskedAddress::GetMaskAsString() const {
  EIPAddress mask;
  mask.SetAddress(m_Mask, GetType());
  return mask.GetAsString();
}

bool EIPMaskedAddress::IsOnSameNetwork(const EIPAddress& address) const {
  const unsigned int length = GetAddressLength();
  if (address.GetAddressLength() != length) return false;
  const unsigned char* const mine = GetAddress();
  const unsigned char* const theirs = address.GetAddress();
  for (unsigned int i = 0; i < length; ++i) {
    if (((mine[i] ^ theirs[i]) & m_Mask[i]) != 0) return false;
  }
  return true;
}

EIPAddress EIPMaskedAddress::GetNetworkAddress() const {
  unsigned char bytes[kMaxAddressLength] = {};
  const unsigned int length = GetAddressLength();
  for (unsigned int i = 0; i < length; ++i)
    bytes[i] = static_cast<unsigned char>(GetAddress()[i] & m_Mask[i]);
  EIPAddress network;
  network.SetAddress(bytes, kMaxAddressLength, GetType());
  return network;
}

EIPAddress EIPMaskedAddress::GetBroadcastAddress() const {
  unsigned char bytes[kMaxAddressLength] = {};
  const unsigned int length = GetAddressLength();
  for (unsigned int i = 0; i < length; ++i)
    bytes[i] = static_cast<unsigned char>(GetAddress()[i] | ~m_Mask[i]);
  EIPAddress broadcast;
  broadcast.SetAddress(bytes, kMaxAddressLength, GetType());
  return broadcast;
}

EIPAddress EIPMaskedAddress::GetHostAddress(int n) const {
  EIPAddress host = GetNetworkAddress();
  if (GetMaskPrefixNumber() > 126) return EIPAddress(*this);
  const unsigned int number = static_cast<unsigned int>(std::max(n, 0)) + 1;
  host.Increment(number & ~GetMaskHost(), 32);
  return host;
}

bool EIPMaskedAddress::operator==(const EIPMaskedAddress& other) const {
  return IsEqual(other) && std::memcmp(m_Mask, other.m_Mask, GetAddressLength()) == 0;
}
