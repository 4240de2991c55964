// EIPAddressTableItem: one row of an IP address table, a range of emulated IPv4 hosts with the
// source MAC of each host, their gateway and network, their VLAN tags or ISL encapsulation and
// their ATM parameters. Serialisable; its DumpToLog writes one line of the table's dump.
#pragma once

#include "eBlob.h"
#include "eIPAddress.h"
#include "eIPAddressRange.h"
#include "eIPMaskedAddress.h"
#include "eISLIPAddressTableItemProperties.h"
#include "eMACAddress.h"
#include "eMACAddressRange.h"
#include "eRecord.h"
#include "eVLANIPAddressTableItemProperties.h"

class ETrace;

// The ATM encapsulation of a host range. The meaning of the values is defined by the ATM layer
// outside this library; any 32-bit value is stored and carried as it stands.
enum eAtmEncapsulationMode : unsigned int { eAtmEncapsulationDefault = 1 };

class EIPAddressTableItem : public ERecord<EIPAddressTableItem> {
 public:
  // The ATM mode of a host range; defined outside this library like the encapsulation.
  enum ATMModeEnum : unsigned int { eATMModeDefault = 1 };

  // MAC modes of the MAC range.
  static constexpr int kMACOneToOne = 0;
  static constexpr int kMACManyToOne = 1;

  // The empty row (see Empty).
  EIPAddressTableItem() = default;
  EIPAddressTableItem(const EIPAddressTableItem& other) = default;
  EIPAddressTableItem& operator=(const EIPAddressTableItem& other) = default;
  virtual ~EIPAddressTableItem() = default;

  // Every field, the interface-derived flag included.
  void Copy(const EIPAddressTableItem& other) { *this = other; }
  // Empty ranges, IPv4 zero gateway, IPv4 zero network with a /32 mask, default ISL and VLAN
  // properties, every flag false, encapsulation and ATM mode 1, VPI 0, VCI 32.
  void Empty();

  EIPAddressRange GetIPAddressRange() const { return m_IPAddressRange; }
  void SetIPAddressRange(const EIPAddressRange& range) { m_IPAddressRange = range; }
  EMACAddressRange GetMACAddressRange() const { return m_MACAddressRange; }
  void SetMACAddressRange(const EMACAddressRange& range) { m_MACAddressRange = range; }
  EIPAddress GetGateway() const { return m_Gateway; }
  void SetGateway(const EIPAddress& gateway) { m_Gateway = gateway; }
  bool GetOverrideDefaultGateway() const { return m_OverrideDefaultGateway; }
  void SetOverrideDefaultGateway(bool override) { m_OverrideDefaultGateway = override; }
  EIPMaskedAddress GetNetwork() const { return m_Network; }
  void SetNetwork(const EIPMaskedAddress& network) { m_Network = network; }
  // The network's address part.
  EIPAddress GetNetworkNumber() const { return m_Network; }
  // Does nothing: the network number is set only through SetNetwork.
  void SetNetworkNumber(const EIPAddress& number);
  // The network's 4 or 16 mask bytes.
  EBlob GetNetworkMask() const { return m_Network.GetMaskAsBlob(); }
  // The first min(16, size) bytes become the network's mask, the rest zero.
  void SetNetworkMask(const EBlob& mask);
  bool GetUseNetworkNumber() const { return m_UseNetworkNumber; }
  void SetUseNetworkNumber(bool use) { m_UseNetworkNumber = use; }
  bool GetReserveForPCPU() const { return m_ReserveForPCPU; }
  void SetReserveForPCPU(bool reserve) { m_ReserveForPCPU = reserve; }
  unsigned int GetVPI() const { return m_VPI; }
  void SetVPI(unsigned int vpi) { m_VPI = vpi; }
  unsigned int GetVCI() const { return m_VCI; }
  void SetVCI(unsigned int vci) { m_VCI = vci; }
  eAtmEncapsulationMode GetEncapsulation() const { return m_Encapsulation; }
  void SetEncapsulation(eAtmEncapsulationMode encapsulation) { m_Encapsulation = encapsulation; }
  ATMModeEnum GetATMMode() const { return m_ATMMode; }
  void SetATMMode(ATMModeEnum mode) { m_ATMMode = mode; }
  EVLANIPAddressTableItemProperties GetVLANIPAddressTableItemProperties() const { return m_VLAN; }
  void SetVLANIPAddressTableItemProperties(const EVLANIPAddressTableItemProperties& vlan) {
    m_VLAN = vlan;
  }
  EISLIPAddressTableItemProperties GetISLIPAddressTableItemProperties() const { return m_ISL; }
  void SetISLIPAddressTableItemProperties(const EISLIPAddressTableItemProperties& isl) {
    m_ISL = isl;
  }

  // The source MAC of the host `ip`. Many-to-one: the range's first MAC, true. One-to-one: the
  // first MAC plus the host's offset in the IP range (first four address bytes, big-endian), or
  // the first MAC and false for an address outside the range. The addition deliberately adds one
  // more when the low 32 bits of the MAC reach 0xFFFFFFFF, carrying into the top 16 bits.
  bool GetMACAddressFromIPAddress(const EIPAddress& ip, EMACAddress& mac) const;

  // At level 6: with `header` the column header and a rule line first, then one line of
  // tab-separated values (first address, one past the last address, network use, network,
  // mask, MAC mode, first MAC, MAC count). Nothing when the channel is null or silent at 6.
  void DumpToLog(ETrace* trace, bool header) const;

  // Writes version 3; reads it and the six older layouts (see Schema).
  struct Schema;  // the archive form, in eIPAddressTableItem.cpp

 private:
  // The IP address table marks the rows it builds from an interface table.
  friend class EIPAddressTable;

  static constexpr unsigned int kDefaultVCI = 32;

  // Set on rows built from an interface table; no accessor, but archived and copied.
  bool m_InterfaceDerived = false;
  EIPAddressRange m_IPAddressRange;
  EMACAddressRange m_MACAddressRange;
  EIPAddress m_Gateway;
  bool m_OverrideDefaultGateway = false;
  EIPMaskedAddress m_Network;
  bool m_UseNetworkNumber = false;
  EISLIPAddressTableItemProperties m_ISL;
  EVLANIPAddressTableItemProperties m_VLAN;
  bool m_ReserveForPCPU = false;
  eAtmEncapsulationMode m_Encapsulation = eAtmEncapsulationDefault;
  ATMModeEnum m_ATMMode = eATMModeDefault;
  unsigned int m_VPI = 0;
  unsigned int m_VCI = kDefaultVCI;
};

extern template class ERecord<EIPAddressTableItem>;
