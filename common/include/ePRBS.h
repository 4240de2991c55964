// eHal::EPRBS: the one request/reply record of the PRBS capture protocol of a test port
// (configure, start, stop and reset a capture, count and fetch captured packets). The same class
// serves both sides; the direction given at construction selects the validity rules.
#pragma once

#include <string>
#include <vector>

#include "ePacket.h"
#include "eRecord.h"

namespace eHal {

// Archived by ERecord: the newest layout and the two older ones without the leading ids (ids a
// layout lacks keep their values); the direction never travels.
class EPRBS : public ERecord<EPRBS> {
 public:
  enum eRequestType : unsigned int {
    kInitial = 0,  // the state of an emptied record, not a command
    kPRBSConfigure = 1,
    kPRBSUnConfigure = 2,
    kPRBSStartCapture = 3,
    kPRBSStopCapture = 4,
    kPRBSResetCapture = 5,
    kPRBSGetCountPacketsFromStart = 6,
    kPRBSGetAllPackets = 7,
    kPRBSGetPacketCount = 8
  };
  enum eReturnCode : unsigned int {
    kSuccess = 0,
    kFail = 1,
    kNotOwner = 2,
    kNotPrbsMode = 3,
    kInvalidArgs = 4
  };

  // `direction` is true on the requesting side and false on the replying side.
  explicit EPRBS(bool direction);

  void SetRequestType(eRequestType type) { m_RequestType = type; }
  eRequestType GetRequestType() const { return m_RequestType; }
  void SetReturnCode(eReturnCode code) { m_ReturnCode = code; }
  eReturnCode GetReturnCode() const { return m_ReturnCode; }
  void SetExtraId(unsigned int id) { m_ExtraId = id; }
  unsigned int GetExtraId() const { return m_ExtraId; }
  void SetClientMessageId(unsigned int id) { m_ClientMessageId = id; }
  unsigned int GetClientMessageId() const { return m_ClientMessageId; }
  void SetBufferSize(unsigned int size) { m_BufferSize = size; }
  unsigned int GetBufferSize() const { return m_BufferSize; }
  // The "Count" of the text forms.
  void SetPacketCount(unsigned int count) { m_PacketCount = count; }
  unsigned int GetPacketCount() const { return m_PacketCount; }
  // Index of the first packet of a requested range.
  void SetStart(unsigned int start) { m_Start = start; }
  unsigned int GetStart() const { return m_Start; }
  void SetPackets(const std::vector<EPacket>& packets) { m_Packets = packets; }
  const std::vector<EPacket>& GetPackets() const { return m_Packets; }
  void SetDirection(bool direction) { m_Direction = direction; }
  bool GetDirection() const { return m_Direction; }

  // Every number 0 (request type "Initial", return code "kSuccess"), no packets, direction false.
  void Empty();
  // Copies every field including the direction (no-op on self).
  void Copy(const EPRBS& other);
  // Exchanges every field; the packet lists exchange their storage.
  void Swap(EPRBS& other);
  // Every field equal, the packets in order, and the direction.
  bool IsEqual(const EPRBS& other) const;
  // Checks the fields against the rule of the request type and direction; an invalid record
  // throws std::runtime_error when `throwIfInvalid` is set, else returns false.
  bool IsValid(bool throwIfInvalid) const;

  const char* RequestTypeToString() const;
  const char* ReturnCodeToString() const;
  // The head items and those the request type uses.
  std::string ToString() const;
  // Every field.
  std::string ToStringFull() const;

  struct Schema;  // the archive form, in ePRBS.cpp

 private:
  eRequestType m_RequestType;
  eReturnCode m_ReturnCode;
  unsigned int m_ExtraId;
  unsigned int m_ClientMessageId;
  unsigned int m_BufferSize;
  unsigned int m_PacketCount;
  unsigned int m_Start;
  std::vector<EPacket> m_Packets;
  bool m_Direction;
};

}  // namespace eHal

extern template class ERecord<eHal::EPRBS>;
