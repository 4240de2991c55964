#include "eSwitchUpdateMessage.h"

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::kByte;
using eHal::detail::kSigned;
using eHal::detail::Layout;
using eHal::detail::PartType;
using eHal::detail::ReadWithoutSignature;
using eHal::detail::WriteFields;

namespace {

// The fields of one entry, which travels without a signature of its own.
struct EntrySchema {
  static constexpr auto kFields = std::make_tuple(
      Field("FirstValue", &SwitchUpdateEntry::m_FirstValue, kByte),
      Field("SecondValue", &SwitchUpdateEntry::m_SecondValue, kByte),
      Field("Octets", &SwitchUpdateEntry::m_Octets), Field("Value", &SwitchUpdateEntry::m_Value));
};

// The entry list: its count as a signed int, then the entries. The reader empties the list and
// reads entries only for a count above zero.
struct EntryList {
  static void Write(EArchive& archive, const std::list<SwitchUpdateEntry>& entries) {
    kSigned.Write(archive, entries.size());
    for (const SwitchUpdateEntry& entry : entries)
      WriteFields<EntrySchema>(archive, entry);
  }
  static void Read(EArchive& archive, std::list<SwitchUpdateEntry>& entries) {
    int count = 0;
    kSigned.Read(archive, count);
    entries.clear();
    for (int i = 0; i < count; ++i) {
      entries.emplace_back();
      ReadWithoutSignature<EntrySchema>(archive, entries.back());
    }
  }
  static void Describe(ERecordVisitor& visitor, const char* name,
                       const std::list<SwitchUpdateEntry>& entries) {
    visitor.BeginList(name, ECountWire::kSigned32, entries.size());
    for (const SwitchUpdateEntry& entry : entries)
      eHal::detail::Describe<EntrySchema>(visitor, "", entry);
    visitor.EndList();
  }
  static EValueType Type() {
    return EValueType::List(ECountWire::kSigned32, PartType<EntrySchema>());
  }
};

}  // namespace

struct ESwitchUpdateMessage::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("FirstHeaderValue", &ESwitchUpdateMessage::m_FirstHeaderValue),
                      Field("SecondHeaderValue", &ESwitchUpdateMessage::m_SecondHeaderValue),
                      Field("Entries", &ESwitchUpdateMessage::m_Entries, EntryList{}));
  static constexpr Layout kLayouts[] = {{8}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eSwitchUpdateMessage", 94,
                                              "ESwitchUpdateMessage::SerializeIn"};
};

template class ERecord<ESwitchUpdateMessage>;
