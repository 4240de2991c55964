// Writes the module's type stubs: the hand-written stub file given as the argument, with one
// TypedDict per registered record class (and per record part it nests) and overloads of decode
// and encode that name them, all made from the classes' static descriptions.
#include <cctype>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "eRecordRegistry.h"

namespace {

// A Python identifier for a class name: every run of other characters becomes "_", and the
// library's namespace prefix goes.
std::string Identifier(std::string name) {
  const std::string prefix = "eHal::";
  if (name.compare(0, prefix.size(), prefix) == 0) name.erase(0, prefix.size());
  std::string identifier;
  for (const char c : name) {
    if (std::isalnum(static_cast<unsigned char>(c))) {
      identifier.push_back(c);
    } else if (!identifier.empty() && identifier.back() != '_') {
      identifier.push_back('_');
    }
  }
  while (!identifier.empty() && identifier.back() == '_')
    identifier.pop_back();
  return identifier;
}

// The TypedDicts written so far, by description, and their text in the order written.
class Writer {
 public:
  // The name of the TypedDict of a record of the description; `name` for a part that no
  // registered class has.
  std::string Record(const ERecordDescription& description, const std::string& name) {
    const auto known = m_Names.find(&description);
    if (known != m_Names.end()) return known->second;
    const ERecordClass* recordClass = ERecordRegistry::ClassOf(description);
    const std::string identifier = recordClass ? Identifier(recordClass->name) : name;
    m_Names[&description] = identifier;
    std::string fields;
    if (description.hasSignature) fields += "\"Signature\": int, ";
    for (const EFieldDescription& field : description.fields)
      fields += "\"" + field.name + "\": " + Type(field.type, identifier + "_" + field.name) + ", ";
    if (!fields.empty()) fields.resize(fields.size() - 2);
    m_Text << "# " << (recordClass ? recordClass->name : name + ": a record part, not a class")
           << "\n"
           << identifier << " = TypedDict(\"" << identifier << "\", {" << fields
           << "}, total=False)\n";
    return identifier;
  }

  std::string Text() const { return m_Text.str(); }

 private:
  std::string Type(const EValueType& type, const std::string& name) {
    switch (type.kind) {
      case EValueType::Kind::kNumber:
        return "int";
      case EValueType::Kind::kText:
        return "str";
      case EValueType::Kind::kRecord:
        return "\"" + Record(type.record(), name) + "\"";
      case EValueType::Kind::kList:
        return "List[" + Type(*type.item, name + "_Item") + "]";
      default:
        return "bytes";
    }
  }

  std::map<const ERecordDescription*, std::string> m_Names;
  std::ostringstream m_Text;
};

void Replace(std::string& text, const std::string& marker, const std::string& with) {
  const std::size_t at = text.find(marker);
  if (at != std::string::npos) text.replace(at, marker.size(), with);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: ehal_python_stubs STUBS.pyi\n";
    return 2;
  }
  std::ifstream in(argv[1]);
  std::stringstream stubs;
  stubs << in.rdbuf();
  if (!in) {
    std::cerr << "ehal_python_stubs: cannot read " << argv[1] << "\n";
    return 2;
  }
  Writer writer;
  std::string decode;
  std::string encode;
  for (const ERecordClass& recordClass : ERecordRegistry::Classes()) {
    const std::string type = writer.Record(*recordClass.description, Identifier(recordClass.name));
    const std::string name = "Literal[\"" + recordClass.name + "\"]";
    decode += "@overload\ndef decode(class_name: " + name +
              ", data: BytesLike, *, with_rest: Literal[False] = ...) -> " + type + ": ...\n";
    encode +=
        "@overload\ndef encode(class_name: " + name + ", fields: " + type + ") -> bytes: ...\n";
  }
  std::string text = stubs.str();
  Replace(text, "# @RECORD_TYPES@\n",
          "# One TypedDict per record class, generated from the classes' descriptions.\n" +
              writer.Text());
  Replace(text, "# @DECODE_OVERLOADS@\n", decode);
  Replace(text, "# @ENCODE_OVERLOADS@\n", encode);
  std::cout << text;
  return 0;
}
