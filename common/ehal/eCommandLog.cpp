#include "eCommandLog.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "eRecordSchema.h"

using eHal::EMessage;
using eHal::ETableMessage;
using eHal::ETableName;
using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::kSigned;
using eHal::detail::Layout;
using eHal::detail::NestedCodec;
using eHal::detail::Property;
using eHal::detail::ReadPastEnd;
using eHal::detail::RemainingBytes;

struct ECommandLog::Schema {
  // A record read starts empty.
  static constexpr auto kBeforeRead = &ECommandLog::Empty;
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
      visitor.BeginList(name, ECountWire::kUnsigned64, log.m_Commands.size());
      for (const ESingleCommand& command : log.m_Commands)
        NestedCodec::Describe(visitor, "", command);
      visitor.EndList();
    }
    static EValueType Type() {
      return EValueType::List(ECountWire::kUnsigned64, NestedCodec::TypeFor<ESingleCommand>());
    }
  };

  static constexpr auto kFields =
      std::make_tuple(Field("MessageDestination", &ECommandLog::m_MessageDestination, kSigned),
                      Field("CommandTarget", &ECommandLog::m_CommandTarget, kSigned),
                      Property<ECommandLog>("Commands", CommandList{}));
  static constexpr Layout kLayouts[] = {
      {1}, {0x1101001, From("CommandTarget")},  // no message destination
  };
  static constexpr ENumberWire kSignatureWire = ENumberWire::kUnsigned32;
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eCommandLog", 127,
                                              "ECommandLog::SerializeIn"};
};

namespace {

// Writes into `archive` the batch of commands that starts at `next` (not the end) and moves `next`
// past it: the first command, then each following one while the data sizes of the batch and that
// one together stay below the budget. Returns the number written. Each command is visited once:
// a second walk over a long log costs more than all the copying.
int WriteBatch(EArchive& archive, ECommandLog::const_iterator& next,
               ECommandLog::const_iterator end) {
  unsigned long size = 0;
  int count = 0;
  do {
    size += next->GetData().GetSize();
    archive << *next++;
    ++count;
  } while (next != end && size + next->GetData().GetSize() < ECommandLog::kMessageDataBudget);
  return count;
}

// Empties `archive` (its allocation kept) for writing.
void StartStoring(EArchive& archive) {
  archive.Empty();
  archive.SetMode(eModeStoring);
}

// What every batch passes through on its way into an envelope, reused from batch to batch so that
// the archives and the table message keep their allocations. A command's data is copied once, into
// the commands archive; from there whole batches are copied.
class MessageMaker {
 public:
  explicit MessageMaker(const ETableName& tableName) { m_Table.SetTableName(tableName); }

  // Fills `message` with the batch that starts at `next` and moves `next` past it.
  void Make(ECommandLog::const_iterator& next, ECommandLog::const_iterator end,
            EMessage::eMessageDestination destination, EMessage& message) {
    m_Table.SetMessage(ECommandLog::kCommandListMessageType, Payload(next, end));
    StartStoring(m_Envelope);
    m_Envelope << m_Table;
    message.SetMessage(ECommandLog::kCommandLogMessageType, m_Envelope.GetAsEBlob());
    message.SetDestination(destination);
  }

 private:
  // The table message's payload: the batch's command count (signed int), which is known only once
  // the batch is written, then its commands.
  const EBlob& Payload(ECommandLog::const_iterator& next, ECommandLog::const_iterator end) {
    StartStoring(m_Commands);
    const int count = WriteBatch(m_Commands, next, end);
    StartStoring(m_Batch);
    m_Batch.WriteSignedInt(count);
    const EBlob& commands = m_Commands.GetAsEBlob();
    m_Batch.Append(commands.GetSize(), commands.GetData());
    return m_Batch.GetAsEBlob();
  }

  EArchive m_Commands;
  EArchive m_Batch;
  EArchive m_Envelope;
  ETableMessage m_Table;
};

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

void ECommandLog::GetMessages(const ETableName& tableName, std::list<EMessage>& messages) const {
  MessageMaker maker(tableName);
  for (const_iterator next = begin(); next != end();)
    maker.Make(next, end(), m_MessageDestination, messages.emplace_back());
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

template class ERecord<ECommandLog>;
