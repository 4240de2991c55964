#include "eGlobalMessage.h"

#include "eRecordSchema.h"

using namespace eHal::detail;

struct EGlobalMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ObjectType", &EGlobalMessage::m_ObjectType),
                      Field("MessageType", &EGlobalMessage::m_MessageType),
                      Field("Message", &EGlobalMessage::m_Message));
  static constexpr Layout kLayouts[] = {{0x55220023}, {0x55220022, Lacking(1)}};
  // The report names the class inside the HAL namespace, although it is declared outside it;
  // receivers match on this text.
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eGlobalMessage", 105,
                                                 "eHal::EGlobalMessage::SerializeIn"};
};

namespace {
// The object type given to a message from a sender of the older layout.
constexpr unsigned int kOldSenderObjectType = 0;
}  // namespace

void EGlobalMessage::Empty() {
  EmptyEnvelope();
  m_ObjectType = 0;
}

void EGlobalMessage::SerializeIn(EArchive& archive) {
  if (Read<Schema>(archive, *this).lacking > 0) m_ObjectType = kOldSenderObjectType;
}

template class ERecord<EGlobalMessage>;
