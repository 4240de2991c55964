// The Wireshark dissector of ehal traffic, in Lua, generated from the registry: the record
// classes as data tables (from the same descriptions that read and write) and the reader that
// walks them. Installed as share/ehal/wireshark/ehal.lua and printed by ehal-dump --wireshark.
#pragma once

#include <string>

namespace eHal::tools {

// The TCP port the dissector registers itself on unless its preferences say another.
inline constexpr unsigned int kWiresharkDefaultPort = 7300;

// The whole dissector.
std::string WiresharkDissector();

}  // namespace eHal::tools
