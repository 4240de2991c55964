// eHal::EMacSec: the request/reply record with which a client reads or replaces one of the two
// MACsec secure-association tables (transmit or receive) of a test port, together with the
// confidentiality offset. Its entries are eHal::EMacSec::ESecureAssociation.
#pragma once

#include <string>
#include <vector>

#include "eBlob.h"
#include "eRecord.h"

namespace eHal {

class EMacSec : public ERecord<EMacSec> {
 public:
  enum eRequestType : unsigned int { kMacSecInvalid = 0, kMacSecGetTable = 1, kMacSecSetTable = 2 };
  enum eReturnCode : unsigned int { kSuccess = 0, kFail = 1 };
  enum eTableId : unsigned int { kTableInvalid = 0, kTableTx = 1, kTableRx = 2 };

  // One secure association: channel identifier (8 bytes), association number (0-3) and key
  // (16 bytes) when valid. Archived without a signature of its own.
  class ESecureAssociation : public ERecord<ESecureAssociation> {
   public:
    ESecureAssociation() = default;
    ESecureAssociation(const EBlob& sci, unsigned char an, const EBlob& sak)
        : m_SCI(sci), m_AN(an), m_SAK(sak) {}

    void SetSCI(const EBlob& sci) { m_SCI = sci; }
    const EBlob& GetSCI() const { return m_SCI; }
    void SetAN(unsigned char an) { m_AN = an; }
    unsigned char GetAN() const { return m_AN; }
    void SetSAK(const EBlob& sak) { m_SAK = sak; }
    const EBlob& GetSAK() const { return m_SAK; }

    // An 8-byte SCI, AN at most 3 and a 16-byte SAK.
    bool IsValid() const;
    bool operator==(const ESecureAssociation& other) const;
    bool operator!=(const ESecureAssociation& other) const { return !(*this == other); }

    struct Schema;  // the archive form, in eMacSec.cpp

   private:
    EBlob m_SCI;
    unsigned char m_AN = 0;
    EBlob m_SAK;
  };

  EMacSec() { Empty(); }

  void SetRequestType(eRequestType type) { m_RequestType = type; }
  eRequestType GetRequestType() const { return m_RequestType; }
  void SetReturnCode(eReturnCode code) { m_ReturnCode = code; }
  eReturnCode GetReturnCode() const { return m_ReturnCode; }
  void SetClientMessageId(unsigned int id) { m_ClientMessageId = id; }
  unsigned int GetClientMessageId() const { return m_ClientMessageId; }
  void SetTableId(eTableId id) { m_TableId = id; }
  eTableId GetTableId() const { return m_TableId; }
  // Number of leading payload bytes sent unencrypted.
  void SetConfOff(unsigned char offset) { m_ConfOff = offset; }
  unsigned char GetConfOff() const { return m_ConfOff; }
  void SetSATable(const std::vector<ESecureAssociation>& table) { m_SATable = table; }
  const std::vector<ESecureAssociation>& GetSATable() const { return m_SATable; }
  // Destroys every association.
  void ClearSATable() { m_SATable.clear(); }

  // Every number 0, the table emptied.
  void Empty();
  // Copies every field (no-op on self).
  void Copy(const EMacSec& other);
  void Swap(EMacSec& other);
  // Every field equal, the tables entry by entry; always true for the object itself.
  bool IsEqual(const EMacSec& other) const;
  bool operator==(const EMacSec& other) const { return IsEqual(other); }
  // A transmit or receive table with an empty get-table request or a set-table request whose
  // associations are all valid; an invalid record throws std::runtime_error when
  // `throwIfInvalid` is set, else returns false.
  bool IsValid(bool throwIfInvalid) const;

  const char* RequestTypeToString() const;
  const char* ReturnCodeToString() const;
  const char* TableIdToString() const;
  // The head items; the offset and the table size only for a set-table request. The offset is
  // printed as its raw byte. No form prints the associations, so keys never reach a trace.
  std::string ToString() const;
  std::string ToStringFull() const;

  // Archived by ERecord: the current layout, and the older one without the offset, which then
  // keeps its value.
  struct Schema;  // the archive form, in eMacSec.cpp

 private:
  // Writes the items after the head; `withTable` adds the offset and the table size.
  std::string Text(bool withTable) const;

  eRequestType m_RequestType;
  eReturnCode m_ReturnCode;
  unsigned int m_ClientMessageId;
  eTableId m_TableId;
  std::vector<ESecureAssociation> m_SATable;
  unsigned char m_ConfOff;
};

}  // namespace eHal

extern template class ERecord<eHal::EMacSec::ESecureAssociation>;
extern template class ERecord<eHal::EMacSec>;
