#include "ePacket.h"

#include <utility>

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;
using detail::SameFields;

struct EPacket::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("PacketTimestamp", &EPacket::m_PacketTimestamp),
                      Field("PacketData", &EPacket::m_PacketData));
  static constexpr Layout kLayouts[] = {{0x112344}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/ePacket", 108,
                                              "eHal::EPacket::SerializeIn"};
};

void EPacket::Empty() {
  m_PacketTimestamp = 0;
  m_PacketData.Empty();
}

void EPacket::Swap(EPacket& other) {
  std::swap(m_PacketTimestamp, other.m_PacketTimestamp);
  m_PacketData.Swap(other.m_PacketData);
}

bool EPacket::operator==(const EPacket& other) const {
  return SameFields<Schema>(*this, other);
}

}  // namespace eHal

template class ERecord<eHal::EPacket>;
