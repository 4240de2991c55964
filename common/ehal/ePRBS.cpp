#include "ePRBS.h"

#include <sstream>
#include <stdexcept>
#include <utility>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using detail::EnumText;
using detail::Field;
using detail::From;
using detail::Layout;
using detail::SameFields;
using detail::WriteHead;

// The names of the values of the request and reply codes, as the text forms print them.
namespace {
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

// Each newer layout put one id in front of the older one.
struct EPRBS::Schema {
  static constexpr auto kFields = std::make_tuple(
      Field("ClientMessageId", &EPRBS::m_ClientMessageId), Field("ExtraId", &EPRBS::m_ExtraId),
      Field("RequestType", &EPRBS::m_RequestType).Named(kRequestTypeTexts),
      Field("ReturnCode", &EPRBS::m_ReturnCode).Named(kReturnCodeTexts),
      Field("BufferSize", &EPRBS::m_BufferSize), Field("PacketCount", &EPRBS::m_PacketCount),
      Field("Start", &EPRBS::m_Start), Field("Packets", &EPRBS::m_Packets));
  static constexpr Layout kLayouts[] = {
      {0x11334358},
      {0x11334357, From("ExtraId")},      // no client message id
      {0x11334356, From("RequestType")},  // no client message id, no extra id
  };
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/ePRBS", 160,
                                              "eHal::EPRBS::SerializeIn"};
};

EPRBS::EPRBS(bool direction) {
  Empty();
  m_Direction = direction;
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
  if (this != &other) *this = other;
}

void EPRBS::Swap(EPRBS& other) {
  // The packet lists exchange their storage; no packet is copied.
  std::swap(*this, other);
}

bool EPRBS::IsEqual(const EPRBS& other) const {
  return SameFields<Schema>(*this, other) && m_Direction == other.m_Direction;
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
  return EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EPRBS::ReturnCodeToString() const {
  return EnumText(m_ReturnCode, kReturnCodeTexts);
}

std::string EPRBS::ToString() const {
  std::ostringstream text;
  WriteHead(text, RequestTypeToString(), ReturnCodeToString(), "State: ");
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
  WriteHead(text, RequestTypeToString(), ReturnCodeToString(), "State: ");
  text << ", Extra Id: " << m_ExtraId << ", Client Message Id: " << m_ClientMessageId
       << ", Buffer Size: " << m_BufferSize << ", Start: " << m_Start
       << ", Count: " << m_PacketCount << ", PacketData: " << m_Packets.size();
  return text.str();
}

}  // namespace eHal

template class ERecord<eHal::EPRBS>;
