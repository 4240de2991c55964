#include "eClientID.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

struct EClientID::Schema {
  static constexpr auto kFields = std::make_tuple(Field("MajorID", &EClientID::m_MajorID),
                                                  Field("MinorID", &EClientID::m_MinorID));
  static constexpr Layout kLayouts[] = {{0x45980022}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eClientID", 114,
                                              "eHal::EClientID::SerializeIn"};
};

void EClientID::Empty() {
  m_MajorID.clear();
  m_MinorID = 0;
}

bool EClientID::operator<(const EClientID& other) const {
  const int major = m_MajorID.compare(other.m_MajorID);
  if (major != 0) return major < 0;
  return m_MinorID < other.m_MinorID;
}

}  // namespace eHal

template class ERecord<eHal::EClientID>;
