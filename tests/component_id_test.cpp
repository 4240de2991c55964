#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eComponentId.h"
#include "eMultiComponentId.h"

namespace {

using Path = std::vector<unsigned int>;

EComponentId Id(const Path& components) {
  return EComponentId(components);
}

TEST(EComponentId, BuildAndIndex) {
  EComponentId id;
  EXPECT_TRUE(id.IsEmpty());
  EXPECT_EQ(id.GetIdSize(), 0u);
  id.AddMember(1);
  id += 2;
  const EComponentId longer = id + 3;
  EXPECT_EQ(id.GetId(), (Path{1, 2}));
  EXPECT_EQ(longer.GetId(), (Path{1, 2, 3}));
  EXPECT_EQ(longer[2], 3u);
  EXPECT_EQ(longer[3], 0u);
  EXPECT_EQ(longer[1000], 0u);
  Path out;
  longer.GetId(out);
  EXPECT_EQ(out, (Path{1, 2, 3}));
  EComponentId assigned;
  assigned = Path{4, 5};
  EXPECT_EQ(assigned.GetId(), (Path{4, 5}));
  assigned.Copy(longer);
  EXPECT_TRUE(assigned == longer);
  assigned.SetId(Path{9});
  EXPECT_FALSE(assigned == longer);
}

TEST(EComponentId, ShorterOrdersFirstThenComponentWise) {
  EXPECT_TRUE(Id({1, 2}) < Id({1, 1, 1}));
  EXPECT_FALSE(Id({1, 1, 1}) < Id({1, 2}));
  EXPECT_TRUE(Id({1, 2, 0}) < Id({1, 2, 1}));
  EXPECT_FALSE(Id({1, 2}) < Id({1, 2}));
  EXPECT_TRUE(Id({}) < Id({0}));
  EXPECT_TRUE(Id({1, 2}) < (Path{1, 3}));
  EXPECT_TRUE(Id({0xFFFFFFFEu}) < Id({0xFFFFFFFFu}));  // unsigned comparison
}

TEST(EComponentId, MatchOneLevel) {
  const EComponentId id = Id({1, 2, 3});
  EXPECT_EQ(id.IdMatching(2, 1), 3u);
  EXPECT_EQ(id.IdMatching(3, 2), 2u);
  EXPECT_EQ(id.IdMatching(3, 1), 0u);
  EXPECT_EQ(id.IdMatching(3, 3), 1u);
  EXPECT_EQ(id.IdMatching(0, 3), 1u);
  EXPECT_EQ(id.IdMatching(7, 99), 1u);
  EXPECT_EQ(Id({}).IdMatching(0, 0), 1u);
}

TEST(EComponentId, MatchWholeIdentifiers) {
  const EComponentId id = Id({1, 2, 3});
  EXPECT_EQ(id.IdMatching(Id({1, 2})), 3u);
  EXPECT_EQ(id.IdMatching(Id({1, 2, 3})), 2u);
  EXPECT_EQ(id.IdMatching(Id({1, 2, 3, 4})), 1u);
  EXPECT_EQ(id.IdMatching(Id({1, 5})), 0u);
  EXPECT_EQ(id.IdMatching(Id({})), 3u);
  EXPECT_EQ(Id({}).IdMatching(id), 1u);
  EXPECT_EQ(Id({}).IdMatching(Id({})), 2u);
}

TEST(EComponentId, ToStringJoinsWithDots) {
  EXPECT_EQ(Id({7}).ToString(), "7");
  EXPECT_EQ(Id({}).ToString(), "");
  EXPECT_EQ(Id({1, 2, 3}).ToString(), "1.2.3");
  EXPECT_EQ(Id({4294967295u, 0}).ToString(), "4294967295.0");
}

TEST(EComponentId, ArchiveForm) {
  EXPECT_EQ(BytesOf(Id({1, 2, 3})), "403771665 3 1 2 3 ");
  EXPECT_EQ(BytesOf(Id({})), "403771665 0 ");
  EComponentId back = Id({9, 9, 9, 9});
  ReadFrom("403771665 2 4294967295 0 ", back);
  EXPECT_EQ(back.GetId(), (Path{4294967295u, 0}));
}

TEST(EComponentId, WrongSignatureReportsAnotherClassesReader) {
  ExpectSerializeError(
      [] {
        EComponentId id;
        ReadFrom("403771666 0 ", id);
      },
      "x86_64/common/ehal/eComponentId", 235, "EBGPAttribute::SerializeIn");
}

TEST(EComponentId, ReaderEmptiesBeforeTheSignatureCheck) {
  ScopedThrowingSerializeErrors throwing;
  EComponentId id = Id({1, 2});
  EXPECT_THROW(ReadFrom("7 ", id), SerializeErrorThrown);
  EXPECT_TRUE(id.IsEmpty());
}

TEST(EComponentId, EmptyRemovesEveryComponent) {
  EComponentId id = Id({1, 2, 3});
  EXPECT_FALSE(id.IsEmpty());
  id.Empty();
  EXPECT_TRUE(id.IsEmpty());
  EXPECT_EQ(id.GetIdSize(), 0u);
  EXPECT_EQ(id.ToString(), "");
  EXPECT_TRUE(id == EComponentId());
  EXPECT_EQ(BytesOf(id), "403771665 0 ");
  id.Empty();  // emptying the empty identifier changes nothing
  EXPECT_TRUE(id == EComponentId());
}

TEST(EComponentId, WriterNeedsAStoringArchive) {
  ExpectSerializeError(
      [] {
        EArchive archive;
        archive << Id({1});
      },
      "common/include/eArchive", 157, "template<ItemType> SerializeOut(..,vector)");
}

TEST(EMultiComponentId, ConstructionAndAccess) {
  const EMultiComponentId fromVector(Path{1, 2});
  EXPECT_EQ(fromVector.GetId(), (Path{1, 2}));
  EXPECT_EQ(fromVector.GetNumberOfIds(), 0u);
  const EMultiComponentId both(Path{1}, Path{5, 6});
  EXPECT_EQ(both.GetLeaves(), (Path{5, 6}));
  const EMultiComponentId fromId(Id({3, 4}));
  EXPECT_EQ(fromId.GetId(), (Path{3, 4}));
  const EMultiComponentId fromIdAndLeaves(Id({3}), Path{8});
  EXPECT_EQ(fromIdAndLeaves.GetId(), (Path{3}));
  EXPECT_EQ(fromIdAndLeaves.GetLeaves(), (Path{8}));

  EMultiComponentId multi(both);
  EXPECT_TRUE(multi == both);
  EComponentId prefix;
  multi.GetId(prefix);
  EXPECT_EQ(prefix.GetId(), (Path{1}));
  Path leaves;
  multi.GetLeaves(leaves);
  EXPECT_EQ(leaves, (Path{5, 6}));
  multi.SetId(Id({2, 2}));
  multi.SetLeaves(Path{0});
  multi.AddLeaf(0);  // no check on AddLeaf
  EXPECT_EQ(multi.GetNumberOfIds(), 2u);
  EXPECT_FALSE(multi == both);
  multi.Copy(both);
  EXPECT_TRUE(multi == both);
  multi.ClearAllIds();
  EXPECT_TRUE(multi.GetId().empty());
  EXPECT_EQ(multi.GetNumberOfIds(), 0u);
}

TEST(EMultiComponentId, EqualityIsOrdered) {
  EXPECT_FALSE(EMultiComponentId(Path{1}, Path{2, 3}) == EMultiComponentId(Path{1}, Path{3, 2}));
  EXPECT_FALSE(EMultiComponentId(Path{1}, Path{2}) == EMultiComponentId(Path{2}, Path{2}));
}

TEST(EMultiComponentId, GetIdByLeafIndex) {
  const EMultiComponentId multi(Path{1, 2}, Path{3, 4});
  EComponentId id = Id({9});
  EXPECT_TRUE(multi.GetId(id, 1));
  EXPECT_EQ(id.GetId(), (Path{1, 2, 4}));
  EXPECT_FALSE(multi.GetId(id, 2));  // index equal to the number of leaves
  EXPECT_EQ(id.GetId(), (Path{1, 2, 4}));
}

TEST(EMultiComponentId, AddIdWorkedExample) {
  EMultiComponentId multi;
  EXPECT_TRUE(multi.AddId(Id({1, 2, 3})));
  EXPECT_EQ(multi.GetId(), (Path{1, 2}));
  EXPECT_EQ(multi.GetLeaves(), (Path{3}));
  EXPECT_TRUE(multi.AddId(Id({1, 2, 4, 9})));
  EXPECT_EQ(multi.GetLeaves(), (Path{3, 4}));
  EXPECT_FALSE(multi.AddId(Id({1, 3, 1})));
  EXPECT_TRUE(multi.AddId(Id({1, 2})));
  EXPECT_TRUE(multi.AddId(Id({1, 2, 0})));
  EXPECT_TRUE(multi.AddId(Id({1})));        // shorter than the prefix: accepted, nothing added
  EXPECT_TRUE(multi.AddId(Id({1, 2, 3})));  // duplicates are not checked
  EXPECT_EQ(multi.GetId(), (Path{1, 2}));
  EXPECT_EQ(multi.GetLeaves(), (Path{3, 4, 3}));
}

TEST(EMultiComponentId, AddIdToAnEmptyPrefix) {
  EMultiComponentId multi;
  EXPECT_TRUE(multi.AddId(Id({})));
  EXPECT_TRUE(multi.GetId().empty());
  EXPECT_EQ(multi.GetNumberOfIds(), 0u);
  EXPECT_TRUE(multi.AddId(Id({5})));  // the prefix stays empty, the leaf is 5
  EXPECT_TRUE(multi.GetId().empty());
  EXPECT_EQ(multi.GetLeaves(), (Path{5}));
  EMultiComponentId zero;
  EXPECT_TRUE(zero.AddId(Id({7, 0})));
  EXPECT_EQ(zero.GetId(), (Path{7}));
  EXPECT_EQ(zero.GetNumberOfIds(), 0u);
}

TEST(EMultiComponentId, ArchiveForm) {
  const EMultiComponentId multi(Path{1, 2}, Path{3, 4});
  EXPECT_EQ(BytesOf(multi), "403771665 2 1 2 2 3 4 ");
  EXPECT_EQ(BytesOf(EMultiComponentId()), "403771665 0 0 ");
  EMultiComponentId back(Path{9}, Path{9, 9});
  ReadFrom(BytesOf(multi), back);
  EXPECT_TRUE(back == multi);
}

TEST(EMultiComponentId, WrongSignature) {
  ExpectSerializeError(
      [] {
        EMultiComponentId multi;
        ReadFrom("403771664 0 0 ", multi);
      },
      "x86_64/common/ehal/eMultiComponentId", 261, "EMultiComponentId::SerializeIn");
}

}  // namespace
