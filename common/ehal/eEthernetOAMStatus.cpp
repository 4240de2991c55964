#include "eEthernetOAMStatus.h"

#include <sstream>
#include <utility>

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x28356872;
}  // namespace

void EEthernetOAMStatus::Swap(EEthernetOAMStatus& other) {
  std::swap(m_Version, other.m_Version);
  std::swap(m_InformationRevision, other.m_InformationRevision);
  m_SrcMac.Swap(other.m_SrcMac);
  std::swap(m_State, other.m_State);
  std::swap(m_OAMCapability, other.m_OAMCapability);
  std::swap(m_MaxPDUSize, other.m_MaxPDUSize);
  std::swap(m_OrgUniqueIdentifier, other.m_OrgUniqueIdentifier);
  std::swap(m_VendorSpecificInfo, other.m_VendorSpecificInfo);
  std::swap(m_Flags, other.m_Flags);
}

bool EEthernetOAMStatus::operator==(const EEthernetOAMStatus& other) const {
  return m_Version == other.m_Version && m_InformationRevision == other.m_InformationRevision &&
         m_SrcMac == other.m_SrcMac && m_State == other.m_State &&
         m_OAMCapability == other.m_OAMCapability && m_MaxPDUSize == other.m_MaxPDUSize &&
         m_OrgUniqueIdentifier == other.m_OrgUniqueIdentifier &&
         m_VendorSpecificInfo == other.m_VendorSpecificInfo && m_Flags == other.m_Flags;
}

std::string EEthernetOAMStatus::ToString() const {
  std::ostringstream text;
  text << "Protocol Version: " << m_Version << ", Information Revision: " << m_InformationRevision
       << ", SrcMac: " << m_SrcMac.GetAsString() << ", State: " << m_State
       << ", OAMCapability: " << m_OAMCapability << ", MaxPDUSize: " << m_MaxPDUSize
       << ", OrgUniqueIdentifier: " << std::hex << m_OrgUniqueIdentifier
       << ", VendorSpecificInfo: " << m_VendorSpecificInfo << ", Flags: " << m_Flags;
  return text.str();
}

void EEthernetOAMStatus::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_Version << m_InformationRevision << m_SrcMac << m_State << m_OAMCapability
          << m_MaxPDUSize << m_OrgUniqueIdentifier << m_VendorSpecificInfo << m_Flags;
}

void EEthernetOAMStatus::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eEthernetOAMStatus", 139,
                             "eHal::EEthernetOAMStatus::SerializeIn");
  }
  archive >> m_Version >> m_InformationRevision >> m_SrcMac >> m_State >> m_OAMCapability >>
      m_MaxPDUSize >> m_OrgUniqueIdentifier >> m_VendorSpecificInfo >> m_Flags;
}

EArchive& operator<<(EArchive& archive, const EEthernetOAMStatus& status) {
  status.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EEthernetOAMStatus& status) {
  status.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
