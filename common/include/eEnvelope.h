// EEnvelope: what the message envelopes share, a message type whose values the two sides agree
// on and an opaque payload, the archived bytes of the record the message is about. Each envelope
// adds its routing fields and states its archive form in its own schema.
#pragma once

#include <utility>

#include "eBlob.h"
#include "eRecord.h"

// The names every envelope's schema gives its message type and its payload, so that tools find
// them (the payload's class is chosen by its signature, and the message type where several
// classes share one).
inline constexpr char kEnvelopeTypeField[] = "MessageType";
inline constexpr char kEnvelopePayloadField[] = "Message";

template <typename Derived>
class EEnvelope : public ERecord<Derived> {
 public:
  // What the payload is; a distinct type per envelope, which names the values it interprets.
  enum eMessageType : unsigned int {};

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload by a copy (kept in the payload's allocation when it is large enough).
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload) {
    SetMessageType(type);
    SetMessage(payload);
  }
  // Replaces the payload by `payload` itself, without a copy (for bytes just taken from an
  // archive with EArchive::ReleaseAsEBlob).
  void SetMessage(EBlob&& payload) { m_Message = std::move(payload); }
  void SetMessage(eMessageType type, EBlob&& payload) {
    SetMessageType(type);
    SetMessage(std::move(payload));
  }
  // A copy of the payload.
  EBlob GetMessage() const { return m_Message; }
  // The payload itself, without a copy; valid until the envelope changes.
  const EBlob& GetMessageBytes() const { return m_Message; }
  // Hands the payload over without a copy (for EArchive::MoveFromEBlob) and leaves the envelope's
  // payload empty, with no allocation.
  EBlob TakeMessage() { return std::move(m_Message); }

  // Copies every field.
  void Copy(const Derived& other) { static_cast<Derived&>(*this) = other; }

 protected:
  EEnvelope() = default;
  // Type 0 and an emptied payload (its allocation kept).
  void EmptyEnvelope() {
    m_MessageType = eMessageType{};
    m_Message.Empty();
  }

  eMessageType m_MessageType{};
  EBlob m_Message;
};
