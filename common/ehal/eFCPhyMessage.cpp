#include "eFCPhyMessage.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The signature is a version number.
struct EFCPhyMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("RequestType", &EFCPhyMessage::m_RequestType),
                      Field("ReservedShort", &EFCPhyMessage::m_ReservedShort),
                      Field("ReservedLong1", &EFCPhyMessage::m_ReservedLong1),
                      Field("ReservedLong2", &EFCPhyMessage::m_ReservedLong2));
  static constexpr Layout kLayouts[] = {{1}};
  // The report names the parameters reader; receivers match on this text.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eFCPhyMessage", 83,
                                              "EFCParams::SerializeIn"};
};

void EFCPhyMessage::Empty() {
  m_RequestType = 0;
  m_ReservedShort = 0;
}

template class ERecord<EFCPhyMessage>;
