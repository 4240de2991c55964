#include "eInterfaceTable.h"

#include <memory>

EInterfaceTable::EInterfaceTable(const EInterfaceTable& other) : m_Items(other.m_Items) {
  m_Items.SetParent(this);
}

EInterfaceTable& EInterfaceTable::operator=(const EInterfaceTable& other) {
  // The list's assignment points the copied items at this list's parent, this table.
  m_Items = other.m_Items;
  return *this;
}

EInterfaceItem* EInterfaceTable::AddInterfaceItem(const EInterfaceItem& item, unsigned int id) {
  return m_Items.AdoptItem(std::make_unique<EInterfaceItem>(item), id);
}

bool EInterfaceTable::RemoveInterfaceItem(unsigned int id) {
  return m_Items.RemoveItem(m_Items.find(id));
}
