// EAddressTable<KeyType, ItemType>: a small ordered table of address-keyed rows, one item per
// key, that can be serialised, copied and dumped to a trace channel. The library compiles two:
// the host rows of a port (EIPAddressRange to EIPAddressTableItem, the base of EIPAddressTable)
// and the static ARP entries (EIPAddress to EARPAddressTableItem).
#pragma once

#include <map>

#include "eLock.h"
#include "eRecord.h"

class ETrace;

template <typename KeyType, typename ItemType>
class EAddressTable : public ERecord<EAddressTable<KeyType, ItemType>> {
 public:
  // The rows in key order (the key's operator<), keys unique.
  using Rows = std::map<KeyType, ItemType>;
  using const_iterator = typename Rows::const_iterator;

  // No rows.
  EAddressTable() = default;
  // Copies of the other's rows; the copy has a lock of its own.
  EAddressTable(const EAddressTable& other) : m_Rows(other.m_Rows) {}
  EAddressTable& operator=(const EAddressTable& other);
  virtual ~EAddressTable() = default;

  // Replaces the rows by copies of the other's; no-op on self.
  void Copy(const EAddressTable& other);
  // Removes every row.
  void Empty() { m_Rows.clear(); }

  const_iterator Begin() const { return m_Rows.begin(); }
  const_iterator End() const { return m_Rows.end(); }

  // Inserts the row, or replaces the item of an equal key. Always true.
  bool AddEntry(const KeyType& key, const ItemType& item);
  // Deliberately always false: looks at nothing, whatever the table holds.
  bool FindItem(const KeyType& key, const ItemType& item) const;

  // At level 6 each row's item dumps itself in key order (ItemType::DumpToLog(trace, header)),
  // the first row with the header. Nothing for a null or silent channel or an empty table.
  void DumpToLog(ETrace* trace) const;

  // The lock for users that share the table between threads; none of the table's own
  // operations takes it.
  const ELock& GetLock() const { return m_Lock; }

  // Signature 0x11111111, then the rows as a map (count, then key and item in key order).
  struct Schema;  // the archive form, in eAddressTable.cpp

 protected:
  static constexpr int kDumpLevel = 6;

  Rows m_Rows;

 private:
  ELock m_Lock;
};

#include "eAddressTable.inl"
