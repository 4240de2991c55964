// The static description of every registered class against the description of a filled record:
// the same field names, number and count forms and nesting, list item types included. The
// description is derived from the same schema that reads and writes; these tests prove the two
// agree for every class, and that a fresh item of each list's stated type reads back as stated.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "archive_text.h"
#include "ehal.h"
#include "record_vectors.h"

namespace {

// The value's kind as a type states it.
ERecordValue::Kind KindOf(EValueType::Kind kind) {
  switch (kind) {
    case EValueType::Kind::kNumber:
      return ERecordValue::Kind::kNumber;
    case EValueType::Kind::kText:
      return ERecordValue::Kind::kText;
    case EValueType::Kind::kRecord:
      return ERecordValue::Kind::kRecord;
    case EValueType::Kind::kList:
      return ERecordValue::Kind::kList;
    default:
      return ERecordValue::Kind::kBytes;
  }
}

// Counts what a walk compared, so that a test can require it compared something.
struct Compared {
  int values = 0;
  int listItems = 0;
};

void ExpectRecord(const ERecordValue& value, const ERecordDescription& description,
                  const std::string& path, Compared& compared);

void ExpectType(const ERecordValue& value, const EValueType& type, const std::string& path,
                Compared& compared) {
  ++compared.values;
  ASSERT_EQ(value.kind, KindOf(type.kind)) << path;
  switch (type.kind) {
    case EValueType::Kind::kNumber:
      EXPECT_EQ(value.wire, type.number) << path;
      return;
    case EValueType::Kind::kRecord:
      return ExpectRecord(value, type.record(), path, compared);
    case EValueType::Kind::kList:
      EXPECT_EQ(value.countWire, type.count) << path;
      if (type.count == ECountWire::kFixed) {
        EXPECT_EQ(value.items.size(), type.fixedCount) << path;
      }
      for (std::size_t i = 0; i < value.items.size(); ++i) {
        ++compared.listItems;
        ExpectType(value.items[i], *type.item, path + "[" + std::to_string(i) + "]", compared);
      }
      return;
    default:
      return;
  }
}

void ExpectRecord(const ERecordValue& value, const ERecordDescription& description,
                  const std::string& path, Compared& compared) {
  std::size_t at = 0;
  if (description.hasSignature) {
    ASSERT_FALSE(value.items.empty()) << path;
    const ERecordValue& signature = value.items[at++];
    EXPECT_EQ(signature.name, "Signature") << path;
    EXPECT_EQ(signature.wire, description.signatureWire) << path;
    EXPECT_EQ(static_cast<unsigned int>(signature.number), description.layouts.front().signature)
        << path;
  }
  ASSERT_EQ(value.items.size(), at + description.fields.size()) << path;
  for (const EFieldDescription& field : description.fields) {
    const ERecordValue& item = value.items[at++];
    EXPECT_EQ(item.name, field.name) << path;
    ExpectType(item, field.type, path + "." + field.name, compared);
  }
}

void AddListItems(ERecordValue& value, const EValueType& type);

// The record with one fresh item of its stated type in every counted or zero-ended list, nested
// lists included.
void AddListItems(ERecordValue& record, const ERecordDescription& description) {
  for (ERecordValue& item : record.items) {
    if (const EFieldDescription* field = description.FindField(item.name))
      AddListItems(item, field->type);
  }
}

void AddListItems(ERecordValue& value, const EValueType& type) {
  if (type.kind == EValueType::Kind::kRecord) return AddListItems(value, type.record());
  if (type.kind != EValueType::Kind::kList) return;
  if (type.count != ECountWire::kFixed && value.items.empty())
    value.items.push_back(ERecordValue::OfType(*type.item));
  for (ERecordValue& item : value.items)
    AddListItems(item, *type.item);
}

TEST(RecordDescription, EveryClassDescribesWhatItsFilledRecordHolds) {
  Compared compared;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    SCOPED_TRACE(recordClass.name);
    ASSERT_NE(recordClass.description, nullptr);
    const ERecordRead read = recordClass.Read(VectorsOf(recordClass).front().bytes);
    ASSERT_TRUE(read.Complete());
    ExpectRecord(ERecordValue::Of(*read.record), *recordClass.description, recordClass.name,
                 compared);
  }
  EXPECT_GT(compared.values, 500);
}

TEST(RecordDescription, AFreshItemOfEachListsStatedTypeReadsBackAsStated) {
  Compared compared;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    SCOPED_TRACE(recordClass.name);
    ERecordValue value = ERecordValue::Of(*recordClass.Create());
    AddListItems(value, *recordClass.description);
    const ERecordRead read = recordClass.Read(BytesOf(WithDistinctValues(value)));
    ASSERT_TRUE(read.Complete());
    ExpectRecord(ERecordValue::Of(*read.record), *recordClass.description, recordClass.name,
                 compared);
  }
  // Most lists keep the item given; a few records drop items they do not accept.
  EXPECT_GT(compared.listItems, 20);
}

TEST(RecordDescription, NestedRegisteredClassesAreFoundByTheirDescription) {
  const ERecordClass* message = ERecordRegistry::Find("eHal::EMessage");
  ASSERT_NE(message, nullptr);
  const EFieldDescription* client = message->description->FindField("ClientID");
  ASSERT_NE(client, nullptr);
  ASSERT_EQ(client->type.kind, EValueType::Kind::kRecord);
  const ERecordClass* nested = ERecordRegistry::ClassOf(client->type.record());
  ASSERT_NE(nested, nullptr);
  EXPECT_EQ(nested->name, "eHal::EClientID");
  const EFieldDescription* payload = message->description->FindField("Message");
  ASSERT_NE(payload, nullptr);
  EXPECT_EQ(payload->type.kind, EValueType::Kind::kBlob);
}

TEST(RecordDescription, LayoutsNameTheirFieldsAndTheRefusalReport) {
  const ERecordDescription& prbs = *ERecordRegistry::Find("eHal::EPRBS")->description;
  ASSERT_EQ(prbs.layouts.size(), 3u);
  EXPECT_EQ(prbs.layouts[1].signature, 0x11334357u);
  EXPECT_EQ(prbs.layouts[1].fields.front(), "ExtraId");
  EXPECT_EQ(prbs.layouts[2].fields.front(), "RequestType");
  EXPECT_STREQ(prbs.refusal.file, "x86_64/common/ehal/ePRBS");
  EXPECT_EQ(prbs.refusal.line, 160);
  EXPECT_STREQ(prbs.refusal.function, "eHal::EPRBS::SerializeIn");

  const ERecordDescription& lldp = *ERecordRegistry::Find("ELLDPStats")->description;
  const std::vector<std::string> first = {
      "LLDPSent",    "LLDPReceived", "LLDPRxAgeout",         "(dropped)",
      "LLDPRxError", "(dropped)",    "LLDPRxTlvUnrecognized"};
  EXPECT_EQ(lldp.layouts[1].fields, first);

  const ERecordDescription& vlan =
      *ERecordRegistry::Find("EVLANIPAddressTableItemProperties")->description;
  ASSERT_EQ(vlan.readOnlyFields.size(), 4u);
  EXPECT_EQ(vlan.readOnlyFields[0].name, "TagControls");
  EXPECT_EQ(vlan.readOnlyFields[0].type.kind, EValueType::Kind::kList);
  EXPECT_EQ(vlan.readOnlyFields[0].type.item->number, ENumberWire::kUnsigned16);
}

TEST(RecordDescription, TheBlobFormIsStatedLikeARecord) {
  const ERecordDescription& form = EBlob::Form();
  EXPECT_TRUE(form.hasSignature);
  ASSERT_EQ(form.layouts.size(), 2u);
  EXPECT_EQ(form.layouts[0].signature, 0x11223345u);
  EXPECT_EQ(form.layouts[0].fields, std::vector<std::string>{"Bytes"});
  EXPECT_EQ(form.layouts[1].fields, std::vector<std::string>{"HexText"});
  ASSERT_EQ(form.fields.size(), 1u);
  EXPECT_EQ(form.fields[0].type.kind, EValueType::Kind::kRawBytes);
  EXPECT_EQ(form.readOnlyFields[0].type.kind, EValueType::Kind::kHexLine);
}

TEST(RecordDescription, TheDecodeStepSaysHowFarTheReadsWent) {
  const ERecordClass& stats = *ERecordRegistry::Find("EARPStats");
  // The signature and three counters: the fourth runs past the end.
  const ERecordRead truncated = stats.Read("405934865 1 2 3 ");
  EXPECT_TRUE(truncated.ranPastEnd);
  EXPECT_FALSE(truncated.wrapped);
  EXPECT_FALSE(truncated.Complete());
  // A signature and one counter: the next reads start over from the first byte.
  const ERecordRead wrapped = stats.Read("405934865 2 ");
  EXPECT_TRUE(wrapped.wrapped);
  EXPECT_FALSE(wrapped.Complete());
  const ERecordRead whole = stats.Read("405934865 1 2 3 4 tail");
  EXPECT_TRUE(whole.Complete());
  EXPECT_EQ(whole.consumed, 18u);
  EXPECT_EQ(ERecordRegistry::FirstNumber("  42 x"), 42u);
  EXPECT_EQ(ERecordRegistry::FirstNumber("   "), std::nullopt);
}

}  // namespace

namespace {

template <typename Record>
Record Fresh() {
  if constexpr (std::is_constructible_v<Record>) {
    return Record();
  } else {
    return Record(false);
  }
}

// For every value a field's table names, and the first one beyond it: the record's own text
// (`text`) and its description give the same name, and the static description states the table.
template <typename Record, typename Code, typename Text>
void ExpectOneNameTable(const char* field, void (Record::*set)(Code), Text text) {
  SCOPED_TRACE(field);
  const EFieldDescription* const described = Record::Description().FindField(field);
  ASSERT_NE(described, nullptr);
  const std::vector<std::string>& names = described->valueNames;
  ASSERT_FALSE(names.empty());
  for (unsigned int value = 0; value <= names.size(); ++value) {
    Record record = Fresh<Record>();
    (record.*set)(static_cast<Code>(value));
    const bool named = value < names.size();
    EXPECT_EQ(text(record), named ? names[value] : std::string("Unknown")) << value;
    EXPECT_EQ(ERecordValue::Of(record).Find(field)->valueName, named ? names[value] : "") << value;
  }
}

}  // namespace

TEST(RecordDescription, NamedValuesAreTheTablesTheTextFormsPrint) {
  ExpectOneNameTable("RequestType", &eHal::EPRBS::SetRequestType,
                     [](const eHal::EPRBS& r) { return std::string(r.RequestTypeToString()); });
  ExpectOneNameTable("ReturnCode", &eHal::EPRBS::SetReturnCode,
                     [](const eHal::EPRBS& r) { return std::string(r.ReturnCodeToString()); });
  ExpectOneNameTable("RequestType", &eHal::EMacSec::SetRequestType,
                     [](const eHal::EMacSec& r) { return std::string(r.RequestTypeToString()); });
  ExpectOneNameTable("TableId", &eHal::EMacSec::SetTableId,
                     [](const eHal::EMacSec& r) { return std::string(r.TableIdToString()); });
  ExpectOneNameTable(
      "RequestType", &eHal::EEthernetOAMConfig::SetRequestType,
      [](const eHal::EEthernetOAMConfig& r) { return std::string(r.RequestTypeToString()); });
  ExpectOneNameTable(
      "ReturnCode", &eHal::EConditionalStatConfig::SetReturnCode,
      [](const eHal::EConditionalStatConfig& r) { return std::string(r.ReturnCodeToString()); });
}

TEST(RecordDescription, NamedValuesPrintBesideTheirNumbers) {
  const std::vector<std::string> expected = {"Initial",
                                             "kPRBSConfigure",
                                             "kPRBSUnConfigure",
                                             "kPRBSStartCapture",
                                             "kPRBSStopCapture",
                                             "kPRBSResetCapture",
                                             "kPRBSGetCountPacketsFromStart",
                                             "kPRBSGetAllPackets",
                                             "kPRBSGetPacketCount"};
  EXPECT_EQ(eHal::EPRBS::Description().FindField("RequestType")->valueNames, expected);
  EXPECT_TRUE(eHal::EPRBS::Description().FindField("BufferSize")->valueNames.empty());

  eHal::EMacSec record;
  record.SetTableId(eHal::EMacSec::kTableRx);
  const std::string text = ERecordValue::Of(record).ToText();
  EXPECT_NE(text.find("\nTableId = 2 (kTableRx)\n"), std::string::npos) << text;
  // A value beyond the table prints as the number alone.
  record.SetTableId(static_cast<eHal::EMacSec::eTableId>(-1));
  const std::string beyond = ERecordValue::Of(record).ToText();
  EXPECT_NE(beyond.find("\nTableId = -1\n"), std::string::npos) << beyond;
}

namespace {

// The least (`most` false) or the greatest number of a wire form, as a description holds it
// (sign-extended for the signed forms).
std::uint64_t EdgeOf(ENumberWire wire, bool most) {
  switch (wire) {
    case ENumberWire::kUnsigned8:
      return most ? 0xFF : 0;
    case ENumberWire::kUnsigned16:
      return most ? 0xFFFF : 0;
    case ENumberWire::kUnsigned64:
      return most ? ~std::uint64_t{0} : 0;
    case ENumberWire::kBool:
      return most ? 1 : 0;
    case ENumberWire::kSigned32:
    case ENumberWire::kSignedOutUnsignedIn:
      return static_cast<std::uint64_t>(std::int64_t{most ? INT32_MAX : INT32_MIN});
    default:
      return most ? 0xFFFFFFFF : 0;
  }
}

// The value with every number but the signatures set to the edge of its wire form, every text
// and blob to bytes that hold a NUL and a high byte.
void SetEdges(ERecordValue& value, bool most) {
  switch (value.kind) {
    case ERecordValue::Kind::kNumber:
      if (value.name != "Signature") value.number = EdgeOf(value.wire, most);
      return;
    case ERecordValue::Kind::kText:
    case ERecordValue::Kind::kBytes:
      value.bytes = most ? std::string("edge\0\xFF\n", 7) : std::string();
      return;
    default:
      for (ERecordValue& item : value.items)
        SetEdges(item, most);
  }
}

// True when the record reads `value` back and writes the same bytes again.
bool ReadsBackTheSame(const ERecordClass& recordClass, const ERecordValue& value) {
  const std::string written = BytesOf(value);
  const ERecordRead read = recordClass.Read(written);
  return read.Complete() && BytesOf(*read.record) == written;
}

}  // namespace

// A class whose description says it keeps every value is trusted to without reading back (the
// Python module's encode does so), so the claim is checked against the record's own reader at
// the edges of every wire form and with distinct values, list items included.
TEST(RecordDescription, AClassThatKeepsEveryValueReadsBackEdgeValuesUnchanged) {
  std::vector<std::string> keeping;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    if (!recordClass.description->KeepsEveryValue()) continue;
    SCOPED_TRACE(recordClass.name);
    keeping.push_back(recordClass.name);
    ERecordValue value = ERecordValue::Of(*recordClass.Create());
    AddListItems(value, *recordClass.description);
    for (const bool most : {false, true}) {
      ERecordValue edges = value;
      SetEdges(edges, most);
      EXPECT_TRUE(ReadsBackTheSame(recordClass, edges)) << (most ? "greatest" : "least");
    }
    EXPECT_TRUE(ReadsBackTheSame(recordClass, WithDistinctValues(value)));
  }
  EXPECT_GE(keeping.size(), 40u);
  for (const char* name : {"eHal::EMessage", "EDHCPStats", "eHal::EPRBS", "eHal::EClientID"})
    EXPECT_NE(std::find(keeping.begin(), keeping.end(), name), keeping.end()) << name;
}

// Records whose readers change what they read do not claim to keep every value: an address cut
// to its type's length, a map that orders its entries, a list a 0 item would end, and records
// that hold any of those.
TEST(RecordDescription, AClassWhoseReaderChangesValuesDoesNotClaimToKeepThem) {
  for (const char* name : {"EIPAddress", "EIPMaskedAddress", "EIPAddressTable", "EBlob"}) {
    const ERecordClass* recordClass = ERecordRegistry::Find(name);
    ASSERT_NE(recordClass, nullptr) << name;
    EXPECT_FALSE(recordClass->description->KeepsEveryValue()) << name;
  }
  // The address of an EIPAddress is cut to its type's length as it is read.
  const ERecordClass& address = *ERecordRegistry::Find("EIPAddress");
  ERecordValue value = ERecordValue::Of(*address.Create());
  SetEdges(value, true);
  EXPECT_FALSE(ReadsBackTheSame(address, value));
}
