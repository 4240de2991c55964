#include "eVLAN.h"

#include "eBlob.h"

namespace {

// Protocol type of a VLAN tag.
constexpr unsigned int kVlanProtocolType = 5;
constexpr unsigned int kHeaderSize = 4;

// The tag protocol identifiers that open a VLAN tag.
constexpr unsigned int kTagProtocolIds[] = {0x8100, 0x88A8, 0x9100, 0x9200, 0x9300};

// The byte at `index` of the blob's storage, 0 beyond it.
unsigned char ByteAt(const EBlob& blob, unsigned int index) {
  unsigned char byte = 0;
  return blob.GetAt(&byte, index, 1) ? byte : 0;
}

}  // namespace

EVLAN::EVLAN() {
  Empty();
}

EVLAN::EVLAN(const EVLAN& other) : EProtocol() {
  Copy(other);
}

EVLAN::~EVLAN() = default;

EVLAN EVLAN::operator=(const EVLAN& other) {
  if (this != &other) Copy(other);
  return EVLAN(*this);
}

void EVLAN::Empty() {
  EProtocol::Empty();
  SetProtocolType(kVlanProtocolType);
  m_VLANID = 0;
  m_UserPriority = 0;
  m_CanonicalFormat = 0;
  m_TPID = 0;
}

void EVLAN::Copy(const EVLAN& other) {
  EProtocol::Copy(other);
  m_VLANID = other.m_VLANID;
  m_UserPriority = other.m_UserPriority;
  m_CanonicalFormat = other.m_CanonicalFormat;
  m_TPID = other.m_TPID;
}

unsigned int EVLAN::GetSize() const {
  return GetHeaderSize();
}

unsigned int EVLAN::BytesRequired(const EBlob&, int) {
  return GetHeaderSize();
}

std::uint16_t EVLAN::GetDataLength() const {
  return m_DataLength;
}

unsigned int EVLAN::Decode(const EBlob& blob, unsigned int offset, EStringList*) {
  Empty();
  if (offset + GetHeaderSize() <= blob.GetSize() && IsVLAN(blob, offset)) {
    unsigned char tag[kHeaderSize] = {0, 0, 0, 0};
    // The tag word is all or nothing; single bytes beyond the storage read as 0.
    const bool whole = blob.GetAt(tag, offset, kHeaderSize);
    if (!whole) {
      for (unsigned int i = 0; i < kHeaderSize; ++i)
        tag[i] = ByteAt(blob, offset + i);
    }
    m_TPID = whole ? static_cast<unsigned int>(tag[0]) << 24 |
                         static_cast<unsigned int>(tag[1]) << 16 |
                         static_cast<unsigned int>(tag[2]) << 8 | tag[3]
                   : 0;
    m_UserPriority = tag[2] >> 5;
    m_CanonicalFormat = (tag[2] & 0x10) >> 4;
    m_VLANID = ((tag[2] & 0x0Fu) << 8) + tag[3];
  }
  // Computed in 16 bits: a buffer shorter than a tag wraps the length.
  m_DataLength = static_cast<std::uint16_t>(blob.GetSize() - offset - GetHeaderSize());
  return GetHeaderSize();
}

unsigned int EVLAN::GetHeaderSize() const {
  return kHeaderSize;
}

bool EVLAN::IsEnoughBytes(const EBlob& blob, unsigned int offset) {
  return blob.GetSize() - offset >= GetHeaderSize();
}

bool EVLAN::IsVLAN(const EBlob& blob, unsigned int offset) {
  unsigned char id[2];
  if (offset >= blob.GetSize() || !blob.GetAt(id, offset, 2)) return false;
  const unsigned int tagProtocolId = static_cast<unsigned int>(id[0] << 8 | id[1]);
  for (const unsigned int known : kTagProtocolIds) {
    if (tagProtocolId == known) return true;
  }
  return false;
}

void EVLAN::SetCanonicalFormat(int) {}
