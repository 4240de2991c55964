#include "eSingleCommand.h"

#include <utility>

#include "eRecordSchema.h"

using eHal::detail::Field;
using eHal::detail::Layout;

// The signature is written unsigned; the older signature carries the same layout.
struct ESingleCommand::Schema {
  // A record read starts empty.
  static constexpr auto kBeforeRead = &ESingleCommand::Empty;
  static constexpr auto kFields = std::make_tuple(
      Field("EditSubId", &ESingleCommand::m_EditSubId), Field("Action", &ESingleCommand::m_Action),
      Field("Id", &ESingleCommand::m_Id), Field("Data", &ESingleCommand::m_Data));
  static constexpr Layout kLayouts[] = {{1}, {0x1101001}};
  static constexpr ENumberWire kSignatureWire = ENumberWire::kUnsigned32;
  // The command log's source file holds this reader.
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eCommandLog", 499,
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

template class ERecord<ESingleCommand>;
