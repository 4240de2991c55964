// The Kaitai Struct generator's naming and quoting, and the shape of what it generates: the
// compiler-run checks are in tests/kaitai.
#include <gtest/gtest.h>

#include <string>

#include "eKaitaiDescription.h"

namespace {

using eHal::tools::KaitaiDescription;
using eHal::tools::KaitaiEnumMember;
using eHal::tools::KaitaiIdentifier;
using eHal::tools::YamlScalar;

TEST(KaitaiDescription, IdentifiersAreLowerSnakeCase) {
  EXPECT_EQ(KaitaiIdentifier("ClientMessageId"), "client_message_id");
  EXPECT_EQ(KaitaiIdentifier("LLDPSent"), "lldp_sent");
  EXPECT_EQ(KaitaiIdentifier("EPRBS"), "eprbs");
  EXPECT_EQ(KaitaiIdentifier("EMacSec::ESecureAssociation"), "e_mac_sec_e_secure_association");
  EXPECT_EQ(KaitaiIdentifier("signed-out-unsigned-in"), "signed_out_unsigned_in");
  EXPECT_EQ(KaitaiIdentifier("Port0"), "port0");
  EXPECT_EQ(KaitaiIdentifier("64Bits"), "n64_bits");
  EXPECT_EQ(KaitaiIdentifier("(dropped)"), "dropped");
  EXPECT_EQ(KaitaiIdentifier(""), "x");
}

TEST(KaitaiDescription, EnumMembersLoseTheConstantPrefix) {
  EXPECT_EQ(KaitaiEnumMember("kPRBSStartCapture"), "prbs_start_capture");
  EXPECT_EQ(KaitaiEnumMember("kSuccess"), "success");
  EXPECT_EQ(KaitaiEnumMember("keep"), "keep");
  EXPECT_EQ(KaitaiEnumMember("Initial"), "initial");
}

TEST(KaitaiDescription, ScalarsArePlainOnlyWhereYamlReadsThemBack) {
  EXPECT_EQ(YamlScalar("signature.value"), "signature.value");
  EXPECT_EQ(YamlScalar("0x20"), "0x20");
  EXPECT_EQ(YamlScalar("true"), "'true'");
  EXPECT_EQ(YamlScalar("0.10"), "'0.10'");
  EXPECT_EQ(YamlScalar("a: b"), "'a: b'");
  EXPECT_EQ(YamlScalar("it's"), "\"it's\"");
  EXPECT_EQ(YamlScalar("line\nfeed"), "\"line\\nfeed\"");
}

TEST(KaitaiDescription, EveryClassIsATypeWithItsLayouts) {
  const std::string ksy = KaitaiDescription();
  EXPECT_EQ(ksy.rfind("# ehal.ksy:", 0), 0U);
  EXPECT_NE(ksy.find("\n  # eHal::EPRBS\n  eprbs:\n"), std::string::npos);
  EXPECT_NE(ksy.find("    -orig-id: 'eHal::EPRBS'\n"), std::string::npos);
  for (const char* layout : {"eprbs_layout_11334358:", "eprbs_layout_11334357:",
                             "eprbs_layout_11334356:", "288572247: eprbs_layout_11334357"})
    EXPECT_NE(ksy.find(layout), std::string::npos) << layout;
  EXPECT_NE(ksy.find("  eprbs_request_type:\n    0: initial\n"), std::string::npos);
  // Generated twice, the same text.
  EXPECT_EQ(KaitaiDescription(), ksy);
}

}  // namespace
