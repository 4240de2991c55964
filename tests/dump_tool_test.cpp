// ehal-dump end to end: the built tool runs in a child process on input given on standard input
// or in a file, raw or as hex text; its output, error text and exit status are checked.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cctype>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "archive_text.h"
#include "child_process.h"
#include "eRecordJson.h"
#include "ehal.h"

namespace {

using eHal::tools::Json;

struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

std::string Scratch(const std::string& name) {
  return ::testing::TempDir() + "ehal_dump_" + std::to_string(getpid()) + "_" + name;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs `ehal-dump arguments` with `input` on standard input, after the shell commands `before`.
ToolRun RunTool(const std::string& arguments, const std::string& input = "",
                const std::string& before = "") {
  const std::string in = Scratch("in");
  const std::string err = Scratch("err");
  WriteFile(in, input);
  const std::string command =
      before + "'" + EHAL_DUMP + "' " + arguments + " < '" + in + "' 2> '" + err + "'";
  const ChildResult child = RunInChild([&] {
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  });
  EXPECT_TRUE(child.exited);
  return {child.status, child.output, ReadFile(err)};
}

eHal::EPRBS StartCapture() {
  eHal::EPRBS request(true);
  request.SetRequestType(eHal::EPRBS::kPRBSStartCapture);
  request.SetClientMessageId(1);
  request.SetBufferSize(4096);
  return request;
}

const char kStartCaptureText[] =
    "eHal::EPRBS\n"
    "Signature = 288572248 (0x11334358)\n"
    "ClientMessageId = 1\n"
    "ExtraId = 0\n"
    "RequestType = 3 (kPRBSStartCapture)\n"
    "ReturnCode = 0 (kSuccess)\n"
    "BufferSize = 4096\n"
    "PacketCount = 0\n"
    "Start = 0\n"
    "Packets = []\n"
    "-- 29 bytes consumed, 0 remain\n";

// The long options a text names ("--list"); the man page's escaped hyphens (a backslash before
// the hyphen) count as hyphens.
std::set<std::string> LongOptions(const std::string& text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '-') continue;
    plain += text[i];
  }
  std::set<std::string> options;
  for (std::size_t at = plain.find("--"); at != std::string::npos; at = plain.find("--", at + 2)) {
    std::size_t end = at + 2;
    while (end < plain.size() && (std::islower(static_cast<unsigned char>(plain[end])) != 0 ||
                                  (end > at + 2 && plain[end] == '-')))
      ++end;
    if (end > at + 2) options.insert(plain.substr(at, end - at));
  }
  return options;
}

// The man page is written by hand: it must name exactly the options the tool's help lists.
TEST(DumpTool, TheManPageNamesEveryOptionOfTheHelp) {
  const ToolRun help = RunTool("--help");
  ASSERT_EQ(help.status, 0);
  const std::set<std::string> listed = LongOptions(help.out);
  EXPECT_GE(listed.size(), 10u);
  EXPECT_EQ(LongOptions(ReadFile(std::string(EHAL_SOURCE_DIR) + "/tools/ehal-dump.1")), listed);
}

TEST(DumpTool, DecodesRawBytesFromStandardInput) {
  const std::string bytes = BytesOf(StartCapture());
  ASSERT_EQ(bytes, "288572248 1 0 3 0 4096 0 0 0 ");
  const ToolRun run = RunTool("eHal::EPRBS", bytes);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kStartCaptureText);
  EXPECT_EQ(run.err, "");
}

TEST(DumpTool, DecodesHexFromAFile) {
  const std::string file = Scratch("hex");
  WriteFile(file,
            "32 38 38 35 37 32 32 34 38 20 31 20 30 20 33 20 30 20 34 30 39 36 20\n"
            "30 20 30 20 30 20\n");
  const ToolRun run = RunTool("--hex eHal::EPRBS '" + file + "'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kStartCaptureText);
}

TEST(DumpTool, ReadsTheLibrarysHexDump) {
  const std::string bytes = BytesOf(StartCapture());
  const std::string dump = BlobOf(bytes).GetHexDumpOfPacket();
  ASSERT_EQ(dump.substr(0, 14), "\t00000000 : 32");
  const ToolRun run = RunTool("--hex eHal::EPRBS", dump);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, kStartCaptureText);
}

TEST(DumpTool, SaysWhatRemainsAfterTheRecord) {
  const ToolRun run = RunTool("eHal::EPRBS", BytesOf(StartCapture()) + "17 18 ");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("-- 29 bytes consumed, 6 remain\n"), std::string::npos) << run.out;
}

TEST(DumpTool, PrintsJsonThatParsesBack) {
  const ToolRun run = RunTool("--json eHal::EPRBS", BytesOf(StartCapture()));
  EXPECT_EQ(run.status, 0);
  const Json json = Json::parse(run.out);
  EXPECT_EQ(json["class"], "eHal::EPRBS");
  EXPECT_EQ(json["consumed"], 29);
  EXPECT_EQ(json["remaining"], 0);
  EXPECT_EQ(json["record"]["Signature"], 0x11334358);
  EXPECT_EQ(json["record"]["BufferSize"], 4096);
  EXPECT_TRUE(json["record"]["Packets"].is_array());
  EXPECT_EQ(json["record"], eHal::tools::ToJson(ERecordValue::Of(StartCapture())));
}

TEST(DumpTool, JsonKeepsSignsTextsAndBlobs) {
  eHal::EClientID client;
  client.SetMajorID("gui \"1\"");
  client.SetMinorID(-2);
  const ToolRun run = RunTool("--json eHal::EClientID", BytesOf(client));
  EXPECT_EQ(run.status, 0);
  const Json json = Json::parse(run.out);
  EXPECT_EQ(json["record"]["MajorID"], "gui \"1\"");
  EXPECT_EQ(json["record"]["MinorID"], -2);

  // Bytes of a text that are not UTF-8 travel losslessly, as hex.
  client.SetMajorID("ok\xFF\xFE");
  const ToolRun raw = RunTool("--json eHal::EClientID", BytesOf(client));
  EXPECT_EQ(raw.status, 0);
  EXPECT_EQ(Json::parse(raw.out)["record"]["MajorID"], Json({{"hex", "6F6BFFFE"}}));

  const unsigned char bytes[] = {0x00, 0xAB};
  const ToolRun blob = RunTool("--json EBlob", BytesOf(EBlob(bytes, 2)));
  EXPECT_EQ(Json::parse(blob.out)["record"]["Bytes"], "00AB");
}

TEST(DumpTool, AWrongSignatureIsTheLibrarysReport) {
  const ToolRun run = RunTool("eHal::EPRBS", "7 1 2 ");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            SerializeErrorReport("x86_64/common/ehal/ePRBS", 160, "eHal::EPRBS::SerializeIn"));
}

TEST(DumpTool, AnUnknownClassListsCloseNames) {
  const ToolRun run = RunTool("EPRBS", "");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "ehal-dump: unknown record class \"EPRBS\"; close names:\n  eHal::EPRBS\n");

  const ToolRun far = RunTool("Nothing_like_it_at_all", "");
  EXPECT_EQ(far.status, 2);
  EXPECT_EQ(far.err,
            "ehal-dump: unknown record class \"Nothing_like_it_at_all\"; see ehal-dump --list\n");
}

TEST(DumpTool, TruncatedInputIsAReadError) {
  const ToolRun run = RunTool("eHal::EPRBS", "288572248 1 0 3 0 4096 0 0 ");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "ehal-dump: input truncated: eHal::EPRBS needs more than the 27 bytes given (its last "
            "read ran past the end)\n");
}

// A read that runs past the end and starts over from the first byte would print the first bytes
// again as later fields: it is the same error, never a success.
TEST(DumpTool, AReadThatStartsOverIsAReadError) {
  const char kStartedOver[] = " (its reads ran past the end and started over)\n";
  const ToolRun stats = RunTool("EARPStats", "405934865 2 ");
  EXPECT_EQ(stats.status, 1);
  EXPECT_EQ(stats.out, "");
  EXPECT_EQ(
      stats.err,
      std::string("ehal-dump: input truncated: EARPStats needs more than the 12 bytes given") +
          kStartedOver);
  const ToolRun blob = RunTool("EBlob", "287454021 ");
  EXPECT_EQ(blob.status, 1);
  EXPECT_EQ(blob.err,
            std::string("ehal-dump: input truncated: EBlob needs more than the 10 bytes given") +
                kStartedOver);

  eHal::EMessage message;
  message.SetMessage(static_cast<eHal::EMessage::eMessageType>(1),
                     BlobOf("288572248 1 0 3 0 4096 0 0 "));
  const ToolRun payload =
      RunTool("--envelope eHal::EMessage --payload eHal::EPRBS", BytesOf(message));
  EXPECT_EQ(payload.status, 1);
  EXPECT_EQ(payload.out, "");
  EXPECT_EQ(payload.err,
            "ehal-dump: input truncated: eHal::EPRBS needs more than the 27 bytes given (its last "
            "read ran past the end)\n");
}

TEST(DumpTool, InputItCannotReadIsAnInputError) {
  const ToolRun directory = RunTool("EBlob /");
  EXPECT_EQ(directory.status, 2);
  EXPECT_EQ(directory.out, "");
  EXPECT_EQ(directory.err, "ehal-dump: cannot read \"/\": Is a directory\n");
  const ToolRun memory = RunTool("EBlob /proc/self/mem");
  EXPECT_EQ(memory.status, 2);
  EXPECT_EQ(memory.err, "ehal-dump: cannot read \"/proc/self/mem\": Input/output error\n");
  const ToolRun missing = RunTool("EBlob /no/such/file");
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(missing.err, "ehal-dump: cannot read \"/no/such/file\": No such file or directory\n");
  const ToolRun empty = RunTool("EBlob", "");
  EXPECT_EQ(empty.status, 2);
  EXPECT_EQ(empty.err, "ehal-dump: the input is empty\n");
}

// A record larger than the memory the tool may take ends in a message, not in an abort. (Not
// under AddressSanitizer, whose shadow memory needs more address space than the limit leaves.)
TEST(DumpTool, ARecordBeyondTheMemoryIsAnInputError) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer build cannot run under an address-space limit";
#else
  std::string bytes = "286785536 3000000 ";
  for (int i = 0; i < 3000000; ++i)
    bytes += "1 x";
  const std::string file = Scratch("large_list");
  WriteFile(file, bytes);
  const ToolRun run = RunTool("EStringList '" + file + "'", "", "ulimit -v 120000; ");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "ehal-dump: not enough memory for the input and the record it holds\n");
#endif
}

TEST(DumpTool, ExtraOperandsAndUnprintableNamesAreInputErrors) {
  const ToolRun list = RunTool("--list extra");
  EXPECT_EQ(list.status, 2);
  EXPECT_EQ(list.out, "");
  EXPECT_EQ(list.err, "ehal-dump: unexpected operand \"extra\"\n");
  const ToolRun third = RunTool("EBlob - extra", "287454021 2 ab");
  EXPECT_EQ(third.status, 2);
  EXPECT_EQ(third.err, "ehal-dump: unexpected operand \"extra\"\n");
  const ToolRun escape = RunTool("\"$(printf 'E\\033[31mX')\"");
  EXPECT_EQ(escape.status, 2);
  EXPECT_EQ(escape.err, "ehal-dump: unknown record class \"E\\x1B[31mX\"; see ehal-dump --list\n");
}

TEST(DumpTool, BadHexIsAnInputError) {
  EXPECT_EQ(RunTool("--hex eHal::EPRBS", "32 1").err, "ehal-dump: an odd number of hex digits\n");
  const ToolRun run = RunTool("--hex eHal::EPRBS", "3G");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "ehal-dump: not a hex digit: 'G'\n");
  EXPECT_EQ(RunTool("--bogus").status, 2);
}

TEST(DumpTool, ListsEveryClassWithItsSignatures) {
  const ToolRun run = RunTool("--list");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("\neHal::EPRBS 0x11334358 0x11334357 0x11334356\n"), std::string::npos);
  std::size_t lines = 0;
  for (const char c : run.out)
    lines += c == '\n' ? 1 : 0;
  EXPECT_EQ(lines, ERecordRegistry::Classes().size());

  const Json json = Json::parse(RunTool("--list --json").out);
  EXPECT_EQ(json.size(), ERecordRegistry::Classes().size());
  EXPECT_EQ(json["eHal::EMessage"].size(), 6u);
}

TEST(DumpTool, GuessesTheClassesOfASignature) {
  const ToolRun run = RunTool("--guess", "288572247 1 0 ");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            "first number 288572247 (0x11334357)\n"
            "eHal::EPRBS: older layout: ExtraId RequestType ReturnCode BufferSize PacketCount "
            "Start Packets\n"
            "eHal::EPOSLinkLayerSettings: current layout: Ports\n");
  const Json json = Json::parse(RunTool("--guess --json", "288572247 ").out);
  ASSERT_EQ(json.size(), 2u);
  EXPECT_EQ(json[1]["class"], "eHal::EPOSLinkLayerSettings");
  EXPECT_EQ(json[1]["current"], true);

  EXPECT_EQ(RunTool("--guess", "12345 ").out,
            "first number 12345 (0x3039)\nno registered class reads this signature\n");
  EXPECT_EQ(RunTool("--guess", "").status, 2);
}

std::string StartCaptureMessage() {
  eHal::EMessage message;
  message.SetMessage(static_cast<eHal::EMessage::eMessageType>(1), BlobOf(BytesOf(StartCapture())));
  message.SetMessagePortId(7);
  return BytesOf(message);
}

TEST(DumpTool, DecodesAnEnvelopeAndItsPayload) {
  const std::string file = Scratch("envelope");
  WriteFile(file, StartCaptureMessage());
  const ToolRun run = RunTool("--envelope eHal::EMessage --payload eHal::EPRBS '" + file + "'");
  EXPECT_EQ(run.status, 0);
  const std::string envelope = "eHal::EMessage\nSignature = 3 (0x3)\n";
  EXPECT_EQ(run.out.substr(0, envelope.size()), envelope);
  const std::string payload = std::string("payload: ") + kStartCaptureText;
  ASSERT_GE(run.out.size(), payload.size());
  EXPECT_EQ(run.out.substr(run.out.size() - payload.size()), payload);

  const Json json = Json::parse(
      RunTool("--json --envelope eHal::EMessage --payload eHal::EPRBS", StartCaptureMessage()).out);
  EXPECT_EQ(json["record"]["MessagePortId"], 7);
  EXPECT_EQ(json["payload"]["class"], "eHal::EPRBS");
  EXPECT_EQ(json["payload"]["record"]["RequestType"], 3);

  const ToolRun wrong =
      RunTool("--envelope eHal::EMessage --payload eHal::EPacket", StartCaptureMessage());
  EXPECT_EQ(wrong.status, 1);
  EXPECT_NE(wrong.out.find(SerializeErrorReport("x86_64/common/ehal/ePacket", 108,
                                                "eHal::EPacket::SerializeIn")),
            std::string::npos);
  EXPECT_EQ(RunTool("--envelope eHal::EMessage", "").status, 2);
  EXPECT_EQ(RunTool("--envelope eHal::EPRBS --payload eHal::EPRBS", BytesOf(StartCapture())).err,
            "ehal-dump: eHal::EPRBS carries no payload\n");
}

TEST(DumpTool, ShowsTheTypicalExchange) {
  const ToolRun run = RunTool("--demo");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, 32), "client sends 79 bytes:\n\t00000000");
  EXPECT_NE(run.out.find("\nport answers 79 bytes:\n"), std::string::npos);
  EXPECT_NE(run.out.find("MajorID = \"example-client\"\n"), std::string::npos);
  EXPECT_NE(run.out.find("payload: eHal::EPRBS\n"), std::string::npos);
}

}  // namespace
