// The platform's XML element layer: one element per parse, interned names, text nodes, the
// printer, and refusal of malformed, truncated and hostile documents.
#include "vqml.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

struct Parsed {
  vqml_content* element = nullptr;
  int result = 0;
  unsigned long used = 0;

  ~Parsed() { vqml_free_element(element); }
};

// Parses the element at the start of `text`.
void ParseInto(const std::string& text, Parsed& parsed) {
  const char* cursor = text.data();
  unsigned long remaining = text.size();
  parsed.result =
      vqml_parse_element_bounded(vqml_new_parser(), &cursor, &remaining, &parsed.element);
  parsed.used = static_cast<unsigned long>(cursor - text.data());
  EXPECT_EQ(remaining, text.size() - parsed.used);
}

unsigned long Collect(const char* text, unsigned long length, const void* context) {
  static_cast<std::string*>(const_cast<void*>(context))->append(text, length);
  return length;
}

std::string Printed(const vqml_content* element) {
  std::string text;
  vqml_printer* const printer = vqml_new_printer(&Collect, &text);
  vqml_print_element(printer, element);
  vqml_free_printer(printer);
  return text;
}

TEST(Vqml, ParsesOneElementAndStopsAtItsEndTag) {
  const std::string text = "<a><b>x</b><c/></a><d/>rest";
  Parsed parsed;
  ParseInto(text, parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_EQ(parsed.used, 19u);
  EXPECT_EQ(vqml_elem_name(parsed.element), vqml_intern("a"));
  vqml_content* const b = vqml_elem_contents(parsed.element);
  EXPECT_EQ(vqml_cont_type(b), kVqmlElement);
  EXPECT_EQ(vqml_elem_name(b), vqml_intern("b"));
  EXPECT_STREQ(vqml_text(vqml_elem_contents(b)), "x");
  vqml_content* const c = vqml_cont_next(b);
  EXPECT_EQ(vqml_elem_name(c), vqml_intern("c"));
  EXPECT_EQ(vqml_elem_contents(c), nullptr);
  EXPECT_EQ(vqml_cont_next(c), nullptr);
  EXPECT_EQ(vqml_cont_next(parsed.element), nullptr);

  Parsed second;
  ParseInto(text.substr(parsed.used), second);
  ASSERT_EQ(second.result, 1);
  EXPECT_EQ(second.used, 4u);
  EXPECT_EQ(vqml_elem_name(second.element), vqml_intern("d"));
}

TEST(Vqml, PassesOverDeclarationCommentsAndBlanksBeforeTheElement) {
  const std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- a comment -->\n  <e>1</e>\n";
  Parsed parsed;
  ParseInto(text, parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_EQ(vqml_elem_name(parsed.element), vqml_intern("e"));
  EXPECT_EQ(parsed.used, text.find("</e>") + 4);
}

TEST(Vqml, NamesAreInternedAndCompareByIdentity) {
  const std::string name = "interned-name";
  EXPECT_EQ(vqml_intern(name.c_str()), vqml_intern("interned-name"));
  EXPECT_NE(vqml_intern("interned-name"), vqml_intern("interned-nam"));
  EXPECT_STREQ(vqml_intern("interned-name"), "interned-name");
  Parsed parsed;
  ParseInto("<unseen-before/>", parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_EQ(vqml_elem_name(parsed.element), vqml_intern("unseen-before"));
}

TEST(Vqml, CharacterDataInPiecesFormsOneWritableTextNode) {
  Parsed parsed;
  ParseInto("<t>a &lt;b&gt; &amp; &#x41;&#66;<![CDATA[ <raw> ]]>\nend</t>", parsed);
  ASSERT_EQ(parsed.result, 1);
  vqml_content* const text = vqml_elem_contents(parsed.element);
  ASSERT_EQ(vqml_cont_type(text), kVqmlText);
  EXPECT_EQ(vqml_cont_next(text), nullptr);
  char* const characters = vqml_text(text);
  EXPECT_STREQ(characters, "a <b> & AB <raw> \nend");
  characters[0] = 'z';
  EXPECT_EQ(vqml_text(text)[0], 'z');
  EXPECT_EQ(vqml_text(parsed.element), nullptr);
  EXPECT_EQ(vqml_elem_name(text), nullptr);
}

TEST(Vqml, TextAroundChildElementsAndCommentsInside) {
  Parsed parsed;
  ParseInto("<p>\n  <q>1</q>\n  <!-- dropped --><r/>tail</p>", parsed);
  ASSERT_EQ(parsed.result, 1);
  vqml_content* node = vqml_elem_contents(parsed.element);
  EXPECT_STREQ(vqml_text(node), "\n  ");
  node = vqml_cont_next(node);
  EXPECT_EQ(vqml_elem_name(node), vqml_intern("q"));
  node = vqml_cont_next(node);
  EXPECT_STREQ(vqml_text(node), "\n  ");
  node = vqml_cont_next(node);
  EXPECT_EQ(vqml_elem_name(node), vqml_intern("r"));
  node = vqml_cont_next(node);
  EXPECT_STREQ(vqml_text(node), "tail");
  EXPECT_EQ(vqml_cont_next(node), nullptr);
}

TEST(Vqml, AttributesAreNotKept) {
  Parsed parsed;
  ParseInto("<a x=\"1\"><b y='2'>t</b></a>", parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_EQ(Printed(parsed.element), "<a><b>t</b></a>");
}

TEST(Vqml, MalformedTruncatedAndHostileTextYieldsNoElement) {
  const char* const texts[] = {
      "",
      "   ",
      "no element",
      "<a>",
      "<a><b></a>",
      "<a></b>",
      "<a>x</a",
      "<<a/>",
      "<a>&undefined;</a>",
      "<a>&#0;</a>",
      "<a>\xC3\x28</a>",
      "<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>",
      " <?xml version=\"1.0\"?><a/>",
      "<!DOCTYPE a [<!ENTITY e \"text\">]><a>&e;</a>",
      "<!DOCTYPE a [<!ENTITY l0 \"ha\"><!ENTITY l1 \"&l0;&l0;&l0;&l0;&l0;&l0;&l0;&l0;\">"
      "<!ENTITY l2 \"&l1;&l1;&l1;&l1;&l1;&l1;&l1;&l1;\">]><a>&l2;</a>",
  };
  for (const char* text : texts) {
    Parsed parsed;
    ParseInto(text, parsed);
    EXPECT_EQ(parsed.result, 0) << text;
    EXPECT_EQ(parsed.element, nullptr) << text;
    EXPECT_EQ(parsed.used, 0u) << text;
  }
}

TEST(Vqml, EveryPrefixOfADocumentShortOfItsEndTagYieldsNoElement) {
  const std::string text = "<?xml version=\"1.0\"?><a><b>1 2</b><!-- c --><c><![CDATA[x]]></c></a>";
  for (std::size_t length = 0; length < text.size(); ++length) {
    Parsed parsed;
    ParseInto(text.substr(0, length), parsed);
    EXPECT_EQ(parsed.result, 0) << length;
  }
  Parsed whole;
  ParseInto(text, whole);
  EXPECT_EQ(whole.result, 1);
}

TEST(Vqml, NestingIsLimitedTo256Levels) {
  auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i)
      text += "<n>";
    for (int i = 0; i < depth; ++i)
      text += "</n>";
    return text;
  };
  Parsed deepest;
  ParseInto(nested(256), deepest);
  EXPECT_EQ(deepest.result, 1);
  Parsed tooDeep;
  ParseInto(nested(257), tooDeep);
  EXPECT_EQ(tooDeep.result, 0);
  Parsed far;
  ParseInto(nested(100000), far);
  EXPECT_EQ(far.result, 0);
}

TEST(Vqml, NullArgumentsAreHarmless) {
  vqml_content* element = reinterpret_cast<vqml_content*>(1);
  const char* cursor = nullptr;
  unsigned long remaining = 4;
  EXPECT_EQ(vqml_parse_element_bounded(vqml_new_parser(), &cursor, &remaining, &element), 0);
  EXPECT_EQ(element, nullptr);
  EXPECT_EQ(vqml_elem_name(nullptr), nullptr);
  EXPECT_EQ(vqml_elem_contents(nullptr), nullptr);
  EXPECT_EQ(vqml_cont_next(nullptr), nullptr);
  EXPECT_EQ(vqml_cont_type(nullptr), -1);
  EXPECT_EQ(vqml_text(nullptr), nullptr);
  EXPECT_EQ(vqml_intern(nullptr), nullptr);
  vqml_free_element(nullptr);
  EXPECT_EQ(Printed(nullptr), "");
}

TEST(Vqml, BuiltTreesPrintWithEscapedText) {
  vqml_content* const text = vqml_new_text_pool("a<b>&c \"q\"", 0);
  vqml_content* const empty = vqml_new_element(vqml_intern("e"), nullptr, nullptr, nullptr);
  vqml_content* const child = vqml_new_element(vqml_intern("c"), nullptr, text, empty);
  vqml_content* const root = vqml_new_element(vqml_intern("r"), nullptr, child, nullptr);
  EXPECT_EQ(Printed(root), "<r><c>a&lt;b&gt;&amp;c \"q\"</c><e/></r>");
  vqml_free_element(root);

  vqml_content* const part = vqml_new_text_pool("abcdef", 3);
  EXPECT_STREQ(vqml_text(part), "abc");
  EXPECT_EQ(vqml_cont_type(part), kVqmlText);
  vqml_free_element(part);
}

TEST(Vqml, PrintedTextParsesBackToTheSameText) {
  vqml_content* const root =
      vqml_new_element(vqml_intern("r"), nullptr, vqml_new_text_pool("x < y && y > z", 0), nullptr);
  const std::string printed = Printed(root);
  vqml_free_element(root);
  Parsed parsed;
  ParseInto(printed, parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_STREQ(vqml_text(vqml_elem_contents(parsed.element)), "x < y && y > z");
}

TEST(Vqml, ThePrinterHandsTheWholeTextToItsCallbackOnce) {
  struct Calls {
    int count = 0;
    std::string text;
  } calls;
  auto callback = [](const char* text, unsigned long length, const void* context) {
    auto* const seen = static_cast<Calls*>(const_cast<void*>(context));
    ++seen->count;
    seen->text.append(text, length);
    return length;
  };
  vqml_printer* const printer = vqml_new_printer(callback, &calls);
  vqml_content* root = nullptr;
  for (int i = 0; i < 1000; ++i)
    root = vqml_new_element(vqml_intern("i"), nullptr, vqml_new_text_pool("1", 0), root);
  root = vqml_new_element(vqml_intern("list"), nullptr, root, nullptr);
  vqml_print_element(printer, root);
  EXPECT_EQ(calls.count, 1);
  EXPECT_EQ(calls.text.size(), 6u + 1000 * 8 + 7);
  vqml_print_element(printer, root);
  EXPECT_EQ(calls.count, 2);
  vqml_free_element(root);
  vqml_free_printer(printer);
}

}  // namespace
