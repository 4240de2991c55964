// eHal::EEthernetOAMStatus: the Ethernet OAM information of one end of a link (protocol
// version, revision, source MAC, state, capabilities and flags), as the port announces or
// learns it.
#pragma once

#include <string>
#include <tuple>

#include "eMACAddress.h"

class EArchive;

namespace eHal {

class EEthernetOAMStatus {
 public:
  EEthernetOAMStatus() = default;
  EEthernetOAMStatus(const EEthernetOAMStatus& other) = default;
  EEthernetOAMStatus& operator=(const EEthernetOAMStatus& other) = default;

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

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  // Every field once; exchanging and comparing go through this list.
  template <typename Self>
  static auto Fields(Self& self) {
    return std::tie(self.m_Version, self.m_InformationRevision, self.m_SrcMac, self.m_State,
                    self.m_OAMCapability, self.m_MaxPDUSize, self.m_OrgUniqueIdentifier,
                    self.m_VendorSpecificInfo, self.m_Flags);
  }

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

EArchive& operator<<(EArchive& archive, const EEthernetOAMStatus& status);
EArchive& operator>>(EArchive& archive, EEthernetOAMStatus& status);

}  // namespace eHal
