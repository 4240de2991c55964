// EFCParams: Fibre Channel link timing (R_T_TOV, R_A_TOV, E_D_TOV and their override values)
// and buffer-to-buffer credit parameters of a port. Each parameter has a validity flag that its
// setter raises, so that a receiver applies only the parameters a client set.
#pragma once

#include <string>

#include "eRecord.h"

class EFCParams : public ERecord<EFCParams> {
 public:
  // Which timeout value a port applies.
  enum eTOV : unsigned int { kTOVStandard = 0, kTOVOverride = 1 };

  EFCParams() { Empty(); }

  // Restores the defaults of every parameter, flag and reset field, of the 16-bit value and of
  // the second 64-bit value; the first 64-bit value and the text are left as they are.
  void Empty();

  unsigned int GetRtTOVOverride() const { return m_RtTOVOverride; }
  unsigned int GetRaTOVOverride() const { return m_RaTOVOverride; }
  unsigned int GetEdTOVOverride() const { return m_EdTOVOverride; }
  eTOV GetRtTOV() const { return m_RtTOV; }
  eTOV GetRaTOV() const { return m_RaTOV; }
  eTOV GetEdTOV() const { return m_EdTOV; }
  unsigned int GetRemoteBBCredit() const { return m_RemoteBBCredit; }
  unsigned int GetBbSCN() const { return m_BbSCN; }

  // Each setter stores the value and marks it valid.
  void SetRtTOVOverride(unsigned int value) { Set(m_RtTOVOverride, value, m_RtTOVOverrideValid); }
  void SetRaTOVOverride(unsigned int value) { Set(m_RaTOVOverride, value, m_RaTOVOverrideValid); }
  void SetEdTOVOverride(unsigned int value) { Set(m_EdTOVOverride, value, m_EdTOVOverrideValid); }
  void SetRtTOV(eTOV value) { Set(m_RtTOV, value, m_RtTOVValid); }
  void SetRaTOV(eTOV value) { Set(m_RaTOV, value, m_RaTOVValid); }
  void SetEdTOV(eTOV value) { Set(m_EdTOV, value, m_EdTOVValid); }
  void SetRemoteBBCredit(unsigned int value) {
    Set(m_RemoteBBCredit, value, m_RemoteBBCreditValid);
  }
  void SetBbSCN(unsigned int value) { Set(m_BbSCN, value, m_BbSCNValid); }

  bool IsRtTOVOverrideValid() const { return m_RtTOVOverrideValid; }
  bool IsRaTOVOverrideValid() const { return m_RaTOVOverrideValid; }
  bool IsEdTOVOverrideValid() const { return m_EdTOVOverrideValid; }
  bool IsRtTOVValid() const { return m_RtTOVValid; }
  bool IsRaTOVValid() const { return m_RaTOVValid; }
  bool IsEdTOVValid() const { return m_EdTOVValid; }
  bool IsRemoteBBCreditValid() const { return m_RemoteBBCreditValid; }
  bool IsBbSCNValid() const { return m_BbSCNValid; }

  void ResetLink(unsigned char value) { m_ResetLink = value; }
  unsigned char GetResetLink() const { return m_ResetLink; }
  void ResetLinkAck(unsigned char value) { m_ResetLinkAck = value; }
  unsigned char GetResetLinkAck() const { return m_ResetLinkAck; }

  struct Schema;  // the archive form, in eFCParams.cpp

 private:
  template <typename T>
  static void Set(T& field, T value, bool& valid) {
    field = value;
    valid = true;
  }

  unsigned int m_RtTOVOverride;
  unsigned int m_RaTOVOverride;
  unsigned int m_EdTOVOverride;
  eTOV m_RtTOV;
  eTOV m_RaTOV;
  eTOV m_EdTOV;
  unsigned int m_RemoteBBCredit;
  unsigned int m_BbSCN;
  bool m_RtTOVOverrideValid;
  bool m_RaTOVOverrideValid;
  bool m_EdTOVOverrideValid;
  bool m_RtTOVValid;
  bool m_RaTOVValid;
  bool m_EdTOVValid;
  bool m_RemoteBBCreditValid;
  bool m_BbSCNValid;
  unsigned char m_ResetLink;
  unsigned char m_ResetLinkAck;
  // Carried unchanged for the port; no accessors.
  unsigned short m_ReservedShort;
  unsigned long m_ReservedLong1 = 0;
  unsigned long m_ReservedLong2;
  std::string m_ReservedText;
};

extern template class ERecord<EFCParams>;
