#include "ePRBS.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

using eHal::EPacket;
using eHal::EPRBS;

EPacket MakePacket(unsigned long timestamp, const std::string& bytes) {
  EPacket packet;
  packet.SetPacketTimestamp(timestamp);
  packet.SetPacketData(EBlob(bytes.data(), static_cast<unsigned int>(bytes.size())));
  return packet;
}

// A reply to a range request with two packets and every number set.
EPRBS FilledRecord(bool direction) {
  EPRBS prbs(direction);
  prbs.SetRequestType(EPRBS::kPRBSGetCountPacketsFromStart);
  prbs.SetReturnCode(EPRBS::kNotOwner);
  prbs.SetExtraId(5);
  prbs.SetClientMessageId(9);
  prbs.SetBufferSize(3);
  prbs.SetPacketCount(2);
  prbs.SetStart(1);
  prbs.SetPackets({MakePacket(100, "\xAB"), MakePacket(5000000000ul, "")});
  return prbs;
}

const std::string kFilledBytes =
    "288572248 9 5 6 2 3 2 1 2 "
    "1123140 100 287454021 1 \xAB"
    "1123140 5000000000 287454021 0 ";

TEST(EPacket, DefaultsCopyAndCompare) {
  EPacket packet;
  EXPECT_EQ(packet.GetPacketTimestamp(), 0u);
  EXPECT_EQ(packet.GetPacketData().GetSize(), 0u);
  EPacket filled = MakePacket(7, "ab");
  EXPECT_FALSE(packet == filled);
  EXPECT_TRUE(packet != filled);
  EPacket copy(filled);
  EXPECT_TRUE(copy == filled);
  EXPECT_EQ(copy.GetPacketTimestamp(), 7u);
  EXPECT_EQ(copy.GetPacketData(), EBlob("ab", 2));
  copy = copy;
  EXPECT_TRUE(copy == filled);
  EPacket other = MakePacket(7, "ac");
  EXPECT_FALSE(other == filled);  // same timestamp, different bytes
  other.Swap(copy);
  EXPECT_EQ(other.GetPacketData(), EBlob("ab", 2));
  EXPECT_EQ(copy.GetPacketData(), EBlob("ac", 2));
  copy.Empty();
  EXPECT_TRUE(copy == packet);
}

TEST(EPacket, GetPacketDataReturnsACopy) {
  EPacket packet = MakePacket(1, "xy");
  EBlob data = packet.GetPacketData();
  data.SetData("zz", 2);
  EXPECT_EQ(packet.GetPacketData(), EBlob("xy", 2));
}

TEST(EPacket, ArchiveBytesAndRoundTrip) {
  EXPECT_EQ(BytesOf(EPacket()), "1123140 0 287454021 0 ");
  const EPacket packet = MakePacket(18446744073709551615ul, std::string("\0\n", 2));
  EXPECT_EQ(BytesOf(packet), std::string("1123140 18446744073709551615 287454021 2 \0\n", 43));
  EPacket read = MakePacket(3, "old");
  ReadFrom(BytesOf(packet), read);
  EXPECT_TRUE(read == packet);
}

TEST(EPacket, WrongSignatureEndsTheProcess) {
  ExpectSerializeError(
      [] {
        EPacket packet;
        ReadFrom("1123141 0 287454021 0 ", packet);
      },
      "x86_64/common/ehal/ePacket", 108, "eHal::EPacket::SerializeIn");
}

TEST(EPRBS, ConstructorSetsDirectionOnAnEmptiedRecord) {
  for (bool direction : {true, false}) {
    const EPRBS prbs(direction);
    EXPECT_EQ(prbs.GetRequestType(), EPRBS::kInitial);
    EXPECT_EQ(prbs.GetReturnCode(), EPRBS::kSuccess);
    EXPECT_EQ(prbs.GetExtraId(), 0u);
    EXPECT_EQ(prbs.GetClientMessageId(), 0u);
    EXPECT_EQ(prbs.GetBufferSize(), 0u);
    EXPECT_EQ(prbs.GetPacketCount(), 0u);
    EXPECT_EQ(prbs.GetStart(), 0u);
    EXPECT_TRUE(prbs.GetPackets().empty());
    EXPECT_EQ(prbs.GetDirection(), direction);
  }
}

TEST(EPRBS, EmptyClearsEverythingIncludingTheDirection) {
  EPRBS prbs = FilledRecord(true);
  prbs.Empty();
  EXPECT_TRUE(prbs.IsEqual(EPRBS(false)));
  EXPECT_FALSE(prbs.GetDirection());
  EXPECT_EQ(prbs.ToStringFull(),
            "State: Initial, Return Code: kSuccess, Extra Id: 0, Client Message Id: 0, Buffer "
            "Size: 0, Start: 0, Count: 0, PacketData: 0");
}

TEST(EPRBS, SettersAndGetters) {
  EPRBS prbs(false);
  prbs.SetDirection(true);
  EXPECT_TRUE(prbs.GetDirection());
  const EPRBS filled = FilledRecord(false);
  EXPECT_EQ(filled.GetRequestType(), EPRBS::kPRBSGetCountPacketsFromStart);
  EXPECT_EQ(filled.GetReturnCode(), EPRBS::kNotOwner);
  EXPECT_EQ(filled.GetExtraId(), 5u);
  EXPECT_EQ(filled.GetClientMessageId(), 9u);
  EXPECT_EQ(filled.GetBufferSize(), 3u);
  EXPECT_EQ(filled.GetPacketCount(), 2u);
  EXPECT_EQ(filled.GetStart(), 1u);
  ASSERT_EQ(filled.GetPackets().size(), 2u);
  EXPECT_TRUE(filled.GetPackets()[0] == MakePacket(100, "\xAB"));
  EXPECT_TRUE(filled.GetPackets()[1] == MakePacket(5000000000ul, ""));
}

TEST(EPRBS, CopyAssignSwapAndIsEqual) {
  const EPRBS filled = FilledRecord(true);
  EPRBS copy(filled);
  EXPECT_TRUE(copy.IsEqual(filled));
  EXPECT_TRUE(copy.GetDirection());
  EPRBS assigned(false);
  assigned = filled;
  EXPECT_TRUE(assigned.IsEqual(filled));
  assigned.Copy(assigned);
  EXPECT_TRUE(assigned.IsEqual(filled));

  EPRBS empty(false);
  const EPacket* storage = assigned.GetPackets().data();
  empty.Swap(assigned);
  EXPECT_TRUE(empty.IsEqual(filled));
  EXPECT_EQ(empty.GetPackets().data(), storage);  // the storage moved, nothing was copied
  EXPECT_TRUE(assigned.IsEqual(EPRBS(false)));

  // Each field, and each packet, takes part in the comparison.
  const std::vector<std::function<void(EPRBS&)>> changes = {
      [](EPRBS& p) { p.SetRequestType(EPRBS::kPRBSGetAllPackets); },
      [](EPRBS& p) { p.SetReturnCode(EPRBS::kFail); },
      [](EPRBS& p) { p.SetExtraId(6); },
      [](EPRBS& p) { p.SetClientMessageId(10); },
      [](EPRBS& p) { p.SetBufferSize(4); },
      [](EPRBS& p) { p.SetPacketCount(3); },
      [](EPRBS& p) { p.SetStart(2); },
      [](EPRBS& p) { p.SetPackets({MakePacket(100, "\xAB")}); },
      [](EPRBS& p) {
        p.SetPackets({MakePacket(100, "\xAB"), MakePacket(5000000001ul, "")});
      },
      [](EPRBS& p) { p.SetDirection(false); },
  };
  for (const auto& change : changes) {
    EPRBS changed(filled);
    change(changed);
    EXPECT_FALSE(changed.IsEqual(filled)) << changed.ToStringFull();
  }
}

TEST(EPRBS, ArchiveBytesOfAFilledAndADefaultRecord) {
  EXPECT_EQ(BytesOf(FilledRecord(true)), kFilledBytes);
  EXPECT_EQ(BytesOf(EPRBS(true)), "288572248 0 0 0 0 0 0 0 0 ");
}

TEST(EPRBS, RoundTripKeepsTheReceiversDirection) {
  const EPRBS sent = FilledRecord(true);
  EPRBS same(true);
  ReadFrom(BytesOf(sent), same);
  EXPECT_TRUE(same.IsEqual(sent));
  // Every archived field matches, yet the direction comes from the receiver's constructor.
  EPRBS other(false);
  ReadFrom(BytesOf(sent), other);
  EXPECT_FALSE(other.IsEqual(sent));
  EXPECT_FALSE(other.GetDirection());
  other.SetDirection(true);
  EXPECT_TRUE(other.IsEqual(sent));
}

TEST(EPRBS, UnknownEnumerationValuesTravelUnchanged) {
  EPRBS prbs(false);
  prbs.SetRequestType(static_cast<EPRBS::eRequestType>(4000000000u));
  prbs.SetReturnCode(static_cast<EPRBS::eReturnCode>(77));
  EXPECT_EQ(BytesOf(prbs), "288572248 0 0 4000000000 77 0 0 0 0 ");
  EPRBS read(false);
  ReadFrom(BytesOf(prbs), read);
  EXPECT_EQ(static_cast<unsigned int>(read.GetRequestType()), 4000000000u);
  EXPECT_EQ(static_cast<unsigned int>(read.GetReturnCode()), 77u);
  EXPECT_STREQ(read.RequestTypeToString(), "Unknown");
  EXPECT_STREQ(read.ReturnCodeToString(), "Unknown");
}

TEST(EPRBS, OlderLayoutsKeepTheMissingIds) {
  EPRBS prefilled = FilledRecord(false);
  prefilled.SetExtraId(41);
  prefilled.SetClientMessageId(42);

  EPRBS withoutClientId(prefilled);
  ReadFrom("288572247 8 3 1 0 0 0 0 ", withoutClientId);
  EXPECT_EQ(withoutClientId.GetClientMessageId(), 42u);
  EXPECT_EQ(withoutClientId.GetExtraId(), 8u);
  EXPECT_EQ(withoutClientId.GetRequestType(), EPRBS::kPRBSStartCapture);
  EXPECT_EQ(withoutClientId.GetReturnCode(), EPRBS::kFail);
  EXPECT_TRUE(withoutClientId.GetPackets().empty());  // the old packets are gone

  EPRBS withoutIds(prefilled);
  ReadFrom("288572246 1 0 4096 0 0 1 1123140 9 287454021 1 z", withoutIds);
  EXPECT_EQ(withoutIds.GetClientMessageId(), 42u);
  EXPECT_EQ(withoutIds.GetExtraId(), 41u);
  EXPECT_EQ(withoutIds.GetRequestType(), EPRBS::kPRBSConfigure);
  EXPECT_EQ(withoutIds.GetReturnCode(), EPRBS::kSuccess);
  EXPECT_EQ(withoutIds.GetBufferSize(), 4096u);
  EXPECT_EQ(withoutIds.GetPacketCount(), 0u);
  EXPECT_EQ(withoutIds.GetStart(), 0u);
  ASSERT_EQ(withoutIds.GetPackets().size(), 1u);
  EXPECT_TRUE(withoutIds.GetPackets()[0] == MakePacket(9, "z"));
  EXPECT_FALSE(withoutIds.GetDirection());
}

TEST(EPRBS, WrongSignatureEndsTheProcess) {
  for (const char* bytes : {"288572249 0 0 0 0 0 0 0 0 ", "288572245 0 0 0 0 0 0 0 ", ""}) {
    ExpectSerializeError(
        [bytes] {
          EPRBS prbs(true);
          ReadFrom(bytes, prbs);
        },
        "x86_64/common/ehal/ePRBS", 160, "eHal::EPRBS::SerializeIn");
  }
}

TEST(EPRBS, AHugePacketCountDoesNotAllocateAheadOfTheData) {
  // Under the address sanitizer a reservation for four billion packets would abort the run.
  ScopedThrowingSerializeErrors throwing;
  EPRBS prbs(false);
  try {
    ReadFrom("288572248 0 0 7 0 0 0 0 4000000000 1123140 1 287454021 0 ", prbs);
    FAIL() << "the missing second packet must be reported";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/ePacket");
    EXPECT_EQ(error.line, 108);
  }
}

struct ValidityRow {
  const char* name;
  std::function<void(EPRBS&)> fill;
  bool validOnRequest;  // direction true
  bool validOnReply;    // direction false
};

void SetType(EPRBS& prbs, unsigned int type) {
  prbs.SetRequestType(static_cast<EPRBS::eRequestType>(type));
}

std::vector<ValidityRow> ValidityRows() {
  const std::vector<EPacket> onePacket = {MakePacket(1, "p")};
  std::vector<ValidityRow> rows = {
      {"initial, all zero and clean", [](EPRBS&) {}, true, true},
      {"initial, return code", [](EPRBS& p) { p.SetReturnCode(EPRBS::kFail); }, false, false},
      {"initial, buffer size", [](EPRBS& p) { p.SetBufferSize(1); }, false, false},
      {"initial, start", [](EPRBS& p) { p.SetStart(1); }, false, false},
      {"initial, count", [](EPRBS& p) { p.SetPacketCount(1); }, false, false},
      {"initial, packet", [onePacket](EPRBS& p) { p.SetPackets(onePacket); }, false, false},
      {"configure 4096",
       [](EPRBS& p) {
         SetType(p, 1);
         p.SetBufferSize(4096);
       },
       true, true},
      {"configure 4096, fail",
       [](EPRBS& p) {
         SetType(p, 1);
         p.SetBufferSize(4096);
         p.SetReturnCode(EPRBS::kFail);
       },
       false, true},
      {"configure, no buffer", [](EPRBS& p) { SetType(p, 1); }, false, false},
      {"configure, start",
       [](EPRBS& p) {
         SetType(p, 1);
         p.SetBufferSize(4096);
         p.SetStart(1);
       },
       false, false},
      {"configure, count",
       [](EPRBS& p) {
         SetType(p, 1);
         p.SetBufferSize(4096);
         p.SetPacketCount(1);
       },
       false, false},
      {"configure, packet",
       [onePacket](EPRBS& p) {
         SetType(p, 1);
         p.SetBufferSize(4096);
         p.SetPackets(onePacket);
       },
       false, false},
      {"from start 10, count 5",
       [](EPRBS& p) {
         SetType(p, 6);
         p.SetStart(10);
         p.SetPacketCount(5);
       },
       true, true},
      {"from start, one packet",
       [onePacket](EPRBS& p) {
         SetType(p, 6);
         p.SetStart(10);
         p.SetPacketCount(5);
         p.SetPackets(onePacket);
       },
       false, true},
      {"from start, five packets",
       [](EPRBS& p) {
         SetType(p, 6);
         p.SetStart(10);
         p.SetPacketCount(5);
         p.SetPackets(std::vector<EPacket>(5, MakePacket(2, "q")));
       },
       false, true},
      {"from start, fail",
       [](EPRBS& p) {
         SetType(p, 6);
         p.SetReturnCode(EPRBS::kInvalidArgs);
       },
       false, true},
      {"from start, buffer size",
       [](EPRBS& p) {
         SetType(p, 6);
         p.SetBufferSize(1);
       },
       false, false},
      {"all packets", [](EPRBS& p) { SetType(p, 7); }, true, true},
      {"all packets, packet",
       [onePacket](EPRBS& p) {
         SetType(p, 7);
         p.SetPackets(onePacket);
       },
       false, true},
      {"all packets, fail",
       [](EPRBS& p) {
         SetType(p, 7);
         p.SetReturnCode(EPRBS::kNotPrbsMode);
       },
       false, true},
      {"all packets, start",
       [](EPRBS& p) {
         SetType(p, 7);
         p.SetStart(1);
       },
       false, false},
      {"all packets, count",
       [](EPRBS& p) {
         SetType(p, 7);
         p.SetPacketCount(1);
       },
       false, false},
      {"all packets, buffer",
       [](EPRBS& p) {
         SetType(p, 7);
         p.SetBufferSize(1);
       },
       false, false},
      {"type 9", [](EPRBS& p) { SetType(p, 9); }, false, false},
      {"type 4294967295", [](EPRBS& p) { SetType(p, 4294967295u); }, false, false},
  };
  // Un-configure, start, stop, reset and get-packet-count share one rule; the packet count of
  // a get-packet-count record must be 0 on both sides too.
  for (unsigned int type : {2u, 3u, 4u, 5u, 8u}) {
    rows.push_back({"plain command", [type](EPRBS& p) { SetType(p, type); }, true, true});
    rows.push_back({"plain command, fail",
                    [type](EPRBS& p) {
                      SetType(p, type);
                      p.SetReturnCode(EPRBS::kFail);
                    },
                    false, true});
    rows.push_back({"plain command, start",
                    [type](EPRBS& p) {
                      SetType(p, type);
                      p.SetStart(1);
                    },
                    false, false});
    rows.push_back({"plain command, buffer",
                    [type](EPRBS& p) {
                      SetType(p, type);
                      p.SetBufferSize(1);
                    },
                    false, false});
    rows.push_back({"plain command, count 3",
                    [type](EPRBS& p) {
                      SetType(p, type);
                      p.SetPacketCount(3);
                    },
                    false, false});
    rows.push_back({"plain command, packet",
                    [type, onePacket](EPRBS& p) {
                      SetType(p, type);
                      p.SetPackets(onePacket);
                    },
                    false, false});
  }
  return rows;
}

TEST(EPRBS, ValidityOnBothSides) {
  for (const ValidityRow& row : ValidityRows()) {
    for (bool direction : {true, false}) {
      EPRBS prbs(direction);
      row.fill(prbs);
      const bool expected = direction ? row.validOnRequest : row.validOnReply;
      EXPECT_EQ(prbs.IsValid(false), expected)
          << row.name << ", direction " << direction << ": " << prbs.ToStringFull();
      if (expected) {
        EXPECT_TRUE(prbs.IsValid(true)) << row.name;
      } else {
        try {
          prbs.IsValid(true);
          ADD_FAILURE() << row.name << " did not throw";
        } catch (const std::runtime_error& error) {
          EXPECT_STREQ(error.what(), "Invalid State of PRBS class");
        }
      }
    }
  }
}

TEST(EPRBS, TextFormsOfEveryRequestType) {
  const char* const head = "Return Code: kNotOwner, Extra Id: 5, Client Message Id: 9";
  const std::vector<std::pair<unsigned int, std::string>> expected = {
      {0, "State: Initial, "},
      {1, "State: kPRBSConfigure, "},
      {2, "State: kPRBSUnConfigure, "},
      {3, "State: kPRBSStartCapture, "},
      {4, "State: kPRBSStopCapture, "},
      {5, "State: kPRBSResetCapture, "},
      {6, "State: kPRBSGetCountPacketsFromStart, "},
      {7, "State: kPRBSGetAllPackets, "},
      {8, "State: kPRBSGetPacketCount, "},
      {9, "State: Unknown, "},
  };
  const std::vector<std::string> tails = {"",
                                          ", Buffer Size: 3",
                                          "",
                                          "",
                                          "",
                                          "",
                                          ", Start: 1, Count: 2, PacketData: 2",
                                          ", PacketData: 2",
                                          ", Count: 2",
                                          ""};
  for (const auto& [type, start] : expected) {
    EPRBS prbs = FilledRecord(true);
    SetType(prbs, type);
    EXPECT_EQ(prbs.ToString(), start + head + tails[type]);
    EXPECT_EQ(prbs.ToStringFull(),
              start + head + ", Buffer Size: 3, Start: 1, Count: 2, PacketData: 2");
  }
}

TEST(EPRBS, GetPacketCountTextHasNoStart) {
  EPRBS prbs(false);
  prbs.SetRequestType(EPRBS::kPRBSGetPacketCount);
  prbs.SetPacketCount(3);
  prbs.SetStart(4);
  EXPECT_EQ(prbs.ToString(),
            "State: kPRBSGetPacketCount, Return Code: kSuccess, Extra Id: 0, Client Message Id: "
            "0, Count: 3");
  // The packet figure is the length of the list, not the packet count field.
  prbs.SetPackets({MakePacket(1, "a")});
  prbs.SetRequestType(EPRBS::kPRBSGetAllPackets);
  EXPECT_EQ(prbs.ToString(),
            "State: kPRBSGetAllPackets, Return Code: kSuccess, Extra Id: 0, Client Message Id: "
            "0, PacketData: 1");
}

TEST(EPRBS, ReturnCodeTexts) {
  const char* const texts[] = {"kSuccess",     "kFail",        "kNotOwner",
                               "kNotPrbsMode", "kInvalidArgs", "Unknown"};
  for (unsigned int code = 0; code < 6; ++code) {
    EPRBS prbs(true);
    prbs.SetReturnCode(static_cast<EPRBS::eReturnCode>(code));
    EXPECT_STREQ(prbs.ReturnCodeToString(), texts[code]);
  }
}

}  // namespace
