#include "eMACAddressRange.h"

#include "eArchive.h"

namespace {
constexpr unsigned int kSignature = 0x15111111;
}  // namespace

EMACAddressRange& EMACAddressRange::operator=(const EMACAddressRange& other) {
  Copy(other);
  return *this;
}

void EMACAddressRange::Copy(const EMACAddressRange& other) {
  if (this == &other) return;
  m_Address = other.m_Address;
  m_RangeCount = other.m_RangeCount;
  m_MACMode = other.m_MACMode;
}

void EMACAddressRange::Empty() {
  m_Address.Empty();
  m_RangeCount = 0;
  m_MACMode = 0;
}

void EMACAddressRange::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_Address;
  archive.WriteUnsignedInt(m_RangeCount);
  archive.WriteSignedInt(m_MACMode);
}

void EMACAddressRange::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eMACAddressRange", 135,
                             "EMACAddressRange::SerializeIn");
  }
  archive >> m_Address >> m_RangeCount >> m_MACMode;
}

EArchive& operator<<(EArchive& archive, const EMACAddressRange& range) {
  range.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMACAddressRange& range) {
  range.SerializeIn(archive);
  return archive;
}
