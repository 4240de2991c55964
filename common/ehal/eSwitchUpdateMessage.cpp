#include "eSwitchUpdateMessage.h"

#include "eArchive.h"
#include "eRecordLayout.h"

namespace {
constexpr unsigned int kVersion = 8;
constexpr ELayoutVersion kVersions[] = {{kVersion, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eSwitchUpdateMessage", 94,
                                            "ESwitchUpdateMessage::SerializeIn"};

// The fields of one entry in archive order, for writing and reading alike.
template <typename Entry, typename Visit>
void EntryFields(Entry& entry, Visit& field) {
  field.template Field<unsigned char>(entry.m_FirstValue);
  field.template Field<unsigned char>(entry.m_SecondValue);
  for (auto& octet : entry.m_Octets)
    field.template Field<unsigned char>(octet);
  field.template Field<unsigned short>(entry.m_Value);
}
}  // namespace

void ESwitchUpdateMessage::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kVersion, [this](auto& field) {
    field.template Field<int>(m_FirstHeaderValue);
    field.template Field<int>(m_SecondHeaderValue);
    field.template Field<int>(static_cast<int>(m_Entries.size()));
    for (const SwitchUpdateEntry& entry : m_Entries)
      EntryFields(entry, field);
  });
}

void ESwitchUpdateMessage::SerializeIn(EArchive& archive) {
  int count = 0;
  ReadRecord(archive, kVersions, kErrorSite, [this, &count](auto& field) {
    field.template Field<int>(m_FirstHeaderValue);
    field.template Field<int>(m_SecondHeaderValue);
    field.template Field<int>(count);
  });
  m_Entries.clear();
  EFieldReader field(archive, 0);
  for (int i = 0; i < count; ++i) {
    SwitchUpdateEntry entry;
    EntryFields(entry, field);
    m_Entries.push_back(entry);
  }
}

EArchive& operator<<(EArchive& archive, const ESwitchUpdateMessage& message) {
  message.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, ESwitchUpdateMessage& message) {
  message.SerializeIn(archive);
  return archive;
}
