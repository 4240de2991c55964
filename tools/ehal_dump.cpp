// ehal-dump: prints archived records field by field. It decodes bytes captured from a transport
// as a named record class (or an envelope and its payload), says which classes a captured
// signature could be, lists the registered classes and shows the library's typical exchange.
// Input is raw archive bytes, or with --hex hex digits (the library's hex-dump form included),
// from a file or standard input, at most kInputLimit bytes. Exit status: 0 done, 1 bytes that do
// not hold the record (the library's report of a signature the class does not accept, or a read
// that ran past the end of the input), 2 a usage or input error (unknown class, unreadable or
// empty input, bad hex).
#include <CLI/CLI.hpp>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "eKaitaiDescription.h"
#include "eRecordJson.h"
#include "eSchemaDocument.h"
#include "eWiresharkDissector.h"
#include "ehal.h"
#include "prbs_conversation.h"

namespace {

using eHal::tools::Json;

// A usage or input error: printed with the program's name, exit status 2.
struct InputError {
  std::string message;
};

// Bytes that do not hold the record they are read as: printed with the program's name, exit
// status 1 (as the library's report of a refused signature).
struct ReadError {
  std::string message;
};

// The most input read: the library holds less than 4 GiB in one archive, and a stream without end
// (a device, a pipe that never closes) must not take all memory first.
constexpr std::size_t kInputLimit = std::size_t{1} << 30;

struct Options {
  bool list = false;
  bool guess = false;
  bool demo = false;
  bool hex = false;
  bool json = false;
  bool schema = false;
  bool wireshark = false;
  bool kaitai = false;
  std::string envelope;
  std::string payload;
  std::vector<std::string> operands;  // CLASS and FILE, as the mode takes them
};

// ---- Input ----

// Closes a file opened for reading.
struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// Every byte of `in`, at most kInputLimit; `name` says where they come from in a message.
std::string ReadAll(std::FILE* in, const std::string& name) {
  std::string bytes;
  char chunk[1 << 16];
  for (;;) {
    const std::size_t count = std::fread(chunk, 1, sizeof chunk, in);
    if (count > kInputLimit - bytes.size())
      throw InputError{"cannot read " + name + ": more than " + std::to_string(kInputLimit) +
                       " bytes (the input limit)"};
    bytes.append(chunk, count);
    if (count == sizeof chunk) continue;
    if (std::ferror(in)) throw InputError{"cannot read " + name + ": " + std::strerror(errno)};
    return bytes;
  }
}

// The bytes of FILE, or of standard input when there is none (or it is "-").
std::string ReadInput(const std::string& file) {
  if (file.empty() || file == "-") return ReadAll(stdin, "standard input");
  const std::string name = ERecordValue::Quoted(file);
  const std::unique_ptr<std::FILE, FileCloser> in(std::fopen(file.c_str(), "rb"));
  if (in == nullptr) throw InputError{"cannot read " + name + ": " + std::strerror(errno)};
  return ReadAll(in.get(), name);
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

// The input's bytes; an empty input is an input error, since no record is empty.
std::string InputBytes(const Options& options, const std::string& file) {
  const std::string input = ReadInput(file);
  std::string bytes = options.hex ? FromHex(input) : input;
  if (bytes.empty()) throw InputError{"the input is empty"};
  return bytes;
}

// ---- Decoding ----

const ERecordClass& ClassNamed(const std::string& name) {
  if (const ERecordClass* recordClass = ERecordRegistry::Find(name)) return *recordClass;
  std::string message = "unknown record class " + ERecordValue::Quoted(name);
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
  std::unique_ptr<EAnyRecord> record;
  std::size_t consumed;
  std::size_t remaining;
};

// Reads one record of the class from the bytes as a receiver loads them (see
// ERecordClass::Read). A signature the class does not accept ends the process with the library's
// report; a read that ran past the bytes or started over from the first byte is truncated input.
Decoded Decode(const ERecordClass& recordClass, const std::string& bytes) {
  ERecordRead read = recordClass.Read(bytes);
  if (!read.Complete())
    throw ReadError{"input truncated: " + recordClass.name + " needs more than the " +
                    std::to_string(bytes.size()) + " bytes given (" +
                    (read.wrapped ? "its reads ran past the end and started over"
                                  : "its last read ran past the end") +
                    ")"};
  return {&recordClass, std::move(read.record), read.consumed, bytes.size() - read.consumed};
}

std::string Hex(unsigned int number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", number);
  return text;
}

// Records print as they describe themselves, without a value tree in between, so that printing
// takes little memory beside the record itself.
void PrintText(const Decoded& decoded) {
  std::cout << decoded.recordClass->name << "\n";
  ERecordTextWriter writer(std::cout);
  decoded.record->Describe(writer);
  std::cout << "-- " << decoded.consumed << " bytes consumed, " << decoded.remaining << " remain\n";
}

// The JSON object of a decoded record at nesting level `depth`, without its closing brace, so
// that members can follow.
void PrintJsonMembers(const Decoded& decoded, unsigned int depth) {
  const std::string indent(2 * (depth + 1), ' ');
  std::cout << "{\n"
            << indent << "\"class\": " << Json(decoded.recordClass->name).dump() << ",\n"
            << indent << "\"record\": ";
  eHal::tools::JsonWriter writer(std::cout, depth + 1);
  decoded.record->Describe(writer);
  std::cout << ",\n"
            << indent << "\"consumed\": " << decoded.consumed << ",\n"
            << indent << "\"remaining\": " << decoded.remaining;
}

void PrintJson(const Decoded& decoded) {
  PrintJsonMembers(decoded, 0);
  std::cout << "\n}\n";
}

void PrintJson(const Json& json) {
  std::cout << json.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

// Keeps the bytes of the outermost record's blob field of a given name.
class FieldBytes : public ERecordVisitor {
 public:
  explicit FieldBytes(std::string name) : m_Name(std::move(name)) {}
  // The field's bytes; null when the record has no such field.
  const std::string* Found() const { return m_Found ? &m_Bytes : nullptr; }

  void Number(const char*, ENumberWire, std::uint64_t) override {}
  void Text(const char*, const std::string&) override {}
  void Bytes(const char* name, const EBlob& value) override {
    if (m_Depth != 1 || m_Name != name) return;
    m_Found = true;
    m_Bytes = value.GetView();
  }
  void BeginRecord(const char*) override { ++m_Depth; }
  void EndRecord() override { --m_Depth; }
  void BeginList(const char*, ECountWire, std::size_t) override { ++m_Depth; }
  void EndList() override { --m_Depth; }

 private:
  std::string m_Name;
  std::string m_Bytes;
  bool m_Found = false;
  unsigned int m_Depth = 0;
};

// An envelope and its payload (the field "Message") decoded as the payload class.
void DumpEnvelope(const Options& options, const std::string& bytes) {
  const Decoded envelope = Decode(ClassNamed(options.envelope), bytes);
  FieldBytes payload("Message");
  envelope.record->Describe(payload);
  if (payload.Found() == nullptr) throw InputError{options.envelope + " carries no payload"};
  const Decoded inner = Decode(ClassNamed(options.payload), *payload.Found());
  if (options.json) {
    PrintJsonMembers(envelope, 0);
    std::cout << ",\n  \"payload\": ";
    PrintJsonMembers(inner, 1);
    std::cout << "\n  }\n}\n";
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
  const bool takesOperands =
      !options.list && !options.demo && !options.schema && !options.wireshark && !options.kaitai;
  if (!takesOperands && !options.operands.empty())
    throw InputError{"unexpected operand " + ERecordValue::Quoted(options.operands.front())};
  if (options.list) return List(options);
  if (options.demo) return Demo(options);
  if (options.schema) {
    std::cout << eHal::tools::SchemaDocument().dump(2) << "\n";
    return;
  }
  if (options.wireshark) {
    std::cout << eHal::tools::WiresharkDissector();
    return;
  }
  if (options.kaitai) {
    std::cout << eHal::tools::KaitaiDescription();
    return;
  }
  if (options.guess || !options.envelope.empty()) {
    if (options.operands.size() > 1) throw InputError{"one FILE at most"};
    const std::string bytes = InputBytes(options, Operand(options, 0));
    return options.guess ? Guess(options, bytes) : DumpEnvelope(options, bytes);
  }
  if (options.operands.empty()) throw InputError{"a record CLASS is needed; see --help"};
  if (options.operands.size() > 2)
    throw InputError{"unexpected operand " + ERecordValue::Quoted(options.operands[2])};
  const ERecordClass& recordClass = ClassNamed(options.operands[0]);
  const Decoded decoded = Decode(recordClass, InputBytes(options, Operand(options, 1)));
  if (options.json) return PrintJson(decoded);
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
  app.add_flag("--schema", options.schema,
               "the whole registry as one JSON document (classes, layouts, fields, forms)");
  app.add_flag("--wireshark", options.wireshark,
               "the Wireshark dissector (Lua) generated from the registry");
  app.add_flag("--kaitai", options.kaitai,
               "the Kaitai Struct description (ehal.ksy) generated from the registry");
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
  } catch (const ReadError& error) {
    std::cout.flush();
    std::cerr << "ehal-dump: " << error.message << "\n";
    return 1;
  } catch (const std::bad_alloc&) {
    std::cout.flush();
    std::cerr << "ehal-dump: not enough memory for the input and the record it holds\n";
    return 2;
  }
  return 0;
}
