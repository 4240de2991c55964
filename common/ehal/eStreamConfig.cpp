#include "eStreamConfig.h"

#include <cstdio>
#include <cstring>

#include "eArchive.h"
#include "eRecordText.h"

namespace eHal {

namespace {
constexpr unsigned int kSignature = 0x112233;
constexpr unsigned int kStreamDataSignature = 0x332211;

const char* const kRequestTypeTexts[] = {"invalid",  "full",       "delta",      "clear",
                                         "register", "unregister", "ackFromPCPU"};
const char* const kActionTexts[] = {"invalid", "add", "delete", "set"};
}  // namespace

const char* EStreamConfig::EStreamData::GetActionAsString() const {
  return eRecordText::EnumText(m_Action, kActionTexts, "");
}

void EStreamConfig::EStreamData::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kStreamDataSignature));
  archive.WriteUnsignedInt(m_Action);
  archive << m_StreamParameter << m_FirstStreamValue << m_SecondStreamValue;
}

void EStreamConfig::EStreamData::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kStreamDataSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eStreamConfig", 101,
                             "eHal::EStreamConfig::EStreamData::SerializeIn");
  }
  m_Action = static_cast<eAction>(archive.ReadUnsignedInt());
  archive >> m_StreamParameter >> m_FirstStreamValue >> m_SecondStreamValue;
}

void EStreamConfig::SetReturnCode(const char* text) {
  m_ReturnCode = text != nullptr && std::strcmp(text, "success") == 0 ? kSuccess : kFailure;
}

void EStreamConfig::Empty() {
  m_RequestType = kInvalid;
  m_ReturnCode = kFailure;
  m_StreamStartOffset = 0;
  m_StreamCount = 0;
  m_StreamConfigMap.clear();
}

const char* EStreamConfig::GetRequestTypeAsString() const {
  const char* const text = eRecordText::EnumText(m_RequestType, kRequestTypeTexts, nullptr);
  if (text != nullptr) return text;
  std::printf("returning default \n");
  return "";
}

void EStreamConfig::SerializeOut(EArchive& archive) const {
  archive.WriteSignedInt(static_cast<int>(kSignature));
  archive.WriteUnsignedInt(m_RequestType);
  archive.WriteUnsignedInt(m_ReturnCode);
  archive << m_StreamStartOffset << m_StreamCount;
  ::SerializeOut(archive, m_StreamConfigMap);
}

void EStreamConfig::SerializeIn(EArchive& archive) {
  if (archive.ReadUnsignedInt() != kSignature) {
    EArchive::SerializeError("x86_64/common/ehal/eStreamConfig", 186,
                             "eHal::EStreamConfig::SerializeIn");
  }
  m_RequestType = static_cast<eRequestType>(archive.ReadUnsignedInt());
  m_ReturnCode = static_cast<eReturnCode>(archive.ReadUnsignedInt());
  archive >> m_StreamStartOffset >> m_StreamCount;
  ::SerializeIn(archive, m_StreamConfigMap);
}

EArchive& operator<<(EArchive& archive, const EStreamConfig& config) {
  config.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EStreamConfig& config) {
  config.SerializeIn(archive);
  return archive;
}

EArchive& operator<<(EArchive& archive, const EStreamConfig::EStreamData& data) {
  data.SerializeOut(archive);
  return archive;
}

EArchive& operator>>(EArchive& archive, EStreamConfig::EStreamData& data) {
  data.SerializeIn(archive);
  return archive;
}

}  // namespace eHal
