// Readers on damaged streams: every prefix, or every single byte replaced, read into a fresh
// record. Each read completes or ends in the serialisation error (thrown here); under the
// sanitizers this shows that a reader never reads outside its archive.
#pragma once

#include <cstddef>
#include <string>

#include "archive_text.h"
#include "child_process.h"

// Reads every prefix of `bytes` into a fresh T; a prefix may end the reader on a wrong
// signature (thrown here), but it never reads outside the archive (checked under the sanitizers).
template <typename T>
int ReadEveryPrefix(const std::string& bytes) {
  ScopedThrowingSerializeErrors throwing;
  int refused = 0;
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    T value;
    try {
      ReadFrom(bytes.substr(0, length), value);
    } catch (const SerializeErrorThrown&) {
      ++refused;
    }
  }
  return refused;
}

// Reads `bytes` with each single byte replaced in turn by a digit, a blank, a minus, a zero byte or
// 0xFF into a fresh T; as above, each read completes or ends in the serialisation error. A minus
// or a digit can turn a count into one near 2^32: the archive's wrap limit ends such a read after
// a few passes over the data, so every byte is damaged.
template <typename T>
int ReadEveryOneByteDamage(const std::string& bytes) {
  ScopedThrowingSerializeErrors throwing;
  int refused = 0;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const char replacement : {'0', '9', ' ', '-', '\0', '\xFF'}) {
      std::string damaged = bytes;
      damaged[at] = replacement;
      T value;
      try {
        ReadFrom(damaged, value);
      } catch (const SerializeErrorThrown&) {
        ++refused;
      }
    }
  }
  return refused;
}
