// eHal::EEthernetOAMStatus: the Ethernet OAM information of one end of a link (protocol
// version, revision, source MAC, state, capabilities and flags), as the port announces or
// learns it.
#pragma once

#include <string>

#include "eMACAddress.h"
#include "eRecord.h"

namespace eHal {

class EEthernetOAMStatus : public ERecord<EEthernetOAMStatus> {
 public:
  EEthernetOAMStatus() = default;

  void Swap(EEthernetOAMStatus& other);
  bool operator==(const EEthernetOAMStatus& other) const;
  bool operator!=(const EEthernetOAMStatus& other) const { return !(*this == other); }

  // OAM protocol version.
  void SetVersion(unsigned int version) { m_Version = version; }
  unsigned int GetVersion() const { return m_Version; }
  void SetInformationRevision(unsigned int revision) { m_InformationRevision = revision; }
  unsigned int GetInformationRevision() const { return m_InformationRevision; }
  void SetSrcMac(const EMACAddress& mac) { m_SrcMac = mac; }
  const EMACAddress& GetSrcMac() const { return m_SrcMac; }
  void SetState(unsigned int state) { m_State = state; }
  unsigned int GetState() const { return m_State; }
  void SetOAMCapability(unsigned int capability) { m_OAMCapability = capability; }
  unsigned int GetOAMCapability() const { return m_OAMCapability; }
  void SetMaxPDUSize(unsigned int size) { m_MaxPDUSize = size; }
  unsigned int GetMaxPDUSize() const { return m_MaxPDUSize; }
  void SetOrgUniqueIdentifier(unsigned int oui) { m_OrgUniqueIdentifier = oui; }
  unsigned int GetOrgUniqueIdentifier() const { return m_OrgUniqueIdentifier; }
  void SetVendorSpecificInfo(unsigned int info) { m_VendorSpecificInfo = info; }
  unsigned int GetVendorSpecificInfo() const { return m_VendorSpecificInfo; }
  void SetFlags(unsigned int flags) { m_Flags = flags; }
  unsigned int GetFlags() const { return m_Flags; }

  // Every field; from the organisation identifier on, numbers are in hexadecimal.
  std::string ToString() const;

  struct Schema;  // the archive form, in eEthernetOAMStatus.cpp

 private:
  unsigned int m_Version = 0;
  unsigned int m_InformationRevision = 0;
  EMACAddress m_SrcMac;
  unsigned int m_State = 0;
  unsigned int m_OAMCapability = 0;
  unsigned int m_MaxPDUSize = 0;
  unsigned int m_OrgUniqueIdentifier = 0;
  unsigned int m_VendorSpecificInfo = 0;
  unsigned int m_Flags = 0;
};

}  // namespace eHal

extern template class ERecord<eHal::EEthernetOAMStatus>;
