// eHal::EConditionalStatConfig: the request/reply record that turns conditional statistics of a
// test port's statistics engine on or off for a range of packet group ids and of stream ids,
// with the scan interval and the latency settings.
#pragma once

#include <string>

#include "eRecord.h"

namespace eHal {

class EConditionalStatConfig : public ERecord<EConditionalStatConfig> {
 public:
  enum eRequestType : unsigned int { kInvalid = 0, kConfigure = 1, kUnConfigure = 2 };
  enum eReturnCode : unsigned int { kSuccess = 0, kFail = 1 };

  // Port id of a record not yet bound to a port.
  static constexpr unsigned int DUMMYPORTID = 99999;
  // Value of a range end that is not set.
  static constexpr unsigned int kNoRange = 0xFFFFFFFF;

  // Copying, assignment and destruction are the implicit member-wise ones.
  EConditionalStatConfig() = default;
  void Swap(EConditionalStatConfig& other);

  void SetFromPGID(unsigned int id) { m_FromPGID = id; }
  unsigned int GetFromPGID() const { return m_FromPGID; }
  void SetToPGID(unsigned int id) { m_ToPGID = id; }
  unsigned int GetToPGID() const { return m_ToPGID; }
  void SetFromStreamID(unsigned int id) { m_FromStreamID = id; }
  unsigned int GetFromStreamID() const { return m_FromStreamID; }
  void SetToStreamID(unsigned int id) { m_ToStreamID = id; }
  unsigned int GetToStreamID() const { return m_ToStreamID; }
  void SetRequestType(eRequestType type) { m_RequestType = type; }
  eRequestType GetRequestType() const { return m_RequestType; }
  void SetReturnCode(eReturnCode code) { m_ReturnCode = code; }
  eReturnCode GetReturnCode() const { return m_ReturnCode; }
  void SetPGIDConfigEnable(bool enable) { m_PGIDConfigEnable = enable; }
  bool GetPGIDConfigEnable() const { return m_PGIDConfigEnable; }
  void SetStreamConfigEnable(bool enable) { m_StreamConfigEnable = enable; }
  bool GetStreamConfigEnable() const { return m_StreamConfigEnable; }
  void SetScanInterval(unsigned int interval) { m_ScanInterval = interval; }
  unsigned int GetScanInterval() const { return m_ScanInterval; }
  void SetScanTimeStamp(unsigned int timeStamp) { m_ScanTimeStamp = timeStamp; }
  unsigned int GetScanTimeStamp() const { return m_ScanTimeStamp; }
  void SetPGIDActiveMap(const std::string& map) { m_PGIDActiveMap = map; }
  const std::string& GetPGIDActiveMap() const { return m_PGIDActiveMap; }
  void SetStreamIDActiveMap(const std::string& map) { m_StreamIDActiveMap = map; }
  const std::string& GetStreamIDActiveMap() const { return m_StreamIDActiveMap; }
  void SetClientMessageId(unsigned int id) { m_ClientMessageId = id; }
  unsigned int GetClientMessageId() const { return m_ClientMessageId; }
  void SetLatencyMode(const std::string& mode) { m_LatencyMode = mode; }
  const std::string& GetLatencyMode() const { return m_LatencyMode; }
  // An XML document as base64 text.
  void SetBase64Xml(const std::string& xml) { m_Base64Xml = xml; }
  const std::string& GetBase64Xml() const { return m_Base64Xml; }
  void SetLatencyType(const std::string& type) { m_LatencyType = type; }
  const std::string& GetLatencyType() const { return m_LatencyType; }
  void SetNumberOfBins(int bins) { m_NumberOfBins = bins; }
  int GetNumberOfBins() const { return m_NumberOfBins; }
  void SetPortId(unsigned int id) { m_PortId = id; }
  unsigned int GetPortId() const { return m_PortId; }

  // Two un-configure records are always equal; otherwise every field must be.
  bool operator==(const EConditionalStatConfig& other) const;
  bool operator!=(const EConditionalStatConfig& other) const { return !(*this == other); }

  const char* RequestTypeToString() const;
  const char* ReturnCodeToString() const;
  // The head items, and every field but the port id for a configure request.
  std::string ToString() const;

  // Archived by ERecord: the current and the four older layouts; fields a layout lacks keep
  // their values.
  struct Schema;  // the archive form, in eConditionalStatConfig.cpp

 private:
  unsigned int m_FromPGID = kNoRange;
  unsigned int m_ToPGID = kNoRange;
  unsigned int m_FromStreamID = kNoRange;
  unsigned int m_ToStreamID = kNoRange;
  eRequestType m_RequestType = kInvalid;
  eReturnCode m_ReturnCode = kFail;  // until the replying side sets it
  bool m_PGIDConfigEnable = false;
  bool m_StreamConfigEnable = false;
  unsigned int m_ScanInterval = 1000;
  unsigned int m_ScanTimeStamp = 0;
  std::string m_PGIDActiveMap;
  std::string m_StreamIDActiveMap;
  unsigned int m_ClientMessageId = 0;
  std::string m_LatencyMode;
  std::string m_Base64Xml;
  std::string m_LatencyType;
  int m_NumberOfBins = 0;
  unsigned int m_PortId = DUMMYPORTID;
};

}  // namespace eHal

extern template class ERecord<eHal::EConditionalStatConfig>;
