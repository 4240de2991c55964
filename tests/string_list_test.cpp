#include "eStringList.h"

#include <gtest/gtest.h>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

std::vector<std::string> Items(const EStringList& list) {
  std::vector<std::string> items;
  EStringList::Position position = list.GetHeadPosition();
  while (const char* text = list.GetNext(position))
    items.emplace_back(text);
  return items;
}

TEST(EStringList, AddKeepsOrderAndDuplicates) {
  EStringList list;
  EXPECT_EQ(list.GetCount(), 0u);
  EXPECT_EQ(list.GetHeadItem(), nullptr);
  EXPECT_EQ(list.GetFirst(), nullptr);
  list.Add("b");
  list.Add(std::string("a"));
  list.Add("b");
  EXPECT_EQ(list.GetCount(), 3u);
  EXPECT_STREQ(list.GetHeadItem(), "b");
  EXPECT_EQ(Items(list), (std::vector<std::string>{"b", "a", "b"}));
  EXPECT_EQ(list.GetString(), "bab");
}

TEST(EStringList, PositionsWalkToTheEnd) {
  EStringList list;
  list.Add("x");
  EStringList::Position position = list.GetHeadPosition();
  EXPECT_STREQ(list.GetNext(position), "x");
  EXPECT_TRUE(position == list.GetEndPosition());
  EXPECT_EQ(list.GetNext(position), nullptr);
  EStringList::Position head = list.GetHeadPosition();
  list.Add("y");  // positions stay valid while items are added
  EXPECT_STREQ(list.GetNext(head), "x");
  EXPECT_STREQ(list.GetNext(head), "y");
  EXPECT_EQ(list.GetNext(head), nullptr);
}

TEST(EStringList, CopyEmptyAndAssign) {
  EStringList list;
  list.Add("one");
  list.Add("two");
  EStringList copy(list);
  EXPECT_EQ(Items(copy), Items(list));
  EStringList assigned;
  assigned.Add("old");
  assigned = list;
  assigned = assigned;
  EXPECT_EQ(Items(assigned), (std::vector<std::string>{"one", "two"}));
  assigned.Empty();
  EXPECT_EQ(assigned.GetCount(), 0u);
}

TEST(EStringList, ArchiveForm) {
  EStringList list;
  list.Add("ab");
  list.Add("");
  EXPECT_EQ(BytesOf(list), "286785536 2 2 ab0 ");
  EXPECT_EQ(BytesOf(EStringList()), "286785536 0 ");
}

TEST(EStringList, ReadingAppendsToTheList) {
  EStringList list;
  list.Add("x");
  ReadFrom("286785536 2 2 ab0 ", list);
  EXPECT_EQ(Items(list), (std::vector<std::string>{"x", "ab", ""}));
}

TEST(EStringList, RoundTrip) {
  EStringList list;
  list.Add("with blank");
  list.Add(std::string("nul\0inside", 10));
  list.Add("12 34");
  EStringList back;
  ReadFrom(BytesOf(list), back);
  EXPECT_EQ(Items(back), Items(list));
}

TEST(EStringList, WrongSignatureIsASerializationError) {
  ExpectSerializeError(
      [] {
        EStringList list;
        ReadFrom("286785537 0 ", list);
      },
      "x86_64/common/ehal/eStringList", 122, "EStringList::SerializeIn");
}

}  // namespace
