#include "eEthernetOAMStatus.h"

#include <sstream>
#include <utility>

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;
using detail::SameFields;

struct EEthernetOAMStatus::Schema {
  using S = EEthernetOAMStatus;
  static constexpr auto kFields = std::make_tuple(
      Field("Version", &S::m_Version), Field("InformationRevision", &S::m_InformationRevision),
      Field("SrcMac", &S::m_SrcMac), Field("State", &S::m_State),
      Field("OAMCapability", &S::m_OAMCapability), Field("MaxPDUSize", &S::m_MaxPDUSize),
      Field("OrgUniqueIdentifier", &S::m_OrgUniqueIdentifier),
      Field("VendorSpecificInfo", &S::m_VendorSpecificInfo), Field("Flags", &S::m_Flags));
  static constexpr Layout kLayouts[] = {{0x28356872}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eEthernetOAMStatus", 139,
                                              "eHal::EEthernetOAMStatus::SerializeIn"};
};

void EEthernetOAMStatus::Swap(EEthernetOAMStatus& other) {
  std::swap(*this, other);
}

bool EEthernetOAMStatus::operator==(const EEthernetOAMStatus& other) const {
  return SameFields<Schema>(*this, other);
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

}  // namespace eHal

template class ERecord<eHal::EEthernetOAMStatus>;
