// EIPv6AddressItem: one IPv6 address of an emulated interface, kept in the interface item's
// identifier map, which gives it its local identifier and points it at the interface item. Part
// of the interface-table model that stands in for the interface-table library; serialisable.
#pragma once

#include "eIPAddress.h"
#include "eRecord.h"

class EInterfaceItem;

class EIPv6AddressItem : public ERecord<EIPv6AddressItem> {
 public:
  // The unspecified IPv6 address ::, local id 0, no owner.
  EIPv6AddressItem();
  // Copies every field, the local id and the owner included.
  EIPv6AddressItem(const EIPv6AddressItem& other) = default;
  EIPv6AddressItem& operator=(const EIPv6AddressItem& other) = default;
  ~EIPv6AddressItem() = default;

  const EIPAddress& GetAddress() const { return m_Address; }
  void SetAddress(const EIPAddress& address) { m_Address = address; }
  // The identifier under which the interface item's list holds this item. Not archived (the
  // list carries it).
  unsigned int GetLocalId() const { return m_LocalId; }
  void SetLocalId(unsigned int id) { m_LocalId = id; }
  // The interface item that holds this address item; null when none. Not archived.
  void SetParent(const EInterfaceItem* parent) { m_Owner = parent; }
  const EInterfaceItem* GetOwner() const { return m_Owner; }

  struct Schema;  // the archive form, in eIPv6AddressItem.cpp

 private:
  EIPAddress m_Address;
  unsigned int m_LocalId = 0;
  const EInterfaceItem* m_Owner = nullptr;
};

extern template class ERecord<EIPv6AddressItem>;
