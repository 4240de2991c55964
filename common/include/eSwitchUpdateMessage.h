// ESwitchUpdateMessage: a list of switch table updates behind two header values. Each entry
// carries two small values (one byte each on the wire), a six-byte address kept as raw octets
// and a 16-bit value. Plain public data; no accessors.
#pragma once

#include <list>

class EArchive;

struct SwitchUpdateEntry {
  unsigned int m_FirstValue = 0;   // only the low eight bits travel
  unsigned int m_SecondValue = 0;  // only the low eight bits travel
  unsigned char m_Octets[6] = {};
  unsigned short m_Value = 0;
};

class ESwitchUpdateMessage {
 public:
  // Empty list, both header values 0.
  ESwitchUpdateMessage() = default;

  void SerializeOut(EArchive& archive) const;
  // Replaces the list by the entries read; a count of zero or less leaves it empty.
  void SerializeIn(EArchive& archive);

  std::list<SwitchUpdateEntry> m_Entries;
  int m_SecondHeaderValue = 0;
  int m_FirstHeaderValue = 0;
};

EArchive& operator<<(EArchive& archive, const ESwitchUpdateMessage& message);
EArchive& operator>>(EArchive& archive, ESwitchUpdateMessage& message);
