// Default dotted-quad IPv4 parser of the platform layer.
#pragma once

// The value returned for text that is not a dotted-quad IPv4 address.
constexpr unsigned int kInetAddrNone = 0xFFFFFFFFu;

// Parses "a.b.c.d" (four decimal numbers from 0 to 255, nothing else, no blanks) into the bytes
// in network order with the first byte in the lowest 8 bits: "1.2.3.4" gives 0x04030201.
// A null pointer or malformed text gives kInetAddrNone, which is also the value of the valid
// address "255.255.255.255".
unsigned int EInetAddr(const char* text);
