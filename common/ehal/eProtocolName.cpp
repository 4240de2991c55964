#include "eProtocolName.h"

#include <cstring>

#include "eRecordSchema.h"

namespace eHal {

using detail::Field;
using detail::Layout;

struct EProtocolName::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("ProtocolName", &EProtocolName::m_ProtocolName));
  static constexpr Layout kLayouts[] = {{0x42220022}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eProtocolName", 109,
                                              "eHal::EProtocolName::SerializeIn"};
};

const std::string EProtocolNames::EPORT = "EPORT";
const std::string EProtocolNames::BGP = "BGP";
const std::string EProtocolNames::OSPF = "OSPF";
const std::string EProtocolNames::ISIS = "ISIS";
const std::string EProtocolNames::RSVP = "RSVP-TE";
const std::string EProtocolNames::TCPClient = "TCPPROTOCOLCLIENT";
const std::string EProtocolNames::TCPServer = "TCPPROTOCOLSERVER";
const std::string EProtocolNames::RIP = "RIP";
const std::string EProtocolNames::RIPng = "RIPNG";
const std::string EProtocolNames::IGMP = "IGMP";
const std::string EProtocolNames::LDP = "LDP";
const std::string EProtocolNames::PIMSM = "PIM-SM";
const std::string EProtocolNames::MLD = "MLD";
const std::string EProtocolNames::OSPF3 = "OSPFv3";
const std::string EProtocolNames::INTERFACE_MANAGER = "INTERFACEMANAGER";

EProtocolName::EProtocolName(const std::string& name) {
  Empty();
  SetProtocolName(name);
}

bool EProtocolName::operator==(const std::string& name) const {
  return std::strcmp(m_ProtocolName.c_str(), name.c_str()) == 0;
}

void EProtocolName::Empty() {
  m_ProtocolName = GetUnknownProtocolName();
}

const std::string& EProtocolName::GetUnknownProtocolName() {
  static const std::string sUnknownProtocol = "UnknownProtocol";
  return sUnknownProtocol;
}

}  // namespace eHal

template class ERecord<eHal::EProtocolName>;
