#include "eInetAddr.h"

unsigned int EInetAddr(const char* text) {
  if (text == nullptr) return kInetAddrNone;
  unsigned int result = 0;
  for (int part = 0; part < 4; ++part) {
    if (part > 0) {
      if (*text != '.') return kInetAddrNone;
      ++text;
    }
    if (*text < '0' || *text > '9') return kInetAddrNone;
    unsigned int value = 0;
    int digits = 0;
    while (*text >= '0' && *text <= '9') {
      value = value * 10 + static_cast<unsigned int>(*text - '0');
      ++text;
      if (++digits > 3 || value > 255) return kInetAddrNone;
    }
    result |= value << (8 * part);
  }
  return *text == '\0' ? result : kInetAddrNone;
}
