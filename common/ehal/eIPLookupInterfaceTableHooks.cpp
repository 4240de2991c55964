#include "eIPLookupInterfaceTableHooks.h"

#include "eIPv4AddressItem.h"
#include "eIPv6AddressItem.h"
#include "eInterfaceTable.h"

namespace {
// The VLAN an IPv4 address item lives on, from the property record of its interface.
EVLAN VlanOf(const EVLANIPAddressTableItemProperties& props) {
  EVLAN vlan;
  EVlanItemToEVlan(props, vlan);
  return vlan;
}
}  // namespace

void EVlanItemToEVlan(const EVLANIPAddressTableItemProperties& props, EVLAN& vlan) {
  if (!props.IsEnabled()) return;
  vlan.SetUserPriority(props.GetUserPriority(0));
  vlan.SetCanonicalFormat(static_cast<int>(props.GetCanonicalFormat(0)));
  vlan.SetVLANID(props.GetVLANID(0));
  vlan.SetVLANTPID(props.GetVLANTPID(0));
}

bool EIPLookupInterfaceTableHooks::ipVlanIdPairLessThan::operator()(const IPVLANIdPair& a,
                                                                    const IPVLANIdPair& b) const {
  const EIPAddress& addressA = a.first.m_IPAddress;
  const EIPAddress& addressB = b.first.m_IPAddress;
  if (!(addressA == addressB)) return addressA < addressB;
  const unsigned int vlanA = a.first.m_VLAN.GetVLANID();
  const unsigned int vlanB = b.first.m_VLAN.GetVLANID();
  if (vlanA != vlanB) return vlanA < vlanB;
  return a.second < b.second;
}

EIPLookupInterfaceTableHooks::~EIPLookupInterfaceTableHooks() = default;

const EIPLookupInterfaceTableHooks::IPVLANIdPair* EIPLookupInterfaceTableHooks::FindFirstNotLess(
    const IPVLANIdPair& probe) const {
  const auto found = m_Index.lower_bound(probe);
  return found == m_Index.end() ? nullptr : &*found;
}

unsigned int EIPLookupInterfaceTableHooks::GetInterfaceId(const EIPAddress& address) const {
  const IPVLANIdPair probe{IPVLAN{address, EVLAN()}, 0};
  const IPVLANIdPair* const found = FindFirstNotLess(probe);
  if (found == nullptr || !(found->first.m_IPAddress == address)) return 0;
  return found->second;
}

unsigned int EIPLookupInterfaceTableHooks::GetInterfaceIdFromVlan(const EIPAddress& address,
                                                                  const EVLAN& vlan) const {
  const IPVLANIdPair probe{IPVLAN{address, vlan}, 0};
  const IPVLANIdPair* const found = FindFirstNotLess(probe);
  if (found == nullptr || !(found->first.m_IPAddress == address)) return 0;
  if (found->first.m_VLAN.GetVLANID() != vlan.GetVLANID()) return 0;
  return found->second;
}

void EIPLookupInterfaceTableHooks::Insert(const EIPAddress& address, const EVLAN& vlan,
                                          const EInterfaceItem* owner) {
  if (owner == nullptr) return;
  m_Index.insert(IPVLANIdPair{IPVLAN{address, vlan}, owner->GetLocalId()});
}

void EIPLookupInterfaceTableHooks::Erase(const EIPAddress& address, const EVLAN& vlan,
                                         const EInterfaceItem* owner) {
  if (owner == nullptr) return;
  m_Index.erase(IPVLANIdPair{IPVLAN{address, vlan}, owner->GetLocalId()});
}

void EIPLookupInterfaceTableHooks::EnablingIPv6AddressList(
    const EInterfaceItem::IPv6AddressItemList& list, bool enable) {
  for (auto entry = list.begin(); entry != list.end(); ++entry) {
    const EIPv6AddressItem* const item = list.GetItem(entry);
    if (item == nullptr) continue;
    if (enable) {
      AddingIPv6AddressItem(*item);
    } else {
      RemovingIPv6AddressItem(*item);
    }
  }
}

void EIPLookupInterfaceTableHooks::SettingInterfaceTable(const EInterfaceTable& /*oldTable*/,
                                                         const EInterfaceTable& newTable) {
  m_Index.clear();
  // Indexes a copy of the list, so that what the hooks receive does not depend on the table
  // staying unchanged while they run.
  const EInterfaceTable::InterfaceItemList items = newTable.GetInterfaceItemList();
  for (auto entry = items.begin(); entry != items.end(); ++entry) {
    const EInterfaceItem* const item = items.GetItem(entry);
    if (item != nullptr) AddingInterfaceItem(*item);
  }
}

void EIPLookupInterfaceTableHooks::AddingInterfaceItem(const EInterfaceItem& item) {
  EnablingIPv4AddressItem(item.GetIPv4AddressItem(), item.GetVLANItem());
  EnablingIPv6AddressList(item.GetIPv6AddressItemList(), true);
}

void EIPLookupInterfaceTableHooks::RemovingInterfaceItem(const EInterfaceItem& item) {
  DisablingIPv4AddressItem(item.GetIPv4AddressItem(), item.GetVLANItem());
  EnablingIPv6AddressList(item.GetIPv6AddressItemList(), false);
}

void EIPLookupInterfaceTableHooks::SettingInterfaceItem(const EInterfaceItem& oldItem,
                                                        const EInterfaceItem& newItem) {
  RemovingInterfaceItem(oldItem);
  AddingInterfaceItem(newItem);
}

void EIPLookupInterfaceTableHooks::EnablingInterfaceItem(const EInterfaceItem& item) {
  AddingInterfaceItem(item);
}

void EIPLookupInterfaceTableHooks::DisablingInterfaceItem(const EInterfaceItem& item) {
  RemovingInterfaceItem(item);
}

void EIPLookupInterfaceTableHooks::SettingInterfaceVlan(
    const EInterfaceItem& item, const EVLANIPAddressTableItemProperties& props) {
  const EInterfaceItem before(item);
  EInterfaceItem after(item);
  after.SetVLANItem(props);
  RemovingInterfaceItem(before);
  AddingInterfaceItem(after);
}

void EIPLookupInterfaceTableHooks::SettingIPv4AddressItem(
    const EIPv4AddressItem& oldItem, const EIPv4AddressItem& newItem,
    const EVLANIPAddressTableItemProperties& oldProps,
    const EVLANIPAddressTableItemProperties& newProps) {
  DisablingIPv4AddressItem(oldItem, oldProps);
  Insert(newItem.GetAddress(), VlanOf(newProps), oldItem.GetOwner());
}

void EIPLookupInterfaceTableHooks::EnablingIPv4AddressItem(
    const EIPv4AddressItem& item, const EVLANIPAddressTableItemProperties& props) {
  Insert(item.GetAddress(), VlanOf(props), item.GetOwner());
}

void EIPLookupInterfaceTableHooks::DisablingIPv4AddressItem(
    const EIPv4AddressItem& item, const EVLANIPAddressTableItemProperties& props) {
  Erase(item.GetAddress(), VlanOf(props), item.GetOwner());
}

void EIPLookupInterfaceTableHooks::SettingIPv4Address(
    const EIPv4AddressItem& item, const EIPAddress& address,
    const EVLANIPAddressTableItemProperties& props, const EVLAN& vlan) {
  DisablingIPv4AddressItem(item, props);
  Insert(address, vlan, item.GetOwner());
}

void EIPLookupInterfaceTableHooks::AddingIPv6AddressItem(const EIPv6AddressItem& item) {
  Insert(item.GetAddress(), EVLAN(), item.GetOwner());
}

void EIPLookupInterfaceTableHooks::RemovingIPv6AddressItem(const EIPv6AddressItem& item) {
  Erase(item.GetAddress(), EVLAN(), item.GetOwner());
}

void EIPLookupInterfaceTableHooks::SettingIPv6AddressItem(const EIPv6AddressItem& oldItem,
                                                          const EIPv6AddressItem& newItem) {
  RemovingIPv6AddressItem(oldItem);
  Insert(newItem.GetAddress(), EVLAN(), oldItem.GetOwner());
}

void EIPLookupInterfaceTableHooks::SettingIPv6Address(const EIPv6AddressItem& item,
                                                      const EIPAddress& address) {
  RemovingIPv6AddressItem(item);
  Insert(address, EVLAN(), item.GetOwner());
}
