#include "eValueList.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "allocation_watch.h"
#include "archive_text.h"
#include "child_process.h"
#include "damaged_streams.h"
#include "eArchive.h"
#include "reader_fuzz.h"
#include "vqml.h"

namespace {

std::string XmlOf(const eValueList& message) {
  return TextOf(message.GetXmlContent());
}

eValueList ParsedFrom(const std::string& xml) {
  eValueList message;
  message.SetXmlContent(BlobOf(xml));
  message.Parse();
  return message;
}

// The binary message's bytes, header and payload.
std::string BinaryOf(const eValueList& message) {
  vqvaluelist_msg* const binary = message.class2struct();
  EXPECT_NE(binary, nullptr);
  const std::string bytes(reinterpret_cast<const char*>(binary),
                          sizeof(vqvaluelist_msg) + message.GetPayloadLength());
  std::free(binary);
  return bytes;
}

// A binary message from its bytes, allocated as class2struct allocates it.
vqvaluelist_msg* BinaryFrom(const std::string& bytes) {
  void* const memory = std::malloc(bytes.size());
  std::memcpy(memory, bytes.data(), bytes.size());
  return static_cast<vqvaluelist_msg*>(memory);
}

overlay_base_address LabelConfig(unsigned long cookie, unsigned short streamNum,
                                 unsigned short udfNum, unsigned char field4,
                                 unsigned int itemCount, unsigned int field6) {
  overlay_base_address config;
  config.cookie = cookie;
  config.stream_num = streamNum;
  config.udf_num = udfNum;
  config.field4 = field4;
  config.item_count = itemCount;
  config.field6 = field6;
  return config;
}

background_base_address BackgroundConfig(unsigned long field1, unsigned int field2,
                                         unsigned short field3, unsigned short field4,
                                         unsigned int field5) {
  background_base_address config;
  config.field1 = field1;
  config.field2 = field2;
  config.field3 = field3;
  config.field4 = field4;
  config.field5 = field5;
  return config;
}

eValueListLabelUpdateEntry LabelUpdate(unsigned short streamNum, unsigned short udfNum,
                                       unsigned int offset,
                                       const std::vector<unsigned int>& values) {
  eValueListLabelUpdateEntry update;
  update.SetStreamNum(streamNum);
  update.SetUdfNum(udfNum);
  update.SetOffset(offset);
  update.SetValueCount(static_cast<unsigned int>(values.size()));
  for (unsigned int i = 0; i < values.size(); ++i)
    update.SetValue(i, values[i]);
  return update;
}

std::vector<unsigned int> ValuesOf(const eValueListLabelUpdateEntry& update) {
  std::vector<unsigned int> values;
  for (unsigned int i = 0; i < update.GetValueCount(); ++i)
    values.push_back(update.GetValue(i));
  return values;
}

// The worked example: two label configs in a 42-byte payload.
eValueList TwoLabelConfigs() {
  eValueList message;
  message.SetDstId(0xAB);
  message.SetSrcId(2);
  message.SetRequestType(eValueList::kConfigurationToStateMachine);
  message.SetPayloadLength(42);
  message.AddLabelConfigCookie(LabelConfig(0x1122334455667788ul, 1, 2, 3, 4, 5));
  message.AddLabelConfigCookie(LabelConfig(9, 0x10, 0x20, 0x30, 0x40, 0x50));
  return message;
}

const std::string kTwoLabelConfigsXml =
    "<valuelist><port-id>7</port-id><dst-id>ab</dst-id><src-id>2</src-id>"
    "<request-type>configuration-to-state-machine</request-type>"
    "<user-defined>0000000000000000</user-defined><payload-length>2a</payload-length>"
    "<payload-data><lc>0000000000000009 0010 0020 30 00000040 00000050 </lc>"
    "<lc>1122334455667788 0001 0002 03 00000004 00000005 </lc></payload-data></valuelist>";

// A document in the order Encode writes, with the given request type, payload length and
// payload-data contents (none at all when `payloadData` is null).
std::string Document(const std::string& requestType, const std::string& payloadLength,
                     const char* payloadData) {
  std::string xml =
      "<valuelist><port-id>1</port-id><dst-id>3</dst-id><src-id>4</src-id>"
      "<request-type>" +
      requestType + "</request-type><user-defined>0</user-defined>" + "<payload-length>" +
      payloadLength + "</payload-length>";
  if (payloadData != nullptr)
    xml += std::string("<payload-data>") + payloadData + "</payload-data>";
  return xml + "</valuelist>";
}

// ---------------------------------------------------------------------------------------------
// The object form.

TEST(eValueList, ConstructionZeroesEverything) {
  const eValueList message;
  EXPECT_EQ(message.GetDstId(), 0u);
  EXPECT_EQ(message.GetSrcId(), 0u);
  EXPECT_EQ(message.GetRequestType(), 0u);
  EXPECT_EQ(message.GetPayloadLength(), 0u);
  EXPECT_EQ(message.GetUserDefined(), 0u);
  EXPECT_EQ(message.GetClientMessageId(), 0u);
  EXPECT_EQ(message.GetReturnCode(), 0u);
  EXPECT_EQ(message.GetXmlContent().GetSize(), 0u);
  EXPECT_TRUE(message.GetLabelConfigs().empty());
  EXPECT_TRUE(message.GetLabelUpdates().empty());
  EXPECT_TRUE(message.GetLabelDisablers().empty());
  EXPECT_TRUE(message.GetBackgroundConfigs().empty());
  EXPECT_EQ(message.GetPayloadBuffer(), nullptr);
}

TEST(eValueList, SettersStoreAtTheFieldsWidth) {
  eValueList message;
  message.SetDstId(0x1FE);
  message.SetSrcId(0x301);
  message.SetRequestType(0x10003);
  message.SetPayloadLength(0xFFFFFFFF);
  message.SetUserDefined(0xFFFFFFFFFFFFFFFFul);
  message.SetClientMessageId(0xFFFFFFFE);
  message.SetReturnCode(4);
  EXPECT_EQ(message.GetDstId(), 0xFEu);
  EXPECT_EQ(message.GetSrcId(), 0x01u);
  EXPECT_EQ(message.GetRequestType(), 3u);
  EXPECT_EQ(message.GetPayloadLength(), 0xFFFFFFFFu);
  EXPECT_EQ(message.GetUserDefined(), 0xFFFFFFFFFFFFFFFFul);
  EXPECT_EQ(message.GetClientMessageId(), 0xFFFFFFFEu);
  EXPECT_EQ(message.GetReturnCode(), 4u);
  message.SwapDstSrcId();
  EXPECT_EQ(message.GetDstId(), 0x01u);
  EXPECT_EQ(message.GetSrcId(), 0xFEu);
  EXPECT_EQ(message.GetPayloadBuffer(), nullptr);
}

TEST(eValueList, ReturnCodeTexts) {
  eValueList message;
  const char* const texts[] = {"kSuccess",          "kFail",        "kNotOwner",
                               "kNotValueListMode", "kInvalidArgs", "Unknown"};
  for (unsigned int code = 0; code < 6; ++code) {
    message.SetReturnCode(code);
    EXPECT_STREQ(message.ReturnCodeToString(), texts[code]);
  }
  message.SetReturnCode(0xFFFFFFFF);
  EXPECT_STREQ(message.ReturnCodeToString(), "Unknown");
}

TEST(eValueList, RequestTypeNameTable) {
  const char* const* names = eValueList::value_list_msg_type_ascii();
  EXPECT_STREQ(names[0], "invalid-command");
  EXPECT_STREQ(names[3], "configuration-to-state-machine");
  EXPECT_STREQ(names[11], "label-update");
  EXPECT_STREQ(names[12], "hal-label-update");
  EXPECT_STREQ(names[13], "label-enable-disable");
  EXPECT_STREQ(names[16], "ack-configuration-to-state-machine");
  EXPECT_STREQ(names[21], "background-configuration-to-state-machine");
  EXPECT_STREQ(names[23], "ack-background-configuration-to-state-machine");
}

TEST(eValueList, ToStringEndsAfterTheReturnCodeWithoutXml) {
  eValueList message;
  message.SetClientMessageId(17);
  message.SetReturnCode(2);
  EXPECT_EQ(message.ToString(), "Client Message Id: 17, Return Code: 2");
  message.SetXmlContent(BlobOf("<a/>"));
  EXPECT_EQ(message.ToString(), "Client Message Id: 17, Return Code: 2, XmlContent: 3C 61 2F 3E ");
}

TEST(eValueList, LabelConfigQueries) {
  const eValueList message = TwoLabelConfigs();
  EXPECT_EQ(message.GetLabelConfigCookie(0), 0x55667788u);  // the low 32 bits
  EXPECT_EQ(message.GetLabelConfigStreamNum(0), 1u);
  EXPECT_EQ(message.GetLabelConfigUdfNum(0), 2u);
  EXPECT_EQ(message.GetLabelConfigItemCount(0), 4u);
  EXPECT_EQ(message.GetLabelConfigCookie(1), 9u);
  EXPECT_EQ(message.GetLabelConfigStreamNum(1), 0x10u);
  for (unsigned int index : {2u, 0xFFFFFFFFu}) {
    EXPECT_EQ(message.GetLabelConfigCookie(index), 0u);
    EXPECT_EQ(message.GetLabelConfigStreamNum(index), 0u);
    EXPECT_EQ(message.GetLabelConfigUdfNum(index), 0u);
    EXPECT_EQ(message.GetLabelConfigItemCount(index), 0u);
  }
}

TEST(eValueList, CountSettersResizeWithZeroEntries) {
  eValueList message = TwoLabelConfigs();
  message.SetLabelConfigCount(3);
  ASSERT_EQ(message.GetLabelConfigs().size(), 3u);
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(0x1122334455667788ul, 1, 2, 3, 4, 5));
  EXPECT_EQ(message.GetLabelConfigs()[2], overlay_base_address());
  message.SetLabelConfigCount(1);
  EXPECT_EQ(message.GetLabelConfigs().size(), 1u);
  message.SetLabelUpdateCount(2);
  ASSERT_EQ(message.GetLabelUpdates().size(), 2u);
  EXPECT_EQ(message.GetLabelUpdates()[1].GetValueCount(), 0u);
  EXPECT_TRUE(message.GetLabelUpdates()[1].IsEqual(eValueListLabelUpdateEntry()));
  message.SetLabelDisablerCount(4);
  ASSERT_EQ(message.GetLabelDisablers().size(), 4u);
  EXPECT_EQ(message.GetLabelDisablers()[3], valuelist_label_enable_disable_entry());
  message.SetBackgroundConfigCount(1);
  ASSERT_EQ(message.GetBackgroundConfigs().size(), 1u);
  EXPECT_EQ(message.GetBackgroundConfigs()[0], background_base_address());
  message.AddBackgroundConfigCookie(BackgroundConfig(1, 2, 3, 4, 5));
  EXPECT_EQ(message.GetBackgroundConfigs()[1], BackgroundConfig(1, 2, 3, 4, 5));
}

TEST(eValueListLabelUpdateEntry, ValuesAndComparison) {
  eValueListLabelUpdateEntry update;
  EXPECT_EQ(update.GetValueCount(), 0u);
  EXPECT_EQ(update.GetValue(0), 0u);
  update.SetValue(0, 5);  // ignored: no values yet
  EXPECT_EQ(update.GetValueCount(), 0u);
  update.SetValueCount(2);
  update.SetValue(1, 7);
  update.SetValue(2, 9);  // ignored
  EXPECT_EQ(ValuesOf(update), (std::vector<unsigned int>{0, 7}));
  update.SetValueCount(3);
  EXPECT_EQ(ValuesOf(update), (std::vector<unsigned int>{0, 7, 0}));

  const eValueListLabelUpdateEntry base = LabelUpdate(1, 2, 3, {4, 5});
  EXPECT_TRUE(base.IsEqual(LabelUpdate(1, 2, 3, {4, 5})));
  EXPECT_FALSE(base.IsEqual(LabelUpdate(9, 2, 3, {4, 5})));
  EXPECT_FALSE(base.IsEqual(LabelUpdate(1, 9, 3, {4, 5})));
  EXPECT_FALSE(base.IsEqual(LabelUpdate(1, 2, 9, {4, 5})));
  EXPECT_FALSE(base.IsEqual(LabelUpdate(1, 2, 3, {4, 9})));
  EXPECT_FALSE(base.IsEqual(LabelUpdate(1, 2, 3, {4, 5, 0})));
}

TEST(eValueListEntries, CompareFieldByField) {
  const overlay_base_address config = LabelConfig(1, 2, 3, 4, 5, 6);
  EXPECT_TRUE(config == LabelConfig(1, 2, 3, 4, 5, 6));
  EXPECT_FALSE(config == LabelConfig(0, 2, 3, 4, 5, 6));
  EXPECT_FALSE(config == LabelConfig(1, 2, 3, 4, 5, 0));
  valuelist_label_enable_disable_entry disabler{1, 2, 3, 4};
  EXPECT_TRUE(disabler == (valuelist_label_enable_disable_entry{1, 2, 3, 4}));
  EXPECT_FALSE(disabler == (valuelist_label_enable_disable_entry{1, 2, 3, 0}));
  EXPECT_TRUE(BackgroundConfig(1, 2, 3, 4, 5) == BackgroundConfig(1, 2, 3, 4, 5));
  EXPECT_FALSE(BackgroundConfig(1, 2, 3, 4, 5) == BackgroundConfig(1, 2, 0, 4, 5));
}

TEST(eValueList, IsEqualSeesEveryField) {
  eValueList base = TwoLabelConfigs();
  base.AddLabelUpdate(LabelUpdate(1, 2, 3, {4}));
  base.AddLabelDisabler({1, 2, 3, 4});
  base.AddBackgroundConfigCookie(BackgroundConfig(1, 2, 3, 4, 5));
  base.SetXmlContent(BlobOf("<x/>"));
  const std::vector<std::function<void(eValueList&)>> changes = {
      [](eValueList& m) { m.SetDstId(1); },
      [](eValueList& m) { m.SetSrcId(1); },
      [](eValueList& m) { m.SetRequestType(4); },
      [](eValueList& m) { m.SetPayloadLength(43); },
      [](eValueList& m) { m.SetUserDefined(1); },
      [](eValueList& m) { m.SetClientMessageId(1); },
      [](eValueList& m) { m.SetReturnCode(1); },
      [](eValueList& m) { m.SetXmlContent(BlobOf("<y/>")); },
      [](eValueList& m) { m.SetLabelConfigCount(3); },
      [](eValueList& m) { m.SetLabelConfigCount(1); },
      [](eValueList& m) { m.AddLabelUpdate(eValueListLabelUpdateEntry()); },
      [](eValueList& m) { m.AddLabelDisabler({}); },
      [](eValueList& m) { m.AddBackgroundConfigCookie({}); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    eValueList changed(base);
    EXPECT_TRUE(changed.IsEqual(base));
    changes[i](changed);
    EXPECT_FALSE(changed.IsEqual(base)) << i;
    EXPECT_FALSE(base.IsEqual(changed)) << i;
  }
  eValueList reordered;
  reordered.Copy(base);
  reordered.SetLabelConfigCount(0);
  reordered.AddLabelConfigCookie(base.GetLabelConfigs()[1]);
  reordered.AddLabelConfigCookie(base.GetLabelConfigs()[0]);
  EXPECT_FALSE(reordered.IsEqual(base));
}

TEST(eValueList, CopySwapAndEmptyKeepEachPrinterWithItsMessage) {
  const eValueList filled = TwoLabelConfigs();
  eValueList copy(filled);
  EXPECT_TRUE(copy.IsEqual(filled));
  eValueList assigned;
  assigned = filled;
  EXPECT_TRUE(assigned.IsEqual(filled));
  assigned.Copy(assigned);
  EXPECT_TRUE(assigned.IsEqual(filled));

  eValueList other;
  other.SetClientMessageId(5);
  other.Swap(copy);
  EXPECT_TRUE(other.IsEqual(filled));
  EXPECT_EQ(copy.GetClientMessageId(), 5u);
  // Each message still prints into its own XML content.
  other.Encode(7);
  EXPECT_EQ(XmlOf(other), kTwoLabelConfigsXml);
  EXPECT_EQ(copy.GetXmlContent().GetSize(), 0u);
  assigned.Encode(7);
  EXPECT_EQ(XmlOf(assigned), kTwoLabelConfigsXml);
  EXPECT_EQ(filled.GetXmlContent().GetSize(), 0u);

  other.Empty();
  EXPECT_TRUE(other.IsEqual(eValueList()));
  other.Encode(0);
  EXPECT_NE(other.GetXmlContent().GetSize(), 0u);
}

// ---------------------------------------------------------------------------------------------
// The binary form.

TEST(eValueListBinary, HeaderAndLabelConfigsByteByByte) {
  eValueList message = TwoLabelConfigs();
  message.SetUserDefined(0x1122334455667788ul);
  const std::string expected = std::string("\xAB\x02\x03\x00", 4) +
                               "\x88\x77\x66\x55\x44\x33\x22\x11" + std::string("\x2A\0\0\0", 4) +
                               "\x88\x77\x66\x55\x44\x33\x22\x11" +
                               std::string("\x01\x00\x02\x00\x03\x04\0\0\0\x05\0\0\0", 13) +
                               std::string("\x09\0\0\0\0\0\0\0", 8) +
                               std::string("\x10\x00\x20\x00\x30\x40\0\0\0\x50\0\0\0", 13);
  EXPECT_EQ(BinaryOf(message), expected);
  EXPECT_EQ(BinaryOf(message).size(), 16u + 42u);
}

TEST(eValueListBinary, LabelUpdatesDisablersAndBackgroundConfigsByteByByte) {
  eValueList updates;
  updates.SetRequestType(eValueList::kLabelUpdate);
  updates.SetPayloadLength(32);
  updates.AddLabelUpdate(LabelUpdate(0x0102, 0x0304, 0x05060708, {0xA1A2A3A4, 0xB1B2B3B4}));
  updates.AddLabelUpdate(LabelUpdate(1, 2, 3, {}));
  EXPECT_EQ(BinaryOf(updates).substr(16), std::string("\x02\x01\x04\x03\x08\x07\x06\x05\x02\0\0\0"
                                                      "\xA4\xA3\xA2\xA1\xB4\xB3\xB2\xB1"
                                                      "\x01\0\x02\0\x03\0\0\0\0\0\0\0",
                                                      32));
  updates.SetRequestType(eValueList::kHalLabelUpdate);
  EXPECT_EQ(BinaryOf(updates).substr(2, 2), std::string("\x0C\x00", 2));
  EXPECT_EQ(BinaryOf(updates).substr(16, 4), "\x02\x01\x04\x03");

  eValueList disablers;
  disablers.SetPayloadLength(24);
  disablers.AddLabelDisabler({0x0102, 0x0304, 0x05060708, 0x090A0B0C});
  disablers.AddLabelDisabler({1, 2, 3, 4});
  for (unsigned int type : {13u, 14u}) {
    disablers.SetRequestType(type);
    EXPECT_EQ(BinaryOf(disablers).substr(16),
              std::string("\x02\x01\x04\x03\x08\x07\x06\x05\x0C\x0B\x0A\x09"
                          "\x01\0\x02\0\x03\0\0\0\x04\0\0\0",
                          24));
  }

  eValueList backgrounds;
  backgrounds.SetRequestType(eValueList::kBackgroundConfigurationToStateMachine);
  backgrounds.SetPayloadLength(20);
  backgrounds.AddBackgroundConfigCookie(
      BackgroundConfig(0x0102030405060708ul, 0x090A0B0C, 0x0D0E, 0x0F10, 0x11121314));
  EXPECT_EQ(BinaryOf(backgrounds).substr(16),
            "\x08\x07\x06\x05\x04\x03\x02\x01\x0C\x0B\x0A\x09\x0E\x0D\x10\x0F\x14\x13\x12\x11");
}

TEST(eValueListBinary, OnlyTheRequestTypesListIsWritten) {
  eValueList message = TwoLabelConfigs();
  message.AddBackgroundConfigCookie(BackgroundConfig(1, 2, 3, 4, 5));
  message.AddLabelDisabler({1, 2, 3, 4});
  message.SetRequestType(eValueList::kArbRequest);
  EXPECT_EQ(BinaryOf(message).substr(16), std::string(42, '\0'));
  message.SetRequestType(eValueList::kBackgroundConfigurationToStateMachine);
  EXPECT_EQ(BinaryOf(message).substr(16, 20),
            std::string("\x01\0\0\0\0\0\0\0\x02\0\0\0\x03\0\x04\0\x05\0\0\0", 20));
  EXPECT_EQ(BinaryOf(message).substr(36), std::string(22, '\0'));
}

TEST(eValueListBinary, NothingIsWrittenBeyondThePayloadLength) {
  eValueList message = TwoLabelConfigs();
  message.SetPayloadLength(10);  // shorter than the entries
  EXPECT_EQ(BinaryOf(message).substr(16),
            std::string("\x88\x77\x66\x55\x44\x33\x22\x11\x01\x00", 10));
  message.SetPayloadLength(0);
  EXPECT_EQ(BinaryOf(message).size(), 16u);
}

TEST(eValueListBinary, StructToClassTakesTheHeaderAndAppendsEntries) {
  const eValueList source = TwoLabelConfigs();
  vqvaluelist_msg* binary = source.class2struct();
  ASSERT_NE(binary, nullptr);
  binary->user_defined = 0x0102030405060708ul;
  eValueList message;
  message.AddLabelConfigCookie(LabelConfig(7, 7, 7, 7, 7, 7));
  EXPECT_TRUE(message.struct2class(binary));
  std::free(binary);
  EXPECT_EQ(message.GetDstId(), 0xABu);
  EXPECT_EQ(message.GetSrcId(), 2u);
  EXPECT_EQ(message.GetRequestType(), 3u);
  EXPECT_EQ(message.GetPayloadLength(), 42u);
  EXPECT_EQ(message.GetUserDefined(), 0x0102030405060708ul);
  ASSERT_EQ(message.GetLabelConfigs().size(), 3u);  // the existing entry is kept
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(7, 7, 7, 7, 7, 7));
  EXPECT_EQ(message.GetLabelConfigs()[1], source.GetLabelConfigs()[0]);
  EXPECT_EQ(message.GetLabelConfigs()[2], source.GetLabelConfigs()[1]);
}

TEST(eValueListBinary, StructToClassReadsWholeEntriesOnly) {
  eValueList source;
  source.SetRequestType(eValueList::kHalLabelEnableDisable);
  source.SetPayloadLength(35);  // two whole entries and 11 bytes
  source.AddLabelDisabler({1, 2, 3, 4});
  source.AddLabelDisabler({5, 6, 7, 8});
  source.AddLabelDisabler({9, 10, 11, 12});
  vqvaluelist_msg* binary = source.class2struct();
  eValueList message;
  message.struct2class(binary);
  ASSERT_EQ(message.GetLabelDisablers().size(), 2u);
  EXPECT_EQ(message.GetLabelDisablers()[1], (valuelist_label_enable_disable_entry{5, 6, 7, 8}));

  binary->request_type = eValueList::kBackgroundConfigurationToStateMachine;
  eValueList backgrounds;
  backgrounds.struct2class(binary);
  EXPECT_EQ(backgrounds.GetBackgroundConfigs().size(), 1u);
  binary->request_type = eValueList::kCookieRequest;
  eValueList none;
  none.struct2class(binary);
  EXPECT_TRUE(none.GetLabelDisablers().empty());
  EXPECT_TRUE(none.GetBackgroundConfigs().empty());
  EXPECT_EQ(none.GetRequestType(), eValueList::kCookieRequest);
  std::free(binary);
}

TEST(eValueListBinary, LabelUpdatesTakeEveryFourthValueOnly) {
  eValueList source;
  source.SetRequestType(eValueList::kHalLabelUpdate);
  source.SetPayloadLength(12 + 4 * 9 + 12 + 4 * 1);
  source.AddLabelUpdate(LabelUpdate(1, 2, 3, {11, 12, 13, 14, 15, 16, 17, 18, 19}));
  source.AddLabelUpdate(LabelUpdate(4, 5, 6, {21}));
  vqvaluelist_msg* binary = source.class2struct();
  eValueList message;
  message.struct2class(binary);
  std::free(binary);
  ASSERT_EQ(message.GetLabelUpdates().size(), 2u);
  const eValueListLabelUpdateEntry& first = message.GetLabelUpdates()[0];
  EXPECT_EQ(first.GetStreamNum(), 1u);
  EXPECT_EQ(first.GetUdfNum(), 2u);
  EXPECT_EQ(first.GetOffset(), 3u);
  EXPECT_EQ(ValuesOf(first), (std::vector<unsigned int>{11, 0, 0, 0, 15, 0, 0, 0, 19}));
  EXPECT_TRUE(message.GetLabelUpdates()[1].IsEqual(LabelUpdate(4, 5, 6, {21})));
}

TEST(eValueListBinary, ALabelUpdateCountIsCutToWhatRemains) {
  // One entry claiming 10 values with 2 present: the count becomes 2, and the walk over the
  // values stops below remaining / 4 = 2, so only the first is taken.
  const std::string cut = std::string("\0\0\x0C\0\0\0\0\0\0\0\0\0\x14\0\0\0", 16) +
                          std::string("\x01\0\x02\0\x03\0\0\0\x0A\0\0\0\x61\0\0\0\x62\0\0\0", 20);
  vqvaluelist_msg* binary = BinaryFrom(cut);
  eValueList message;
  message.struct2class(binary);
  std::free(binary);
  ASSERT_EQ(message.GetLabelUpdates().size(), 1u);
  EXPECT_TRUE(message.GetLabelUpdates()[0].IsEqual(LabelUpdate(1, 2, 3, {0x61, 0})));

  // Claiming 100 values with 64 bytes left: 16 values of which 0 and 4 and ... are walked four
  // times, 16 bytes of the 64 counted; the next entries start past the payload, where nothing
  // is read (all zero), until the remaining length runs out.
  std::string far = std::string("\0\0\x0C\0\0\0\0\0\0\0\0\0\x4C\0\0\0", 16) +
                    std::string("\x01\0\x02\0\x03\0\0\0\x64\0\0\0", 12);
  for (unsigned int i = 0; i < 16; ++i)
    far += std::string(1, static_cast<char>(0x30 + i)) + std::string(3, '\0');
  binary = BinaryFrom(far);
  eValueList walked;
  walked.struct2class(binary);
  std::free(binary);
  ASSERT_EQ(walked.GetLabelUpdates().size(), 5u);
  std::vector<unsigned int> expected(16, 0);
  expected[0] = 0x30;
  expected[4] = 0x34;
  expected[8] = 0x38;
  expected[12] = 0x3C;
  EXPECT_EQ(ValuesOf(walked.GetLabelUpdates()[0]), expected);
  for (unsigned int i = 1; i < 5; ++i)
    EXPECT_TRUE(walked.GetLabelUpdates()[i].IsEqual(eValueListLabelUpdateEntry())) << i;
}

// ---------------------------------------------------------------------------------------------
// Encode.

TEST(eValueListEncode, TwoLabelConfigsComeOutLastFirst) {
  eValueList message = TwoLabelConfigs();
  message.Encode(7);
  EXPECT_EQ(XmlOf(message), kTwoLabelConfigsXml);
  // Parse takes them in the XML's order.
  const eValueList parsed = ParsedFrom(kTwoLabelConfigsXml);
  ASSERT_EQ(parsed.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(parsed.GetLabelConfigs()[0], message.GetLabelConfigs()[1]);
  EXPECT_EQ(parsed.GetLabelConfigs()[1], message.GetLabelConfigs()[0]);
}

TEST(eValueListEncode, EveryStartedLabelConfigSizeIsAnEntry) {
  eValueList message;
  message.SetRequestType(eValueList::kConfigurationToStateMachine);
  message.SetPayloadLength(1);
  message.AddLabelConfigCookie(LabelConfig(0xFF, 1, 2, 3, 4, 5));
  message.Encode(0);
  EXPECT_NE(XmlOf(message).find("<payload-data><lc>00000000000000ff 0000 0000 00 00000000 "
                                "00000000 </lc></payload-data>"),
            std::string::npos);
  message.SetPayloadLength(0);
  message.Encode(0);
  EXPECT_NE(XmlOf(message).find("<payload-length>0</payload-length><payload-data/></valuelist>"),
            std::string::npos);
}

TEST(eValueListEncode, LabelUpdatesAndBackgroundConfigs) {
  eValueList updates;
  updates.SetRequestType(eValueList::kHalLabelUpdate);
  updates.SetPayloadLength(20 + 12);
  updates.AddLabelUpdate(LabelUpdate(1, 0x22, 0x333, {0xAA, 0xBB}));
  updates.AddLabelUpdate(LabelUpdate(4, 5, 6, {}));
  updates.Encode(-3);
  EXPECT_EQ(XmlOf(updates),
            "<valuelist><port-id>-3</port-id><dst-id>0</dst-id><src-id>0</src-id>"
            "<request-type>hal-label-update</request-type>"
            "<user-defined>0000000000000000</user-defined><payload-length>20</payload-length>"
            "<payload-data><hlu>0004 0005 00000006 00000000 </hlu>"
            "<hlu>0001 0022 00000333 00000002 000000aa 000000bb </hlu></payload-data></valuelist>");

  eValueList backgrounds;
  backgrounds.SetRequestType(eValueList::kBackgroundConfigurationToStateMachine);
  backgrounds.SetPayloadLength(40);
  backgrounds.SetDstId(0x10);
  backgrounds.SetSrcId(0xFF);
  backgrounds.AddBackgroundConfigCookie(
      BackgroundConfig(0x0102030405060708ul, 9, 0xA, 0xB, 0xFFFFFFFF));
  backgrounds.AddBackgroundConfigCookie(BackgroundConfig(1, 2, 3, 4, 5));
  backgrounds.Encode(65535);
  EXPECT_EQ(XmlOf(backgrounds),
            "<valuelist><port-id>65535</port-id><dst-id>10</dst-id><src-id>ff</src-id>"
            "<request-type>background-configuration-to-state-machine</request-type>"
            "<user-defined>0000000000000000</user-defined><payload-length>28</payload-length>"
            "<payload-data><bc>0000000000000001 00000002 0003 0004 00000005</bc>"
            "<bc>0102030405060708 00000009 000a 000b ffffffff</bc></payload-data></valuelist>");
}

TEST(eValueListEncode, TypesElevenThirteenAndFourteenHaveNoPayloadData) {
  eValueList message;
  message.SetPayloadLength(12);
  message.AddLabelDisabler({1, 2, 3, 4});
  message.AddLabelUpdate(LabelUpdate(1, 2, 3, {}));
  for (unsigned int type : {11u, 13u, 14u}) {
    message.SetRequestType(type);
    message.Encode(2);
    EXPECT_EQ(XmlOf(message), std::string("<valuelist><port-id>2</port-id><dst-id>0</dst-id>"
                                          "<src-id>0</src-id><request-type>") +
                                  eValueList::value_list_msg_type_ascii()[type] +
                                  "</request-type><user-defined>0000000000000000</user-defined>"
                                  "<payload-length>c</payload-length></valuelist>");
  }
}

TEST(eValueListEncode, UserDefinedIsWrittenLeastSignificantByteFirst) {
  eValueList message;
  message.SetUserDefined(0x1122334455667788ul);
  message.Encode(0);
  EXPECT_NE(XmlOf(message).find("<user-defined>8877665544332211</user-defined>"),
            std::string::npos);
}

TEST(eValueListEncode, AnOutOfRangeRequestTypeIsWrittenAsUnknown) {
  eValueList message;
  message.SetRequestType(24);
  message.Encode(0);
  EXPECT_NE(XmlOf(message).find("<request-type>Unknown</request-type>"), std::string::npos);
}

TEST(eValueListEncode, SetXmlReplacesTheContentAndGetXmlReadsItBack) {
  eValueList message;
  message.SetXmlContent(BlobOf("old"));
  vqml_content* const element = vqml_new_element(
      vqml_intern("valuelist"), nullptr,
      vqml_new_element(vqml_intern("dst-id"), nullptr, vqml_new_text_pool("1f", 0), nullptr),
      nullptr);
  EXPECT_TRUE(message.SetXML(element));
  vqml_free_element(element);
  EXPECT_EQ(XmlOf(message), "<valuelist><dst-id>1f</dst-id></valuelist>");
  vqml_content* const root = message.GetXML();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(vqml_elem_name(root), vqml_intern("valuelist"));
  EXPECT_STREQ(vqml_text(vqml_elem_contents(vqml_elem_contents(root))), "1f");
  vqml_free_element(root);
}

TEST(eValueListEncode, SetXmlRefusesWhatGetXmlCouldNotReadBack) {
  // A text with a control character or with bytes that are not UTF-8, a name that is not an XML
  // name, nesting beyond what the parser reads, and a text in place of an element.
  const char* const valuelist = vqml_intern("valuelist");
  std::vector<vqml_content*> refused = {
      vqml_new_element(valuelist, nullptr, vqml_new_text_pool("\x01", 0), nullptr),
      vqml_new_element(valuelist, nullptr, vqml_new_text_pool("\xff\xfe", 0), nullptr),
      vqml_new_element(vqml_intern("a b<c"), nullptr, nullptr, nullptr),
      vqml_new_text_pool("text", 0), nullptr};
  vqml_content* deep = nullptr;
  for (int i = 0; i < 1000000; ++i)
    deep = vqml_new_element(valuelist, nullptr, deep, nullptr);
  refused.push_back(deep);
  for (vqml_content* const element : refused) {
    eValueList message;
    message.SetXmlContent(BlobOf("<old/>"));
    EXPECT_FALSE(message.SetXML(element));
    EXPECT_EQ(message.GetXmlContent().GetSize(), 0u);
    EXPECT_EQ(message.GetXML(), nullptr);
    vqml_free_element(element);
  }
}

TEST(eValueListEncode, ThePrinterCallbackAppendsToTheContextsContent) {
  eValueList message;
  EXPECT_EQ(eValueList::xmlprinter("<a>", 3, &message), 3u);
  EXPECT_EQ(eValueList::xmlprinter("</a>xyz", 4, &message), 4u);
  EXPECT_EQ(XmlOf(message), "<a></a>");
}

// ---------------------------------------------------------------------------------------------
// Encode of a payload length that the entries do not fill: the allocation follows the entries.

struct WatchedEncode {
  bool encoded;
  std::size_t peakBytes;  // the most bytes that operator new had handed out at once
};

// Encodes `message`; a budget below what Encode needs makes its memory run out.
WatchedEncode EncodeWatched(eValueList& message,
                            std::size_t budget = std::numeric_limits<std::size_t>::max()) {
  AllocationWatch watch(budget);
  const bool encoded = message.Encode(1);
  watch.Stop();
  return {encoded, watch.PeakBytes()};
}

std::size_t Occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++count;
  return count;
}

TEST(eValueListEncode, AParsedHugePayloadLengthIsRefusedBeforeAnythingIsAllocated) {
  // A document of about 250 bytes declares a payload of up to 4 GiB; Parse reads the entries
  // that its bounded allocation holds (a 1,200-byte payload: 59 label configs).
  for (const char* length : {"7fffffff", "10000000", "1000000", "ffffffff"}) {
    SCOPED_TRACE(length);
    const std::string xml =
        Document("configuration-to-state-machine", length, "<lc>1 2 3 4 5 6</lc>");
    eValueList message = ParsedFrom(xml);
    ASSERT_EQ(message.GetPayloadLength(), std::stoul(length, nullptr, 16));
    ASSERT_EQ(message.GetLabelConfigs().size(), xml.size() * 5 / 21);
    const WatchedEncode encode = EncodeWatched(message);
    EXPECT_FALSE(encode.encoded);
    EXPECT_EQ(encode.peakBytes, 0u);
    EXPECT_EQ(XmlOf(message), xml);  // nothing changed
  }
}

TEST(eValueListEncode, APayloadLengthReachesAtMostTheLimitBeyondTheEntries) {
  eValueList message = TwoLabelConfigs();  // 42 bytes of entries
  message.SetPayloadLength(42 + eValueList::kMaxPayloadBeyondEntries);
  const WatchedEncode limit = EncodeWatched(message);
  EXPECT_TRUE(limit.encoded);
  const std::string xml = XmlOf(message);
  // The two entries, then 4,096 zero bytes: 195 whole zero entries and one started.
  EXPECT_EQ(Occurrences(xml, "<lc>"), 198u);
  EXPECT_EQ(Occurrences(xml, "<lc>0000000000000000 0000 0000 00 00000000 00000000 </lc>"), 196u);
  EXPECT_NE(xml.find("<payload-length>102a</payload-length>"), std::string::npos);
  // The payload, the tree and the text: a bounded multiple of the 4,138 payload bytes.
  EXPECT_LT(limit.peakBytes, 40u * (42 + eValueList::kMaxPayloadBeyondEntries));

  for (const unsigned int length : {42u + eValueList::kMaxPayloadBeyondEntries + 1, 0xFFFFFFFFu}) {
    message.SetPayloadLength(length);
    const WatchedEncode beyond = EncodeWatched(message);
    EXPECT_FALSE(beyond.encoded);
    EXPECT_EQ(beyond.peakBytes, 0u);
    EXPECT_EQ(XmlOf(message), xml);
  }
}

TEST(eValueListEncode, ATypeWithoutPayloadDataWritesAnyPayloadLength) {
  eValueList message;
  message.SetRequestType(eValueList::kHalLabelEnableDisable);
  message.SetPayloadLength(0xFFFFFFFF);
  message.AddLabelDisabler({1, 2, 3, 4});
  const WatchedEncode encode = EncodeWatched(message);
  EXPECT_TRUE(encode.encoded);
  EXPECT_EQ(XmlOf(message),
            "<valuelist><port-id>1</port-id><dst-id>0</dst-id><src-id>0</src-id>"
            "<request-type>hal-label-enable-disable</request-type>"
            "<user-defined>0000000000000000</user-defined>"
            "<payload-length>ffffffff</payload-length></valuelist>");
  EXPECT_LT(encode.peakBytes, 4096u);
}

TEST(eValueListEncode, MemoryThatRunsOutIsARefusalNotAnException) {
  // Budgets from nothing upwards run out at each allocation in turn: every one is refused, with
  // the XML content empty and nothing leaked (the sanitizer build checks the leaks), until the
  // first budget that suffices.
  eValueList message = TwoLabelConfigs();
  std::size_t refused = 0;
  for (std::size_t budget = 0;; budget += 16) {
    ASSERT_LT(budget, 1u << 20);
    message.SetXmlContent(BlobOf("old"));
    if (EncodeWatched(message, budget).encoded) break;
    ++refused;
    EXPECT_EQ(message.GetXmlContent().GetSize(), 0u) << budget;
  }
  EXPECT_GT(refused, 10u);
  std::string expected = kTwoLabelConfigsXml;
  expected.replace(expected.find("<port-id>7"), 10, "<port-id>1");
  EXPECT_EQ(XmlOf(message), expected);
}

// ---------------------------------------------------------------------------------------------
// Parse.

TEST(eValueListParse, GetXmlTakesTheLastTopLevelElement) {
  eValueList message;
  EXPECT_EQ(message.GetXML(), nullptr);
  message.SetXmlContent(BlobOf("<first/>\n<second><x/></second>\n"));
  vqml_content* const root = message.GetXML();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(vqml_elem_name(root), vqml_intern("second"));
  vqml_free_element(root);
  message.SetXmlContent(BlobOf("  \n"));
  EXPECT_EQ(message.GetXML(), nullptr);
}

TEST(eValueListParse, HeaderFields) {
  const eValueList message = ParsedFrom(
      "<valuelist><port-id>99</port-id><dst-id>1ab</dst-id><src-id>7f</src-id>"
      "<request-type>arb-grant</request-type><user-defined>deadbeef</user-defined>"
      "<payload-length>0</payload-length></valuelist>");
  EXPECT_EQ(message.GetDstId(), 0xABu);  // the low 8 bits
  EXPECT_EQ(message.GetSrcId(), 0x7Fu);
  EXPECT_EQ(message.GetRequestType(), eValueList::kArbGrant);
  EXPECT_EQ(message.GetUserDefined(), 0xDEADBEEFul);
  EXPECT_EQ(message.GetPayloadLength(), 0u);
}

TEST(eValueListParse, UserDefinedSurvivesARoundTripOnlyWhenZero) {
  eValueList message;
  message.SetUserDefined(0x1122334455667788ul);
  message.Encode(0);
  EXPECT_EQ(ParsedFrom(XmlOf(message)).GetUserDefined(), 0x44332211ul);
  message.SetUserDefined(0x11);
  message.Encode(0);
  EXPECT_EQ(ParsedFrom(XmlOf(message)).GetUserDefined(), 0ul);  // "1100000000000000"
  message.SetUserDefined(0);
  message.Encode(0);
  EXPECT_EQ(ParsedFrom(XmlOf(message)).GetUserDefined(), 0ul);
}

TEST(eValueListParse, RequestTypeNamesMatchAsPrefixesInTheirFixedOrder) {
  const char* const* names = eValueList::value_list_msg_type_ascii();
  for (unsigned int type = 0; type < eValueList::kRequestTypeCount; ++type) {
    const bool unrecognised = type == 0 || type == 11 || type == 13;
    EXPECT_EQ(ParsedFrom(Document(names[type], "0", nullptr)).GetRequestType(),
              unrecognised ? 0u : type)
        << names[type];
  }
  EXPECT_EQ(ParsedFrom(Document("arb-request and more", "0", nullptr)).GetRequestType(), 8u);
  EXPECT_EQ(ParsedFrom(Document("arb-requests", "0", nullptr)).GetRequestType(), 8u);
  EXPECT_EQ(ParsedFrom(Document("arb", "0", nullptr)).GetRequestType(), 0u);
  EXPECT_EQ(ParsedFrom(Document("label-update", "0", nullptr)).GetRequestType(), 0u);
  EXPECT_EQ(ParsedFrom(Document("label-enable-disable", "0", nullptr)).GetRequestType(), 0u);
  EXPECT_EQ(ParsedFrom(Document(" arb-request", "0", nullptr)).GetRequestType(), 0u);
  // A later unrecognised name leaves the one already read.
  EXPECT_EQ(ParsedFrom("<valuelist><request-type>arb-release</request-type><request-type>label-"
                       "update</request-type><payload-length>0</payload-length></valuelist>")
                .GetRequestType(),
            9u);
}

TEST(eValueListParse, AWrongRootNameIsOnlyAWarning) {
  const ChildResult result = RunInChild([] {
    const eValueList message = ParsedFrom(
        "<list><request-type>arb-request</request-type><payload-length>5</payload-length>"
        "</list>");
    std::exit(message.GetRequestType() == 8 && message.GetPayloadLength() == 5 ? 0 : 3);
  });
  EXPECT_TRUE(result.exited);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "valuelist_xml2bin: BAD WRAPPER\n");
}

TEST(eValueListParse, NothingChangesWithoutAPayloadLength) {
  eValueList message = TwoLabelConfigs();
  const eValueList before(message);
  message.SetXmlContent(
      BlobOf("<valuelist><dst-id>1</dst-id><request-type>arb-grant</request-type>"
             "<payload-data><lc>1 2 3 4 5 6</lc></payload-data></valuelist>"));
  message.Parse();
  eValueList expected(before);
  expected.SetXmlContent(message.GetXmlContent());
  EXPECT_TRUE(message.IsEqual(expected));
}

TEST(eValueListParse, HeaderFieldsAfterThePayloadLengthDoNotReachTheMessage) {
  const eValueList message = ParsedFrom(
      "<valuelist><dst-id>1</dst-id><payload-length>0</payload-length><src-id>2</src-id>"
      "<request-type>arb-grant</request-type></valuelist>");
  EXPECT_EQ(message.GetDstId(), 1u);
  EXPECT_EQ(message.GetSrcId(), 0u);
  EXPECT_EQ(message.GetRequestType(), 0u);
}

TEST(eValueListParse, PayloadDataBeforePayloadLengthParsesNothing) {
  const eValueList message = ParsedFrom(
      "<valuelist><request-type>configuration-to-state-machine</request-type>"
      "<payload-data><lc>1 2 3 4 5 6</lc><lc>7 8 9 a b c</lc></payload-data>"
      "<payload-length>2a</payload-length></valuelist>");
  EXPECT_EQ(message.GetRequestType(), 3u);
  // The payload holds no entry of the XML: its 42 bytes are read as two empty label configs.
  ASSERT_EQ(message.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(message.GetLabelConfigs()[0], overlay_base_address());
  EXPECT_EQ(message.GetLabelConfigs()[1], overlay_base_address());
}

TEST(eValueListParse, LabelConfigTokens) {
  const std::string single =
      Document("configuration-to-state-machine", "15", "<lc>123456789abcdef0 1 2 3 4 5</lc>");
  const std::string doubled = Document("configuration-to-state-machine", "15",
                                       "<lc>  123456789abcdef0  1 2   3 4  5  </lc>");
  const eValueList message = ParsedFrom(single);
  ASSERT_EQ(message.GetLabelConfigs().size(), 1u);
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(0x123456789ABCDEF0ul, 1, 2, 3, 4, 5));
  EXPECT_TRUE(ParsedFrom(doubled).GetLabelConfigs() == message.GetLabelConfigs());
  // Fields are cut to their width; extra tokens are ignored; missing ones stay 0; an
  // unreadable token is 0.
  const eValueList cut = ParsedFrom(Document("configuration-to-state-machine", "2a",
                                             "<lc>1ffffffffffffffffff 12345 fffff 1ff 123456789 7 "
                                             "8 9</lc><lc>zz 1</lc>"));
  ASSERT_EQ(cut.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(cut.GetLabelConfigs()[0],
            LabelConfig(0xFFFFFFFFFFFFFFFFul, 0x2345, 0xFFFF, 0xFF, 0x23456789, 7));
  EXPECT_EQ(cut.GetLabelConfigs()[1], LabelConfig(0, 1, 0, 0, 0, 0));
}

TEST(eValueListParse, EntriesOfOtherNamesAndTypesAreSkipped) {
  const eValueList message =
      ParsedFrom(Document("configuration-to-state-machine", "2a",
                          "<bc>1 2 3 4 5</bc>text<lc>1 2 3 4 5 6</lc><hlu>1 2</hlu><lc/>"));
  ASSERT_EQ(message.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(1, 2, 3, 4, 5, 6));
  EXPECT_EQ(message.GetLabelConfigs()[1], overlay_base_address());
  const eValueList other =
      ParsedFrom(Document("hal-label-enable-disable", "c", "<lc>1 2 3 4 5 6</lc>"));
  ASSERT_EQ(other.GetLabelDisablers().size(), 1u);
  EXPECT_EQ(other.GetLabelDisablers()[0], valuelist_label_enable_disable_entry());
}

TEST(eValueListParse, BackgroundConfigTokens) {
  const eValueList message = ParsedFrom(
      Document("background-configuration-to-state-machine", "28",
               "<bc>0102030405060708 00000009 000a 000b ffffffff</bc><bc>1 2 3 4 5 6 7</bc>"));
  ASSERT_EQ(message.GetBackgroundConfigs().size(), 2u);
  EXPECT_EQ(message.GetBackgroundConfigs()[0],
            BackgroundConfig(0x0102030405060708ul, 9, 0xA, 0xB, 0xFFFFFFFF));
  EXPECT_EQ(message.GetBackgroundConfigs()[1], BackgroundConfig(1, 2, 3, 4, 5));
}

TEST(eValueListParse, LabelUpdateEntriesLieFourBytesFurtherApart) {
  // Each "hlu" takes 4 bytes per token: 20 bytes for five tokens, where the binary layout has
  // 16. The second entry is therefore read 4 bytes early: its head comes from the gap and the
  // first entry's numbers, and its count (6) is cut to what remains.
  const eValueList message =
      ParsedFrom(Document("hal-label-update", "28",
                          "<hlu>0001 0002 00000003 00000001 000000aa </hlu>"
                          "<hlu>0004 0005 00000006 00000001 000000bb </hlu>"));
  ASSERT_EQ(message.GetLabelUpdates().size(), 2u);
  EXPECT_TRUE(message.GetLabelUpdates()[0].IsEqual(LabelUpdate(1, 2, 3, {0xAA})));
  EXPECT_TRUE(message.GetLabelUpdates()[1].IsEqual(LabelUpdate(0, 0, 0x00050004, {1, 0, 0})));
}

TEST(eValueListParse, HandWrittenXml) {
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- a value list written by hand -->\n"
      "<valuelist>\n"
      "  <port-id>3</port-id>\n"
      "  <dst-id> a </dst-id>\n"
      "  <src-id>0x1b</src-id>\n"
      "  <!-- the request -->\n"
      "  <request-type>configuration-to-state-machine\n  </request-type>\n"
      "  <user-defined>&#x31;2</user-defined>\n"
      "  <payload-length>\n    2a\n  </payload-length>\n"
      "  <payload-data>\n"
      "    <lc><![CDATA[0000000000000001 0002]]> 0003 <!-- split --> 04 00000005 00000006</lc>\n"
      "    <lc>&#x37; 8 9 a b c</lc>\n"
      "  </payload-data>\n"
      "</valuelist>\n";
  const eValueList message = ParsedFrom(xml);
  EXPECT_EQ(message.GetDstId(), 0xAu);
  EXPECT_EQ(message.GetSrcId(), 0x1Bu);
  EXPECT_EQ(message.GetRequestType(), 3u);
  EXPECT_EQ(message.GetUserDefined(), 0x12u);
  EXPECT_EQ(message.GetPayloadLength(), 42u);
  ASSERT_EQ(message.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(1, 2, 3, 4, 5, 6));
  EXPECT_EQ(message.GetLabelConfigs()[1], LabelConfig(7, 8, 9, 0xA, 0xB, 0xC));
}

TEST(eValueListParse, MalformedAndTruncatedXmlChangesNothing) {
  eValueList source = TwoLabelConfigs();
  source.Encode(7);
  const std::string xml = XmlOf(source);
  for (std::size_t length = 0; length < xml.size(); ++length) {
    eValueList message = ParsedFrom(xml.substr(0, length));
    message.SetXmlContent(EBlob());
    EXPECT_TRUE(message.IsEqual(eValueList())) << length;
  }
  for (const char* bad : {"<valuelist><payload-length>2a</payload-length></valuelis>",
                          "<valuelist><payload-length>2a</payload-length>",
                          "<valuelist><payload-length>2a</payload-length></valuelist",
                          "<valuelist><payload-length a=>2a</payload-length></valuelist>",
                          "<valuelist>&bad;<payload-length>2a</payload-length></valuelist>",
                          "<valuelist>\x01<payload-length>2a</payload-length></valuelist>",
                          "\xFF\xFF\xFF\xFF", "<", "<>"}) {
    eValueList message = ParsedFrom(bad);
    EXPECT_EQ(message.GetPayloadLength(), 0u) << bad;
  }
}

TEST(eValueListParse, EntityDeclarationsAreRefused) {
  std::string laughs = "<!DOCTYPE valuelist [<!ENTITY a \"aaaaaaaaaa\">";
  for (char level = 'b'; level <= 'j'; ++level) {
    laughs += std::string("<!ENTITY ") + level + " \"";
    for (int i = 0; i < 10; ++i)
      laughs += std::string("&") + static_cast<char>(level - 1) + ";";
    laughs += "\">";
  }
  laughs +=
      "]><valuelist><payload-length>1</payload-length><request-type>&j;</request-type>"
      "</valuelist>";
  EXPECT_EQ(ParsedFrom(laughs).GetPayloadLength(), 0u);
}

// ---------------------------------------------------------------------------------------------
// Parse of hostile XML: the payload is written only within its allocation, and the allocation
// follows the XML's size.

TEST(eValueListParse, MoreEntriesThanThePayloadLengthHolds) {
  std::string entries;
  for (int i = 1; i <= 10; ++i)
    entries += "<lc>" + std::to_string(i) + " 1 2 3 4 5</lc>";
  const eValueList message =
      ParsedFrom(Document("configuration-to-state-machine", "15", entries.c_str()));
  ASSERT_EQ(message.GetLabelConfigs().size(), 1u);
  EXPECT_EQ(message.GetLabelConfigs()[0], LabelConfig(1, 1, 2, 3, 4, 5));
  const eValueList partial =
      ParsedFrom(Document("configuration-to-state-machine", "18", entries.c_str()));
  ASSERT_EQ(partial.GetLabelConfigs().size(), 1u);  // 24 bytes: one whole entry
}

TEST(eValueListParse, ALabelUpdateWithThousandsOfValues) {
  std::string values = "<hlu>1 2 3 1388";  // claims 5000 values
  for (int i = 0; i < 5000; ++i)
    values += " " + std::to_string(i % 9 + 1);
  values += "</hlu>";
  const eValueList message = ParsedFrom(Document("hal-label-update", "14", values.c_str()));
  EXPECT_EQ(message.GetPayloadLength(), 20u);
  ASSERT_EQ(message.GetLabelUpdates().size(), 1u);
  EXPECT_TRUE(message.GetLabelUpdates()[0].IsEqual(LabelUpdate(1, 2, 3, {1, 0})));
  const eValueList roomy = ParsedFrom(Document("hal-label-update", "4e20", values.c_str()));
  // The cut entry counts 4 bytes per walked index (1250 x 4 of the 19988 bytes left), so the
  // rest of the remaining length is read as empty entries from past the payload's end.
  ASSERT_EQ(roomy.GetLabelUpdates().size(), 1250u);
  EXPECT_TRUE(roomy.GetLabelUpdates()[1249].IsEqual(eValueListLabelUpdateEntry()));
  const eValueListLabelUpdateEntry& update = roomy.GetLabelUpdates()[0];
  EXPECT_EQ(update.GetValueCount(), 4997u);  // cut to the 19988 bytes left
  EXPECT_EQ(update.GetValue(0), 1u);
  EXPECT_EQ(update.GetValue(1), 0u);
  EXPECT_EQ(update.GetValue(4), 5u);
  EXPECT_EQ(update.GetValue(4995), 0u);
  EXPECT_EQ(update.GetValue(4996), 4996u % 9 + 1);
}

TEST(eValueListParse, AHugePayloadLengthIsAllocatedOnlyAsFarAsTheXmlCouldFill) {
  const std::string xml = Document("hal-label-enable-disable", "ffffffff", nullptr);
  const eValueList message = ParsedFrom(xml);
  EXPECT_EQ(message.GetPayloadLength(), 0xFFFFFFFFu);
  EXPECT_EQ(message.GetRequestType(), 14u);
  // Five payload bytes per character of XML are allocated, read as 12-byte empty entries.
  EXPECT_EQ(message.GetLabelDisablers().size(), xml.size() * 5 / 12);

  const eValueList labels =
      ParsedFrom(Document("configuration-to-state-machine", "ffffffff", "<lc>1 2 3 4 5 6</lc>"));
  ASSERT_FALSE(labels.GetLabelConfigs().empty());
  EXPECT_EQ(labels.GetLabelConfigs()[0], LabelConfig(1, 2, 3, 4, 5, 6));
  const eValueList updates =
      ParsedFrom(Document("hal-label-update", "ffffffff", "<hlu>1 2 3 ffffffff 5 6</hlu>"));
  ASSERT_FALSE(updates.GetLabelUpdates().empty());
  EXPECT_LT(updates.GetLabelUpdates()[0].GetValueCount(), 1000u);
}

TEST(eValueListParse, NestingTooDeepParsesNothing) {
  std::string xml = "<valuelist><payload-length>1</payload-length>";
  for (int i = 0; i < 300; ++i)
    xml += "<n>";
  for (int i = 0; i < 300; ++i)
    xml += "</n>";
  EXPECT_EQ(ParsedFrom(xml + "</valuelist>").GetPayloadLength(), 0u);
}

TEST(eValueList, Str2HexReadsAsPercentX) {
  EXPECT_EQ(eValueList::str2hex("1f"), 0x1Fu);
  EXPECT_EQ(eValueList::str2hex("1F"), 0x1Fu);
  EXPECT_EQ(eValueList::str2hex("0x1F"), 0x1Fu);
  EXPECT_EQ(eValueList::str2hex("  \n\tff tail"), 0xFFu);
  EXPECT_EQ(eValueList::str2hex("123456789"), 0x23456789u);  // cut to 32 bits
  EXPECT_EQ(eValueList::str2hex("fffffffffffffffffff"), 0xFFFFFFFFu);
  EXPECT_EQ(eValueList::str2hex("+a"), 0xAu);
  EXPECT_EQ(eValueList::str2hex("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(eValueList::str2hex("-2"), 0xFFFFFFFEu);
  EXPECT_EQ(eValueList::str2hex("0x"), 0u);
  EXPECT_EQ(eValueList::str2hex("zz"), 0u);
  EXPECT_EQ(eValueList::str2hex(""), 0u);
  EXPECT_EQ(eValueList::str2hex(nullptr), 0u);
}

// ---------------------------------------------------------------------------------------------
// The archive form.

TEST(eValueListArchive, BytesAndRoundTrip) {
  eValueList message;
  message.SetClientMessageId(9);
  message.SetReturnCode(4);
  message.SetXmlContent(BlobOf("<a/>"));
  message.SetDstId(1);  // not archived
  EXPECT_EQ(BytesOf(message), "288572246 9 4 287454021 4 <a/>");
  EXPECT_EQ(BytesOf(eValueList()), "288572246 0 0 287454021 0 ");
  eValueList read = TwoLabelConfigs();
  ReadFrom(BytesOf(message), read);
  EXPECT_EQ(read.GetClientMessageId(), 9u);
  EXPECT_EQ(read.GetReturnCode(), 4u);
  EXPECT_EQ(XmlOf(read), "<a/>");
  EXPECT_EQ(read.GetDstId(), 0xABu);  // header fields are not archived
  EXPECT_EQ(read.GetLabelConfigs().size(), 2u);
}

TEST(eValueListArchive, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        eValueList message;
        ReadFrom("288572247 9 4 287454021 0 ", message);
      },
      "x86_64/common/ehal/eValueList", 326, "eValueList::SerializeIn");
}

TEST(eValueListArchive, TheClientMessageIdIsReadBeforeTheSignatureIsChecked) {
  ScopedThrowingSerializeErrors throwing;
  eValueList message;
  message.SetReturnCode(3);
  EXPECT_THROW(ReadFrom("12345 77 1 287454021 0 ", message), SerializeErrorThrown);
  EXPECT_EQ(message.GetClientMessageId(), 77u);
  EXPECT_EQ(message.GetReturnCode(), 3u);
}

// Object -> XML -> archive -> XML -> object.
eValueList ThroughTheArchive(const eValueList& sent) {
  eValueList sender(sent);
  sender.Encode(5);
  eValueList received;
  ReadFrom(BytesOf(sender), received);
  EXPECT_EQ(received.GetXmlContent(), sender.GetXmlContent());
  received.Parse();
  return received;
}

TEST(eValueListArchive, RoundTripOfLabelConfigs) {
  eValueList sent = TwoLabelConfigs();
  sent.SetClientMessageId(31);
  sent.SetReturnCode(1);
  const eValueList received = ThroughTheArchive(sent);
  EXPECT_EQ(received.GetClientMessageId(), 31u);
  EXPECT_EQ(received.GetReturnCode(), 1u);
  EXPECT_EQ(received.GetDstId(), 0xABu);
  EXPECT_EQ(received.GetSrcId(), 2u);
  EXPECT_EQ(received.GetRequestType(), 3u);
  EXPECT_EQ(received.GetPayloadLength(), 42u);
  ASSERT_EQ(received.GetLabelConfigs().size(), 2u);
  EXPECT_EQ(received.GetLabelConfigs()[0], sent.GetLabelConfigs()[1]);  // reversed by the XML
  EXPECT_EQ(received.GetLabelConfigs()[1], sent.GetLabelConfigs()[0]);
  // A second pass restores the order, and the XML is then the same.
  const eValueList again = ThroughTheArchive(received);
  EXPECT_TRUE(again.GetLabelConfigs() == sent.GetLabelConfigs());
}

TEST(eValueListArchive, RoundTripOfALabelUpdate) {
  eValueList sent;
  sent.SetRequestType(eValueList::kHalLabelUpdate);
  sent.SetPayloadLength(12 + 4 * 8);
  sent.AddLabelUpdate(LabelUpdate(7, 8, 9, {1, 2, 3, 4, 5, 6, 7, 8}));
  const eValueList received = ThroughTheArchive(sent);
  EXPECT_EQ(received.GetRequestType(), 12u);
  ASSERT_EQ(received.GetLabelUpdates().size(), 1u);
  EXPECT_TRUE(
      received.GetLabelUpdates()[0].IsEqual(LabelUpdate(7, 8, 9, {1, 0, 0, 0, 5, 0, 0, 0})));
}

TEST(eValueListArchive, RoundTripOfBackgroundConfigs) {
  eValueList sent;
  sent.SetRequestType(eValueList::kBackgroundConfigurationToStateMachine);
  sent.SetPayloadLength(60);
  sent.SetDstId(3);
  sent.SetSrcId(4);
  for (unsigned int i = 1; i <= 3; ++i)
    sent.AddBackgroundConfigCookie(BackgroundConfig(0xF000000000000000ul + i, i, i, i, i));
  const eValueList received = ThroughTheArchive(sent);
  ASSERT_EQ(received.GetBackgroundConfigs().size(), 3u);
  for (unsigned int i = 0; i < 3; ++i)
    EXPECT_EQ(received.GetBackgroundConfigs()[i], sent.GetBackgroundConfigs()[2 - i]);
  EXPECT_EQ(received.GetDstId(), 3u);
  EXPECT_EQ(received.GetSrcId(), 4u);
  EXPECT_EQ(received.GetPayloadLength(), 60u);
  const eValueList twice = ThroughTheArchive(received);
  EXPECT_TRUE(twice.GetBackgroundConfigs() == sent.GetBackgroundConfigs());
}

// ---------------------------------------------------------------------------------------------
// Damaged and random input: every read completes or ends in the serialisation error, and Parse
// of whatever was read stays within its memory (checked under the sanitizers).

std::string SampleBytes() {
  eValueList sample = TwoLabelConfigs();
  sample.AddLabelUpdate(LabelUpdate(1, 2, 3, {4, 5}));
  sample.SetClientMessageId(12);
  sample.Encode(1);
  return BytesOf(sample);
}

TEST(eValueListArchive, DamagedStreamsAreReadSafely) {
  const std::string bytes = SampleBytes();
  EXPECT_GT(ReadEveryPrefix<eValueList>(bytes), 0);
  EXPECT_GT(ReadEveryOneByteDamage<eValueList>(bytes), 0);
}

TEST(eValueListParse, RandomAndMutatedInputThroughSerializeInAndParse) {
  ScopedThrowingSerializeErrors throwing;
  InputGenerator generator(20240611, {0x11334356, 287454021});
  const std::string sample = SampleBytes();
  eValueList xmlSource = TwoLabelConfigs();
  xmlSource.Encode(3);
  const std::string xml = XmlOf(xmlSource);
  unsigned int completed = 0;
  unsigned int parsedEntries = 0;
  for (unsigned int round = 0; round < 900; ++round) {
    std::string input;
    switch (round % 3) {
      case 0:
        input = generator.Tokens(0x11334356);
        break;
      case 1:
        input = generator.Mutate(sample);
        break;
      default:
        input = generator.Mutate(xml);
        break;
    }
    eValueList message;
    try {
      if (round % 3 == 2) {
        message.SetXmlContent(BlobOf(input));
      } else {
        ReadFrom(input, message);
      }
      message.Parse();
      ++completed;
      parsedEntries += static_cast<unsigned int>(message.GetLabelConfigs().size());
    } catch (const SerializeErrorThrown&) {
    }
  }
  EXPECT_GT(completed, 300u);
  EXPECT_GT(parsedEntries, 0u);
}

}  // namespace
