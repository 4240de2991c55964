#include "eOutgoingGlobalMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::From;
using detail::Layout;

struct EOutgoingGlobalMessage::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("ObjectType", &EOutgoingGlobalMessage::m_ObjectType).OrWhenAbsent(kDefaultObjectType),
      Field(kEnvelopeTypeField, &EOutgoingGlobalMessage::m_MessageType),
      Field(kEnvelopePayloadField, &EOutgoingGlobalMessage::m_Message));
  static constexpr Layout kLayouts[] = {{0x66220023}, {0x66220022, From("MessageType")}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eOutgoingGlobalMessage", 104,
                                              "eHal::EOutgoingGlobalMessage::SerializeIn"};
};

void EOutgoingGlobalMessage::Empty() {
  EmptyEnvelope();
  m_ObjectType = kDefaultObjectType;
}

}  // namespace eHal

template class ERecord<eHal::EOutgoingGlobalMessage>;
