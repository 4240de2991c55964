#include "eISLIPAddressTableItemProperties.h"

#include <algorithm>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EISLIPAddressTableItemProperties::Schema {
  using R = EISLIPAddressTableItemProperties;
  static constexpr auto kFields = std::make_tuple(
      Field("Enabled", &R::m_Enabled), Field("VLANMappingMode", &R::m_VLANMappingMode),
      Field("VLANID", &R::m_VLANID), Field("UserPriority", &R::m_UserPriority),
      Field("BPDUIndicator", &R::m_BPDUIndicator), Field("Index", &R::m_Index));
  static constexpr Layout kLayouts[] = {{0x43156111}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eISLIPAddressTableItemProperties",
                                              202, "EISLIPAddressTableItemProperties::SerializeIn"};
};

void EISLIPAddressTableItemProperties::SetVLANMappingMode(unsigned int mode) {
  if (mode == kVLANIDPerHost || mode == kOneVLANID) m_VLANMappingMode = mode;
}

void EISLIPAddressTableItemProperties::SetVLANID(unsigned short id) {
  m_VLANID = std::min(id, kMaxVLANID);
}

unsigned short EISLIPAddressTableItemProperties::GetVLANID(unsigned short hostIndex) const {
  if (m_VLANMappingMode != kVLANIDPerHost) return m_VLANID;
  const auto id = static_cast<unsigned short>(m_VLANID + hostIndex);
  return std::min(id, kMaxVLANID);
}

void EISLIPAddressTableItemProperties::SetUserPriority(unsigned char priority) {
  m_UserPriority = std::min(priority, kMaxUserPriority);
}

unsigned char EISLIPAddressTableItemProperties::GetUserPriority(unsigned char) const {
  return m_UserPriority;
}

template class ERecord<EISLIPAddressTableItemProperties>;
