#include "eTableName.h"

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

struct ETableName::Schema {
  static constexpr auto kFields = std::make_tuple(Field("TableName", &ETableName::m_TableName));
  static constexpr Layout kLayouts[] = {{0x32220022}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eTableName", 102,
                                              "eHal::ETableName::SerializeIn"};
};

const std::string ETableName::UnknownTableName = "UnknownTable";
const std::string ETableName::IPAddressTableName = "IPADDRESSTABLE";

ETableName::ETableName(const std::string& name) {
  Empty();
  SetTableName(name);
}

void ETableName::Empty() {
  m_TableName = UnknownTableName;
}

}  // namespace eHal

template class ERecord<eHal::ETableName>;
