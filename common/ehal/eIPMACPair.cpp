#include "eIPMACPair.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EIPMACPair::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("SourceIP", &EIPMACPair::m_SourceIP),
                      Field("DestinationIP", &EIPMACPair::m_DestinationIP),
                      Field("SourceMAC", &EIPMACPair::m_SourceMAC),
                      Field("DestinationMAC", &EIPMACPair::m_DestinationMAC),
                      Field("SourceResolved", &EIPMACPair::m_SourceResolved),
                      Field("DestinationResolved", &EIPMACPair::m_DestinationResolved));
  static constexpr Layout kLayouts[] = {{0x18111311}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPMACPair", 99,
                                              "EIPMACPair::SerializeIn"};
};

void EIPMACPair::Empty() {
  m_SourceIP.Empty();
  m_DestinationIP.Empty();
  m_SourceMAC.Empty();
  m_DestinationMAC.Empty();
  m_SourceResolved = false;
  m_DestinationResolved = false;
}

template class ERecord<EIPMACPair>;
