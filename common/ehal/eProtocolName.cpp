#include "eProtocolName.h"

#include <cstring>

#include "eArchive.h"
#include "eRecordLayout.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x42220022;
constexpr ELayoutVersion kVersions[] = {{kSignature, 0}};
constexpr ESerializeErrorSite kErrorSite = {"x86_64/common/ehal/eProtocolName", 109,
                                            "eHal::EProtocolName::SerializeIn"};
}  // namespace

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

EProtocolName& EProtocolName::operator=(const EProtocolName& other) {
  if (this != &other) Copy(other);
  return *this;
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

template <typename Self, typename Visit>
void EProtocolName::Fields(Self& self, Visit& field) {
  field.template Field<std::string>(self.m_ProtocolName);
}

void EProtocolName::SerializeOut(EArchive& archive) const {
  WriteRecord(archive, kSignature, [this](auto& field) { Fields(*this, field); });
}

void EProtocolName::SerializeIn(EArchive& archive) {
  ReadRecord(archive, kVersions, kErrorSite, [this](auto& field) { Fields(*this, field); });
}

EArchive& operator<<(EArchive& archive, const EProtocolName& name) {
  name.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EProtocolName& name) {
  name.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
