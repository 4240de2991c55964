// The emulated hosts of a port: an IP address table holding one range of ten hosts takes in an
// interface table of two interfaces. Each usable interface becomes a one-host row carved out of
// the range; a disabled one changes nothing. The table is dumped to a trace channel that prints
// to standard output, before and after the merge.
#include <cstdio>
#include <string>

#include "ehal.h"

namespace {

// Prints every trace line it receives.
class PrintingTracer : public ETracer {
 public:
  void Write(const char* line) override { std::fputs(line, stdout); }
};

EIPAddress IPv4(const char* text) {
  const unsigned int network = EInetAddr(text);
  const unsigned char bytes[4] = {
      static_cast<unsigned char>(network), static_cast<unsigned char>(network >> 8),
      static_cast<unsigned char>(network >> 16), static_cast<unsigned char>(network >> 24)};
  EIPAddress address;
  address.SetAddress(bytes, eIPv4Address);
  return address;
}

EMACAddress MAC(const char* text) {
  EMACAddress mac;
  mac.SetAsString(text);
  return mac;
}

EInterfaceItem Interface(const char* address, const char* mac, bool enabled) {
  EInterfaceItem item;
  item.SetEnabled(enabled);
  item.SetMacAddress(MAC(mac));
  EIPv4AddressItem& ipv4 = item.GetIPv4AddressItem();
  ipv4.SetEnabled(true);
  ipv4.SetAddress(IPv4(address));
  ipv4.SetGateway(IPv4("10.0.0.254"));
  ipv4.SetMaskLength(24);
  return item;
}

}  // namespace

int main() {
  PrintingTracer tracer;
  ETrace* trace = ETrace::GetTrace("hosts", &tracer);
  ETrace::SetLevel("hosts", 6, &tracer);

  // Ten hosts from 10.0.0.1, each with its own MAC from 00:10:94:00:00:01.
  EIPAddressTableItem hosts;
  EIPAddressRange range;
  range.SetAddress(IPv4("10.0.0.1"));
  range.SetRangeCount(10);
  hosts.SetIPAddressRange(range);
  EMACAddressRange macs;
  macs.SetMACAddress(MAC("00:10:94:00:00:01"));
  macs.SetMACRangeCount(10);
  hosts.SetMACAddressRange(macs);
  EIPAddressTable table;
  table.AddEntry(range, hosts);
  table.DumpToLog(trace);

  EInterfaceTable interfaces;
  interfaces.AddInterfaceItem(Interface("10.0.0.5", "00:aa:00:00:00:05", true));
  interfaces.AddInterfaceItem(Interface("10.0.0.10", "00:aa:00:00:00:0a", true));
  interfaces.AddInterfaceItem(Interface("10.0.0.7", "00:aa:00:00:00:07", false));
  table.MergeWithInterfaceTable(interfaces);
  std::printf("\nafter merging the interfaces 10.0.0.5 and 10.0.0.10 (10.0.0.7 is disabled):\n");
  table.DumpToLog(trace);

  EArchive archive;
  archive.SetMode(eModeStoring);
  archive << table;
  std::printf("\nthe table travels as %u bytes\n", archive.GetAsEBlob().GetSize());
  return 0;
}
