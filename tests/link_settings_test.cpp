#include <gtest/gtest.h>

#include <string>

#include "archive_text.h"
#include "child_process.h"
#include "eActivePortSetting.h"
#include "eArchive.h"
#include "eDataCenterModeSettings.h"
#include "eFCParams.h"
#include "eFCPhyMessage.h"
#include "ePOSLinkLayerSettings.h"

namespace {

using eHal::EActivePortSetting;
using eHal::EDataCenterModeSettings;
using eHal::EPOSLinkLayerSettings;

std::string Repeat(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result += text;
  return result;
}

TEST(EPOSLinkLayerSettings, DefaultsAndArchiveBytes) {
  const EPOSLinkLayerSettings settings;
  for (unsigned int port = 0; port < 64; ++port) {
    EXPECT_EQ(settings.GetLinkType(port), 4u);
    EXPECT_EQ(settings.GetTxCRCSize(port), 1u);
    EXPECT_EQ(settings.GetRxCRCSize(port), 1u);
  }
  EXPECT_EQ(BytesOf(settings), "288572247 " + Repeat("4 1 1 ", 64));
}

TEST(EPOSLinkLayerSettings, PortsAreArchivedFromTheHighestDown) {
  EPOSLinkLayerSettings settings;
  settings.SetLinkType(0, 63);
  settings.SetTxCRCSize(0, 63);
  settings.SetRxCRCSize(7, 63);
  settings.SetLinkType(5, 0);
  settings.SetTxCRCSize(2, 0);
  settings.SetRxCRCSize(0, 0);
  const std::string bytes = "288572247 0 0 7 " + Repeat("4 1 1 ", 62) + "5 2 0 ";
  EXPECT_EQ(BytesOf(settings), bytes);
  EPOSLinkLayerSettings read;
  ReadFrom(bytes, read);
  EXPECT_TRUE(read == settings);
  EXPECT_EQ(read.GetRxCRCSize(63), 7u);
  EXPECT_EQ(read.GetLinkType(0), 5u);
}

TEST(EPOSLinkLayerSettings, SettersTakeTheValueFirst) {
  EPOSLinkLayerSettings settings;
  settings.SetLinkType(2, 5);
  EXPECT_EQ(settings.GetLinkType(5), 2u);
  EXPECT_EQ(settings.GetLinkType(2), 4u);
  EXPECT_EQ(settings.GetLogString(5), "Encapsulation:FrameRelay TxCRCSize:32 RxCRCSize:32\n");
  settings.SetTxCRCSize(0, 9);
  settings.SetRxCRCSize(7, 9);
  EXPECT_EQ(settings.GetTxCRCSize(9), 0u);
  EXPECT_EQ(settings.GetRxCRCSize(9), 7u);
  EXPECT_EQ(settings.GetTxCRCSize(0), 1u);
}

TEST(EPOSLinkLayerSettings, CRCSizes) {
  const EPOSLinkLayerSettings settings;
  EXPECT_EQ(settings.GetCRCSizeInBits(0), 16u);
  EXPECT_EQ(settings.GetCRCSizeInBytes(0), 2u);
  EXPECT_EQ(settings.GetCRCSizeInBits(1), 32u);
  EXPECT_EQ(settings.GetCRCSizeInBytes(1), 4u);
  EXPECT_EQ(settings.GetCRCSizeInBits(7), 0u);
  EXPECT_EQ(settings.GetCRCSizeInBytes(7), 0u);
  EXPECT_EQ(settings.GetCRCSizeInBits(2), 0u);
  EPOSLinkLayerSettings ports;
  ports.SetTxCRCSize(0, 3);
  ports.SetRxCRCSize(7, 3);
  EXPECT_EQ(ports.GetTxCRCSizeInBits(3), 16u);
  EXPECT_EQ(ports.GetTxCRCSizeInBytes(3), 2u);
  EXPECT_EQ(ports.GetRxCRCSizeInBits(3), 0u);
  EXPECT_EQ(ports.GetRxCRCSizeInBytes(3), 0u);
  EXPECT_EQ(ports.GetRxCRCSizeInBits(4), 32u);
  EXPECT_EQ(ports.GetRxCRCSizeInBytes(4), 4u);
}

TEST(EPOSLinkLayerSettings, LogStrings) {
  EPOSLinkLayerSettings settings;
  EXPECT_EQ(settings.GetLogString(0), "Encapsulation:Other TxCRCSize:32 RxCRCSize:32\n");
  const char* const texts[] = {"Cisco HDLC", "PPP", "FrameRelay", "Cisco FrameRelay",
                               "Other",      "SRP", "Unknown"};
  for (unsigned int type = 0; type < 7; ++type) {
    settings.SetLinkType(type, 1);
    settings.SetTxCRCSize(0, 1);
    settings.SetRxCRCSize(5, 1);
    EXPECT_EQ(settings.GetLogString(1),
              std::string("Encapsulation:") + texts[type] + " TxCRCSize:16 RxCRCSize:0\n");
  }
  settings.SetLinkType(4000000000u, 1);
  EXPECT_EQ(settings.GetLogString(1), "Encapsulation:Unknown TxCRCSize:16 RxCRCSize:0\n");
}

TEST(EPOSLinkLayerSettings, CopyAndEquality) {
  EPOSLinkLayerSettings settings;
  settings.SetLinkType(1, 10);
  settings.SetTxCRCSize(0, 20);
  settings.SetRxCRCSize(0, 30);
  EPOSLinkLayerSettings copy(settings);
  EXPECT_TRUE(copy == settings);
  EXPECT_TRUE(copy.IsEqual(settings));
  EPOSLinkLayerSettings assigned;
  EXPECT_TRUE(assigned != settings);
  assigned = settings;
  EXPECT_TRUE(assigned == settings);
  EPOSLinkLayerSettings viaPointer;
  viaPointer.Copy(&settings);
  EXPECT_TRUE(viaPointer == settings);
  viaPointer.Copy(static_cast<const EPOSLinkLayerSettings*>(nullptr));
  EXPECT_TRUE(viaPointer == settings);
  viaPointer.Copy(EPOSLinkLayerSettings());
  EXPECT_TRUE(viaPointer == EPOSLinkLayerSettings());
  // Each of the three arrays takes part, at either end.
  for (unsigned int port : {0u, 63u}) {
    EPOSLinkLayerSettings a, b, c;
    a.SetLinkType(0, port);
    b.SetTxCRCSize(0, port);
    c.SetRxCRCSize(0, port);
    EXPECT_FALSE(a == EPOSLinkLayerSettings());
    EXPECT_FALSE(b == EPOSLinkLayerSettings());
    EXPECT_FALSE(c == EPOSLinkLayerSettings());
  }
  settings.Empty();
  EXPECT_TRUE(settings == EPOSLinkLayerSettings());
}

TEST(EPOSLinkLayerSettings, OlderLayoutChangesOnlyPortZero) {
  EPOSLinkLayerSettings settings;
  for (unsigned int port = 0; port < 64; ++port)
    settings.SetLinkType(port % 6, port);
  EPOSLinkLayerSettings expected(settings);
  expected.SetLinkType(3, 0);
  expected.SetTxCRCSize(0, 0);
  expected.SetRxCRCSize(9, 0);
  ReadFrom("288572246 3 0 9 ", settings);
  EXPECT_TRUE(settings == expected);
}

TEST(EPOSLinkLayerSettings, WrongSignatureNamesTheProtocolNameReader) {
  for (const char* bytes : {"288572248 ", "288572245 "}) {
    ExpectSerializeError(
        [bytes] {
          EPOSLinkLayerSettings settings;
          ReadFrom(bytes, settings);
        },
        "x86_64/common/ehal/ePOSLinkLayerSettings", 139, "eHal::EProtocolName::SerializeIn");
  }
}

TEST(EDataCenterModeSettings, DefaultsAccessorsAndArchive) {
  EDataCenterModeSettings settings;
  EXPECT_FALSE(settings.GetDataCenterModeEnabled());
  EXPECT_EQ(BytesOf(settings), "268839185 0 ");
  settings.SetDataCenterModeEnabled(true);
  EXPECT_TRUE(settings.GetDataCenterModeEnabled());
  EXPECT_EQ(BytesOf(settings), "268839185 1 ");
  EDataCenterModeSettings copy(settings);
  EXPECT_TRUE(copy.GetDataCenterModeEnabled());
  EDataCenterModeSettings assigned;
  assigned = copy;
  EXPECT_TRUE(assigned.GetDataCenterModeEnabled());
  assigned.Empty();
  EXPECT_FALSE(assigned.GetDataCenterModeEnabled());
  assigned.Copy(EDataCenterModeSettings(true));
  EXPECT_TRUE(assigned.GetDataCenterModeEnabled());

  EDataCenterModeSettings read;
  ReadFrom("268839185 1 ", read);
  EXPECT_TRUE(read.GetDataCenterModeEnabled());
  ReadFrom("268839185 0 ", read);
  EXPECT_FALSE(read.GetDataCenterModeEnabled());
  ReadFrom("268839185 256 ", read);  // any non-zero number is true
  EXPECT_TRUE(read.GetDataCenterModeEnabled());
}

TEST(EDataCenterModeSettings, WrongSignatureNamesTheProtocolNameReader) {
  ExpectSerializeError(
      [] {
        EDataCenterModeSettings settings;
        ReadFrom("268839186 1 ", settings);
      },
      "x86_64/common/ehal/eDataCenterModeSettings", 79, "eHal::EProtocolName::SerializeIn");
}

TEST(EActivePortSetting, DefaultsAccessorsAndArchive) {
  EActivePortSetting setting;
  EXPECT_EQ(setting.GetActiveCard(), 0);
  EXPECT_EQ(setting.GetActivePort(), 0);
  EXPECT_EQ(BytesOf(setting), "2022773057 0 0 ");
  setting.SetActiveCard(3);
  setting.SetActivePort(-2);
  EXPECT_EQ(BytesOf(setting), "2022773057 3 -2 ");
  EActivePortSetting copy(setting);
  EXPECT_EQ(copy.GetActiveCard(), 3);
  EActivePortSetting assigned;
  assigned = EActivePortSetting(7, 8);
  EXPECT_EQ(assigned.GetActiveCard(), 7);
  EXPECT_EQ(assigned.GetActivePort(), 8);
  ReadFrom("2022773057 3 -2 ", assigned);
  EXPECT_EQ(assigned.GetActiveCard(), 3);
  EXPECT_EQ(assigned.GetActivePort(), -2);
}

TEST(EActivePortSetting, WrongSignatureNamesTheWritingOperator) {
  ExpectSerializeError(
      [] {
        EActivePortSetting setting;
        ReadFrom("2022773056 0 0 ", setting);
      },
      "x86_64/common/ehal/eActivePortSetting", 66, "eHal::EActivePortSetting::operator<<");
}

const std::string kDefaultFCParams = "1 2000 10000 100 0 0 0 65535 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 ";

TEST(EFCParams, Defaults) {
  const EFCParams params;
  EXPECT_EQ(params.GetRtTOVOverride(), 2000u);
  EXPECT_EQ(params.GetRaTOVOverride(), 10000u);
  EXPECT_EQ(params.GetEdTOVOverride(), 100u);
  EXPECT_EQ(params.GetRtTOV(), EFCParams::kTOVStandard);
  EXPECT_EQ(params.GetRaTOV(), EFCParams::kTOVStandard);
  EXPECT_EQ(params.GetEdTOV(), EFCParams::kTOVStandard);
  EXPECT_EQ(params.GetRemoteBBCredit(), 65535u);
  EXPECT_EQ(params.GetBbSCN(), 0u);
  EXPECT_FALSE(params.IsRtTOVOverrideValid());
  EXPECT_FALSE(params.IsRaTOVOverrideValid());
  EXPECT_FALSE(params.IsEdTOVOverrideValid());
  EXPECT_FALSE(params.IsRtTOVValid());
  EXPECT_FALSE(params.IsRaTOVValid());
  EXPECT_FALSE(params.IsEdTOVValid());
  EXPECT_FALSE(params.IsRemoteBBCreditValid());
  EXPECT_FALSE(params.IsBbSCNValid());
  EXPECT_EQ(params.GetResetLink(), 0u);
  EXPECT_EQ(params.GetResetLinkAck(), 0u);
  EXPECT_EQ(BytesOf(params), kDefaultFCParams);
}

TEST(EFCParams, EachSetterRaisesItsOwnFlag) {
  EFCParams params;
  params.SetRemoteBBCredit(8);
  EXPECT_TRUE(params.IsRemoteBBCreditValid());
  EXPECT_EQ(params.GetRemoteBBCredit(), 8u);
  EXPECT_FALSE(params.IsBbSCNValid());
  EXPECT_FALSE(params.IsRtTOVValid());

  params.SetRtTOVOverride(1);
  EXPECT_TRUE(params.IsRtTOVOverrideValid());
  EXPECT_FALSE(params.IsRaTOVOverrideValid());
  params.SetRaTOVOverride(2);
  EXPECT_TRUE(params.IsRaTOVOverrideValid());
  EXPECT_FALSE(params.IsEdTOVOverrideValid());
  params.SetEdTOVOverride(3);
  EXPECT_TRUE(params.IsEdTOVOverrideValid());
  params.SetRtTOV(EFCParams::kTOVOverride);
  EXPECT_TRUE(params.IsRtTOVValid());
  EXPECT_FALSE(params.IsRaTOVValid());
  params.SetRaTOV(EFCParams::kTOVOverride);
  EXPECT_TRUE(params.IsRaTOVValid());
  EXPECT_FALSE(params.IsEdTOVValid());
  params.SetEdTOV(static_cast<EFCParams::eTOV>(7));
  EXPECT_TRUE(params.IsEdTOVValid());
  EXPECT_FALSE(params.IsBbSCNValid());
  params.SetBbSCN(4);
  EXPECT_TRUE(params.IsBbSCNValid());
  params.ResetLink(5);
  params.ResetLinkAck(6);
  EXPECT_EQ(params.GetRtTOVOverride(), 1u);
  EXPECT_EQ(params.GetRaTOVOverride(), 2u);
  EXPECT_EQ(params.GetEdTOVOverride(), 3u);
  EXPECT_EQ(params.GetRtTOV(), EFCParams::kTOVOverride);
  EXPECT_EQ(params.GetRaTOV(), EFCParams::kTOVOverride);
  EXPECT_EQ(static_cast<unsigned int>(params.GetEdTOV()), 7u);
  EXPECT_EQ(params.GetBbSCN(), 4u);
  EXPECT_EQ(params.GetResetLink(), 5u);
  EXPECT_EQ(params.GetResetLinkAck(), 6u);
  EXPECT_EQ(BytesOf(params), "1 1 2 3 1 1 7 8 4 1 1 1 1 1 1 1 1 5 6 0 0 0 0 ");
}

// A record with every field set, the trailing ones included (they have no setters).
const std::string kFilledFCParams =
    "1 1 2 3 1 2 0 8 4 1 0 1 0 1 0 1 0 5 6 65535 5000000000 7 3 abc";

TEST(EFCParams, ArchiveRoundTripWithTheTrailingFields) {
  EFCParams params;
  ReadFrom(kFilledFCParams, params);
  EXPECT_EQ(params.GetRtTOV(), EFCParams::kTOVOverride);
  EXPECT_EQ(static_cast<unsigned int>(params.GetRaTOV()), 2u);
  EXPECT_EQ(params.GetEdTOV(), EFCParams::kTOVStandard);
  EXPECT_TRUE(params.IsRtTOVOverrideValid());
  EXPECT_FALSE(params.IsRaTOVOverrideValid());
  EXPECT_TRUE(params.IsEdTOVOverrideValid());
  EXPECT_FALSE(params.IsRtTOVValid());
  EXPECT_TRUE(params.IsRaTOVValid());
  EXPECT_FALSE(params.IsEdTOVValid());
  EXPECT_TRUE(params.IsRemoteBBCreditValid());
  EXPECT_FALSE(params.IsBbSCNValid());
  EXPECT_EQ(BytesOf(params), kFilledFCParams);
  EFCParams copy(params);
  EXPECT_EQ(BytesOf(copy), kFilledFCParams);
  EFCParams assigned;
  assigned = params;
  EXPECT_EQ(BytesOf(assigned), kFilledFCParams);
}

TEST(EFCParams, TimeoutSelectorsAreWrittenSignedAndReadUnsigned) {
  EFCParams params;
  ReadFrom("1 0 0 0 4294967295 0 0 ", params);
  EXPECT_EQ(static_cast<unsigned int>(params.GetRtTOV()), 4294967295u);
  EXPECT_EQ(BytesOf(params).substr(0, 14), "1 0 0 0 -1 0 0");
}

TEST(EFCParams, EmptyKeepsTheFirstLongValueAndTheText) {
  EFCParams params;
  ReadFrom(kFilledFCParams, params);
  params.Empty();
  EXPECT_EQ(BytesOf(params),
            "1 2000 10000 100 0 0 0 65535 0 0 0 0 0 0 0 0 0 0 0 0 5000000000 0 3 abc");
}

TEST(EFCParams, WrongVersionEndsTheProcess) {
  for (const char* bytes : {"2 ", "0 "}) {
    ExpectSerializeError(
        [bytes] {
          EFCParams params;
          ReadFrom(bytes, params);
        },
        "x86_64/common/ehal/eFCParams", 175, "EFCParams::SerializeIn");
  }
}

TEST(EFCPhyMessage, DefaultsArchiveAndEmpty) {
  EFCPhyMessage message;
  EXPECT_EQ(message.GetRequestType(), 0u);
  EXPECT_EQ(BytesOf(message), "1 0 0 0 0 ");
  message.SetRequestType(12);
  EXPECT_EQ(message.GetRequestType(), 12u);
  EXPECT_EQ(BytesOf(message), "1 12 0 0 0 ");
  const std::string filled = "1 4294967295 65535 18446744073709551615 9 ";
  ReadFrom(filled, message);
  EXPECT_EQ(message.GetRequestType(), 4294967295u);
  EXPECT_EQ(BytesOf(message), filled);
  EFCPhyMessage copy(message);
  EXPECT_EQ(BytesOf(copy), filled);
  EFCPhyMessage assigned;
  assigned = copy;
  EXPECT_EQ(BytesOf(assigned), filled);
  // Empty clears the request type and the 16-bit value only.
  message.Empty();
  EXPECT_EQ(message.GetRequestType(), 0u);
  EXPECT_EQ(BytesOf(message), "1 0 0 18446744073709551615 9 ");
}

TEST(EFCPhyMessage, WrongVersionNamesTheParametersReader) {
  ExpectSerializeError(
      [] {
        EFCPhyMessage message;
        ReadFrom("2 0 0 0 0 ", message);
      },
      "x86_64/common/ehal/eFCPhyMessage", 83, "EFCParams::SerializeIn");
}

}  // namespace
