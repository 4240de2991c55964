// An IPv4 address from its 32-bit host number (10.0.0.1 is 0x0A000001), for the tests and
// benchmarks that count through addresses.
#pragma once

#include "eIPAddress.h"

inline EIPAddress IPv4Host(unsigned int host) {
  const unsigned char bytes[4] = {
      static_cast<unsigned char>(host >> 24), static_cast<unsigned char>(host >> 16),
      static_cast<unsigned char>(host >> 8), static_cast<unsigned char>(host)};
  EIPAddress address;
  address.SetAddress(bytes, eIPv4Address);
  return address;
}
