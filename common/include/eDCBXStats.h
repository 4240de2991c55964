// EDCBXStats: the DCBX exchange and TLV counters of a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDCBXStats : public EStatsRecord<EDCBXStats> {
 public:
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDCBXSent(unsigned int value) { m_DCBXSent = value; }
  unsigned int GetDCBXSent() const { return m_DCBXSent; }
  void SetDCBXReceived(unsigned int value) { m_DCBXReceived = value; }
  unsigned int GetDCBXReceived() const { return m_DCBXReceived; }
  void SetDCBXRxError(unsigned int value) { m_DCBXRxError = value; }
  unsigned int GetDCBXRxError() const { return m_DCBXRxError; }
  void SetControlTlvSent(unsigned int value) { m_ControlTlvSent = value; }
  unsigned int GetControlTlvSent() const { return m_ControlTlvSent; }
  void SetControlTlvReceived(unsigned int value) { m_ControlTlvReceived = value; }
  unsigned int GetControlTlvReceived() const { return m_ControlTlvReceived; }
  void SetPriorityGroupTlvSent(unsigned int value) { m_PriorityGroupTlvSent = value; }
  unsigned int GetPriorityGroupTlvSent() const { return m_PriorityGroupTlvSent; }
  void SetPriorityGroupTlvReceived(unsigned int value) { m_PriorityGroupTlvReceived = value; }
  unsigned int GetPriorityGroupTlvReceived() const { return m_PriorityGroupTlvReceived; }
  void SetPFCTlvSent(unsigned int value) { m_PFCTlvSent = value; }
  unsigned int GetPFCTlvSent() const { return m_PFCTlvSent; }
  void SetPFCTlvReceived(unsigned int value) { m_PFCTlvReceived = value; }
  unsigned int GetPFCTlvReceived() const { return m_PFCTlvReceived; }
  void SetFCoETlvSent(unsigned int value) { m_FCoETlvSent = value; }
  unsigned int GetFCoETlvSent() const { return m_FCoETlvSent; }
  void SetFCoETlvReceived(unsigned int value) { m_FCoETlvReceived = value; }
  unsigned int GetFCoETlvReceived() const { return m_FCoETlvReceived; }
  void SetFCoELogicalLinkTlvSent(unsigned int value) { m_FCoELogicalLinkTlvSent = value; }
  unsigned int GetFCoELogicalLinkTlvSent() const { return m_FCoELogicalLinkTlvSent; }
  void SetFCoELogicalLinkTlvReceived(unsigned int value) { m_FCoELogicalLinkTlvReceived = value; }
  unsigned int GetFCoELogicalLinkTlvReceived() const { return m_FCoELogicalLinkTlvReceived; }
  void SetLANLogicalLinkTlvSent(unsigned int value) { m_LANLogicalLinkTlvSent = value; }
  unsigned int GetLANLogicalLinkTlvSent() const { return m_LANLogicalLinkTlvSent; }
  void SetLANLogicalLinkTlvReceived(unsigned int value) { m_LANLogicalLinkTlvReceived = value; }
  unsigned int GetLANLogicalLinkTlvReceived() const { return m_LANLogicalLinkTlvReceived; }
  void SetCustomizedDCBXTlvSent(unsigned int value) { m_CustomizedDCBXTlvSent = value; }
  unsigned int GetCustomizedDCBXTlvSent() const { return m_CustomizedDCBXTlvSent; }
  void SetCustomizedDCBXTlvReceived(unsigned int value) { m_CustomizedDCBXTlvReceived = value; }
  unsigned int GetCustomizedDCBXTlvReceived() const { return m_CustomizedDCBXTlvReceived; }
  void SetMismatchTlvDetected(unsigned int value) { m_MismatchTlvDetected = value; }
  unsigned int GetMismatchTlvDetected() const { return m_MismatchTlvDetected; }
  void SetiSCSITlvSent(unsigned int value) { m_iSCSITlvSent = value; }
  unsigned int GetiSCSITlvSent() const { return m_iSCSITlvSent; }
  void SetiSCSITlvReceived(unsigned int value) { m_iSCSITlvReceived = value; }
  unsigned int GetiSCSITlvReceived() const { return m_iSCSITlvReceived; }

  struct Schema;  // the archive form, in eDCBXStats.cpp

 private:
  unsigned int m_DCBXSent = 0;
  unsigned int m_DCBXReceived = 0;
  unsigned int m_DCBXRxError = 0;
  unsigned int m_ControlTlvSent = 0;
  unsigned int m_ControlTlvReceived = 0;
  unsigned int m_PriorityGroupTlvSent = 0;
  unsigned int m_PriorityGroupTlvReceived = 0;
  unsigned int m_PFCTlvSent = 0;
  unsigned int m_PFCTlvReceived = 0;
  unsigned int m_FCoETlvSent = 0;
  unsigned int m_FCoETlvReceived = 0;
  unsigned int m_FCoELogicalLinkTlvSent = 0;
  unsigned int m_FCoELogicalLinkTlvReceived = 0;
  unsigned int m_LANLogicalLinkTlvSent = 0;
  unsigned int m_LANLogicalLinkTlvReceived = 0;
  unsigned int m_CustomizedDCBXTlvSent = 0;
  unsigned int m_CustomizedDCBXTlvReceived = 0;
  unsigned int m_MismatchTlvDetected = 0;
  unsigned int m_iSCSITlvSent = 0;
  unsigned int m_iSCSITlvReceived = 0;
};

extern template class ERecord<EDCBXStats>;
extern template class EStatsRecord<EDCBXStats>;
