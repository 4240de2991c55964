#include "eProtocol.h"

EProtocol::EProtocol() {
  Empty();
}

EProtocol::EProtocol(const EProtocol& other)
    : m_Enabled(other.m_Enabled), m_ProtocolType(other.m_ProtocolType) {}

EProtocol& EProtocol::operator=(const EProtocol& other) {
  Copy(other);
  return *this;
}

EProtocol::~EProtocol() = default;

void EProtocol::Copy(const EProtocol& other) {
  m_Enabled = other.m_Enabled;
  m_ProtocolType = other.m_ProtocolType;
}

void EProtocol::Empty() {
  m_Enabled = false;
  m_ProtocolType = 0;
}

bool EProtocol::SetEnabled(bool enabled) {
  const bool previous = m_Enabled;
  m_Enabled = enabled;
  return previous;
}

unsigned int EProtocol::Encode(EBlob&, int) {
  return GetSize();
}

unsigned int EProtocol::Decode(const EBlob&, int, EStringList*) {
  return GetSize();
}

void EProtocol::Log(EStringList*) const {}

unsigned int EProtocol::GetSize() const {
  return 0;
}

unsigned int EProtocol::BytesRequired(const EBlob&, int) {
  return 0xFFFFFFFFu;
}

bool EProtocol::IsEnoughBytes(const EBlob&, int) {
  return false;
}
