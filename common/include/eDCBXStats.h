// EDCBXStats: the DCBX exchange and TLV counters of a test port, as reported to its
// clients through an archive.
#pragma once

#include "eStatsRecord.h"

class EDCBXStats : public EStatsRecord<EDCBXStats, estats::Fields<20>> {
 public:
  using EStatsRecord::operator+;
  using EStatsRecord::operator!=;

  void SetDCBXSent(unsigned int value) { SetWord(0, value); }
  unsigned int GetDCBXSent() const { return Word(0); }
  void SetDCBXReceived(unsigned int value) { SetWord(1, value); }
  unsigned int GetDCBXReceived() const { return Word(1); }
  void SetDCBXRxError(unsigned int value) { SetWord(2, value); }
  unsigned int GetDCBXRxError() const { return Word(2); }
  void SetControlTlvSent(unsigned int value) { SetWord(3, value); }
  unsigned int GetControlTlvSent() const { return Word(3); }
  void SetControlTlvReceived(unsigned int value) { SetWord(4, value); }
  unsigned int GetControlTlvReceived() const { return Word(4); }
  void SetPriorityGroupTlvSent(unsigned int value) { SetWord(5, value); }
  unsigned int GetPriorityGroupTlvSent() const { return Word(5); }
  void SetPriorityGroupTlvReceived(unsigned int value) { SetWord(6, value); }
  unsigned int GetPriorityGroupTlvReceived() const { return Word(6); }
  void SetPFCTlvSent(unsigned int value) { SetWord(7, value); }
  unsigned int GetPFCTlvSent() const { return Word(7); }
  void SetPFCTlvReceived(unsigned int value) { SetWord(8, value); }
  unsigned int GetPFCTlvReceived() const { return Word(8); }
  void SetFCoETlvSent(unsigned int value) { SetWord(9, value); }
  unsigned int GetFCoETlvSent() const { return Word(9); }
  void SetFCoETlvReceived(unsigned int value) { SetWord(10, value); }
  unsigned int GetFCoETlvReceived() const { return Word(10); }
  void SetFCoELogicalLinkTlvSent(unsigned int value) { SetWord(11, value); }
  unsigned int GetFCoELogicalLinkTlvSent() const { return Word(11); }
  void SetFCoELogicalLinkTlvReceived(unsigned int value) { SetWord(12, value); }
  unsigned int GetFCoELogicalLinkTlvReceived() const { return Word(12); }
  void SetLANLogicalLinkTlvSent(unsigned int value) { SetWord(13, value); }
  unsigned int GetLANLogicalLinkTlvSent() const { return Word(13); }
  void SetLANLogicalLinkTlvReceived(unsigned int value) { SetWord(14, value); }
  unsigned int GetLANLogicalLinkTlvReceived() const { return Word(14); }
  void SetCustomizedDCBXTlvSent(unsigned int value) { SetWord(15, value); }
  unsigned int GetCustomizedDCBXTlvSent() const { return Word(15); }
  void SetCustomizedDCBXTlvReceived(unsigned int value) { SetWord(16, value); }
  unsigned int GetCustomizedDCBXTlvReceived() const { return Word(16); }
  void SetMismatchTlvDetected(unsigned int value) { SetWord(17, value); }
  unsigned int GetMismatchTlvDetected() const { return Word(17); }
  void SetiSCSITlvSent(unsigned int value) { SetWord(18, value); }
  unsigned int GetiSCSITlvSent() const { return Word(18); }
  void SetiSCSITlvReceived(unsigned int value) { SetWord(19, value); }
  unsigned int GetiSCSITlvReceived() const { return Word(19); }

  // The archive layouts this record reads; it writes the last one.
  static const estats::ArchiveForm kArchiveForm;
};
