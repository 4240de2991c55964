// EGlobalMessage: the envelope of a request or reply that concerns no single port: a message
// type and an object type around an opaque payload. Types above 20 are queries.
#pragma once

#include "eEnvelope.h"

class EGlobalMessage : public EEnvelope<EGlobalMessage> {
 public:
  // Types above this one are get (query) messages.
  static constexpr eMessageType kLastSettingMessageType = eMessageType{20};

  EGlobalMessage() { Empty(); }

  void SetObjectType(unsigned int objectType) { m_ObjectType = objectType; }
  unsigned int GetObjectType() const { return m_ObjectType; }
  // True when the message type is above 20.
  bool IsGetMessage() const { return m_MessageType > kLastSettingMessageType; }

  // Type 0, empty payload, object type 0.
  void Empty();

  struct Schema;  // the archive form, in eGlobalMessage.cpp

 private:
  unsigned int m_ObjectType;
};

extern template class ERecord<EGlobalMessage>;
