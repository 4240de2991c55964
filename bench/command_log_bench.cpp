// Cutting a command log into messages: GetMessages over logs of small commands at two sizes (the
// time per command stays flat), and over a log of large commands, where copying the data is most
// of the work. The literal reference follows the steps as they are defined: it gathers each batch
// as copies of its commands, then archives the batch, the table message and the envelope in
// fresh objects, so every command's data is copied twice on its way into the batch archive, where
// GetMessages copies it once.
//
// Every message's payload is fresh memory that the caller then owns. Freed memory is kept in the
// process here (no trimming, no separate mappings for large blocks), so that the figures measure
// the work of cutting the log rather than the page faults of handing memory back and forth to
// the system, which would otherwise dominate them.
#include <benchmark/benchmark.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <list>
#include <string>

#include "eArchive.h"
#include "eCommandLog.h"

namespace {

using eHal::EMessage;
using eHal::ETableMessage;
using eHal::ETableName;

constexpr unsigned int kSmallData = 16;
constexpr unsigned int kLargeData = 8000;
constexpr int kLargeCommands = 2000;

bool KeepFreedMemory() {
#if defined(__GLIBC__)
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
  return true;
}
const bool kFreedMemoryKept = KeepFreedMemory();

ECommandLog MakeLog(int commands, unsigned int dataSize) {
  const std::string data(dataSize, 'd');
  ECommandLog log;
  for (int i = 0; i < commands; ++i) {
    ESingleCommand command;
    command.SetAction(static_cast<ESingleCommand::eAction>(1));
    command.SetId(EMultiComponentId({1, 2}, {static_cast<unsigned int>(i % 100 + 1)}));
    command.SetEditSubId({3});
    command.GetData().SetData(data.data(), dataSize);
    log.AddCommand(ECommandLog::kBGPServerTarget, command);
  }
  return log;
}

// The steps as defined, one fresh object for each.
void LiteralGetMessages(const ECommandLog& log, const ETableName& name,
                        std::list<EMessage>& messages) {
  auto next = log.begin();
  while (next != log.end()) {
    messages.push_back(EMessage());
    std::list<ESingleCommand> batch;
    unsigned long size = next->GetData().GetSize();
    batch.push_back(*next++);
    while (next != log.end() && size + next->GetData().GetSize() < 62000) {
      size += next->GetData().GetSize();
      batch.push_back(*next++);
    }
    EArchive archive;
    archive.SetMode(eModeStoring);
    archive << static_cast<int>(batch.size());
    for (const ESingleCommand& command : batch)
      archive << command;
    ETableMessage table;
    table.SetMessageType(static_cast<ETableMessage::eMessageType>(2));
    table.SetTableName(name);
    table.SetMessage(archive.GetAsEBlob());
    EArchive envelope;
    envelope.SetMode(eModeStoring);
    envelope << table;
    messages.back().SetMessageType(static_cast<EMessage::eMessageType>(5));
    messages.back().SetDestination(log.GetMessageDestination());
    messages.back().SetMessage(envelope.GetAsEBlob());
  }
}

void Label(benchmark::State& state, int commands, unsigned int dataSize, std::size_t bytes) {
  const double done = static_cast<double>(state.iterations()) * commands;
  state.counters["ns_per_command"] =
      benchmark::Counter(done, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.counters["wire_bytes"] = static_cast<double>(bytes);
  state.SetBytesProcessed(static_cast<int64_t>(done * dataSize));
  state.SetComplexityN(commands);
}

template <typename Cut>
void Run(benchmark::State& state, int commands, unsigned int dataSize, Cut cut) {
  const ECommandLog log = MakeLog(commands, dataSize);
  const ETableName name("BGP");
  std::list<EMessage> messages;
  for (auto _ : state) {
    messages.clear();
    cut(log, name, messages);
    benchmark::DoNotOptimize(messages.back().GetMessageType());
  }
  std::size_t bytes = 0;
  for (const EMessage& message : messages)
    bytes += message.GetMessage().GetSize();
  Label(state, commands, dataSize, bytes);
}

void Library(const ECommandLog& log, const ETableName& name, std::list<EMessage>& messages) {
  log.GetMessages(name, messages);
}

void BM_GetMessages_ECommandLog(benchmark::State& state) {
  Run(state, static_cast<int>(state.range(0)), kSmallData, Library);
}
void BM_GetMessages_Literal(benchmark::State& state) {
  Run(state, static_cast<int>(state.range(0)), kSmallData, LiteralGetMessages);
}
void BM_GetMessagesLargeData_ECommandLog(benchmark::State& state) {
  Run(state, kLargeCommands, kLargeData, Library);
}
void BM_GetMessagesLargeData_Literal(benchmark::State& state) {
  Run(state, kLargeCommands, kLargeData, LiteralGetMessages);
}

BENCHMARK(BM_GetMessages_Literal)->Arg(50000)->Arg(100000)->Complexity(benchmark::oN);
BENCHMARK(BM_GetMessages_ECommandLog)->Arg(50000)->Arg(100000)->Complexity(benchmark::oN);
BENCHMARK(BM_GetMessagesLargeData_Literal);
BENCHMARK(BM_GetMessagesLargeData_ECommandLog);

}  // namespace
