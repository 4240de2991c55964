// Big-endian 32-bit reads and writes on byte arrays, shared by the address types.
#pragma once

namespace eHal::detail {

inline unsigned int ReadBigEndian32(const unsigned char* bytes) {
  return (static_cast<unsigned int>(bytes[0]) << 24) | (static_cast<unsigned int>(bytes[1]) << 16) |
         (static_cast<unsigned int>(bytes[2]) << 8) | bytes[3];
}

inline void WriteBigEndian32(unsigned char* bytes, unsigned int value) {
  bytes[0] = static_cast<unsigned char>(value >> 24);
  bytes[1] = static_cast<unsigned char>(value >> 16);
  bytes[2] = static_cast<unsigned char>(value >> 8);
  bytes[3] = static_cast<unsigned char>(value);
}

}  // namespace eHal::detail
