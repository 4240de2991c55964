// eHal::EMessage: the envelope of a request or reply between a client and a port's HAL: a message
// type, a destination, the client's identity, the port id and port count around an opaque payload
// (the archived bytes of the record the exchange is about). Also home of the process-wide
// sequence counter.
#pragma once

#include "eBlob.h"
#include "eClientID.h"
#include "eLock.h"

class EArchive;

namespace eHal {

class EMessage {
 public:
  // What the payload is; values are agreed between client and port.
  enum eMessageType : unsigned int {};
  // Where the message goes; only the low eight bits travel.
  enum eMessageDestination : unsigned int { kDefaultDestination = 1 };

  EMessage() { Empty(); }
  EMessage(const EMessage& other) { Copy(other); }
  EMessage& operator=(const EMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // A copy of the payload.
  EBlob GetMessage() const { return m_Message; }

  void SetDestination(eMessageDestination destination) { m_Destination = destination; }
  eMessageDestination GetDestination() const { return m_Destination; }
  void SetClientID(const EClientID& clientID) { m_ClientID = clientID; }
  const EClientID& GetClientID() const { return m_ClientID; }
  void SetMessagePortId(unsigned int portId) { m_PortId = portId; }
  unsigned int GetMessagePortId() const { return m_PortId; }
  // The same port id as GetMessagePortId.
  unsigned int GetPortID() const { return m_PortId; }
  void SetMessagePortCount(unsigned int portCount) { m_PortCount = portCount; }
  unsigned int GetMessagePortCount() const { return m_PortCount; }

  void Copy(const EMessage& other);
  // Type 0, destination 1, empty payload, empty client id, port id 0, port count 1.
  void Empty();

  // Writes version 3 of the layout.
  void SerializeOut(EArchive& archive) const;
  // Reads versions 3, 2 and 1 and the three signatures that came before them; fields that the
  // layout read lacks keep their values.
  void SerializeIn(EArchive& archive);

  // The next number of the sequence shared by every thread and envelope of the process: 1 on the
  // first call, wrapping at 2^32. Thread-safe.
  static unsigned int GetNextSequenceNumber();

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  eMessageDestination m_Destination;
  EBlob m_Message;
  EClientID m_ClientID;
  unsigned int m_PortId;
  unsigned int m_PortCount;

  static unsigned int m_CurrentSequenceNumber;
  static ELock m_CurrentSequenceNumberLock;
};

EArchive& operator<<(EArchive& archive, const EMessage& message);
EArchive& operator>>(EArchive& archive, EMessage& message);

}  // namespace eHal
