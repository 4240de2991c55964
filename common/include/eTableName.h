// eHal::ETableName: the name of the table that a table message edits.
#pragma once

#include <string>

#include "eRecord.h"

namespace eHal {

class ETableName : public ERecord<ETableName> {
 public:
  static const std::string UnknownTableName;    // "UnknownTable"
  static const std::string IPAddressTableName;  // "IPADDRESSTABLE"

  ETableName() { Empty(); }
  ETableName(const std::string& name);

  std::string GetTableName() const { return m_TableName; }
  void SetTableName(const std::string& name) { m_TableName = name; }

  void Copy(const ETableName& other) { *this = other; }
  // Sets the name to UnknownTableName.
  void Empty();

  struct Schema;  // the archive form, in eTableName.cpp

 private:
  std::string m_TableName;
};

}  // namespace eHal

extern template class ERecord<eHal::ETableName>;
