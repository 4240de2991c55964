#include "eMACAddress.h"

#include <algorithm>

#include "eArchive.h"
#include "eTextDigits.h"

namespace {
constexpr unsigned int kSignature = 0x17111111;
}  // namespace

EMACAddress::EMACAddress() {
  Empty();
}

EMACAddress& EMACAddress::operator=(const EMACAddress& other) {
  Copy(other);
  return *this;
}

void EMACAddress::Copy(const EMACAddress& other) {
  if (this == &other) return;
  m_Address = other.m_Address;
}

void EMACAddress::Empty() {
  m_Address.Empty(kLength);
  m_Address.ForceSize(kLength);
}

void EMACAddress::SetMACAddress(const EBlob& address) {
  m_Address = address;
  m_Address.ForceSize(kLength);
}

void EMACAddress::SetAsString(const std::string& text) {
  std::string digits(text);
  digits.erase(std::remove(digits.begin(), digits.end(), ':'), digits.end());
  m_Address.SetHexString(digits);
}

std::string EMACAddress::GetAsString() const {
  return ehal_text::JoinLowerHexPairs(m_Address.GetData(), m_Address.GetSize(), ":");
}

void EMACAddress::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_Address;
}

void EMACAddress::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eMACAddress", 119, "EMACAddress::SerializeIn");
  }
  archive >> m_Address;
}

EArchive& operator<<(EArchive& archive, const EMACAddress& address) {
  address.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMACAddress& address) {
  address.SerializeIn(archive);
  return archive;
}
