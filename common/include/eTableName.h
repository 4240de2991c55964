// eHal::ETableName: the name of the table that a table message edits.
#pragma once

#include <string>

class EArchive;

namespace eHal {

class ETableName {
 public:
  static const std::string UnknownTableName;    // "UnknownTable"
  static const std::string IPAddressTableName;  // "IPADDRESSTABLE"

  ETableName() { Empty(); }
  ETableName(const std::string& name);
  ETableName(const ETableName& other) { Copy(other); }
  ETableName& operator=(const ETableName& other);

  std::string GetTableName() const { return m_TableName; }
  void SetTableName(const std::string& name) { m_TableName = name; }

  void Copy(const ETableName& other) { m_TableName = other.m_TableName; }
  // Sets the name to UnknownTableName.
  void Empty();

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  std::string m_TableName;
};

EArchive& operator<<(EArchive& archive, const ETableName& name);
EArchive& operator>>(EArchive& archive, ETableName& name);

}  // namespace eHal
