#include "eConditionalStatConfig.h"

#include <sstream>
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

// The names of the values of the request and reply codes, as the text forms print them.
namespace {
const char* const kRequestTypeTexts[] = {"Invalid", "Configure", "UnConfigure"};
const char* const kReturnCodeTexts[] = {"Success", "Fail"};
}  // namespace

// Each newer layout put its added fields in front of the older one. The request type and the
// return code are written signed.
struct EConditionalStatConfig::Schema {
  using C = EConditionalStatConfig;
  static constexpr auto kFields = std::make_tuple(
      Field("PortId", &C::m_PortId), Field("LatencyType", &C::m_LatencyType),
      Field("NumberOfBins", &C::m_NumberOfBins), Field("Base64Xml", &C::m_Base64Xml),
      Field("LatencyMode", &C::m_LatencyMode),
      Field("RequestType", &C::m_RequestType, kSignedOutUnsignedIn).Named(kRequestTypeTexts),
      Field("ReturnCode", &C::m_ReturnCode, kSignedOutUnsignedIn).Named(kReturnCodeTexts),
      Field("FromPGID", &C::m_FromPGID), Field("ToPGID", &C::m_ToPGID),
      Field("FromStreamID", &C::m_FromStreamID), Field("ToStreamID", &C::m_ToStreamID),
      Field("PGIDConfigEnable", &C::m_PGIDConfigEnable),
      Field("StreamConfigEnable", &C::m_StreamConfigEnable),
      Field("ScanInterval", &C::m_ScanInterval), Field("ScanTimeStamp", &C::m_ScanTimeStamp),
      Field("PGIDActiveMap", &C::m_PGIDActiveMap),
      Field("StreamIDActiveMap", &C::m_StreamIDActiveMap),
      Field("ClientMessageId", &C::m_ClientMessageId));
  static constexpr Layout kLayouts[] = {
      {0x1996196},
      {0x1996195, From("LatencyType")},  // no port id
      {0x1996194, From("Base64Xml")},    // no latency type and bins either
      {0x1996193, From("LatencyMode")},  // no base64 XML either
      {0x1996192, From("RequestType")},  // no latency mode either
  };
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eConditionalStatConfig", 212,
                                              "eHal::EConditionalStatConfig::SerializeIn"};
};

namespace {

const char* BoolText(bool value) {
  return value ? "TRUE" : "FALSE";
}
}  // namespace

void EConditionalStatConfig::Swap(EConditionalStatConfig& other) {
  std::swap(*this, other);
}

bool EConditionalStatConfig::operator==(const EConditionalStatConfig& other) const {
  // An un-configure carries nothing that matters.
  if (m_RequestType == kUnConfigure && other.m_RequestType == kUnConfigure) return true;
  return SameFields<Schema>(*this, other);
}

const char* EConditionalStatConfig::RequestTypeToString() const {
  return EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EConditionalStatConfig::ReturnCodeToString() const {
  return EnumText(m_ReturnCode, kReturnCodeTexts);
}

std::string EConditionalStatConfig::ToString() const {
  std::ostringstream text;
  WriteHead(text, RequestTypeToString(), ReturnCodeToString());
  if (m_RequestType == kConfigure) {
    text << ", From PGID: " << m_FromPGID << ", To PGID: " << m_ToPGID
         << ", From Stream-id: " << m_FromStreamID << ", To Stream-id: " << m_ToStreamID
         << ", PGID Config enable: " << BoolText(m_PGIDConfigEnable)
         << ", Stream Config enable: " << BoolText(m_StreamConfigEnable)
         << ", Scan Interval: " << m_ScanInterval << ", Scan Timestamp: " << m_ScanTimeStamp
         << ", PGID Active map: " << m_PGIDActiveMap
         << ", Stream Active map: " << m_StreamIDActiveMap
         << ", Client Message Id: " << m_ClientMessageId << ", Latency Mode: " << m_LatencyMode
         << ", Base64 xml: " << m_Base64Xml << ", Latency Type: " << m_LatencyType
         << ", Number of Bins: " << m_NumberOfBins;
  }
  return text.str();
}

}  // namespace eHal

template class ERecord<eHal::EConditionalStatConfig>;
