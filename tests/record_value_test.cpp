// The value tree of a record's description: it prints a record field by field and writes itself
// back into exactly the bytes the record writes, so that a record can be built from named values.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "archive_text.h"
#include "ehal.h"

namespace {

using namespace eHal;

EMessage SampleMessage() {
  EMessage message;
  message.SetMessagePortId(7);
  message.SetDestination(static_cast<EMessage::eMessageDestination>(0x101));
  EClientID client;
  client.SetMajorID("g\"u\\i\n\x01");
  client.SetMinorID(-2);
  message.SetClientID(client);
  const unsigned char payload[] = {0xAB, 0x01};
  message.SetMessage(static_cast<EMessage::eMessageType>(9), EBlob(payload, 2));
  return message;
}

TEST(RecordValue, PrintsOneFieldPerLineWithNestedRecordsIndented) {
  EXPECT_EQ(ERecordValue::Of(SampleMessage()).ToText(),
            "Signature = 3 (0x3)\n"
            "MessagePortCount = 1\n"
            "MessagePortId = 7\n"
            "Destination = 1\n"
            "ClientID = {\n"
            "  Signature = 1167589410 (0x45980022)\n"
            "  MajorID = \"g\\\"u\\\\i\\n\\x01\"\n"
            "  MinorID = -2\n"
            "}\n"
            "MessageType = 9\n"
            "Message = <AB01>\n");
}

TEST(RecordValue, PrintsListsAndTheirItems) {
  EStringList list;
  list.Add("a");
  list.Add("bc");
  EXPECT_EQ(ERecordValue::Of(list).ToText(),
            "Signature = 286785536 (0x11180000)\n"
            "Items = [\n"
            "  \"a\"\n"
            "  \"bc\"\n"
            "]\n");
  EXPECT_EQ(ERecordValue::Of(EStringList()).ToText(),
            "Signature = 286785536 (0x11180000)\nItems = []\n");

  EUniqueIDGenerator generator;
  generator.ReserveID(3);
  EXPECT_EQ(ERecordValue::Of(generator).ToText(),
            "Signature = 17829889 (0x1101001)\n"
            "LastId = 3\n"
            "FreeRanges = zero-ended [\n"
            "  {\n"
            "    First = 1\n"
            "    Last = 2\n"
            "  }\n"
            "  {\n"
            "    First = 4\n"
            "    Last = 4294967295\n"
            "  }\n"
            "]\n");
}

TEST(RecordValue, KeepsNamesWireFormsAndValues) {
  const ERecordValue message = ERecordValue::Of(SampleMessage());
  EXPECT_EQ(message.kind, ERecordValue::Kind::kRecord);
  const ERecordValue* client = message.Find("ClientID");
  ASSERT_NE(client, nullptr);
  const ERecordValue* minor = client->Find("MinorID");
  ASSERT_NE(minor, nullptr);
  EXPECT_TRUE(minor->IsSigned());
  EXPECT_EQ(minor->Signed(), -2);
  const ERecordValue* destination = message.Find("Destination");
  ASSERT_NE(destination, nullptr);
  EXPECT_EQ(destination->wire, ENumberWire::kUnsigned8);
  EXPECT_FALSE(destination->IsSigned());
  const ERecordValue* payload = message.Find("Message");
  ASSERT_NE(payload, nullptr);
  EXPECT_EQ(payload->kind, ERecordValue::Kind::kBytes);
  EXPECT_EQ(payload->HexBytes(), "AB01");
  EXPECT_EQ(message.Find("Nothing"), nullptr);
}

TEST(RecordValue, WritesBackTheBytesOfEveryRegisteredRecord) {
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    const std::unique_ptr<EAnyRecord> record = recordClass.Create();
    EXPECT_EQ(BytesOf(ERecordValue::Of(*record)), BytesOf(*record)) << recordClass.name;
  }
  EXPECT_EQ(BytesOf(ERecordValue::Of(SampleMessage())), BytesOf(SampleMessage()));
  EUniqueIDGenerator generator;
  generator.ReserveID(3);
  EXPECT_EQ(BytesOf(ERecordValue::Of(generator)), "17829889 3 1 2 4 4294967295 0 ");
}

TEST(RecordValue, BuildsARecordFromNamedValues) {
  const ERecordClass* prbs = ERecordRegistry::Find("eHal::EPRBS");
  ASSERT_NE(prbs, nullptr);
  ERecordValue value = ERecordValue::Of(*prbs->Create());
  value.Find("RequestType")->number = EPRBS::kPRBSStartCapture;
  value.Find("BufferSize")->number = 4096;
  const std::unique_ptr<EAnyRecord> built = prbs->Create();
  ReadFrom(BytesOf(value), *built);

  EPRBS expected(true);
  expected.SetRequestType(EPRBS::kPRBSStartCapture);
  expected.SetBufferSize(4096);
  EXPECT_EQ(BytesOf(*built), BytesOf(expected));
}

TEST(RecordValue, DescribesABlobAsItsBytes) {
  const unsigned char bytes[] = {1, 2, 0xFF};
  const ERecordValue blob = ERecordValue::Of(*ERecordRegistry::Find("EBlob")->Create());
  EXPECT_EQ(blob.ToText(), "Bytes = <>\n");
  ERecordValue filled = blob;
  filled.items[0].bytes.assign(reinterpret_cast<const char*>(bytes), 3);
  EXPECT_EQ(filled.ToText(), "Bytes = <0102FF>\n");
  EXPECT_EQ(BytesOf(filled), BytesOf(EBlob(bytes, 3)));
}

}  // namespace
