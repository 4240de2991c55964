// The XML element library of the platform: a parser that reads one element at a time into a tree
// of element and text nodes, element names interned so that they compare by identity, and a
// printer that writes a tree back as text through a callback. This default layer parses with
// expat; it keeps no attributes.
#pragma once

// A node of a tree: an element (interned name, first content node) or a text. Nodes of one
// parent are chained through their next pointers.
struct vqml_content;
// Attributes are not kept by this layer; the parameter exists for the interface's sake.
struct vqml_attribute;
struct vqml_parser;
struct vqml_printer;

// Called by a printer with a piece of text, its length and the printer's context; returns the
// number of characters taken.
using vqml_print_callback = unsigned long (*)(const char* text, unsigned long length,
                                              const void* context);

// The kinds of node that vqml_cont_type returns.
enum : int { kVqmlText = 0, kVqmlElement = 1 };

// The deepest nesting of elements that the parser reads and the printer writes.
inline constexpr unsigned long kVqmlMaxDepth = 256;

// A parser handle. Parsers keep no state between calls (each thread parses with its own expat
// parser), so a handle owns nothing and needs no release.
vqml_parser* vqml_new_parser();

// Parses the one element at `*cursor`, passing over what precedes it (blanks, an XML declaration,
// comments), and stops at its end tag: on success `*element` is the new tree (free it with
// vqml_free_element), `*cursor` and `*remaining` move past the element, and 1 is returned.
// Malformed or truncated text, a document that declares entities or nests deeper than
// kVqmlMaxDepth elements yields 0 with `*element` null and the cursor unchanged. Character data
// that arrives in pieces forms one text node; comments are dropped. The time taken grows with the
// element's own length, not with the text that follows it.
int vqml_parse_element_bounded(vqml_parser* parser, const char** cursor, unsigned long* remaining,
                               vqml_content** element);

// The interned name of an element (null for a text node or a null node).
const char* vqml_elem_name(const vqml_content* element);
// The interned name for `text`: the same pointer for equal texts, for the life of the process.
const char* vqml_intern(const char* text);
// The first content node of an element (null for none, a text node or a null node).
vqml_content* vqml_elem_contents(const vqml_content* element);
// The next sibling (null at the end of the chain or for a null node).
vqml_content* vqml_cont_next(const vqml_content* node);
// kVqmlText or kVqmlElement (-1 for a null node).
int vqml_cont_type(const vqml_content* node);
// The writable, NUL-terminated text of a text node (null for an element or a null node).
char* vqml_text(vqml_content* node);

// A text node holding a copy of `length` characters of `text`, or of all of it up to its NUL when
// `length` is 0.
vqml_content* vqml_new_text_pool(const char* text, unsigned long length);
// An element named `name` (as vqml_intern gives it), which takes ownership of the chain of
// `contents` and of the chain of `next` siblings. `attributes` must be null.
vqml_content* vqml_new_element(const char* name, vqml_attribute* attributes, vqml_content* contents,
                               vqml_content* next);
// Frees the node and everything below it, together with its next siblings; any depth is safe.
void vqml_free_element(vqml_content* element);

// A printer that hands its text to `callback` with `context`.
vqml_printer* vqml_new_printer(vqml_print_callback callback, const void* context);
// Prints the element (not its siblings) with everything below it: elements as start and end tags
// (an empty one as "<name/>"), text with '<', '>' and '&' as entity references and a carriage
// return as "&#13;". The whole text is handed to the callback in one call, and returns 1. The
// printer writes only what the parser reads back as the same tree, so it refuses, returning 0
// without calling the callback, a tree that holds
// - a text with a control character other than tab, line feed and carriage return, or with bytes
//   that are not UTF-8 of a character that XML allows (a text ends at its first NUL);
// - an element whose name is null or not an XML name the parser reads back unchanged;
// - elements nested deeper than kVqmlMaxDepth.
// A null printer or element prints nothing and returns 0. Any depth is safe: nothing recurses.
int vqml_print_element(vqml_printer* printer, const vqml_content* element);
void vqml_free_printer(vqml_printer* printer);
