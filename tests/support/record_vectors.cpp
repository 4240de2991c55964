#include "record_vectors.h"

#include <cctype>
#include <cstdint>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>

#include "archive_text.h"
#include "eArchive.h"

namespace {

using namespace std::string_literals;

std::string Decimal(std::uint64_t value) {
  return std::to_string(value) + " ";
}

// The older POS settings layout as first committed: the numbers 2 to 193 (three per port, for 64
// ports) under its signature, of which a reader takes port 0 only (2, 3 and 4).
std::string OlderPOSSettings() {
  std::string bytes = Decimal(0x11334356);
  for (unsigned int number = 2; number <= 193; ++number)
    bytes += Decimal(number);
  return bytes;
}

// Layouts that carry values the current record no longer describes, spelled out by hand: the
// class name and signature, then the bytes.
const std::map<std::pair<std::string, unsigned int>, std::string>& WorkedExamples() {
  static const std::map<std::pair<std::string, unsigned int>, std::string> examples = {
      // Flags 3 (each tag's TPID from them), two 16-bit tag control values.
      {{"EVLANIPAddressTableItemProperties", 1}, "1 3 2 100 8292 "},
      // Flags 1, an unused value, VLAN id 100, priority 3, canonical format 1.
      {{"EVLANIPAddressTableItemProperties", 0x13156111}, "320168209 1 9 100 3 1 "},
      // The old blob form: hex text up to the end of the line.
      {{"EBlob", 0x11223344}, "287454020 0AFF10\n"},
      // The old IPv4-only address layout (10.0.0.1), then the mask (255.255.255.0).
      {{"EIPMaskedAddress", 0x18111111},
       "403771665 287454021 4 \x0A\x00\x00\x01"
       "420548881 287454021 4 \xFF\xFF\xFF\x00"s},
      {{"eHal::EPOSLinkLayerSettings", 0x11334356}, OlderPOSSettings()},
  };
  return examples;
}

void Replace(ERecordValue& value, unsigned int& next) {
  switch (value.kind) {
    case ERecordValue::Kind::kNumber:
      if (value.name == "Signature") return;
      ++next;
      value.number = value.wire == ENumberWire::kBool ? next % 2 : next % 200 + 1;
      return;
    case ERecordValue::Kind::kText:
      value.bytes.assign(value.bytes.size() + 1, static_cast<char>('a' + ++next % 26));
      return;
    case ERecordValue::Kind::kBytes:
      for (char& byte : value.bytes)
        byte = static_cast<char>(++next);
      return;
    default:
      for (ERecordValue& item : value.items)
        Replace(item, next);
      return;
  }
}

// The bytes of an older layout: its signature in the form the current one is written, then each
// field it names as the current description holds it. Empty when the layout names a field the
// description lacks.
std::string LayoutBytes(const ERecordLayout& layout, const ERecordValue& current) {
  const ERecordValue* signature = current.Find("Signature");
  if (signature == nullptr) return "";
  ERecordValue older = *signature;
  older.number = signature->IsSigned()
                     ? static_cast<std::uint64_t>(std::int64_t{static_cast<int>(layout.signature)})
                     : layout.signature;
  std::string bytes = BytesOf(older);
  for (const std::string& field : layout.fields) {
    if (field == "(dropped)") {
      bytes += Decimal(77);
      continue;
    }
    const ERecordValue* value = current.Find(field);
    if (value == nullptr) return "";
    bytes += BytesOf(*value);
  }
  return bytes;
}

}  // namespace

std::string VectorFileName(const ERecordClass& recordClass, const ERecordLayout* layout) {
  std::string name;
  for (const char c : recordClass.name) {
    if (std::isalnum(static_cast<unsigned char>(c))) {
      name.push_back(c);
    } else if (name.empty() || name.back() != '_') {
      name.push_back('_');
    }
  }
  char signature[16] = "none";
  if (layout != nullptr) std::snprintf(signature, sizeof signature, "%08X", layout->signature);
  return name + "." + signature;
}

ERecordValue WithDistinctValues(const ERecordValue& value) {
  ERecordValue distinct = value;
  unsigned int next = 0;
  Replace(distinct, next);
  return distinct;
}

std::vector<RecordVector> VectorsOf(const ERecordClass& recordClass) {
  // A fresh record takes the distinct values through its own reader, which keeps what it keeps.
  const std::unique_ptr<EAnyRecord> fresh = recordClass.Create();
  const std::string distinct = BytesOf(WithDistinctValues(ERecordValue::Of(*fresh)));
  const std::unique_ptr<EAnyRecord> record = recordClass.Create();
  EArchive in;
  in.SetMode(eModeLoading);
  in.SetFromEBlob(EBlob(distinct.data(), static_cast<unsigned int>(distinct.size())), true);
  in >> *record;
  const ERecordValue current = ERecordValue::Of(*record);

  std::vector<RecordVector> vectors;
  if (recordClass.layouts.empty()) return {{&recordClass, nullptr, BytesOf(current)}};
  for (const ERecordLayout& layout : recordClass.layouts) {
    if (&layout == &recordClass.layouts.front()) {
      vectors.push_back({&recordClass, &layout, BytesOf(current)});
      continue;
    }
    std::string bytes = LayoutBytes(layout, current);
    if (bytes.empty()) {
      const auto example = WorkedExamples().find({recordClass.name, layout.signature});
      if (example == WorkedExamples().end())
        throw std::runtime_error("no bytes for " + VectorFileName(recordClass, &layout));
      bytes = example->second;
    }
    vectors.push_back({&recordClass, &layout, bytes});
  }
  return vectors;
}

namespace {

// One parsed line of the text form: what it opens or closes, or the scalar it carries.
struct TextNode {
  char kind = '{';  // '{' record, '[' counted list, 'f' fixed list, 'z' zero-ended list, 's' scalar
  std::string scalar;
  std::vector<TextNode> items;
};

std::string Unquoted(const std::string& quoted) {
  std::string text;
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    if (quoted[i] != '\\') {
      text.push_back(quoted[i]);
      continue;
    }
    const char escaped = quoted[++i];
    if (escaped == 'n')
      text.push_back('\n');
    else if (escaped == 't')
      text.push_back('\t');
    else if (escaped == 'r')
      text.push_back('\r');
    else if (escaped == 'x') {
      text.push_back(static_cast<char>(std::stoi(quoted.substr(i + 1, 2), nullptr, 16)));
      i += 2;
    } else {
      text.push_back(escaped);
    }
  }
  return text;
}

std::string FromHexDigits(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::string ScalarBytes(const std::string& value) {
  if (value.front() == '"') {
    const std::string text = Unquoted(value);
    return Decimal(text.size()) + text;
  }
  if (value.front() == '<') {
    const std::string bytes = FromHexDigits(value.substr(1, value.size() - 2));
    return Decimal(0x11223345) + Decimal(bytes.size()) + bytes;
  }
  return value.substr(0, value.find(' ')) + " ";
}

std::string NodeBytes(const TextNode& node) {
  if (node.kind == 's') return ScalarBytes(node.scalar);
  std::string bytes = node.kind == '[' ? Decimal(node.items.size()) : "";
  for (const TextNode& item : node.items)
    bytes += NodeBytes(item);
  return node.kind == 'z' ? bytes + "0 " : bytes;
}

}  // namespace

std::string BytesFromText(const std::string& text) {
  std::vector<TextNode> open(1);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::string value = line.substr(line.find_first_not_of(' '));
    const std::size_t equals = value.find(" = ");
    if (value.front() != '"' && equals != std::string::npos) value = value.substr(equals + 3);
    if (value == "}" || value == "]") {
      TextNode closed = open.back();
      open.pop_back();
      open.back().items.push_back(closed);
      continue;
    }
    TextNode node;
    const bool scalar = value.front() == '"' || value.front() == '<' || value.front() == '-' ||
                        std::isdigit(static_cast<unsigned char>(value.front()));
    if (!scalar) {
      node.kind = value.rfind("fixed", 0) == 0           ? 'f'
                  : value.rfind("zero-ended", 0) == 0    ? 'z'
                  : value.find('[') != std::string::npos ? '['
                                                         : '{';
      const std::string end = value.size() < 2 ? value : value.substr(value.size() - 2);
      if (end == "{}" || end == "[]") {
        open.back().items.push_back(node);
      } else {
        open.push_back(node);
      }
      continue;
    }
    node.kind = 's';
    node.scalar = value;
    open.back().items.push_back(node);
  }
  return NodeBytes(open.front());
}
