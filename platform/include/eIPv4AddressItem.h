// EIPv4AddressItem: the IPv4 address of an emulated interface, with its gateway and mask length
// and the interface item that holds it. Part of the interface-table model that stands in for
// the interface-table library; serialisable.
#pragma once

#include "eIPAddress.h"
#include "eRecord.h"

class EInterfaceItem;

class EIPv4AddressItem : public ERecord<EIPv4AddressItem> {
 public:
  // Disabled, address and gateway 0.0.0.0, mask length 0, no owner.
  EIPv4AddressItem() = default;
  // Copies every field, the owner included.
  EIPv4AddressItem(const EIPv4AddressItem& other) = default;
  EIPv4AddressItem& operator=(const EIPv4AddressItem& other) = default;
  ~EIPv4AddressItem() = default;

  bool IsEnabled() const { return m_Enabled; }
  void SetEnabled(bool enabled) { m_Enabled = enabled; }
  const EIPAddress& GetAddress() const { return m_Address; }
  void SetAddress(const EIPAddress& address) { m_Address = address; }
  const EIPAddress& GetGateway() const { return m_Gateway; }
  void SetGateway(const EIPAddress& gateway) { m_Gateway = gateway; }
  // The network mask as a prefix length in bits.
  unsigned int GetMaskLength() const { return m_MaskLength; }
  void SetMaskLength(unsigned int length) { m_MaskLength = length; }
  // The interface item that holds this address item; null when none. Not archived.
  const EInterfaceItem* GetOwner() const { return m_Owner; }
  void SetOwner(const EInterfaceItem* owner) { m_Owner = owner; }

  struct Schema;  // the archive form, in eIPv4AddressItem.cpp

 private:
  bool m_Enabled = false;
  EIPAddress m_Address;
  EIPAddress m_Gateway;
  unsigned int m_MaskLength = 0;
  const EInterfaceItem* m_Owner = nullptr;
};

extern template class ERecord<EIPv4AddressItem>;
