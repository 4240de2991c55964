// The Kaitai Struct description, generated: the schema document turned into Kaitai types (the
// number forms, then the blob's form, then each record class in registry order with its layouts
// and the parts it holds, each group headed by a comment naming the class) and enums.
#include "eKaitaiDescription.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "eSchemaDocument.h"

namespace eHal::tools {

namespace {

bool IsUpper(char c) {
  return std::isupper(static_cast<unsigned char>(c)) != 0;
}
bool IsLower(char c) {
  return std::islower(static_cast<unsigned char>(c)) != 0;
}
bool IsDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
bool IsAlnum(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// Whether a word break falls before the capital at `i`: after a small letter or a digit, or at
// the last capital of an acronym that a word follows ("LLDPSent": before the S).
bool BreaksBefore(const std::string& name, std::size_t i) {
  if (i == 0 || !IsUpper(name[i])) return false;
  const char previous = name[i - 1];
  const char next = i + 1 < name.size() ? name[i + 1] : '\0';
  return IsLower(previous) || IsDigit(previous) || (IsUpper(previous) && IsLower(next));
}

// Identifiers taken within one scope (a type's attributes, the types, the enums): a name taken
// already gets a number, "_2", "_3", ...
class IdScope {
 public:
  std::string Take(const std::string& wanted) {
    std::string id = wanted;
    for (int n = 2; !used_.insert(id).second; ++n)
      id = wanted + "_" + std::to_string(n);
    return id;
  }

 private:
  std::set<std::string> used_;
};

// A signature as the comments and type names show it: eight hex digits.
std::string Hex8(unsigned long long value) {
  char text[24];
  std::snprintf(text, sizeof text, "%08llx", value);
  return text;
}

// A documentation text in lines of at most 80 characters, broken at blanks.
std::string Wrapped(const std::string& text) {
  std::istringstream words(text);
  std::string wrapped;
  std::string line;
  for (std::string word; words >> word;) {
    if (!line.empty() && line.size() + 1 + word.size() > 80) {
      wrapped += line + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  return wrapped + line;
}

// ---- YAML ----

bool IsPlainKey(const std::string& key) {
  if (key.empty()) return false;
  for (const char c : key)
    if (!IsAlnum(c) && c != '_' && c != '-') return false;
  return true;
}

void WriteMapping(std::ostream& out, const OrderedJson& map, const std::string& first,
                  const std::string& indent);

// A text over several lines as a literal block below `indent`.
void WriteBlock(std::ostream& out, const std::string& text, const std::string& indent) {
  const bool endsWithLine = !text.empty() && text.back() == '\n';
  out << (endsWithLine ? " |\n" : " |-\n");
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    out << (line.empty() ? "" : indent + line) << "\n";
}

// A list, one item per line below `indent`; a mapping item starts on the dash's line.
void WriteSequence(std::ostream& out, const OrderedJson& list, const std::string& indent) {
  for (const OrderedJson& item : list) {
    if (item.is_object() && !item.empty()) {
      WriteMapping(out, item, indent + "- ", indent + "  ");
    } else {
      out << indent << "- "
          << (item.is_string() ? YamlScalar(item.get<std::string>()) : item.dump()) << "\n";
    }
  }
}

// The value after "key:", and what it holds below `indent`.
void WriteValue(std::ostream& out, const OrderedJson& value, const std::string& indent) {
  if (value.is_string()) {
    const std::string text = value.get<std::string>();
    if (text.find('\n') != std::string::npos) return WriteBlock(out, text, indent);
    out << " " << YamlScalar(text) << "\n";
  } else if (value.is_primitive()) {
    out << " " << value.dump() << "\n";
  } else if (value.empty()) {
    out << (value.is_array() ? " []\n" : " {}\n");
  } else if (value.is_array()) {
    out << "\n";
    WriteSequence(out, value, indent);
  } else {
    out << "\n";
    WriteMapping(out, value, indent, indent);
  }
}

// A mapping, one key per line; the first line starts with `first`, the others with `indent`.
void WriteMapping(std::ostream& out, const OrderedJson& map, const std::string& first,
                  const std::string& indent) {
  const std::string* start = &first;
  for (auto entry = map.begin(); entry != map.end(); ++entry) {
    const std::string& key = entry.key();
    out << *start << (IsPlainKey(key) ? key : OrderedJson(key).dump()) << ":";
    WriteValue(out, entry.value(), indent + "  ");
    start = &indent;
  }
}

// ---- The number forms ----

// How a number form reads: its type's documentation, the expression of its value, and the
// instances that expression needs.
struct NumberForm {
  const char* wire;
  const char* doc;
  const char* value;
};

constexpr NumberForm kNumberForms[] = {
    {"unsigned8", "An 8-bit number: the low 8 bits of the token.", "token.to_i % 256"},
    {"unsigned16", "A 16-bit number: the low 16 bits of the token.", "token.to_i % 65536"},
    {"unsigned32", "An unsigned 32-bit number.", "token.to_i"},
    {"signed32", "A signed 32-bit number.", "token.to_i"},
    {"unsigned64",
     "An unsigned 64-bit number. Where the language's integers hold less (JavaScript's numbers "
     "beyond 2^53, Java's long beyond 2^63 - 1), read the token.",
     "token.to_i"},
    {"flag", "A flag: any number but 0 is set.", "token.to_i != 0"},
    {"signed-out-unsigned-in",
     "A number written signed and read back as unsigned 32-bit, shown signed: the library reads "
     "a '-' as the digit -3 (\"-7\" reads as -23).",
     "unsigned >= 2147483648 ? unsigned - 4294967296 : unsigned"},
};

// 10 to the power of the digits after a '-': the weight of that '-' read as the digit -3. A
// 32-bit magnitude has at most 10 digits.
std::string MinusWeight() {
  std::string expression;
  std::string power = "1";
  for (int digits = 0; digits < 10; ++digits, power += "0")
    expression += "digits.length == " + std::to_string(digits) + " ? " + power + " : ";
  return expression + power;
}

// The instances that read a '-' as the library does (the signed-out-unsigned-in form).
OrderedJson MinusDigitInstances() {
  return {
      {"negative", {{"value", "token.substring(0, 1) == \"-\""}}},
      {"digits", {{"value", "negative ? token.substring(1, token.length) : token"}}},
      {"minus_weight", {{"value", MinusWeight()}}},
      {"unsigned",
       {{"doc", "The token read as an unsigned 32-bit number, digit by digit."},
        {"value", "(negative ? digits.to_i - 3 * minus_weight : digits.to_i) % 4294967296"}}},
  };
}

// The type of a number form: the token (decimal digits, ended by one blank) and its value.
OrderedJson NumberType(const NumberForm& form) {
  OrderedJson instances = std::string(form.wire) == "signed-out-unsigned-in"
                              ? MinusDigitInstances()
                              : OrderedJson::object();
  instances["value"] = {{"value", form.value}};
  return {{"doc", Wrapped(form.doc)},
          // A token the bytes end in is no number: a count or a list's end never read stops the
          // reader instead of reading empty tokens on.
          {"seq", {{{"id", "token"}, {"type", "str"}, {"terminator", "0x20"}}}},
          {"instances", instances}};
}

std::string NumberTypeId(const std::string& wire) {
  return KaitaiIdentifier(wire);
}

// A length, then that many raw bytes: a text or a blob's bytes.
OrderedJson CountedBytesType() {
  return {{"doc", "A length, then that many raw bytes (a text's are UTF-8 as a rule)."},
          {"seq",
           {{{"id", "len_bytes"}, {"type", "unsigned32"}},
            {{"id", "bytes"}, {"size", "len_bytes.value"}}}}};
}

// The blob's old form: hex text up to a line feed.
OrderedJson HexLineType() {
  return {{"doc", Wrapped("Hex text up to a line feed: a hex digit and the character after it "
                          "make a byte. This reader takes the line feed too (the library leaves "
                          "it to the next number, which skips it).")},
          {"seq",
           {{{"id", "hex_text"}, {"type", "str"}, {"terminator", "0x0a"}, {"eos-error", false}}}}};
}

// ---- Records ----

struct TypeBody {
  OrderedJson seq = OrderedJson::array();
  OrderedJson instances = OrderedJson::object();
  IdScope ids;
};

// Types and enums built from the schema document, in the order they are written.
class KsyBuilder {
 public:
  explicit KsyBuilder(const OrderedJson& document);
  std::string Text() const;

 private:
  struct Entry {
    std::string comment;  // the class the entry comes from
    std::string id;
    OrderedJson body;
  };

  std::string AddRecord(const std::string& id, const OrderedJson& record, const std::string& doc,
                        const std::string& name = "");
  void AddSignatureSwitch(const std::string& id, const OrderedJson& record, TypeBody& body);
  std::string AddLayout(const std::string& owner, const OrderedJson& record,
                        const OrderedJson& layout);
  void AddValue(const std::string& owner, TypeBody& body, const OrderedJson& field);
  void AddList(const std::string& owner, TypeBody& body, const std::string& id,
               const std::string& name, const OrderedJson& list);
  std::string ItemType(const std::string& owner, const std::string& id, const OrderedJson& type);
  std::string ZeroEndedEntry(const std::string& owner, const std::string& id,
                             const OrderedJson& item);
  std::string AddEnum(const std::string& owner, const std::string& id, const OrderedJson& names);
  std::size_t Reserve(const std::string& id);
  // A type's body: its doc, the class name it describes (none for parts), seq and instances.
  static OrderedJson Finished(TypeBody& body, const std::string& doc, const std::string& name = "");
  static void WriteEntries(std::ostream& out, const std::vector<Entry>& entries);

  std::vector<Entry> types_;
  std::vector<Entry> enums_;
  IdScope typeIds_;
  IdScope enumIds_;
  std::map<std::string, std::string> classTypes_;  // class name -> type id
  std::map<std::string, std::string> made_;        // owner and field -> the type or enum made
  std::string comment_;                            // the heading of the types being made
  std::string subject_;                            // what they describe, for their docs
};

KsyBuilder::KsyBuilder(const OrderedJson& document) {
  comment_ = "The number forms, texts and the blob's old bytes";
  for (const NumberForm& form : kNumberForms)
    types_.push_back({comment_, typeIds_.Take(NumberTypeId(form.wire)), NumberType(form)});
  types_.push_back({comment_, typeIds_.Take("counted_bytes"), CountedBytesType()});
  types_.push_back({comment_, typeIds_.Take("hex_line"), HexLineType()});
  // Every class's type id first: a record may hold a class described after it.
  for (const OrderedJson& recordClass : document["classes"]) {
    std::string name = recordClass["name"].get<std::string>();
    const std::string bare = name.rfind("eHal::", 0) == 0 ? name.substr(6) : name;
    classTypes_[name] = typeIds_.Take(KaitaiIdentifier(bare));
  }
  comment_ = "EBlob's archive form: every blob field travels in it";
  subject_ = "the blob's form";
  AddRecord(typeIds_.Take("blob"), document["blob"], "A blob in its archive form.");
  for (const OrderedJson& recordClass : document["classes"]) {
    comment_ = subject_ = recordClass["name"].get<std::string>();
    AddRecord(classTypes_.at(comment_), recordClass["record"], "The record class " + comment_ + ".",
              comment_);
  }
}

// Keeps the place of a type that is written before the types it needs.
std::size_t KsyBuilder::Reserve(const std::string& id) {
  types_.push_back({comment_, id, OrderedJson()});
  return types_.size() - 1;
}

OrderedJson KsyBuilder::Finished(TypeBody& body, const std::string& doc, const std::string& name) {
  OrderedJson type = {{"doc", Wrapped(doc)}};
  if (!name.empty()) type["-orig-id"] = name;
  type["seq"] = body.seq;
  if (!body.instances.empty()) type["instances"] = body.instances;
  return type;
}

std::string KsyBuilder::AddRecord(const std::string& id, const OrderedJson& record,
                                  const std::string& doc, const std::string& name) {
  const std::size_t place = Reserve(id);
  TypeBody body;
  if (record["signature"].is_null()) {
    for (const OrderedJson& field : record["fields"])
      AddValue(id, body, field);
    types_[place].body = Finished(body, doc, name);
    return id;
  }
  AddSignatureSwitch(id, record, body);
  std::string signatures;
  const OrderedJson& layouts = record["layouts"];
  for (std::size_t i = 0; i < layouts.size(); ++i)
    signatures += std::string(i == 0   ? " Written with signature 0x"
                              : i == 1 ? "; older 0x"
                                       : ", 0x") +
                  Hex8(layouts[i]["signature"].get<unsigned long long>());
  types_[place].body = Finished(
      body, doc + signatures + "; the signature names the layout of the fields after it.", name);
  return id;
}

// The signature (any other is refused) and the layout it names.
void KsyBuilder::AddSignatureSwitch(const std::string& id, const OrderedJson& record,
                                    TypeBody& body) {
  const std::string wire = record["signature"].get<std::string>();
  const bool shownSigned = wire == "signed32" || wire == "signed-out-unsigned-in";
  std::string accepted;
  OrderedJson cases = OrderedJson::object();
  for (const OrderedJson& layout : record["layouts"]) {
    const auto signature = layout["signature"].get<unsigned long long>();
    // The value as the signature's form shows it: signed forms show the high half negative.
    const long long shown = shownSigned && signature >= 0x80000000ULL
                                ? static_cast<long long>(signature) - 0x100000000LL
                                : static_cast<long long>(signature);
    accepted +=
        (accepted.empty() ? "" : " or ") + std::string("_.value == ") + std::to_string(shown);
    cases[std::to_string(shown)] = AddLayout(id, record, layout);
  }
  body.seq.push_back(
      {{"id", "signature"}, {"type", NumberTypeId(wire)}, {"valid", {{"expr", accepted}}}});
  body.seq.push_back(
      {{"id", "layout"}, {"type", {{"switch-on", "signature.value"}, {"cases", cases}}}});
}

const OrderedJson& FieldNamed(const OrderedJson& record, const std::string& name) {
  for (const char* group : {"fields", "readOnlyFields"})
    for (const OrderedJson& field : record[group])
      if (field["name"] == name) return field;
  throw std::logic_error("a layout names the field " + name + " its record does not describe");
}

std::string KsyBuilder::AddLayout(const std::string& owner, const OrderedJson& record,
                                  const OrderedJson& layout) {
  const auto signature = layout["signature"].get<unsigned long long>();
  const std::string id = typeIds_.Take(owner + "_layout_" + Hex8(signature));
  const std::size_t place = Reserve(id);
  TypeBody body;
  for (const OrderedJson& name : layout["fields"]) {
    if (name == "(dropped)") {
      body.seq.push_back({{"id", body.ids.Take("dropped")},
                          {"type", "unsigned32"},
                          {"doc", "A number this layout carries and the record no longer keeps."}});
    } else {
      AddValue(owner, body, FieldNamed(record, name.get<std::string>()));
    }
  }
  types_[place].body =
      Finished(body, "The fields of " + subject_ + " after signature 0x" + Hex8(signature) + ".");
  return id;
}

// A field: its attribute (a list: its count and its items), and its named values as an enum.
void KsyBuilder::AddValue(const std::string& owner, TypeBody& body, const OrderedJson& field) {
  const std::string name = field["name"].get<std::string>();
  const std::string wanted = KaitaiIdentifier(name.empty() ? "item" : name);
  const OrderedJson& type = field["type"];
  const std::string id = body.ids.Take(wanted);
  if (type["kind"] == "list") return AddList(owner, body, id, name, type);
  body.seq.push_back({{"id", id}, {"-orig-id", name}, {"type", ItemType(owner, wanted, type)}});
  if (field.contains("values") && type["kind"] == "number" && type["wire"] != "flag") {
    body.instances[body.ids.Take(id + "_named")] = {
        {"value", id + ".value"}, {"enum", AddEnum(owner, wanted, field["values"])}};
  }
}

void KsyBuilder::AddList(const std::string& owner, TypeBody& body, const std::string& id,
                         const std::string& name, const OrderedJson& list) {
  const std::string count = list["count"].get<std::string>();
  if (count == "zero-ended") {
    body.seq.push_back({{"id", id},
                        {"-orig-id", name},
                        {"type", ZeroEndedEntry(owner, id, list["item"])},
                        {"repeat", "until"},
                        {"repeat-until", "_.is_end"}});
    return;
  }
  OrderedJson items = {{"id", id}, {"-orig-id", name}, {"type", ItemType(owner, id, list["item"])}};
  items["repeat"] = "expr";
  if (count == "fixed") {
    items["repeat-expr"] = list["fixedCount"];
  } else {
    const std::string number = body.ids.Take("num_" + id);
    // Written 64-bit, a count is read 32-bit; a negative signed count reads no items.
    body.seq.push_back(
        {{"id", number}, {"type", NumberTypeId(count == "signed32" ? "signed32" : "unsigned32")}});
    items["repeat-expr"] =
        count == "signed32" ? number + ".value < 0 ? 0 : " + number + ".value" : number + ".value";
  }
  body.seq.push_back(items);
}

// The type of one value (a field's, or a list's item), made once per owner and field.
std::string KsyBuilder::ItemType(const std::string& owner, const std::string& id,
                                 const OrderedJson& type) {
  const std::string kind = type["kind"].get<std::string>();
  if (kind == "number") return NumberTypeId(type["wire"].get<std::string>());
  if (kind == "text" || kind == "raw-bytes") return "counted_bytes";
  if (kind == "hex-line") return "hex_line";
  if (kind == "blob") return "blob";
  if (kind == "record" && type.contains("class"))
    return classTypes_.at(type["class"].get<std::string>());
  const std::string key = owner + "." + id;
  if (made_.count(key) != 0) return made_[key];
  const std::string made = typeIds_.Take(owner + "_" + id);
  made_[key] = made;
  if (kind == "record")
    return AddRecord(made, type["record"], "A part of " + subject_ + ": " + id + ".");
  // A list of lists: the inner list as a type of its own.
  const std::size_t place = Reserve(made);
  TypeBody body;
  AddList(made, body, "items", "", type);
  types_[place].body = Finished(body, "An item of " + subject_ + "'s " + id + ": a list.");
  return made;
}

// An item of a list that a 0 ends: the item, or the 0 where its leading number would stand.
std::string KsyBuilder::ZeroEndedEntry(const std::string& owner, const std::string& id,
                                       const OrderedJson& item) {
  const std::string key = owner + "." + id + ".entry";
  if (made_.count(key) != 0) return made_[key];
  const std::string made = typeIds_.Take(owner + "_" + id + "_entry");
  made_[key] = made;
  const std::size_t place = Reserve(made);
  OrderedJson type = {
      {"doc", Wrapped("An item of " + subject_ + "'s " + id +
                      ", or the 0 that ends the list where the item's first number would stand.")},
      {"seq",
       {{{"id", "item"}, {"type", ItemType(owner, id, item)}, {"if", "not is_end"}},
        {{"id", "zero"}, {"type", "unsigned32"}, {"if", "is_end"}}}},
      {"instances",
       {{"peek", {{"pos", "_io.pos"}, {"type", "unsigned32"}}},
        {"is_end", {{"value", "peek.value == 0"}}}}}};
  types_[place].body = type;
  return made;
}

// The enum of a field's named values: member ids from the names, values 0, 1, 2, ...
std::string KsyBuilder::AddEnum(const std::string& owner, const std::string& id,
                                const OrderedJson& names) {
  const std::string key = owner + "." + id + ".enum";
  if (made_.count(key) != 0) return made_[key];
  const std::string made = enumIds_.Take(owner + "_" + id);
  made_[key] = made;
  OrderedJson members = OrderedJson::object();
  IdScope memberIds;
  for (std::size_t value = 0; value < names.size(); ++value) {
    const std::string name = names[value].get<std::string>();
    if (!name.empty()) members[std::to_string(value)] = memberIds.Take(KaitaiEnumMember(name));
  }
  enums_.push_back({comment_, made, members});
  return made;
}

void KsyBuilder::WriteEntries(std::ostream& out, const std::vector<Entry>& entries) {
  const std::string* comment = nullptr;
  for (const Entry& entry : entries) {
    if (comment == nullptr || *comment != entry.comment) out << "\n  # " << entry.comment << "\n";
    comment = &entry.comment;
    out << "  " << entry.id << ":";
    WriteValue(out, entry.body, "    ");
  }
}

constexpr const char kHead[] =
    R"(# ehal.ksy: the archive form of every ehal record class, in Kaitai Struct. Generated by
# `ehal-dump --kaitai` from the library's record registry; regenerate it rather than edit it.
#
# Compile it for a language with `kaitai-struct-compiler -t LANGUAGE ehal.ksy`, then read a
# record with the type of its class (eHal::EPRBS: `eprbs`, Ehal.Eprbs in JavaScript and Java).
)";

constexpr const char kDoc[] =
    R"(The archived records of ehal. There is no one top-level record: read bytes with the type of
the class they hold (its id is the class name in lower snake case without "eHal::", so
eHal::EPRBS is `eprbs`). Field ids are the field names in lower snake case (`-orig-id` keeps
the name).

A number travels as a decimal token ended by one blank: its type keeps the `token` and gives
its `value`. A text is a length token, then raw bytes (`counted_bytes`). A record with a
signature reads it, then `layout`, the fields of the layout that signature names: an older
layout carries fewer fields, and a signature no layout names is refused. A list has a count
(`num_` and the list's id), a fixed number of items, or items up to a 0 (each item an entry
with `is_end`). Named values are enums (the field's id with `_named`).
)";

std::string KsyBuilder::Text() const {
  std::ostringstream out;
  out << kHead << "meta:\n";
  WriteMapping(out,
               {{"id", "ehal"},
                {"title", "ehal archived records"},
                {"ks-version", "0.10"},
                {"encoding", "ASCII"}},
               "  ", "  ");
  out << "doc:";
  WriteValue(out, kDoc, "  ");
  out << "types:";
  WriteEntries(out, types_);
  out << "enums:";
  WriteEntries(out, enums_);
  return out.str();
}

}  // namespace

std::string KaitaiIdentifier(const std::string& name) {
  std::string id;
  bool gap = false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (!IsAlnum(name[i])) {
      gap = !id.empty();
      continue;
    }
    if ((gap || BreaksBefore(name, i)) && !id.empty()) id += '_';
    gap = false;
    id += static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
  }
  if (id.empty()) return "x";
  return IsDigit(id[0]) ? "n" + id : id;
}

std::string KaitaiEnumMember(const std::string& name) {
  const bool prefixed = name.size() > 1 && name[0] == 'k' && IsUpper(name[1]);
  return KaitaiIdentifier(prefixed ? name.substr(1) : name);
}

std::string YamlScalar(const std::string& text) {
  static const std::set<std::string> kWords = {"true", "false", "null", "yes", "no",
                                               "on",   "off",   "y",    "n",   "~"};
  bool plain =
      !text.empty() && (std::isalpha(static_cast<unsigned char>(text[0])) || text[0] == '_');
  for (const char c : text)
    plain = plain && (IsAlnum(c) || c == '_' || c == '.');
  std::string lower;
  for (const char c : text)
    lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  // Hex numbers stay numbers (terminators, masks).
  const bool hex = text.size() > 2 && text.rfind("0x", 0) == 0 &&
                   text.find_first_not_of("0123456789abcdef", 2) == std::string::npos;
  if (hex || (plain && kWords.count(lower) == 0)) return text;
  // Single quotes where they need no escape, so that expressions read as they are.
  const bool printable =
      text.find_first_of("'\\") == std::string::npos &&
      std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
  return printable ? "'" + text + "'" : OrderedJson(text).dump();
}

std::string KaitaiDescription() {
  return KsyBuilder(SchemaDocument()).Text();
}

}  // namespace eHal::tools
