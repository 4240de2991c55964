// eHal::EPacket: one packet captured by a port during a PRBS capture, with its timestamp and
// its bytes. Carried in the packet list of eHal::EPRBS.
#pragma once

#include "eBlob.h"

class EArchive;

namespace eHal {

class EPacket {
 public:
  EPacket() { Empty(); }
  EPacket(const EPacket& other) { Copy(other); }
  EPacket& operator=(const EPacket& other) {
    Copy(other);
    return *this;
  }

  // Timestamp 0, data emptied.
  void Empty();
  // Copies timestamp and data (no-op on self).
  void Copy(const EPacket& other);
  void Swap(EPacket& other);
  // Timestamps equal and data bytes equal.
  bool operator==(const EPacket& other) const;
  bool operator!=(const EPacket& other) const { return !(*this == other); }

  void SetPacketTimestamp(unsigned long timestamp) { m_PacketTimestamp = timestamp; }
  unsigned long GetPacketTimestamp() const { return m_PacketTimestamp; }
  void SetPacketData(const EBlob& data) { m_PacketData = data; }
  // A copy of the packet's bytes.
  EBlob GetPacketData() const { return m_PacketData; }

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  unsigned long m_PacketTimestamp = 0;
  EBlob m_PacketData;
};

EArchive& operator<<(EArchive& archive, const EPacket& packet);
EArchive& operator>>(EArchive& archive, EPacket& packet);

}  // namespace eHal
