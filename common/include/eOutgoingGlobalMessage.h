// eHal::EOutgoingGlobalMessage: the envelope of a message that a port's HAL sends on its own and
// that concerns no single port: a message type and an object type around an opaque payload.
#pragma once

#include "eEnvelope.h"

namespace eHal {

class EOutgoingGlobalMessage : public EEnvelope<EOutgoingGlobalMessage> {
 public:
  // What kind of object the message is about.
  enum eObjectType : unsigned int { kDefaultObjectType = 1 };

  EOutgoingGlobalMessage() { Empty(); }

  void SetObjectType(eObjectType objectType) { m_ObjectType = objectType; }
  eObjectType GetObjectType() const { return m_ObjectType; }

  // Type 0, empty payload, object type 1.
  void Empty();

  struct Schema;  // the archive form, in eOutgoingGlobalMessage.cpp

 private:
  eObjectType m_ObjectType;
};

}  // namespace eHal

extern template class ERecord<eHal::EOutgoingGlobalMessage>;
