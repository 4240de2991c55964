// Following an interface table through its hooks: a fan-out holds an IP lookup index and a hook
// object that logs every interface change to a trace channel. Three emulated hosts are announced
// to the fan-out as the table's owner would; an emulation then asks which interface owns an
// address on a VLAN, before and after one host moves from VLAN 100 to VLAN 200.
#include <cstdio>
#include <string>

#include "ehal.h"

namespace {

// Prints every trace line it receives.
class PrintingTracer : public ETracer {
 public:
  void Write(const char* line) override { std::fputs(line, stdout); }
};

// Logs the interface changes it hears about; every other hook is ignored.
class LoggingHooks : public EIgnoreInterfaceTableHooks {
 public:
  explicit LoggingHooks(ETrace* trace) : m_Trace(trace) {}

  void SettingInterfaceTable(const EInterfaceTable&, const EInterfaceTable& table) override {
    m_Trace->Trace(kInfo, "new table of " + std::to_string(table.GetInterfaceItemList().size()) +
                              " interfaces\n");
  }
  void SettingInterfaceVlan(const EInterfaceItem& item,
                            const EVLANIPAddressTableItemProperties& props) override {
    m_Trace->Trace(kInfo, "interface " + std::to_string(item.GetLocalId()) + " (" +
                              item.GetIPv4AddressItem().GetAddress().GetAsString() +
                              ") moves from VLAN " +
                              item.GetVLANItem().ConstructVLANIDDescription() + " to VLAN " +
                              props.ConstructVLANIDDescription() + "\n");
  }

 private:
  static constexpr int kInfo = 6;
  ETrace* m_Trace;
};

// 10.0.0.`host`.
EIPAddress IPv4(unsigned char host) {
  const unsigned char bytes[4] = {10, 0, 0, host};
  EIPAddress address;
  address.SetAddress(bytes, eIPv4Address);
  return address;
}

EVLANIPAddressTableItemProperties OnVlan(unsigned short id) {
  EVLANIPAddressTableItemProperties props;
  props.SetEnabled(true);
  props.SetVLANID(id, 0);
  return props;
}

EInterfaceItem Host(unsigned char host, unsigned short vlan) {
  EInterfaceItem item;
  item.SetEnabled(true);
  item.SetVLANItem(OnVlan(vlan));
  item.GetIPv4AddressItem().SetEnabled(true);
  item.GetIPv4AddressItem().SetAddress(IPv4(host));
  item.GetIPv4AddressItem().SetMaskLength(24);
  return item;
}

EVLAN Vlan(unsigned int id) {
  EVLAN vlan;
  vlan.SetVLANID(id);
  return vlan;
}

void ShowLookups(const EIPLookupInterfaceTableHooks& lookup, unsigned char host) {
  const EIPAddress address = IPv4(host);
  std::printf("  %s: interface %u; on VLAN 100: %u; on VLAN 200: %u\n",
              address.GetAsString().c_str(), lookup.GetInterfaceId(address),
              lookup.GetInterfaceIdFromVlan(address, Vlan(100)),
              lookup.GetInterfaceIdFromVlan(address, Vlan(200)));
}

}  // namespace

int main() {
  PrintingTracer tracer;
  ETrace* trace = ETrace::GetTrace("interfaces", &tracer);
  ETrace::SetLevel("interfaces", 6, &tracer);

  const boost::shared_ptr<EIPLookupInterfaceTableHooks> lookup(new EIPLookupInterfaceTableHooks);
  EMultipleInterfaceTableHooks hooks;
  hooks.AddHooks("1-lookup", lookup);  // names decide the order: the index is current first
  hooks.AddHooks("2-log", boost::shared_ptr<EInterfaceTableHooks>(new LoggingHooks(trace)));

  // Three emulated hosts; 10.0.0.2 lives on two VLANs, on two interfaces.
  EInterfaceTable table;
  table.AddInterfaceItem(Host(1, 100), 1);
  table.AddInterfaceItem(Host(2, 100), 2);
  table.AddInterfaceItem(Host(2, 200), 3);
  hooks.SettingInterfaceTable(EInterfaceTable(), table);

  std::printf("lookups:\n");
  ShowLookups(*lookup, 1);
  ShowLookups(*lookup, 2);

  // The table's owner announces the change before making it.
  EInterfaceItem& first = *table.FindInterfaceItem(1);
  hooks.SettingInterfaceVlan(first, OnVlan(200));
  first.SetVLANItem(OnVlan(200));

  std::printf("lookups after the move:\n");
  ShowLookups(*lookup, 1);
  ShowLookups(*lookup, 2);
  return 0;
}
