// EInterfaceTable: the emulated interfaces of a port, kept by identifier in an owning map whose
// items point back at the table. A small model that stands in for the interface-table library,
// so that the address tables and the hooks can be built, tested and used without it.
#pragma once

#include "eInterfaceItem.h"
#include "eUniqueIDMap.h"

class EInterfaceTable {
 public:
  using InterfaceItemList = EUniqueIDMap<EInterfaceItem, const EInterfaceTable*>;

  // No interface items.
  EInterfaceTable() : m_Items(this) {}
  // Copies of the other's items under the same identifiers, pointed at this table.
  EInterfaceTable(const EInterfaceTable& other);
  EInterfaceTable& operator=(const EInterfaceTable& other);
  ~EInterfaceTable() = default;

  const InterfaceItemList& GetInterfaceItemList() const { return m_Items; }
  InterfaceItemList& GetInterfaceItemList() { return m_Items; }

  // Stores a copy of `item` under `id` (0: the next free identifier), with its local id and
  // parent set, and returns it; null when `id` is in use.
  EInterfaceItem* AddInterfaceItem(const EInterfaceItem& item, unsigned int id = 0);
  // Removes and destroys the item of `id`; false when there is none.
  bool RemoveInterfaceItem(unsigned int id);
  // The item of `id`, or null.
  EInterfaceItem* FindInterfaceItem(unsigned int id) { return m_Items.GetItem(m_Items.find(id)); }
  const EInterfaceItem* FindInterfaceItem(unsigned int id) const {
    return m_Items.GetItem(m_Items.find(id));
  }

 private:
  InterfaceItemList m_Items;
};
