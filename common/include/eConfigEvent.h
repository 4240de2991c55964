// eHal::ConfigEvent: the in-memory record of one configuration change that a client is told
// about: the action, the sub-identifiers of the edited element and the component concerned.
// Polymorphic: derived events take part in Copy, assignment and Clone.
#pragma once

#include <vector>

#include "eMultiComponentId.h"
#include "eSingleCommand.h"

namespace eHal {

class ConfigEvent {
 public:
  ConfigEvent() { Empty(); }
  ConfigEvent(const ConfigEvent& other) { Copy(other); }
  virtual ~ConfigEvent() = default;
  // Calls the virtual Copy, so a derived class's Copy takes part in assignment.
  ConfigEvent& operator=(const ConfigEvent& other);

  // Action 0, edit sub id emptied (storage kept), id cleared.
  virtual void Empty();
  // A newly allocated copy; the caller owns it and deletes it through this class.
  virtual ConfigEvent* Clone() const;
  // Copies action, id and edit sub id; nothing happens when given the object itself.
  virtual void Copy(const ConfigEvent& other);

  void SetAction(ESingleCommand::eAction action) { m_Action = action; }
  ESingleCommand::eAction GetAction() const { return m_Action; }
  void SetId(const EMultiComponentId& id) { m_Id = id; }
  const EMultiComponentId& GetId() const { return m_Id; }
  void SetEditSubId(const std::vector<unsigned int>& editSubId) { m_EditSubId = editSubId; }
  const std::vector<unsigned int>& GetEditSubId() const { return m_EditSubId; }

 private:
  ESingleCommand::eAction m_Action = ESingleCommand::eAction{};
  std::vector<unsigned int> m_EditSubId;
  EMultiComponentId m_Id;
};

}  // namespace eHal
