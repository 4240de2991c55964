#include "eMacSec.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x13758242;  // the offset, then the older layout
constexpr unsigned int kSignatureWithoutOffset = 0x13758241;

constexpr unsigned int kSCISize = 8;
constexpr unsigned int kSAKSize = 16;
constexpr unsigned char kHighestAN = 3;

const char* const kRequestTypeTexts[] = {"kMacSecInvalid", "kMacSecGetTable", "kMacSecSetTable"};
const char* const kReturnCodeTexts[] = {"kSuccess", "kFail"};
const char* const kTableIdTexts[] = {"kTableInvalid", "kTableTx", "kTableRx"};
}  // namespace

bool EMacSec::ESecureAssociation::IsValid() const {
  return m_SCI.GetSize() == kSCISize && m_AN <= kHighestAN && m_SAK.GetSize() == kSAKSize;
}

bool EMacSec::ESecureAssociation::operator==(const ESecureAssociation& other) const {
  return m_SCI == other.m_SCI && m_AN == other.m_AN && m_SAK == other.m_SAK;
}

void EMacSec::ESecureAssociation::SerializeOut(EArchive& archive) const {
  archive << m_SCI << m_AN << m_SAK;
}

void EMacSec::ESecureAssociation::SerializeIn(EArchive& archive) {
  archive >> m_SCI >> m_AN >> m_SAK;
}

void EMacSec::Empty() {
  m_RequestType = kMacSecInvalid;
  m_ReturnCode = kSuccess;
  m_ClientMessageId = 0;
  m_TableId = kTableInvalid;
  ClearSATable();
  m_ConfOff = 0;
}

void EMacSec::Copy(const EMacSec& other) {
  if (this == &other) return;
  Fields(*this) = Fields(other);
}

void EMacSec::Swap(EMacSec& other) {
  auto mine = Fields(*this);
  auto theirs = Fields(other);
  mine.swap(theirs);
}

bool EMacSec::IsEqual(const EMacSec& other) const {
  return this == &other || Fields(*this) == Fields(other);
}

bool EMacSec::IsValid(bool throwIfInvalid) const {
  bool valid = false;
  if (m_TableId == kTableTx || m_TableId == kTableRx) {
    switch (m_RequestType) {
      case kMacSecGetTable:
        valid = m_SATable.empty();
        break;
      case kMacSecSetTable:
        valid = std::all_of(m_SATable.begin(), m_SATable.end(),
                            [](const ESecureAssociation& sa) { return sa.IsValid(); });
        break;
      case kMacSecInvalid:
        break;
    }
  }
  if (!valid && throwIfInvalid) throw std::runtime_error("invalid EMacSec message state");
  return valid;
}

const char* EMacSec::RequestTypeToString() const {
  return eRecordText::EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EMacSec::ReturnCodeToString() const {
  return eRecordText::EnumText(m_ReturnCode, kReturnCodeTexts);
}

const char* EMacSec::TableIdToString() const {
  return eRecordText::EnumText(m_TableId, kTableIdTexts);
}

std::string EMacSec::Text(bool withTable) const {
  std::ostringstream text;
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  text << ", Client Message ID: " << m_ClientMessageId << ", Table ID: " << TableIdToString();
  if (withTable) {
    // The offset goes out as the byte itself, not as its digits.
    text << ", Confidentiality Offset: " << static_cast<char>(m_ConfOff)
         << ", Number of SA entries: " << m_SATable.size();
  }
  return text.str();
}

std::string EMacSec::ToString() const {
  return Text(m_RequestType == kMacSecSetTable);
}

std::string EMacSec::ToStringFull() const {
  return Text(true);
}

void EMacSec::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_ConfOff;
  archive.WriteUnsignedInt(m_RequestType);
  archive.WriteUnsignedInt(m_ReturnCode);
  archive << m_ClientMessageId;
  archive.WriteSignedInt(static_cast<int>(m_TableId));
  ::SerializeOut(archive, m_SATable);
}

void EMacSec::SerializeIn(EArchive& archive) {
  switch (archive.ReadUnsignedInt()) {
    case kSignature:
      archive >> m_ConfOff;
      [[fallthrough]];
    case kSignatureWithoutOffset:
      break;
    default:
      EArchive::SerializeError("x86_64/common/ehal/eMacSec", 137, "eHal::EMacSec::SerializeIn");
  }
  const unsigned int requestType = archive.ReadUnsignedInt();
  const unsigned int returnCode = archive.ReadUnsignedInt();
  archive >> m_ClientMessageId;
  const unsigned int tableId = archive.ReadUnsignedInt();
  m_RequestType = static_cast<eRequestType>(requestType);
  m_ReturnCode = static_cast<eReturnCode>(returnCode);
  m_TableId = static_cast<eTableId>(tableId);
  ::SerializeIn(archive, m_SATable);
}

EArchive& operator<<(EArchive& archive, const EMacSec& macSec) {
  macSec.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMacSec& macSec) {
  macSec.SerializeIn(archive);
  return archive;
}

EArchive& operator<<(EArchive& archive, const EMacSec::ESecureAssociation& association) {
  association.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EMacSec::ESecureAssociation& association) {
  association.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
