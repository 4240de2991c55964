// EVLAN: one IEEE 802.1Q / 802.1ad VLAN tag (tag protocol identifier, user priority,
// canonical-format bit, VLAN id) decoded from a byte buffer, with the length of what follows it.
#pragma once

#include <cstdint>

#include "eProtocol.h"

// A tag word with the tag protocol identifier 0x8100 and a zero tag control field; the fill
// value of new VLAN tag slots.
inline constexpr unsigned int kVlanDefaultValue = 0x81000000u;

// The offset-taking operations below take the offset as unsigned and are separate virtual
// operations from the base ones of the same name, which they hide on purpose: through an EVLAN
// the tag decoder is reached, through an EProtocol reference the base operations that decode
// nothing.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#endif

class EVLAN : public EProtocol {
 public:
  // Protocol type 5, all tag fields 0, data length 0.
  EVLAN();
  // Copies as Copy does: the data length of the new tag is 0.
  EVLAN(const EVLAN& other);
  ~EVLAN() override;
  // Copies the other tag in (not on self-assignment) and returns a copy of the result.
  EVLAN operator=(const EVLAN& other);

  // Protocol type 5, tag fields and TPID 0; the data length is left as it is.
  void Empty();
  // Copies the base fields, VLAN id, user priority, canonical format and TPID; the data length
  // is not copied.
  void Copy(const EVLAN& other);

  unsigned int GetSize() const override;
  unsigned int BytesRequired(const EBlob& blob, int offset) override;

  // Bytes that followed the tag in the decoded buffer (wraps when the buffer was shorter).
  virtual std::uint16_t GetDataLength() const;
  // Empties the tag, decodes it when the blob holds one at `offset`, always computes the data
  // length, and returns the header size. The string list is not used.
  virtual unsigned int Decode(const EBlob& blob, unsigned int offset, EStringList* log);
  // 4: the size of a tag.
  virtual unsigned int GetHeaderSize() const;
  // True when the blob length minus `offset`, in unsigned 32-bit arithmetic, is at least 4.
  virtual bool IsEnoughBytes(const EBlob& blob, unsigned int offset);

  // True when the two bytes at `offset`, big-endian, are 0x8100, 0x88A8, 0x9100, 0x9200 or
  // 0x9300. False when `offset` is not below the blob length or the second byte lies beyond
  // the blob's storage.
  static bool IsVLAN(const EBlob& blob, unsigned int offset);

  unsigned int GetVLANID() const { return m_VLANID; }
  int GetUserPriority() const { return m_UserPriority; }
  int GetCanonicalFormat() const { return m_CanonicalFormat; }
  // The whole tag word as decoded: identifier in the upper 16 bits, tag control in the lower.
  unsigned int GetVLANTPID() const { return m_TPID; }

  // The setters store their argument unchanged.
  void SetVLANID(unsigned int id) { m_VLANID = id; }
  void SetUserPriority(int priority) { m_UserPriority = priority; }
  void SetVLANTPID(unsigned int tpid) { m_TPID = tpid; }
  // Does nothing: the canonical-format bit changes only by decoding or copying.
  void SetCanonicalFormat(int canonicalFormat);

 private:
  unsigned int m_VLANID;
  int m_UserPriority;
  int m_CanonicalFormat;
  std::uint16_t m_DataLength = 0;
  unsigned int m_TPID;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
