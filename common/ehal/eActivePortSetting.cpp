#include "eActivePortSetting.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

struct EActivePortSetting::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ActiveCard", &EActivePortSetting::m_ActiveCard),
                      Field("ActivePort", &EActivePortSetting::m_ActivePort));
  static constexpr Layout kLayouts[] = {{0x78911141}};
  // The report names the writing operator although the reader failed; receivers match on it.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eActivePortSetting", 66,
                                              "eHal::EActivePortSetting::operator<<"};
};

}  // namespace eHal

template class ERecord<eHal::EActivePortSetting>;
