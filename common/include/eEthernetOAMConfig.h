// eHal::EEthernetOAMConfig: a client's link-level Ethernet OAM request to a port (configure or
// un-configure OAM, enable or disable remote loopback) with the OAM information the port is to
// announce, and the port's return code.
#pragma once

#include <iosfwd>
#include <string>

#include "eMACAddress.h"
#include "eRecord.h"
#include "eTLV.h"

namespace eHal {

class EEthernetOAMConfig : public ERecord<EEthernetOAMConfig> {
 public:
  enum eRequestType : unsigned int {
    kInitial = 0,
    kConfigure = 1,
    kUnConfigure = 2,
    kEnableLoopback = 3,
    kDisableLoopback = 4
  };
  enum eReturnCode : unsigned int { kSuccess = 0, kFail = 1 };

  EEthernetOAMConfig() = default;

  void Swap(EEthernetOAMConfig& other);
  bool operator==(const EEthernetOAMConfig& other) const;
  bool operator!=(const EEthernetOAMConfig& other) const { return !(*this == other); }

  void SetRequestType(eRequestType type) { m_RequestType = type; }
  eRequestType GetRequestType() const { return m_RequestType; }
  void SetReturnCode(eReturnCode code) { m_ReturnCode = code; }
  eReturnCode GetReturnCode() const { return m_ReturnCode; }
  // Source MAC address of the OAM frames.
  void SetSrcMac(const EMACAddress& mac) { m_SrcMac = mac; }
  const EMACAddress& GetSrcMac() const { return m_SrcMac; }
  void SetOAMCapability(unsigned int capability) { m_OAMCapability = capability; }
  unsigned int GetOAMCapability() const { return m_OAMCapability; }
  // Largest OAM PDU, in bytes.
  void SetMaxPDUSize(unsigned int size) { m_MaxPDUSize = size; }
  unsigned int GetMaxPDUSize() const { return m_MaxPDUSize; }
  // The 24-bit organisationally unique identifier.
  void SetOrgUniqueIdentifier(unsigned int oui) { m_OrgUniqueIdentifier = oui; }
  unsigned int GetOrgUniqueIdentifier() const { return m_OrgUniqueIdentifier; }
  void SetVendorSpecificInfo(unsigned int info) { m_VendorSpecificInfo = info; }
  unsigned int GetVendorSpecificInfo() const { return m_VendorSpecificInfo; }
  void SetMaxIdleTimer(unsigned int timer) { m_MaxIdleTimer = timer; }
  unsigned int GetMaxIdleTimer() const { return m_MaxIdleTimer; }
  // An extra element sent in the information PDU.
  void SetCustomTLV(const ETLV& tlv) { m_CustomTLV = tlv; }
  const ETLV& GetCustomTLV() const { return m_CustomTLV; }

  const char* RequestTypeToString() const;
  const char* ReturnCodeToString() const;
  // The head items; the OAM information only for a configure request.
  std::string ToString() const;
  // Every field. From the organisation identifier on, numbers are in hexadecimal.
  std::string ToStringFull() const;

  struct Schema;  // the archive form, in eEthernetOAMConfig.cpp

 private:
  // Writes ", SrcMac: " up to the TLV text; switches the stream to hexadecimal on the way.
  void WriteInformation(std::ostream& text) const;

  eRequestType m_RequestType = kInitial;
  eReturnCode m_ReturnCode = kSuccess;
  EMACAddress m_SrcMac;
  unsigned int m_OAMCapability = 0;
  unsigned int m_MaxPDUSize = 0;
  unsigned int m_OrgUniqueIdentifier = 0;
  unsigned int m_VendorSpecificInfo = 0;
  unsigned int m_MaxIdleTimer = 5;
  ETLV m_CustomTLV;
};

}  // namespace eHal

extern template class ERecord<eHal::EEthernetOAMConfig>;
