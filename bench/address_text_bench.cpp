// Address-to-text formatting against a literal reference written here: the same texts produced
// with snprintf ("%u.%u.%u.%u", "%X" groups, "%02x" pairs).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "eIPAddress.h"
#include "eMACAddress.h"

namespace {

EIPAddress Address(bool six) {
  static const unsigned char bytes[16] = {0x20, 0x01, 0x0d, 0xb8, 0x00, 0x00, 0xab, 0xcd,
                                          0x00, 0x00, 0x00, 0x00, 0x12, 0x34, 0xfe, 0x01};
  EIPAddress address;
  address.SetAddress(bytes, six ? eIPv6Address : eIPv4Address);
  return address;
}

void BM_IPAddressText_EIPAddress(benchmark::State& state) {
  const EIPAddress address = Address(state.range(0) != 0);
  for (auto _ : state) {
    std::string text = address.GetAsString();
    benchmark::DoNotOptimize(text.data());
  }
}

void BM_IPAddressText_Reference(benchmark::State& state) {
  const EIPAddress address = Address(state.range(0) != 0);
  const unsigned char* b = address.GetAddress();
  for (auto _ : state) {
    char text[48];
    if (address.GetType() == eIPv4Address) {
      std::snprintf(text, sizeof text, "%u.%u.%u.%u", b[0], b[1], b[2], b[3]);
    } else {
      int length = 0;
      for (int group = 0; group < 8; ++group) {
        length += std::snprintf(text + length, sizeof text - static_cast<unsigned>(length),
                                group == 0 ? "%X" : ":%X", (b[2 * group] << 8) | b[2 * group + 1]);
      }
    }
    std::string result(text);
    benchmark::DoNotOptimize(result.data());
  }
}

void BM_MACAddressText_EMACAddress(benchmark::State& state) {
  EMACAddress address;
  address.SetAsString("00:1a:2b:3c:4d:5e");
  for (auto _ : state) {
    std::string text = address.GetAsString();
    benchmark::DoNotOptimize(text.data());
  }
}

void BM_MACAddressText_Reference(benchmark::State& state) {
  EMACAddress address;
  address.SetAsString("00:1a:2b:3c:4d:5e");
  const unsigned char* b = address.GetMACAddress().GetData();
  for (auto _ : state) {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", b[0], b[1], b[2], b[3], b[4],
                  b[5]);
    std::string result(text);
    benchmark::DoNotOptimize(result.data());
  }
}

}  // namespace

BENCHMARK(BM_IPAddressText_EIPAddress)->Arg(0)->Arg(1);
BENCHMARK(BM_IPAddressText_Reference)->Arg(0)->Arg(1);
BENCHMARK(BM_MACAddressText_EMACAddress);
BENCHMARK(BM_MACAddressText_Reference);
