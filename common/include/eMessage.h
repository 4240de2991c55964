// eHal::EMessage: the envelope of a request or reply between a client and a port's HAL: a message
// type, a destination, the client's identity, the port id and port count around an opaque payload
// (the archived bytes of the record the exchange is about). Also home of the process-wide
// sequence counter.
#pragma once

#include "eClientID.h"
#include "eEnvelope.h"
#include "eLock.h"

namespace eHal {

class EMessage : public EEnvelope<EMessage> {
 public:
  // Where the message goes; only the low eight bits travel.
  enum eMessageDestination : unsigned int { kDefaultDestination = 1 };

  EMessage() { Empty(); }

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

  // Type 0, destination 1, empty payload, empty client id, port id 0, port count 1.
  void Empty();

  // The next number of the sequence shared by every thread and envelope of the process: 1 on the
  // first call, wrapping at 2^32. Thread-safe.
  static unsigned int GetNextSequenceNumber();

  struct Schema;  // the archive form, in eMessage.cpp

 private:
  eMessageDestination m_Destination;
  EClientID m_ClientID;
  unsigned int m_PortId;
  unsigned int m_PortCount;

  static unsigned int m_CurrentSequenceNumber;
  static ELock m_CurrentSequenceNumberLock;
};

}  // namespace eHal

extern template class ERecord<eHal::EMessage>;
