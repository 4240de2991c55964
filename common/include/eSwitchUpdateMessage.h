// ESwitchUpdateMessage: a list of switch table updates behind two header values. Each entry
// carries two small values (one byte each on the wire), a six-byte address kept as raw octets
// and a 16-bit value. Plain public data; no accessors.
#pragma once

#include <list>

#include "eRecord.h"

struct SwitchUpdateEntry {
  unsigned int m_FirstValue = 0;   // only the low eight bits travel
  unsigned int m_SecondValue = 0;  // only the low eight bits travel
  unsigned char m_Octets[6] = {};
  unsigned short m_Value = 0;
};

// Archived by ERecord; the reader replaces the list by the entries read, and a count of zero or
// less leaves it empty.
class ESwitchUpdateMessage : public ERecord<ESwitchUpdateMessage> {
 public:
  // Empty list, both header values 0.
  ESwitchUpdateMessage() = default;

  struct Schema;  // the archive form, in eSwitchUpdateMessage.cpp

  std::list<SwitchUpdateEntry> m_Entries;
  int m_SecondHeaderValue = 0;
  int m_FirstHeaderValue = 0;
};

extern template class ERecord<ESwitchUpdateMessage>;
