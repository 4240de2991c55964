#include "eTLV.h"

#include <utility>

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;
using detail::SameFields;

struct ETLV::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("Type", &ETLV::m_Type), Field("Value", &ETLV::m_Value));
  static constexpr Layout kLayouts[] = {{0x45536509}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eTLV", 91,
                                              "eHal::ETLV::SerializeIn"};
};

void ETLV::Swap(ETLV& other) {
  std::swap(m_Type, other.m_Type);
  m_Value.Swap(other.m_Value);
}

bool ETLV::operator==(const ETLV& other) const {
  return SameFields<Schema>(*this, other);
}

std::string ETLV::GetAsString() const {
  return "Type: " + std::to_string(m_Type) + ", Value: " + m_Value.GetHexString();
}

}  // namespace eHal

template class ERecord<eHal::ETLV>;
