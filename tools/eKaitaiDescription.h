// The Kaitai Struct description of ehal records (ehal.ksy), generated from the registry: one type
// per record class and per layout, so that one file compiles into readers for any language.
// Installed as share/ehal/kaitai/ehal.ksy and printed by ehal-dump --kaitai.
#pragma once

#include <string>

namespace eHal::tools {

// A name as a Kaitai identifier: lower snake case of its letters and digits ("LLDPSent" becomes
// "lldp_sent", "eHal::EMacSec" "e_hal_e_mac_sec"), "x" where nothing of it is left.
std::string KaitaiIdentifier(const std::string& name);

// A value name as a Kaitai enum member: the identifier without the constant prefix "k"
// ("kPRBSStartCapture" becomes "prbs_start_capture").
std::string KaitaiEnumMember(const std::string& name);

// A text as a YAML scalar: plain where YAML reads it back as the same text, else double-quoted.
std::string YamlScalar(const std::string& text);

// The whole description.
std::string KaitaiDescription();

}  // namespace eHal::tools
