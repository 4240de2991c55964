// eHal::EOutgoingProtocolMessage: the envelope of a message addressed to or sent by a protocol
// emulation: a message type, an object type and the protocol's name around an opaque payload.
#pragma once

#include "eEnvelope.h"
#include "eProtocolName.h"

namespace eHal {

class EOutgoingProtocolMessage : public EEnvelope<EOutgoingProtocolMessage> {
 public:
  // The object type of an emptied message.
  static constexpr unsigned int kDefaultObjectType = 2;

  EOutgoingProtocolMessage() { Empty(); }

  void SetObjectType(unsigned int objectType) { m_ObjectType = objectType; }
  unsigned int GetObjectType() const { return m_ObjectType; }
  void SetProtocolName(const EProtocolName& name) { m_ProtocolName = name; }
  // A copy of the protocol name.
  EProtocolName GetProtocolName() const { return m_ProtocolName; }

  // Type 0, empty payload, unknown protocol name, object type 2.
  void Empty();

  struct Schema;  // the archive form, in eOutgoingProtocolMessage.cpp

 private:
  unsigned int m_ObjectType;
  EProtocolName m_ProtocolName;
};

}  // namespace eHal

extern template class ERecord<eHal::EOutgoingProtocolMessage>;
