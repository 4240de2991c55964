#include "eConditionalStatConfig.h"

#include <sstream>
#include <tuple>
#include <utility>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
// Each newer layout put its added fields in front of the older one.
constexpr unsigned int kSignature = 0x1996196;                    // port id, ...
constexpr unsigned int kSignatureWithoutPortId = 0x1996195;       // latency type, bins, ...
constexpr unsigned int kSignatureWithoutLatencyType = 0x1996194;  // base64 XML, ...
constexpr unsigned int kSignatureWithoutXml = 0x1996193;          // latency mode, ...
constexpr unsigned int kSignatureWithoutLatencyMode = 0x1996192;

const char* const kRequestTypeTexts[] = {"Invalid", "Configure", "UnConfigure"};
const char* const kReturnCodeTexts[] = {"Success", "Fail"};

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
  const auto fields = [](const EConditionalStatConfig& c) {
    return std::tie(c.m_RequestType, c.m_ReturnCode, c.m_FromPGID, c.m_ToPGID, c.m_FromStreamID,
                    c.m_ToStreamID, c.m_PGIDConfigEnable, c.m_StreamConfigEnable, c.m_ScanInterval,
                    c.m_ScanTimeStamp, c.m_PGIDActiveMap, c.m_StreamIDActiveMap,
                    c.m_ClientMessageId, c.m_LatencyMode, c.m_Base64Xml, c.m_LatencyType,
                    c.m_NumberOfBins, c.m_PortId);
  };
  return fields(*this) == fields(other);
}

const char* EConditionalStatConfig::RequestTypeToString() const {
  return eRecordText::EnumText(m_RequestType, kRequestTypeTexts);
}

const char* EConditionalStatConfig::ReturnCodeToString() const {
  return eRecordText::EnumText(m_ReturnCode, kReturnCodeTexts);
}

std::string EConditionalStatConfig::ToString() const {
  std::ostringstream text;
  eRecordText::WriteHead(text, RequestTypeToString(), ReturnCodeToString());
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

void EConditionalStatConfig::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive << m_PortId << m_LatencyType << m_NumberOfBins << m_Base64Xml << m_LatencyMode;
  archive.WriteSignedInt(static_cast<int>(m_RequestType));
  archive.WriteSignedInt(static_cast<int>(m_ReturnCode));
  archive << m_FromPGID << m_ToPGID << m_FromStreamID << m_ToStreamID << m_PGIDConfigEnable
          << m_StreamConfigEnable << m_ScanInterval << m_ScanTimeStamp << m_PGIDActiveMap
          << m_StreamIDActiveMap << m_ClientMessageId;
}

void EConditionalStatConfig::SerializeIn(EArchive& archive) {
  switch (archive.ReadUnsignedInt()) {
    case kSignature:
      archive >> m_PortId;
      [[fallthrough]];
    case kSignatureWithoutPortId:
      archive >> m_LatencyType >> m_NumberOfBins;
      [[fallthrough]];
    case kSignatureWithoutLatencyType:
      archive >> m_Base64Xml;
      [[fallthrough]];
    case kSignatureWithoutXml:
      archive >> m_LatencyMode;
      [[fallthrough]];
    case kSignatureWithoutLatencyMode:
      break;
    default:
      EArchive::SerializeError("x86_64/common/ehal/eConditionalStatConfig", 212,
                               "eHal::EConditionalStatConfig::SerializeIn");
  }
  const unsigned int requestType = archive.ReadUnsignedInt();
  const unsigned int returnCode = archive.ReadUnsignedInt();
  m_RequestType = static_cast<eRequestType>(requestType);
  m_ReturnCode = static_cast<eReturnCode>(returnCode);
  archive >> m_FromPGID >> m_ToPGID >> m_FromStreamID >> m_ToStreamID >> m_PGIDConfigEnable >>
      m_StreamConfigEnable >> m_ScanInterval >> m_ScanTimeStamp >> m_PGIDActiveMap >>
      m_StreamIDActiveMap >> m_ClientMessageId;
}

EArchive& operator<<(EArchive& archive, const EConditionalStatConfig& config) {
  config.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EConditionalStatConfig& config) {
  config.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
