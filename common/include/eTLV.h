// eHal::ETLV: a type-length-value element (a type number and its bytes), the organisation-
// specific element that an Ethernet OAM configuration adds to its information PDU.
#pragma once

#include <string>

#include "eBlob.h"
#include "eRecord.h"

namespace eHal {

class ETLV : public ERecord<ETLV> {
 public:
  ETLV() = default;
  ETLV(unsigned int type, const EBlob& value) : m_Type(type), m_Value(value) {}

  // Exchanges the types and the value buffers; no byte is copied.
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

  struct Schema;  // the archive form, in eTLV.cpp

 private:
  unsigned int m_Type = 0;
  EBlob m_Value;
};

}  // namespace eHal

extern template class ERecord<eHal::ETLV>;
