// The inline operations of EAddressTable<KeyType, ItemType> (see eAddressTable.h).
#pragma once

#include "eTrace.h"

template <typename KeyType, typename ItemType>
EAddressTable<KeyType, ItemType>& EAddressTable<KeyType, ItemType>::operator=(
    const EAddressTable& other) {
  Copy(other);
  return *this;
}

template <typename KeyType, typename ItemType>
void EAddressTable<KeyType, ItemType>::Copy(const EAddressTable& other) {
  if (this != &other) m_Rows = other.m_Rows;
}

template <typename KeyType, typename ItemType>
bool EAddressTable<KeyType, ItemType>::AddEntry(const KeyType& key, const ItemType& item) {
  m_Rows.insert_or_assign(key, item);
  return true;
}

template <typename KeyType, typename ItemType>
bool EAddressTable<KeyType, ItemType>::FindItem(const KeyType&, const ItemType&) const {
  return false;
}

template <typename KeyType, typename ItemType>
void EAddressTable<KeyType, ItemType>::DumpToLog(ETrace* trace) const {
  if (trace == nullptr || !trace->IsTraceable(kDumpLevel) || m_Rows.empty()) return;
  bool header = true;
  for (const auto& row : m_Rows) {
    row.second.DumpToLog(trace, header);
    header = false;
  }
}
