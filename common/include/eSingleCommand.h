// ESingleCommand: one command of a command list, an action on the component(s) named by an
// EMultiComponentId, with an optional sub-identifier path below them and an opaque data blob.
// The action values belong to the servers that execute the commands.
#pragma once

#include <vector>

#include "eBlob.h"
#include "eMultiComponentId.h"
#include "eRecord.h"

class ESingleCommand : public ERecord<ESingleCommand> {
 public:
  // What to do with the target component (signed 32-bit; values defined by the servers).
  enum eAction : int {};

  // Action 0, no data, no id, no edit sub id.
  ESingleCommand() = default;
  ESingleCommand(const ESingleCommand& other) = default;
  ESingleCommand& operator=(const ESingleCommand& other) = default;

  void SetAction(eAction action) { m_Action = action; }
  eAction GetAction() const { return m_Action; }
  // The command's payload, held (not a copy).
  EBlob& GetData() { return m_Data; }
  const EBlob& GetData() const { return m_Data; }
  void SetId(const EMultiComponentId& id) { m_Id = id; }
  const EMultiComponentId& GetId() const { return m_Id; }
  // The path below the component that the edit concerns.
  void SetEditSubId(const std::vector<unsigned int>& editSubId) { m_EditSubId = editSubId; }
  const std::vector<unsigned int>& GetEditSubId() const { return m_EditSubId; }

  // Back to the state of a fresh command (storage of the data and sub id kept).
  void Empty();
  void Copy(const ESingleCommand& other) { *this = other; }
  void Swap(ESingleCommand& other);

  struct Schema;  // the archive form, in eSingleCommand.cpp

 private:
  eAction m_Action{};
  EBlob m_Data;
  EMultiComponentId m_Id;
  std::vector<unsigned int> m_EditSubId;
};

extern template class ERecord<ESingleCommand>;
