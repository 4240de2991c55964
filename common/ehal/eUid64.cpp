#include "eUid64.h"

#include <algorithm>
#include <cstring>

#include "eIPAddress.h"
#include "eMACAddress.h"
#include "eRecordSchema.h"
#include "eTextDigits.h"

using eHal::detail::BlobOfCodec;
using eHal::detail::JoinLowerHexPairs;
using eHal::detail::Layout;
using eHal::detail::Property;

// Version 1, then the eight bytes as a blob.
struct EUID::Schema {
  // A record read starts empty.
  static constexpr auto kBeforeRead = &EUID::Empty;
  static void SetIdBytes(EUID& id, const EBlob& bytes) { id.SetId(bytes); }

  static constexpr auto kFields =
      std::make_tuple(Property<EUID>("Id", BlobOfCodec<&EUID::GetAsBlob, SetIdBytes>{}));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eUid64", 68, "EUID::SerializeIn"};
};

namespace {
// The universal/local bit that the modified EUI-64 form inverts.
constexpr unsigned char kUniversalLocalBit = 0x02;
}  // namespace

EUID& EUID::operator=(const EUID& other) {
  Copy(other);
  return *this;
}

void EUID::Copy(const EUID& other) {
  EUID copy(other);
  Swap(copy);
}

void EUID::Empty() {
  std::memset(m_Id, 0, sizeof m_Id);
}

void EUID::Swap(EUID& other) {
  std::swap(m_Id, other.m_Id);
}

bool EUID::operator!=(const EUID& other) const {
  return std::memcmp(m_Id, other.m_Id, sizeof m_Id) != 0;
}

unsigned long EUID::GetAsUint64() const {
  unsigned long value = 0;
  for (unsigned char byte : m_Id)
    value = (value << 8) | byte;
  return value;
}

EBlob EUID::GetAsBlob() const {
  return EBlob(m_Id, kLength);
}

void EUID::SetId(const unsigned char* bytes, unsigned long length) {
  Empty();
  if (bytes != nullptr) std::memcpy(m_Id, bytes, std::min<unsigned long>(length, kLength));
}

void EUID::SetId(const EBlob& bytes) {
  SetId(bytes.GetData(), bytes.GetSize());
}

std::string EUID::GetAsASCIIString() const {
  const unsigned char* const end = std::find(m_Id, m_Id + kLength, 0);
  return std::string(m_Id, end);
}

std::string EUID::GetAsString() const {
  return JoinLowerHexPairs(m_Id, kLength, ":");
}

std::string EUID::GetAsByteString() const {
  return JoinLowerHexPairs(m_Id, kLength, " ");
}

namespace eHal {

void MacToUid64(const EMACAddress& mac, EUID& id) {
  const EBlob& bytes = mac.GetMACAddress();
  unsigned char eui[EUID::kLength] = {0, 0, 0, 0xFF, 0xFE, 0, 0, 0};
  if (bytes.GetSize() >= EMACAddress::kLength) {
    const unsigned char* const m = bytes.GetData();
    eui[0] = static_cast<unsigned char>(m[0] ^ kUniversalLocalBit);
    eui[1] = m[1];
    eui[2] = m[2];
    eui[5] = m[3];
    eui[6] = m[4];
    eui[7] = m[5];
  }
  id.SetId(eui, EUID::kLength);
}

bool Uid64ToMac(const EUID& id, EMACAddress& mac) {
  const unsigned char* const b = id.GetId();
  if (b[3] != 0xFF || b[4] != 0xFE) return false;
  const unsigned char bytes[EMACAddress::kLength] = {
      static_cast<unsigned char>(b[0] ^ kUniversalLocalBit), b[1], b[2], b[5], b[6], b[7]};
  mac.SetMACAddress(EBlob(bytes, EMACAddress::kLength));
  return true;
}

void Uid64ToLinkLocalIp6(const EUID& id, EIPAddress& address) {
  unsigned char bytes[EIPAddress::kMaxAddressLength] = {0xFE, 0x80};
  std::memcpy(bytes + 8, id.GetId(), EUID::kLength);
  address.SetAddress(bytes, eIPv6Address);
}

void MacToLinkLocalIp6(const EMACAddress& mac, EIPAddress& address) {
  EUID id;
  MacToUid64(mac, id);
  Uid64ToLinkLocalIp6(id, address);
}

}  // namespace eHal

template class ERecord<EUID>;
