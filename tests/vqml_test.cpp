// The platform's XML element layer: one element per parse, interned names, text nodes, the
// printer, and refusal of malformed, truncated and hostile documents.
#include "vqml.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

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

TEST(Vqml, AnElementLongerThanManyPiecesOfTheFeedStopsTheCursorAtItsEnd) {
  // The parser is fed in pieces that grow fourfold from 1,024 bytes; the element spans many.
  const std::string comment = "<!--" + std::string(1000, 'c') + "-->";
  const std::string first = "<a>" + std::string(100000, 'x') + "<b/></a>";
  const std::string text = comment + first + "<next/>";
  Parsed parsed;
  ParseInto(text, parsed);
  ASSERT_EQ(parsed.result, 1);
  EXPECT_EQ(parsed.used, comment.size() + first.size());
  EXPECT_EQ(std::strlen(vqml_text(vqml_elem_contents(parsed.element))), 100000u);
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

// ---------------------------------------------------------------------------------------------
// The printer writes only what the parser reads back as the same tree.

struct Print {
  int result = 0;
  std::string text;
};

Print PrintOf(const vqml_content* element) {
  Print print;
  vqml_printer* const printer = vqml_new_printer(&Collect, &print.text);
  print.result = vqml_print_element(printer, element);
  vqml_free_printer(printer);
  return print;
}

// An element "r" holding `text`.
vqml_content* Holding(const std::string& text) {
  return vqml_new_element(vqml_intern("r"), nullptr,
                          vqml_new_text_pool(text.data(), static_cast<unsigned long>(text.size())),
                          nullptr);
}

// True when `document` parses as one element that takes all of it.
bool ParsesWhole(const std::string& document, Parsed& parsed) {
  ParseInto(document, parsed);
  return parsed.result == 1 && parsed.used == document.size();
}

// Prints an element "r" holding `text`. When the printer takes it, it must read back as the same
// text (up to the text's first NUL, where a text ends); when it refuses, the same bytes written
// raw must not parse either. Returns whether the printer took it.
bool PrintsAndReadsBack(const std::string& text) {
  vqml_content* const root = Holding(text);
  const std::string expected = vqml_text(vqml_elem_contents(root));
  const Print print = PrintOf(root);
  vqml_free_element(root);
  if (print.result == 0) {
    EXPECT_EQ(print.text, "");
    Parsed raw;
    EXPECT_FALSE(ParsesWhole("<r>" + text + "</r>", raw));
    return false;
  }
  Parsed parsed;
  EXPECT_TRUE(ParsesWhole(print.text, parsed)) << print.text;
  EXPECT_STREQ(vqml_text(vqml_elem_contents(parsed.element)), expected.c_str());
  return true;
}

TEST(VqmlPrinter, MarkupCharactersAndCarriageReturnsAreEscaped) {
  vqml_content* const root = Holding("a<b>c&d\re\tf\ng\x7fh\xc3\xa9");
  EXPECT_EQ(Printed(root), "<r>a&lt;b&gt;c&amp;d&#13;e\tf\ng\x7fh\xc3\xa9</r>");
  vqml_free_element(root);
  EXPECT_TRUE(PrintsAndReadsBack("\r\n \r"));
}

TEST(VqmlPrinter, EveryByteInATextReadsBackOrIsRefused) {
  std::string refused;
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    if (!PrintsAndReadsBack(std::string("x") + static_cast<char>(byte) + "y")) {
      refused += static_cast<char>(byte);
    }
  }
  // The control characters but tab, line feed and carriage return, and each byte from 0x80 on
  // its own, which is no UTF-8. The zero byte ends the text: "x" reads back.
  std::string expected;
  for (int byte = 1; byte < 0x20; ++byte) {
    if (byte != '\t' && byte != '\n' && byte != '\r') expected += static_cast<char>(byte);
  }
  for (int byte = 0x80; byte < 0x100; ++byte)
    expected += static_cast<char>(byte);
  EXPECT_EQ(refused, expected);
}

TEST(VqmlPrinter, EveryTwoByteSequenceIsDecidedAsTheParserDecidesIt) {
  // A lead byte from 0x80 and any second byte: taken exactly when the parser reads the same bytes
  // written raw (checked inside PrintsAndReadsBack both ways), which is for C2..DF, 80..BF.
  unsigned int taken = 0;
  for (int lead = 0x80; lead < 0x100; ++lead) {
    for (int second = 0; second < 0x100; ++second) {
      const std::string text =
          std::string("x") + static_cast<char>(lead) + static_cast<char>(second) + "y";
      const bool expected = lead >= 0xC2 && lead <= 0xDF && second >= 0x80 && second <= 0xBF;
      const bool printed = PrintsAndReadsBack(text);
      if (printed) ++taken;
      ASSERT_EQ(printed, expected) << lead << " " << second;
    }
  }
  EXPECT_EQ(taken, 30u * 64);
}

TEST(VqmlPrinter, LongerSequencesAtTheBoundsOfWhatXmlAllows) {
  const std::vector<std::string> taken = {"\xe0\xa0\x80", "\xed\x9f\xbf",     "\xee\x80\x80",
                                          "\xef\xbf\xbd", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"};
  for (const std::string& sequence : taken)
    EXPECT_TRUE(PrintsAndReadsBack("x" + sequence + "y")) << sequence;
  const std::vector<std::string> refused = {"\xe0\x9f\xbf",      // overlong
                                            "\xed\xa0\x80",      // a surrogate
                                            "\xef\xbf\xbe",      // U+FFFE
                                            "\xef\xbf\xbf",      // U+FFFF
                                            "\xf0\x8f\xbf\xbf",  // overlong
                                            "\xf4\x90\x80\x80",  // beyond U+10FFFF
                                            "\xf5\x80\x80\x80",  // no such lead byte
                                            "\xe1\x80",          // cut short
                                            "\xff\xfe"};
  for (const std::string& sequence : refused)
    EXPECT_FALSE(PrintsAndReadsBack("x" + sequence + "y")) << sequence;
}

// Prints an empty element named `name`. When the printer takes it, it must read back under the
// same interned name; when it refuses, "<name/>" must not parse as one element of that name.
// Returns whether the printer took it.
bool NamePrintsAndReadsBack(const std::string& name) {
  const char* const interned = vqml_intern(name.c_str());
  vqml_content* const element = vqml_new_element(interned, nullptr, nullptr, nullptr);
  const Print print = PrintOf(element);
  vqml_free_element(element);
  Parsed parsed;
  if (print.result == 0) {
    EXPECT_EQ(print.text, "");
    EXPECT_FALSE(ParsesWhole("<" + name + "/>", parsed) &&
                 vqml_elem_name(parsed.element) == interned);
    return false;
  }
  EXPECT_EQ(print.text, "<" + name + "/>");
  EXPECT_TRUE(ParsesWhole(print.text, parsed));
  EXPECT_EQ(vqml_elem_name(parsed.element), interned);
  return true;
}

TEST(VqmlPrinter, EveryByteInANameReadsBackOrIsRefused) {
  std::string first;
  std::string later;
  for (int byte = 1; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const std::string alone(1, static_cast<char>(byte));
    if (NamePrintsAndReadsBack(alone)) first += alone;
    if (NamePrintsAndReadsBack("a" + alone)) later += alone;
  }
  EXPECT_EQ(first, ":ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(later, "-.0123456789:ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
  EXPECT_FALSE(NamePrintsAndReadsBack(""));  // the zero byte as a name: an empty one
}

TEST(VqmlPrinter, NamesBeyondAsciiAreTakenAsTheParserTakesThem) {
  EXPECT_TRUE(NamePrintsAndReadsBack("\xc3\xa9t\xc3\xa9"));
  EXPECT_TRUE(
      NamePrintsAndReadsBack("a\xc2\xb7"
                             "b"));  // a middle dot may follow the first character
  EXPECT_FALSE(
      NamePrintsAndReadsBack("\xc2\xb7"
                             "b"));  // but not begin a name
  EXPECT_FALSE(NamePrintsAndReadsBack("\xc3\xa9 x=\"1\""));
  EXPECT_FALSE(NamePrintsAndReadsBack("\xc3\xa9/><b"));
  EXPECT_FALSE(NamePrintsAndReadsBack("\xff\xfe"));
  EXPECT_FALSE(NamePrintsAndReadsBack("a b<c"));
  vqml_content* const nameless = vqml_new_element(nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(PrintOf(nameless).result, 0);
  vqml_free_element(nameless);
}

TEST(VqmlPrinter, ARefusalAnywhereInTheTreeRefusesTheWholeTree) {
  vqml_content* const bad =
      vqml_new_element(vqml_intern("b"), nullptr, vqml_new_text_pool("\x01", 0), nullptr);
  vqml_content* const good =
      vqml_new_element(vqml_intern("a"), nullptr, vqml_new_text_pool("1", 0), bad);
  vqml_content* const root = vqml_new_element(vqml_intern("r"), nullptr, good, nullptr);
  int calls = 0;
  vqml_printer* const printer = vqml_new_printer(
      [](const char*, unsigned long length, const void* context) {
        ++*static_cast<int*>(const_cast<void*>(context));
        return length;
      },
      &calls);
  EXPECT_EQ(vqml_print_element(printer, root), 0);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(vqml_print_element(printer, good), 1);  // the root's siblings are not printed
  EXPECT_EQ(calls, 1);
  vqml_free_printer(printer);
  vqml_free_element(root);
}

// `depth` elements "n", each the only content of the one above it.
vqml_content* Nested(unsigned long depth) {
  vqml_content* node = nullptr;
  for (unsigned long i = 0; i < depth; ++i)
    node = vqml_new_element(vqml_intern("n"), nullptr, node, nullptr);
  return node;
}

TEST(VqmlPrinter, NestingIsPrintedAsDeepAsItIsParsed) {
  vqml_content* const deepest = Nested(kVqmlMaxDepth);
  const Print print = PrintOf(deepest);
  vqml_free_element(deepest);
  EXPECT_EQ(print.result, 1);
  Parsed parsed;
  EXPECT_TRUE(ParsesWhole(print.text, parsed));
  vqml_content* const tooDeep = Nested(kVqmlMaxDepth + 1);
  EXPECT_EQ(PrintOf(tooDeep).result, 0);
  vqml_free_element(tooDeep);
}

TEST(VqmlPrinter, AMillionLevelsPrintAndFreeWithoutRecursion) {
  // Refused for its depth, and freed, without a frame per level: no stack overflows, in the
  // sanitizer build either. A million siblings free in a loop as well.
  vqml_content* const deep = Nested(1000000);
  EXPECT_EQ(PrintOf(deep).result, 0);
  vqml_free_element(deep);
  vqml_content* wide = nullptr;
  for (int i = 0; i < 1000000; ++i)
    wide = vqml_new_element(vqml_intern("n"), nullptr, Nested(2), wide);
  vqml_content* const root = vqml_new_element(vqml_intern("r"), nullptr, wide, nullptr);
  const Print print = PrintOf(root);
  EXPECT_EQ(print.result, 1);
  EXPECT_EQ(print.text.size(), 3u + 1000000 * 18 + 4);  // "<n><n><n/></n></n>" each
  vqml_free_element(root);
}

}  // namespace
