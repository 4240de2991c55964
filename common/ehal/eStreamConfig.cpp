#include "eStreamConfig.h"

#include <cstdio>
#include <cstring>

#include "eRecordSchema.h"
#include "eRecordText.h"

namespace eHal {

using detail::EnumText;
using detail::Field;
using detail::Layout;

struct EStreamConfig::EStreamData::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("Action", &EStreamData::m_Action),
                      Field("StreamParameter", &EStreamData::m_StreamParameter),
                      Field("FirstStreamValue", &EStreamData::m_FirstStreamValue),
                      Field("SecondStreamValue", &EStreamData::m_SecondStreamValue));
  static constexpr Layout kLayouts[] = {{0x332211}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eStreamConfig", 101,
                                              "eHal::EStreamConfig::EStreamData::SerializeIn"};
};

struct EStreamConfig::Schema {
  static constexpr auto kFields =
      std::make_tuple(Field("RequestType", &EStreamConfig::m_RequestType),
                      Field("ReturnCode", &EStreamConfig::m_ReturnCode),
                      Field("StreamStartOffset", &EStreamConfig::m_StreamStartOffset),
                      Field("StreamCount", &EStreamConfig::m_StreamCount),
                      Field("StreamConfigMap", &EStreamConfig::m_StreamConfigMap));
  static constexpr Layout kLayouts[] = {{0x112233}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eStreamConfig", 186,
                                              "eHal::EStreamConfig::SerializeIn"};
};

namespace {

const char* const kRequestTypeTexts[] = {"invalid",  "full",       "delta",      "clear",
                                         "register", "unregister", "ackFromPCPU"};
const char* const kActionTexts[] = {"invalid", "add", "delete", "set"};
}  // namespace

const char* EStreamConfig::EStreamData::GetActionAsString() const {
  return EnumText(m_Action, kActionTexts, "");
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
  const char* const text = EnumText(m_RequestType, kRequestTypeTexts, nullptr);
  if (text != nullptr) return text;
  std::printf("returning default \n");
  return "";
}

}  // namespace eHal

template class ERecord<eHal::EStreamConfig::EStreamData>;
template class ERecord<eHal::EStreamConfig>;
