#include "eIPAddressTableItem.h"

#include <string>

#include "eByteOrder.h"
#include "eRecordSchema.h"
#include "eTrace.h"

using eHal::detail::Field;
using eHal::detail::From;
using eHal::detail::Layout;
using eHal::detail::ReadBigEndian32;
using eHal::detail::WriteBigEndian32;

// Each layout added its fields in front of the next older one: version 3 the ATM fields, 2 the
// reservation, 1 the interface-derived flag, 0x33333336 the gateway, 0x33333335 the ISL and VLAN
// properties, 0x33333334 the network; 0x33333333 carried the two ranges only.
struct EIPAddressTableItem::Schema {
  using R = EIPAddressTableItem;
  static constexpr auto kFields = std::make_tuple(
      Field("Encapsulation", &R::m_Encapsulation), Field("ATMMode", &R::m_ATMMode),
      Field("VPI", &R::m_VPI), Field("VCI", &R::m_VCI),
      Field("ReserveForPCPU", &R::m_ReserveForPCPU),
      Field("InterfaceDerived", &R::m_InterfaceDerived), Field("Gateway", &R::m_Gateway),
      Field("OverrideDefaultGateway", &R::m_OverrideDefaultGateway),
      Field("ISLProperties", &R::m_ISL), Field("VLANProperties", &R::m_VLAN),
      Field("UseNetworkNumber", &R::m_UseNetworkNumber), Field("Network", &R::m_Network),
      Field("IPAddressRange", &R::m_IPAddressRange),
      Field("MACAddressRange", &R::m_MACAddressRange));
  static constexpr Layout kLayouts[] = {
      {3},
      {2, From("ReserveForPCPU")},
      {1, From("InterfaceDerived")},
      {0x33333336, From("Gateway")},
      {0x33333335, From("ISLProperties")},
      {0x33333334, From("UseNetworkNumber")},
      {0x33333333, From("IPAddressRange")},
  };
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eIPAddressTableItem", 311,
                                              "EIPAddressTableItem::SerializeIn"};
};

namespace {

constexpr int kDumpLevel = 6;

const char kDumpHeader[] =
    "IP From:  IP To:  Use Network Number:  NetworkNumber:  NetworkNumber: Network Mask: MAC "
    "Mode: Src MAC Address From: Src Mac Address Count: VLAN        ISL           \n";

const char* MACModeText(int mode) {
  switch (mode) {
    case EIPAddressTableItem::kMACOneToOne:
      return "One To One";
    case EIPAddressTableItem::kMACManyToOne:
      return "Many To One";
    default:
      return "Unknown";
  }
}

// The MAC address as six bytes, as EMACAddress::SetMACAddress would force it.
void SixBytesOf(const EMACAddress& mac, unsigned char (&bytes)[EMACAddress::kLength]) {
  EMACAddress forced;
  forced.SetMACAddress(mac.GetMACAddress());
  forced.GetMACAddress().GetAt(bytes, 0, EMACAddress::kLength);
}

}  // namespace

void EIPAddressTableItem::Empty() {
  m_InterfaceDerived = false;
  m_IPAddressRange.Empty();
  m_MACAddressRange.Empty();
  m_Gateway.Empty();
  m_OverrideDefaultGateway = false;
  m_Network.Empty();
  m_UseNetworkNumber = false;
  m_ISL.Empty();
  m_VLAN.Empty();
  m_ReserveForPCPU = false;
  m_Encapsulation = eAtmEncapsulationDefault;
  m_ATMMode = eATMModeDefault;
  m_VPI = 0;
  m_VCI = kDefaultVCI;
}

void EIPAddressTableItem::SetNetworkNumber(const EIPAddress&) {}

void EIPAddressTableItem::SetNetworkMask(const EBlob& mask) {
  m_Network.SetMask(mask, static_cast<int>(m_Network.GetType()));
}

bool EIPAddressTableItem::GetMACAddressFromIPAddress(const EIPAddress& ip, EMACAddress& mac) const {
  const EMACAddress first = m_MACAddressRange.GetMACAddress();
  mac = first;
  if (m_MACAddressRange.GetMACMode() == kMACManyToOne) return true;
  const unsigned int address = ReadBigEndian32(ip.GetAddress());
  const unsigned int from = ReadBigEndian32(m_IPAddressRange.GetIPAddress().GetAddress());
  if (address < from || address >= from + m_IPAddressRange.GetRangeCount()) return false;

  const unsigned int offset = address - from;
  unsigned char bytes[EMACAddress::kLength];
  SixBytesOf(first, bytes);
  unsigned int high = (static_cast<unsigned int>(bytes[0]) << 8) | bytes[1];
  unsigned int low = ReadBigEndian32(bytes + 2);
  if (offset < 0xFFFFFFFFu - low) {
    low += offset;
  } else {
    // Deliberately one more than a 48-bit sum, already when low + offset is 0xFFFFFFFF.
    ++high;
    low += offset + 1;
  }
  bytes[0] = static_cast<unsigned char>(high >> 8);
  bytes[1] = static_cast<unsigned char>(high);
  WriteBigEndian32(bytes + 2, low);
  mac.SetMACAddress(EBlob(bytes, EMACAddress::kLength));
  return true;
}

void EIPAddressTableItem::DumpToLog(ETrace* trace, bool header) const {
  if (trace == nullptr || !trace->IsTraceable(kDumpLevel)) return;
  if (header) {
    trace->Trace(kDumpLevel, kDumpHeader);
    trace->Trace(kDumpLevel, std::string(153, '=') + "\n");
  }
  // The "to" column is first + count: one past the range's last address.
  const EIPAddress& from = m_IPAddressRange.GetIPAddress();
  EIPAddress to = from;
  to.Increment(m_IPAddressRange.GetRangeCount(), 32);
  EIPAddress mask;
  mask.SetAddress(m_Network.GetMaskBytes(), eIPv4Address);

  std::string line;
  for (const std::string& value :
       {from.GetAsString(), to.GetAsString(), std::string(m_UseNetworkNumber ? "Yes" : "No"),
        m_Network.GetAsString(), mask.GetAsString(),
        std::string(MACModeText(m_MACAddressRange.GetMACMode())),
        m_MACAddressRange.GetMACAddress().GetMACAddress().GetHexString(),
        std::to_string(m_MACAddressRange.GetMACRangeCount())}) {
    line += value;
    line += '\t';
  }
  line += '\n';
  trace->Trace(kDumpLevel, line);
}

template class ERecord<EIPAddressTableItem>;
