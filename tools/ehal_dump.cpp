// ehal-dump: prints archived records field by field. It decodes bytes captured from a transport
// as a named record class (or an envelope and its payload), says which classes a captured
// signature could be, lists the registered classes and shows the library's typical exchange.
// Input is raw archive bytes, or with --hex hex digits (the library's hex-dump form included),
// from a file or standard input. Exit status: 0 done, 1 the library's report of a signature the
// class does not accept, 2 a usage or input error (unknown class, bad hex, truncated input).
#include <CLI/CLI.hpp>

#include <cctype>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "eRecordJson.h"
#include "ehal.h"
#include "prbs_conversation.h"

namespace {

using eHal::tools::Json;

// A usage or input error: printed with the program's name, exit status 2.
struct InputError {
  std::string message;
};

struct Options {
  bool list = false;
  bool guess = false;
  bool demo = false;
  bool hex = false;
  bool json = false;
  std::string envelope;
  std::string payload;
  std::vector<std::string> operands;  // CLASS and FILE, as the mode takes them
};

// ---- Input ----

std::string ReadAll(std::istream& in) {
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The bytes of FILE, or of standard input when there is none (or it is "-").
std::string ReadInput(const std::string& file) {
  if (file.empty() || file == "-") return ReadAll(std::cin);
  std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError{"cannot read \"" + file + "\""};
  return ReadAll(in);
}

// A hex-dump line opens with an eight-digit offset and " :"; it is not part of the bytes.
std::string WithoutOffset(const std::string& line) {
  std::size_t first = line.find_first_not_of(" \t");
  if (first == std::string::npos || line.size() < first + 10) return line;
  for (std::size_t i = first; i < first + 8; ++i) {
    if (!std::isxdigit(static_cast<unsigned char>(line[i]))) return line;
  }
  const std::size_t colon = line.find_first_not_of(' ', first + 8);
  return colon != std::string::npos && line[colon] == ':' ? line.substr(colon + 1) : line;
}

// The bytes that hex text spells: digit pairs, any white space between them.
std::string FromHex(const std::string& text) {
  std::string bytes;
  std::string digits;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    for (const char c : WithoutOffset(line)) {
      if (std::isspace(static_cast<unsigned char>(c))) continue;
      if (!std::isxdigit(static_cast<unsigned char>(c)))
        throw InputError{std::string("not a hex digit: '") + c + "'"};
      digits.push_back(c);
    }
  }
  if (digits.size() % 2 != 0) throw InputError{"an odd number of hex digits"};
  for (std::size_t i = 0; i < digits.size(); i += 2)
    bytes.push_back(static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::string InputBytes(const Options& options, const std::string& file) {
  const std::string input = ReadInput(file);
  return options.hex ? FromHex(input) : input;
}

// ---- Decoding ----

const ERecordClass& ClassNamed(const std::string& name) {
  if (const ERecordClass* recordClass = ERecordRegistry::Find(name)) return *recordClass;
  std::string message = "unknown record class \"" + name + "\"";
  const std::vector<std::string> close = ERecordRegistry::CloseNames(name);
  if (close.empty()) throw InputError{message + "; see ehal-dump --list"};
  message += "; close names:";
  for (const std::string& candidate : close)
    message += "\n  " + candidate;
  throw InputError{message};
}

// One record decoded from the start of some bytes.
struct Decoded {
  const ERecordClass* recordClass;
  ERecordValue value;
  std::size_t consumed;
  std::size_t remaining;
};

// Reads one record of the class from the bytes as a receiver loads them (see
// ERecordClass::Read). A signature the class does not accept ends the process with the library's
// report; a read that ran past the bytes or started over from the first byte is truncated input.
Decoded Decode(const ERecordClass& recordClass, const std::string& bytes) {
  const ERecordRead read = recordClass.Read(bytes);
  if (!read.Complete())
    throw InputError{"input truncated: " + recordClass.name + " needs more than the " +
                     std::to_string(bytes.size()) + " bytes given"};
  return {&recordClass, ERecordValue::Of(*read.record), read.consumed,
          bytes.size() - read.consumed};
}

std::string Hex(unsigned int number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", number);
  return text;
}

void PrintText(const Decoded& decoded) {
  std::cout << decoded.recordClass->name << "\n"
            << decoded.value.ToText() << "-- " << decoded.consumed << " bytes consumed, "
            << decoded.remaining << " remain\n";
}

Json JsonOf(const Decoded& decoded) {
  return Json{{"class", decoded.recordClass->name},
              {"record", eHal::tools::ToJson(decoded.value)},
              {"consumed", decoded.consumed},
              {"remaining", decoded.remaining}};
}

void PrintJson(const Json& json) {
  std::cout << json.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

// An envelope and its payload (the field "Message") decoded as the payload class.
void DumpEnvelope(const Options& options, const std::string& bytes) {
  const Decoded envelope = Decode(ClassNamed(options.envelope), bytes);
  const ERecordValue* payload = envelope.value.Find("Message");
  if (payload == nullptr || payload->kind != ERecordValue::Kind::kBytes)
    throw InputError{options.envelope + " carries no payload"};
  const Decoded inner = Decode(ClassNamed(options.payload), payload->bytes);
  if (options.json) {
    Json json = JsonOf(envelope);
    json["payload"] = JsonOf(inner);
    PrintJson(json);
    return;
  }
  PrintText(envelope);
  std::cout << "payload: ";
  PrintText(inner);
}

// ---- Modes ----

void List(const Options& options) {
  Json json = Json::object();
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    Json signatures = Json::array();
    std::string line = recordClass.name;
    for (const ERecordLayout& layout : recordClass.layouts) {
      signatures.push_back(layout.signature);
      line += " " + Hex(layout.signature);
    }
    json[recordClass.name] = signatures;
    if (!options.json)
      std::cout << (recordClass.layouts.empty() ? line + " (no signature)" : line) << "\n";
  }
  if (options.json) PrintJson(json);
}

void Guess(const Options& options, const std::string& bytes) {
  const std::optional<unsigned int> first = ERecordRegistry::FirstNumber(bytes);
  if (!first) throw InputError{"no number in the input"};
  const unsigned int signature = *first;
  Json json = Json::array();
  std::string text = "first number " + std::to_string(signature) + " (" + Hex(signature) + ")\n";
  const std::vector<ERecordMatch> matches = ERecordRegistry::Guess(signature);
  for (const ERecordMatch& match : matches) {
    json.push_back({{"class", match.recordClass->name},
                    {"signature", signature},
                    {"current", match.current},
                    {"fields", match.layout->fields}});
    text += match.recordClass->name + (match.current ? ": current layout:" : ": older layout:");
    for (const std::string& field : match.layout->fields)
      text += " " + field;
    text += "\n";
  }
  if (matches.empty()) text += "no registered class reads this signature\n";
  if (options.json) {
    PrintJson(json);
  } else {
    std::cout << text;
  }
}

// The library's typical exchange: a client asks a port to start a PRBS capture, in an
// eHal::EMessage, and the port answers.
void Demo(const Options& options) {
  const eHal::EPRBS request = conversation::Requests().front();
  const eHal::EPRBS reply = conversation::Serve(request);

  Options envelope = options;
  envelope.envelope = "eHal::EMessage";
  envelope.payload = "eHal::EPRBS";
  const std::pair<const char*, const eHal::EPRBS*> steps[] = {{"client sends", &request},
                                                              {"port answers", &reply}};
  for (const auto& [what, record] : steps) {
    eHal::EMessage message;
    message.SetMessage(record == &request ? conversation::kPRBSRequest : conversation::kPRBSReply,
                       conversation::ArchiveBytes(*record));
    message.SetClientID(conversation::Client());
    message.SetMessagePortId(conversation::kPort);
    const EBlob bytes = conversation::ArchiveBytes(message);
    std::cout << what << " " << bytes.GetSize() << " bytes:\n"
              << bytes.GetHexDumpOfPacket() << "\n";
    DumpEnvelope(envelope,
                 std::string(reinterpret_cast<const char*>(bytes.GetData()), bytes.GetSize()));
    std::cout << "\n";
  }
}

// The operand at `index`, or empty.
std::string Operand(const Options& options, std::size_t index) {
  return index < options.operands.size() ? options.operands[index] : std::string();
}

void Run(const Options& options) {
  if (options.list) return List(options);
  if (options.demo) return Demo(options);
  if (options.guess || !options.envelope.empty()) {
    if (options.operands.size() > 1) throw InputError{"one FILE at most"};
    const std::string bytes = InputBytes(options, Operand(options, 0));
    return options.guess ? Guess(options, bytes) : DumpEnvelope(options, bytes);
  }
  if (options.operands.empty()) throw InputError{"a record CLASS is needed; see --help"};
  const ERecordClass& recordClass = ClassNamed(options.operands[0]);
  const Decoded decoded = Decode(recordClass, InputBytes(options, Operand(options, 1)));
  if (options.json) return PrintJson(JsonOf(decoded));
  PrintText(decoded);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Prints archived ehal records field by field.", "ehal-dump"};
  Options options;
  app.add_flag("--list", options.list, "every record class with its accepted signatures");
  app.add_flag("--guess", options.guess,
               "the classes whose accepted signatures match the first number");
  app.add_flag("--demo", options.demo, "the library's typical exchange, dumped and decoded");
  app.add_flag("--hex", options.hex, "the input is hex text (hex-dump lines accepted)");
  app.add_flag("--json", options.json, "print JSON");
  CLI::Option* envelope =
      app.add_option("--envelope", options.envelope, "decode an envelope of this class");
  app.add_option("--payload", options.payload, "then its payload as this class")->needs(envelope);
  envelope->needs(app.get_option("--payload"));
  app.add_option("operands", options.operands, "CLASS [FILE], or [FILE] with --guess/--envelope");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int status = app.exit(error);
    return status == 0 ? 0 : 2;
  }
  try {
    Run(options);
  } catch (const InputError& error) {
    std::cout.flush();
    std::cerr << "ehal-dump: " << error.message << "\n";
    return 2;
  }
  return 0;
}
