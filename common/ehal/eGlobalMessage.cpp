#include "eGlobalMessage.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::Layout;

namespace {
// The object type given to a message from a sender of the older layout.
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

struct EGlobalMessage::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("ObjectType", &EGlobalMessage::m_ObjectType).OrWhenAbsent(kOldSenderObjectType),
      Field(kEnvelopeTypeField, &EGlobalMessage::m_MessageType),
      Field(kEnvelopePayloadField, &EGlobalMessage::m_Message));
  static constexpr Layout kLayouts[] = {{0x55220023}, {0x55220022, From("MessageType")}};
  // The report names the class inside the HAL namespace, although it is declared outside it;
  // receivers match on this text.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eGlobalMessage", 105,
                                              "eHal::EGlobalMessage::SerializeIn"};
};

void EGlobalMessage::Empty() {
  EmptyEnvelope();
  m_ObjectType = 0;
}

template class ERecord<EGlobalMessage>;
