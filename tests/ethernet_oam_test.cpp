#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eAggregateModeSetting.h"
#include "eArchive.h"
#include "eDataCenterModeSettings.h"
#include "eEthernetOAMConfig.h"
#include "eEthernetOAMSessionStatus.h"
#include "eEthernetOAMStatus.h"
#include "eTLV.h"

namespace {

using eHal::EAggregateModeSetting;
using eHal::EEthernetOAMConfig;
using eHal::EEthernetOAMSesionStatus;
using eHal::EEthernetOAMStatus;
using eHal::ETLV;

EMACAddress Mac(const std::string& text) {
  EMACAddress mac;
  mac.SetAsString(text);
  return mac;
}

const std::string kZeroMac = "386994449 287454021 6 " + std::string(6, '\0');
const std::string kSomeMac = "386994449 287454021 6 " + std::string("\x00\x19\xa7\x01\x02\x03", 6);

ETLV SampleTLV() {
  return ETLV(7, EBlob("\xAB\x01", 2));
}

EEthernetOAMConfig FilledConfig() {
  EEthernetOAMConfig config;
  config.SetRequestType(EEthernetOAMConfig::kConfigure);
  config.SetReturnCode(EEthernetOAMConfig::kFail);
  config.SetSrcMac(Mac("00:19:a7:01:02:03"));
  config.SetOAMCapability(26);
  config.SetMaxPDUSize(1518);
  config.SetOrgUniqueIdentifier(0x0019A7);
  config.SetVendorSpecificInfo(0xdeadbeef);
  config.SetMaxIdleTimer(255);
  config.SetCustomTLV(SampleTLV());
  return config;
}

const std::string kFilledConfigBytes = "22569362 1 1 " + kSomeMac +
                                       "26 1518 6567 3735928559 255 1163093257 7 287454021 2 "
                                       "\xAB\x01";

EEthernetOAMStatus FilledStatus() {
  EEthernetOAMStatus status;
  status.SetVersion(1);
  status.SetInformationRevision(12);
  status.SetSrcMac(Mac("00:19:a7:01:02:03"));
  status.SetState(2);
  status.SetOAMCapability(30);
  status.SetMaxPDUSize(1500);
  status.SetOrgUniqueIdentifier(0x0019A7);
  status.SetVendorSpecificInfo(255);
  status.SetFlags(0x50);
  return status;
}

const std::string kFilledStatusBytes = "674588786 1 12 " + kSomeMac + "2 30 1500 6567 255 80 ";

TEST(ETLV, DefaultsAccessorsAndEquality) {
  ETLV tlv;
  EXPECT_EQ(tlv.GetType(), 0u);
  EXPECT_EQ(tlv.GetValue().GetSize(), 0u);
  tlv.SetType(7);
  tlv.SetValue(EBlob("\xAB\x01", 2));
  EXPECT_TRUE(tlv == SampleTLV());
  ETLV copy(tlv);
  EXPECT_FALSE(copy != tlv);
  copy.SetType(8);
  EXPECT_TRUE(copy != tlv);
  copy = tlv;
  copy.SetValue(EBlob("\xAB\x02", 2));
  EXPECT_FALSE(copy == tlv);
  ETLV other;
  other.Swap(copy);
  EXPECT_EQ(other.GetValue(), EBlob("\xAB\x02", 2));
  EXPECT_TRUE(copy == ETLV());
}

TEST(ETLV, TextArchiveAndWrongSignature) {
  EXPECT_EQ(SampleTLV().GetAsString(), "Type: 7, Value: AB 01 ");
  EXPECT_EQ(ETLV().GetAsString(), "Type: 0, Value: ");
  EXPECT_EQ(BytesOf(ETLV()), "1163093257 0 287454021 0 ");
  EXPECT_EQ(BytesOf(SampleTLV()), "1163093257 7 287454021 2 \xAB\x01");
  ETLV read(9, EBlob("zzz", 3));
  ReadFrom(BytesOf(SampleTLV()), read);
  EXPECT_TRUE(read == SampleTLV());
  ExpectSerializeError(
      [] {
        ETLV tlv;
        ReadFrom("1163093258 0 287454021 0 ", tlv);
      },
      "x86_64/common/ehal/eTLV", 91, "eHal::ETLV::SerializeIn");
}

TEST(EEthernetOAMConfig, DefaultsAndTheirArchive) {
  const EEthernetOAMConfig config;
  EXPECT_EQ(config.GetRequestType(), EEthernetOAMConfig::kInitial);
  EXPECT_EQ(config.GetReturnCode(), EEthernetOAMConfig::kSuccess);
  EXPECT_TRUE(config.GetSrcMac() == EMACAddress());
  EXPECT_EQ(config.GetOAMCapability(), 0u);
  EXPECT_EQ(config.GetMaxPDUSize(), 0u);
  EXPECT_EQ(config.GetOrgUniqueIdentifier(), 0u);
  EXPECT_EQ(config.GetVendorSpecificInfo(), 0u);
  EXPECT_EQ(config.GetMaxIdleTimer(), 5u);
  EXPECT_TRUE(config.GetCustomTLV() == ETLV());
  EXPECT_EQ(BytesOf(config), "22569362 0 0 " + kZeroMac + "0 0 0 0 5 1163093257 0 287454021 0 ");
}

TEST(EEthernetOAMConfig, ArchiveBytesAndRoundTrip) {
  const EEthernetOAMConfig filled = FilledConfig();
  EXPECT_EQ(BytesOf(filled), kFilledConfigBytes);
  EEthernetOAMConfig read;
  read.SetMaxIdleTimer(1);
  ReadFrom(kFilledConfigBytes, read);
  EXPECT_TRUE(read == filled);
  EXPECT_EQ(read.GetSrcMac().GetAsString(), "00:19:a7:01:02:03");
  EXPECT_EQ(read.GetVendorSpecificInfo(), 0xdeadbeefu);
}

TEST(EEthernetOAMConfig, UnknownEnumerationValuesTravelUnchanged) {
  EEthernetOAMConfig config;
  config.SetRequestType(static_cast<EEthernetOAMConfig::eRequestType>(4000000000u));
  config.SetReturnCode(static_cast<EEthernetOAMConfig::eReturnCode>(2));
  EXPECT_EQ(BytesOf(config).substr(0, 22), "22569362 4000000000 2 ");
  EEthernetOAMConfig read;
  ReadFrom(BytesOf(config), read);
  EXPECT_TRUE(read == config);
  EXPECT_STREQ(read.RequestTypeToString(), "Unknown");
  EXPECT_STREQ(read.ReturnCodeToString(), "Unknown");
}

TEST(EEthernetOAMConfig, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        EEthernetOAMConfig config;
        ReadFrom("22569363 ", config);
      },
      "x86_64/common/ehal/eEthernetOAMConfig", 147, "eHal::EEthernetOAMConfig::SerializeIn");
  // A nested record that does not match reports itself.
  ExpectSerializeError(
      [] {
        EEthernetOAMConfig config;
        ReadFrom("22569362 0 0 " + kZeroMac + "0 0 0 0 5 1163093250 0 287454021 0 ", config);
      },
      "x86_64/common/ehal/eTLV", 91, "eHal::ETLV::SerializeIn");
}

TEST(EEthernetOAMConfig, CopySwapAndEquality) {
  const EEthernetOAMConfig filled = FilledConfig();
  EEthernetOAMConfig copy(filled);
  EXPECT_TRUE(copy == filled);
  EXPECT_FALSE(copy != filled);
  EEthernetOAMConfig other;
  other.Swap(copy);
  EXPECT_TRUE(other == filled);
  EXPECT_TRUE(copy == EEthernetOAMConfig());
  copy = other;
  EXPECT_TRUE(copy == filled);

  const std::vector<std::function<void(EEthernetOAMConfig&)>> changes = {
      [](EEthernetOAMConfig& c) { c.SetRequestType(EEthernetOAMConfig::kUnConfigure); },
      [](EEthernetOAMConfig& c) { c.SetReturnCode(EEthernetOAMConfig::kSuccess); },
      [](EEthernetOAMConfig& c) { c.SetSrcMac(Mac("00:19:a7:01:02:04")); },
      [](EEthernetOAMConfig& c) { c.SetOAMCapability(27); },
      [](EEthernetOAMConfig& c) { c.SetMaxPDUSize(1519); },
      [](EEthernetOAMConfig& c) { c.SetOrgUniqueIdentifier(0x0019A8); },
      [](EEthernetOAMConfig& c) { c.SetVendorSpecificInfo(1); },
      [](EEthernetOAMConfig& c) { c.SetMaxIdleTimer(5); },
      [](EEthernetOAMConfig& c) { c.SetCustomTLV(ETLV(8, EBlob("\xAB\x01", 2))); },
      [](EEthernetOAMConfig& c) { c.SetCustomTLV(ETLV(7, EBlob("\xAB", 1))); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    EEthernetOAMConfig changed = filled;
    changes[i](changed);
    EXPECT_TRUE(changed != filled) << "change " << i;
  }
}

TEST(EEthernetOAMConfig, EnumerationTexts) {
  const char* const requests[] = {"Initial",        "Configure",       "UnConfigure",
                                  "EnableLoopback", "DisableLoopback", "Unknown"};
  const char* const returns[] = {"Success", "Fail", "Unknown"};
  EEthernetOAMConfig config;
  for (unsigned int value = 0; value < 6; ++value) {
    config.SetRequestType(static_cast<EEthernetOAMConfig::eRequestType>(value));
    EXPECT_STREQ(config.RequestTypeToString(), requests[value]);
  }
  for (unsigned int value = 0; value < 3; ++value) {
    config.SetReturnCode(static_cast<EEthernetOAMConfig::eReturnCode>(value));
    EXPECT_STREQ(config.ReturnCodeToString(), returns[value]);
  }
}

TEST(EEthernetOAMConfig, TextFormsSwitchToHexAndStayThere) {
  const std::string information =
      ", SrcMac: 00:19:a7:01:02:03, OAMCapability: 26, MaxPDUSize: 1518, OrgUniqueIdentifier: "
      "19a7, VendorSpecificInfo: deadbeef, MaxIdleTimer: ff, CustomTLV: Type: 7, Value: AB 01 ";
  EEthernetOAMConfig config = FilledConfig();
  EXPECT_EQ(config.ToStringFull(), "Request Type: Configure, Return Code: Fail" + information);
  EXPECT_EQ(config.ToString(), "Request Type: Configure, Return Code: Fail" + information);

  config.SetRequestType(EEthernetOAMConfig::kEnableLoopback);
  config.SetReturnCode(EEthernetOAMConfig::kSuccess);
  EXPECT_EQ(config.ToString(), "Request Type: EnableLoopback, Return Code: Success");
  EXPECT_EQ(config.ToStringFull(),
            "Request Type: EnableLoopback, Return Code: Success" + information);
  for (unsigned int type : {0u, 2u, 4u, 9u}) {
    config.SetRequestType(static_cast<EEthernetOAMConfig::eRequestType>(type));
    EXPECT_EQ(config.ToString(), std::string("Request Type: ") + config.RequestTypeToString() +
                                     ", Return Code: Success");
  }

  // The default idle timer of 5 looks the same in hex; 16 does not. The TLV type stays decimal.
  EEthernetOAMConfig plain;
  EXPECT_EQ(plain.ToStringFull(),
            "Request Type: Initial, Return Code: Success, SrcMac: 00:00:00:00:00:00, "
            "OAMCapability: 0, MaxPDUSize: 0, OrgUniqueIdentifier: 0, VendorSpecificInfo: 0, "
            "MaxIdleTimer: 5, CustomTLV: Type: 0, Value: ");
  plain.SetMaxIdleTimer(16);
  plain.SetOAMCapability(16);
  plain.SetMaxPDUSize(16);
  plain.SetCustomTLV(ETLV(16, EBlob()));
  plain.SetRequestType(EEthernetOAMConfig::kConfigure);
  EXPECT_EQ(plain.ToString(),
            "Request Type: Configure, Return Code: Success, SrcMac: 00:00:00:00:00:00, "
            "OAMCapability: 16, MaxPDUSize: 16, OrgUniqueIdentifier: 0, VendorSpecificInfo: 0, "
            "MaxIdleTimer: 10, CustomTLV: Type: 16, Value: ");
}

TEST(EEthernetOAMStatus, DefaultsArchiveAndRoundTrip) {
  const EEthernetOAMStatus status;
  EXPECT_EQ(status.GetVersion(), 0u);
  EXPECT_EQ(status.GetInformationRevision(), 0u);
  EXPECT_TRUE(status.GetSrcMac() == EMACAddress());
  EXPECT_EQ(status.GetState(), 0u);
  EXPECT_EQ(status.GetOAMCapability(), 0u);
  EXPECT_EQ(status.GetMaxPDUSize(), 0u);
  EXPECT_EQ(status.GetOrgUniqueIdentifier(), 0u);
  EXPECT_EQ(status.GetVendorSpecificInfo(), 0u);
  EXPECT_EQ(status.GetFlags(), 0u);
  EXPECT_EQ(BytesOf(status), "674588786 0 0 " + kZeroMac + "0 0 0 0 0 0 ");
  EXPECT_EQ(BytesOf(FilledStatus()), kFilledStatusBytes);
  EEthernetOAMStatus read;
  read.SetFlags(3);
  ReadFrom(kFilledStatusBytes, read);
  EXPECT_TRUE(read == FilledStatus());
  EXPECT_EQ(read.GetFlags(), 0x50u);
  EXPECT_EQ(read.GetState(), 2u);
}

TEST(EEthernetOAMStatus, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        EEthernetOAMStatus status;
        ReadFrom("674588787 ", status);
      },
      "x86_64/common/ehal/eEthernetOAMStatus", 139, "eHal::EEthernetOAMStatus::SerializeIn");
}

TEST(EEthernetOAMStatus, CopySwapAndEquality) {
  const EEthernetOAMStatus filled = FilledStatus();
  EEthernetOAMStatus copy(filled);
  EXPECT_TRUE(copy == filled);
  EEthernetOAMStatus other;
  other.Swap(copy);
  EXPECT_TRUE(other == filled);
  EXPECT_TRUE(copy == EEthernetOAMStatus());
  copy = filled;
  copy.SetFlags(0x51);  // differs only in the flags
  EXPECT_TRUE(copy != filled);
  EXPECT_FALSE(copy == filled);
  const std::vector<std::function<void(EEthernetOAMStatus&)>> changes = {
      [](EEthernetOAMStatus& s) { s.SetVersion(2); },
      [](EEthernetOAMStatus& s) { s.SetInformationRevision(13); },
      [](EEthernetOAMStatus& s) { s.SetSrcMac(EMACAddress()); },
      [](EEthernetOAMStatus& s) { s.SetState(3); },
      [](EEthernetOAMStatus& s) { s.SetOAMCapability(31); },
      [](EEthernetOAMStatus& s) { s.SetMaxPDUSize(1501); },
      [](EEthernetOAMStatus& s) { s.SetOrgUniqueIdentifier(1); },
      [](EEthernetOAMStatus& s) { s.SetVendorSpecificInfo(254); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    EEthernetOAMStatus changed = filled;
    changes[i](changed);
    EXPECT_TRUE(changed != filled) << "change " << i;
  }
}

TEST(EEthernetOAMStatus, Text) {
  EXPECT_EQ(FilledStatus().ToString(),
            "Protocol Version: 1, Information Revision: 12, SrcMac: 00:19:a7:01:02:03, State: 2, "
            "OAMCapability: 30, MaxPDUSize: 1500, OrgUniqueIdentifier: 19a7, VendorSpecificInfo: "
            "ff, Flags: 50");
  EXPECT_EQ(EEthernetOAMStatus().ToString(),
            "Protocol Version: 0, Information Revision: 0, SrcMac: 00:00:00:00:00:00, State: 0, "
            "OAMCapability: 0, MaxPDUSize: 0, OrgUniqueIdentifier: 0, VendorSpecificInfo: 0, "
            "Flags: 0");
}

TEST(EEthernetOAMSesionStatus, DefaultsArchiveRoundTripAndText) {
  EEthernetOAMSesionStatus session;
  EXPECT_TRUE(session.GetLocalStatus() == EEthernetOAMStatus());
  EXPECT_TRUE(session.GetRemoteStatus() == EEthernetOAMStatus());
  const std::string defaultStatus = "674588786 0 0 " + kZeroMac + "0 0 0 0 0 0 ";
  EXPECT_EQ(BytesOf(session), "2014667090 " + defaultStatus + defaultStatus);
  session.SetRemoteStatus(FilledStatus());
  EXPECT_TRUE(session.GetRemoteStatus() == FilledStatus());
  EXPECT_EQ(BytesOf(session), "2014667090 " + defaultStatus + kFilledStatusBytes);
  EEthernetOAMSesionStatus read;
  read.SetLocalStatus(FilledStatus());
  ReadFrom(BytesOf(session), read);
  EXPECT_TRUE(read == session);
  EXPECT_EQ(session.ToString(), "Local DTE Status: " + EEthernetOAMStatus().ToString() +
                                    ", Remote DTE Status: " + FilledStatus().ToString());
  // The local status text switches to hex and the remote one starts over in decimal.
  session.SetLocalStatus(FilledStatus());
  EEthernetOAMStatus remote;
  remote.SetMaxPDUSize(16);
  session.SetRemoteStatus(remote);
  EXPECT_NE(session.ToString().find("Remote DTE Status: Protocol Version: 0, Information "
                                    "Revision: 0, SrcMac: 00:00:00:00:00:00, State: 0, "
                                    "OAMCapability: 0, MaxPDUSize: 16,"),
            std::string::npos);
}

TEST(EEthernetOAMSesionStatus, CopySwapAndEquality) {
  EEthernetOAMSesionStatus a;
  a.SetLocalStatus(FilledStatus());
  EEthernetOAMSesionStatus b(a);
  EXPECT_TRUE(a == b);
  EEthernetOAMStatus remote;
  remote.SetFlags(1);
  b.SetRemoteStatus(remote);  // equal local, different remote
  EXPECT_TRUE(a != b);
  EXPECT_FALSE(a == b);
  EEthernetOAMSesionStatus c;
  c.Swap(b);
  EXPECT_TRUE(c.GetRemoteStatus() == remote);
  EXPECT_TRUE(b == EEthernetOAMSesionStatus());
  b = c;
  EXPECT_TRUE(b == c);
}

TEST(EEthernetOAMSesionStatus, WrongSignatureNamesTheSessionSourceFile) {
  ExpectSerializeError(
      [] {
        EEthernetOAMSesionStatus session;
        ReadFrom("2014667091 ", session);
      },
      "x86_64/common/ehal/eEthernetOAMSessionStatus", 97,
      "eHal::EEthernetOAMSesionStatus::SerializeIn");
  ExpectSerializeError(
      [] {
        EEthernetOAMSesionStatus session;
        ReadFrom("2014667090 674588786 0 0 " + kZeroMac + "0 0 0 0 0 0 674588780 ", session);
      },
      "x86_64/common/ehal/eEthernetOAMStatus", 139, "eHal::EEthernetOAMStatus::SerializeIn");
}

TEST(EAggregateModeSetting, DefaultsAccessorsAndArchive) {
  EAggregateModeSetting setting;
  EXPECT_FALSE(setting.GetAggregateModeSetting());
  EXPECT_EQ(BytesOf(setting), "268839185 0 ");
  setting.SetAggregateModeSetting(true);
  EXPECT_TRUE(setting.GetAggregateModeSetting());
  EXPECT_EQ(BytesOf(setting), "268839185 1 ");
  EAggregateModeSetting copy(setting);
  EXPECT_TRUE(copy.GetAggregateModeSetting());
  EAggregateModeSetting assigned;
  assigned = copy;
  EXPECT_TRUE(assigned.GetAggregateModeSetting());
  ReadFrom("268839185 0 ", assigned);
  EXPECT_FALSE(assigned.GetAggregateModeSetting());
  ReadFrom("268839185 7 ", assigned);
  EXPECT_TRUE(assigned.GetAggregateModeSetting());
}

TEST(EAggregateModeSetting, SharesItsArchiveWithTheDataCentreMode) {
  // Nothing in the archive tells the two settings apart.
  eHal::EDataCenterModeSettings dataCenter;
  ReadFrom(BytesOf(EAggregateModeSetting(true)), dataCenter);
  EXPECT_TRUE(dataCenter.GetDataCenterModeEnabled());
  EAggregateModeSetting aggregate;
  ReadFrom(BytesOf(eHal::EDataCenterModeSettings(true)), aggregate);
  EXPECT_TRUE(aggregate.GetAggregateModeSetting());
}

TEST(EAggregateModeSetting, WrongSignatureNamesTheProtocolNameReader) {
  ExpectSerializeError(
      [] {
        EAggregateModeSetting setting;
        ReadFrom("268839184 1 ", setting);
      },
      "x86_64/common/ehal/eAggregateModeSetting", 65, "eHal::EProtocolName::SerializeIn");
}

}  // namespace
