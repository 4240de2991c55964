#include "eARPParameters.h"

#include "eStatsSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

struct EARPParameters::Schema {
  static constexpr auto kFields = std::make_tuple(Field("Timeout", &EARPParameters::m_Timeout),
                                                  Field("Retries", &EARPParameters::m_Retries));
  static constexpr Layout kLayouts[] = {{0x18121311}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eARPParameters", 87,
                                              "EARPParameters::SerializeIn"};
};

template class ERecord<EARPParameters>;
template class EStatsRecord<EARPParameters>;
