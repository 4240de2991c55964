#include "eMessage.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::From;
using detail::kByte;
using detail::Layout;

// Only version 3 is written. Versions 1 and 2 lack the leading port count and port id; the
// signatures of the layouts before them lack the destination and then the client id as well.
struct EMessage::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("MessagePortCount", &EMessage::m_PortCount),
      Field("MessagePortId", &EMessage::m_PortId),
      Field("Destination", &EMessage::m_Destination, kByte),
      Field("ClientID", &EMessage::m_ClientID), Field(kEnvelopeTypeField, &EMessage::m_MessageType),
      Field(kEnvelopePayloadField, &EMessage::m_Message));
  static constexpr Layout kLayouts[] = {
      {3},
      {2, From("MessagePortId")},
      {1, From("Destination")},
      {0x77220024, From("ClientID")},
      {0x77220023, From("ClientID")},
      {0x77220022, From("MessageType")},
  };
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eMessage", 157,
                                              "eHal::EMessage::SerializeIn"};
};

unsigned int EMessage::m_CurrentSequenceNumber = 0;
ELock EMessage::m_CurrentSequenceNumberLock;

void EMessage::Empty() {
  EmptyEnvelope();
  m_Destination = kDefaultDestination;
  m_ClientID.Empty();
  m_PortId = 0;
  m_PortCount = 1;
}

unsigned int EMessage::GetNextSequenceNumber() {
  m_CurrentSequenceNumberLock.Lock(eLockDebugData());
  const unsigned int number = ++m_CurrentSequenceNumber;
  m_CurrentSequenceNumberLock.Unlock(eLockDebugData());
  return number;
}

}  // namespace eHal

template class ERecord<eHal::EMessage>;
