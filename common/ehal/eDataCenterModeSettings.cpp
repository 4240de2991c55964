#include "eDataCenterModeSettings.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

// The same signature as EAggregateModeSetting: nothing in the archive tells the two apart.
struct EDataCenterModeSettings::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("DataCenterModeEnabled", &EDataCenterModeSettings::m_DataCenterModeEnabled));
  static constexpr Layout kLayouts[] = {{0x10062911}};
  // The report names the protocol-name reader, as this setting always has; receivers match on it.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eDataCenterModeSettings", 79,
                                              "eHal::EProtocolName::SerializeIn"};
};

}  // namespace eHal

template class ERecord<eHal::EDataCenterModeSettings>;
