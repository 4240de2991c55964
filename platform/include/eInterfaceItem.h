// EInterfaceItem: one emulated interface of a port: its MAC address, VLAN tag stack, ATM
// parameters, its IPv4 address item and its list of IPv6 address items, each of which points
// back at it. Part of the interface-table model that stands in for the interface-table library;
// serialisable.
#pragma once

#include "eIPv4AddressItem.h"
#include "eIPv6AddressItem.h"
#include "eMACAddress.h"
#include "eRecord.h"
#include "eUniqueIDMap.h"
#include "eVLANIPAddressTableItemProperties.h"

class EIPAddress;
class EInterfaceTable;

class EInterfaceItem : public ERecord<EInterfaceItem> {
 public:
  using IPv6AddressItemList = EUniqueIDMap<EIPv6AddressItem, const EInterfaceItem*>;

  // Disabled, MAC 00:00:00:00:00:00, the default VLAN item, local id 0, no parent, VPI 0,
  // VCI 32, encapsulation 1, ATM mode 1, a default IPv4 item and no IPv6 items.
  EInterfaceItem();
  // Copies every field, local id and parent included; the copy's address items (the IPv4 item
  // and copies of the IPv6 items) point at the copy.
  EInterfaceItem(const EInterfaceItem& other);
  // As the copy; this item's address items keep pointing at this item.
  EInterfaceItem& operator=(const EInterfaceItem& other);
  ~EInterfaceItem() = default;

  bool IsEnabled() const { return m_Enabled; }
  void SetEnabled(bool enabled) { m_Enabled = enabled; }
  const EMACAddress& GetMacAddress() const { return m_MacAddress; }
  void SetMacAddress(const EMACAddress& mac) { m_MacAddress = mac; }
  const EVLANIPAddressTableItemProperties& GetVLANItem() const { return m_VLANItem; }
  void SetVLANItem(const EVLANIPAddressTableItemProperties& vlan) { m_VLANItem = vlan; }
  // The identifier under which the interface table holds this item. Not archived (the table's
  // list carries it).
  unsigned int GetLocalId() const { return m_LocalId; }
  void SetLocalId(unsigned int id) { m_LocalId = id; }
  // The interface table that holds this item; null when none. Not archived.
  void SetParent(const EInterfaceTable* parent) { m_Parent = parent; }
  const EInterfaceTable* GetParent() const { return m_Parent; }
  unsigned int GetVPI() const { return m_VPI; }
  void SetVPI(unsigned int vpi) { m_VPI = vpi; }
  unsigned int GetVCI() const { return m_VCI; }
  void SetVCI(unsigned int vci) { m_VCI = vci; }
  int GetEncapsulation() const { return m_Encapsulation; }
  void SetEncapsulation(int encapsulation) { m_Encapsulation = encapsulation; }
  int GetATMMode() const { return m_ATMMode; }
  void SetATMMode(int mode) { m_ATMMode = mode; }

  // The IPv4 address item; its owner is this item.
  const EIPv4AddressItem& GetIPv4AddressItem() const { return m_IPv4AddressItem; }
  EIPv4AddressItem& GetIPv4AddressItem() { return m_IPv4AddressItem; }
  // The IPv6 address items by identifier; their owner is this item.
  const IPv6AddressItemList& GetIPv6AddressItemList() const { return m_IPv6AddressItems; }
  IPv6AddressItemList& GetIPv6AddressItemList() { return m_IPv6AddressItems; }
  // Adds an IPv6 address item holding `address` under the next free identifier and returns it;
  // null when the list cannot take it.
  EIPv6AddressItem* AddIPv6Address(const EIPAddress& address);

  struct Schema;  // the archive form, in eInterfaceItem.cpp

 private:
  static constexpr unsigned int kDefaultVCI = 32;

  bool m_Enabled = false;
  EMACAddress m_MacAddress;
  EVLANIPAddressTableItemProperties m_VLANItem;
  unsigned int m_LocalId = 0;
  const EInterfaceTable* m_Parent = nullptr;
  unsigned int m_VPI = 0;
  unsigned int m_VCI = kDefaultVCI;
  int m_Encapsulation = 1;
  int m_ATMMode = 1;
  EIPv4AddressItem m_IPv4AddressItem;
  IPv6AddressItemList m_IPv6AddressItems;
};

extern template class ERecord<EInterfaceItem>;
