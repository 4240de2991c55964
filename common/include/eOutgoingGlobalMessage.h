// eHal::EOutgoingGlobalMessage: the envelope of a message that a port's HAL sends on its own and
// that concerns no single port: a message type and an object type around an opaque payload.
#pragma once

#include "eBlob.h"

class EArchive;

namespace eHal {

class EOutgoingGlobalMessage {
 public:
  // What the payload is; values are agreed between the two sides.
  enum eMessageType : unsigned int {};
  // What kind of object the message is about.
  enum eObjectType : unsigned int { kDefaultObjectType = 1 };

  EOutgoingGlobalMessage() { Empty(); }
  EOutgoingGlobalMessage(const EOutgoingGlobalMessage& other) { Copy(other); }
  EOutgoingGlobalMessage& operator=(const EOutgoingGlobalMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // A copy of the payload.
  EBlob GetMessage() const { return m_Message; }

  void SetObjectType(eObjectType objectType) { m_ObjectType = objectType; }
  eObjectType GetObjectType() const { return m_ObjectType; }

  void Copy(const EOutgoingGlobalMessage& other);
  // Type 0, empty payload, object type 1.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  // The older layout carries no object type; reading it sets the object type to 1.
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  EBlob m_Message;
  eObjectType m_ObjectType;
};

EArchive& operator<<(EArchive& archive, const EOutgoingGlobalMessage& message);
EArchive& operator>>(EArchive& archive, EOutgoingGlobalMessage& message);

}  // namespace eHal
