#include "eCommandLog.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "damaged_streams.h"
#include "eArchive.h"

namespace {

using eHal::EMessage;
using eHal::ETableMessage;
using eHal::ETableName;
using Path = std::vector<unsigned int>;
using Messages = std::list<EMessage>;

// Archive texts of the nested records.
const std::string kEmptyId = "403771665 0 0 ";
const std::string kEmptyData = "287454021 0 ";

constexpr ECommandLog::eCommandTarget kBGP = ECommandLog::kBGPServerTarget;    // 4
constexpr ECommandLog::eCommandTarget kOSPF = ECommandLog::kOSPFServerTarget;  // 3

ESingleCommand::eAction Action(int value) {
  return static_cast<ESingleCommand::eAction>(value);
}

// A command with every field set.
ESingleCommand Filled() {
  ESingleCommand command;
  command.SetAction(Action(-4));
  command.GetData() = BlobOf("AB");
  command.SetId(EMultiComponentId(Path{1, 2}, Path{3}));
  command.SetEditSubId(Path{7, 8});
  return command;
}
const std::string kFilledFields = "2 7 8 -4 403771665 2 1 2 1 3 287454021 2 AB";
const std::string kFilledBytes = "1 " + kFilledFields;

// A command whose data is `size` bytes of a pattern that `seed` shifts, and whose action and id
// tell it apart.
ESingleCommand WithData(unsigned int size, unsigned int seed = 0) {
  ESingleCommand command;
  command.SetAction(Action(static_cast<int>(seed)));
  command.SetId(EMultiComponentId(Path{9}, Path{seed + 1}));
  std::string bytes(size, '\0');
  for (unsigned int i = 0; i < size; ++i)
    bytes[i] = static_cast<char>(i * 31 + seed);
  command.GetData() = BlobOf(bytes);
  return command;
}

ECommandLog LogOf(const std::vector<unsigned int>& dataSizes,
                  ECommandLog::eCommandTarget target = kBGP) {
  ECommandLog log;
  unsigned int seed = 0;
  for (const unsigned int size : dataSizes)
    log.AddCommand(target, WithData(size, seed++));
  return log;
}

// The table message inside an envelope that GetMessages built.
ETableMessage TableOf(const EMessage& message) {
  ETableMessage table;
  EArchive archive = LoadingArchive(TextOf(message.GetMessage()));
  archive >> table;
  return table;
}

ETableMessage TableMessage(unsigned int type, const std::string& payload) {
  ETableMessage table;
  table.SetMessage(static_cast<ETableMessage::eMessageType>(type), BlobOf(payload));
  return table;
}

// The data sizes of the commands of a log, in order.
std::vector<unsigned int> DataSizes(const ECommandLog& log) {
  std::vector<unsigned int> sizes;
  for (auto item = log.begin(); item != log.end(); item = ECommandLog::GetNextItem(item))
    sizes.push_back(item->GetData().GetSize());
  return sizes;
}

// The data sizes carried by each message that GetMessages makes of `log`.
std::vector<std::vector<unsigned int>> Batches(const ECommandLog& log) {
  Messages messages;
  log.GetMessages(ETableName("T"), messages);
  std::vector<std::vector<unsigned int>> batches;
  for (const EMessage& message : messages) {
    ECommandLog part;
    part.ExpandFromMessage(kBGP, TableOf(message));
    batches.push_back(DataSizes(part));
  }
  return batches;
}

// ---- ESingleCommand ----

TEST(ESingleCommand, DefaultsAndAccessors) {
  const ESingleCommand empty;
  EXPECT_EQ(empty.GetAction(), 0);
  EXPECT_EQ(empty.GetData().GetSize(), 0u);
  EXPECT_TRUE(empty.GetId() == EMultiComponentId());
  EXPECT_TRUE(empty.GetEditSubId().empty());

  const ESingleCommand command = Filled();
  EXPECT_EQ(command.GetAction(), -4);
  EXPECT_EQ(TextOf(command.GetData()), "AB");
  EXPECT_EQ(command.GetId().GetId(), (Path{1, 2}));
  EXPECT_EQ(command.GetId().GetLeaves(), (Path{3}));
  EXPECT_EQ(command.GetEditSubId(), (Path{7, 8}));
}

TEST(ESingleCommand, GetDataHandsOutTheHeldBlob) {
  ESingleCommand command;
  command.GetData().SetData("xyz", 3);
  EXPECT_EQ(TextOf(command.GetData()), "xyz");
  const ESingleCommand& constant = command;
  EXPECT_EQ(&constant.GetData(), &command.GetData());
}

TEST(ESingleCommand, CopyAssignSwapAndEmpty) {
  const ESingleCommand filled = Filled();
  ESingleCommand copy(filled);
  EXPECT_EQ(BytesOf(copy), kFilledBytes);
  ESingleCommand assigned;
  assigned = filled;
  EXPECT_EQ(BytesOf(assigned), kFilledBytes);
  assigned = assigned;
  EXPECT_EQ(BytesOf(assigned), kFilledBytes);
  ESingleCommand copied = WithData(5, 1);
  copied.Copy(filled);
  EXPECT_EQ(BytesOf(copied), kFilledBytes);

  ESingleCommand other = WithData(3, 2);
  const std::string otherBytes = BytesOf(other);
  const unsigned char* data = copy.GetData().GetData();
  other.Swap(copy);
  EXPECT_EQ(BytesOf(other), kFilledBytes);
  EXPECT_EQ(BytesOf(copy), otherBytes);
  EXPECT_EQ(other.GetData().GetData(), data);  // the data moved, it was not copied

  other.Empty();
  EXPECT_EQ(BytesOf(other), BytesOf(ESingleCommand()));
}

TEST(ESingleCommand, ArchiveBytes) {
  EXPECT_EQ(BytesOf(ESingleCommand()), "1 0 0 " + kEmptyId + kEmptyData);
  EXPECT_EQ(BytesOf(Filled()), kFilledBytes);
  ESingleCommand large;
  large.SetAction(Action(2147483647));
  large.SetEditSubId(Path{4294967295u});
  EXPECT_EQ(BytesOf(large), "1 1 4294967295 2147483647 " + kEmptyId + kEmptyData);
}

TEST(ESingleCommand, ReadsBothSignaturesIntoAnEmptiedCommand) {
  for (const std::string& signature : {std::string("1 "), std::string("17829889 ")}) {
    ESingleCommand command = WithData(4, 6);
    ReadFrom(signature + kFilledFields, command);
    EXPECT_EQ(BytesOf(command), kFilledBytes) << signature;
    // Every field is in the stream; a stream with empty lists leaves them empty.
    ReadFrom(signature + "0 0 " + kEmptyId + kEmptyData, command);
    EXPECT_EQ(BytesOf(command), BytesOf(ESingleCommand())) << signature;
  }
}

TEST(ESingleCommand, ReaderEmptiesBeforeTheSignatureCheck) {
  ScopedThrowingSerializeErrors throwing;
  ESingleCommand command = Filled();
  EXPECT_THROW(ReadFrom("2 " + kFilledFields, command), SerializeErrorThrown);
  EXPECT_EQ(BytesOf(command), BytesOf(ESingleCommand()));
}

TEST(ESingleCommand, WrongSignatureEndsTheProcess) {
  for (const char* signature : {"0 ", "2 ", "17829888 ", "17829890 "}) {
    ExpectSerializeError(
        [signature] {
          ESingleCommand command;
          ReadFrom(signature + kFilledFields, command);
        },
        "x86_64/common/ehal/eCommandLog", 499, "ESingleCommand::SerializeIn");
  }
}

// ---- ECommandLog: targets and adding ----

TEST(ECommandLog, EveryTargetClassHasItsConstant) {
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<const EISISServer*>(nullptr)), 1u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<ERSVPServer*>(nullptr)), 2u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EOSPFServer*>(nullptr)), 3u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EBGPServer*>(nullptr)), 4u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<ERIPServer*>(nullptr)), 5u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<eHal::ETCPClient*>(nullptr)), 6u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<eHal::ETCPServer*>(nullptr)), 7u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<ELDPServer*>(nullptr)), 8u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<ERIPngServer*>(nullptr)), 9u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EInterfaceTable*>(nullptr)), 10u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EPppTable*>(nullptr)), 11u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EIGMPv3Server*>(nullptr)), 12u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<ePIMSM::EPIMSMServer*>(nullptr)), 13u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EMLDServer*>(nullptr)), 14u);
  EXPECT_EQ(ECommandLog::GetCommandTarget(static_cast<EOSPF3Server*>(nullptr)), 15u);
  static_assert(ECommandLog::GetCommandTarget(static_cast<EBGPServer*>(nullptr)) == kBGP,
                "the constants are known at compile time");
}

TEST(ECommandLog, TheFirstCommandFixesTheTarget) {
  ECommandLog log;
  EXPECT_EQ(BytesOf(log), "1 1 0 0 ");
  const ECommandLog::iterator first = log.AddCommand(kBGP, Filled());
  ASSERT_TRUE(first == log.begin());
  EXPECT_EQ(BytesOf(*first), kFilledBytes);
  const std::string withOne = BytesOf(log);
  EXPECT_EQ(withOne, "1 1 4 1 " + kFilledBytes);

  EXPECT_TRUE(log.AddCommand(kOSPF, WithData(1)) == log.end());
  EXPECT_EQ(BytesOf(log), withOne);  // refused: the log is unchanged

  const ECommandLog::iterator second = log.AddCommand(kBGP, WithData(1));
  EXPECT_TRUE(second == ECommandLog::GetNextItem(first));
  EXPECT_TRUE(ECommandLog::GetNextItem(second) == log.end());
}

TEST(ECommandLog, TargetZeroLeavesTheTargetOpen) {
  ECommandLog log;
  const ECommandLog::iterator first = log.AddCommand(ECommandLog::kNoCommandTarget, WithData(1, 1));
  EXPECT_TRUE(first == log.begin());
  EXPECT_EQ(BytesOf(log).substr(0, 8), "1 1 0 1 ");
  EXPECT_TRUE(log.AddCommand(kOSPF, WithData(1, 2)) != log.end());
  EXPECT_TRUE(log.AddCommand(kBGP, WithData(1, 3)) == log.end());
  EXPECT_EQ(BytesOf(log).substr(0, 8), "1 1 3 2 ");
}

TEST(ECommandLog, AddCommandStoresACopy) {
  ECommandLog log;
  ESingleCommand command = Filled();
  const ECommandLog::iterator stored = log.AddCommand(kBGP, command);
  command.Empty();
  EXPECT_EQ(BytesOf(*stored), kFilledBytes);
}

TEST(ECommandLog, WalksItsCommandsInOrder) {
  ECommandLog log = LogOf({5, 0, 7});
  std::vector<unsigned int> sizes;
  for (auto item = log.begin(); item != log.end(); item = log.GetNextItem(item)) {
    item->SetAction(Action(9));  // the plain iterators give write access
    sizes.push_back(item->GetData().GetSize());
  }
  EXPECT_EQ(sizes, (Path{5, 0, 7}));
  const ECommandLog& constant = log;
  int nines = 0;
  for (auto item = constant.begin(); item != constant.end(); item = constant.GetNextItem(item))
    nines += item->GetAction() == 9 ? 1 : 0;
  EXPECT_EQ(nines, 3);
  const ECommandLog empty;
  EXPECT_TRUE(empty.begin() == empty.end());
}

TEST(ECommandLog, CopySwapAndEmpty) {
  ECommandLog log = LogOf({3, 4});
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(7));
  const std::string bytes = BytesOf(log);
  ECommandLog copy(log);
  EXPECT_EQ(BytesOf(copy), bytes);
  ECommandLog assigned;
  assigned = log;
  assigned = assigned;
  EXPECT_EQ(BytesOf(assigned), bytes);
  ECommandLog copied = LogOf({1}, kOSPF);
  copied.Copy(log);
  EXPECT_EQ(BytesOf(copied), bytes);
  copy.begin()->SetAction(Action(5));  // a deep copy
  EXPECT_EQ(BytesOf(log), bytes);

  ECommandLog other = LogOf({9}, kOSPF);
  const std::string otherBytes = BytesOf(other);
  const ESingleCommand* first = &*log.begin();
  other.Swap(log);
  EXPECT_EQ(BytesOf(other), bytes);
  EXPECT_EQ(BytesOf(log), otherBytes);
  EXPECT_EQ(&*other.begin(), first);  // the commands moved, they were not copied

  other.Empty();
  EXPECT_EQ(BytesOf(other), "1 1 0 0 ");
  EXPECT_EQ(other.GetMessageDestination(), EMessage::kDefaultDestination);
  EXPECT_TRUE(other.AddCommand(kOSPF, WithData(1)) != other.end());  // the target is open again
}

// ---- ECommandLog: archive forms ----

TEST(ECommandLog, ArchiveBytes) {
  ECommandLog log;
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(7));
  log.AddCommand(kBGP, Filled());
  log.AddCommand(kBGP, ESingleCommand());
  EXPECT_EQ(BytesOf(log), "1 7 4 2 " + kFilledBytes + "1 0 0 " + kEmptyId + kEmptyData);
  ECommandLog back = LogOf({1, 2, 3}, kOSPF);
  ReadFrom(BytesOf(log), back);
  EXPECT_EQ(BytesOf(back), BytesOf(log));
  EXPECT_EQ(back.GetMessageDestination(), 7u);
}

TEST(ECommandLog, ReadsTheOlderLayoutWithoutDestination) {
  ECommandLog log = LogOf({1, 2, 3}, kOSPF);
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(9));
  ReadFrom("17829889 4 1 " + kFilledBytes, log);
  // The log is emptied first, so the destination that the layout lacks is the default one.
  EXPECT_EQ(BytesOf(log), "1 1 4 1 " + kFilledBytes);
  // The commands inside may carry either signature.
  ReadFrom("17829889 5 2 17829889 " + kFilledFields + "1 " + kFilledFields, log);
  EXPECT_EQ(BytesOf(log), "1 1 5 2 " + kFilledBytes + kFilledBytes);
}

TEST(ECommandLog, CountsBelowOneMeanNoCommands) {
  for (const char* count : {"0 ", "-1 ", "-2147483648 ", "4294967295 "}) {
    ECommandLog log = LogOf({1, 2});
    ReadFrom(std::string("1 3 5 ") + count + kFilledBytes, log);
    EXPECT_EQ(BytesOf(log), "1 3 5 0 ") << count;
  }
}

TEST(ECommandLog, WrongSignatureEndsTheProcess) {
  for (const char* signature : {"0 ", "2 ", "17829888 ", "17829890 "}) {
    ExpectSerializeError(
        [signature] {
          ECommandLog log;
          ReadFrom(std::string(signature) + "1 4 0 ", log);
        },
        "x86_64/common/ehal/eCommandLog", 127, "ECommandLog::SerializeIn");
  }
}

TEST(ECommandLog, ACommandWithAWrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        ECommandLog log;
        ReadFrom("1 1 4 2 " + kFilledBytes + "3 " + kFilledFields, log);
      },
      "x86_64/common/ehal/eCommandLog", 499, "ESingleCommand::SerializeIn");
}

TEST(ECommandLog, ReaderEmptiesBeforeTheSignatureCheck) {
  ScopedThrowingSerializeErrors throwing;
  ECommandLog log = LogOf({1, 2});
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(9));
  EXPECT_THROW(ReadFrom("2 1 4 0 ", log), SerializeErrorThrown);
  EXPECT_EQ(BytesOf(log), "1 1 0 0 ");
}

// ---- ECommandLog: hostile counts and damaged streams ----

TEST(ECommandLog, ACountBeyondTheCommandsEndsInTheCommandsReport) {
  // The command after the last one finds no signature where the data ends.
  for (const char* count : {"2 ", "2147483647 "}) {
    ExpectSerializeError(
        [count] {
          ECommandLog log;
          ReadFrom(std::string("1 1 4 ") + count + kFilledBytes, log);
        },
        "x86_64/common/ehal/eCommandLog", 499, "ESingleCommand::SerializeIn");
  }
  ExpectSerializeError(
      [] {
        ECommandLog log;
        log.ExpandFromMessage(kBGP, TableMessage(2, "2147483647 " + kFilledBytes));
      },
      "x86_64/common/ehal/eCommandLog", 499, "ESingleCommand::SerializeIn");
}

TEST(ECommandLog, AHostileCountAddsNoMoreCommandsThanTheDataHolds) {
  ScopedThrowingSerializeErrors throwing;
  ECommandLog log;
  EXPECT_THROW(ReadFrom("1 1 4 2147483647 " + kFilledBytes, log), SerializeErrorThrown);
  EXPECT_EQ(DataSizes(log), (Path{2, 0}));  // the one there, and the one whose signature failed
}

TEST(ECommandLog, AStreamThatStartsOverCannotCycleForEver) {
  // The data length is missing at the end: that read runs past the data, and the archive's reads
  // start over from its beginning, where the count reads as the older command signature. Each
  // command read from there ends the same way. Read literally, this payload would yield 17829889
  // commands; the archive refuses the read once it has started over four times.
  const std::string payload = "17829889 1 0 0 403771665 0 0 287454021";
  ECommandLog log;
  ExpectSerializeError([&] { log.ExpandFromMessage(kBGP, TableMessage(2, payload)); },
                       "common/ehal/eArchive", 150, "EArchive read beyond its wrap limit");
}

TEST(ECommandLog, AMinusForAnIdentifierCountEndsInASignatureError) {
  // The first path of the command's identifier has "-" for its count, which reads as 4294967293:
  // the path takes the numbers that follow up to the end of the data and stops there; the reads
  // after it start over from the archive's beginning, where the command's data finds no blob
  // signature.
  ExpectSerializeError(
      [] {
        ECommandLog log;
        ReadFrom("1 1 4 1 1 2 7 8 -4 403771665 - 1 2 1 3 287454021 2 AB", log);
      },
      "x86_64/common/ehal/eBlob", 536, "EBlob::SerializeIn");
}

TEST(ECommandLog, ReadersSurviveCutOffAndDamagedStreams) {
  ECommandLog log;
  log.AddCommand(kBGP, Filled());
  log.AddCommand(kBGP, WithData(3, 4));
  const std::string bytes = BytesOf(log);
  EXPECT_GT(ReadEveryPrefix<ECommandLog>(bytes), 0);
  EXPECT_GT(ReadEveryPrefix<ESingleCommand>(kFilledBytes), 0);
  // Damage reaches every byte, the counts of the nested lists too: a count that a damaged byte
  // makes huge ends in the wrap limit's report (see the test above).
  EXPECT_GT(ReadEveryOneByteDamage<ECommandLog>(bytes), 0);
}

// ---- GetMessages ----

TEST(ECommandLogMessages, OneSmallCommandExactly) {
  ECommandLog log;
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(9));
  log.AddCommand(kBGP, Filled());
  Messages messages;
  log.GetMessages(ETableName("BGP"), messages);
  ASSERT_EQ(messages.size(), 1u);
  const std::string batch = "1 " + kFilledBytes;
  const std::string table =
      "572653602 2 287454021 " + std::to_string(batch.size()) + " " + batch + "841089058 3 BGP";
  EXPECT_EQ(BytesOf(messages.front()),
            "3 1 0 9 1167589410 0 0 5 287454021 " + std::to_string(table.size()) + " " + table);
  EXPECT_EQ(messages.front().GetMessageType(), ECommandLog::kCommandLogMessageType);
  EXPECT_EQ(messages.front().GetMessageType(), 5u);
  EXPECT_EQ(TableOf(messages.front()).GetMessageType(), 2u);
}

TEST(ECommandLogMessages, AnEmptyLogAddsNoMessage) {
  Messages messages(1);
  ECommandLog().GetMessages(ETableName("T"), messages);
  EXPECT_EQ(messages.size(), 1u);
}

TEST(ECommandLogMessages, MessagesAreAppendedBehindThoseInTheList) {
  Messages messages;
  EMessage earlier;
  earlier.SetMessagePortId(77);
  messages.push_back(earlier);
  LogOf({40000, 40000}).GetMessages(ETableName("T"), messages);
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages.front().GetMessagePortId(), 77u);
  EXPECT_EQ(messages.front().GetMessageType(), 0u);
}

TEST(ECommandLogMessages, DataBudgetExamples) {
  // 30000 + 30000 = 60000 and 60010 stay below 62000.
  EXPECT_EQ(Batches(LogOf({30000, 30000, 10})), (std::vector<Path>{{30000, 30000, 10}}));
  // 31000 + 31000 is exactly 62000: the second command opens the next message.
  EXPECT_EQ(Batches(LogOf({31000, 31000, 10})), (std::vector<Path>{{31000}, {31000, 10}}));
  // A command above the budget forms a message by itself.
  EXPECT_EQ(Batches(LogOf({100000})), (std::vector<Path>{{100000}}));
  EXPECT_EQ(Batches(LogOf({10, 100000, 10})), (std::vector<Path>{{10}, {100000}, {10}}));
  EXPECT_EQ(Batches(LogOf({61999, 0, 0, 1})), (std::vector<Path>{{61999, 0, 0}, {1}}));
}

TEST(ECommandLogMessages, OnlyTheDataBlobsCount) {
  // Many commands with no data but long identifiers and sub ids still travel in one message.
  ECommandLog log;
  ESingleCommand command;
  command.SetEditSubId(Path(200, 4000000000u));
  for (int i = 0; i < 100; ++i)
    log.AddCommand(kBGP, command);
  Messages messages;
  log.GetMessages(ETableName("T"), messages);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_GT(TableOf(messages.front()).GetMessage().GetSize(), 62000u);
}

TEST(ECommandLogMessages, EnvelopeAndTableMessageFields) {
  ECommandLog log = LogOf({40000, 40000, 1});
  log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(0x42));
  Messages messages;
  log.GetMessages(ETableName(ETableName::IPAddressTableName), messages);
  ASSERT_EQ(messages.size(), 2u);
  for (const EMessage& message : messages) {
    EXPECT_EQ(message.GetMessageType(), 5u);
    EXPECT_EQ(message.GetDestination(), 0x42u);
    EXPECT_EQ(message.GetMessagePortId(), 0u);
    EXPECT_EQ(message.GetMessagePortCount(), 1u);
    const ETableMessage table = TableOf(message);
    EXPECT_EQ(table.GetMessageType(), ECommandLog::kCommandListMessageType);
    EXPECT_EQ(table.GetTableName().GetTableName(), "IPADDRESSTABLE");
  }
  // The second batch: its count as a signed int, then its commands as they are archived.
  auto item = ECommandLog::GetNextItem(log.begin());
  const std::string batch = "2 " + BytesOf(*item) + BytesOf(*ECommandLog::GetNextItem(item));
  EXPECT_EQ(TextOf(TableOf(messages.back()).GetMessage()), batch);
}

// ---- ExpandFromMessage ----

TEST(ECommandLogExpand, OnlyCommandListTypesAreExpanded) {
  const std::string payload = "1 " + kFilledBytes;
  for (unsigned int type = 0; type <= 8; ++type) {
    ECommandLog log;
    log.ExpandFromMessage(kBGP, TableMessage(type, payload));
    const bool carriesCommands = type >= 1 && type <= 6;
    EXPECT_EQ(BytesOf(log), carriesCommands ? "1 1 4 1 " + kFilledBytes : "1 1 0 0 ") << type;
  }
  ECommandLog log;
  log.ExpandFromMessage(kBGP, TableMessage(0xFFFFFFFFu, payload));
  EXPECT_EQ(BytesOf(log), "1 1 0 0 ");
}

TEST(ECommandLogExpand, AddsBehindTheCommandsThere) {
  ECommandLog log;
  log.AddCommand(kBGP, WithData(3));
  log.ExpandFromMessage(kBGP, TableMessage(1, "2 " + kFilledBytes + kFilledBytes));
  EXPECT_EQ(DataSizes(log), (Path{3, 2, 2}));
  log.ExpandFromMessage(kBGP, TableMessage(4, "0 " + kFilledBytes));
  log.ExpandFromMessage(kBGP, TableMessage(4, "-3 " + kFilledBytes));
  EXPECT_EQ(DataSizes(log), (Path{3, 2, 2}));
}

TEST(ECommandLogExpand, ARefusedCommandIsNotRead) {
  ECommandLog log;
  log.AddCommand(kBGP, Filled());
  const std::string before = BytesOf(log);
  // The commands here would end the process if they were read.
  log.ExpandFromMessage(kOSPF, TableMessage(2, "2 3 garbage 5 "));
  EXPECT_EQ(BytesOf(log), before);
  ExpectSerializeError(
      [] {
        ECommandLog accepting;
        accepting.AddCommand(kBGP, Filled());
        accepting.ExpandFromMessage(kBGP, TableMessage(2, "2 3 garbage 5 "));
      },
      "x86_64/common/ehal/eCommandLog", 499, "ESingleCommand::SerializeIn");
}

// ---- the way through messages and back ----

// Data sizes around the budget: sums that land just below, on and above it, and commands above
// it alone.
std::vector<unsigned int> SizesAroundTheBudget(unsigned int count) {
  static const unsigned int kSizes[] = {0,     1,     10,    999,   6200,  20666, 30999,
                                        31000, 31001, 61999, 62000, 62001, 3,     41333};
  std::vector<unsigned int> sizes;
  for (unsigned int i = 0; i < count; ++i)
    sizes.push_back(kSizes[(i * 5 + i / 14) % 14]);
  return sizes;
}

TEST(ECommandLogMessages, RoundTripThroughMessages) {
  for (const unsigned int count : {0u, 1u, 3u, 1000u}) {
    ECommandLog log = LogOf(SizesAroundTheBudget(count), kOSPF);
    log.SetMessageDestination(static_cast<EMessage::eMessageDestination>(6));
    Messages messages;
    log.GetMessages(ETableName("OSPF"), messages);

    ECommandLog rebuilt;
    std::vector<Path> batches;
    for (const EMessage& message : messages) {
      ASSERT_EQ(message.GetDestination(), 6u);
      const ETableMessage table = TableOf(message);
      ASSERT_EQ(table.GetTableName().GetTableName(), "OSPF");
      rebuilt.ExpandFromMessage(kOSPF, table);
      ECommandLog part;
      part.ExpandFromMessage(kOSPF, table);
      batches.push_back(DataSizes(part));
    }
    rebuilt.SetMessageDestination(static_cast<EMessage::eMessageDestination>(6));
    EXPECT_EQ(BytesOf(rebuilt), BytesOf(log)) << count;

    // Each batch keeps below the budget unless it is one command, and the next batch's first
    // command would have reached it.
    for (std::size_t i = 0; i < batches.size(); ++i) {
      const unsigned long sum = std::accumulate(batches[i].begin(), batches[i].end(), 0ul);
      EXPECT_TRUE(batches[i].size() == 1 || sum < 62000) << count << " " << i;
      if (i + 1 < batches.size()) {
        EXPECT_GE(sum + batches[i + 1].front(), 62000u) << count << " " << i;
      }
    }
    EXPECT_GE(batches.size(), count / 3) << count;
  }
}

}  // namespace
