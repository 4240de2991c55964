#include "eCommandLog.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "eRecordSchema.h"

using namespace eHal::detail;
using eHal::EMessage;
using eHal::ETableMessage;
using eHal::ETableName;

struct ECommandLog::Schema {
  // The commands: their count (written as unsigned 64-bit, read as a signed int), then each
  // command. The reader adds them under the target read before them.
  struct CommandList {
    static void Write(EArchive& archive, const ECommandLog& log) {
      archive.WriteUnsigned64Int(log.m_Commands.size());
      for (const ESingleCommand& command : log.m_Commands)
        archive << command;
    }
    static void Read(EArchive& archive, ECommandLog& log) {
      log.ReadCommands(archive, log.m_CommandTarget);
    }
    static void Describe(ERecordVisitor& visitor, const char* name, const ECommandLog& log) {
      visitor.BeginList(name, EWire::kUnsigned64, log.m_Commands.size());
      for (const ESingleCommand& command : log.m_Commands)
        Nested::Describe(visitor, "", command);
      visitor.EndList();
    }
  };

  static constexpr auto kFields =
      std::make_tuple(Field("MessageDestination", &ECommandLog::m_MessageDestination, kSigned),
                      Field("CommandTarget", &ECommandLog::m_CommandTarget, kSigned),
                      Property<ECommandLog>("Commands", CommandList{}));
  static constexpr Layout kLayouts[] = {
      {1}, {0x1101001, Lacking(1)},  // no message destination
  };
  static constexpr EWire kSignatureWire = EWire::kUnsigned32;
  static constexpr ESerializeErrorSite kError = {"x86_64/common/ehal/eCommandLog", 127,
                                                 "ECommandLog::SerializeIn"};
};

namespace {

// One message's share of the log: the commands up to `end` (not included), `count` of them.
struct Batch {
  ECommandLog::const_iterator end;
  int count;
};

// The batch that starts at `first` (not the end): the first command, then each following one
// while the data sizes of the batch and that one together stay below the budget.
Batch NextBatch(ECommandLog::const_iterator first, ECommandLog::const_iterator last) {
  unsigned long size = first->GetData().GetSize();
  Batch batch = {++first, 1};
  for (; batch.end != last; ++batch.end, ++batch.count) {
    size += batch.end->GetData().GetSize();
    if (size >= ECommandLog::kMessageDataBudget) break;
  }
  return batch;
}

// Empties `archive` (its allocation kept) for writing.
void StartStoring(EArchive& archive) {
  archive.Empty();
  archive.SetMode(eModeStoring);
}

}  // namespace

ECommandLog::iterator ECommandLog::AddCommand(eCommandTarget target,
                                              const ESingleCommand& command) {
  if (m_CommandTarget == kNoCommandTarget) {
    m_CommandTarget = target;
  } else if (m_CommandTarget != target) {
    return end();
  }
  return m_Commands.insert(m_Commands.end(), command);
}

// The archives and the table message serve every batch in turn and keep their allocations; each
// command's data is copied once, into the batch archive, and travels on from there as a whole.
void ECommandLog::GetMessages(const ETableName& tableName, std::list<EMessage>& messages) const {
  EArchive batch;
  EArchive envelope;
  ETableMessage table;
  table.SetTableName(tableName);
  for (const_iterator first = begin(); first != end();) {
    EMessage& message = messages.emplace_back();
    const Batch next = NextBatch(first, end());
    StartStoring(batch);
    batch.WriteSignedInt(next.count);
    for (; first != next.end; ++first)
      batch << *first;
    table.SetMessage(kCommandListMessageType, batch.GetAsEBlob());
    StartStoring(envelope);
    envelope << table;
    message.SetMessage(kCommandLogMessageType, envelope.GetAsEBlob());
    message.SetDestination(m_MessageDestination);
  }
}

void ECommandLog::ExpandFromMessage(eCommandTarget target, const ETableMessage& message) {
  const ETableMessage::eMessageType type = message.GetMessageType();
  if (type < ETableMessage::kFirstCommandListMessage ||
      type > ETableMessage::kLastCommandListMessage) {
    return;
  }
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(message.GetMessage(), true);
  ReadCommands(archive, target);
}

// A command takes at least two bytes (its signature and a blank), so no more commands can follow
// than half the bytes left: a larger count is hostile. The bound also stops a stream whose reads
// start over from its beginning (a past-the-end blob length does that) from cycling for ever.
void ECommandLog::ReadCommands(EArchive& archive, eCommandTarget target) {
  if (ReadPastEnd(archive)) return;
  const int count = archive.ReadSignedInt();
  if (count < 1) return;
  const std::size_t most =
      std::min<std::size_t>(static_cast<unsigned int>(count), RemainingBytes(archive) / 2);
  const ESingleCommand fresh;
  for (std::size_t i = 0; i < most && !ReadPastEnd(archive); ++i) {
    const iterator stored = AddCommand(target, fresh);
    if (stored == end()) return;
    archive >> *stored;
  }
}

void ECommandLog::Empty() {
  m_Commands.clear();
  m_CommandTarget = kNoCommandTarget;
  m_MessageDestination = EMessage::kDefaultDestination;
}

void ECommandLog::Swap(ECommandLog& other) {
  m_Commands.swap(other.m_Commands);
  std::swap(m_CommandTarget, other.m_CommandTarget);
  std::swap(m_MessageDestination, other.m_MessageDestination);
}

void ECommandLog::SerializeIn(EArchive& archive) {
  Empty();
  Read<Schema>(archive, *this);
}

template class ERecord<ECommandLog>;
