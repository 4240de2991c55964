#include "eInteger16Byte.h"

#include <algorithm>

#include "eBlob.h"
#include "eRecordSchema.h"

namespace eHal {

using detail::kByte;
using detail::Layout;
using detail::Property;

namespace {
constexpr int kBytes = 16;
}  // namespace

// Version 1, then the sixteen bytes, most significant first, one number each.
struct Integer16Byte::Schema {
  struct ByteList {
    static void Write(EArchive& archive, const Integer16Byte& value) {
      for (int i = 0; i < kBytes; ++i)
        kByte.Write(archive, value[i]);
    }
    static void Read(EArchive& archive, Integer16Byte& value) {
      for (int i = 0; i < kBytes; ++i) {
        unsigned char byte = 0;
        kByte.Read(archive, byte);
        value.SetByte(i, byte);
      }
    }
    static void Describe(ERecordVisitor& visitor, const char* name, const Integer16Byte& value) {
      visitor.BeginList(name, ECountWire::kFixed, kBytes);
      for (int i = 0; i < kBytes; ++i)
        kByte.Describe(visitor, "", value[i]);
      visitor.EndList();
    }
    static EValueType Type() { return EValueType::List(ECountWire::kFixed, kByte.Type(), kBytes); }
  };

  static constexpr auto kFields = std::make_tuple(Property<Integer16Byte>("Bytes", ByteList{}));
  static constexpr Layout kLayouts[] = {{1}};
  static constexpr ERefusalReport kRefusal = {"x86_64/common/ehal/eInteger16Byte", 782,
                                              "eHal::Integer16Byte::SerializeIn"};
};

Integer16Byte::Integer16Byte(unsigned long low) {
  m_Words[2] = static_cast<unsigned int>(low >> 32);
  m_Words[3] = static_cast<unsigned int>(low);
}

Integer16Byte::Integer16Byte(const EBlob& blob) {
  const int count = static_cast<int>(std::min<unsigned int>(blob.GetSize(), kBytes));
  for (int i = 0; i < count; ++i)
    SetByte(i, blob.GetData()[i]);
}

void Integer16Byte::Set(const unsigned char* bytes) {
  for (int i = 0; i < kBytes; ++i)
    SetByte(i, bytes[i]);
}

void Integer16Byte::Get(unsigned char* bytes) const {
  for (int i = 0; i < kBytes; ++i)
    bytes[i] = (*this)[i];
}

void Integer16Byte::SetByte(int index, unsigned char value) {
  if (index < 0 || index >= kBytes) return;
  const int shift = 8 * (3 - index % 4);
  unsigned int& word = m_Words[index / 4];
  word = (word & ~(0xFFu << shift)) | (static_cast<unsigned int>(value) << shift);
}

unsigned char Integer16Byte::operator[](int index) const {
  if (index < 0 || index >= kBytes) return 0;
  return static_cast<unsigned char>(m_Words[index / 4] >> (8 * (3 - index % 4)));
}

void Integer16Byte::One(int first, int end) {
  ApplyBits(first, end, true);
}

void Integer16Byte::Zero(int first, int end) {
  ApplyBits(first, end, false);
}

void Integer16Byte::ApplyBits(int first, int end, bool set) {
  if (first < 0 || first >= end || first >= 128) return;
  end = std::min(end, 128);
  for (int w = 0; w < 4; ++w) {
    const int low = std::max(first, 32 * w);
    const int high = std::min(end, 32 * w + 32);
    if (low >= high) continue;
    const int length = high - low;
    const unsigned int run = length == 32 ? ~0u : (1u << length) - 1;
    const unsigned int mask = run << (32 * w + 32 - high);
    m_Words[w] = set ? (m_Words[w] | mask) : (m_Words[w] & ~mask);
  }
}

Integer16Byte& Integer16Byte::operator+=(const Integer16Byte& other) {
  unsigned long carry = 0;
  for (int w = 3; w >= 0; --w) {
    const unsigned long sum = static_cast<unsigned long>(m_Words[w]) + other.m_Words[w] + carry;
    m_Words[w] = static_cast<unsigned int>(sum);
    carry = sum >> 32;
  }
  return *this;
}

Integer16Byte Integer16Byte::operator+(const Integer16Byte& other) const {
  Integer16Byte sum(*this);
  sum += other;
  return sum;
}

Integer16Byte& Integer16Byte::operator<<=(unsigned int shift) {
  if (shift >= 128) {
    std::fill(m_Words, m_Words + 4, 0u);
    return *this;
  }
  const unsigned int wordShift = shift / 32;
  const unsigned int bitShift = shift % 32;
  for (unsigned int w = 0; w < 4; ++w) {
    const unsigned int source = w + wordShift;
    unsigned int value = 0;
    if (source < 4) {
      value = m_Words[source] << bitShift;
      if (bitShift != 0 && source + 1 < 4) value |= m_Words[source + 1] >> (32 - bitShift);
    }
    m_Words[w] = value;
  }
  return *this;
}

bool Integer16Byte::operator==(const Integer16Byte& other) const {
  return std::equal(m_Words, m_Words + 4, other.m_Words);
}

}  // namespace eHal

template class ERecord<eHal::Integer16Byte>;
