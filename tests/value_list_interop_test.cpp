// The value list's XML against an independent XML implementation, Python's xml.etree: what Encode
// writes is well-formed for it, and what its serializer writes for the same message parses to the
// same object. Skipped when python3 is not installed.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "archive_text.h"
#include "eValueList.h"

namespace {

// Reads the document named by its argument, prints the root's tag and its children's tags on the
// first line, then writes the same message again with ElementTree's own serializer (indented,
// with an XML declaration).
const char kScript[] = R"(import sys
import xml.etree.ElementTree as ET
root = ET.parse(sys.argv[1]).getroot()
print(root.tag + " " + ",".join(child.tag for child in root))
copy = ET.Element(root.tag)
for child in root:
    field = ET.SubElement(copy, child.tag)
    field.text = child.text
    for entry in child:
        ET.SubElement(field, entry.tag).text = entry.text
if hasattr(ET, "indent"):
    ET.indent(copy)
sys.stdout.write(ET.tostring(copy, encoding="unicode", xml_declaration=True))
)";

bool PythonAvailable() {
  return std::system("python3 -c pass >/dev/null 2>&1") == 0;
}

// A file holding `text`, removed with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) {
    char name[] = "/tmp/ehal_value_list_XXXXXX";
    const int descriptor = mkstemp(name);
    m_Name = name;
    if (descriptor < 0) return;
    const ssize_t written = write(descriptor, text.data(), text.size());
    EXPECT_EQ(written, static_cast<ssize_t>(text.size()));
    close(descriptor);
  }
  ~TemporaryFile() { std::remove(m_Name.c_str()); }
  const std::string& Name() const { return m_Name; }

 private:
  std::string m_Name;
};

struct PythonResult {
  int status = -1;
  std::string output;
};

PythonResult RunScript(const std::string& xml) {
  const TemporaryFile script(kScript);
  const TemporaryFile document(xml);
  const std::string command = "python3 " + script.Name() + " " + document.Name() + " 2>&1";
  PythonResult result;
  FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return result;
  char buffer[4096];
  for (std::size_t read; (read = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    result.output.append(buffer, read);
  result.status = pclose(pipe);
  return result;
}

eValueList Parsed(const std::string& xml) {
  eValueList message;
  message.SetXmlContent(BlobOf(xml));
  message.Parse();
  return message;
}

std::vector<eValueList> Messages() {
  eValueList labels;
  labels.SetRequestType(eValueList::kConfigurationToStateMachine);
  labels.SetPayloadLength(42);
  labels.SetDstId(0x12);
  labels.SetSrcId(0x34);
  overlay_base_address config;
  config.cookie = 0xFEDCBA9876543210ul;
  config.stream_num = 7;
  config.item_count = 99;
  labels.AddLabelConfigCookie(config);
  config.field6 = 0xFFFFFFFF;
  labels.AddLabelConfigCookie(config);

  eValueList updates;
  updates.SetRequestType(eValueList::kHalLabelUpdate);
  updates.SetPayloadLength(12 + 4 * 5);
  eValueListLabelUpdateEntry update;
  update.SetStreamNum(3);
  update.SetValueCount(5);
  for (unsigned int i = 0; i < 5; ++i)
    update.SetValue(i, 0x100 * (i + 1));
  updates.AddLabelUpdate(update);

  eValueList backgrounds;
  backgrounds.SetRequestType(eValueList::kBackgroundConfigurationToStateMachine);
  backgrounds.SetPayloadLength(40);
  background_base_address background;
  background.field1 = 1;
  background.field5 = 5;
  backgrounds.AddBackgroundConfigCookie(background);
  background.field3 = 3;
  backgrounds.AddBackgroundConfigCookie(background);
  return {labels, updates, backgrounds};
}

TEST(eValueListInterop, EncodedXmlIsWellFormedAndTheOtherSerializerParsesToTheSameObject) {
  if (!PythonAvailable())
    GTEST_SKIP() << "python3 is not installed: no second XML parser to check against";
  for (eValueList& message : Messages()) {
    message.Encode(4);
    const std::string xml = TextOf(message.GetXmlContent());
    const PythonResult result = RunScript(xml);
    ASSERT_EQ(result.status, 0) << result.output;
    const std::size_t lineEnd = result.output.find('\n');
    ASSERT_NE(lineEnd, std::string::npos) << result.output;
    EXPECT_EQ(result.output.substr(0, lineEnd),
              "valuelist port-id,dst-id,src-id,request-type,user-defined,payload-length,"
              "payload-data");

    const std::string rewritten = result.output.substr(lineEnd + 1);
    EXPECT_EQ(rewritten.rfind("<?xml", 0), 0u) << rewritten;
    EXPECT_NE(rewritten.find('\n'), std::string::npos);  // indented: not the same text
    eValueList fromOurs = Parsed(xml);
    const eValueList fromTheirs = Parsed(rewritten);
    EXPECT_FALSE(fromOurs.GetXmlContent() == fromTheirs.GetXmlContent());
    fromOurs.SetXmlContent(fromTheirs.GetXmlContent());
    EXPECT_TRUE(fromOurs.IsEqual(fromTheirs)) << rewritten;
    EXPECT_EQ(fromTheirs.GetRequestType(), message.GetRequestType());
  }
}

TEST(eValueListInterop, TheOtherParserRefusesWhatOursRefuses) {
  if (!PythonAvailable())
    GTEST_SKIP() << "python3 is not installed: no second XML parser to check against";
  const std::string truncated = "<valuelist><payload-length>2a</payload-length>";
  EXPECT_NE(RunScript(truncated).status, 0);
  EXPECT_EQ(Parsed(truncated).GetPayloadLength(), 0u);
}

}  // namespace
