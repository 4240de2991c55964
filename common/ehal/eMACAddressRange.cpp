#include "eMACAddressRange.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EMACAddressRange::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("MACAddress", &EMACAddressRange::m_Address),
                      Field("MACRangeCount", &EMACAddressRange::m_RangeCount),
                      Field("MACMode", &EMACAddressRange::m_MACMode));
  static constexpr Layout kLayouts[] = {{0x15111111}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eMACAddressRange", 135,
                                              "EMACAddressRange::SerializeIn"};
};

void EMACAddressRange::Empty() {
  m_Address.Empty();
  m_RangeCount = 0;
  m_MACMode = 0;
}

template class ERecord<EMACAddressRange>;
