#include "eSingleCommand.h"

#include <utility>

#include "eRecordSchema.h"

using namespace eHal::detail;

// The signature is written unsigned; the older signature carries the same layout.
struct ESingleCommand::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("EditSubId", &ESingleCommand::m_EditSubId), Field("Action", &ESingleCommand::m_Action),
      Field("Id", &ESingleCommand::m_Id), Field("Data", &ESingleCommand::m_Data));
  static constexpr Layout kLayouts[] = {{1}, {0x1101001}};
  static constexpr EWire kSignatureWire = EWire::kUnsigned32;
  // The command log's source file holds this reader.
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eCommandLog", 499,
                                                 "ESingleCommand::SerializeIn"};
};

void ESingleCommand::Empty() {
  m_Action = eAction{};
  m_Data.Empty();
  m_Id.ClearAllIds();
  m_EditSubId.clear();
}

void ESingleCommand::Swap(ESingleCommand& other) {
  std::swap(m_Action, other.m_Action);
  m_Data.Swap(other.m_Data);
  std::swap(m_Id, other.m_Id);
  m_EditSubId.swap(other.m_EditSubId);
}

void ESingleCommand::SerializeIn(EArchive& archive) {
  Empty();
  Read<Schema>(archive, *this);
}

template class ERecord<ESingleCommand>;
