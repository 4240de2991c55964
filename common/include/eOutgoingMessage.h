// eHal::EOutgoingMessage: the envelope of a message that a port's HAL sends to one client on its
// own: a message type, the client's identity and the port id around an opaque payload.
#pragma once

#include "eBlob.h"
#include "eClientID.h"

class EArchive;

namespace eHal {

class EOutgoingMessage {
 public:
  // What the payload is; values are agreed between the two sides.
  enum eMessageType : unsigned int {};

  EOutgoingMessage() { Empty(); }
  EOutgoingMessage(const EOutgoingMessage& other) { Copy(other); }
  EOutgoingMessage& operator=(const EOutgoingMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // The payload held (not a copy).
  const EBlob& GetMessage() const { return m_Message; }

  // Note the two spellings: SetPortID and GetPortId.
  void SetPortID(unsigned int portId) { m_PortId = portId; }
  unsigned int GetPortId() const { return m_PortId; }
  void SetClientID(const EClientID& clientID) { m_ClientID = clientID; }
  const EClientID& GetClientID() const { return m_ClientID; }

  void Copy(const EOutgoingMessage& other);
  // Type 0, empty payload, empty client id, port id 0.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  // Older layouts lack the port id, then the client id too; those keep their values.
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  EBlob m_Message;
  EClientID m_ClientID;
  unsigned int m_PortId;
};

EArchive& operator<<(EArchive& archive, const EOutgoingMessage& message);
EArchive& operator>>(EArchive& archive, EOutgoingMessage& message);

}  // namespace eHal
