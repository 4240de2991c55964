#include "eClientID.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x45980022;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eClientID", 114,
                                            "eHal::EClientID::SerializeIn"};
}  // namespace

EClientID& EClientID::operator=(const EClientID& other) {
  if (this != &other) Copy(other);
  return *this;
}

void EClientID::Copy(const EClientID& other) {
  m_MajorID = other.m_MajorID;
  m_MinorID = other.m_MinorID;
}

void EClientID::Empty() {
  m_MajorID.clear();
  m_MinorID = 0;
}

bool EClientID::operator<(const EClientID& other) const {
  const int major = m_MajorID.compare(other.m_MajorID);
  if (major != 0) return major < 0;
  return m_MinorID < other.m_MinorID;
}

template <typename Self, typename Visit>
void EClientID::Fields(Self& self, Visit& field) {
  field.template Field<std::string>(self.m_MajorID);
  field.template Field<int>(self.m_MinorID);
}

void EClientID::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EClientID::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const EClientID& id) {
  id.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EClientID& id) {
  id.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
