// eHal::ETableMessage: the envelope of a request that edits or queries a named table: a message
// type and the table's name around an opaque payload (for types 1 to 6, a command list).
#pragma once

#include "eBlob.h"
#include "eTableName.h"

class EArchive;

namespace eHal {

class ETableMessage {
 public:
  // What the payload is. kGetMessage is the query; kFirstCommandListMessage to
  // kLastCommandListMessage carry a command list.
  enum eMessageType : unsigned int {
    kFirstCommandListMessage = 1,
    kGetMessage = 3,
    kLastCommandListMessage = 6
  };

  ETableMessage() { Empty(); }
  ETableMessage(const ETableMessage& other) { Copy(other); }
  ETableMessage& operator=(const ETableMessage& other);

  void SetMessageType(eMessageType type) { m_MessageType = type; }
  eMessageType GetMessageType() const { return m_MessageType; }
  // Replaces the payload.
  void SetMessage(const EBlob& payload) { m_Message = payload; }
  void SetMessage(eMessageType type, const EBlob& payload);
  // The payload held (not a copy).
  const EBlob& GetMessage() const { return m_Message; }

  void SetTableName(const ETableName& name) { m_TableName = name; }
  // A copy of the table name.
  ETableName GetTableName() const { return m_TableName; }
  // True exactly for message type 3.
  bool IsGetMessage() const { return m_MessageType == kGetMessage; }

  void Copy(const ETableMessage& other);
  // Type 0, empty payload, unknown table name.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  eMessageType m_MessageType;
  EBlob m_Message;
  ETableName m_TableName;
};

EArchive& operator<<(EArchive& archive, const ETableMessage& message);
EArchive& operator>>(EArchive& archive, ETableMessage& message);

}  // namespace eHal
