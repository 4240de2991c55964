// The generic address table, the ARP entry, the IP address table and its merge of an interface
// table. The merge is checked on worked cases and, on randomised tables, against the merge
// written out step by step as it reads (literal_merge.h).
#include "eIPAddressTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "archive_text.h"
#include "capturing_tracer.h"
#include "child_process.h"
#include "eARPAddressTableItem.h"
#include "eInterfaceTable.h"
#include "literal_merge.h"
#include "network_values.h"
#include "reader_fuzz.h"

namespace {

using namespace network_values;

using ARPTable = EAddressTable<EIPAddress, EARPAddressTableItem>;
using HostTable = EAddressTable<EIPAddressRange, EIPAddressTableItem>;

// A row of `count` hosts from `first`, one MAC each from `mac`.
EIPAddressTableItem Hosts(const EIPAddress& first, unsigned int count, const std::string& mac,
                          int mode = EIPAddressTableItem::kMACOneToOne) {
  EIPAddressTableItem item;
  item.SetIPAddressRange(Range(first, count));
  item.SetMACAddressRange(MACRange(mac, count, mode));
  return item;
}

EIPAddressTable TableOf(const std::vector<EIPAddressTableItem>& rows) {
  EIPAddressTable table;
  for (const EIPAddressTableItem& row : rows)
    table.AddEntry(row.GetIPAddressRange(), row);
  return table;
}

// The rows as "first/count mac" texts in key order.
std::vector<std::string> RowsOf(const HostTable& table) {
  std::vector<std::string> rows;
  for (auto row = table.Begin(); row != table.End(); ++row) {
    const EIPAddressRange range = row->second.GetIPAddressRange();
    rows.push_back(range.GetIPAddress().GetAsString() + "/" +
                   std::to_string(range.GetRangeCount()) + " " +
                   row->second.GetMACAddressRange().GetMACAddress().GetAsString());
  }
  return rows;
}

// The item as one read from an archive with the interface-derived flag set (the flag has no
// setter): in the item's form it is the sixth number after the signature.
EIPAddressTableItem InterfaceDerived(const EIPAddressTableItem& item) {
  std::string bytes = BytesOf(item);
  std::size_t at = 0;
  for (int blank = 0; blank < 6; ++blank)
    at = bytes.find(' ', at) + 1;
  EXPECT_EQ(bytes.substr(at, 2), "0 ");
  bytes[at] = '1';
  EIPAddressTableItem derived;
  ReadFrom(bytes, derived);
  return derived;
}

// ---------------------------------------------------------------------------------------------
// The ARP entry.

const std::string kZero4("\0\0\0\0", 4);

std::string AddressText(const EIPAddress& address) {
  const std::string bytes(reinterpret_cast<const char*>(address.GetAddress()),
                          address.GetAddressLength());
  return "403771666 " + std::to_string(address.GetType()) + " 287454021 " +
         std::to_string(bytes.size()) + " " + bytes;
}

std::string MACText(const std::string& six) {
  return "386994449 287454021 6 " + six;
}

EARPAddressTableItem ARPEntry(const EIPAddress& ip, const std::string& mac) {
  EARPAddressTableItem entry;
  entry.SetIPAddress(ip);
  entry.SetMACAddress(MAC(mac));
  return entry;
}

const std::string kARPEntry = "319885585 " + AddressText(V4(10, 0, 0, 1)) +
                              MACText(std::string("\x00\x11\x22\x33\x44\x55", 6));

TEST(EARPAddressTableItem, EmptyValues) {
  const EARPAddressTableItem entry;
  EXPECT_EQ(entry.GetIPAddress(), V4(0, 0, 0, 0));
  EXPECT_EQ(entry.GetIPAddress().GetType(), 17u);
  EXPECT_EQ(entry.GetMACAddress(), EMACAddress());
  EXPECT_EQ(BytesOf(entry),
            "319885585 " + AddressText(V4(0, 0, 0, 0)) + MACText(std::string(6, '\0')));
}

TEST(EARPAddressTableItem, AccessorsCopyAndEmpty) {
  EARPAddressTableItem entry = ARPEntry(V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}), "00:11:22:33:44:55");
  EXPECT_EQ(entry.GetIPAddress(), V6({0xfe80, 0, 0, 0, 0, 0, 0, 1}));
  EXPECT_EQ(entry.GetMACAddress().GetAsString(), "00:11:22:33:44:55");
  EARPAddressTableItem copy;
  copy.Copy(entry);
  EXPECT_EQ(BytesOf(copy), BytesOf(entry));
  EARPAddressTableItem assigned;
  assigned = entry;
  EXPECT_EQ(BytesOf(assigned), BytesOf(entry));
  entry.Empty();
  EXPECT_EQ(BytesOf(entry), BytesOf(EARPAddressTableItem()));
}

TEST(EARPAddressTableItem, ArchiveFormAndReadIntoAPrefilledEntry) {
  EXPECT_EQ(BytesOf(ARPEntry(V4(10, 0, 0, 1), "00:11:22:33:44:55")), kARPEntry);
  EARPAddressTableItem entry = ARPEntry(V6({0x2001}), "aa:bb:cc:dd:ee:ff");
  ReadFrom(kARPEntry, entry);
  EXPECT_EQ(entry.GetIPAddress(), V4(10, 0, 0, 1));
  EXPECT_EQ(entry.GetMACAddress().GetAsString(), "00:11:22:33:44:55");
}

TEST(EARPAddressTableItem, WrongSignatureIsReported) {
  ExpectSerializeError(
      [] {
        EARPAddressTableItem entry;
        ReadFrom("319885586 ", entry);
      },
      "x86_64/common/ehal/eARPAddressTableItem", 119, "EARPAddressTableItem::SerializeIn");
}

TEST(EARPAddressTableItem, DumpSaysNotImplementedAtLevelFour) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ARPEntryDump", 4, tracer);
  const EARPAddressTableItem entry = ARPEntry(V4(10, 0, 0, 1), "00:11:22:33:44:55");
  entry.DumpToLog(trace, true);
  entry.DumpToLog(trace, false);
  EXPECT_EQ(tracer->lines, (std::vector<std::string>{"Not Implemented!\n", "Not Implemented!\n"}));
  entry.DumpToLog(nullptr, true);

  CapturingTracer* quiet = nullptr;
  ETrace* silent = Channel("ARPEntryDumpSilent", 3, quiet);
  entry.DumpToLog(silent, true);
  EXPECT_TRUE(quiet->lines.empty());
}

// ---------------------------------------------------------------------------------------------
// The generic table, on the ARP entries.

TEST(EAddressTable, AddEntryInsertsOrReplacesAndKeepsKeyOrder) {
  ARPTable table;
  EXPECT_EQ(table.Begin(), table.End());
  EXPECT_TRUE(table.AddEntry(V4(10, 0, 0, 2), ARPEntry(V4(10, 0, 0, 2), "00:00:00:00:00:02")));
  EXPECT_TRUE(table.AddEntry(V6({0x1}), ARPEntry(V6({0x1}), "00:00:00:00:00:03")));
  EXPECT_TRUE(table.AddEntry(V4(10, 0, 0, 1), ARPEntry(V4(10, 0, 0, 1), "00:00:00:00:00:01")));
  EXPECT_TRUE(table.AddEntry(V4(10, 0, 0, 2), ARPEntry(V4(10, 0, 0, 2), "00:00:00:00:00:04")));
  std::vector<std::string> rows;
  for (auto row = table.Begin(); row != table.End(); ++row)
    rows.push_back(row->first.GetAsString() + " " + row->second.GetMACAddress().GetAsString());
  EXPECT_EQ(rows,
            (std::vector<std::string>{"10.0.0.1 00:00:00:00:00:01", "10.0.0.2 00:00:00:00:00:04",
                                      "1:0:0:0:0:0:0:0 00:00:00:00:00:03"}));
}

TEST(EAddressTable, FindItemIsAlwaysFalse) {
  ARPTable table;
  const EARPAddressTableItem entry = ARPEntry(V4(10, 0, 0, 1), "00:00:00:00:00:01");
  table.AddEntry(V4(10, 0, 0, 1), entry);
  EXPECT_FALSE(table.FindItem(V4(10, 0, 0, 1), entry));
  EXPECT_FALSE(table.FindItem(V4(10, 0, 0, 9), EARPAddressTableItem()));
}

TEST(EAddressTable, CopiesAreDeepAndHaveTheirOwnLock) {
  ARPTable table;
  table.AddEntry(V4(10, 0, 0, 1), ARPEntry(V4(10, 0, 0, 1), "00:00:00:00:00:01"));
  ARPTable copy(table);
  ARPTable assigned;
  assigned.AddEntry(V4(9, 9, 9, 9), EARPAddressTableItem());
  assigned = table;
  ARPTable copied;
  copied.Copy(table);
  for (const ARPTable* each : {&copy, &assigned, &copied}) {
    EXPECT_EQ(BytesOf(*each), BytesOf(table));
    EXPECT_NE(&each->GetLock(), &table.GetLock());
  }
  table.Empty();
  EXPECT_EQ(table.Begin(), table.End());
  EXPECT_EQ(std::distance(copy.Begin(), copy.End()), 1);
  ARPTable& self = copy;
  copy = self;
  copy.Copy(self);
  EXPECT_EQ(std::distance(copy.Begin(), copy.End()), 1);
}

TEST(EAddressTable, TheLockSerialisesItsUsers) {
  const ARPTable table;
  table.GetLock().Lock();
  table.GetLock().Unlock();
  EScopedLock scoped(table.GetLock());
  EXPECT_EQ(table.Begin(), table.End());
}

const std::string kARPTable = "286331153 2 " + AddressText(V4(10, 0, 0, 1)) + kARPEntry +
                              AddressText(V4(10, 0, 0, 2)) + "319885585 " +
                              AddressText(V4(10, 0, 0, 2)) + MACText(std::string(6, '\x02'));

ARPTable TwoEntries() {
  ARPTable table;
  table.AddEntry(V4(10, 0, 0, 2), ARPEntry(V4(10, 0, 0, 2), "02:02:02:02:02:02"));
  table.AddEntry(V4(10, 0, 0, 1), ARPEntry(V4(10, 0, 0, 1), "00:11:22:33:44:55"));
  return table;
}

TEST(EAddressTable, ArchiveForm) {
  EXPECT_EQ(BytesOf(TwoEntries()), kARPTable);
  EXPECT_EQ(BytesOf(ARPTable()), "286331153 0 ");
}

TEST(EAddressTable, ReadReplacesThePrefilledRows) {
  ARPTable table;
  table.AddEntry(V4(1, 1, 1, 1), EARPAddressTableItem());
  table.AddEntry(V4(10, 0, 0, 1), EARPAddressTableItem());
  ReadFrom(kARPTable, table);
  EXPECT_EQ(BytesOf(table), kARPTable);
  ReadFrom("286331153 0 ", table);
  EXPECT_EQ(table.Begin(), table.End());
}

TEST(EAddressTable, ALaterRowWithAnEqualKeyWins) {
  ARPTable table;
  ReadFrom("286331153 2 " + AddressText(V4(10, 0, 0, 1)) + kARPEntry +
               AddressText(V4(10, 0, 0, 1)) + "319885585 " + AddressText(V4(7, 7, 7, 7)) +
               MACText(std::string(6, '\x07')),
           table);
  ASSERT_EQ(std::distance(table.Begin(), table.End()), 1);
  EXPECT_EQ(table.Begin()->first, V4(10, 0, 0, 1));
  EXPECT_EQ(table.Begin()->second.GetIPAddress(), V4(7, 7, 7, 7));
}

TEST(EAddressTable, TheCountIsReadAsAnUnsignedInt) {
  // 2^32 + 1 written as a 64-bit count is one row for the reader.
  ARPTable table;
  ReadFrom("286331153 4294967297 " + AddressText(V4(10, 0, 0, 1)) + kARPEntry, table);
  EXPECT_EQ(std::distance(table.Begin(), table.End()), 1);
}

TEST(EAddressTable, AHugeCountEndsWithTheData) {
  ScopedThrowingSerializeErrors throwing;
  ARPTable table;
  try {
    ReadFrom("286331153 4000000000 " + AddressText(V4(10, 0, 0, 1)) + kARPEntry, table);
    FAIL() << "the missing key must be reported";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/eIPAddress");
  }
  EXPECT_EQ(std::distance(table.Begin(), table.End()), 1);
}

TEST(EAddressTable, WrongSignatureIsReported) {
  ExpectSerializeError(
      [] {
        ARPTable table;
        ReadFrom("286331154 0 ", table);
      },
      "common/include/eAddressTable", 120, "template<KeyType,ItemType> EAddressTable::SerializeIn");
  ExpectSerializeError(
      [] {
        HostTable table;
        ReadFrom("572662306 0 ", table);
      },
      "common/include/eAddressTable", 120, "template<KeyType,ItemType> EAddressTable::SerializeIn");
}

TEST(EAddressTable, TheRowsNeedAStoringArchiveToBeWritten) {
  for (const int mode : {eModeLoading, eModeNone}) {
    ExpectSerializeError(
        [mode] {
          EArchive archive;
          archive.SetMode(mode);
          archive << TwoEntries();
        },
        "common/include/eArchive", 270, "template<KeyType,ItemType> SerializeOut(..,map)");
  }
}

TEST(EAddressTable, TheRowsAreNotReadFromAStoringArchive) {
  ExpectSerializeError(
      [] {
        EArchive archive = StoringArchive();
        archive << ARPTable();
        ARPTable table;
        archive >> table;
      },
      "common/include/eArchive", 285, "template<KeyType,ItemType> SerializeIn(..,map)");
}

TEST(EAddressTable, DumpOfTheARPEntries) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ARPTableDump", 6, tracer);
  ARPTable().DumpToLog(trace);
  EXPECT_TRUE(tracer->lines.empty());
  TwoEntries().DumpToLog(trace);
  EXPECT_EQ(tracer->lines, (std::vector<std::string>{"Not Implemented!\n", "Not Implemented!\n"}));
  TwoEntries().DumpToLog(nullptr);

  CapturingTracer* quiet = nullptr;
  ETrace* silent = Channel("ARPTableDumpSilent", 5, quiet);
  TwoEntries().DumpToLog(silent);
  EXPECT_TRUE(quiet->lines.empty());
}

// ---------------------------------------------------------------------------------------------
// The IP address table.

const EIPAddressTableItem kRowA = Hosts(V4(10, 0, 0, 1), 10, "00:00:00:00:00:10");
const EIPAddressTableItem kRowB = Hosts(V4(10, 0, 1, 1), 2, "00:00:00:00:01:00");

std::string RangeText(const EIPAddressRange& range) {
  return "1145324612 " + AddressText(range.GetIPAddress()) + std::to_string(range.GetRangeCount()) +
         " ";
}

const std::string kIPTable = "572662306 286331153 2 " + RangeText(kRowA.GetIPAddressRange()) +
                             BytesOf(kRowA) + RangeText(kRowB.GetIPAddressRange()) + BytesOf(kRowB);

TEST(EIPAddressTable, ArchiveForm) {
  EXPECT_EQ(BytesOf(TableOf({kRowB, kRowA})), kIPTable);
  EXPECT_EQ(BytesOf(EIPAddressTable()), "572662306 286331153 0 ");
}

TEST(EIPAddressTable, ReadReplacesThePrefilledRows) {
  EIPAddressTable table = TableOf({Hosts(V4(1, 0, 0, 1), 3, "00:00:00:00:00:01"), kRowA});
  ReadFrom(kIPTable, table);
  EXPECT_EQ(BytesOf(table), kIPTable);
}

TEST(EIPAddressTable, WrongSignaturesAreReported) {
  ExpectSerializeError(
      [] {
        EIPAddressTable table;
        ReadFrom("286331153 0 ", table);
      },
      "x86_64/common/ehal/eIPAddressTable", 97, "EIPAddressTable::SerializeIn");
  ExpectSerializeError(
      [] {
        EIPAddressTable table;
        ReadFrom("572662306 572662306 0 ", table);
      },
      "common/include/eAddressTable", 120, "template<KeyType,ItemType> EAddressTable::SerializeIn");
}

TEST(EIPAddressTable, CopyEmptyAndFindItem) {
  const EIPAddressTable table = TableOf({kRowA, kRowB});
  EIPAddressTable copy(table);
  EIPAddressTable assigned;
  assigned = table;
  EIPAddressTable copied = TableOf({kRowB});
  copied.Copy(table);
  for (const EIPAddressTable* each : {&copy, &assigned, &copied})
    EXPECT_EQ(BytesOf(*each), kIPTable);
  EXPECT_FALSE(copy.FindItem(kRowA.GetIPAddressRange(), kRowA));
  copy.Empty();
  EXPECT_EQ(BytesOf(copy), "572662306 286331153 0 ");
  EXPECT_EQ(BytesOf(table), kIPTable);
}

const std::string kHeader =
    "IP From:  IP To:  Use Network Number:  NetworkNumber:  NetworkNumber: Network Mask: MAC "
    "Mode: Src MAC Address From: Src Mac Address Count: VLAN        ISL           \n";
const std::string kTitle = "IP Address Table\n";
const std::string kRule = "================\n";

TEST(EIPAddressTable, DumpOfTheRowsInAFrame) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("IPTableDump", 6, tracer);
  TableOf({kRowB, kRowA}).DumpToLog(trace);
  const std::vector<std::string> expected = {
      kTitle,
      kRule,
      kHeader,
      std::string(153, '=') + "\n",
      "10.0.0.1\t10.0.0.11\tNo\t0.0.0.0\t255.255.255.255\tOne To One\t00 00 00 00 00 10 \t10\t\n",
      "10.0.1.1\t10.0.1.3\tNo\t0.0.0.0\t255.255.255.255\tOne To One\t00 00 00 00 01 00 \t2\t\n",
      kRule};
  EXPECT_EQ(tracer->lines, expected);
}

TEST(EIPAddressTable, DumpOfAnEmptyTableHasNoColumnHeader) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("IPTableDumpEmpty", 7, tracer);
  EIPAddressTable().DumpToLog(trace);
  EXPECT_EQ(tracer->lines, (std::vector<std::string>{kTitle, kRule, kRule}));
}

TEST(EIPAddressTable, NoDumpBelowLevelSixOrWithoutChannel) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("IPTableDumpSilent", 5, tracer);
  TableOf({kRowA}).DumpToLog(trace);
  EXPECT_TRUE(tracer->lines.empty());
  TableOf({kRowA}).DumpToLog(nullptr);
}

TEST(AddressTableReaders, SurviveArbitraryInput) {
  const std::vector<unsigned int> signatures = {0x22222222, 0x11111111, 0x13111111, 0x44444444,
                                                0x18111112, 0x11223345, 0x15111111, 3,
                                                2,          0x43156111, 0x19111111};
  ExpectReaderSurvives(ARPEntry(V4(10, 0, 0, 1), "00:11:22:33:44:55"), signatures, 51);
  ExpectReaderSurvives(TwoEntries(), signatures, 52);
  ExpectReaderSurvives(TableOf({kRowA, kRowB}), signatures, 53);
  ExpectReaderSurvives(HostTable(TableOf({kRowA, kRowB})), signatures, 54);
}

// ---------------------------------------------------------------------------------------------
// The merge as it reads (literal_merge.h), on a whole table.
using literal_merge::FirstFour;

void LiteralMerge(EIPAddressTable& table, const EInterfaceTable& interfaces) {
  literal_merge::RowMap rows(table.Begin(), table.End());
  literal_merge::Merge(rows, interfaces, InterfaceDerived);
  table.Empty();
  for (const auto& row : rows)
    table.AddEntry(row.first, row.second);
}

EIPAddressTableItem LiteralInterfaceRow(const EInterfaceItem& item) {
  return InterfaceDerived(literal_merge::InterfaceRow(item));
}

// ---------------------------------------------------------------------------------------------
// The merge, worked cases.

EInterfaceItem Interface(const EIPAddress& address, const std::string& mac) {
  EInterfaceItem item;
  item.SetEnabled(true);
  item.SetMacAddress(MAC(mac));
  EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  ipv4.SetEnabled(true);
  ipv4.SetAddress(address);
  ipv4.SetGateway(V4(10, 0, 0, 254));
  ipv4.SetMaskLength(24);
  return item;
}

EInterfaceTable InterfacesOf(const std::vector<EInterfaceItem>& items) {
  EInterfaceTable table;
  for (const EInterfaceItem& item : items)
    table.AddInterfaceItem(item);
  return table;
}

// Merges with the library and checks that the walk as it reads gives the same bytes.
EIPAddressTable Merged(const EIPAddressTable& table, const EInterfaceTable& interfaces) {
  EIPAddressTable merged(table);
  merged.MergeWithInterfaceTable(interfaces);
  EIPAddressTable literal(table);
  LiteralMerge(literal, interfaces);
  EXPECT_EQ(BytesOf(merged), BytesOf(literal));
  return merged;
}

TEST(MergeWithInterfaceTable, TheInterfaceRow) {
  EInterfaceItem item = Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05");
  item.SetVLANItem([] {
    EVLANIPAddressTableItemProperties vlan;
    vlan.Enable();
    vlan.SetVLANFromVLANIDDescription("100,200");
    return vlan;
  }());
  item.SetVPI(3);
  item.SetVCI(40);
  item.SetEncapsulation(6);
  item.SetATMMode(0);
  const EIPAddressTable merged = Merged(EIPAddressTable(), InterfacesOf({item}));
  ASSERT_EQ(std::distance(merged.Begin(), merged.End()), 1);
  const EIPAddressTableItem& row = merged.Begin()->second;
  EXPECT_EQ(merged.Begin()->first, Range(V4(10, 0, 0, 5), 1));
  EXPECT_EQ(row.GetIPAddressRange(), Range(V4(10, 0, 0, 5), 1));
  EXPECT_EQ(row.GetMACAddressRange().GetMACMode(), 0);
  EXPECT_EQ(row.GetMACAddressRange().GetMACAddress().GetAsString(), "00:aa:00:00:00:05");
  EXPECT_EQ(row.GetMACAddressRange().GetMACRangeCount(), 1u);
  EXPECT_EQ(row.GetGateway(), V4(10, 0, 0, 254));
  EXPECT_TRUE(row.GetOverrideDefaultGateway());
  EXPECT_TRUE(row.GetUseNetworkNumber());
  EXPECT_EQ(row.GetNetworkNumber(), V4(10, 0, 0, 254));
  EXPECT_EQ(row.GetNetwork().GetMaskAsString(), "255.255.255.0");
  EXPECT_EQ(row.GetVLANIPAddressTableItemProperties(), item.GetVLANItem());
  EXPECT_EQ(row.GetVPI(), 3u);
  EXPECT_EQ(row.GetVCI(), 40u);
  EXPECT_EQ(row.GetEncapsulation(), 6u);
  EXPECT_EQ(row.GetATMMode(), 0u);
  EXPECT_FALSE(row.GetReserveForPCPU());
  EXPECT_EQ(BytesOf(row.GetISLIPAddressTableItemProperties()), "1125474577 0 1 0 0 0 0 ");
  // The interface-derived flag: the sixth number after the signature.
  EXPECT_EQ(BytesOf(row).substr(0, 14), "3 6 0 3 40 0 1");
}

TEST(MergeWithInterfaceTable, AnyATMModeButZeroBecomesOne) {
  EInterfaceItem item = Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05");
  item.SetATMMode(5);
  const EIPAddressTable merged = Merged(EIPAddressTable(), InterfacesOf({item}));
  EXPECT_EQ(merged.Begin()->second.GetATMMode(), 1u);
}

TEST(MergeWithInterfaceTable, AHostInsideARowSplitsIt) {
  const EIPAddressTable merged =
      Merged(TableOf({kRowA}), InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.1/4 00:00:00:00:00:10",
                                                      "10.0.0.5/1 00:aa:00:00:00:05",
                                                      "10.0.0.6/5 00:00:00:00:00:15"}));
  // Every other field of the pieces is the row's; the MAC counts follow the host counts.
  EIPAddressTableItem before = Hosts(V4(10, 0, 0, 1), 4, "00:00:00:00:00:10");
  EIPAddressTableItem after = Hosts(V4(10, 0, 0, 6), 5, "00:00:00:00:00:15");
  EIPAddressTable expected = TableOf({before, after});
  expected.AddEntry(Range(V4(10, 0, 0, 5), 1),
                    LiteralInterfaceRow(Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")));
  EXPECT_EQ(BytesOf(merged), BytesOf(expected));
}

TEST(MergeWithInterfaceTable, TheFirstOrLastHostShortensTheRow) {
  EXPECT_EQ(
      RowsOf(Merged(TableOf({kRowA}),
                    InterfacesOf({Interface(V4(10, 0, 0, 1), "00:aa:00:00:00:01")}))),
      (std::vector<std::string>{"10.0.0.1/1 00:aa:00:00:00:01", "10.0.0.2/9 00:00:00:00:00:11"}));
  EXPECT_EQ(
      RowsOf(Merged(TableOf({kRowA}),
                    InterfacesOf({Interface(V4(10, 0, 0, 10), "00:aa:00:00:00:0a")}))),
      (std::vector<std::string>{"10.0.0.1/9 00:00:00:00:00:10", "10.0.0.10/1 00:aa:00:00:00:0a"}));
}

TEST(MergeWithInterfaceTable, UnusableInterfacesChangeNothing) {
  const EIPAddressTable table = TableOf({kRowA, kRowB});
  EInterfaceItem disabled = Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05");
  disabled.SetEnabled(false);
  EInterfaceItem noIPv4 = Interface(V4(10, 0, 0, 6), "00:aa:00:00:00:06");
  noIPv4.GetIPv4AddressItem().SetEnabled(false);
  EInterfaceItem zero = Interface(V4(0, 0, 0, 0), "00:aa:00:00:00:07");
  // Only the first four address bytes count: an IPv6 address beginning with four zero bytes is
  // 0.0.0.0 too.
  EInterfaceItem zeroV6 = Interface(V6({0, 0, 0x0a00, 0x0005}), "00:aa:00:00:00:08");
  for (const EInterfaceItem& item : {disabled, noIPv4, zero, zeroV6})
    EXPECT_EQ(BytesOf(Merged(table, InterfacesOf({item}))), BytesOf(table));
  EXPECT_EQ(BytesOf(Merged(table, EInterfaceTable())), BytesOf(table));
}

TEST(MergeWithInterfaceTable, RowsOfOneOrNoHosts) {
  const EIPAddressTableItem single = Hosts(V4(10, 0, 0, 5), 1, "00:00:00:00:00:55");
  const EIPAddressTableItem none = Hosts(V4(10, 0, 0, 5), 0, "00:00:00:00:00:66");
  const EIPAddressTable merged = Merged(
      TableOf({single, none}), InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  // The single host gives way to the interface's row; the empty row stays.
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.5/0 00:00:00:00:00:66",
                                                      "10.0.0.5/1 00:aa:00:00:00:05"}));
}

TEST(MergeWithInterfaceTable, ARowWhoseEndWrapsHoldsNoHost) {
  const EIPAddressTableItem wrapping = Hosts(V4(255, 255, 255, 250), 10, "00:00:00:00:00:fa");
  const EIPAddressTableItem toTheTop = Hosts(V4(255, 255, 255, 250), 6, "00:00:00:00:00:fb");
  const EIPAddressTableItem belowTheTop = Hosts(V4(255, 255, 255, 250), 5, "00:00:00:00:00:fc");
  const EIPAddressTable merged =
      Merged(TableOf({wrapping, toTheTop, belowTheTop}),
             InterfacesOf({Interface(V4(255, 255, 255, 252), "00:aa:00:00:00:fc"),
                           Interface(V4(255, 255, 255, 255), "00:aa:00:00:00:ff")}));
  EXPECT_EQ(RowsOf(merged),
            (std::vector<std::string>{
                "255.255.255.250/2 00:00:00:00:00:fc", "255.255.255.250/6 00:00:00:00:00:fb",
                "255.255.255.250/10 00:00:00:00:00:fa", "255.255.255.252/1 00:aa:00:00:00:fc",
                "255.255.255.253/2 00:00:00:00:00:ff", "255.255.255.255/1 00:aa:00:00:00:ff"}));
}

TEST(MergeWithInterfaceTable, AnIPv6RowIsCarvedByItsFirstFourBytes) {
  // 0a00:0001:: begins with the bytes of 10.0.0.1: its hosts count as 10.0.0.1 to 10.0.0.10.
  const EIPAddressTableItem v6 = Hosts(V6({0x0a00, 0x0001, 0xbeef}), 10, "00:00:00:00:00:10");
  const EIPAddressTable merged =
      Merged(TableOf({v6}), InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  // The hosts before keep the IPv6 first address; those after start at an IPv4 address.
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.5/1 00:aa:00:00:00:05",
                                                      "10.0.0.6/5 00:00:00:00:00:15",
                                                      "A00:1:BEEF:0:0:0:0:0/4 00:00:00:00:00:10"}));
}

TEST(MergeWithInterfaceTable, OverlappingRowsAreAllCarved) {
  const EIPAddressTableItem wide = Hosts(V4(10, 0, 0, 1), 100, "00:00:00:00:01:00");
  const EIPAddressTableItem inner = Hosts(V4(10, 0, 0, 3), 5, "00:00:00:00:03:00");
  const EIPAddressTableItem beside = Hosts(V4(10, 0, 0, 50), 2, "00:00:00:00:50:00");
  const EIPAddressTable merged =
      Merged(TableOf({wide, inner, beside}),
             InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{
                                "10.0.0.1/4 00:00:00:00:01:00", "10.0.0.3/2 00:00:00:00:03:00",
                                "10.0.0.5/1 00:aa:00:00:00:05", "10.0.0.6/2 00:00:00:00:03:03",
                                "10.0.0.6/95 00:00:00:00:01:05", "10.0.0.50/2 00:00:00:00:50:00"}));
}

TEST(MergeWithInterfaceTable, APieceNeverReplacesARow) {
  // The hosts after 10.0.0.5 would be the row 10.0.0.6/5, which exists already and stays.
  const EIPAddressTableItem existing = Hosts(V4(10, 0, 0, 6), 5, "00:00:00:00:00:66");
  const EIPAddressTable merged = Merged(
      TableOf({kRowA, existing}), InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.1/4 00:00:00:00:00:10",
                                                      "10.0.0.5/1 00:aa:00:00:00:05",
                                                      "10.0.0.6/5 00:00:00:00:00:66"}));
}

TEST(MergeWithInterfaceTable, APieceKeyedLikeALaterRowThatHoldsTheHostIsLost) {
  // A row is carved by its item's range. The row keyed 10.0.0.6/5 holds the hosts 10.0.0.3 to
  // 10.0.0.7 and comes after 10.0.0.1/10 in key order: the piece 10.0.0.6/5 of the first row
  // finds its key taken and is dropped, and then the later row is carved in turn.
  EIPAddressTable table = TableOf({kRowA});
  table.AddEntry(Range(V4(10, 0, 0, 6), 5), Hosts(V4(10, 0, 0, 3), 5, "00:00:00:00:03:00"));
  const EIPAddressTable merged =
      Merged(table, InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{
                                "10.0.0.1/4 00:00:00:00:00:10", "10.0.0.3/2 00:00:00:00:03:00",
                                "10.0.0.5/1 00:aa:00:00:00:05", "10.0.0.6/2 00:00:00:00:03:03"}));
}

TEST(MergeWithInterfaceTable, ManyToOneRowsKeepTheirFirstMAC) {
  const EIPAddressTable merged = Merged(
      TableOf(
          {Hosts(V4(10, 0, 0, 1), 10, "00:00:00:00:00:10", EIPAddressTableItem::kMACManyToOne)}),
      InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.1/4 00:00:00:00:00:10",
                                                      "10.0.0.5/1 00:aa:00:00:00:05",
                                                      "10.0.0.6/5 00:00:00:00:00:10"}));
}

TEST(MergeWithInterfaceTable, TheLaterOfTwoInterfacesWithOneAddressWins) {
  const EIPAddressTable merged =
      Merged(TableOf({kRowA}), InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:01"),
                                             Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:02")}));
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.1/4 00:00:00:00:00:10",
                                                      "10.0.0.5/1 00:aa:00:00:00:02",
                                                      "10.0.0.6/5 00:00:00:00:00:15"}));
}

TEST(MergeWithInterfaceTable, InterfacesComeInTheOrderOfTheirIdentifiers) {
  EInterfaceTable interfaces;
  interfaces.AddInterfaceItem(Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:09"), 9);
  interfaces.AddInterfaceItem(Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:02"), 2);
  const EIPAddressTable merged = Merged(EIPAddressTable(), interfaces);
  EXPECT_EQ(RowsOf(merged), (std::vector<std::string>{"10.0.0.5/1 00:aa:00:00:00:09"}));
}

TEST(MergeWithInterfaceTable, MergingTwiceIsMergingOnce) {
  const EInterfaceTable interfaces =
      InterfacesOf({Interface(V4(10, 0, 0, 5), "00:aa:00:00:00:05"),
                    Interface(V4(10, 0, 1, 2), "00:aa:00:00:01:02")});
  EIPAddressTable once = TableOf({kRowA, kRowB});
  once.MergeWithInterfaceTable(interfaces);
  EIPAddressTable twice(once);
  twice.MergeWithInterfaceTable(interfaces);
  EXPECT_EQ(BytesOf(twice), BytesOf(once));
  EXPECT_EQ(RowsOf(once), (std::vector<std::string>{
                              "10.0.0.1/4 00:00:00:00:00:10", "10.0.0.5/1 00:aa:00:00:00:05",
                              "10.0.0.6/5 00:00:00:00:00:15", "10.0.1.1/1 00:00:00:00:01:00",
                              "10.0.1.2/1 00:aa:00:00:01:02"}));
}

// ---------------------------------------------------------------------------------------------
// The merge on randomised tables: overlapping rows, IPv6 rows, rows keyed apart from their
// ranges, rows of no host and rows that wrap, interfaces at the first and last hosts of rows,
// duplicates, disabled items and unusable addresses.

class RandomTables {
 public:
  explicit RandomTables(unsigned int seed) : m_Random(seed) {}

  EIPAddressTable Table() {
    EIPAddressTable table;
    const unsigned int rows = Below(40);
    for (unsigned int i = 0; i < rows; ++i) {
      const EIPAddressTableItem row = Row();
      table.AddEntry(Below(10) == 0 ? Row().GetIPAddressRange() : row.GetIPAddressRange(), row);
    }
    return table;
  }

  EInterfaceTable Interfaces(const EIPAddressTable& table) {
    EInterfaceTable interfaces;
    const unsigned int count = Below(16);
    for (unsigned int i = 0; i < count; ++i) {
      EInterfaceItem item = Interface(Address(InterfaceHost(table)), RandomMAC());
      item.SetEnabled(Below(8) != 0);
      item.GetIPv4AddressItem().SetEnabled(Below(8) != 0);
      item.GetIPv4AddressItem().SetMaskLength(Below(40));
      item.GetIPv4AddressItem().SetGateway(IPv4Host(Host()));
      item.SetVPI(Below(4));
      item.SetVCI(Below(100));
      item.SetEncapsulation(static_cast<int>(Below(3)) - 1);
      item.SetATMMode(static_cast<int>(Below(3)));
      if (Below(3) == 0) item.SetVLANItem(Tags());
      interfaces.AddInterfaceItem(item, Below(2) == 0 ? 0 : 1 + Below(40));
    }
    return interfaces;
  }

  unsigned int Below(unsigned int bound) { return m_Random() % bound; }

 private:
  static constexpr unsigned int kWindow = 0x0A000000;  // 10.0.0.0

  unsigned int Host() {
    switch (Below(8)) {
      case 0:
        return 0xFFFFFFF0u + Below(16);
      case 1:
        return Below(4);
      default:
        return kWindow + Below(48);
    }
  }

  unsigned int Count() {
    switch (Below(8)) {
      case 0:
        return 0;
      case 1:
        return 1;
      case 2:
        return 0xFFFFFFF8u + Below(8);
      default:
        return 2 + Below(20);
    }
  }

  // IPv4 mostly; sometimes IPv6 or another family with the host in the first four bytes.
  EIPAddress Address(unsigned int host) {
    EIPAddress address = IPv4Host(host);
    if (Below(5) != 0) return address;
    unsigned char bytes[16] = {};
    for (unsigned char& byte : bytes)
      byte = Below(2) == 0 ? 0 : static_cast<unsigned char>(Below(256));
    bytes[0] = static_cast<unsigned char>(host >> 24);
    bytes[1] = static_cast<unsigned char>(host >> 16);
    bytes[2] = static_cast<unsigned char>(host >> 8);
    bytes[3] = static_cast<unsigned char>(host);
    address.SetAddress(bytes, Below(4) == 0 ? 5u : static_cast<unsigned int>(eIPv6Address));
    return address;
  }

  std::string RandomMAC() {
    const char* const macs[] = {"00:00:00:00:00:01", "00:00:ff:ff:ff:f0", "00:11:22:33:44:55",
                                "ff:ff:ff:ff:ff:fe"};
    return macs[Below(4)];
  }

  EVLANIPAddressTableItemProperties Tags() {
    EVLANIPAddressTableItemProperties vlan;
    vlan.Enable();
    vlan.SetVLANFromVLANIDDescription(std::to_string(Below(4096)) + "," + std::to_string(Below(9)));
    return vlan;
  }

  EIPAddressTableItem Row() {
    EIPAddressTableItem row;
    row.SetIPAddressRange(Range(Address(Host()), Count()));
    row.SetMACAddressRange(MACRange(RandomMAC(), Count(), static_cast<int>(Below(3))));
    row.SetVPI(Below(5));
    row.SetGateway(IPv4Host(Host()));
    row.SetReserveForPCPU(Below(2) == 0);
    if (Below(3) == 0) row.SetVLANIPAddressTableItemProperties(Tags());
    return row;
  }

  // Often the first or last host of a row, or one before or after it.
  unsigned int InterfaceHost(const EIPAddressTable& table) {
    const auto rows = static_cast<unsigned int>(std::distance(table.Begin(), table.End()));
    if (rows == 0 || Below(3) == 0) return Below(10) == 0 ? 0 : Host();
    auto row = table.Begin();
    std::advance(row, Below(rows));
    const EIPAddressRange range = row->second.GetIPAddressRange();
    const unsigned int first = FirstFour(range.GetIPAddress());
    const unsigned int last = first + range.GetRangeCount() - 1;
    const unsigned int choices[] = {first, last, first + 1, last - 1, first - 1, last + 1};
    return choices[Below(6)];
  }

  std::mt19937 m_Random;
};

TEST(MergeWithInterfaceTable, GivesTheSameRowsAsTheWalkAsItReads) {
  RandomTables random(20240601);
  unsigned int changed = 0;
  for (unsigned int round = 0; round < 1500; ++round) {
    const EIPAddressTable table = random.Table();
    const EInterfaceTable interfaces = random.Interfaces(table);
    EIPAddressTable merged(table);
    merged.MergeWithInterfaceTable(interfaces);
    EIPAddressTable literal(table);
    LiteralMerge(literal, interfaces);
    ASSERT_EQ(BytesOf(merged), BytesOf(literal)) << "round " << round;
    if (BytesOf(merged) != BytesOf(table)) ++changed;
    // A second merge goes on from the first.
    const EInterfaceTable more = random.Interfaces(merged);
    merged.MergeWithInterfaceTable(more);
    LiteralMerge(literal, more);
    ASSERT_EQ(BytesOf(merged), BytesOf(literal)) << "round " << round << ", second merge";
  }
  EXPECT_GT(changed, 1000u);
}

}  // namespace
