// EFCPhyMessage: a Fibre Channel physical-layer message to a port: a request type and the
// values that go with it.
#pragma once

#include "eRecord.h"

class EFCPhyMessage : public ERecord<EFCPhyMessage> {
 public:
  EFCPhyMessage() { Empty(); }

  // Request type and the 16-bit value 0; the 64-bit values are left as they are.
  void Empty();
  void SetRequestType(unsigned int type) { m_RequestType = type; }
  unsigned int GetRequestType() const { return m_RequestType; }

  struct Schema;  // the archive form, in eFCPhyMessage.cpp

 private:
  unsigned int m_RequestType;
  // Carried unchanged for the port; no accessors.
  unsigned short m_ReservedShort;
  unsigned long m_ReservedLong1 = 0;
  unsigned long m_ReservedLong2 = 0;
};

extern template class ERecord<EFCPhyMessage>;
