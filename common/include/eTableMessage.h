// eHal::ETableMessage: the envelope of a request that edits or queries a named table: a message
// type and the table's name around an opaque payload (for types 1 to 6, a command list).
#pragma once

#include "eEnvelope.h"
#include "eTableName.h"

namespace eHal {

class ETableMessage : public EEnvelope<ETableMessage> {
 public:
  // The message types this envelope interprets: kGetMessage is the query;
  // kFirstCommandListMessage to kLastCommandListMessage carry a command list.
  static constexpr eMessageType kFirstCommandListMessage = eMessageType{1};
  static constexpr eMessageType kGetMessage = eMessageType{3};
  static constexpr eMessageType kLastCommandListMessage = eMessageType{6};

  ETableMessage() { Empty(); }

  // The payload held (not a copy).
  const EBlob& GetMessage() const { return m_Message; }
  void SetTableName(const ETableName& name) { m_TableName = name; }
  // A copy of the table name.
  ETableName GetTableName() const { return m_TableName; }
  // True exactly for message type 3.
  bool IsGetMessage() const { return m_MessageType == kGetMessage; }

  // Type 0, empty payload, unknown table name.
  void Empty();

  struct Schema;  // the archive form, in eTableMessage.cpp

 private:
  ETableName m_TableName;
};

}  // namespace eHal

extern template class ERecord<eHal::ETableMessage>;
