// eHal::EClientID: the identity of a client, a major id naming the client and a minor id telling
// apart several connections or instances of it. Ordered, so that it can key ordered maps.
#pragma once

#include <string>

#include "eRecord.h"

namespace eHal {

class EClientID : public ERecord<EClientID> {
 public:
  EClientID() = default;

  std::string GetMajorID() const { return m_MajorID; }
  void SetMajorID(std::string majorID) { m_MajorID = majorID; }
  int GetMinorID() const { return m_MinorID; }
  void SetMinorID(int minorID) { m_MinorID = minorID; }

  void Copy(const EClientID& other) { *this = other; }
  // Empty major id, minor id 0.
  void Empty();

  // By major id (byte-wise), then by minor id as signed numbers.
  bool operator<(const EClientID& other) const;

  struct Schema;  // the archive form, in eClientID.cpp

 private:
  std::string m_MajorID;
  int m_MinorID = 0;
};

}  // namespace eHal

extern template class ERecord<eHal::EClientID>;
