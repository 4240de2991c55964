// eHal::EClientID: the identity of a client, a major id naming the client and a minor id telling
// apart several connections or instances of it. Ordered, so that it can key ordered maps.
#pragma once

#include <string>

class EArchive;

namespace eHal {

class EClientID {
 public:
  EClientID() { Empty(); }
  EClientID(const EClientID& other) { Copy(other); }
  EClientID& operator=(const EClientID& other);

  std::string GetMajorID() const { return m_MajorID; }
  void SetMajorID(std::string majorID) { m_MajorID = majorID; }
  int GetMinorID() const { return m_MinorID; }
  void SetMinorID(int minorID) { m_MinorID = minorID; }

  void Copy(const EClientID& other);
  // Empty major id, minor id 0.
  void Empty();

  // By major id (byte-wise), then by minor id as signed numbers.
  bool operator<(const EClientID& other) const;

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  // Lists the fields in archive order, for writing and reading alike.
  template <typename Self, typename Visit>
  static void Fields(Self& self, Visit& field);

  std::string m_MajorID;
  int m_MinorID = 0;
};

EArchive& operator<<(EArchive& archive, const EClientID& id);
EArchive& operator>>(EArchive& archive, EClientID& id);

}  // namespace eHal
