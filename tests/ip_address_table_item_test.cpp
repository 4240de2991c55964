#include "eIPAddressTableItem.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "archive_text.h"
#include "capturing_tracer.h"
#include "child_process.h"
#include "eArchive.h"
#include "eTrace.h"
#include "eVLAN.h"
#include "network_values.h"

namespace {

using namespace network_values;

// ---------------------------------------------------------------------------------------------
// Wire text of the item's fields.

std::string AddressText(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
  const char bytes[4] = {static_cast<char>(a), static_cast<char>(b), static_cast<char>(c),
                         static_cast<char>(d)};
  return "403771666 17 287454021 4 " + std::string(bytes, 4);
}

std::string MACText(const std::string& six) {
  return "386994449 287454021 6 " + six;
}

// The fields of version 3 in archive order, one piece each.
using Pieces = std::vector<std::string>;

std::string Join(const Pieces& pieces, std::size_t from, std::size_t to) {
  std::string text;
  for (std::size_t i = from; i < to; ++i)
    text += pieces[i];
  return text;
}

// Every field set, interface-derived included.
const Pieces kPrefilled = {
    "7 ",
    "8 ",
    "9 ",
    "10 ",
    "1 ",
    "1 ",
    AddressText(1, 1, 1, 1),
    "1 ",
    "1125474577 1 0 11 2 1 12 ",
    "2 1 1 2292711425 ",  // 0x88A80001
    "1 ",
    AddressText(1, 1, 0, 0) + "420548881 287454021 4 " + std::string("\xFF\xFF\x00\x00", 4),
    "1145324612 " + AddressText(1, 1, 1, 10) + "5 ",
    "353440017 " + MACText(std::string("\x00\x00\x00\x00\x00\x01", 6)) + "5 0 ",
};

// Other values in every field.
const Pieces kStream = {
    "2 ",
    "3 ",
    "4 ",
    "5 ",
    "0 ",
    "0 ",
    AddressText(2, 2, 2, 2),
    "0 ",
    "1125474577 0 1 21 3 0 22 ",
    "2 0 2 2164260885 2164260886 ",
    "0 ",
    AddressText(2, 2, 2, 0) + "420548881 287454021 4 " + std::string("\xFF\xFF\xFF\x00", 4),
    "1145324612 " + AddressText(2, 2, 2, 20) + "6 ",
    "353440017 " + MACText(std::string("\x00\x00\x00\x00\x00\x02", 6)) + "6 1 ",
};

const std::string kPrefilledBytes = "3 " + Join(kPrefilled, 0, kPrefilled.size());

EIPAddressTableItem Read(const std::string& bytes) {
  EIPAddressTableItem item;
  ReadFrom(bytes, item);
  return item;
}

EIPMaskedAddress Network(const EIPAddress& address, unsigned int prefix) {
  EIPMaskedAddress network(address);
  network.SetMaskPrefixNumber(prefix);
  return network;
}

// The prefilled values through the setters (the interface-derived flag has none).
EIPAddressTableItem Filled() {
  EIPAddressTableItem item;
  item.SetEncapsulation(static_cast<eAtmEncapsulationMode>(7));
  item.SetATMMode(static_cast<EIPAddressTableItem::ATMModeEnum>(8));
  item.SetVPI(9);
  item.SetVCI(10);
  item.SetReserveForPCPU(true);
  item.SetGateway(V4(1, 1, 1, 1));
  item.SetOverrideDefaultGateway(true);
  EISLIPAddressTableItemProperties isl;
  isl.Enable();
  isl.SetVLANMappingMode(0);
  isl.SetVLANID(11);
  isl.SetUserPriority(2);
  isl.SetBPDUIndicator(true);
  isl.SetIndex(12);
  item.SetISLIPAddressTableItemProperties(isl);
  EVLANIPAddressTableItemProperties vlan;
  vlan.Enable();
  vlan.SetVlanTag(0, 0x88A80001);
  item.SetVLANIPAddressTableItemProperties(vlan);
  item.SetUseNetworkNumber(true);
  item.SetNetwork(Network(V4(1, 1, 0, 0), 16));
  item.SetIPAddressRange(Range(V4(1, 1, 1, 10), 5));
  item.SetMACAddressRange(MACRange("00:00:00:00:00:01", 5, 0));
  return item;
}

const char* const kFile = "x86_64/common/ehal/eIPAddressTableItem";
const char* const kFunction = "EIPAddressTableItem::SerializeIn";

// ---------------------------------------------------------------------------------------------
// Construction and accessors.

TEST(EIPAddressTableItem, EmptyValues) {
  const EIPAddressTableItem item;
  EXPECT_EQ(item.GetIPAddressRange(), EIPAddressRange());
  EXPECT_EQ(item.GetMACAddressRange().GetMACAddress(), EMACAddress());
  EXPECT_EQ(item.GetMACAddressRange().GetMACRangeCount(), 0u);
  EXPECT_EQ(item.GetMACAddressRange().GetMACMode(), 0);
  EXPECT_EQ(item.GetGateway(), V4(0, 0, 0, 0));
  EXPECT_EQ(item.GetGateway().GetType(), 17u);
  EXPECT_FALSE(item.GetOverrideDefaultGateway());
  EXPECT_EQ(item.GetNetworkNumber(), V4(0, 0, 0, 0));
  EXPECT_EQ(item.GetNetworkMask(), Blob({0xFF, 0xFF, 0xFF, 0xFF}));
  EXPECT_FALSE(item.GetUseNetworkNumber());
  EXPECT_FALSE(item.GetReserveForPCPU());
  EXPECT_EQ(item.GetEncapsulation(), 1u);
  EXPECT_EQ(item.GetATMMode(), 1u);
  EXPECT_EQ(item.GetVPI(), 0u);
  EXPECT_EQ(item.GetVCI(), 32u);
  EXPECT_EQ(item.GetVLANIPAddressTableItemProperties(), EVLANIPAddressTableItemProperties());
  EXPECT_EQ(BytesOf(item.GetISLIPAddressTableItemProperties()), "1125474577 0 1 0 0 0 0 ");
}

TEST(EIPAddressTableItem, EmptyResetsEveryField) {
  EIPAddressTableItem item = Read(kPrefilledBytes);
  item.Empty();
  EXPECT_EQ(BytesOf(item), BytesOf(EIPAddressTableItem()));
}

TEST(EIPAddressTableItem, DefaultArchiveBytes) {
  const std::string zero4("\0\0\0\0", 4);
  EXPECT_EQ(BytesOf(EIPAddressTableItem()),
            "3 1 1 0 32 0 0 403771666 17 287454021 4 " + zero4 + "0 1125474577 0 1 0 0 0 0 " +
                "2 0 1 2164260864 0 403771666 17 287454021 4 " + zero4 +
                "420548881 287454021 4 \xFF\xFF\xFF\xFF" + "1145324612 403771666 17 287454021 4 " +
                zero4 + "1 353440017 386994449 287454021 6 " + std::string(6, '\0') + "0 0 ");
}

TEST(EIPAddressTableItem, SettersGiveTheExactBytes) {
  Pieces pieces = kPrefilled;
  pieces[5] = "0 ";  // not derived from an interface
  EXPECT_EQ(BytesOf(Filled()), "3 " + Join(pieces, 0, pieces.size()));
}

TEST(EIPAddressTableItem, Accessors) {
  const EIPAddressTableItem item = Filled();
  EXPECT_EQ(item.GetEncapsulation(), 7u);
  EXPECT_EQ(item.GetATMMode(), 8u);
  EXPECT_EQ(item.GetVPI(), 9u);
  EXPECT_EQ(item.GetVCI(), 10u);
  EXPECT_TRUE(item.GetReserveForPCPU());
  EXPECT_EQ(item.GetGateway(), V4(1, 1, 1, 1));
  EXPECT_TRUE(item.GetOverrideDefaultGateway());
  EXPECT_EQ(item.GetISLIPAddressTableItemProperties().GetVLANID(1), 12);
  EXPECT_EQ(item.GetVLANIPAddressTableItemProperties().GetVlans(),
            std::vector<unsigned int>{0x88A80001});
  EXPECT_TRUE(item.GetUseNetworkNumber());
  EXPECT_EQ(item.GetNetwork(), Network(V4(1, 1, 0, 0), 16));
  EXPECT_EQ(item.GetNetworkNumber(), V4(1, 1, 0, 0));
  EXPECT_EQ(item.GetNetworkMask(), Blob({0xFF, 0xFF, 0x00, 0x00}));
  EXPECT_EQ(item.GetIPAddressRange(), Range(V4(1, 1, 1, 10), 5));
  EXPECT_EQ(item.GetMACAddressRange().GetMACAddress(), MAC("00:00:00:00:00:01"));
  EXPECT_EQ(item.GetMACAddressRange().GetMACRangeCount(), 5u);
}

TEST(EIPAddressTableItem, NetworkNumberIsSetOnlyThroughTheNetwork) {
  EIPAddressTableItem item = Filled();
  item.SetNetworkNumber(V4(9, 9, 9, 9));
  EXPECT_EQ(item.GetNetworkNumber(), V4(1, 1, 0, 0));
  EXPECT_EQ(BytesOf(item), BytesOf(Filled()));
}

TEST(EIPAddressTableItem, NetworkMaskSetter) {
  EIPAddressTableItem item = Filled();
  item.SetNetworkMask(Blob({0xFF, 0xFF, 0xFF, 0xF0}));
  EXPECT_EQ(item.GetNetworkMask(), Blob({0xFF, 0xFF, 0xFF, 0xF0}));
  EXPECT_EQ(item.GetNetwork().GetMaskPrefixNumber(), 28u);
  EXPECT_EQ(item.GetNetworkNumber(), V4(1, 1, 0, 0));
  item.SetNetworkMask(Blob({0xFF}));  // the rest of the mask becomes zero
  EXPECT_EQ(item.GetNetworkMask(), Blob({0xFF, 0x00, 0x00, 0x00}));
}

TEST(EIPAddressTableItem, GettersReturnCopies) {
  EIPAddressTableItem item = Filled();
  EVLANIPAddressTableItemProperties vlan = item.GetVLANIPAddressTableItemProperties();
  vlan.SetVLANCount(3);
  EISLIPAddressTableItemProperties isl = item.GetISLIPAddressTableItemProperties();
  isl.Disable();
  EIPAddressRange range = item.GetIPAddressRange();
  range.SetRangeCount(99);
  EXPECT_EQ(BytesOf(item), BytesOf(Filled()));
}

TEST(EIPAddressTableItem, CopyTakesEveryFieldWithTheInterfaceFlag) {
  const EIPAddressTableItem source = Read(kPrefilledBytes);
  EXPECT_EQ(BytesOf(source), kPrefilledBytes);
  const EIPAddressTableItem copy(source);
  EXPECT_EQ(BytesOf(copy), kPrefilledBytes);
  EIPAddressTableItem assigned;
  assigned = source;
  EXPECT_EQ(BytesOf(assigned), kPrefilledBytes);
  EIPAddressTableItem copied;
  copied.Copy(source);
  EXPECT_EQ(BytesOf(copied), kPrefilledBytes);
  copied = *&copied;
  copied.Copy(copied);
  EXPECT_EQ(BytesOf(copied), kPrefilledBytes);
}

TEST(EIPAddressTableItem, IsPolymorphicThroughItsDestructorOnly) {
  EXPECT_TRUE(std::has_virtual_destructor_v<EIPAddressTableItem>);
  EXPECT_FALSE(std::is_polymorphic_v<EVLANIPAddressTableItemProperties>);
  EXPECT_FALSE(std::is_polymorphic_v<EISLIPAddressTableItemProperties>);
}

// ---------------------------------------------------------------------------------------------
// Archive layouts.

TEST(EIPAddressTableItem, RoundTrip) {
  const EIPAddressTableItem item = Read(kPrefilledBytes);
  EXPECT_EQ(item.GetVPI(), 9u);
  EXPECT_EQ(item.GetGateway(), V4(1, 1, 1, 1));
  EXPECT_EQ(item.GetMACAddressRange().GetMACRangeCount(), 5u);
  EIPAddressTableItem back = Filled();
  ReadFrom(BytesOf(Filled()), back);
  EXPECT_EQ(BytesOf(back), BytesOf(Filled()));
}

TEST(EIPAddressTableItem, EveryLayoutReadsItsFieldsAndKeepsTheOthers) {
  struct Layout {
    const char* signature;
    std::size_t lacking;  // leading fields of version 3 that the layout does not carry
  };
  const Layout layouts[] = {
      {"3 ", 0},         {"2 ", 4},          {"1 ", 5},          {"858993462 ", 6},
      {"858993461 ", 8}, {"858993460 ", 10}, {"858993459 ", 12},
  };
  for (const Layout& layout : layouts) {
    SCOPED_TRACE(layout.signature);
    EIPAddressTableItem item = Read(kPrefilledBytes);
    ReadFrom(layout.signature + Join(kStream, layout.lacking, kStream.size()), item);
    EXPECT_EQ(BytesOf(item), "3 " + Join(kPrefilled, 0, layout.lacking) +
                                 Join(kStream, layout.lacking, kStream.size()));
  }
}

TEST(EIPAddressTableItem, OldestLayoutCarriesTheRangesOnly) {
  EIPAddressTableItem item = Filled();
  ReadFrom("858993459 " + kStream[12] + kStream[13], item);
  EXPECT_EQ(item.GetIPAddressRange(), Range(V4(2, 2, 2, 20), 6));
  EXPECT_EQ(item.GetMACAddressRange().GetMACMode(), 1);
  EXPECT_EQ(item.GetVPI(), 9u);
  EXPECT_TRUE(item.GetUseNetworkNumber());
}

TEST(EIPAddressTableItem, NestedVLANLayoutsAreAccepted) {
  const std::string tail = "0 " + kStream[11] + kStream[12] + kStream[13];
  EIPAddressTableItem item = Read(kPrefilledBytes);
  ReadFrom("858993461 " + kStream[8] + "1 513 1 100 " + tail, item);
  EXPECT_EQ(item.GetVLANIPAddressTableItemProperties().GetVlans(),
            std::vector<unsigned int>{0x91000064});
  ReadFrom("858993461 " + kStream[8] + "320168209 1 0 100 5 1 " + tail, item);
  EXPECT_EQ(item.GetVLANIPAddressTableItemProperties().GetVlans(),
            std::vector<unsigned int>{0x0000B064});
  EXPECT_EQ(item.GetIPAddressRange(), Range(V4(2, 2, 2, 20), 6));
}

TEST(EIPAddressTableItem, UnknownSignatureIsReported) {
  for (const char* bytes : {"4 ", "0 ", "858993463 ", "858993458 ", ""}) {
    SCOPED_TRACE(bytes);
    ExpectSerializeError(
        [bytes] {
          EIPAddressTableItem item;
          ReadFrom(bytes, item);
        },
        kFile, 311, kFunction);
  }
}

TEST(EIPAddressTableItem, NestedRecordsReportTheirOwnErrors) {
  ExpectSerializeError(
      [] {
        EIPAddressTableItem item;
        ReadFrom("858993461 1125474578 ", item);
      },
      "x86_64/common/ehal/eISLIPAddressTableItemProperties", 202,
      "EISLIPAddressTableItemProperties::SerializeIn");
  ExpectSerializeError(
      [] {
        EIPAddressTableItem item;
        ReadFrom("858993461 " + kStream[8] + "7 ", item);
      },
      "x86_64/common/ehal/eVLANIPAddressTableItemProperties", 414,
      "EVLANIPAddressTableItemProperties::SerializeIn");
}

// ---------------------------------------------------------------------------------------------
// The source MAC of a host.

// The MAC that `item` gives `ip`, starting from a MAC that is none of the expected ones.
std::string MACOf(const EIPAddressTableItem& item, const EIPAddress& ip, bool expected) {
  EMACAddress mac = MAC("de:ad:be:ef:00:00");
  EXPECT_EQ(item.GetMACAddressFromIPAddress(ip, mac), expected);
  return mac.GetAsString();
}

EIPAddressTableItem Hosts(const EIPAddress& first, unsigned int count, const std::string& mac,
                          int mode) {
  EIPAddressTableItem item;
  item.SetIPAddressRange(Range(first, count));
  item.SetMACAddressRange(MACRange(mac, count, mode));
  return item;
}

TEST(EIPAddressTableItem, MACOfAHostInTheRange) {
  const EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:11:00:00:00:05", 0);
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 1), true), "00:11:00:00:00:05");
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 4), true), "00:11:00:00:00:08");
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 10), true), "00:11:00:00:00:0e");
}

TEST(EIPAddressTableItem, MACCarryIsOneMoreThanA48BitSum) {
  const EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:00:ff:ff:ff:fe", 0);
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 1), true), "00:00:ff:ff:ff:fe");
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 2), true), "00:01:00:00:00:00");  // a plain sum: 00:ff:ff:ff
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 3), true), "00:01:00:00:00:01");
  const EIPAddressTableItem top = Hosts(V4(10, 0, 0, 1), 2, "ff:ff:ff:ff:ff:ff", 0);
  EXPECT_EQ(MACOf(top, V4(10, 0, 0, 1), true), "00:00:00:00:00:00");  // already at offset 0
  const EIPAddressTableItem below = Hosts(V4(10, 0, 0, 1), 300, "12:34:ff:ff:ff:00", 0);
  EXPECT_EQ(MACOf(below, V4(10, 0, 0, 255), true), "12:34:ff:ff:ff:fe");
  EXPECT_EQ(MACOf(below, V4(10, 0, 1, 0), true), "12:35:00:00:00:00");
  EXPECT_EQ(MACOf(below, V4(10, 0, 1, 1), true), "12:35:00:00:00:01");
}

TEST(EIPAddressTableItem, MACOfAnAddressOutsideTheRange) {
  const EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:11:00:00:00:05", 0);
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 0), false), "00:11:00:00:00:05");
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 11), false), "00:11:00:00:00:05");
  EXPECT_EQ(MACOf(item, V4(192, 168, 0, 1), false), "00:11:00:00:00:05");
  // The end of the range is first + count in 32 bits: a range that wraps holds nothing.
  const EIPAddressTableItem wrapping = Hosts(V4(255, 255, 255, 255), 2, "00:00:00:00:00:01", 0);
  EXPECT_EQ(MACOf(wrapping, V4(255, 255, 255, 255), false), "00:00:00:00:00:01");
  const EIPAddressTableItem none = Hosts(V4(10, 0, 0, 1), 0, "00:00:00:00:00:01", 0);
  EXPECT_EQ(MACOf(none, V4(10, 0, 0, 1), false), "00:00:00:00:00:01");
}

TEST(EIPAddressTableItem, MACOfAnyAddressManyToOne) {
  const EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:11:00:00:00:05", 1);
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 4), true), "00:11:00:00:00:05");
  EXPECT_EQ(MACOf(item, V4(192, 168, 0, 1), true), "00:11:00:00:00:05");
  EXPECT_EQ(MACOf(item, V6({0x2001, 0xdb8}), true), "00:11:00:00:00:05");
}

TEST(EIPAddressTableItem, MACUsesTheFirstFourAddressBytesWhateverTheMode) {
  const EIPAddressTableItem other = Hosts(V4(10, 0, 0, 1), 10, "00:11:00:00:00:05", 5);
  EXPECT_EQ(MACOf(other, V4(10, 0, 0, 2), true), "00:11:00:00:00:06");  // only 1 is many-to-one
  EXPECT_EQ(MACOf(other, V6({0x0A00, 0x0003, 0xFFFF}), true), "00:11:00:00:00:07");
}

TEST(EIPAddressTableItem, MACOfAShortFirstAddressIsPaddedInFront) {
  EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:00:00:00:00:00", 0);
  EMACAddressRange range = item.GetMACAddressRange();
  range.SetMACAddress(MAC("aa:bb"));
  item.SetMACAddressRange(range);
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 2), true), "00:00:00:00:aa:bc");
  EXPECT_EQ(MACOf(item, V4(10, 0, 0, 20), false), "aa:bb");
}

// ---------------------------------------------------------------------------------------------
// The dump.

const std::string kHeader =
    "IP From:  IP To:  Use Network Number:  NetworkNumber:  NetworkNumber: Network Mask: MAC "
    "Mode: Src MAC Address From: Src Mac Address Count: VLAN        ISL           \n";

EIPAddressTableItem DumpedItem() {
  EIPAddressTableItem item = Hosts(V4(10, 0, 0, 1), 10, "00:1a:2b:3c:4d:5e", 0);
  item.SetUseNetworkNumber(true);
  item.SetNetwork(Network(V4(10, 0, 0, 0), 24));
  return item;
}

TEST(EIPAddressTableItem, DumpWithHeader) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ItemDumpHeader", 6, tracer);
  DumpedItem().DumpToLog(trace, true);
  const std::vector<std::string> expected = {
      kHeader, std::string(153, '=') + "\n",
      "10.0.0.1\t10.0.0.11\tYes\t10.0.0.0\t255.255.255.0\tOne To One\t00 1A 2B 3C 4D 5E "
      "\t10\t\n"};
  EXPECT_EQ(tracer->lines, expected);
  EXPECT_EQ(kHeader.size(), 166u);
}

TEST(EIPAddressTableItem, DumpWithoutHeader) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ItemDumpRow", 8, tracer);
  EIPAddressTableItem item = Hosts(V4(255, 255, 255, 254), 2, "ff:ff:ff:ff:ff:ff", 1);
  item.SetNetwork(Network(V4(1, 2, 3, 4), 30));
  item.DumpToLog(trace, false);
  item.SetMACAddressRange(MACRange("01:02:03:04:05:06", 0, 7));
  item.DumpToLog(trace, false);
  const std::vector<std::string> expected = {
      // "To" is one past the last address, here wrapped to 0.0.0.0.
      "255.255.255.254\t0.0.0.0\tNo\t1.2.3.4\t255.255.255.252\tMany To One\tFF FF FF FF FF FF "
      "\t2\t\n",
      "255.255.255.254\t0.0.0.0\tNo\t1.2.3.4\t255.255.255.252\tUnknown\t01 02 03 04 05 06 \t0\t\n"};
  EXPECT_EQ(tracer->lines, expected);
}

TEST(EIPAddressTableItem, DumpOfAnIPv6Network) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ItemDumpIPv6", 6, tracer);
  EIPAddressTableItem item = DumpedItem();
  item.SetNetwork(Network(V6({0xfe80}), 64));
  item.DumpToLog(trace, false);
  ASSERT_EQ(tracer->lines.size(), 1u);
  EXPECT_EQ(tracer->lines[0],
            "10.0.0.1\t10.0.0.11\tYes\tFE80:0:0:0:0:0:0:0\t255.255.255.255\tOne To One\t"
            "00 1A 2B 3C 4D 5E \t10\t\n");
}

TEST(EIPAddressTableItem, NoDumpBelowLevelSixOrWithoutChannel) {
  CapturingTracer* tracer = nullptr;
  ETrace* trace = Channel("ItemDumpSilent", 5, tracer);
  DumpedItem().DumpToLog(trace, true);
  EXPECT_TRUE(tracer->lines.empty());
  DumpedItem().DumpToLog(nullptr, true);
}

}  // namespace
