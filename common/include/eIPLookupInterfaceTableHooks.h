// EIPLookupInterfaceTableHooks: answers which emulated interface of a port owns an IP address,
// optionally on a VLAN. It keeps an ordered index of (address, VLAN, interface id) entries
// current from the interface-table hooks as interfaces and their address items come, go, are
// enabled, disabled or changed, and looks an address up in logarithmic time.
//
// It reacts to the hooks that can move an address between interfaces; for every other hook it
// keeps the empty body of EIgnoreInterfaceTableHooks, its base. Hooks that call other hooks do so
// through the object's own virtual operations, so that a derived class overriding one of them
// (say EnablingIPv4AddressItem) changes the hooks built on it (AddingInterfaceItem) as well.
#pragma once

#include <set>
#include <utility>

#include "eIPAddress.h"
#include "eIgnoreInterfaceTableHooks.h"
#include "eInterfaceItem.h"
#include "eVLAN.h"

class EIPLookupInterfaceTableHooks : public EIgnoreInterfaceTableHooks {
 public:
  // An address with the VLAN it lives on: an emptied EVLAN (VLAN id 0) for untagged addresses
  // and for every IPv6 address.
  struct IPVLAN {
    EIPAddress m_IPAddress;
    EVLAN m_VLAN;
  };
  // An index entry: the address on its VLAN and the local id of the interface that owns it.
  using IPVLANIdPair = std::pair<IPVLAN, unsigned int>;
  // Orders entries by address, then VLAN id, then interface id. Only the VLAN id of the EVLAN
  // takes part; its TPID, priority and canonical-format bit are carried but never compared.
  struct ipVlanIdPairLessThan {
    bool operator()(const IPVLANIdPair& a, const IPVLANIdPair& b) const;
  };
  using Index = std::set<IPVLANIdPair, ipVlanIdPairLessThan>;

  // An empty index.
  EIPLookupInterfaceTableHooks() = default;
  ~EIPLookupInterfaceTableHooks() override;

  // The interface id of the least entry holding `address` (smallest VLAN id, then smallest
  // interface id), or 0 when no entry holds it.
  unsigned int GetInterfaceId(const EIPAddress& address) const;
  // The smallest interface id among the entries holding `address` on the VLAN id of `vlan`, or 0.
  unsigned int GetInterfaceIdFromVlan(const EIPAddress& address, const EVLAN& vlan) const;

  // Calls AddingIPv6AddressItem (`enable`) or RemovingIPv6AddressItem for every item of `list`,
  // in the list's order; entries without an item are skipped.
  void EnablingIPv6AddressList(const EInterfaceItem::IPv6AddressItemList& list, bool enable);

  // Clears the index and adds every interface of a copy of the new table's list, in its order.
  void SettingInterfaceTable(const EInterfaceTable& oldTable,
                             const EInterfaceTable& newTable) override;
  // The interface's IPv4 address on its VLAN and all its IPv6 addresses enter the index, whatever
  // the enabled flags say.
  void AddingInterfaceItem(const EInterfaceItem& item) override;
  // The entries that AddingInterfaceItem makes for the interface leave the index.
  void RemovingInterfaceItem(const EInterfaceItem& item) override;
  // Removes the old interface's entries, then adds the new one's.
  void SettingInterfaceItem(const EInterfaceItem& oldItem, const EInterfaceItem& newItem) override;
  // As AddingInterfaceItem.
  void EnablingInterfaceItem(const EInterfaceItem& item) override;
  // As RemovingInterfaceItem.
  void DisablingInterfaceItem(const EInterfaceItem& item) override;
  // Moves the interface's entries to a copy of it that carries `props`.
  void SettingInterfaceVlan(const EInterfaceItem& item,
                            const EVLANIPAddressTableItemProperties& props) override;
  // Removes the old item's entry, then adds the new item's address on the new VLAN under the old
  // item's owner.
  void SettingIPv4AddressItem(const EIPv4AddressItem& oldItem, const EIPv4AddressItem& newItem,
                              const EVLANIPAddressTableItemProperties& oldProps,
                              const EVLANIPAddressTableItemProperties& newProps) override;
  // Adds the item's address on the outermost tag of `props` (see EVlanItemToEVlan) under the
  // item's owner; an entry already there stays single.
  void EnablingIPv4AddressItem(const EIPv4AddressItem& item,
                               const EVLANIPAddressTableItemProperties& props) override;
  // Removes the entry that EnablingIPv4AddressItem makes for the same arguments, if any.
  void DisablingIPv4AddressItem(const EIPv4AddressItem& item,
                                const EVLANIPAddressTableItemProperties& props) override;
  // Removes the item's entry, then adds `address` on a copy of `vlan` under the item's owner.
  void SettingIPv4Address(const EIPv4AddressItem& item, const EIPAddress& address,
                          const EVLANIPAddressTableItemProperties& props,
                          const EVLAN& vlan) override;
  // Adds the item's address untagged under the item's owner.
  void AddingIPv6AddressItem(const EIPv6AddressItem& item) override;
  // Removes the untagged entry of the item's address, if any.
  void RemovingIPv6AddressItem(const EIPv6AddressItem& item) override;
  // Removes the old item's entry, then adds the new item's address under the old item's owner.
  void SettingIPv6AddressItem(const EIPv6AddressItem& oldItem,
                              const EIPv6AddressItem& newItem) override;
  // Removes the item's entry, then adds `address` under the item's owner.
  void SettingIPv6Address(const EIPv6AddressItem& item, const EIPAddress& address) override;

 private:
  // The entry of `address` on `vlan` for the interface `owner`; nothing without an owner.
  void Insert(const EIPAddress& address, const EVLAN& vlan, const EInterfaceItem* owner);
  void Erase(const EIPAddress& address, const EVLAN& vlan, const EInterfaceItem* owner);
  // The first entry not less than `probe`, or null.
  const IPVLANIdPair* FindFirstNotLess(const IPVLANIdPair& probe) const;

  Index m_Index;
};

// Copies the outermost tag of an enabled VLAN property record (user priority, canonical-format
// bit, VLAN id and TPID) into `vlan`; leaves `vlan` untouched when the record is disabled. Inner
// tags take no part in lookups.
void EVlanItemToEVlan(const EVLANIPAddressTableItemProperties& props, EVLAN& vlan);
