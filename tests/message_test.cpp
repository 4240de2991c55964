#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <type_traits>
#include <thread>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "damaged_streams.h"
#include "eComponentId.h"
#include "eGlobalMessage.h"
#include "eMessage.h"
#include "eOutgoingGlobalMessage.h"
#include "eOutgoingMessage.h"
#include "eOutgoingProtocolMessage.h"
#include "eSwitchUpdateMessage.h"
#include "eTableName.h"
#include "eTableMessage.h"

namespace {

using eHal::EClientID;
using eHal::EMessage;
using eHal::EOutgoingGlobalMessage;
using eHal::EOutgoingMessage;
using eHal::EOutgoingProtocolMessage;
using eHal::EProtocolName;
using eHal::ETableMessage;
using eHal::ETableName;

// Archive texts of the nested records used below.
const std::string kEmptyClient = "1167589410 0 0 ";
const std::string kClientGui = "1167589410 3 gui-2 ";
const std::string kEmptyPayload = "287454021 0 ";
const std::string kPayloadAB = "287454021 2 AB";

EClientID Client(const std::string& major, int minor) {
  EClientID id;
  id.SetMajorID(major);
  id.SetMinorID(minor);
  return id;
}

template <typename Type>
Type As(unsigned int value) {
  return static_cast<Type>(value);
}

// ---- eHal::EMessage ----

EMessage FullMessage() {
  EMessage message;
  message.SetMessage(As<EMessage::eMessageType>(9), BlobOf("AB"));
  message.SetDestination(As<EMessage::eMessageDestination>(5));
  message.SetClientID(Client("gui", -2));
  message.SetMessagePortId(7);
  message.SetMessagePortCount(4);
  return message;
}

// A message whose every field differs from FullMessage's, to see which fields a read replaces.
EMessage Prefilled() {
  EMessage message;
  message.SetMessage(As<EMessage::eMessageType>(77), BlobOf("old"));
  message.SetDestination(As<EMessage::eMessageDestination>(66));
  message.SetClientID(Client("old", 1));
  message.SetMessagePortId(55);
  message.SetMessagePortCount(44);
  return message;
}

TEST(EMessage, Defaults) {
  const EMessage message;
  EXPECT_EQ(message.GetMessageType(), 0u);
  EXPECT_EQ(message.GetDestination(), 1u);
  EXPECT_EQ(message.GetDestination(), EMessage::kDefaultDestination);
  EXPECT_EQ(message.GetMessage().GetSize(), 0u);
  EXPECT_EQ(message.GetClientID().GetMajorID(), "");
  EXPECT_EQ(message.GetClientID().GetMinorID(), 0);
  EXPECT_EQ(message.GetMessagePortId(), 0u);
  EXPECT_EQ(message.GetPortID(), 0u);
  EXPECT_EQ(message.GetMessagePortCount(), 1u);
}

TEST(EMessage, DefaultArchiveForm) {
  EXPECT_EQ(BytesOf(EMessage()), "3 1 0 1 " + kEmptyClient + "0 " + kEmptyPayload);
}

// Every field of a message in one line, so that a test states at once which fields a read
// replaced and which it kept.
std::string Fields(const EMessage& message) {
  return "count " + std::to_string(message.GetMessagePortCount()) + ", port " +
         std::to_string(message.GetMessagePortId()) + ", destination " +
         std::to_string(message.GetDestination()) + ", client " +
         message.GetClientID().GetMajorID() + "/" +
         std::to_string(message.GetClientID().GetMinorID()) + ", type " +
         std::to_string(message.GetMessageType()) + ", payload " + TextOf(message.GetMessage());
}

const std::string kPrefilledFields =
    "count 44, port 55, destination 66, client old/1, type 77, payload old";

TEST(EMessage, FullArchiveFormAndRoundTrip) {
  const std::string bytes = "3 4 7 5 " + kClientGui + "9 " + kPayloadAB;
  EXPECT_EQ(BytesOf(FullMessage()), bytes);
  EMessage back = Prefilled();
  EXPECT_EQ(Fields(back), kPrefilledFields);
  ReadFrom(bytes, back);
  EXPECT_EQ(Fields(back), "count 4, port 7, destination 5, client gui/-2, type 9, payload AB");
}

TEST(EMessage, DestinationTravelsAsOneByte) {
  EMessage message;
  message.SetDestination(As<EMessage::eMessageDestination>(0x101));
  EXPECT_EQ(BytesOf(message), "3 1 0 1 " + kEmptyClient + "0 " + kEmptyPayload);
  EMessage back;
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetDestination(), 1u);
  // A sender that wrote a wider number is cut to eight bits on reading.
  ReadFrom("3 1 0 258 " + kEmptyClient + "0 " + kEmptyPayload, back);
  EXPECT_EQ(back.GetDestination(), 2u);
}

TEST(EMessage, Version2KeepsThePortCount) {
  EMessage back = Prefilled();
  ReadFrom("2 7 5 " + kClientGui + "9 " + kPayloadAB, back);
  EXPECT_EQ(Fields(back), "count 44, port 7, destination 5, client gui/-2, type 9, payload AB");
}

TEST(EMessage, Version1KeepsPortIdAndCount) {
  EMessage back = Prefilled();
  ReadFrom("1 5 " + kClientGui + "9 " + kPayloadAB, back);
  EXPECT_EQ(Fields(back), "count 44, port 55, destination 5, client gui/-2, type 9, payload AB");
}

TEST(EMessage, OlderSignaturesWithClientId) {
  for (const char* signature : {"1998716963 ", "1998716964 "}) {
    EMessage back = Prefilled();
    ReadFrom(signature + kClientGui + "9 " + kPayloadAB, back);
    EXPECT_EQ(Fields(back), "count 44, port 55, destination 66, client gui/-2, type 9, payload AB")
        << signature;
  }
}

TEST(EMessage, OldestSignatureCarriesTypeAndPayloadOnly) {
  EMessage back = Prefilled();
  ReadFrom("1998716962 9 " + kPayloadAB, back);
  EXPECT_EQ(Fields(back), "count 44, port 55, destination 66, client old/1, type 9, payload AB");
}

TEST(EMessage, UnknownLeadingNumbers) {
  for (const char* leading : {"0 ", "4 ", "1998716965 "}) {
    ExpectSerializeError(
        [leading] {
          EMessage message;
          ReadFrom(std::string(leading) + "1 0 1 " + kEmptyClient + "0 " + kEmptyPayload, message);
        },
        "x86_64/common/ehal/eMessage", 157, "eHal::EMessage::SerializeIn");
  }
}

TEST(EMessage, CopyAssignAndSetters) {
  const EMessage message = FullMessage();
  EMessage copy(message);
  EXPECT_EQ(BytesOf(copy), BytesOf(message));
  EMessage assigned;
  assigned = message;
  assigned = assigned;
  EXPECT_EQ(BytesOf(assigned), BytesOf(message));
  assigned.SetMessage(BlobOf("xyz"));
  EXPECT_EQ(TextOf(assigned.GetMessage()), "xyz");
  EXPECT_EQ(assigned.GetMessageType(), 9u);
  assigned.SetMessageType(As<EMessage::eMessageType>(3));
  EXPECT_EQ(assigned.GetMessageType(), 3u);
  assigned.Empty();
  EXPECT_EQ(BytesOf(assigned), BytesOf(EMessage()));
}

TEST(EMessage, SequenceNumbersIncrease) {
  const unsigned int first = EMessage::GetNextSequenceNumber();
  const unsigned int second = EMessage::GetNextSequenceNumber();
  EXPECT_GE(first, 1u);
  EXPECT_EQ(second, first + 1);
}

// The first number after load is 1. Other tests of this program take numbers too, so the check
// runs in a freshly started copy of the program that takes exactly one.
TEST(EMessage, FirstSequenceNumberAfterLoadIsOne) {
  if (std::getenv("EHAL_FRESH_SEQUENCE") != nullptr) {
    std::printf("first sequence number %u\n", EMessage::GetNextSequenceNumber());
    return;
  }
  char self[4096] = {};
  ASSERT_GT(readlink("/proc/self/exe", self, sizeof self - 1), 0);
  const std::string command = std::string("EHAL_FRESH_SEQUENCE=1 '") + self +
                              "' --gtest_filter=EMessage.FirstSequenceNumberAfterLoadIsOne";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  char buffer[256];
  while (std::fgets(buffer, sizeof buffer, pipe) != nullptr)
    output += buffer;
  EXPECT_EQ(pclose(pipe), 0);
  EXPECT_NE(output.find("first sequence number 1\n"), std::string::npos) << output;
}

// ---- EGlobalMessage ----

TEST(EGlobalMessage, DefaultsAndArchiveForm) {
  EGlobalMessage message;
  EXPECT_EQ(message.GetMessageType(), 0u);
  EXPECT_EQ(message.GetObjectType(), 0u);
  EXPECT_EQ(message.GetMessage().GetSize(), 0u);
  EXPECT_EQ(BytesOf(message), "1428291619 0 0 " + kEmptyPayload);
  message.SetMessage(As<EGlobalMessage::eMessageType>(21), BlobOf("AB"));
  message.SetObjectType(6);
  EXPECT_EQ(BytesOf(message), "1428291619 6 21 " + kPayloadAB);
  EGlobalMessage back;
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetObjectType(), 6u);
  EXPECT_EQ(back.GetMessageType(), 21u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
}

TEST(EGlobalMessage, OlderLayoutSetsObjectTypeZero) {
  EGlobalMessage back;
  back.SetObjectType(6);
  ReadFrom("1428291618 22 " + kPayloadAB, back);
  EXPECT_EQ(back.GetObjectType(), 0u);
  EXPECT_EQ(back.GetMessageType(), 22u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
}

TEST(EGlobalMessage, IsGetMessageAbove20) {
  EGlobalMessage message;
  message.SetMessageType(As<EGlobalMessage::eMessageType>(20));
  EXPECT_FALSE(message.IsGetMessage());
  message.SetMessageType(As<EGlobalMessage::eMessageType>(21));
  EXPECT_TRUE(message.IsGetMessage());
  message.SetMessageType(As<EGlobalMessage::eMessageType>(0));
  EXPECT_FALSE(message.IsGetMessage());
  message.SetMessageType(As<EGlobalMessage::eMessageType>(0xFFFFFFFFu));  // taken as unsigned
  EXPECT_TRUE(message.IsGetMessage());
}

TEST(EGlobalMessage, CopyAndAssign) {
  EGlobalMessage message;
  message.SetMessage(As<EGlobalMessage::eMessageType>(3), BlobOf("AB"));
  message.SetObjectType(2);
  EGlobalMessage copy(message);
  EXPECT_EQ(BytesOf(copy), BytesOf(message));
  EGlobalMessage assigned;
  assigned = message;
  assigned = assigned;
  EXPECT_EQ(BytesOf(assigned), BytesOf(message));
  assigned.Empty();
  EXPECT_EQ(BytesOf(assigned), BytesOf(EGlobalMessage()));
}

TEST(EGlobalMessage, WrongSignatureNamesTheHalNamespace) {
  ExpectSerializeError(
      [] {
        EGlobalMessage message;
        ReadFrom("1713504291 0 0 " + kEmptyPayload, message);
      },
      "x86_64/common/ehal/eGlobalMessage", 105, "eHal::EGlobalMessage::SerializeIn");
}

// ---- eHal::EOutgoingGlobalMessage ----

TEST(EOutgoingGlobalMessage, DefaultsAndArchiveForm) {
  EOutgoingGlobalMessage message;
  EXPECT_EQ(message.GetObjectType(), 1u);
  EXPECT_EQ(message.GetObjectType(), EOutgoingGlobalMessage::kDefaultObjectType);
  EXPECT_EQ(BytesOf(message), "1713504291 1 0 " + kEmptyPayload);
  message.SetMessage(As<EOutgoingGlobalMessage::eMessageType>(8), BlobOf("AB"));
  message.SetObjectType(As<EOutgoingGlobalMessage::eObjectType>(3));
  EXPECT_EQ(BytesOf(message), "1713504291 3 8 " + kPayloadAB);
  EOutgoingGlobalMessage back;
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetObjectType(), 3u);
  EXPECT_EQ(back.GetMessageType(), 8u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
  EOutgoingGlobalMessage copy(back);
  copy = copy;
  EXPECT_EQ(BytesOf(copy), BytesOf(message));
}

TEST(EOutgoingGlobalMessage, OlderLayoutSetsObjectTypeOne) {
  EOutgoingGlobalMessage back;
  back.SetObjectType(As<EOutgoingGlobalMessage::eObjectType>(3));
  ReadFrom("1713504290 8 " + kPayloadAB, back);
  EXPECT_EQ(back.GetObjectType(), 1u);
  EXPECT_EQ(back.GetMessageType(), 8u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
}

TEST(EOutgoingGlobalMessage, WrongSignature) {
  ExpectSerializeError(
      [] {
        EOutgoingGlobalMessage message;
        ReadFrom("1428291619 1 0 " + kEmptyPayload, message);
      },
      "x86_64/common/ehal/eOutgoingGlobalMessage", 104,
      "eHal::EOutgoingGlobalMessage::SerializeIn");
}

// ---- eHal::EOutgoingMessage ----

EOutgoingMessage PrefilledOutgoing() {
  EOutgoingMessage message;
  message.SetMessage(As<EOutgoingMessage::eMessageType>(77), BlobOf("old"));
  message.SetClientID(Client("old", 1));
  message.SetPortID(55);
  return message;
}

TEST(EOutgoingMessage, DefaultsAndArchiveForm) {
  EOutgoingMessage message;
  EXPECT_EQ(message.GetPortId(), 0u);
  EXPECT_EQ(message.GetClientID().GetMajorID(), "");
  EXPECT_EQ(BytesOf(message), "857883735 0 " + kEmptyClient + "0 " + kEmptyPayload);
  message.SetMessage(As<EOutgoingMessage::eMessageType>(9), BlobOf("AB"));
  message.SetClientID(Client("gui", -2));
  message.SetPortID(7);
  EXPECT_EQ(BytesOf(message), "857883735 7 " + kClientGui + "9 " + kPayloadAB);
  EOutgoingMessage back = PrefilledOutgoing();
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetPortId(), 7u);
  EXPECT_EQ(back.GetClientID().GetMinorID(), -2);
  EXPECT_EQ(back.GetMessageType(), 9u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
}

TEST(EOutgoingMessage, GetMessageReturnsTheHeldPayload) {
  EOutgoingMessage message;
  message.SetMessage(BlobOf("AB"));
  static_assert(std::is_same_v<decltype(message.GetMessage()), const EBlob&>,
                "EOutgoingMessage hands out the payload it holds");
  EOutgoingMessage copy(message);
  copy = copy;
  EXPECT_EQ(TextOf(copy.GetMessage()), "AB");
}

TEST(EOutgoingMessage, OlderLayoutsKeepMissingFields) {
  EOutgoingMessage back = PrefilledOutgoing();
  ReadFrom("857883734 " + kClientGui + "9 " + kPayloadAB, back);
  EXPECT_EQ(back.GetPortId(), 55u);
  EXPECT_EQ(back.GetClientID().GetMajorID(), "gui");
  EXPECT_EQ(back.GetMessageType(), 9u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");

  back = PrefilledOutgoing();
  ReadFrom("857883733 9 " + kPayloadAB, back);
  EXPECT_EQ(back.GetPortId(), 55u);
  EXPECT_EQ(back.GetClientID().GetMajorID(), "old");
  EXPECT_EQ(back.GetClientID().GetMinorID(), 1);
  EXPECT_EQ(back.GetMessageType(), 9u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
}

TEST(EOutgoingMessage, WrongSignature) {
  ExpectSerializeError(
      [] {
        EOutgoingMessage message;
        ReadFrom("857883736 0 " + kEmptyClient + "0 " + kEmptyPayload, message);
      },
      "x86_64/common/ehal/eOutgoingMessage", 111, "eHal::EOutgoingMessage::SerializeIn");
}

// ---- eHal::EOutgoingProtocolMessage ----

TEST(EOutgoingProtocolMessage, DefaultsAndArchiveForm) {
  EOutgoingProtocolMessage message;
  EXPECT_EQ(message.GetObjectType(), 2u);
  EXPECT_EQ(message.GetProtocolName().GetProtocolName(), "UnknownProtocol");
  EXPECT_EQ(BytesOf(message), "286400515 2 0 " + kEmptyPayload + "1109524514 15 UnknownProtocol");
  message.SetMessage(As<EOutgoingProtocolMessage::eMessageType>(4), BlobOf("AB"));
  message.SetObjectType(9);
  message.SetProtocolName(EProtocolName("BGP"));
  EXPECT_EQ(BytesOf(message), "286400515 9 4 " + kPayloadAB + "1109524514 3 BGP");
  EOutgoingProtocolMessage back;
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetObjectType(), 9u);
  EXPECT_EQ(back.GetMessageType(), 4u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
  EXPECT_TRUE(back.GetProtocolName() == "BGP");
  EOutgoingProtocolMessage copy(back);
  copy = copy;
  EXPECT_EQ(BytesOf(copy), BytesOf(message));
}

TEST(EOutgoingProtocolMessage, OlderLayoutSetsObjectTypeZero) {
  EOutgoingProtocolMessage back;
  back.SetObjectType(9);
  ReadFrom("286400514 4 " + kPayloadAB + "1109524514 3 RIP", back);
  EXPECT_EQ(back.GetObjectType(), 0u);
  EXPECT_EQ(back.GetMessageType(), 4u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
  EXPECT_TRUE(back.GetProtocolName() == "RIP");
  back.Empty();
  EXPECT_EQ(back.GetObjectType(), 2u);
}

TEST(EOutgoingProtocolMessage, WrongSignature) {
  ExpectSerializeError(
      [] {
        EOutgoingProtocolMessage message;
        ReadFrom("286400516 2 0 " + kEmptyPayload, message);
      },
      "x86_64/common/ehal/eOutgoingProtocolMessage", 116,
      "eHal::EOutgoingProtocolMessage::SerializeIn");
}

// ---- eHal::ETableMessage ----

TEST(ETableMessage, DefaultsAndArchiveForm) {
  ETableMessage message;
  EXPECT_EQ(message.GetTableName().GetTableName(), "UnknownTable");
  EXPECT_EQ(BytesOf(message), "572653602 0 " + kEmptyPayload + "841089058 12 UnknownTable");
  message.SetMessage(As<ETableMessage::eMessageType>(2), BlobOf("AB"));
  message.SetTableName(ETableName(ETableName::IPAddressTableName));
  EXPECT_EQ(BytesOf(message), "572653602 2 " + kPayloadAB + "841089058 14 IPADDRESSTABLE");
  ETableMessage back;
  ReadFrom(BytesOf(message), back);
  EXPECT_EQ(back.GetMessageType(), 2u);
  EXPECT_EQ(TextOf(back.GetMessage()), "AB");
  static_assert(std::is_same_v<decltype(back.GetMessage()), const EBlob&>,
                "ETableMessage hands out the payload it holds");
  EXPECT_EQ(back.GetTableName().GetTableName(), "IPADDRESSTABLE");
  ETableMessage copy(back);
  copy = copy;
  EXPECT_EQ(BytesOf(copy), BytesOf(message));
  copy.Empty();
  EXPECT_EQ(BytesOf(copy), BytesOf(ETableMessage()));
}

TEST(ETableMessage, IsGetMessageOnlyForThree) {
  ETableMessage message;
  for (unsigned int type : {0u, 1u, 2u, 4u, 6u, 7u, 21u}) {
    message.SetMessageType(As<ETableMessage::eMessageType>(type));
    EXPECT_FALSE(message.IsGetMessage()) << type;
  }
  message.SetMessageType(ETableMessage::kGetMessage);
  EXPECT_TRUE(message.IsGetMessage());
  EXPECT_EQ(ETableMessage::kGetMessage, 3u);
}

TEST(ETableMessage, WrongSignature) {
  ExpectSerializeError(
      [] {
        ETableMessage message;
        ReadFrom("572653603 0 " + kEmptyPayload, message);
      },
      "x86_64/common/ehal/eTableMessage", 101, "eHal::ETableMessage::SerializeIn");
}

// ---- ESwitchUpdateMessage ----

SwitchUpdateEntry Entry(unsigned int first, unsigned int second, unsigned char lastOctet,
                        unsigned short value) {
  SwitchUpdateEntry entry;
  entry.m_FirstValue = first;
  entry.m_SecondValue = second;
  for (unsigned char i = 0; i < 6; ++i)
    entry.m_Octets[i] = static_cast<unsigned char>(i * 0x11);
  entry.m_Octets[5] = lastOctet;
  entry.m_Value = value;
  return entry;
}

TEST(ESwitchUpdateMessage, DefaultsAndArchiveForm) {
  ESwitchUpdateMessage message;
  EXPECT_TRUE(message.m_Entries.empty());
  EXPECT_EQ(message.m_FirstHeaderValue, 0);
  EXPECT_EQ(message.m_SecondHeaderValue, 0);
  EXPECT_EQ(BytesOf(message), "8 0 0 0 ");
  message.m_FirstHeaderValue = -1;
  message.m_SecondHeaderValue = 2;
  message.m_Entries.push_back(Entry(300, 4, 255, 65535));
  message.m_Entries.push_back(Entry(1, 2, 3, 4));
  EXPECT_EQ(BytesOf(message), "8 -1 2 2 44 4 0 17 34 51 68 255 65535 1 2 0 17 34 51 68 3 4 ");
}

TEST(ESwitchUpdateMessage, ReadsEntriesInOrderWideningBytes) {
  ESwitchUpdateMessage back;
  back.m_Entries.push_back(Entry(9, 9, 9, 9));
  ReadFrom("8 -1 2 2 44 4 0 17 34 51 68 255 65535 1 2 0 17 34 51 68 3 4 ", back);
  EXPECT_EQ(back.m_FirstHeaderValue, -1);
  EXPECT_EQ(back.m_SecondHeaderValue, 2);
  ASSERT_EQ(back.m_Entries.size(), 2u);
  const SwitchUpdateEntry& first = back.m_Entries.front();
  EXPECT_EQ(first.m_FirstValue, 44u);
  EXPECT_EQ(first.m_SecondValue, 4u);
  EXPECT_EQ(first.m_Octets[1], 0x11);
  EXPECT_EQ(first.m_Octets[5], 255);
  EXPECT_EQ(first.m_Value, 65535);
  EXPECT_EQ(back.m_Entries.back().m_Value, 4);
  // A value above a byte from a foreign writer is cut to eight bits.
  ReadFrom("8 0 0 1 258 1 0 0 0 0 0 0 0 ", back);
  ASSERT_EQ(back.m_Entries.size(), 1u);
  EXPECT_EQ(back.m_Entries.front().m_FirstValue, 2u);
}

TEST(ESwitchUpdateMessage, ZeroOrNegativeCountEmptiesTheList) {
  for (const char* bytes : {"8 5 6 0 ", "8 5 6 -3 1 2 3 4 5 6 7 8 9 "}) {
    ESwitchUpdateMessage back;
    back.m_Entries.push_back(Entry(1, 2, 3, 4));
    ReadFrom(bytes, back);
    EXPECT_TRUE(back.m_Entries.empty()) << bytes;
    EXPECT_EQ(back.m_FirstHeaderValue, 5) << bytes;
    EXPECT_EQ(back.m_SecondHeaderValue, 6) << bytes;
  }
}

TEST(ESwitchUpdateMessage, OnlyVersionEight) {
  for (const char* bytes : {"7 0 0 0 ", "9 0 0 0 "}) {
    ExpectSerializeError(
        [bytes] {
          ESwitchUpdateMessage message;
          ReadFrom(bytes, message);
        },
        "x86_64/common/ehal/eSwitchUpdateMessage", 94, "ESwitchUpdateMessage::SerializeIn");
  }
}

// ---- the sequence counter under concurrency ----

TEST(EMessageConcurrency, TwoThreadsReceiveDistinctNumbers) {
  constexpr int kPerThread = 1000;
  std::vector<unsigned int> first(kPerThread);
  std::vector<unsigned int> second(kPerThread);
  auto take = [](std::vector<unsigned int>& numbers) {
    for (unsigned int& number : numbers)
      number = EMessage::GetNextSequenceNumber();
  };
  std::thread one(take, std::ref(first));
  std::thread two(take, std::ref(second));
  one.join();
  two.join();
  std::set<unsigned int> all(first.begin(), first.end());
  all.insert(second.begin(), second.end());
  EXPECT_EQ(all.size(), 2u * kPerThread);
  // Each thread sees its own numbers increase, and together they form one consecutive run.
  EXPECT_TRUE(std::is_sorted(first.begin(), first.end()));
  EXPECT_TRUE(std::is_sorted(second.begin(), second.end()));
  EXPECT_EQ(*all.rbegin() - *all.begin(), 2u * kPerThread - 1);
}

}  // namespace

// ---- readers on cut-off streams ----

TEST(EnvelopeReaders, SurviveEveryCutOffStream) {
  EXPECT_GT(ReadEveryPrefix<EMessage>(BytesOf(FullMessage())), 0);
  EGlobalMessage global;
  global.SetMessage(As<EGlobalMessage::eMessageType>(21), BlobOf("AB"));
  EXPECT_GT(ReadEveryPrefix<EGlobalMessage>(BytesOf(global)), 0);
  EXPECT_GT(ReadEveryPrefix<EOutgoingGlobalMessage>(BytesOf(EOutgoingGlobalMessage())), 0);
  EXPECT_GT(ReadEveryPrefix<EOutgoingMessage>(BytesOf(PrefilledOutgoing())), 0);
  EXPECT_GT(ReadEveryPrefix<EOutgoingProtocolMessage>(BytesOf(EOutgoingProtocolMessage())), 0);
  EXPECT_GT(ReadEveryPrefix<ETableMessage>(BytesOf(ETableMessage())), 0);
  ESwitchUpdateMessage update;
  update.m_Entries.push_back(Entry(1, 2, 3, 4));
  update.m_Entries.push_back(Entry(5, 6, 7, 8));
  EXPECT_GT(ReadEveryPrefix<ESwitchUpdateMessage>(BytesOf(update)), 0);
}

TEST(EnvelopeReaders, SurviveOneDamagedByte) {
  EXPECT_GT(ReadEveryOneByteDamage<EMessage>(BytesOf(FullMessage())), 0);
  EXPECT_GT(ReadEveryOneByteDamage<EOutgoingMessage>(BytesOf(PrefilledOutgoing())), 0);
  EXPECT_GT(ReadEveryOneByteDamage<EOutgoingProtocolMessage>(BytesOf(EOutgoingProtocolMessage())),
            0);
  EXPECT_GT(ReadEveryOneByteDamage<ETableMessage>(BytesOf(ETableMessage())), 0);
  ESwitchUpdateMessage update;
  update.m_Entries.push_back(Entry(1, 2, 3, 4));
  EXPECT_GT(ReadEveryOneByteDamage<ESwitchUpdateMessage>(BytesOf(update)), 0);
}

TEST(NameAndIdReaders, SurviveCutOffAndDamagedStreams) {
  const std::string component = BytesOf(EComponentId(std::vector<unsigned int>{1, 2, 3}));
  EXPECT_GT(ReadEveryPrefix<EComponentId>(component), 0);
  EXPECT_GT(ReadEveryOneByteDamage<EComponentId>(component), 0);
  // EMultiComponentId is left out: a cut-off or merged token in its first vector makes its leaf
  // count be read after the stream restarts, from the signature, asking for ~400 million leaves.
  const std::string client = BytesOf(Client("gui", -2));
  EXPECT_GT(ReadEveryPrefix<EClientID>(client), 0);
  EXPECT_GT(ReadEveryOneByteDamage<EClientID>(client), 0);
  const std::string protocol = BytesOf(EProtocolName("OSPFv3"));
  EXPECT_GT(ReadEveryPrefix<EProtocolName>(protocol), 0);
  EXPECT_GT(ReadEveryOneByteDamage<EProtocolName>(protocol), 0);
  const std::string table = BytesOf(ETableName("IPADDRESSTABLE"));
  EXPECT_GT(ReadEveryPrefix<ETableName>(table), 0);
  EXPECT_GT(ReadEveryOneByteDamage<ETableName>(table), 0);
}
