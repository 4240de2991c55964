#include "eEthernetOAMSessionStatus.h"

#include <utility>

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;
using detail::SameFields;

struct EEthernetOAMSesionStatus::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("LocalStatus", &EEthernetOAMSesionStatus::m_LocalStatus),
                      Field("RemoteStatus", &EEthernetOAMSesionStatus::m_RemoteStatus));
  static constexpr Layout kLayouts[] = {{0x78156152}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eEthernetOAMSessionStatus", 97,
                                              "eHal::EEthernetOAMSesionStatus::SerializeIn"};
};

void EEthernetOAMSesionStatus::Swap(EEthernetOAMSesionStatus& other) {
  std::swap(*this, other);
}

bool EEthernetOAMSesionStatus::operator==(const EEthernetOAMSesionStatus& other) const {
  return SameFields<Schema>(*this, other);
}

std::string EEthernetOAMSesionStatus::ToString() const {
  return "Local DTE Status: " + m_LocalStatus.ToString() +
         ", Remote DTE Status: " + m_RemoteStatus.ToString();
}

}  // namespace eHal

template class ERecord<eHal::EEthernetOAMSesionStatus>;
