#include "vqml.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct vqml_content {
  int type = kVqmlText;
  vqml_content* next = nullptr;
  // Element: its interned name and first content node. `countedName` marks a name the parser
  // took a reference on (see NameTable).
  const char* name = nullptr;
  bool countedName = false;
  vqml_content* contents = nullptr;
  // Text node: its characters, NUL-terminated and writable.
  std::unique_ptr<char[]> text;
};

struct vqml_parser {};

struct vqml_printer {
  vqml_print_callback callback;
  const void* context;
  std::string buffer;  // reused by every print
};

namespace {

// The interned names. Names that vqml_intern hands out live for the whole process; a name that
// only parsed documents use is counted by the elements that carry it and dropped with the last
// of them, so that hostile documents full of made-up names do not fill the table for good.
class NameTable {
 public:
  static NameTable& Instance() {
    static NameTable* const table = new NameTable();  // never destroyed: elements may outlive
    return *table;                                    // static destruction
  }

  const char* Pin(std::string_view text) {
    const std::lock_guard<std::mutex> guard(m_Lock);
    Entry& entry = Find(text);
    entry.pinned = true;
    return entry.text.c_str();
  }

  const char* Acquire(std::string_view text) {
    const std::lock_guard<std::mutex> guard(m_Lock);
    Entry& entry = Find(text);
    ++entry.references;
    return entry.text.c_str();
  }

  void Release(const char* name) {
    const std::lock_guard<std::mutex> guard(m_Lock);
    const auto found = m_Names.find(std::string_view(name));
    if (found == m_Names.end()) return;
    Entry& entry = *found->second;
    if (--entry.references == 0 && !entry.pinned) m_Names.erase(found);
  }

 private:
  struct Entry {
    std::string text;
    unsigned long references = 0;
    bool pinned = false;
  };

  Entry& Find(std::string_view text) {
    const auto found = m_Names.find(text);
    if (found != m_Names.end()) return *found->second;
    auto entry = std::make_unique<Entry>();
    entry->text.assign(text.data(), text.size());
    Entry& added = *entry;
    m_Names.emplace(std::string_view(added.text), std::move(entry));
    return added;
  }

  std::mutex m_Lock;
  // Keyed by a view of the entry's own text, so that lookups need no copy.
  std::unordered_map<std::string_view, std::unique_ptr<Entry>> m_Names;
};

// A text node; nothing leaks when memory runs out.
vqml_content* NewText(const char* text, std::size_t length) {
  auto node = std::make_unique<vqml_content>();
  node->text.reset(new char[length + 1]);
  std::memcpy(node->text.get(), text, length);
  node->text[length] = '\0';
  return node.release();
}

// Builds the tree of one element from expat's events, and stops expat at the element's end tag.
class TreeBuilder {
 public:
  TreeBuilder() : m_Parser(XML_ParserCreate(nullptr), &XML_ParserFree) {}

  // Parses the element at the start of `text`; returns its tree and sets `used` to the length of
  // the text up to its end tag, or returns null.
  vqml_content* Parse(const char* text, unsigned long length, unsigned long& used) {
    if (m_Parser == nullptr) return nullptr;
    Start();
    // expat copies what it is given before it parses, so the text goes in pieces that grow fourfold
    // from a small first one: an element costs about its own length, never that of the whole
    // text after it, and a document of many elements is read in linear time.
    unsigned long fed = 0;
    unsigned long piece = kFirstPiece;
    while (!m_Stopped) {
      const unsigned long size = std::min(length - fed, piece);
      const bool last = fed + size == length;
      if (XML_Parse(m_Parser.get(), text + fed, static_cast<int>(size), last) != XML_STATUS_OK ||
          last) {
        break;
      }
      fed += size;
      piece = std::min(4 * piece, kLargestPiece);
    }
    vqml_content* const root = m_Root;
    m_Root = nullptr;
    if (!m_Complete) {
      vqml_free_element(root);
      return nullptr;
    }
    used = m_Used;
    return root;
  }

 private:
  static constexpr unsigned long kFirstPiece = 1024;
  static constexpr unsigned long kLargestPiece = INT_MAX / 2;

  void Start() {
    XML_ParserReset(m_Parser.get(), nullptr);
    XML_SetUserData(m_Parser.get(), this);
    XML_SetElementHandler(m_Parser.get(), &OnStart, &OnEnd);
    XML_SetCharacterDataHandler(m_Parser.get(), &OnText);
    // Entities a document declares itself are refused; only the predefined ones and character
    // references are taken. (expat's own limits on entity expansion stay on as well.)
    XML_SetEntityDeclHandler(m_Parser.get(), &OnEntityDeclaration);
    m_Open.clear();
    m_Last.clear();
    m_Text.clear();
    m_Stopped = false;
    m_Complete = false;
    m_Used = 0;
  }

  static TreeBuilder& From(void* data) { return *static_cast<TreeBuilder*>(data); }

  static void OnStart(void* data, const XML_Char* name, const XML_Char**) {
    TreeBuilder& builder = From(data);
    if (builder.m_Stopped) return;  // expat may still deliver an event after a stop
    builder.FlushText();
    if (builder.m_Open.size() >= kVqmlMaxDepth) {
      builder.Stop();
      return;
    }
    auto* element = new vqml_content();
    element->type = kVqmlElement;
    element->name = NameTable::Instance().Acquire(name);
    element->countedName = true;
    builder.Add(element);
    builder.m_Open.push_back(element);
    builder.m_Last.push_back(nullptr);
  }

  static void OnEnd(void* data, const XML_Char*) {
    TreeBuilder& builder = From(data);
    if (builder.m_Stopped || builder.m_Open.empty()) return;
    builder.FlushText();
    builder.m_Open.pop_back();
    builder.m_Last.pop_back();
    if (!builder.m_Open.empty()) return;
    const XML_Parser parser = builder.m_Parser.get();
    builder.m_Used = static_cast<unsigned long>(XML_GetCurrentByteIndex(parser) +
                                                XML_GetCurrentByteCount(parser));
    builder.m_Complete = true;
    builder.Stop();
  }

  static void OnText(void* data, const XML_Char* text, int length) {
    TreeBuilder& builder = From(data);
    if (!builder.m_Stopped && !builder.m_Open.empty())
      builder.m_Text.append(text, static_cast<std::size_t>(length));
  }

  static void OnEntityDeclaration(void* data, const XML_Char*, int, const XML_Char*, int,
                                  const XML_Char*, const XML_Char*, const XML_Char*,
                                  const XML_Char*) {
    From(data).Stop();
  }

  void Stop() {
    m_Stopped = true;
    XML_StopParser(m_Parser.get(), XML_FALSE);
  }

  // Character data gathered since the last tag becomes one text node of the open element.
  void FlushText() {
    if (m_Text.empty()) return;
    Add(NewText(m_Text.data(), m_Text.size()));
    m_Text.clear();
  }

  // Appends a node to the open element, or makes it the root.
  void Add(vqml_content* node) {
    if (m_Open.empty()) {
      m_Root = node;
      return;
    }
    vqml_content*& last = m_Last.back();
    (last == nullptr ? m_Open.back()->contents : last->next) = node;
    last = node;
  }

  std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_Parser;
  vqml_content* m_Root = nullptr;
  std::vector<vqml_content*> m_Open;  // the open elements, outermost first
  std::vector<vqml_content*> m_Last;  // the last content node of each open element
  std::string m_Text;
  bool m_Stopped = false;
  bool m_Complete = false;
  unsigned long m_Used = 0;
};

// The length of the UTF-8 sequence at `text` when it encodes a character that XML allows
// (tab, line feed, carriage return, U+0020 to U+D7FF, U+E000 to U+FFFD, U+10000 to U+10FFFF),
// otherwise 0. The sequence ends at the first byte that breaks it, so the text's NUL is never
// passed.
unsigned int XmlCharacterLength(const unsigned char* text) {
  const unsigned char lead = text[0];
  if (lead < 0x80) return lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r' ? 1 : 0;
  auto continues = [text](unsigned int i, unsigned char low, unsigned char high) {
    return text[i] >= low && text[i] <= high;
  };
  if (lead >= 0xC2 && lead <= 0xDF) return continues(1, 0x80, 0xBF) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    // E0 continues with A0 at least (shorter forms are overlong), ED with 9F at most (above are
    // the surrogates); EF BF BE and EF BF BF are U+FFFE and U+FFFF, which XML excludes.
    const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
    if (!continues(1, low, high) || !continues(2, 0x80, 0xBF)) return 0;
    return lead == 0xEF && text[1] == 0xBF && text[2] >= 0xBE ? 0 : 3;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    // F0 continues with 90 at least (overlong below), F4 with 8F at most (beyond U+10FFFF).
    const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
    return continues(1, low, high) && continues(2, 0x80, 0xBF) && continues(3, 0x80, 0xBF) ? 4 : 0;
  }
  return 0;
}

// The text that stands for `c` in character data: an entity reference for the markup characters
// and a character reference for a carriage return (a raw one would be read back as a line feed).
// Null for every other byte.
const char* EscapeOf(unsigned char c) {
  switch (c) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '\r':
      return "&#13;";
    default:
      return nullptr;
  }
}

// Appends `text` as character data, escaped as EscapeOf says; the other bytes are copied in runs.
// False when the text holds what no XML text can carry: a control character other than tab, line
// feed and carriage return, or bytes that are not UTF-8 of a character that XML allows.
bool AppendText(std::string& out, const char* text) {
  const auto* at = reinterpret_cast<const unsigned char*>(text);
  const auto* run = at;  // the bytes from here on are copied as they are
  while (*at != '\0') {
    if (*at >= 0x20 && *at < 0x80 && *at != '<' && *at != '>' && *at != '&') {
      ++at;
      continue;
    }
    if (const char* const escape = EscapeOf(*at); escape != nullptr) {
      out.append(reinterpret_cast<const char*>(run), static_cast<std::size_t>(at - run));
      out += escape;
      run = ++at;
      continue;
    }
    const unsigned int length = XmlCharacterLength(at);
    if (length == 0) return false;
    at += length;
  }
  out.append(reinterpret_cast<const char*>(run), static_cast<std::size_t>(at - run));
  return true;
}

bool IsAsciiNameStart(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}

bool IsAsciiNameCharacter(unsigned char c) {
  return IsAsciiNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

// True when the parser reads `<name/>` back as one element of exactly that name: the test for
// names beyond ASCII, whose rules the parser alone states.
bool ParsesAsName(const char* name) {
  const std::string probe = std::string("<") + name + "/>";
  const char* cursor = probe.data();
  unsigned long remaining = probe.size();
  vqml_content* element = nullptr;
  if (vqml_parse_element_bounded(vqml_new_parser(), &cursor, &remaining, &element) == 0) {
    return false;
  }
  const bool same = remaining == 0 && std::strcmp(element->name, name) == 0;
  vqml_free_element(element);
  return same;
}

// True when `name` can be printed as an element name that the parser reads back unchanged. A
// name of ASCII letters, digits, '_', ':', '-' and '.' (not beginning with a digit, '-' or '.')
// is decided here; any other byte asks the parser.
bool IsPrintableName(const char* name) {
  if (name == nullptr) return false;
  const auto* at = reinterpret_cast<const unsigned char*>(name);
  if (!IsAsciiNameStart(*at)) return *at >= 0x80 && ParsesAsName(name);
  for (++at; *at != '\0'; ++at) {
    if (*at >= 0x80) return ParsesAsName(name);
    if (!IsAsciiNameCharacter(*at)) return false;
  }
  return true;
}

// Prints a text, an empty element or an element's start tag, for a node with `depth` open
// elements around it; false when the node cannot be printed.
bool PrintOpening(std::string& out, const vqml_content* node, std::size_t depth) {
  if (node->type == kVqmlText) return AppendText(out, node->text.get());
  if (depth >= kVqmlMaxDepth || !IsPrintableName(node->name)) return false;
  out += '<';
  out += node->name;
  out += node->contents == nullptr ? "/>" : ">";
  return true;
}

// Prints `root` and everything below it, without recursion: the elements whose end tags are due
// are kept in a list, so that no depth can exhaust the stack. False when the tree holds what the
// parser would refuse.
bool PrintTree(std::string& out, const vqml_content* root) {
  std::vector<const vqml_content*> open;
  const vqml_content* node = root;
  for (;;) {
    if (!PrintOpening(out, node, open.size())) return false;
    if (node->type == kVqmlElement && node->contents != nullptr) {
      open.push_back(node);
      node = node->contents;
      continue;
    }
    // On to the next sibling, closing the elements whose last node this was; the root's own
    // siblings are not printed.
    for (;;) {
      if (open.empty()) return true;
      if (node->next != nullptr) {
        node = node->next;
        break;
      }
      node = open.back();
      open.pop_back();
      out += "</";
      out += node->name;
      out += '>';
    }
  }
}

}  // namespace

vqml_parser* vqml_new_parser() {
  static vqml_parser handle;
  return &handle;
}

int vqml_parse_element_bounded(vqml_parser* parser, const char** cursor, unsigned long* remaining,
                               vqml_content** element) {
  if (element != nullptr) *element = nullptr;
  if (parser == nullptr || cursor == nullptr || *cursor == nullptr || remaining == nullptr ||
      element == nullptr || *remaining == 0) {
    return 0;
  }
  thread_local TreeBuilder builder;
  unsigned long used = 0;
  *element = builder.Parse(*cursor, *remaining, used);
  if (*element == nullptr) return 0;
  *cursor += used;
  *remaining -= used;
  return 1;
}

const char* vqml_elem_name(const vqml_content* element) {
  return element != nullptr ? element->name : nullptr;
}

const char* vqml_intern(const char* text) {
  return text != nullptr ? NameTable::Instance().Pin(text) : nullptr;
}

vqml_content* vqml_elem_contents(const vqml_content* element) {
  return element != nullptr ? element->contents : nullptr;
}

vqml_content* vqml_cont_next(const vqml_content* node) {
  return node != nullptr ? node->next : nullptr;
}

int vqml_cont_type(const vqml_content* node) {
  return node != nullptr ? node->type : -1;
}

char* vqml_text(vqml_content* node) {
  return node != nullptr ? node->text.get() : nullptr;
}

vqml_content* vqml_new_text_pool(const char* text, unsigned long length) {
  if (text == nullptr) return NewText("", 0);
  return NewText(text, length != 0 ? length : std::strlen(text));
}

vqml_content* vqml_new_element(const char* name, vqml_attribute*, vqml_content* contents,
                               vqml_content* next) {
  auto* element = new vqml_content();
  element->type = kVqmlElement;
  element->name = name;
  element->contents = contents;
  element->next = next;
  return element;
}

void vqml_free_element(vqml_content* element) {
  // Without recursion, so that a tree of any depth is freed: an element's contents are put in
  // front of the siblings still to free. Each chain of contents is walked once to find its last
  // node, so the whole tree costs linear time.
  while (element != nullptr) {
    vqml_content* next = element->next;
    if (vqml_content* const contents = element->contents; contents != nullptr) {
      vqml_content* last = contents;
      while (last->next != nullptr)
        last = last->next;
      last->next = next;
      next = contents;
    }
    if (element->countedName) NameTable::Instance().Release(element->name);
    delete element;
    element = next;
  }
}

vqml_printer* vqml_new_printer(vqml_print_callback callback, const void* context) {
  return new vqml_printer{callback, context, std::string()};
}

int vqml_print_element(vqml_printer* printer, const vqml_content* element) {
  if (printer == nullptr || element == nullptr) return 0;
  printer->buffer.clear();
  if (!PrintTree(printer->buffer, element)) return 0;
  if (printer->callback != nullptr) {
    printer->callback(printer->buffer.data(), printer->buffer.size(), printer->context);
  }
  return 1;
}

void vqml_free_printer(vqml_printer* printer) {
  delete printer;
}
