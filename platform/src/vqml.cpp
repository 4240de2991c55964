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

vqml_content* NewText(const char* text, std::size_t length) {
  auto* node = new vqml_content();
  node->text.reset(new char[length + 1]);
  std::memcpy(node->text.get(), text, length);
  node->text[length] = '\0';
  return node;
}

// Builds the tree of one element from expat's events, and stops expat at the element's end tag.
class TreeBuilder {
 public:
  static constexpr std::size_t kMaxDepth = 256;

  TreeBuilder() : m_Parser(XML_ParserCreate(nullptr), &XML_ParserFree) {}

  // Parses the element at the start of `text`; returns its tree and sets `used` to the length of
  // the text up to its end tag, or returns null.
  vqml_content* Parse(const char* text, unsigned long length, unsigned long& used) {
    if (m_Parser == nullptr) return nullptr;
    Start();
    unsigned long fed = 0;
    while (!m_Stopped) {
      const unsigned long piece = std::min<unsigned long>(length - fed, INT_MAX / 2);
      const bool last = fed + piece == length;
      if (XML_Parse(m_Parser.get(), text + fed, static_cast<int>(piece), last) != XML_STATUS_OK ||
          last) {
        break;
      }
      fed += piece;
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
    if (builder.m_Open.size() >= kMaxDepth) {
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

void AppendEscaped(std::string& out, const char* text) {
  for (; *text != '\0'; ++text) {
    switch (*text) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      default:
        out += *text;
        break;
    }
  }
}

void PrintNode(std::string& out, const vqml_content* node) {
  if (node->type == kVqmlText) {
    AppendEscaped(out, node->text.get());
    return;
  }
  out += '<';
  out += node->name;
  if (node->contents == nullptr) {
    out += "/>";
    return;
  }
  out += '>';
  for (const vqml_content* child = node->contents; child != nullptr; child = child->next)
    PrintNode(out, child);
  out += "</";
  out += node->name;
  out += '>';
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
  // Siblings are freed in a loop, contents by recursion: parsed trees nest 256 deep at most.
  while (element != nullptr) {
    vqml_content* const next = element->next;
    vqml_free_element(element->contents);
    if (element->countedName) NameTable::Instance().Release(element->name);
    delete element;
    element = next;
  }
}

vqml_printer* vqml_new_printer(vqml_print_callback callback, const void* context) {
  return new vqml_printer{callback, context, std::string()};
}

void vqml_print_element(vqml_printer* printer, const vqml_content* element) {
  if (printer == nullptr || element == nullptr) return;
  printer->buffer.clear();
  PrintNode(printer->buffer, element);
  if (printer->callback != nullptr) {
    printer->callback(printer->buffer.data(), printer->buffer.size(), printer->context);
  }
}

void vqml_free_printer(vqml_printer* printer) {
  delete printer;
}
