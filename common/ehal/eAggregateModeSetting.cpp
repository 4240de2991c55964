#include "eAggregateModeSetting.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

// The same signature as EDataCenterModeSettings: nothing in the archive tells the two apart.
struct EAggregateModeSetting::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("AggregateModeSetting", &EAggregateModeSetting::m_AggregateModeSetting));
  static constexpr Layout kLayouts[] = {{0x10062911}};
  // The report names the protocol-name reader, as this setting always has; receivers match on it.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eAggregateModeSetting", 65,
                                              "eHal::EProtocolName::SerializeIn"};
};

}  // namespace eHal

template class ERecord<eHal::EAggregateModeSetting>;
