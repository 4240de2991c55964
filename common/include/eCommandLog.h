// ECommandLog: the commands a client sends to one kind of target (a protocol server type or a
// table), in the order added. It archives them, cuts them into table messages of a bounded data
// size for sending (GetMessages) and rebuilds itself from received ones (ExpandFromMessage).
#pragma once

#include <iterator>
#include <list>

#include "eMessage.h"
#include "eRecord.h"
#include "eSingleCommand.h"
#include "eTableMessage.h"
#include "eTableName.h"

// The kinds of target a log can serve. They belong to other libraries; only their types are used
// here, to choose a log's target constant.
class EISISServer;
class ERSVPServer;
class EOSPFServer;
class EBGPServer;
class ERIPServer;
class ELDPServer;
class ERIPngServer;
class EInterfaceTable;
class EPppTable;
class EIGMPv3Server;
class EMLDServer;
class EOSPF3Server;
namespace eHal {
class ETCPClient;
class ETCPServer;
}  // namespace eHal
namespace ePIMSM {
class EPIMSMServer;
}  // namespace ePIMSM

class ECommandLog : public ERecord<ECommandLog> {
 public:
  using iterator = std::list<ESingleCommand>::iterator;
  using const_iterator = std::list<ESingleCommand>::const_iterator;

  // The kind of target all commands of a log are for (unsigned 32-bit).
  enum eCommandTarget : unsigned int {
    kNoCommandTarget = 0,  // a log to which no command was added yet
    kISISServerTarget = 1,
    kRSVPServerTarget = 2,
    kOSPFServerTarget = 3,
    kBGPServerTarget = 4,
    kRIPServerTarget = 5,
    kTCPClientTarget = 6,
    kTCPServerTarget = 7,
    kLDPServerTarget = 8,
    kRIPngServerTarget = 9,
    kInterfaceTableTarget = 10,
    kPppTableTarget = 11,
    kIGMPv3ServerTarget = 12,
    kPIMSMServerTarget = 13,
    kMLDServerTarget = 14,
    kOSPF3ServerTarget = 15,
  };

  // The data bytes a message may carry: a batch takes a further command only while the data
  // sizes of its commands stay below this sum. Only the data blobs count.
  static constexpr unsigned long kMessageDataBudget = 62000;
  // The table message that carries a batch, and the envelope type around it.
  static constexpr eHal::ETableMessage::eMessageType kCommandListMessageType{2};
  static constexpr eHal::EMessage::eMessageType kCommandLogMessageType{5};

  // The target constant of each target class.
  static constexpr eCommandTarget GetCommandTarget(const EISISServer*) { return kISISServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const ERSVPServer*) { return kRSVPServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const EOSPFServer*) { return kOSPFServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const EBGPServer*) { return kBGPServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const ERIPServer*) { return kRIPServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const eHal::ETCPClient*) {
    return kTCPClientTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const eHal::ETCPServer*) {
    return kTCPServerTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const ELDPServer*) { return kLDPServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const ERIPngServer*) {
    return kRIPngServerTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const EInterfaceTable*) {
    return kInterfaceTableTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const EPppTable*) { return kPppTableTarget; }
  static constexpr eCommandTarget GetCommandTarget(const EIGMPv3Server*) {
    return kIGMPv3ServerTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const ePIMSM::EPIMSMServer*) {
    return kPIMSMServerTarget;
  }
  static constexpr eCommandTarget GetCommandTarget(const EMLDServer*) { return kMLDServerTarget; }
  static constexpr eCommandTarget GetCommandTarget(const EOSPF3Server*) {
    return kOSPF3ServerTarget;
  }

  // No commands, no target, the default destination.
  ECommandLog() = default;
  ECommandLog(const ECommandLog& other) = default;
  ECommandLog& operator=(const ECommandLog& other) = default;

  // Appends a copy of `command` and returns where it is stored. The first command fixes the
  // log's target; a command for another target is refused: end() is returned and nothing stored.
  iterator AddCommand(eCommandTarget target, const ESingleCommand& command);

  iterator begin() { return m_Commands.begin(); }
  iterator end() { return m_Commands.end(); }
  const_iterator begin() const { return m_Commands.begin(); }
  const_iterator end() const { return m_Commands.end(); }
  // The command after `item`.
  static iterator GetNextItem(iterator item) { return std::next(item); }
  static const_iterator GetNextItem(const_iterator item) { return std::next(item); }

  // Stamped on every message that GetMessages builds.
  void SetMessageDestination(eHal::EMessage::eMessageDestination destination) {
    m_MessageDestination = destination;
  }
  eHal::EMessage::eMessageDestination GetMessageDestination() const { return m_MessageDestination; }

  // Appends to `messages` the envelopes that carry the log: one per batch of commands (see
  // kMessageDataBudget; a batch holds at least one command, however large), each an EMessage of
  // type 5 to the log's destination around a table message of type 2 for `tableName` whose
  // payload is the batch's command count (signed int) and commands. An empty log adds none.
  void GetMessages(const eHal::ETableName& tableName, std::list<eHal::EMessage>& messages) const;
  // Adds the commands that a table message of type 1 to 6 carries (other types are ignored), each
  // through AddCommand for `target`; a command that is refused is not read.
  void ExpandFromMessage(eCommandTarget target, const eHal::ETableMessage& message);

  // No commands, target 0, the default destination.
  void Empty();
  void Copy(const ECommandLog& other) { *this = other; }
  void Swap(ECommandLog& other);

  struct Schema;  // the archive form, in eCommandLog.cpp

 private:
  // Reads a command count (signed int; below 1 means none) and adds that many commands for
  // `target`, reading each into its stored entry. Stops at a refused command (every later one
  // would be refused too) and where the data runs out, since the archive would start over.
  void ReadCommands(EArchive& archive, eCommandTarget target);

  std::list<ESingleCommand> m_Commands;
  eCommandTarget m_CommandTarget = kNoCommandTarget;
  eHal::EMessage::eMessageDestination m_MessageDestination = eHal::EMessage::kDefaultDestination;
};

extern template class ERecord<ECommandLog>;
