#include "eConditionalStatConfig.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

using eHal::EConditionalStatConfig;

EConditionalStatConfig FilledRecord() {
  EConditionalStatConfig config;
  config.SetPortId(7);
  config.SetLatencyType("cut");
  config.SetNumberOfBins(-4);
  config.SetBase64Xml("PHg+");
  config.SetLatencyMode("fifo");
  config.SetRequestType(EConditionalStatConfig::kConfigure);
  config.SetReturnCode(EConditionalStatConfig::kSuccess);
  config.SetFromPGID(10);
  config.SetToPGID(20);
  config.SetFromStreamID(30);
  config.SetToStreamID(40);
  config.SetPGIDConfigEnable(true);
  config.SetStreamConfigEnable(false);
  config.SetScanInterval(500);
  config.SetScanTimeStamp(123);
  config.SetPGIDActiveMap("ff");
  config.SetStreamIDActiveMap("0f");
  config.SetClientMessageId(77);
  return config;
}

// Everything after the fields that the older layouts lack.
const std::string kCommonTail = "1 0 10 20 30 40 1 0 500 123 2 ff2 0f77 ";
const std::string kFilledBytes = "26829206 7 3 cut-4 4 PHg+4 fifo" + kCommonTail;

// A record whose every field differs from FilledRecord().
EConditionalStatConfig Prefilled() {
  EConditionalStatConfig config;
  config.SetPortId(1);
  config.SetLatencyType("old type");
  config.SetNumberOfBins(9);
  config.SetBase64Xml("old xml");
  config.SetLatencyMode("old mode");
  config.SetRequestType(EConditionalStatConfig::kUnConfigure);
  config.SetClientMessageId(5);
  return config;
}

TEST(EConditionalStatConfig, Defaults) {
  const EConditionalStatConfig config;
  EXPECT_EQ(config.GetFromPGID(), 0xFFFFFFFFu);
  EXPECT_EQ(config.GetToPGID(), 0xFFFFFFFFu);
  EXPECT_EQ(config.GetFromStreamID(), 0xFFFFFFFFu);
  EXPECT_EQ(config.GetToStreamID(), 0xFFFFFFFFu);
  EXPECT_EQ(config.GetRequestType(), EConditionalStatConfig::kInvalid);
  EXPECT_EQ(config.GetReturnCode(), EConditionalStatConfig::kFail);
  EXPECT_FALSE(config.GetPGIDConfigEnable());
  EXPECT_FALSE(config.GetStreamConfigEnable());
  EXPECT_EQ(config.GetScanInterval(), 1000u);
  EXPECT_EQ(config.GetScanTimeStamp(), 0u);
  EXPECT_EQ(config.GetPGIDActiveMap(), "");
  EXPECT_EQ(config.GetStreamIDActiveMap(), "");
  EXPECT_EQ(config.GetClientMessageId(), 0u);
  EXPECT_EQ(config.GetLatencyMode(), "");
  EXPECT_EQ(config.GetBase64Xml(), "");
  EXPECT_EQ(config.GetLatencyType(), "");
  EXPECT_EQ(config.GetNumberOfBins(), 0);
  EXPECT_EQ(config.GetPortId(), 99999u);
  EXPECT_EQ(EConditionalStatConfig::DUMMYPORTID, 99999u);
  EXPECT_EQ(BytesOf(config),
            "26829206 99999 0 0 0 0 0 1 4294967295 4294967295 4294967295 4294967295 0 0 1000 0 0 "
            "0 0 ");
}

TEST(EConditionalStatConfig, ArchiveBytesAndRoundTrip) {
  EXPECT_EQ(BytesOf(FilledRecord()), kFilledBytes);
  EConditionalStatConfig read = Prefilled();
  ReadFrom(kFilledBytes, read);
  EXPECT_TRUE(read == FilledRecord());
  EXPECT_EQ(read.GetPortId(), 7u);
  EXPECT_EQ(read.GetNumberOfBins(), -4);
  EXPECT_EQ(read.GetStreamIDActiveMap(), "0f");
}

TEST(EConditionalStatConfig, OlderLayoutsKeepTheMissingFields) {
  const EConditionalStatConfig before = Prefilled();
  struct Layout {
    std::string bytes;
    bool portId, latencyTypeAndBins, xml, latencyMode;  // read from the layout
  };
  const std::vector<Layout> layouts = {
      {"26829205 3 cut-4 4 PHg+4 fifo" + kCommonTail, false, true, true, true},
      {"26829204 4 PHg+4 fifo" + kCommonTail, false, false, true, true},
      {"26829203 4 fifo" + kCommonTail, false, false, false, true},
      {"26829202 " + kCommonTail, false, false, false, false},
  };
  const EConditionalStatConfig filled = FilledRecord();
  for (const Layout& layout : layouts) {
    EConditionalStatConfig read = before;
    ReadFrom(layout.bytes, read);
    const auto& expected = [](bool fromLayout, const EConditionalStatConfig& a,
                              const EConditionalStatConfig& b) -> const EConditionalStatConfig& {
      return fromLayout ? a : b;
    };
    EXPECT_EQ(read.GetPortId(), expected(layout.portId, filled, before).GetPortId());
    EXPECT_EQ(read.GetLatencyType(),
              expected(layout.latencyTypeAndBins, filled, before).GetLatencyType());
    EXPECT_EQ(read.GetNumberOfBins(),
              expected(layout.latencyTypeAndBins, filled, before).GetNumberOfBins());
    EXPECT_EQ(read.GetBase64Xml(), expected(layout.xml, filled, before).GetBase64Xml());
    EXPECT_EQ(read.GetLatencyMode(), expected(layout.latencyMode, filled, before).GetLatencyMode());
    // The fields every layout carries.
    EConditionalStatConfig rest = filled;
    rest.SetPortId(read.GetPortId());
    rest.SetLatencyType(read.GetLatencyType());
    rest.SetNumberOfBins(read.GetNumberOfBins());
    rest.SetBase64Xml(read.GetBase64Xml());
    rest.SetLatencyMode(read.GetLatencyMode());
    EXPECT_TRUE(read == rest) << layout.bytes;
  }
  // The edge case in words: an 0x1996193 archive leaves the port id, latency type, number of
  // bins and XML as they were.
  EConditionalStatConfig read = before;
  ReadFrom("26829203 4 fifo" + kCommonTail, read);
  EXPECT_EQ(read.GetPortId(), 1u);
  EXPECT_EQ(read.GetLatencyType(), "old type");
  EXPECT_EQ(read.GetNumberOfBins(), 9);
  EXPECT_EQ(read.GetBase64Xml(), "old xml");
  EXPECT_EQ(read.GetLatencyMode(), "fifo");
}

TEST(EConditionalStatConfig, WrongSignatureEndsTheProcess) {
  for (const char* bytes : {"26829207 ", "26829201 ", "0 "}) {
    ExpectSerializeError(
        [bytes] {
          EConditionalStatConfig config;
          ReadFrom(bytes, config);
        },
        "x86_64/common/ehal/eConditionalStatConfig", 212,
        "eHal::EConditionalStatConfig::SerializeIn");
  }
}

TEST(EConditionalStatConfig, UnknownEnumerationValuesTravelAsTheirDigits) {
  EConditionalStatConfig config;
  config.SetRequestType(static_cast<EConditionalStatConfig::eRequestType>(3));
  config.SetReturnCode(static_cast<EConditionalStatConfig::eReturnCode>(2));
  const std::string bytes = BytesOf(config);
  EXPECT_NE(bytes.find(" 3 2 4294967295 "), std::string::npos) << bytes;
  EConditionalStatConfig read;
  ReadFrom(bytes, read);
  EXPECT_STREQ(read.RequestTypeToString(), "Unknown");
  EXPECT_STREQ(read.ReturnCodeToString(), "Unknown");
}

TEST(EConditionalStatConfig, EnumerationTexts) {
  const char* const requests[] = {"Invalid", "Configure", "UnConfigure", "Unknown"};
  const char* const returns[] = {"Success", "Fail", "Unknown", "Unknown"};
  EConditionalStatConfig config;
  for (unsigned int value = 0; value < 4; ++value) {
    config.SetRequestType(static_cast<EConditionalStatConfig::eRequestType>(value));
    config.SetReturnCode(static_cast<EConditionalStatConfig::eReturnCode>(value));
    EXPECT_STREQ(config.RequestTypeToString(), requests[value]);
    EXPECT_STREQ(config.ReturnCodeToString(), returns[value]);
  }
}

TEST(EConditionalStatConfig, EqualityComparesEveryFieldUnlessBothUnConfigure) {
  const EConditionalStatConfig filled = FilledRecord();
  EXPECT_TRUE(filled == FilledRecord());
  EXPECT_FALSE(filled != FilledRecord());
  const std::vector<std::function<void(EConditionalStatConfig&)>> changes = {
      [](EConditionalStatConfig& c) { c.SetFromPGID(11); },
      [](EConditionalStatConfig& c) { c.SetToPGID(21); },
      [](EConditionalStatConfig& c) { c.SetFromStreamID(31); },
      [](EConditionalStatConfig& c) { c.SetToStreamID(41); },
      [](EConditionalStatConfig& c) { c.SetRequestType(EConditionalStatConfig::kInvalid); },
      [](EConditionalStatConfig& c) { c.SetReturnCode(EConditionalStatConfig::kFail); },
      [](EConditionalStatConfig& c) { c.SetPGIDConfigEnable(false); },
      [](EConditionalStatConfig& c) { c.SetStreamConfigEnable(true); },
      [](EConditionalStatConfig& c) { c.SetScanInterval(501); },
      [](EConditionalStatConfig& c) { c.SetScanTimeStamp(124); },
      [](EConditionalStatConfig& c) { c.SetPGIDActiveMap("fe"); },
      [](EConditionalStatConfig& c) { c.SetStreamIDActiveMap("0e"); },
      [](EConditionalStatConfig& c) { c.SetClientMessageId(78); },
      [](EConditionalStatConfig& c) { c.SetLatencyMode("lifo"); },
      [](EConditionalStatConfig& c) { c.SetBase64Xml("PHk+"); },
      [](EConditionalStatConfig& c) { c.SetLatencyType("store"); },
      [](EConditionalStatConfig& c) { c.SetNumberOfBins(5); },
      [](EConditionalStatConfig& c) { c.SetPortId(8); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    EConditionalStatConfig changed = filled;
    changes[i](changed);
    EXPECT_FALSE(changed == filled) << "change " << i;
    EXPECT_TRUE(changed != filled) << "change " << i;
    // As un-configure requests the two are equal whatever else differs.
    EConditionalStatConfig a = filled;
    a.SetRequestType(EConditionalStatConfig::kUnConfigure);
    changes[i](changed);
    changed.SetRequestType(EConditionalStatConfig::kUnConfigure);
    EXPECT_TRUE(a == changed) << "change " << i;
  }
}

TEST(EConditionalStatConfig, UnConfigureRecordsWithDifferentRangesAreEqual) {
  EConditionalStatConfig a;
  a.SetRequestType(EConditionalStatConfig::kUnConfigure);
  a.SetFromPGID(1);
  a.SetToPGID(2);
  EConditionalStatConfig b;
  b.SetRequestType(EConditionalStatConfig::kUnConfigure);
  b.SetFromPGID(30);
  b.SetToPGID(3);  // no range check: from may exceed to
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a != b);
  EConditionalStatConfig configure = a;
  configure.SetRequestType(EConditionalStatConfig::kConfigure);
  EXPECT_FALSE(configure == a);
  EXPECT_FALSE(a == configure);
  EXPECT_TRUE(a != configure);
}

TEST(EConditionalStatConfig, CopySwapAndAssign) {
  EConditionalStatConfig copy(FilledRecord());
  EXPECT_TRUE(copy == FilledRecord());
  EConditionalStatConfig other = Prefilled();
  other.Swap(copy);
  EXPECT_TRUE(other == FilledRecord());
  EXPECT_EQ(copy.GetLatencyType(), "old type");
  EXPECT_EQ(copy.GetPortId(), 1u);
  copy = other;
  EXPECT_TRUE(copy == FilledRecord());
}

TEST(EConditionalStatConfig, TextForms) {
  EXPECT_EQ(FilledRecord().ToString(),
            "Request Type: Configure, Return Code: Success, From PGID: 10, To PGID: 20, From "
            "Stream-id: 30, To Stream-id: 40, PGID Config enable: TRUE, Stream Config enable: "
            "FALSE, Scan Interval: 500, Scan Timestamp: 123, PGID Active map: ff, Stream Active "
            "map: 0f, Client Message Id: 77, Latency Mode: fifo, Base64 xml: PHg+, Latency Type: "
            "cut, Number of Bins: -4");
  EConditionalStatConfig config = FilledRecord();
  config.SetRequestType(EConditionalStatConfig::kUnConfigure);
  EXPECT_EQ(config.ToString(), "Request Type: UnConfigure, Return Code: Success");
  EXPECT_EQ(EConditionalStatConfig().ToString(), "Request Type: Invalid, Return Code: Fail");
  config.SetRequestType(static_cast<EConditionalStatConfig::eRequestType>(7));
  EXPECT_EQ(config.ToString(), "Request Type: Unknown, Return Code: Success");
  // A default configure prints the unset range ends in decimal.
  EConditionalStatConfig fresh;
  fresh.SetRequestType(EConditionalStatConfig::kConfigure);
  EXPECT_EQ(fresh.ToString(),
            "Request Type: Configure, Return Code: Fail, From PGID: 4294967295, To PGID: "
            "4294967295, From Stream-id: 4294967295, To Stream-id: 4294967295, PGID Config "
            "enable: FALSE, Stream Config enable: FALSE, Scan Interval: 1000, Scan Timestamp: 0, "
            "PGID Active map: , Stream Active map: , Client Message Id: 0, Latency Mode: , "
            "Base64 xml: , Latency Type: , Number of Bins: 0");
}

}  // namespace
