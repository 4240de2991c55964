#include "eEthernetOAMStatus.h"

#include <sstream>

#include "eArchive.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x28356872;
}  // namespace

void EEthernetOAMStatus::Swap(EEthernetOAMStatus& other) {
  auto mine = Fields(*this);
  auto theirs = Fields(other);
  mine.swap(theirs);
}

bool EEthernetOAMStatus::operator==(const EEthernetOAMStatus& other) const {
  return Fields(*this) == Fields(other);
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
