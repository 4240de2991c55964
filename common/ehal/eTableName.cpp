#include "eTableName.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x32220022;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eTableName", 102,
                                            "eHal::ETableName::SerializeIn"};
}  // namespace

const std::string ETableName::UnknownTableName = "UnknownTable";
const std::string ETableName::IPAddressTableName = "IPADDRESSTABLE";

ETableName::ETableName(const std::string& name) {
  Empty();
  SetTableName(name);
}

ETableName& ETableName::operator=(const ETableName& other) {
  if (this != &other) Copy(other);
  return *this;
}

void ETableName::Empty() {
  m_TableName = UnknownTableName;
}

template <typename Self, typename Visit>
void ETableName::Fields(Self& self, Visit& field) {
  field.template Field<std::string>(self.m_TableName);
}

void ETableName::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void ETableName::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const ETableName& name) {
  name.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, ETableName& name) {
  name.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
