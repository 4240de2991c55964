#include "eConfigEvent.h"

namespace eHal {

ConfigEvent& ConfigEvent::operator=(const ConfigEvent& other) {
  Copy(other);
  return *this;
}

void ConfigEvent::Empty() {
  m_Action = ESingleCommand::eAction{};
  m_EditSubId.clear();
  m_Id.ClearAllIds();
}

ConfigEvent* ConfigEvent::Clone() const {
  return new ConfigEvent(*this);
}

void ConfigEvent::Copy(const ConfigEvent& other) {
  if (this == &other) return;
  m_Action = other.m_Action;
  m_Id = other.m_Id;
  m_EditSubId = other.m_EditSubId;
}

}  // namespace eHal
