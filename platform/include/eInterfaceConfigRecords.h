// The protocol configuration records of an interface table (DHCP, DHCPv6, FCoE, NPIV, PTP, DCBX
// and LLDP) and their helper records, which the interface-table hooks receive and pass through
// without reading them. In this model of the interface-table library they are empty value
// types; the real library gives them their fields.
#pragma once

class EDHCPTLV {};

class EDHCPProperties {};

class EDHCPv6Properties {
 public:
  // The kind of identity association a DHCPv6 client asks for.
  enum eIAType { eIANonTemporary = 0, eIATemporary = 1, eIAPrefixDelegation = 2 };
};

class ENSRegOption {};

class EPLOGIDestination {};

class EFCNSQuery {};

class EFCoEConfig {
 public:
  // How an FCoE node gets its MAC address: provided by the fabric or by the server.
  enum eAddressModes { eFabricProvidedMAC = 0, eServerProvidedMAC = 1 };
  // Which state changes the node registers for.
  enum eSCROptions { eSCRFabricDetected = 1, eSCRNxPortDetected = 2, eSCRFull = 3 };
};

class ENPIVConfig {
 public:
  // Which state changes the virtual port registers for.
  enum eSCROptions { eSCRFabricDetected = 1, eSCRNxPortDetected = 2, eSCRFull = 3 };
};

class EPTPConfig {};

class EDCBXFeatureTlv {};

class EDCBXConfig {};

class ELLDPConfig {
 public:
  class LLDPChassisId {};
  class LLDPPortId {};
};
