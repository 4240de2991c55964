#include "eOutgoingGlobalMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using namespace detail;

struct EOutgoingGlobalMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ObjectType", &EOutgoingGlobalMessage::m_ObjectType),
                      Field("MessageType", &EOutgoingGlobalMessage::m_MessageType),
                      Field("Message", &EOutgoingGlobalMessage::m_Message));
  static constexpr Layout kLayouts[] = {{0x66220023}, {0x66220022, Lacking(1)}};
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eOutgoingGlobalMessage", 104,
                                                 "eHal::EOutgoingGlobalMessage::SerializeIn"};
};

void EOutgoingGlobalMessage::Empty() {
  EmptyEnvelope();
  m_ObjectType = kDefaultObjectType;
}

void EOutgoingGlobalMessage::SerializeIn(EArchive& archive) {
  // An older sender's object type is the default one (EGlobalMessage uses 0 instead).
  if (Read<Schema>(archive, *this).lacking > 0) m_ObjectType = kDefaultObjectType;
}

}  // namespace eHal

template class ERecord<eHal::EOutgoingGlobalMessage>;
