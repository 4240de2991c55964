#include "eISLIPAddressTableItemProperties.h"

#include <gtest/gtest.h>

#include <string>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

using ISL = EISLIPAddressTableItemProperties;

ISL Filled() {
  ISL isl;
  isl.Enable();
  isl.SetVLANMappingMode(0);
  isl.SetVLANID(300);
  isl.SetUserPriority(6);
  isl.SetBPDUIndicator(true);
  isl.SetIndex(65535);
  return isl;
}

const char* const kFilledBytes = "1125474577 1 0 300 6 1 65535 ";

TEST(EISLProperties, Defaults) {
  const ISL isl;
  EXPECT_FALSE(isl.IsEnabled());
  EXPECT_EQ(isl.GetVLANMappingMode(), 1u);
  EXPECT_EQ(isl.GetVLANID(0), 0);
  EXPECT_EQ(isl.GetUserPriority(0), 0);
  EXPECT_FALSE(isl.GetBPDUIndicator());
  EXPECT_EQ(isl.GetIndex(), 0);
  EXPECT_EQ(BytesOf(isl), "1125474577 0 1 0 0 0 0 ");
  ISL filled = Filled();
  filled.Empty();
  EXPECT_EQ(BytesOf(filled), BytesOf(isl));
}

TEST(EISLProperties, Accessors) {
  const ISL isl = Filled();
  EXPECT_TRUE(isl.IsEnabled());
  EXPECT_EQ(isl.GetVLANMappingMode(), 0u);
  EXPECT_EQ(isl.GetVLANID(0), 300);
  EXPECT_EQ(isl.GetUserPriority(3), 6);  // the argument is not used
  EXPECT_TRUE(isl.GetBPDUIndicator());
  EXPECT_EQ(isl.GetIndex(), 65535);
  ISL disabled = isl;
  disabled.Disable();
  EXPECT_FALSE(disabled.IsEnabled());
  disabled.SetBPDUIndicator(false);
  EXPECT_FALSE(disabled.GetBPDUIndicator());
}

TEST(EISLProperties, SettersClamp) {
  ISL isl;
  isl.SetVLANID(4095);
  EXPECT_EQ(isl.GetVLANID(0), 4095);
  isl.SetVLANID(4096);
  EXPECT_EQ(isl.GetVLANID(0), 4095);
  isl.SetVLANID(65535);
  EXPECT_EQ(isl.GetVLANID(0), 4095);
  isl.SetUserPriority(7);
  EXPECT_EQ(isl.GetUserPriority(0), 7);
  isl.SetUserPriority(8);
  EXPECT_EQ(isl.GetUserPriority(0), 7);
  isl.SetUserPriority(255);
  EXPECT_EQ(isl.GetUserPriority(0), 7);
  isl.SetUserPriority(0);
  EXPECT_EQ(isl.GetUserPriority(0), 0);
}

TEST(EISLProperties, MappingModeTakesZeroOrOneOnly) {
  ISL isl;
  isl.SetVLANMappingMode(0);
  EXPECT_EQ(isl.GetVLANMappingMode(), 0u);
  isl.SetVLANMappingMode(2);
  EXPECT_EQ(isl.GetVLANMappingMode(), 0u);
  isl.SetVLANMappingMode(1);
  EXPECT_EQ(isl.GetVLANMappingMode(), 1u);
  isl.SetVLANMappingMode(0xFFFFFFFF);
  EXPECT_EQ(isl.GetVLANMappingMode(), 1u);
}

TEST(EISLProperties, VLANIDPerHost) {
  ISL isl;
  isl.SetVLANID(4090);
  isl.SetVLANMappingMode(0);
  EXPECT_EQ(isl.GetVLANID(10), 4095);
  EXPECT_EQ(isl.GetVLANID(5), 4095);
  EXPECT_EQ(isl.GetVLANID(4), 4094);
  EXPECT_EQ(isl.GetVLANID(0), 4090);
  isl.SetVLANID(1);
  EXPECT_EQ(isl.GetVLANID(65535), 0);  // the 16-bit sum wraps before the clamp
  EXPECT_EQ(isl.GetVLANID(65534), 4095);
  isl.SetVLANID(4090);
  isl.SetVLANMappingMode(1);
  EXPECT_EQ(isl.GetVLANID(10), 4090);
}

TEST(EISLProperties, CopyAndAssign) {
  const ISL isl = Filled();
  const ISL copy(isl);
  EXPECT_EQ(BytesOf(copy), kFilledBytes);
  ISL assigned;
  assigned = isl;
  EXPECT_EQ(BytesOf(assigned), kFilledBytes);
  ISL copied;
  copied.Copy(isl);
  EXPECT_EQ(BytesOf(copied), kFilledBytes);
}

TEST(EISLProperties, ArchiveBytesAndRoundTrip) {
  EXPECT_EQ(BytesOf(Filled()), kFilledBytes);
  ISL back;
  ReadFrom(kFilledBytes, back);
  EXPECT_EQ(BytesOf(back), kFilledBytes);
  EXPECT_EQ(back.GetVLANID(7), 307);
}

TEST(EISLProperties, ValuesReadAreStoredUnclamped) {
  ISL isl = Filled();
  ReadFrom("1125474577 0 7 5000 9 2 70000 ", isl);
  EXPECT_FALSE(isl.IsEnabled());
  EXPECT_EQ(isl.GetVLANMappingMode(), 7u);
  EXPECT_EQ(isl.GetVLANID(100), 5000);  // mode 7 is not per host
  EXPECT_EQ(isl.GetUserPriority(0), 9);
  EXPECT_TRUE(isl.GetBPDUIndicator());
  EXPECT_EQ(isl.GetIndex(), 70000 - 65536);  // 16 bits kept
  EXPECT_EQ(BytesOf(isl), "1125474577 0 7 5000 9 1 4464 ");
}

TEST(EISLProperties, UnknownSignatureIsReported) {
  for (const char* bytes : {"1125474578 1 1 1 1 1 1 ", "2 ", ""}) {
    SCOPED_TRACE(bytes);
    ExpectSerializeError(
        [bytes] {
          ISL isl;
          ReadFrom(bytes, isl);
        },
        "x86_64/common/ehal/eISLIPAddressTableItemProperties", 202,
        "EISLIPAddressTableItemProperties::SerializeIn");
  }
}

}  // namespace
