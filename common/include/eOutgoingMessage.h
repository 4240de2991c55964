// eHal::EOutgoingMessage: the envelope of a message that a port's HAL sends to one client on its
// own: a message type, the client's identity and the port id around an opaque payload.
#pragma once

#include "eClientID.h"
#include "eEnvelope.h"

namespace eHal {

class EOutgoingMessage : public EEnvelope<EOutgoingMessage> {
 public:
  EOutgoingMessage() { Empty(); }

  // The payload held (not a copy).
  const EBlob& GetMessage() const { return m_Message; }
  // Note the two spellings: SetPortID and GetPortId.
  void SetPortID(unsigned int portId) { m_PortId = portId; }
  unsigned int GetPortId() const { return m_PortId; }
  void SetClientID(const EClientID& clientID) { m_ClientID = clientID; }
  const EClientID& GetClientID() const { return m_ClientID; }

  // Type 0, empty payload, empty client id, port id 0.
  void Empty();

  struct Schema;  // the archive form, in eOutgoingMessage.cpp

 private:
  EClientID m_ClientID;
  unsigned int m_PortId;
};

}  // namespace eHal

extern template class ERecord<eHal::EOutgoingMessage>;
