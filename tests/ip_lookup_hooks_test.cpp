#include "eIPLookupInterfaceTableHooks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "eInterfaceTable.h"
#include "eMultipleInterfaceTableHooks.h"
#include "network_values.h"

using network_values::V4;
using network_values::V6;

namespace {

// A VLAN property record with one tag (or none: disabled) of the given id, priority and TPID.
EVLANIPAddressTableItemProperties Props(bool enabled, unsigned short id, unsigned char priority = 0,
                                        unsigned short tpid = 0x8100) {
  EVLANIPAddressTableItemProperties props;
  props.SetEnabled(enabled);
  props.SetVLANID(id, 0);
  props.SetUserPriority(priority, 0);
  props.SetVLANTPID(tpid, 0);
  return props;
}

EVLANIPAddressTableItemProperties Tagged(unsigned short id) {
  return Props(true, id);
}
EVLANIPAddressTableItemProperties Untagged() {
  return Props(false, 0);
}

EVLAN Vlan(unsigned int id, unsigned int tpid = 0) {
  EVLAN vlan;
  vlan.SetVLANID(id);
  vlan.SetVLANTPID(tpid);
  return vlan;
}

// An interface holding `ipv4` on the VLAN of `props`, with the given IPv6 addresses.
EInterfaceItem Interface(const EIPAddress& ipv4, const EVLANIPAddressTableItemProperties& props,
                         const std::vector<EIPAddress>& ipv6 = {}) {
  EInterfaceItem item;
  item.SetEnabled(true);
  item.SetVLANItem(props);
  item.GetIPv4AddressItem().SetEnabled(true);
  item.GetIPv4AddressItem().SetAddress(ipv4);
  for (const EIPAddress& address : ipv6)
    item.AddIPv6Address(address);
  return item;
}

// The first IPv6 address item of an interface.
const EIPv6AddressItem& FirstIPv6(const EInterfaceItem& item) {
  const auto& list = item.GetIPv6AddressItemList();
  return *list.GetItem(list.begin());
}

const EIPAddress kA = V4(10, 0, 0, 1);
const EIPAddress kB = V4(10, 0, 0, 2);
const EIPAddress kSix = V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1});
const EIPAddress kSeven = V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, 7});

}  // namespace

TEST(EIPLookupInterfaceTableHooks, IsAHookObject) {
  EXPECT_TRUE((std::is_base_of_v<EInterfaceTableHooks, EIPLookupInterfaceTableHooks>));
  EXPECT_FALSE(std::is_abstract_v<EIPLookupInterfaceTableHooks>);
}

TEST(EIPLookupInterfaceTableHooks, AnEmptyIndexFindsNothing) {
  const EIPLookupInterfaceTableHooks lookup;
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(EIPAddress()), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, EVLAN()), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kSix, Vlan(0)), 0u);
}

TEST(EVlanItemToEVlan, ADisabledRecordLeavesTheTagUntouched) {
  EVLAN vlan = Vlan(33, 0x88A80000);
  vlan.SetUserPriority(5);
  EVlanItemToEVlan(Props(false, 100, 3, 0x9100), vlan);
  EXPECT_EQ(vlan.GetVLANID(), 33u);
  EXPECT_EQ(vlan.GetVLANTPID(), 0x88A80000u);
  EXPECT_EQ(vlan.GetUserPriority(), 5);
  EVLAN fresh;
  EVlanItemToEVlan(Props(false, 100), fresh);
  EXPECT_EQ(fresh.GetVLANID(), 0u);
}

TEST(EVlanItemToEVlan, AnEnabledRecordGivesItsOutermostTag) {
  EVLANIPAddressTableItemProperties props = Props(true, 100, 6, 0x88A8);
  props.SetCanonicalFormat(1, 0);
  props.SetVLANCount(2);
  props.SetVLANID(200, 1);
  props.SetUserPriority(2, 1);
  props.SetVLANTPID(0x8100, 1);
  EVLAN vlan;
  EVlanItemToEVlan(props, vlan);
  EXPECT_EQ(vlan.GetVLANID(), 100u);
  EXPECT_EQ(vlan.GetUserPriority(), 6);
  EXPECT_EQ(vlan.GetVLANTPID(), 0x88A8u);
  EXPECT_EQ(vlan.GetCanonicalFormat(), 0);  // the tag's setter keeps it
}

TEST(EIPLookupInterfaceTableHooks, OrderIsAddressThenVlanIdThenInterface) {
  using Pair = EIPLookupInterfaceTableHooks::IPVLANIdPair;
  const EIPLookupInterfaceTableHooks::ipVlanIdPairLessThan less;
  const auto pair = [](const EIPAddress& address, const EVLAN& vlan, unsigned int id) {
    return Pair{EIPLookupInterfaceTableHooks::IPVLAN{address, vlan}, id};
  };
  EXPECT_TRUE(less(pair(kA, Vlan(9), 9), pair(kB, Vlan(1), 1)));
  EXPECT_FALSE(less(pair(kB, Vlan(1), 1), pair(kA, Vlan(9), 9)));
  EXPECT_TRUE(less(pair(kB, Vlan(0), 1), pair(kSix, Vlan(0), 0)));  // IPv4 before IPv6
  EXPECT_TRUE(less(pair(kA, Vlan(1), 9), pair(kA, Vlan(2), 1)));
  EXPECT_TRUE(less(pair(kA, Vlan(1), 1), pair(kA, Vlan(1), 2)));
  EXPECT_FALSE(less(pair(kA, Vlan(1), 2), pair(kA, Vlan(1), 2)));
  // Only the VLAN id takes part.
  EVLAN prioritised = Vlan(1, 0x88A80000);
  prioritised.SetUserPriority(7);
  EXPECT_FALSE(less(pair(kA, prioritised, 2), pair(kA, Vlan(1), 2)));
  EXPECT_FALSE(less(pair(kA, Vlan(1), 2), pair(kA, prioritised, 2)));
}

TEST(EIPLookupInterfaceTableHooks, InterfacesSharingAnAddressResolveToTheSmallestId) {
  EInterfaceTable table;
  const EInterfaceItem& seven = *table.AddInterfaceItem(Interface(kA, Untagged()), 7);
  const EInterfaceItem& three = *table.AddInterfaceItem(Interface(kA, Untagged()), 3);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(seven);
  lookup.AddingInterfaceItem(three);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 3u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, EVLAN()), 3u);
  lookup.RemovingInterfaceItem(three);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 7u);
  lookup.RemovingInterfaceItem(seven);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
}

TEST(EIPLookupInterfaceTableHooks, UntaggedSortsBeforeTagged) {
  EInterfaceTable table;
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(*table.AddInterfaceItem(Interface(kA, Tagged(100)), 5));
  lookup.AddingInterfaceItem(*table.AddInterfaceItem(Interface(kA, Untagged()), 9));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 9u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(100)), 5u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(200)), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(0)), 9u);
  // The probe's TPID and priority do not matter.
  EVLAN other = Vlan(100, 0x91000000);
  other.SetUserPriority(3);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, other), 5u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(100)), 0u);
}

TEST(EIPLookupInterfaceTableHooks, ADisabledVlanRecordIndexesUntagged) {
  EInterfaceTable table;
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(*table.AddInterfaceItem(Interface(kA, Props(false, 300)), 4));
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(0)), 4u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(300)), 0u);
}

TEST(EIPLookupInterfaceTableHooks, IPv6AddressesLiveOnVlanZeroOnly) {
  EInterfaceTable table;
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(*table.AddInterfaceItem(Interface(kA, Tagged(10), {kSix, kSeven}), 2));
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 2u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 2u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kSix, Vlan(0)), 2u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kSix, Vlan(10)), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(10)), 2u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(0)), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 2u);
}

TEST(EIPLookupInterfaceTableHooks, EnabledFlagsAndZeroAddressesAreNotConsulted) {
  EInterfaceItem item = Interface(EIPAddress(), Untagged());
  item.SetEnabled(false);
  item.GetIPv4AddressItem().SetEnabled(false);
  EInterfaceTable table;
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(*table.AddInterfaceItem(item, 6));
  EXPECT_EQ(lookup.GetInterfaceId(V4(0, 0, 0, 0)), 6u);
}

TEST(EIPLookupInterfaceTableHooks, EnablingAndDisablingIPv4AddressItems) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Untagged()), 8);
  const EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  EIPLookupInterfaceTableHooks lookup;
  lookup.EnablingIPv4AddressItem(ipv4, Tagged(30));
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(30)), 8u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(0)), 0u);
  // Enabled twice, disabled once: the index held one entry.
  lookup.EnablingIPv4AddressItem(ipv4, Tagged(30));
  lookup.DisablingIPv4AddressItem(ipv4, Tagged(30));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  // Disabling removes the entry of the same VLAN id, whatever the TPID and priority.
  lookup.EnablingIPv4AddressItem(ipv4, Props(true, 30, 1, 0x8100));
  lookup.DisablingIPv4AddressItem(ipv4, Tagged(31));
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(30)), 8u);
  lookup.DisablingIPv4AddressItem(ipv4, Props(true, 30, 5, 0x88A8));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  lookup.DisablingIPv4AddressItem(ipv4, Tagged(30));  // nothing left to remove
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
}

TEST(EIPLookupInterfaceTableHooks, SettingIPv4AddressItemMovesTheEntryUnderTheOldOwner) {
  EInterfaceTable table;
  const EInterfaceItem& first = *table.AddInterfaceItem(Interface(kA, Untagged()), 1);
  const EInterfaceItem& second = *table.AddInterfaceItem(Interface(kB, Untagged()), 2);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(first);
  EIPv4AddressItem changed = second.GetIPv4AddressItem();  // owned by the second interface
  lookup.SettingIPv4AddressItem(first.GetIPv4AddressItem(), changed, Untagged(), Tagged(40));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(40)), 1u);
  // A new item without an owner is still indexed under the old item's owner.
  EIPv4AddressItem loose;
  loose.SetAddress(kA);
  EIPv4AddressItem moved = first.GetIPv4AddressItem();
  moved.SetAddress(kB);
  lookup.SettingIPv4AddressItem(moved, loose, Tagged(40), Untagged());
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(40)), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 1u);
}

TEST(EIPLookupInterfaceTableHooks, SettingIPv4AddressUsesTheGivenTag) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Tagged(10)), 3);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(item);
  // The tag argument is copied as it is, even where the property record is disabled.
  lookup.SettingIPv4Address(item.GetIPv4AddressItem(), kB, Tagged(10), Vlan(77));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(77)), 3u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(10)), 0u);
}

TEST(EIPLookupInterfaceTableHooks, IPv6AddressItemHooks) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Untagged(), {kSix}), 12);
  const EIPv6AddressItem& six = FirstIPv6(item);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingIPv6AddressItem(six);
  lookup.AddingIPv6AddressItem(six);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 12u);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);  // only the IPv6 item was announced
  lookup.RemovingIPv6AddressItem(six);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);

  lookup.AddingIPv6AddressItem(six);
  EIPv6AddressItem loose;  // no owner: indexed under the old item's owner
  loose.SetAddress(kSeven);
  lookup.SettingIPv6AddressItem(six, loose);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 12u);

  EIPv6AddressItem seven = six;
  seven.SetAddress(kSeven);
  lookup.SettingIPv6Address(seven, kSix);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kSix, EVLAN()), 12u);
}

TEST(EIPLookupInterfaceTableHooks, AddressItemsWithoutAnOwnerChangeNothing) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Untagged(), {kSix}), 5);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(item);
  EIPv4AddressItem v4;
  v4.SetAddress(kA);
  EIPv6AddressItem v6;
  v6.SetAddress(kSix);
  lookup.DisablingIPv4AddressItem(v4, Untagged());
  lookup.RemovingIPv6AddressItem(v6);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 5u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 5u);
  lookup.EnablingIPv4AddressItem(v4, Tagged(9));
  lookup.AddingIPv6AddressItem(v6);
  lookup.SettingIPv4AddressItem(v4, item.GetIPv4AddressItem(), Untagged(), Tagged(9));
  lookup.SettingIPv4Address(v4, kB, Untagged(), Vlan(9));
  lookup.SettingIPv6AddressItem(v6, FirstIPv6(item));
  lookup.SettingIPv6Address(v6, kSeven);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 5u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 5u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(9)), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kB), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 0u);
}

TEST(EIPLookupInterfaceTableHooks, InterfaceItemHooks) {
  EInterfaceTable table;
  const EInterfaceItem& first = *table.AddInterfaceItem(Interface(kA, Tagged(5), {kSix}), 1);
  const EInterfaceItem& second = *table.AddInterfaceItem(Interface(kB, Untagged(), {kSeven}), 2);
  EIPLookupInterfaceTableHooks lookup;
  lookup.EnablingInterfaceItem(first);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(5)), 1u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 1u);
  lookup.DisablingInterfaceItem(first);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
  lookup.AddingInterfaceItem(first);
  lookup.SettingInterfaceItem(first, second);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kB), 2u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 2u);
}

TEST(EIPLookupInterfaceTableHooks, SettingInterfaceVlanMovesTheIPv4Entry) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Tagged(10), {kSix}), 4);
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(item);
  lookup.SettingInterfaceVlan(item, Tagged(20));
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(20)), 4u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kA, Vlan(10)), 0u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kSix, Vlan(0)), 4u);
  EXPECT_EQ(item.GetVLANItem(), Tagged(10));  // the item itself is not changed
}

TEST(EIPLookupInterfaceTableHooks, SettingInterfaceTableRebuildsTheIndex) {
  EInterfaceTable old;
  EIPLookupInterfaceTableHooks lookup;
  lookup.AddingInterfaceItem(*old.AddInterfaceItem(Interface(kA, Untagged()), 1));
  EInterfaceTable table;
  table.AddInterfaceItem(Interface(kB, Tagged(3), {kSix}), 9);
  table.AddInterfaceItem(Interface(kB, Untagged()), 11);
  lookup.SettingInterfaceTable(old, table);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kB), 11u);
  EXPECT_EQ(lookup.GetInterfaceIdFromVlan(kB, Vlan(3)), 9u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 9u);

  lookup.SettingInterfaceTable(table, EInterfaceTable());
  for (const EIPAddress& address : {kA, kB, kSix}) {
    EXPECT_EQ(lookup.GetInterfaceId(address), 0u);
    EXPECT_EQ(lookup.GetInterfaceIdFromVlan(address, Vlan(3)), 0u);
  }
}

TEST(EIPLookupInterfaceTableHooks, EnablingIPv6AddressListSkipsEntriesWithoutAnItem) {
  EInterfaceTable table;
  EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Untagged(), {kSix, kSeven}), 3);
  EIPLookupInterfaceTableHooks lookup;
  lookup.EnablingIPv6AddressList(item.GetIPv6AddressItemList(), true);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 3u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 3u);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  lookup.EnablingIPv6AddressList(item.GetIPv6AddressItemList(), false);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSeven), 0u);
  lookup.EnablingIPv6AddressList(EInterfaceItem::IPv6AddressItemList(), true);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
}

namespace {
// Writes the name of every index hook it receives, then does what the lookup does.
class TracingLookup : public EIPLookupInterfaceTableHooks {
 public:
  std::vector<std::string> calls;
  bool ignoreIPv4 = false;  // when set, EnablingIPv4AddressItem does nothing

  void SettingInterfaceTable(const EInterfaceTable& a, const EInterfaceTable& b) override {
    Note("SettingInterfaceTable");
    EIPLookupInterfaceTableHooks::SettingInterfaceTable(a, b);
  }
  void AddingInterfaceItem(const EInterfaceItem& item) override {
    Note("AddingInterfaceItem");
    EIPLookupInterfaceTableHooks::AddingInterfaceItem(item);
  }
  void RemovingInterfaceItem(const EInterfaceItem& item) override {
    Note("RemovingInterfaceItem");
    EIPLookupInterfaceTableHooks::RemovingInterfaceItem(item);
  }
  void EnablingIPv4AddressItem(const EIPv4AddressItem& item,
                               const EVLANIPAddressTableItemProperties& props) override {
    Note("EnablingIPv4AddressItem");
    if (!ignoreIPv4) EIPLookupInterfaceTableHooks::EnablingIPv4AddressItem(item, props);
  }
  void DisablingIPv4AddressItem(const EIPv4AddressItem& item,
                                const EVLANIPAddressTableItemProperties& props) override {
    Note("DisablingIPv4AddressItem");
    EIPLookupInterfaceTableHooks::DisablingIPv4AddressItem(item, props);
  }
  void AddingIPv6AddressItem(const EIPv6AddressItem& item) override {
    Note("AddingIPv6AddressItem");
    EIPLookupInterfaceTableHooks::AddingIPv6AddressItem(item);
  }
  void RemovingIPv6AddressItem(const EIPv6AddressItem& item) override {
    Note("RemovingIPv6AddressItem");
    EIPLookupInterfaceTableHooks::RemovingIPv6AddressItem(item);
  }

 private:
  void Note(const char* hook) { calls.emplace_back(hook); }
};
using Names = std::vector<std::string>;
}  // namespace

// Hooks built on other hooks reach them through the virtual table.
TEST(EIPLookupInterfaceTableHooks, HooksCallEachOtherVirtually) {
  EInterfaceTable table;
  const EInterfaceItem& item =
      *table.AddInterfaceItem(Interface(kA, Untagged(), {kSix, kSeven}), 2);
  TracingLookup lookup;
  lookup.EnablingInterfaceItem(item);
  EXPECT_EQ(lookup.calls, (Names{"AddingInterfaceItem", "EnablingIPv4AddressItem",
                                 "AddingIPv6AddressItem", "AddingIPv6AddressItem"}));
  lookup.calls.clear();
  lookup.SettingInterfaceItem(item, item);
  EXPECT_EQ(lookup.calls,
            (Names{"RemovingInterfaceItem", "DisablingIPv4AddressItem", "RemovingIPv6AddressItem",
                   "RemovingIPv6AddressItem", "AddingInterfaceItem", "EnablingIPv4AddressItem",
                   "AddingIPv6AddressItem", "AddingIPv6AddressItem"}));
  lookup.calls.clear();
  lookup.DisablingInterfaceItem(item);
  EXPECT_EQ(lookup.calls, (Names{"RemovingInterfaceItem", "DisablingIPv4AddressItem",
                                 "RemovingIPv6AddressItem", "RemovingIPv6AddressItem"}));
  lookup.calls.clear();
  lookup.SettingInterfaceVlan(item, Tagged(3));
  EXPECT_EQ(lookup.calls,
            (Names{"RemovingInterfaceItem", "DisablingIPv4AddressItem", "RemovingIPv6AddressItem",
                   "RemovingIPv6AddressItem", "AddingInterfaceItem", "EnablingIPv4AddressItem",
                   "AddingIPv6AddressItem", "AddingIPv6AddressItem"}));
  lookup.calls.clear();
  lookup.SettingInterfaceTable(table, table);
  EXPECT_EQ(lookup.calls,
            (Names{"SettingInterfaceTable", "AddingInterfaceItem", "EnablingIPv4AddressItem",
                   "AddingIPv6AddressItem", "AddingIPv6AddressItem"}));
  lookup.calls.clear();
  lookup.SettingIPv4AddressItem(item.GetIPv4AddressItem(), item.GetIPv4AddressItem(), Untagged(),
                                Untagged());
  lookup.SettingIPv4Address(item.GetIPv4AddressItem(), kA, Untagged(), EVLAN());
  lookup.SettingIPv6AddressItem(FirstIPv6(item), FirstIPv6(item));
  lookup.SettingIPv6Address(FirstIPv6(item), kSix);
  EXPECT_EQ(lookup.calls, (Names{"DisablingIPv4AddressItem", "DisablingIPv4AddressItem",
                                 "RemovingIPv6AddressItem", "RemovingIPv6AddressItem"}));
}

// The Setting hooks remove the old entry through the virtual operation even for an item
// without an owner.
TEST(EIPLookupInterfaceTableHooks, SettingHooksRemoveFirstEvenWithoutAnOwner) {
  TracingLookup lookup;
  const EIPv4AddressItem v4;
  const EIPv6AddressItem v6;
  lookup.SettingIPv4AddressItem(v4, v4, Untagged(), Untagged());
  lookup.SettingIPv4Address(v4, kA, Untagged(), EVLAN());
  lookup.SettingIPv6AddressItem(v6, v6);
  lookup.SettingIPv6Address(v6, kSix);
  EXPECT_EQ(lookup.calls, (Names{"DisablingIPv4AddressItem", "DisablingIPv4AddressItem",
                                 "RemovingIPv6AddressItem", "RemovingIPv6AddressItem"}));
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 0u);
}

TEST(EIPLookupInterfaceTableHooks, AnOverrideOfEnablingIPv4AddressItemChangesAddingInterfaceItem) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Untagged(), {kSix}), 2);
  TracingLookup lookup;
  lookup.ignoreIPv4 = true;
  lookup.AddingInterfaceItem(item);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 2u);
  lookup.SettingInterfaceTable(table, table);
  EXPECT_EQ(lookup.GetInterfaceId(kA), 0u);
  EXPECT_EQ(lookup.GetInterfaceId(kSix), 2u);
}

TEST(EIPLookupInterfaceTableHooks, ServesThroughAFanOut) {
  EInterfaceTable table;
  const EInterfaceItem& item = *table.AddInterfaceItem(Interface(kA, Tagged(7)), 6);
  const boost::shared_ptr<EIPLookupInterfaceTableHooks> lookup(new EIPLookupInterfaceTableHooks);
  EMultipleInterfaceTableHooks fanOut;
  fanOut.AddHooks("lookup", lookup);
  fanOut.AddingInterfaceItem(item);
  EXPECT_EQ(lookup->GetInterfaceIdFromVlan(kA, Vlan(7)), 6u);
  fanOut.SettingInterfaceVlan(item, Tagged(8));
  EXPECT_EQ(lookup->GetInterfaceIdFromVlan(kA, Vlan(7)), 0u);
  EXPECT_EQ(lookup->GetInterfaceIdFromVlan(kA, Vlan(8)), 6u);
}

namespace {

// The plain model of the index for the differential test: a list of (address, VLAN id,
// interface id) entries without duplicates, searched from end to end.
class ModelIndex {
 public:
  void Add(const EIPAddress& address, unsigned int vlanId, const EInterfaceItem* owner) {
    if (owner == nullptr || Has(address, vlanId, owner->GetLocalId())) return;
    m_Entries.push_back({address, vlanId, owner->GetLocalId()});
  }
  void Remove(const EIPAddress& address, unsigned int vlanId, const EInterfaceItem* owner) {
    if (owner == nullptr) return;
    const Entry wanted{address, vlanId, owner->GetLocalId()};
    m_Entries.erase(std::remove_if(m_Entries.begin(), m_Entries.end(),
                                   [&](const Entry& entry) { return entry == wanted; }),
                    m_Entries.end());
  }
  void Clear() { m_Entries.clear(); }

  // The id of the entry with the smallest (VLAN id, interface id) among those of `address`.
  unsigned int Find(const EIPAddress& address) const {
    const Entry* best = nullptr;
    for (const Entry& entry : m_Entries) {
      if (!(entry.address == address)) continue;
      if (best == nullptr || std::tie(entry.vlanId, entry.id) < std::tie(best->vlanId, best->id)) {
        best = &entry;
      }
    }
    return best == nullptr ? 0 : best->id;
  }
  unsigned int Find(const EIPAddress& address, unsigned int vlanId) const {
    unsigned int best = 0;
    for (const Entry& entry : m_Entries) {
      if (!(entry.address == address) || entry.vlanId != vlanId) continue;
      if (best == 0 || entry.id < best) best = entry.id;
    }
    return best;
  }

 private:
  struct Entry {
    EIPAddress address;
    unsigned int vlanId;
    unsigned int id;
    bool operator==(const Entry& other) const {
      return address == other.address && vlanId == other.vlanId && id == other.id;
    }
  };
  bool Has(const EIPAddress& address, unsigned int vlanId, unsigned int id) const {
    return std::find(m_Entries.begin(), m_Entries.end(), Entry{address, vlanId, id}) !=
           m_Entries.end();
  }

  std::vector<Entry> m_Entries;
};

// Random interface tables and hook calls, applied to the lookup and to the model alike.
class Differential {
 public:
  explicit Differential(unsigned int seed) : m_Random(seed) {}

  void Run(int steps) {
    for (int step = 0; step < steps; ++step) {
      Step();
      Compare();
      if (::testing::Test::HasFailure()) return;
    }
  }

 private:
  unsigned int Pick(unsigned int count) {
    return std::uniform_int_distribution<unsigned int>(0, count - 1)(m_Random);
  }
  bool Chance(unsigned int percent) { return Pick(100) < percent; }

  EIPAddress RandomV4() {
    const unsigned char last = static_cast<unsigned char>(Pick(5));  // 0: 10.0.0.0
    return Chance(10) ? V4(0, 0, 0, 0) : V4(10, 0, 0, last);
  }
  EIPAddress RandomV6() { return V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, Pick(4)}); }
  unsigned short RandomVlanId() { return static_cast<unsigned short>(Pick(3) * 10); }
  EVLANIPAddressTableItemProperties RandomProps() {
    EVLANIPAddressTableItemProperties props =
        Props(Chance(60), RandomVlanId(), static_cast<unsigned char>(Pick(8)),
              Chance(50) ? 0x8100 : 0x88A8);
    if (Chance(20)) {
      props.SetVLANCount(2);
      props.SetVLANID(RandomVlanId(), 1);
    }
    return props;
  }
  EVLAN RandomVlan() {
    EVLAN vlan = Vlan(RandomVlanId(), Chance(50) ? 0x81000000 : 0);
    vlan.SetUserPriority(static_cast<int>(Pick(8)));
    return vlan;
  }
  EInterfaceItem RandomInterface() {
    std::vector<EIPAddress> ipv6;
    for (unsigned int n = Pick(3); n > 0; --n)
      ipv6.push_back(RandomV6());
    EInterfaceItem item = Interface(RandomV4(), RandomProps(), ipv6);
    item.SetEnabled(Chance(70));
    return item;
  }
  EInterfaceTable RandomTable() {
    EInterfaceTable table;
    for (unsigned int n = Pick(7); n > 0; --n)
      table.AddInterfaceItem(RandomInterface(), 1 + Pick(9));
    return table;
  }

  // An interface of the current table, or a new one outside it (with its own id).
  const EInterfaceItem& SomeInterface() {
    const auto& list = m_Table.GetInterfaceItemList();
    if (list.size() == 0 || Chance(15)) {
      m_Spare = RandomInterface();
      m_Spare.SetLocalId(1 + Pick(12));
      return m_Spare;
    }
    auto entry = list.begin();
    std::advance(entry, Pick(static_cast<unsigned int>(list.size())));
    return *list.GetItem(entry);
  }
  // The IPv4 item of some interface, or one without an owner.
  const EIPv4AddressItem& SomeIPv4() {
    if (!Chance(10)) return SomeInterface().GetIPv4AddressItem();
    m_LooseV4.SetAddress(RandomV4());
    return m_LooseV4;
  }
  // An IPv6 item of some interface, or one without an owner.
  const EIPv6AddressItem& SomeIPv6() {
    const EInterfaceItem& item = SomeInterface();
    const auto& list = item.GetIPv6AddressItemList();
    if (list.size() == 0 || Chance(10)) {
      m_LooseV6.SetAddress(RandomV6());
      return m_LooseV6;
    }
    auto entry = list.begin();
    std::advance(entry, Pick(static_cast<unsigned int>(list.size())));
    return *list.GetItem(entry);
  }

  static unsigned int VlanIdOf(const EVLANIPAddressTableItemProperties& props) {
    return props.IsEnabled() ? props.GetVLANID(0) : 0;
  }
  void ModelAddInterface(const EInterfaceItem& item) {
    m_Model.Add(item.GetIPv4AddressItem().GetAddress(), VlanIdOf(item.GetVLANItem()), &item);
    const auto& list = item.GetIPv6AddressItemList();
    for (auto entry = list.begin(); entry != list.end(); ++entry) {
      m_Model.Add(list.GetItem(entry)->GetAddress(), 0, &item);
    }
  }
  void ModelRemoveInterface(const EInterfaceItem& item) {
    m_Model.Remove(item.GetIPv4AddressItem().GetAddress(), VlanIdOf(item.GetVLANItem()), &item);
    const auto& list = item.GetIPv6AddressItemList();
    for (auto entry = list.begin(); entry != list.end(); ++entry) {
      m_Model.Remove(list.GetItem(entry)->GetAddress(), 0, &item);
    }
  }

  void Step() {
    switch (Pick(15)) {
      case 0: {
        EInterfaceTable next = RandomTable();
        m_Lookup.SettingInterfaceTable(m_Table, next);
        m_Table = next;
        m_Model.Clear();
        const auto& list = m_Table.GetInterfaceItemList();
        for (auto entry = list.begin(); entry != list.end(); ++entry) {
          ModelAddInterface(*list.GetItem(entry));
        }
        break;
      }
      case 1:
      case 4: {
        const EInterfaceItem& item = SomeInterface();
        if (Chance(50)) {
          m_Lookup.AddingInterfaceItem(item);
        } else {
          m_Lookup.EnablingInterfaceItem(item);
        }
        ModelAddInterface(item);
        break;
      }
      case 2:
      case 5: {
        const EInterfaceItem& item = SomeInterface();
        if (Chance(50)) {
          m_Lookup.RemovingInterfaceItem(item);
        } else {
          m_Lookup.DisablingInterfaceItem(item);
        }
        ModelRemoveInterface(item);
        break;
      }
      case 3: {
        const EInterfaceItem oldItem = SomeInterface();
        const EInterfaceItem newItem = SomeInterface();
        m_Lookup.SettingInterfaceItem(oldItem, newItem);
        ModelRemoveInterface(oldItem);
        ModelAddInterface(newItem);
        break;
      }
      case 6: {
        const EInterfaceItem& item = SomeInterface();
        const EVLANIPAddressTableItemProperties props = RandomProps();
        m_Lookup.SettingInterfaceVlan(item, props);
        EInterfaceItem moved = item;
        ModelRemoveInterface(moved);
        moved.SetVLANItem(props);
        ModelAddInterface(moved);
        break;
      }
      case 7: {
        const EIPv4AddressItem& item = SomeIPv4();
        const EVLANIPAddressTableItemProperties props = RandomProps();
        m_Lookup.EnablingIPv4AddressItem(item, props);
        m_Model.Add(item.GetAddress(), VlanIdOf(props), item.GetOwner());
        break;
      }
      case 8: {
        const EIPv4AddressItem& item = SomeIPv4();
        const EVLANIPAddressTableItemProperties props = RandomProps();
        m_Lookup.DisablingIPv4AddressItem(item, props);
        m_Model.Remove(item.GetAddress(), VlanIdOf(props), item.GetOwner());
        break;
      }
      case 9: {
        const EIPv4AddressItem oldItem = SomeIPv4();
        const EIPv4AddressItem newItem = SomeIPv4();
        const EVLANIPAddressTableItemProperties oldProps = RandomProps();
        const EVLANIPAddressTableItemProperties newProps = RandomProps();
        m_Lookup.SettingIPv4AddressItem(oldItem, newItem, oldProps, newProps);
        m_Model.Remove(oldItem.GetAddress(), VlanIdOf(oldProps), oldItem.GetOwner());
        m_Model.Add(newItem.GetAddress(), VlanIdOf(newProps), oldItem.GetOwner());
        break;
      }
      case 10: {
        const EIPv4AddressItem& item = SomeIPv4();
        const EIPAddress address = RandomV4();
        const EVLANIPAddressTableItemProperties props = RandomProps();
        const EVLAN vlan = RandomVlan();
        m_Lookup.SettingIPv4Address(item, address, props, vlan);
        m_Model.Remove(item.GetAddress(), VlanIdOf(props), item.GetOwner());
        m_Model.Add(address, vlan.GetVLANID(), item.GetOwner());
        break;
      }
      case 11: {
        const EIPv6AddressItem& item = SomeIPv6();
        m_Lookup.AddingIPv6AddressItem(item);
        m_Model.Add(item.GetAddress(), 0, item.GetOwner());
        break;
      }
      case 12: {
        const EIPv6AddressItem& item = SomeIPv6();
        m_Lookup.RemovingIPv6AddressItem(item);
        m_Model.Remove(item.GetAddress(), 0, item.GetOwner());
        break;
      }
      case 13: {
        const EIPv6AddressItem oldItem = SomeIPv6();
        const EIPv6AddressItem newItem = SomeIPv6();
        m_Lookup.SettingIPv6AddressItem(oldItem, newItem);
        m_Model.Remove(oldItem.GetAddress(), 0, oldItem.GetOwner());
        m_Model.Add(newItem.GetAddress(), 0, oldItem.GetOwner());
        break;
      }
      default: {
        const EIPv6AddressItem& item = SomeIPv6();
        const EIPAddress address = RandomV6();
        m_Lookup.SettingIPv6Address(item, address);
        m_Model.Remove(item.GetAddress(), 0, item.GetOwner());
        m_Model.Add(address, 0, item.GetOwner());
        break;
      }
    }
  }

  void Compare() const {
    std::vector<EIPAddress> addresses = {V4(0, 0, 0, 0)};
    for (unsigned char last = 0; last < 5; ++last)
      addresses.push_back(V4(10, 0, 0, last));
    for (unsigned int last = 0; last < 4; ++last)
      addresses.push_back(V6({0x2001, 0xdb8, 0, 0, 0, 0, 0, last}));
    for (const EIPAddress& address : addresses) {
      EXPECT_EQ(m_Lookup.GetInterfaceId(address), m_Model.Find(address));
      for (const unsigned int vlanId : {0u, 10u, 20u, 30u}) {
        EXPECT_EQ(m_Lookup.GetInterfaceIdFromVlan(address, Vlan(vlanId, 0x88A80000)),
                  m_Model.Find(address, vlanId));
      }
    }
  }

  std::mt19937 m_Random;
  EInterfaceTable m_Table;
  EInterfaceItem m_Spare;
  EIPv4AddressItem m_LooseV4;
  EIPv6AddressItem m_LooseV6;
  EIPLookupInterfaceTableHooks m_Lookup;
  ModelIndex m_Model;
};

}  // namespace

TEST(EIPLookupInterfaceTableHooks, AgreesWithAPlainModelOnRandomTablesAndHooks) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    Differential(seed).Run(300);
    if (HasFailure()) return;
  }
}
