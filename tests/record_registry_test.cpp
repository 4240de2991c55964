// The record registry: every record class of the public headers is registered once, under the
// name a user writes, with the layouts its own schema states; a registered class creates, reads,
// writes and describes records without its type being known.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "ehal.h"

namespace {

// The class name a registered name ends with: "eHal::EMacSec::ESecureAssociation" gives
// "ESecureAssociation", "EAddressTable<EIPAddress, EARPAddressTableItem>" gives "EAddressTable".
std::string ClassPart(const std::string& name) {
  const std::string plain = name.substr(0, name.find('<'));
  const std::size_t colon = plain.rfind("::");
  return colon == std::string::npos ? plain : plain.substr(colon + 2);
}

std::string FileText(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// The record classes the public headers declare: those that declare a member SerializeIn, and
// those that derive from a record (ERecord, or a class found so far).
std::set<std::string> RecordClassesOfHeaders() {
  const std::regex declaration(
      R"(\n\s*(?:template\s*<[^>]*>\s*)?class\s+(\w+)\s*(?:final\s*)?(:\s*public\s+(\w+))?[^;{]*\{)");
  const std::regex readsItself(R"(\n\s+(?:virtual\s+)?void\s+SerializeIn\(EArchive&)");
  std::vector<std::pair<std::string, std::string>> derived;  // class, base
  std::set<std::string> records;
  for (const char* folder : {"common/include", "platform/include"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(EHAL_SOURCE_DIR) + "/" + folder)) {
      const std::string text = FileText(entry.path());
      std::vector<std::pair<std::size_t, std::string>> classes;  // where each class opens
      for (std::sregex_iterator it(text.begin(), text.end(), declaration), end; it != end; ++it) {
        classes.emplace_back(it->position(), (*it)[1]);
        if ((*it)[3].matched) derived.emplace_back((*it)[1], (*it)[3]);
      }
      for (std::sregex_iterator it(text.begin(), text.end(), readsItself), end; it != end; ++it) {
        std::string owner;
        for (const auto& opened : classes)
          if (opened.first < static_cast<std::size_t>(it->position())) owner = opened.second;
        if (!owner.empty()) records.insert(owner);
      }
    }
  }
  records.insert("ERecord");
  for (bool grew = true; grew;) {
    grew = false;
    for (const auto& [name, base] : derived)
      grew = (records.count(base) != 0 && records.insert(name).second) || grew;
  }
  return records;
}

// Bases that are not records of their own: the records derived from them are registered.
const std::set<std::string> kBasesOnly = {"ERecord", "EEnvelope", "EStatsRecord",
                                          "EUniqueIDMapImplBase", "EAnyRecord"};

TEST(RecordRegistry, RegistersEveryRecordClassOfThePublicHeaders) {
  std::set<std::string> registered;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes())
    registered.insert(ClassPart(recordClass.name));
  std::string missing;
  for (const std::string& name : RecordClassesOfHeaders()) {
    if (kBasesOnly.count(name) == 0 && registered.count(name) == 0) missing += " " + name;
  }
  EXPECT_EQ(missing, "") << "record classes missing from the registry:" << missing;
}

TEST(RecordRegistry, TheHeaderScanFindsTheRecordsOfEveryShape) {
  const std::set<std::string> records = RecordClassesOfHeaders();
  for (const char* name :
       {"EPRBS", "EMessage", "EDHCPStats", "EIPAddressTable", "EBlob", "EIPMaskedAddress",
        "EAddressTable", "EUniqueIDMap", "ESecureAssociation", "EInterfaceItem", "eValueList"})
    EXPECT_EQ(records.count(name), 1u) << name;
  EXPECT_EQ(records.count("EArchive"), 0u);
}

TEST(RecordRegistry, NamesAreUniqueAndFound) {
  std::set<std::string> names;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    EXPECT_TRUE(names.insert(recordClass.name).second) << recordClass.name;
    EXPECT_EQ(ERecordRegistry::Find(recordClass.name), &recordClass);
  }
  EXPECT_EQ(ERecordRegistry::Find("EPRBS"), nullptr);
  EXPECT_EQ(ERecordRegistry::Classes().size(), 69u);
}

TEST(RecordRegistry, LayoutsComeFromTheSchema) {
  const ERecordClass* prbs = ERecordRegistry::Find("eHal::EPRBS");
  ASSERT_NE(prbs, nullptr);
  ASSERT_EQ(prbs->layouts.size(), 3u);
  EXPECT_EQ(prbs->layouts[0].signature, 0x11334358u);
  EXPECT_EQ(prbs->layouts[1].signature, 0x11334357u);
  EXPECT_EQ(prbs->layouts[2].signature, 0x11334356u);
  const std::vector<std::string> newest = {"ClientMessageId", "ExtraId",    "RequestType",
                                           "ReturnCode",      "BufferSize", "PacketCount",
                                           "Start",           "Packets"};
  EXPECT_EQ(prbs->layouts[0].fields, newest);
  EXPECT_EQ(prbs->layouts[2].fields, std::vector<std::string>(newest.begin() + 2, newest.end()));

  const ERecordClass* blob = ERecordRegistry::Find("EBlob");
  ASSERT_NE(blob, nullptr);
  ASSERT_EQ(blob->layouts.size(), 2u);
  EXPECT_EQ(blob->layouts[0].signature, 0x11223345u);
  EXPECT_EQ(blob->layouts[1].fields, std::vector<std::string>{"HexText"});

  const ERecordClass* masked = ERecordRegistry::Find("EIPMaskedAddress");
  ASSERT_NE(masked, nullptr);
  ASSERT_EQ(masked->layouts.size(), EIPAddress::Layouts().size());
  EXPECT_EQ(masked->layouts[0].signature, EIPAddress::Layouts()[0].signature);
  EXPECT_EQ(masked->layouts[0].fields.back(), "Mask");
}

TEST(RecordRegistry, ListedLayoutsNameReadOnlyAndDroppedFields) {
  // Every layout names as many fields as it carries, and every name is a real one.
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    for (const ERecordLayout& layout : recordClass.layouts) {
      for (const std::string& field : layout.fields)
        EXPECT_FALSE(field.empty()) << recordClass.name << " " << layout.signature;
    }
  }
}

TEST(RecordRegistry, GuessFindsEveryClassReadingASignature) {
  // The current link settings and an older PRBS layout share a signature.
  const std::vector<ERecordMatch> matches = ERecordRegistry::Guess(0x11334357);
  ASSERT_EQ(matches.size(), 2u);
  EXPECT_EQ(matches[0].recordClass->name, "eHal::EPRBS");
  EXPECT_FALSE(matches[0].current);
  EXPECT_EQ(matches[0].layout->signature, 0x11334357u);
  EXPECT_EQ(matches[0].layout->fields.size(), 7u);
  EXPECT_EQ(matches[1].recordClass->name, "eHal::EPOSLinkLayerSettings");
  EXPECT_TRUE(matches[1].current);

  // The address record opens the masked address too.
  std::vector<std::string> names;
  for (const ERecordMatch& match : ERecordRegistry::Guess(EIPAddress::Layouts()[0].signature))
    names.push_back(match.recordClass->name);
  EXPECT_NE(std::find(names.begin(), names.end(), "EIPAddress"), names.end());
  EXPECT_NE(std::find(names.begin(), names.end(), "EIPMaskedAddress"), names.end());

  EXPECT_TRUE(ERecordRegistry::Guess(12345678).empty());
}

TEST(RecordRegistry, CloseNamesIgnoreCaseAndNamespace) {
  const std::vector<std::string> close = ERecordRegistry::CloseNames("eprbs");
  ASSERT_FALSE(close.empty());
  EXPECT_EQ(close[0], "eHal::EPRBS");
  const std::vector<std::string> typo = ERecordRegistry::CloseNames("EMesage");
  ASSERT_FALSE(typo.empty());
  EXPECT_EQ(typo[0], "eHal::EMessage");
  const std::vector<std::string> part = ERecordRegistry::CloseNames("OAM");
  EXPECT_EQ(part.size(), 4u);
  EXPECT_TRUE(ERecordRegistry::CloseNames("QQQQQQQQQQQQQQQ").empty());
}

TEST(RecordRegistry, CloseNamesAmongGivenCandidates) {
  const std::vector<std::string> fields = {"RequestType", "ReturnCode", "BufferSize", "Start"};
  EXPECT_EQ(ERecordRegistry::CloseNames("requesttype", fields),
            std::vector<std::string>({"RequestType"}));
  EXPECT_EQ(ERecordRegistry::CloseNames("Stat", fields), std::vector<std::string>({"Start"}));
  EXPECT_EQ(ERecordRegistry::CloseNames("ReturnCod", fields),
            std::vector<std::string>({"ReturnCode"}));
  EXPECT_TRUE(ERecordRegistry::CloseNames("Packets", fields).empty());
  EXPECT_TRUE(ERecordRegistry::CloseNames("Start", {}).empty());
}

TEST(RecordRegistry, EveryClassRoundTripsThroughItsEntry) {
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    const std::unique_ptr<EAnyRecord> record = recordClass.Create();
    const std::string written = BytesOf(*record);
    const std::unique_ptr<EAnyRecord> back = recordClass.Create();
    ReadFrom(written, *back);
    EXPECT_EQ(BytesOf(*back), written) << recordClass.name;
  }
}

TEST(RecordRegistry, AWrongSignatureIsTheRecordsOwnReport) {
  const ERecordClass* prbs = ERecordRegistry::Find("eHal::EPRBS");
  ASSERT_NE(prbs, nullptr);
  ExpectSerializeError(
      [&] {
        const std::unique_ptr<EAnyRecord> record = prbs->Create();
        ReadFrom("7 ", *record);
      },
      "x86_64/common/ehal/ePRBS", 160, "eHal::EPRBS::SerializeIn");
}

}  // namespace
