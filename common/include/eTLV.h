// eHal::ETLV: a type-length-value element (a type number and its bytes), the organisation-
// specific element that an Ethernet OAM configuration adds to its information PDU.
#pragma once

#include <string>

#include "eBlob.h"

class EArchive;

namespace eHal {

class ETLV {
 public:
  ETLV() = default;
  ETLV(unsigned int type, const EBlob& value) : m_Type(type), m_Value(value) {}
  ETLV(const ETLV& other) = default;
  ETLV& operator=(const ETLV& other) = default;

  void Swap(ETLV& other);
  // Type and value bytes equal.
  bool operator==(const ETLV& other) const;
  bool operator!=(const ETLV& other) const { return !(*this == other); }

  void SetType(unsigned int type) { m_Type = type; }
  unsigned int GetType() const { return m_Type; }
  void SetValue(const EBlob& value) { m_Value = value; }
  const EBlob& GetValue() const { return m_Value; }

  // "Type: <decimal>, Value: <hex string of the bytes>".
  std::string GetAsString() const;

  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);

 private:
  unsigned int m_Type = 0;
  EBlob m_Value;
};

EArchive& operator<<(EArchive& archive, const ETLV& tlv);
EArchive& operator>>(EArchive& archive, ETLV& tlv);

}  // namespace eHal
