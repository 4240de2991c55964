// eHal::EProtocolName: the name of the protocol emulation that a protocol message is addressed
// to, and eHal::EProtocolNames, the fixed names of the emulations. Any other text is allowed too.
#pragma once

#include <string>

class EArchive;

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

class EProtocolName {
 public:
  EProtocolName() { Empty(); }
  EProtocolName(const std::string& name);
  EProtocolName(const EProtocolName& other) { Copy(other); }
  EProtocolName& operator=(const EProtocolName& other);

  const std::string& GetProtocolName() const { return m_ProtocolName; }
  void SetProtocolName(const std::string& name) { m_ProtocolName = name; }

  // Compares as zero-terminated texts: whatever follows an embedded zero byte is ignored.
  bool operator==(const std::string& name) const;

  void Copy(const EProtocolName& other) { m_ProtocolName = other.m_ProtocolName; }
  // Sets the name to GetUnknownProtocolName().
  void Empty();

  // "UnknownProtocol"; safe to call from several threads at once.
  static const std::string& GetUnknownProtocolName();

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  std::string m_ProtocolName;
};

EArchive& operator<<(EArchive& archive, const EProtocolName& name);
EArchive& operator>>(EArchive& archive, EProtocolName& name);

}  // namespace eHal
