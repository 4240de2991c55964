// eHal::EStreamConfig: the request/reply record that carries per-stream configuration entries
// of a test port's statistics engine, keyed by stream id: a full table, a delta, a clear, a
// registration or an acknowledgement. Each entry is an eHal::EStreamConfig::EStreamData.
#pragma once

#include <map>
#include <string>

#include "eRecord.h"

namespace eHal {

class EStreamConfig : public ERecord<EStreamConfig> {
 public:
  enum eRequestType : unsigned int {
    kInvalid = 0,
    kFull = 1,
    kDelta = 2,
    kClear = 3,
    kRegister = 4,
    kUnregister = 5,
    kAckFromPCPU = 6
  };
  enum eReturnCode : unsigned int { kSuccess = 0, kFailure = 1 };

  // One stream's entry; plain public data.
  class EStreamData : public ERecord<EStreamData> {
   public:
    enum eAction : unsigned int { kActionInvalid = 0, kAdd = 1, kDelete = 2, kSet = 3 };

    EStreamData() = default;
    EStreamData(eAction action, unsigned int streamParameter, unsigned long firstStreamValue,
                unsigned long secondStreamValue)
        : m_Action(action),
          m_StreamParameter(streamParameter),
          m_FirstStreamValue(firstStreamValue),
          m_SecondStreamValue(secondStreamValue) {}

    void Copy(const EStreamData& other) { *this = other; }
    // "invalid", "add", "delete" or "set"; empty for any other action.
    const char* GetActionAsString() const;

    struct Schema;  // the archive form, in eStreamConfig.cpp

    eAction m_Action = kActionInvalid;
    unsigned int m_StreamParameter = 0;
    unsigned long m_FirstStreamValue = 0;
    unsigned long m_SecondStreamValue = 0;
  };
  using EStreamDataMap = std::map<unsigned int, EStreamData>;

  EStreamConfig() { Empty(); }

  void SetRequestType(eRequestType type) { m_RequestType = type; }
  eRequestType GetRequestType() const { return m_RequestType; }
  void SetReturnCode(eReturnCode code) { m_ReturnCode = code; }
  // kSuccess for exactly "success" (case-sensitive, nothing after it), kFailure for any other.
  void SetReturnCode(const char* text);
  eReturnCode GetReturnCode() const { return m_ReturnCode; }
  void SetStreamStartOffset(unsigned int offset) { m_StreamStartOffset = offset; }
  unsigned int GetStreamStartOffset() const { return m_StreamStartOffset; }
  void SetStreamCount(unsigned int count) { m_StreamCount = count; }
  unsigned int GetStreamCount() const { return m_StreamCount; }
  void SetStreamConfigMap(const EStreamDataMap& map) { m_StreamConfigMap = map; }
  const EStreamDataMap& GetStreamConfigMap() const { return m_StreamConfigMap; }
  EStreamDataMap& GetStreamConfigMap() { return m_StreamConfigMap; }

  // Request type 0, return code kFailure, offset and count 0, no entries.
  void Empty();
  // The request type's text; for an unknown type prints "returning default " on its own line to
  // standard output and returns an empty text.
  const char* GetRequestTypeAsString() const;

  struct Schema;  // the archive form, in eStreamConfig.cpp

 private:
  eRequestType m_RequestType;
  eReturnCode m_ReturnCode;
  unsigned int m_StreamStartOffset;
  unsigned int m_StreamCount;
  EStreamDataMap m_StreamConfigMap;
};

}  // namespace eHal

extern template class ERecord<eHal::EStreamConfig::EStreamData>;
extern template class ERecord<eHal::EStreamConfig>;
