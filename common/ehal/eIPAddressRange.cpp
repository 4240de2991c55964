#include "eIPAddressRange.h"

#include "eByteOrder.h"
#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;
using eHal::detail::ReadBigEndian32;
using eHal::detail::SameFields;
using eHal::detail::WriteBigEndian32;

struct EIPAddressRange::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("IPAddress", &EIPAddressRange::m_Address),
                      Field("RangeCount", &EIPAddressRange::m_RangeCount));
  static constexpr Layout kLayouts[] = {{0x44444444}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPAddressRange", 195,
                                              "EIPAddressRange::SerializeIn"};
};

namespace {

// The blob's first four bytes as a big-endian number when its allocation holds them, else 0.
unsigned int FirstWordOf(const EBlob& blob) {
  unsigned char bytes[4];
  return blob.GetAt(bytes, 0, 4) ? ReadBigEndian32(bytes) : 0;
}
}  // namespace

void EIPAddressRange::Empty() {
  m_Address.Empty();
  m_RangeCount = 1;
}

void EIPAddressRange::SetIPAddresses(const EBlob& from, const EBlob& thru) {
  m_Address.SetAddress(from, eIPv4Address);
  const unsigned int first = FirstWordOf(from);
  const unsigned int last = FirstWordOf(thru);
  m_RangeCount = first > last ? 1 : last - first + 1;
}

EBlob EIPAddressRange::GetIPAddressAt(unsigned int i) const {
  unsigned char bytes[4];
  WriteBigEndian32(bytes, ReadBigEndian32(m_Address.GetAddress()) + i);
  return EBlob(bytes, 4);
}

EBlob EIPAddressRange::GetIPAddressThru() const {
  return GetIPAddressAt(m_RangeCount - 1);
}

EBlob EIPAddressRange::GetIPAddressFrom() const {
  return m_Address.GetAddressAsBlob();
}

bool EIPAddressRange::IsEqual(const EIPAddressRange& other) const {
  return SameFields<Schema>(*this, other);
}

bool EIPAddressRange::operator<(const EIPAddressRange& other) const {
  if (m_Address < other.m_Address) return true;
  if (other.m_Address < m_Address) return false;
  return m_RangeCount < other.m_RangeCount;
}

template class ERecord<EIPAddressRange>;
