// eHal::EOutgoingProtocolMessage: the envelope of a message addressed to or sent by a protocol
// emulation: a message type, an object type and the protocol's name around an opaque payload.
#pragma once

#include "eBlob.h"
#include "eProtocolName.h"

class EArchive;

namespace eHal {

class EOutgoingProtocolMessage {
 public:
  // What the payload is; values are agreed between the two sides.
  enum eMessageType : unsigned int {};
  // The object type of an emptied message.
  static constexpr unsigned int kDefaultObjectType = 2;

  EOutgoingProtocolMessage() { Empty(); }
  EOutgoingProtocolMessage(const EOutgoingProtocolMessage& other) { Copy(other); }
  EOutgoingProtocolMessage& operator=(const EOutgoingProtocolMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // A copy of the payload.
  EBlob GetMessage() const { return m_Message; }

  void SetObjectType(unsigned int objectType) { m_ObjectType = objectType; }
  unsigned int GetObjectType() const { return m_ObjectType; }
  void SetProtocolName(const EProtocolName& name) { m_ProtocolName = name; }
  // A copy of the protocol name.
  EProtocolName GetProtocolName() const { return m_ProtocolName; }

  void Copy(const EOutgoingProtocolMessage& other);
  // Type 0, empty payload, unknown protocol name, object type 2.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  // The older layout carries no object type; reading it sets the object type to 0 (not to the
  // default 2).
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  EBlob m_Message;
  unsigned int m_ObjectType;
  EProtocolName m_ProtocolName;
};

EArchive& operator<<(EArchive& archive, const EOutgoingProtocolMessage& message);
EArchive& operator>>(EArchive& archive, EOutgoingProtocolMessage& message);

}  // namespace eHal
