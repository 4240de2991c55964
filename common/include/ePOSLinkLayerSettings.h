// eHal::EPOSLinkLayerSettings: the link-layer encapsulation and the transmit and receive CRC
// sizes of the packet-over-SONET ports of a card, one entry per port 0-63.
#pragma once

#include <string>

#include "eRecord.h"

namespace eHal {

class EPOSLinkLayerSettings : public ERecord<EPOSLinkLayerSettings> {
 public:
  enum eLinkType : unsigned int {
    kCiscoHDLC = 0,
    kPPP = 1,
    kFrameRelay = 2,
    kCiscoFrameRelay = 3,
    kOther = 4,
    kSRP = 5
  };
  // CRC size codes; any other code means no CRC.
  enum eCRCSize : unsigned int { kCRC16 = 0, kCRC32 = 1 };
  static constexpr unsigned int kPortCount = 64;

  EPOSLinkLayerSettings() { Empty(); }

  // Every port: link type "Other", both CRC size codes 32 bits.
  void Empty();
  void Copy(const EPOSLinkLayerSettings& other);
  // Does nothing for a null pointer.
  void Copy(const EPOSLinkLayerSettings* other);

  // Setters take the value first and the port index (0-63, not checked) second.
  void SetLinkType(unsigned int linkType, unsigned int port) { m_Ports[port].linkType = linkType; }
  void SetTxCRCSize(unsigned int code, unsigned int port) { m_Ports[port].txCRCSize = code; }
  void SetRxCRCSize(unsigned int code, unsigned int port) { m_Ports[port].rxCRCSize = code; }
  unsigned int GetLinkType(unsigned int port) const { return m_Ports[port].linkType; }
  unsigned int GetTxCRCSize(unsigned int port) const { return m_Ports[port].txCRCSize; }
  unsigned int GetRxCRCSize(unsigned int port) const { return m_Ports[port].rxCRCSize; }

  // 16 for code 0, 32 for code 1, 0 for any other code.
  unsigned int GetCRCSizeInBits(unsigned int code) const;
  unsigned int GetCRCSizeInBytes(unsigned int code) const { return GetCRCSizeInBits(code) / 8; }
  unsigned int GetTxCRCSizeInBits(unsigned int port) const {
    return GetCRCSizeInBits(m_Ports[port].txCRCSize);
  }
  unsigned int GetTxCRCSizeInBytes(unsigned int port) const {
    return GetCRCSizeInBytes(m_Ports[port].txCRCSize);
  }
  unsigned int GetRxCRCSizeInBits(unsigned int port) const {
    return GetCRCSizeInBits(m_Ports[port].rxCRCSize);
  }
  unsigned int GetRxCRCSizeInBytes(unsigned int port) const {
    return GetCRCSizeInBytes(m_Ports[port].rxCRCSize);
  }

  // All 192 entries equal.
  bool IsEqual(const EPOSLinkLayerSettings& other) const;
  bool operator==(const EPOSLinkLayerSettings& other) const { return IsEqual(other); }
  bool operator!=(const EPOSLinkLayerSettings& other) const { return !IsEqual(other); }

  // "Encapsulation:<link type> TxCRCSize:<bits> RxCRCSize:<bits>" and a line feed.
  std::string GetLogString(unsigned int port) const;

  struct Schema;  // the archive form, in ePOSLinkLayerSettings.cpp

 private:
  // One port's entry.
  struct Port {
    unsigned int linkType;
    unsigned int txCRCSize;
    unsigned int rxCRCSize;

    bool operator==(const Port& other) const;
  };

  Port m_Ports[kPortCount];
};

}  // namespace eHal

extern template class ERecord<eHal::EPOSLinkLayerSettings>;
