// EISLIPAddressTableItemProperties: the ISL encapsulation of a host range (enabled flag, VLAN id
// with its mapping over the hosts, user priority, BPDU bit and index). Serialisable.
#pragma once

#include "eRecord.h"

class EISLIPAddressTableItemProperties : public ERecord<EISLIPAddressTableItemProperties> {
 public:
  static constexpr unsigned short kMaxVLANID = 4095;
  static constexpr unsigned char kMaxUserPriority = 7;
  // The VLAN id grows with the host's index.
  static constexpr unsigned int kVLANIDPerHost = 0;
  // One VLAN id for all hosts.
  static constexpr unsigned int kOneVLANID = 1;

  // Disabled, mapping mode 1, every other field 0.
  EISLIPAddressTableItemProperties() = default;
  EISLIPAddressTableItemProperties(const EISLIPAddressTableItemProperties& other) = default;
  EISLIPAddressTableItemProperties& operator=(const EISLIPAddressTableItemProperties& other) =
      default;
  ~EISLIPAddressTableItemProperties() = default;

  void Copy(const EISLIPAddressTableItemProperties& other) { *this = other; }
  // Disabled, mapping mode 1, every other field 0.
  void Empty() { *this = EISLIPAddressTableItemProperties(); }

  bool IsEnabled() const { return m_Enabled; }
  void Enable() { m_Enabled = true; }
  void Disable() { m_Enabled = false; }

  // Stores 0 or 1; other values are ignored.
  void SetVLANMappingMode(unsigned int mode);
  unsigned int GetVLANMappingMode() const { return m_VLANMappingMode; }
  // Clamped to 4095.
  void SetVLANID(unsigned short id);
  // In mapping mode 0 the stored id plus `hostIndex` (16-bit sum) clamped to 4095; otherwise the
  // stored id.
  unsigned short GetVLANID(unsigned short hostIndex) const;
  // Clamped to 7.
  void SetUserPriority(unsigned char priority);
  // The stored priority; the argument is not used.
  unsigned char GetUserPriority(unsigned char hostIndex) const;
  void SetBPDUIndicator(bool indicator) { m_BPDUIndicator = indicator; }
  bool GetBPDUIndicator() const { return m_BPDUIndicator; }
  void SetIndex(unsigned short index) { m_Index = index; }
  unsigned short GetIndex() const { return m_Index; }

  // The archive form, in eISLIPAddressTableItemProperties.cpp; values read are stored unclamped.
  struct Schema;

 private:
  bool m_Enabled = false;
  unsigned int m_VLANMappingMode = kOneVLANID;
  unsigned short m_VLANID = 0;
  unsigned char m_UserPriority = 0;
  bool m_BPDUIndicator = false;
  unsigned short m_Index = 0;
};

extern template class ERecord<EISLIPAddressTableItemProperties>;
