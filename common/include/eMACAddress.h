// EMACAddress: a hardware address kept as a byte blob, normally six bytes in transmission order.
// An empty address is six zero bytes. Serialisable; text form "00:1a:2b:3c:4d:5e".
#pragma once

#include <string>

#include "eBlob.h"
#include "eRecord.h"

class EMACAddress : public ERecord<EMACAddress> {
 public:
  static constexpr unsigned int kLength = 6;

  // Six zero bytes.
  EMACAddress();
  // Copies the bytes as they are, whatever their number.
  EMACAddress(const EMACAddress& other) = default;
  EMACAddress& operator=(const EMACAddress& other) = default;
  ~EMACAddress() = default;

  void Copy(const EMACAddress& other) { *this = other; }
  // Six zero bytes (the allocation is replaced by one of exactly six bytes).
  void Empty();
  void Swap(EMACAddress& other) { m_Address.Swap(other.m_Address); }

  // Takes the blob and forces it to six bytes: a longer one keeps its LAST six bytes, a shorter
  // one is padded with zeros in front.
  void SetMACAddress(const EBlob& address);
  const EBlob& GetMACAddress() const { return m_Address; }

  // Same size and bytes.
  bool operator==(const EMACAddress& other) const { return m_Address.IsEqual(other.m_Address); }
  bool operator!=(const EMACAddress& other) const { return !m_Address.IsEqual(other.m_Address); }

  // Parses hex text after removing every ':' (two digits per byte; other non-hex characters
  // are skipped). The length is not forced: "00:11:22" gives three bytes.
  void SetAsString(const std::string& text);
  // Every byte as two lower-case hex digits separated by ':'; empty for no bytes.
  std::string GetAsString() const;

  // The archive form, in eMACAddress.cpp; the reader takes the bytes as they stand, without
  // forcing six.
  struct Schema;

 private:
  EBlob m_Address;
};

extern template class ERecord<EMACAddress>;
