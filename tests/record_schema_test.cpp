// The record schema: every record describes itself through the visitor in exactly the order and
// wire forms in which it writes itself. A record is first filled from a stream in which every
// number it carries is distinct (see WithDistinctValues), so that two fields described in each
// other's place would show.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "archive_text.h"
#include "ehal.h"
#include "record_vectors.h"

namespace {

template <typename T>
T Fresh() {
  return T();
}
template <>
eHal::EPRBS Fresh<eHal::EPRBS>() {
  return eHal::EPRBS(true);
}

// A command and a log with every list filled, so that the lists' items are described too.
template <>
ESingleCommand Fresh<ESingleCommand>() {
  ESingleCommand command;
  command.SetEditSubId({7, 8});
  command.SetId(EMultiComponentId(std::vector<unsigned int>{1}, {2, 3}));
  command.GetData().SetData("abc", 3);
  return command;
}
template <>
ECommandLog Fresh<ECommandLog>() {
  ECommandLog log;
  log.AddCommand(ECommandLog::kBGPServerTarget, Fresh<ESingleCommand>());
  log.AddCommand(ECommandLog::kBGPServerTarget, ESingleCommand());
  return log;
}

EIPAddress FreshAddress(unsigned char last, unsigned int type) {
  const unsigned char bytes[16] = {10, 0, 0, last};
  EIPAddress address;
  address.SetAddress(bytes, type);
  return address;
}

// Records holding lists or rows start with some, so that their items are described too.
template <>
EInterfaceItem Fresh<EInterfaceItem>() {
  EInterfaceItem item;
  item.AddIPv6Address(FreshAddress(1, eIPv6Address));
  item.AddIPv6Address(FreshAddress(2, eIPv6Address));
  return item;
}
template <>
EIPAddressTable Fresh<EIPAddressTable>() {
  EIPAddressTable table;
  for (unsigned char last = 1; last < 3; ++last) {
    EIPAddressRange range;
    range.SetAddress(FreshAddress(last, eIPv4Address));
    EIPAddressTableItem item;
    item.SetIPAddressRange(range);
    table.AddEntry(range, item);
  }
  return table;
}
using ARPTable = EAddressTable<EIPAddress, EARPAddressTableItem>;
template <>
ARPTable Fresh<ARPTable>() {
  ARPTable table;
  table.AddEntry(FreshAddress(1, eIPv4Address), EARPAddressTableItem());
  return table;
}
using HostTable = EAddressTable<EIPAddressRange, EIPAddressTableItem>;

template <typename T>
std::string Described(const T& record) {
  return BytesOf(ERecordValue::Of(record));
}

// The record's description with distinct values (see WithDistinctValues), written back.
template <typename T>
std::string WithDistinctValuesWritten(const T& record) {
  return BytesOf(WithDistinctValues(ERecordValue::Of(record)));
}

template <typename T>
class EveryRecord : public ::testing::Test {};

using namespace eHal;
using Records = ::testing::Types<
    // values and identifiers
    EStringList, Integer16Byte, EIPAddress, EIPMaskedAddress, EIPAddressRange, EMACAddress,
    EMACAddressRange, EIPMACPair, EUID, EComponentId, EMultiComponentId, EUniqueIDGenerator,
    ESingleCommand, ECommandLog,
    // address tables
    EISLIPAddressTableItemProperties, EVLANIPAddressTableItemProperties, EIPAddressTableItem,
    EARPAddressTableItem, HostTable, ARPTable, EIPAddressTable,
    // the interface-table model
    EIPv4AddressItem, EIPv6AddressItem, EInterfaceItem,
    // names and envelopes
    EProtocolName, ETableName, EClientID, EMessage, EGlobalMessage, EOutgoingGlobalMessage,
    EOutgoingMessage, EOutgoingProtocolMessage, ETableMessage, ESwitchUpdateMessage,
    // port records
    EPacket, EPRBS, EMacSec, EMacSec::ESecureAssociation, EConditionalStatConfig, EStreamConfig,
    EStreamConfig::EStreamData, EPOSLinkLayerSettings, EDataCenterModeSettings, EActivePortSetting,
    EAggregateModeSetting, EFCParams, EFCPhyMessage, ETLV, EEthernetOAMConfig, EEthernetOAMStatus,
    EEthernetOAMSesionStatus,
    // statistics
    EARPStats, EARPParameters, EICMPStats, EDriverStats, EVLANStats, ENeighborSolicitationStats,
    EGreStats, EDHCPStats, EDHCPv6Stats, EPTPStats, EFCoEStats, EDCBXStats, ELLDPStats,
    EEthernetOAMStats,
    // value lists
    eValueList>;
TYPED_TEST_SUITE(EveryRecord, Records);

TYPED_TEST(EveryRecord, DescribesItsFieldsInArchiveOrder) {
  TypeParam record = Fresh<TypeParam>();
  EXPECT_EQ(Described(record), BytesOf(record));

  ReadFrom(WithDistinctValuesWritten(record), record);
  EXPECT_EQ(Described(record), BytesOf(record));
}

TYPED_TEST(EveryRecord, ReadsBackTheDistinctValuesAsDescribed) {
  TypeParam record = Fresh<TypeParam>();
  ReadFrom(WithDistinctValuesWritten(record), record);
  TypeParam back = Fresh<TypeParam>();
  ReadFrom(BytesOf(record), back);
  EXPECT_EQ(Described(back), Described(record));
}

// A well-formed stream never reads past its end, so the wrap limit cannot change what it reads.
TYPED_TEST(EveryRecord, AWellFormedStreamNeverWrapsToItsStart) {
  TypeParam record = Fresh<TypeParam>();
  ReadFrom(WithDistinctValuesWritten(record), record);
  for (const bool terminate : {true, false}) {
    EArchive archive;
    archive.SetMode(eModeLoading);
    archive.SetFromEBlob(BlobOf(BytesOf(record)), terminate);
    TypeParam back = Fresh<TypeParam>();
    archive >> back;
    EXPECT_EQ(archive.GetWrapCount(), 0u);
    EXPECT_EQ(Described(back), Described(record));
  }
}

// A list describes every entry: the description of a switch update with entries re-encodes to
// its bytes.
TEST(RecordDescription, AListDescribesEachOfItsEntries) {
  ESwitchUpdateMessage message;
  for (const unsigned int value : {300u, 1u}) {
    SwitchUpdateEntry entry;
    entry.m_FirstValue = value;
    entry.m_SecondValue = value + 1;
    entry.m_Octets[5] = static_cast<unsigned char>(value);
    entry.m_Value = static_cast<unsigned short>(value * 2);
    message.m_Entries.push_back(entry);
  }
  EXPECT_EQ(BytesOf(message), "8 0 0 2 44 45 0 0 0 0 0 44 600 1 2 0 0 0 0 0 1 2 ");
  EXPECT_EQ(Described(message), BytesOf(message));
}

// Prints a description as "name=value" items, nested records and lists in braces.
class Printer : public ERecordVisitor {
 public:
  std::string text;

  void Number(const char* name, ENumberWire wire, std::uint64_t value) override {
    Item(name);
    const bool isSigned = IsSignedWire(wire);
    text += isSigned ? std::to_string(static_cast<std::int64_t>(value)) : std::to_string(value);
  }
  void Text(const char* name, const std::string& value) override {
    Item(name);
    text += "\"" + value + "\"";
  }
  void Bytes(const char* name, const EBlob& value) override {
    Item(name);
    text += "<" + value.GetHexString() + ">";
  }
  void BeginRecord(const char* name) override { Open(name); }
  void EndRecord() override { Close(); }
  void BeginList(const char* name, ECountWire, std::size_t) override { Open(name); }
  void EndList() override { Close(); }

 private:
  void Item(const char* name) {
    if (!m_First) text += ", ";
    m_First = false;
    if (*name != '\0') text += std::string(name) + "=";
  }
  void Open(const char* name) {
    Item(name);
    text += "{";
    m_First = true;
  }
  void Close() {
    text += "}";
    m_First = false;
  }

  bool m_First = true;
};

TEST(RecordSchema, DescriptionNamesEveryFieldOfAnEnvelope) {
  EMessage message;
  message.SetMessagePortId(7);
  message.SetDestination(static_cast<EMessage::eMessageDestination>(0x101));
  EClientID client;
  client.SetMajorID("gui");
  client.SetMinorID(-2);
  message.SetClientID(client);
  const unsigned char payload[] = {0xAB};
  message.SetMessage(static_cast<EMessage::eMessageType>(9), EBlob(payload, 1));
  Printer printer;
  message.Describe(printer, "message");
  EXPECT_EQ(printer.text,
            "message={Signature=3, MessagePortCount=1, MessagePortId=7, Destination=1, "
            "ClientID={Signature=1167589410, MajorID=\"gui\", MinorID=-2}, MessageType=9, "
            "Message=<AB >}");
}

TEST(RecordSchema, DescriptionOfListsAndUnsignedSignatures) {
  EStringList list;
  list.Add("a");
  list.Add("bc");
  Printer printer;
  list.Describe(printer);
  EXPECT_EQ(printer.text, "{Signature=286785536, Items={\"a\", \"bc\"}}");

  EEthernetOAMStats stats;
  stats.SetUnsupportedPDUsReceived(5);
  EXPECT_EQ(Described(stats).substr(0, 11), "2434799426 ");  // 0x91201742, never negative
}

TEST(RecordSchema, DescriptionOfAListEndedByZero) {
  EUniqueIDGenerator generator;
  generator.ReserveID(3);
  Printer printer;
  generator.Describe(printer);
  EXPECT_EQ(printer.text,
            "{Signature=17829889, LastId=3, FreeRanges={{First=1, Last=2}, {First=4, "
            "Last=4294967295}}}");
  EXPECT_EQ(Described(generator), "17829889 3 1 2 4 4294967295 0 ");
}

}  // namespace
