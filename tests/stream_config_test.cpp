#include "eStreamConfig.h"

#include <gtest/gtest.h>

#include <string>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

using eHal::EStreamConfig;
using EStreamData = eHal::EStreamConfig::EStreamData;

void ExpectSameData(const EStreamData& a, const EStreamData& b) {
  EXPECT_EQ(a.m_Action, b.m_Action);
  EXPECT_EQ(a.m_StreamParameter, b.m_StreamParameter);
  EXPECT_EQ(a.m_FirstStreamValue, b.m_FirstStreamValue);
  EXPECT_EQ(a.m_SecondStreamValue, b.m_SecondStreamValue);
}

void ExpectSameConfig(const EStreamConfig& a, const EStreamConfig& b) {
  EXPECT_EQ(a.GetRequestType(), b.GetRequestType());
  EXPECT_EQ(a.GetReturnCode(), b.GetReturnCode());
  EXPECT_EQ(a.GetStreamStartOffset(), b.GetStreamStartOffset());
  EXPECT_EQ(a.GetStreamCount(), b.GetStreamCount());
  ASSERT_EQ(a.GetStreamConfigMap().size(), b.GetStreamConfigMap().size());
  for (const auto& [id, data] : a.GetStreamConfigMap()) {
    ASSERT_EQ(b.GetStreamConfigMap().count(id), 1u) << id;
    ExpectSameData(data, b.GetStreamConfigMap().at(id));
  }
}

EStreamConfig FilledRecord() {
  EStreamConfig config;
  config.SetRequestType(EStreamConfig::kDelta);
  config.SetReturnCode(EStreamConfig::kSuccess);
  config.SetStreamStartOffset(100);
  config.SetStreamCount(2);
  config.GetStreamConfigMap()[7] = EStreamData(EStreamData::kSet, 70, 5000000000ul, 1);
  config.GetStreamConfigMap()[3] = EStreamData(EStreamData::kAdd, 30, 0, 18446744073709551615ul);
  return config;
}

const std::string kFilledBytes =
    "1122867 2 0 100 2 2 3 3351057 1 30 0 18446744073709551615 7 3351057 3 70 5000000000 1 ";

TEST(EStreamData, DefaultsCopyAndText) {
  const EStreamData data;
  ExpectSameData(data, EStreamData(EStreamData::kActionInvalid, 0, 0, 0));
  EXPECT_STREQ(data.GetActionAsString(), "invalid");
  EStreamData copy;
  copy.Copy(EStreamData(EStreamData::kDelete, 1, 2, 3));
  ExpectSameData(copy, EStreamData(EStreamData::kDelete, 1, 2, 3));
  EStreamData assigned;
  assigned = copy;
  ExpectSameData(assigned, copy);
  const char* const texts[] = {"invalid", "add", "delete", "set", ""};
  for (unsigned int action = 0; action < 5; ++action) {
    const EStreamData entry(static_cast<EStreamData::eAction>(action), 0, 0, 0);
    const ChildResult result = RunInChild([&entry] { entry.GetActionAsString(); });
    EXPECT_EQ(result.output, "");  // never prints, even for an unknown action
    EXPECT_STREQ(entry.GetActionAsString(), texts[action]);
  }
}

TEST(EStreamData, ArchiveBytesRoundTripAndWrongSignature) {
  EXPECT_EQ(BytesOf(EStreamData()), "3351057 0 0 0 0 ");
  const EStreamData data(static_cast<EStreamData::eAction>(4000000000u), 4294967295u, 9, 10);
  EXPECT_EQ(BytesOf(data), "3351057 4000000000 4294967295 9 10 ");
  EStreamData read(EStreamData::kAdd, 1, 1, 1);
  ReadFrom(BytesOf(data), read);
  ExpectSameData(read, data);
  ExpectSerializeError(
      [] {
        EStreamData entry;
        ReadFrom("3351058 0 0 0 0 ", entry);
      },
      "x86_64/common/ehal/eStreamConfig", 101, "eHal::EStreamConfig::EStreamData::SerializeIn");
}

TEST(EStreamConfig, Defaults) {
  EStreamConfig config;
  EXPECT_EQ(config.GetRequestType(), EStreamConfig::kInvalid);
  EXPECT_EQ(config.GetReturnCode(), EStreamConfig::kFailure);
  EXPECT_EQ(config.GetStreamStartOffset(), 0u);
  EXPECT_EQ(config.GetStreamCount(), 0u);
  EXPECT_TRUE(config.GetStreamConfigMap().empty());
  EXPECT_EQ(BytesOf(config), "1122867 0 1 0 0 0 ");
  config = FilledRecord();
  config.Empty();
  ExpectSameConfig(config, EStreamConfig());
}

TEST(EStreamConfig, CopyAndAccessors) {
  const EStreamConfig filled = FilledRecord();
  EStreamConfig copy(filled);
  ExpectSameConfig(copy, filled);
  EStreamConfig::EStreamDataMap map;
  map[1] = EStreamData(EStreamData::kAdd, 2, 3, 4);
  copy.SetStreamConfigMap(map);
  ASSERT_EQ(copy.GetStreamConfigMap().size(), 1u);
  ExpectSameData(copy.GetStreamConfigMap().at(1), map[1]);
  EXPECT_EQ(filled.GetStreamConfigMap().size(), 2u);  // the copy is deep
}

TEST(EStreamConfig, ArchiveInAscendingStreamIdOrder) {
  // Stream 7 was entered before stream 3, yet 3 is archived first.
  EXPECT_EQ(BytesOf(FilledRecord()), kFilledBytes);
  EStreamConfig read;
  read.GetStreamConfigMap()[99] = EStreamData();
  ReadFrom(kFilledBytes, read);
  ExpectSameConfig(read, FilledRecord());
  EXPECT_EQ(read.GetStreamConfigMap().count(99), 0u);
}

TEST(EStreamConfig, WrongSignaturesEndTheProcess) {
  ExpectSerializeError(
      [] {
        EStreamConfig config;
        ReadFrom("1122868 0 1 0 0 0 ", config);
      },
      "x86_64/common/ehal/eStreamConfig", 186, "eHal::EStreamConfig::SerializeIn");
  ExpectSerializeError(
      [] {
        EStreamConfig config;
        ReadFrom("1122867 0 1 0 0 1 3 3351056 1 30 0 0 ", config);
      },
      "x86_64/common/ehal/eStreamConfig", 101, "eHal::EStreamConfig::EStreamData::SerializeIn");
}

TEST(EStreamConfig, SetReturnCodeFromText) {
  EStreamConfig config;
  config.SetReturnCode("success");
  EXPECT_EQ(config.GetReturnCode(), EStreamConfig::kSuccess);
  for (const char* text : {"Success", "success ", "successful", "succes", "", "failure"}) {
    config.SetReturnCode(EStreamConfig::kSuccess);
    config.SetReturnCode(text);
    EXPECT_EQ(config.GetReturnCode(), EStreamConfig::kFailure) << text;
  }
  config.SetReturnCode(EStreamConfig::kSuccess);
  config.SetReturnCode(static_cast<const char*>(nullptr));
  EXPECT_EQ(config.GetReturnCode(), EStreamConfig::kFailure);
}

TEST(EStreamConfig, RequestTypeTexts) {
  const char* const texts[] = {"invalid",  "full",       "delta",      "clear",
                               "register", "unregister", "ackFromPCPU"};
  for (unsigned int type = 0; type < 7; ++type) {
    EStreamConfig config;
    config.SetRequestType(static_cast<EStreamConfig::eRequestType>(type));
    EXPECT_STREQ(config.GetRequestTypeAsString(), texts[type]);
    const ChildResult result = RunInChild([&config] { config.GetRequestTypeAsString(); });
    EXPECT_EQ(result.output, "");
  }
}

TEST(EStreamConfig, UnknownRequestTypePrintsReturningDefault) {
  for (unsigned int type : {7u, 4294967295u}) {
    EStreamConfig config;
    config.SetRequestType(static_cast<EStreamConfig::eRequestType>(type));
    const ChildResult result = RunInChild([&config] {
      const char* text = config.GetRequestTypeAsString();
      std::printf("[%s]", text);
    });
    EXPECT_TRUE(result.exited);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "returning default \n[]");
  }
}

}  // namespace
