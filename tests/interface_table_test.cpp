// The interface-table model: its defaults, the owner and parent links that copies re-point, the
// identifiers the table hands out, and the archive forms of its records.
#include "eInterfaceTable.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eInterfaceConfigRecords.h"
#include "network_values.h"
#include "reader_fuzz.h"

namespace {

using namespace network_values;

EVLANIPAddressTableItemProperties Tagged(const std::string& ids) {
  EVLANIPAddressTableItemProperties vlan;
  vlan.Enable();
  vlan.SetVLANFromVLANIDDescription(ids);
  return vlan;
}

// An interface with every field set and two IPv6 addresses.
EInterfaceItem Filled() {
  EInterfaceItem item;
  item.SetEnabled(true);
  item.SetMacAddress(MAC("00:1a:2b:3c:4d:5e"));
  item.SetVLANItem(Tagged("100,200"));
  item.SetLocalId(9);
  item.SetVPI(3);
  item.SetVCI(40);
  item.SetEncapsulation(-2);
  item.SetATMMode(0);
  EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  ipv4.SetEnabled(true);
  ipv4.SetAddress(V4(10, 0, 0, 5));
  ipv4.SetGateway(V4(10, 0, 0, 1));
  ipv4.SetMaskLength(24);
  item.AddIPv6Address(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}));
  item.AddIPv6Address(V6({0x2001, 0xdb8}));
  return item;
}

// Every address item of `item` points at it.
void ExpectOwnedBy(const EInterfaceItem& item) {
  EXPECT_EQ(item.GetIPv4AddressItem().GetOwner(), &item);
  const EInterfaceItem::IPv6AddressItemList& list = item.GetIPv6AddressItemList();
  EXPECT_EQ(list.GetParent(), &item);
  for (auto entry = list.begin(); entry != list.end(); ++entry) {
    EXPECT_EQ(list.GetItem(entry)->GetOwner(), &item);
    EXPECT_EQ(list.GetItem(entry)->GetLocalId(), entry->first);
  }
}

std::vector<std::string> IPv6Addresses(const EInterfaceItem& item) {
  std::vector<std::string> addresses;
  const EInterfaceItem::IPv6AddressItemList& list = item.GetIPv6AddressItemList();
  for (auto entry = list.begin(); entry != list.end(); ++entry)
    addresses.push_back(std::to_string(entry->first) + "=" +
                        list.GetItem(entry)->GetAddress().GetAsString());
  return addresses;
}

// ---------------------------------------------------------------------------------------------
// Address items.

TEST(EIPv4AddressItem, Defaults) {
  const EIPv4AddressItem item;
  EXPECT_FALSE(item.IsEnabled());
  EXPECT_EQ(item.GetAddress(), V4(0, 0, 0, 0));
  EXPECT_EQ(item.GetAddress().GetType(), static_cast<unsigned int>(eIPv4Address));
  EXPECT_EQ(item.GetGateway(), V4(0, 0, 0, 0));
  EXPECT_EQ(item.GetMaskLength(), 0u);
  EXPECT_EQ(item.GetOwner(), nullptr);
}

TEST(EIPv4AddressItem, SettersAndACopyThatKeepsTheOwner) {
  const EInterfaceItem owner;
  EIPv4AddressItem item;
  item.SetEnabled(true);
  item.SetAddress(V4(192, 168, 1, 2));
  item.SetGateway(V4(192, 168, 1, 254));
  item.SetMaskLength(16);
  item.SetOwner(&owner);
  const EIPv4AddressItem copy(item);
  EXPECT_TRUE(copy.IsEnabled());
  EXPECT_EQ(copy.GetAddress(), V4(192, 168, 1, 2));
  EXPECT_EQ(copy.GetGateway(), V4(192, 168, 1, 254));
  EXPECT_EQ(copy.GetMaskLength(), 16u);
  EXPECT_EQ(copy.GetOwner(), &owner);
  item.SetOwner(nullptr);
  EXPECT_EQ(item.GetOwner(), nullptr);
}

TEST(EIPv6AddressItem, Defaults) {
  const EIPv6AddressItem item;
  EXPECT_EQ(item.GetAddress(), V6({}));
  EXPECT_EQ(item.GetAddress().GetType(), static_cast<unsigned int>(eIPv6Address));
  EXPECT_EQ(item.GetLocalId(), 0u);
  EXPECT_EQ(item.GetOwner(), nullptr);
}

TEST(EIPv6AddressItem, Setters) {
  const EInterfaceItem owner;
  EIPv6AddressItem item;
  item.SetAddress(V6({0xfe80, 0, 0, 0, 0, 0, 0, 7}));
  item.SetLocalId(4);
  item.SetParent(&owner);
  EXPECT_EQ(item.GetAddress().GetAsString(), "FE80:0:0:0:0:0:0:7");
  EXPECT_EQ(item.GetLocalId(), 4u);
  EXPECT_EQ(item.GetOwner(), &owner);
}

// ---------------------------------------------------------------------------------------------
// Interface items.

TEST(EInterfaceItem, Defaults) {
  const EInterfaceItem item;
  EXPECT_FALSE(item.IsEnabled());
  EXPECT_EQ(item.GetMacAddress().GetAsString(), "00:00:00:00:00:00");
  EXPECT_EQ(item.GetVLANItem(), EVLANIPAddressTableItemProperties());
  EXPECT_EQ(item.GetLocalId(), 0u);
  EXPECT_EQ(item.GetParent(), nullptr);
  EXPECT_EQ(item.GetVPI(), 0u);
  EXPECT_EQ(item.GetVCI(), 32u);
  EXPECT_EQ(item.GetEncapsulation(), 1);
  EXPECT_EQ(item.GetATMMode(), 1);
  EXPECT_FALSE(item.GetIPv4AddressItem().IsEnabled());
  EXPECT_EQ(item.GetIPv4AddressItem().GetAddress(), V4(0, 0, 0, 0));
  EXPECT_EQ(item.GetIPv6AddressItemList().size(), 0u);
  ExpectOwnedBy(item);
}

TEST(EInterfaceItem, Setters) {
  const EInterfaceItem item = Filled();
  EXPECT_TRUE(item.IsEnabled());
  EXPECT_EQ(item.GetMacAddress().GetAsString(), "00:1a:2b:3c:4d:5e");
  EXPECT_EQ(item.GetVLANItem(), Tagged("100,200"));
  EXPECT_EQ(item.GetLocalId(), 9u);
  EXPECT_EQ(item.GetVPI(), 3u);
  EXPECT_EQ(item.GetVCI(), 40u);
  EXPECT_EQ(item.GetEncapsulation(), -2);
  EXPECT_EQ(item.GetATMMode(), 0);
  EXPECT_EQ(item.GetIPv4AddressItem().GetAddress(), V4(10, 0, 0, 5));
  EXPECT_EQ(item.GetIPv4AddressItem().GetMaskLength(), 24u);
  const EInterfaceTable table;
  EInterfaceItem child;
  child.SetParent(&table);
  EXPECT_EQ(child.GetParent(), &table);
}

TEST(EInterfaceItem, AddIPv6AddressNumbersTheItemsAndOwnsThem) {
  EInterfaceItem item;
  EIPv6AddressItem* first = item.AddIPv6Address(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}));
  EIPv6AddressItem* second = item.AddIPv6Address(V6({0xfe80, 0, 0, 0, 0, 0, 0, 2}));
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(first->GetLocalId(), 1u);
  EXPECT_EQ(second->GetLocalId(), 2u);
  EXPECT_EQ(second->GetAddress().GetAsString(), "FE80:0:0:0:0:0:0:2");
  EXPECT_EQ(IPv6Addresses(item),
            (std::vector<std::string>{"1=FE80:0:0:0:0:0:0:1", "2=FE80:0:0:0:0:0:0:2"}));
  ExpectOwnedBy(item);
}

TEST(EInterfaceItem, ACopyOwnsCopiesOfTheAddressItems) {
  const EInterfaceItem original = Filled();
  const EInterfaceItem copy(original);
  ExpectOwnedBy(copy);
  ExpectOwnedBy(original);
  EXPECT_EQ(BytesOf(copy), BytesOf(original));
  EXPECT_EQ(copy.GetLocalId(), 9u);
  EXPECT_EQ(IPv6Addresses(copy), IPv6Addresses(original));
  EXPECT_NE(copy.GetIPv6AddressItemList().GetItem(copy.GetIPv6AddressItemList().begin()),
            original.GetIPv6AddressItemList().GetItem(original.GetIPv6AddressItemList().begin()));
}

TEST(EInterfaceItem, AssignmentReplacesTheAddressItemsAndKeepsTheLinks) {
  const EInterfaceTable table;
  EInterfaceItem target;
  target.AddIPv6Address(V6({0x1}));
  target.AddIPv6Address(V6({0x2}));
  target.AddIPv6Address(V6({0x3}));
  EInterfaceItem source = Filled();
  source.SetParent(&table);
  target = source;
  ExpectOwnedBy(target);
  EXPECT_EQ(target.GetParent(), &table);
  EXPECT_EQ(IPv6Addresses(target), IPv6Addresses(source));
  EXPECT_EQ(BytesOf(target), BytesOf(source));

  EInterfaceItem& self = target;
  target = self;
  ExpectOwnedBy(target);
  EXPECT_EQ(BytesOf(target), BytesOf(source));
}

// ---------------------------------------------------------------------------------------------
// The table.

TEST(EInterfaceTable, AddInterfaceItemStoresANumberedCopy) {
  EInterfaceTable table;
  const EInterfaceItem item = Filled();
  EInterfaceItem* stored = table.AddInterfaceItem(item);
  ASSERT_NE(stored, nullptr);
  EXPECT_NE(stored, &item);
  EXPECT_EQ(stored->GetLocalId(), 1u);
  EXPECT_EQ(stored->GetParent(), &table);
  EXPECT_EQ(item.GetLocalId(), 9u);
  EXPECT_EQ(item.GetParent(), nullptr);
  ExpectOwnedBy(*stored);
  EXPECT_EQ(BytesOf(*stored), BytesOf(item));
  EXPECT_EQ(table.GetInterfaceItemList().GetParent(), &table);
}

TEST(EInterfaceTable, AGivenIdentifierInUseGivesNull) {
  EInterfaceTable table;
  EInterfaceItem* seven = table.AddInterfaceItem(Filled(), 7);
  ASSERT_NE(seven, nullptr);
  EXPECT_EQ(seven->GetLocalId(), 7u);
  EXPECT_EQ(table.AddInterfaceItem(EInterfaceItem(), 7), nullptr);
  EXPECT_EQ(table.GetInterfaceItemList().size(), 1u);
  EXPECT_EQ(table.FindInterfaceItem(7), seven);
  EXPECT_TRUE(table.FindInterfaceItem(7)->IsEnabled());
  // The next free identifier follows the one reserved last.
  EInterfaceItem* next = table.AddInterfaceItem(EInterfaceItem());
  ASSERT_NE(next, nullptr);
  EXPECT_EQ(next->GetLocalId(), 8u);
}

TEST(EInterfaceTable, FindAndRemove) {
  EInterfaceTable table;
  table.AddInterfaceItem(EInterfaceItem(), 3);
  table.AddInterfaceItem(Filled(), 5);
  const EInterfaceTable& constant = table;
  ASSERT_NE(constant.FindInterfaceItem(5), nullptr);
  EXPECT_TRUE(constant.FindInterfaceItem(5)->IsEnabled());
  EXPECT_EQ(constant.FindInterfaceItem(4), nullptr);
  EXPECT_TRUE(table.RemoveInterfaceItem(5));
  EXPECT_FALSE(table.RemoveInterfaceItem(5));
  EXPECT_EQ(table.FindInterfaceItem(5), nullptr);
  EXPECT_NE(table.FindInterfaceItem(3), nullptr);
  // A released identifier is free again.
  EXPECT_NE(table.AddInterfaceItem(EInterfaceItem(), 5), nullptr);
}

TEST(EInterfaceTable, ACopyHoldsCopiesPointedAtItself) {
  EInterfaceTable table;
  table.AddInterfaceItem(Filled(), 2);
  table.AddInterfaceItem(EInterfaceItem(), 6);
  const EInterfaceTable copy(table);
  EInterfaceTable assigned;
  assigned.AddInterfaceItem(EInterfaceItem(), 1);
  assigned = table;
  for (const EInterfaceTable* each : {&copy, static_cast<const EInterfaceTable*>(&assigned)}) {
    const EInterfaceTable::InterfaceItemList& list = each->GetInterfaceItemList();
    EXPECT_EQ(list.GetParent(), each);
    ASSERT_EQ(list.size(), 2u);
    for (const unsigned int id : {2u, 6u}) {
      const EInterfaceItem* item = each->FindInterfaceItem(id);
      ASSERT_NE(item, nullptr);
      EXPECT_NE(item, table.FindInterfaceItem(id));
      EXPECT_EQ(item->GetParent(), each);
      EXPECT_EQ(item->GetLocalId(), id);
      ExpectOwnedBy(*item);
      EXPECT_EQ(BytesOf(*item), BytesOf(*table.FindInterfaceItem(id)));
    }
    EXPECT_EQ(each->FindInterfaceItem(1), nullptr);
  }
}

// ---------------------------------------------------------------------------------------------
// Archive forms.

std::string AddressText(const EIPAddress& address) {
  const std::string bytes(reinterpret_cast<const char*>(address.GetAddress()),
                          address.GetAddressLength());
  return "403771666 " + std::to_string(address.GetType()) + " 287454021 " +
         std::to_string(bytes.size()) + " " + bytes;
}

const std::string kIPv4Item =
    "503578625 1 " + AddressText(V4(10, 0, 0, 5)) + AddressText(V4(10, 0, 0, 1)) + "24 ";

TEST(EIPv4AddressItem, ArchiveForm) {
  EXPECT_EQ(BytesOf(Filled().GetIPv4AddressItem()), kIPv4Item);
  EXPECT_EQ(BytesOf(EIPv4AddressItem()),
            "503578625 0 " + AddressText(V4(0, 0, 0, 0)) + AddressText(V4(0, 0, 0, 0)) + "0 ");
}

TEST(EIPv4AddressItem, ReadsIntoAPrefilledItemAndKeepsItsOwner) {
  const EInterfaceItem owner;
  EIPv4AddressItem item;
  item.SetAddress(V4(1, 2, 3, 4));
  item.SetMaskLength(8);
  item.SetOwner(&owner);
  ReadFrom(kIPv4Item, item);
  EXPECT_TRUE(item.IsEnabled());
  EXPECT_EQ(item.GetAddress(), V4(10, 0, 0, 5));
  EXPECT_EQ(item.GetGateway(), V4(10, 0, 0, 1));
  EXPECT_EQ(item.GetMaskLength(), 24u);
  EXPECT_EQ(item.GetOwner(), &owner);
}

TEST(EIPv6AddressItem, ArchiveFormAndRead) {
  EIPv6AddressItem item;
  item.SetAddress(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}));
  item.SetLocalId(5);
  const std::string bytes = "503709697 " + AddressText(item.GetAddress());
  EXPECT_EQ(BytesOf(item), bytes);
  EXPECT_EQ(BytesOf(EIPv6AddressItem()), "503709697 " + AddressText(V6({})));

  const EInterfaceItem owner;
  EIPv6AddressItem back;
  back.SetLocalId(3);
  back.SetParent(&owner);
  ReadFrom(bytes, back);
  EXPECT_EQ(back.GetAddress(), item.GetAddress());
  EXPECT_EQ(back.GetLocalId(), 3u);
  EXPECT_EQ(back.GetOwner(), &owner);
}

// The filled interface's form: its settings, the IPv4 item, then the IPv6 list (signature,
// count, identifier and item each, the identifier generator).
const std::string kInterfaceItem =
    "504233985 1 386994449 287454021 6 " + std::string("\x00\x1a\x2b\x3c\x4d\x5e", 6) +
    "2 1 2 2164260964 2164261064 3 40 -2 0 " + kIPv4Item + "17829889 2 1 503709697 " +
    AddressText(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1})) + "2 503709697 " +
    AddressText(V6({0x2001, 0xdb8})) + "17829889 2 3 4294967295 0 ";

TEST(EInterfaceItem, ArchiveForm) {
  EXPECT_EQ(BytesOf(Filled()), kInterfaceItem);
}

TEST(EInterfaceItem, ReadsIntoAPrefilledItem) {
  const EInterfaceTable table;
  EInterfaceItem item;
  item.SetLocalId(4);
  item.SetParent(&table);
  for (unsigned int i = 0; i < 5; ++i)
    item.AddIPv6Address(V6({0x3000, i}));
  ReadFrom(kInterfaceItem, item);
  EXPECT_EQ(BytesOf(item), kInterfaceItem);
  EXPECT_EQ(item.GetLocalId(), 4u);
  EXPECT_EQ(item.GetParent(), &table);
  EXPECT_EQ(IPv6Addresses(item),
            (std::vector<std::string>{"1=FE80:0:0:0:0:0:0:1", "2=2001:DB8:0:0:0:0:0:0"}));
  ExpectOwnedBy(item);
  // The generator read back goes on after the identifiers it holds.
  EXPECT_EQ(item.AddIPv6Address(V6({0x4000}))->GetLocalId(), 3u);
}

TEST(InterfaceModelRecords, WrongSignaturesAreReported) {
  ExpectSerializeError(
      [] {
        EIPv4AddressItem item;
        ReadFrom("503578626 ", item);
      },
      "x86_64/platform/src/eIPv4AddressItem", 40, "EIPv4AddressItem::SerializeIn");
  ExpectSerializeError(
      [] {
        EIPv6AddressItem item;
        ReadFrom("503578625 ", item);
      },
      "x86_64/platform/src/eIPv6AddressItem", 30, "EIPv6AddressItem::SerializeIn");
  ExpectSerializeError(
      [] {
        EInterfaceItem item;
        ReadFrom("1 ", item);
      },
      "x86_64/platform/src/eInterfaceItem", 80, "EInterfaceItem::SerializeIn");
  // A wrong record inside the item's IPv6 list is the list's report.
  ExpectSerializeError(
      [] {
        EInterfaceItem item;
        ReadFrom(kInterfaceItem.substr(0, kInterfaceItem.find("17829889")) + "17829888 ", item);
      },
      "common/include/eUniqueIDMap", 472, "EUniqueIDMap<MapItem, ParentPType>::SerializeIn");
}

TEST(InterfaceModelRecords, ReadersSurviveArbitraryInput) {
  const std::vector<unsigned int> signatures = {0x1E040001, 0x1E060001, 0x1E0E0001, 0x1101001,
                                                0x18111112, 0x11223345, 0x15111111, 2};
  ExpectReaderSurvives(Filled().GetIPv4AddressItem(), signatures, 41);
  ExpectReaderSurvives(EIPv6AddressItem(), signatures, 42);
  ExpectReaderSurvives(Filled(), signatures, 43);
}

TEST(InterfaceModelRecords, AHugeIPv6CountEndsWithTheData) {
  EInterfaceItem item;
  ReadFrom(kInterfaceItem.substr(0, kInterfaceItem.find("17829889 2 ")) + "17829889 2000000000 ",
           item);
  EXPECT_EQ(item.GetIPv6AddressItemList().size(), 0u);
  EXPECT_TRUE(item.IsEnabled());
}

// ---------------------------------------------------------------------------------------------
// The configuration records the hooks pass through.

template <typename T>
constexpr bool kPlainValue = std::is_default_constructible_v<T>&& std::is_copy_constructible_v<T>&&
    std::is_copy_assignable_v<T>;

TEST(InterfaceConfigRecords, AreDefaultConstructibleAndCopyable) {
  EXPECT_TRUE(kPlainValue<EDHCPProperties>);
  EXPECT_TRUE(kPlainValue<EDHCPTLV>);
  EXPECT_TRUE(kPlainValue<EDHCPv6Properties>);
  EXPECT_TRUE(kPlainValue<EFCoEConfig>);
  EXPECT_TRUE(kPlainValue<ENSRegOption>);
  EXPECT_TRUE(kPlainValue<EPLOGIDestination>);
  EXPECT_TRUE(kPlainValue<EFCNSQuery>);
  EXPECT_TRUE(kPlainValue<ENPIVConfig>);
  EXPECT_TRUE(kPlainValue<EPTPConfig>);
  EXPECT_TRUE(kPlainValue<EDCBXConfig>);
  EXPECT_TRUE(kPlainValue<EDCBXFeatureTlv>);
  EXPECT_TRUE(kPlainValue<ELLDPConfig>);
  EXPECT_TRUE(kPlainValue<ELLDPConfig::LLDPChassisId>);
  EXPECT_TRUE(kPlainValue<ELLDPConfig::LLDPPortId>);
  EXPECT_TRUE(std::is_enum_v<EDHCPv6Properties::eIAType>);
  EXPECT_TRUE(std::is_enum_v<EFCoEConfig::eAddressModes>);
  EXPECT_TRUE(std::is_enum_v<EFCoEConfig::eSCROptions>);
  EXPECT_TRUE(std::is_enum_v<ENPIVConfig::eSCROptions>);
  EXPECT_NE(static_cast<int>(EFCoEConfig::eFabricProvidedMAC),
            static_cast<int>(EFCoEConfig::eServerProvidedMAC));
}

}  // namespace
