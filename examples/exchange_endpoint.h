// The two ways of archiving and reading an exchange's records: the one-off path (a fresh archive
// per record, bytes handed over without a copy) and one side of an envelope exchange that keeps
// its archives and envelopes from one message to the next, as a server loop does: once their
// allocations have grown to fit the largest message, a round trip makes no allocation at all.
// Both give the same bytes.
#pragma once

#include <utility>

#include "eArchive.h"
#include "eClientID.h"
#include "eMessage.h"

namespace exchange {

// The one-off path: archives a record or envelope into a fresh archive and takes its bytes.
template <typename Value>
EBlob Archived(const Value& value) {
  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << value;
  return archive.ReleaseAsEBlob();
}

// The one-off path: loads received bytes into a fresh archive (taking them over) and reads
// `value` from them.
template <typename Value>
void Read(EBlob&& bytes, Value& value) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.MoveFromEBlob(std::move(bytes), true);
  archive >> value;
}

class Endpoint {
 public:
  // Archives `record`, puts the bytes as payload of `type` into the envelope with the client's
  // identity and the port id, and archives the envelope. The bytes returned stay valid until the
  // next Send.
  template <typename Record>
  const EBlob& Send(const Record& record, eHal::EMessage::eMessageType type,
                    const eHal::EClientID& client, unsigned int port) {
    Store(m_Payload, record);
    return SendBytes(m_Payload.GetAsEBlob(), type, client, port);
  }

  // The same for a payload that is already bytes.
  const EBlob& SendBytes(const EBlob& payload, eHal::EMessage::eMessageType type,
                         const eHal::EClientID& client, unsigned int port) {
    m_Sent.SetMessage(type, payload);
    m_Sent.SetClientID(client);
    m_Sent.SetMessagePortId(port);
    Store(m_Wire, m_Sent);
    return m_Wire.GetAsEBlob();
  }

  // Reads the envelope from received bytes; it stays valid until the next Receive.
  const eHal::EMessage& ReceiveEnvelope(const EBlob& wire) {
    Load(m_Received, wire) >> m_Envelope;
    return m_Envelope;
  }

  // Reads the envelope, then `record` from its payload, without copying the payload out of the
  // envelope.
  template <typename Record>
  const eHal::EMessage& Receive(const EBlob& wire, Record& record) {
    ReceiveEnvelope(wire);
    Load(m_Unwrapped, m_Envelope.GetMessageBytes()) >> record;
    return m_Envelope;
  }

 private:
  template <typename Value>
  static void Store(EArchive& archive, const Value& value) {
    archive.Empty();
    archive.SetMode(eModeStoring);
    archive << value;
  }

  static EArchive& Load(EArchive& archive, const EBlob& bytes) {
    archive.SetMode(eModeLoading);
    archive.SetFromEBlob(bytes, true);
    return archive;
  }

  EArchive m_Payload;         // the record being sent
  EArchive m_Wire;            // the envelope being sent
  EArchive m_Received;        // the envelope received
  EArchive m_Unwrapped;       // the payload received
  eHal::EMessage m_Sent;      // the envelope being sent
  eHal::EMessage m_Envelope;  // the envelope received
};

}  // namespace exchange
