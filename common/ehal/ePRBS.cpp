#include "ePRBS.h"

#include <sstream>
#include <stdexcept>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
// Each newer layout put one id in front of the older one.
constexpr unsigned int kSignature = 0x11334358;                 // client message id, extra id, ...
constexpr unsigned int kSignatureWithoutClientId = 0x11334357;  // extra id, ...
constexpr unsigned int kSignatureWithoutIds = 0x11334356;

const char* const kRequestTypeTexts[] = {"Initial",
                                         "kPRBSConfigure",
                                         "kPRBSUnConfigure",
                                         "kPRBSStartCapture",
                                         "kPRBSStopCapture",
                                         "kPRBSResetCapture",
                                         "kPRBSGetCountPacketsFromStart",
                                         "kPRBSGetAllPackets",
                                         "kPRBSGetPacketCount"};
const char* const kReturnCodeTexts[] = {"kSuccess", "kFail", "kNotOwner", "kNotPrbsMode",
                                        "kInvalidArgs"};
}  // namespace

EPRBS::EPRBS(bool direction) {
  Empty();
  m_Direction = direction;
}

EPRBS::EPRBS(const EPRBS& other) {
  Empty();
  Copy(other);
}

EPRBS& EPRBS::operator=(const EPRBS& other) {
  Copy(other);
  return *this;
}

EPRBS::~EPRBS() {
  Empty();
}

void EPRBS::Empty() {
  m_RequestType = kInitial;
  m_ReturnCode = kSuccess;
  m_ExtraId = 0;
  m_ClientMessageId = 0;
  m_BufferSize = 0;
  m_PacketCount = 0;
  m_Start = 0;
  m_Packets.clear();
  m_Direction = false;
}

void EPRBS::Copy(const EPRBS& other) {
  if (this == &other) return;
  Fields(*this) = Fields(other);
}

void EPRBS::Swap(EPRBS& other) {
  // The packet lists exchange their storage; no packet is copied.
  auto mine = Fields(*this);
  auto theirs = Fields(other);
  mine.swap(theirs);
}

bool EPRBS::IsEqual(const EPRBS& other) const {
  return Fields(*this) == Fields(other);
}

bool EPRBS::IsValid(bool throwIfInvalid) const {
  const bool allZero = m_Start == 0 && m_BufferSize == 0 && m_PacketCount == 0;
  const bool clean = m_ReturnCode == kSuccess && m_Packets.empty();
  // The requesting side never carries a failure code (nor, where noted, packets).
  const bool requestSucceeds = !m_Direction || m_ReturnCode == kSuccess;
  const bool requestClean = !m_Direction || clean;
  bool valid = false;
  switch (m_RequestType) {
    case kInitial:
      valid = allZero && clean;
      break;
    case kPRBSConfigure:
      valid = m_Start == 0 && m_BufferSize != 0 && m_PacketCount == 0 && m_Packets.empty() &&
              requestSucceeds;
      break;
    case kPRBSUnConfigure:
    case kPRBSStartCapture:
    case kPRBSStopCapture:
    case kPRBSResetCapture:
    case kPRBSGetPacketCount:
      valid = allZero && m_Packets.empty() && requestSucceeds;
      break;
    case kPRBSGetCountPacketsFromStart:
      valid = m_BufferSize == 0 && requestClean;
      break;
    case kPRBSGetAllPackets:
      valid = allZero && requestClean;
      break;
  }
  if (!valid && throwIfInvalid) throw std::runtime_error("Invalid State of PRBS class");
  return valid;
}

const char* EPRBS::RequestTypeToString() const {
  return eRecordText::EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EPRBS::ReturnCodeToString() const {
  return eRecordText::EnumText(m_ReturnCode, kReturnCodeTexts);
}

std::string EPRBS::ToString() const {
  std::ostringstream text;
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString(), "State: ");
  text << ", Extra Id: " << m_ExtraId << ", Client Message Id: " << m_ClientMessageId;
  switch (m_RequestType) {
    case kPRBSConfigure:
      text << ", Buffer Size: " << m_BufferSize;
      break;
    case kPRBSGetCountPacketsFromStart:
      text << ", Start: " << m_Start << ", Count: " << m_PacketCount
           << ", PacketData: " << m_Packets.size();
      break;
    case kPRBSGetAllPackets:
      text << ", PacketData: " << m_Packets.size();
      break;
    case kPRBSGetPacketCount:
      text << ", Count: " << m_PacketCount;
      break;
    default:
      break;
  }
  return text.str();
}

std::string EPRBS::ToStringFull() const {
  std::ostringstream text;
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString(), "State: ");
  text << ", Extra Id: " << m_ExtraId << ", Client Message Id: " << m_ClientMessageId
       << ", Buffer Size: " << m_BufferSize << ", Start: " << m_Start
       << ", Count: " << m_PacketCount << ", PacketData: " << m_Packets.size();
  return text.str();
}

void EPRBS::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_ClientMessageId << m_ExtraId;
  archive.WriteUnsignedInt(m_RequestType);
  archive.WriteUnsignedInt(m_ReturnCode);
  archive << m_BufferSize << m_PacketCount << m_Start;
  ::SerializeOut(archive, m_Packets);
}

void EPRBS::SerializeIn(EArchive& archive) {
  switch (archive.ReadUnsignedInt()) {
    case kSignature:
      archive >> m_ClientMessageId;
      [[fallthrough]];
    case kSignatureWithoutClientId:
      archive >> m_ExtraId;
      [[fallthrough]];
    case kSignatureWithoutIds:
      break;
    default:
      EArchive::SerializeError("x86_64/common/ehal/ePRBS", 160, "eHal::EPRBS::SerializeIn");
  }
  const unsigned int requestType = archive.ReadUnsignedInt();
  const unsigned int returnCode = archive.ReadUnsignedInt();
  m_RequestType = static_cast<eRequestType>(requestType);
  m_ReturnCode = static_cast<eReturnCode>(returnCode);
  archive >> m_BufferSize >> m_PacketCount >> m_Start;
  ::SerializeIn(archive, m_Packets);
}

EArchive& operator<<(EArchive& archive, const EPRBS& prbs) {
  prbs.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EPRBS& prbs) {
  prbs.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
