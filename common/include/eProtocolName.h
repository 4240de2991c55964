// eHal::EProtocolName: the name of the protocol emulation that a protocol message is addressed
// to, and eHal::EProtocolNames, the fixed names of the emulations. Any other text is allowed too.
#pragma once

#include <string>

#include "eRecord.h"

namespace eHal {

// The fixed protocol names. Several texts differ from the constant's name ("RSVP-TE",
// "TCPPROTOCOLCLIENT", "INTERFACEMANAGER", "OSPFv3").
struct EProtocolNames {
  static const std::string EPORT;
  static const std::string BGP;
  static const std::string OSPF;
  static const std::string ISIS;
  static const std::string RSVP;
  static const std::string TCPClient;
  static const std::string TCPServer;
  static const std::string RIP;
  static const std::string RIPng;
  static const std::string IGMP;
  static const std::string LDP;
  static const std::string PIMSM;
  static const std::string MLD;
  static const std::string OSPF3;
  static const std::string INTERFACE_MANAGER;
};

class EProtocolName : public ERecord<EProtocolName> {
 public:
  EProtocolName() { Empty(); }
  EProtocolName(const std::string& name);

  const std::string& GetProtocolName() const { return m_ProtocolName; }
  void SetProtocolName(const std::string& name) { m_ProtocolName = name; }

  // Compares as zero-terminated texts: whatever follows an embedded zero byte is ignored.
  bool operator==(const std::string& name) const;

  void Copy(const EProtocolName& other) { *this = other; }
  // Sets the name to GetUnknownProtocolName().
  void Empty();

  // "UnknownProtocol"; safe to call from several threads at once.
  static const std::string& GetUnknownProtocolName();

  struct Schema;  // the archive form, in eProtocolName.cpp

 private:
  std::string m_ProtocolName;
};

}  // namespace eHal

extern template class ERecord<eHal::EProtocolName>;
