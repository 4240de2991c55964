// EGlobalMessage: the envelope of a request or reply that concerns no single port: a message
// type and an object type around an opaque payload. Types above 20 are queries.
#pragma once

#include "eBlob.h"

class EArchive;

class EGlobalMessage {
 public:
  // What the payload is; values are agreed between the two sides. Types above
  // kLastSettingMessageType are get (query) messages.
  enum eMessageType : unsigned int { kLastSettingMessageType = 20 };

  EGlobalMessage() { Empty(); }
  EGlobalMessage(const EGlobalMessage& other) { Copy(other); }
  EGlobalMessage& operator=(const EGlobalMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // A copy of the payload.
  EBlob GetMessage() const { return m_Message; }

  void SetObjectType(unsigned int objectType) { m_ObjectType = objectType; }
  unsigned int GetObjectType() const { return m_ObjectType; }
  // True when the message type is above 20.
  bool IsGetMessage() const { return m_MessageType > kLastSettingMessageType; }

  void Copy(const EGlobalMessage& other);
  // Type 0, empty payload, object type 0.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  // The older layout carries no object type; reading it sets the object type to 0.
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  EBlob m_Message;
  unsigned int m_ObjectType;
};

EArchive& operator<<(EArchive& archive, const EGlobalMessage& message);
EArchive& operator>>(EArchive& archive, EGlobalMessage& message);
