// eHal::EPacket: one packet captured by a port during a PRBS capture, with its timestamp and
// its bytes. Carried in the packet list of eHal::EPRBS.
#pragma once

#include "eBlob.h"
#include "eRecord.h"

namespace eHal {

class EPacket : public ERecord<EPacket> {
 public:
  EPacket() { Empty(); }
  EPacket(const EPacket& other) = default;
  EPacket& operator=(const EPacket& other) = default;

  // Timestamp 0, data emptied.
  void Empty();
  // Copies timestamp and data.
  void Copy(const EPacket& other) { *this = other; }
  void Swap(EPacket& other);
  // Timestamps equal and data bytes equal.
  bool operator==(const EPacket& other) const;
  bool operator!=(const EPacket& other) const { return !(*this == other); }

  void SetPacketTimestamp(unsigned long timestamp) { m_PacketTimestamp = timestamp; }
  unsigned long GetPacketTimestamp() const { return m_PacketTimestamp; }
  void SetPacketData(const EBlob& data) { m_PacketData = data; }
  // A copy of the packet's bytes.
  EBlob GetPacketData() const { return m_PacketData; }

  struct Schema;  // the archive form, in ePacket.cpp

 private:
  unsigned long m_PacketTimestamp = 0;
  EBlob m_PacketData;
};

}  // namespace eHal

extern template class ERecord<eHal::EPacket>;
