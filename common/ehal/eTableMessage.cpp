#include "eTableMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

struct ETableMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field(kEnvelopeTypeField, &ETableMessage::m_MessageType),
                      Field(kEnvelopePayloadField, &ETableMessage::m_Message),
                      Field("TableName", &ETableMessage::m_TableName));
  static constexpr Layout kLayouts[] = {{0x22220022}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eTableMessage", 101,
                                              "eHal::ETableMessage::SerializeIn"};
};

void ETableMessage::Empty() {
  EmptyEnvelope();
  m_TableName.Empty();
}

}  // namespace eHal

template class ERecord<eHal::ETableMessage>;
