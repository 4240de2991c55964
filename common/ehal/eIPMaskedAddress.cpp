#include "eIPMaskedAddress.h"

#include <algorithm>
#include <cstring>

#include "eArchive.h"
#include "eBlob.h"
#include "eByteOrder.h"

namespace {
constexpr unsigned int kMaskSignature = 0x19111111;
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
  EIPAddress::SerializeOut(archive);
  archive.WriteSignedInt(static_cast<int>(kMaskSignature));
  archive << GetMaskAsBlob();
}

void EIPMaskedAddress::SerializeIn(EArchive& archive) {
  EIPAddress::SerializeIn(archive);
  if (archive.ReadUnsignedInt() != kMaskSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eIPMaskedAddress", 211,
                             "EIPMaskedAddress::SerializeIn");
  }
  EBlob mask;
  archive >> mask;
  SetMask(mask, static_cast<int>(GetType()));
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
  ehal_bytes::WriteBigEndian32(m_Mask, mask);
}

unsigned int EIPMaskedAddress::GetMaskHost() const {
  return ehal_bytes::ReadBigEndian32(m_Mask);
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
