#include "eMacSec.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using detail::EnumText;
using detail::Field;
using detail::From;
using detail::kSignedOutUnsignedIn;
using detail::Layout;
using detail::SameFields;
using detail::WriteHead;

// Travels inside the table of EMacSec, without a signature of its own.
struct EMacSec::ESecureAssociation::Schema {
  static constexpr auto kFields = std::make_tuple(Field("SCI", &ESecureAssociation::m_SCI),
                                                  Field("AN", &ESecureAssociation::m_AN),
                                                  Field("SAK", &ESecureAssociation::m_SAK));
};

// The names of the values of the request and reply codes, as the text forms print them.
namespace {
const char* const kRequestTypeTexts[] = {"kMacSecInvalid", "kMacSecGetTable", "kMacSecSetTable"};
const char* const kReturnCodeTexts[] = {"kSuccess", "kFail"};
const char* const kTableIdTexts[] = {"kTableInvalid", "kTableTx", "kTableRx"};
}  // namespace

// The newer layout put the offset in front of the older one. The table id is written signed.
struct EMacSec::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("ConfOff", &EMacSec::m_ConfOff),
      Field("RequestType", &EMacSec::m_RequestType).Named(kRequestTypeTexts),
      Field("ReturnCode", &EMacSec::m_ReturnCode).Named(kReturnCodeTexts),
      Field("ClientMessageId", &EMacSec::m_ClientMessageId),
      Field("TableId", &EMacSec::m_TableId, kSignedOutUnsignedIn).Named(kTableIdTexts),
      Field("SATable", &EMacSec::m_SATable));
  static constexpr Layout kLayouts[] = {
      {0x13758242},                       // the offset, then the older layout
      {0x13758241, From("RequestType")},  // no offset
  };
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eMacSec", 137,
                                              "eHal::EMacSec::SerializeIn"};
};

namespace {
constexpr unsigned int kSCISize = 8;
constexpr unsigned int kSAKSize = 16;
constexpr unsigned char kHighestAN = 3;

}  // namespace

bool EMacSec::ESecureAssociation::IsValid() const {
  return m_SCI.GetSize() == kSCISize && m_AN <= kHighestAN && m_SAK.GetSize() == kSAKSize;
}

bool EMacSec::ESecureAssociation::operator==(const ESecureAssociation& other) const {
  return SameFields<Schema>(*this, other);
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
  if (this != &other) *this = other;
}

void EMacSec::Swap(EMacSec& other) {
  // The tables exchange their storage; no association is copied.
  std::swap(*this, other);
}

bool EMacSec::IsEqual(const EMacSec& other) const {
  return this == &other || SameFields<Schema>(*this, other);
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
  return EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EMacSec::ReturnCodeToString() const {
  return EnumText(m_ReturnCode, kReturnCodeTexts);
}

const char* EMacSec::TableIdToString() const {
  return EnumText(m_TableId, kTableIdTexts);
}

std::string EMacSec::Text(bool withTable) const {
  std::ostringstream text;
  WriteHead(text, RequestTypeToString(), ReturnCodeToString());
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

}  // namespace eHal

template class ERecord<eHal::EMacSec::ESecureAssociation>;
template class ERecord<eHal::EMacSec>;
