#include "eMacSec.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"

namespace {

using eHal::EMacSec;
using Association = eHal::EMacSec::ESecureAssociation;

EBlob Bytes(const std::string& bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

const std::string kSCI = "\x01\x02\x03\x04\x05\x06\x07\x08";
const std::string kSAK(16, 'k');

Association ValidAssociation() {
  return Association(Bytes(kSCI), 3, Bytes(kSAK));
}

EMacSec SetTable(EMacSec::eTableId table, const std::vector<Association>& entries) {
  EMacSec macSec;
  macSec.SetRequestType(EMacSec::kMacSecSetTable);
  macSec.SetTableId(table);
  macSec.SetSATable(entries);
  return macSec;
}

EMacSec FilledRecord() {
  EMacSec macSec = SetTable(EMacSec::kTableRx, {ValidAssociation()});
  macSec.SetReturnCode(EMacSec::kFail);
  macSec.SetClientMessageId(77);
  macSec.SetConfOff(30);
  return macSec;
}

const std::string kFilledBytes =
    "326468162 30 2 1 77 2 1 287454021 8 " + kSCI + "3 287454021 16 " + kSAK;

TEST(ESecureAssociation, ConstructionAccessorsAndEquality) {
  const Association empty;
  EXPECT_EQ(empty.GetSCI().GetSize(), 0u);
  EXPECT_EQ(empty.GetAN(), 0u);
  EXPECT_EQ(empty.GetSAK().GetSize(), 0u);
  const Association valid = ValidAssociation();
  EXPECT_EQ(valid.GetSCI(), Bytes(kSCI));
  EXPECT_EQ(valid.GetAN(), 3u);
  EXPECT_EQ(valid.GetSAK(), Bytes(kSAK));
  Association copy(valid);
  EXPECT_TRUE(copy == valid);
  copy.SetAN(2);
  EXPECT_FALSE(copy == valid);
  copy.SetAN(3);
  copy.SetSAK(Bytes(std::string(16, 'j')));  // the key is compared like any other field
  EXPECT_TRUE(copy != valid);
  copy.SetSAK(Bytes(kSAK));
  copy.SetSCI(Bytes("\x01\x02\x03\x04\x05\x06\x07\x09"));
  EXPECT_FALSE(copy == valid);
}

TEST(ESecureAssociation, Validity) {
  EXPECT_TRUE(ValidAssociation().IsValid());
  EXPECT_FALSE(Association().IsValid());
  EXPECT_TRUE(Association(Bytes(kSCI), 0, Bytes(kSAK)).IsValid());
  EXPECT_FALSE(Association(Bytes(kSCI), 4, Bytes(kSAK)).IsValid());
  EXPECT_FALSE(Association(Bytes(kSCI), 3, Bytes(std::string(32, 'k'))).IsValid());
  EXPECT_FALSE(Association(Bytes(kSCI), 3, Bytes(std::string(15, 'k'))).IsValid());
  EXPECT_FALSE(Association(Bytes(kSCI + "x"), 3, Bytes(kSAK)).IsValid());
  EXPECT_FALSE(Association(Bytes("1234567"), 3, Bytes(kSAK)).IsValid());
}

TEST(ESecureAssociation, ArchiveHasNoSignatureOfItsOwn) {
  EXPECT_EQ(BytesOf(Association()), "287454021 0 0 287454021 0 ");
  EXPECT_EQ(BytesOf(ValidAssociation()), "287454021 8 " + kSCI + "3 287454021 16 " + kSAK);
  // Any lengths travel.
  const Association odd(Bytes("abc"), 200, Bytes(std::string(32, 'z')));
  Association read = ValidAssociation();
  ReadFrom(BytesOf(odd), read);
  EXPECT_TRUE(read == odd);
}

TEST(EMacSec, Defaults) {
  const EMacSec macSec;
  EXPECT_EQ(macSec.GetRequestType(), EMacSec::kMacSecInvalid);
  EXPECT_EQ(macSec.GetReturnCode(), EMacSec::kSuccess);
  EXPECT_EQ(macSec.GetClientMessageId(), 0u);
  EXPECT_EQ(macSec.GetTableId(), EMacSec::kTableInvalid);
  EXPECT_TRUE(macSec.GetSATable().empty());
  EXPECT_EQ(macSec.GetConfOff(), 0u);
  EXPECT_EQ(BytesOf(macSec), "326468162 0 0 0 0 0 0 ");
}

TEST(EMacSec, EmptyCopySwapAndEquality) {
  const EMacSec filled = FilledRecord();
  EXPECT_EQ(filled.GetConfOff(), 30u);
  EXPECT_EQ(filled.GetClientMessageId(), 77u);
  EXPECT_EQ(filled.GetReturnCode(), EMacSec::kFail);
  EXPECT_EQ(filled.GetTableId(), EMacSec::kTableRx);
  EXPECT_EQ(filled.GetRequestType(), EMacSec::kMacSecSetTable);
  EXPECT_EQ(filled.GetSATable(), std::vector<Association>{ValidAssociation()});

  EMacSec copy(filled);
  EXPECT_TRUE(copy == filled);
  EMacSec assigned;
  assigned = filled;
  EXPECT_TRUE(assigned.IsEqual(filled));
  assigned.Copy(assigned);
  EXPECT_TRUE(assigned.IsEqual(filled));

  EMacSec other;
  other.Swap(assigned);
  EXPECT_TRUE(other.IsEqual(filled));
  EXPECT_TRUE(assigned.IsEqual(EMacSec()));

  copy.ClearSATable();
  EXPECT_TRUE(copy.GetSATable().empty());
  EXPECT_FALSE(copy == filled);
  copy.Empty();
  EXPECT_TRUE(copy == EMacSec());

  const std::vector<std::function<void(EMacSec&)>> changes = {
      [](EMacSec& m) { m.SetRequestType(EMacSec::kMacSecGetTable); },
      [](EMacSec& m) { m.SetReturnCode(EMacSec::kSuccess); },
      [](EMacSec& m) { m.SetClientMessageId(78); },
      [](EMacSec& m) { m.SetTableId(EMacSec::kTableTx); },
      [](EMacSec& m) { m.SetConfOff(31); },
      [](EMacSec& m) {
        m.SetSATable({ValidAssociation(), ValidAssociation()});
      },
      [](EMacSec& m) { m.SetSATable({Association()}); },
  };
  for (const auto& change : changes) {
    EMacSec changed(filled);
    change(changed);
    EXPECT_FALSE(changed.IsEqual(filled)) << changed.ToStringFull();
  }
}

TEST(EMacSec, IsEqualWithItselfEvenWhenUnusual) {
  EMacSec odd;
  odd.SetRequestType(static_cast<EMacSec::eRequestType>(99));
  odd.SetTableId(static_cast<EMacSec::eTableId>(4000000000u));
  odd.SetSATable({Association(Bytes("x"), 250, EBlob())});
  EXPECT_TRUE(odd.IsEqual(odd));
  EXPECT_TRUE(odd == odd);
}

TEST(EMacSec, ArchiveBytesAndRoundTrip) {
  EXPECT_EQ(BytesOf(FilledRecord()), kFilledBytes);
  EMacSec read;
  read.SetSATable({Association(), Association()});
  ReadFrom(kFilledBytes, read);
  EXPECT_TRUE(read == FilledRecord());
}

TEST(EMacSec, TableIdIsWrittenSignedAndReadUnsigned) {
  EMacSec macSec;
  macSec.SetTableId(static_cast<EMacSec::eTableId>(4294967295u));
  EXPECT_EQ(BytesOf(macSec), "326468162 0 0 0 0 -1 0 ");
  EMacSec read;
  ReadFrom("326468162 0 0 0 0 4294967295 0 ", read);
  EXPECT_EQ(static_cast<unsigned int>(read.GetTableId()), 4294967295u);
  EXPECT_STREQ(read.TableIdToString(), "Unknown");
}

TEST(EMacSec, OlderLayoutKeepsTheOffset) {
  EMacSec read = FilledRecord();
  read.SetConfOff(12);
  ReadFrom("326468161 1 0 5 1 0 ", read);
  EXPECT_EQ(read.GetConfOff(), 12u);
  EXPECT_EQ(read.GetRequestType(), EMacSec::kMacSecGetTable);
  EXPECT_EQ(read.GetReturnCode(), EMacSec::kSuccess);
  EXPECT_EQ(read.GetClientMessageId(), 5u);
  EXPECT_EQ(read.GetTableId(), EMacSec::kTableTx);
  EXPECT_TRUE(read.GetSATable().empty());
}

TEST(EMacSec, WrongSignatureEndsTheProcess) {
  for (const char* bytes : {"326468163 0 0 0 0 0 0 ", "326468160 0 0 0 0 0 ", "x"}) {
    ExpectSerializeError(
        [bytes] {
          EMacSec macSec;
          ReadFrom(bytes, macSec);
        },
        "x86_64/common/ehal/eMacSec", 137, "eHal::EMacSec::SerializeIn");
  }
}

TEST(EMacSec, Validity) {
  struct Row {
    const char* name;
    EMacSec record;
    bool valid;
  };
  EMacSec getTx;
  getTx.SetRequestType(EMacSec::kMacSecGetTable);
  getTx.SetTableId(EMacSec::kTableTx);
  EMacSec getRxFailed = getTx;
  getRxFailed.SetTableId(EMacSec::kTableRx);
  getRxFailed.SetReturnCode(EMacSec::kFail);
  getRxFailed.SetConfOff(200);
  getRxFailed.SetClientMessageId(9);
  EMacSec getWithEntry = getTx;
  getWithEntry.SetSATable({ValidAssociation()});
  EMacSec getNoTable = getTx;
  getNoTable.SetTableId(EMacSec::kTableInvalid);
  EMacSec setNoTable = SetTable(EMacSec::kTableInvalid, {ValidAssociation()});
  EMacSec setTable3 = SetTable(static_cast<EMacSec::eTableId>(3), {});
  EMacSec invalidRequest = SetTable(EMacSec::kTableTx, {});
  invalidRequest.SetRequestType(EMacSec::kMacSecInvalid);
  EMacSec unknownRequest = invalidRequest;
  unknownRequest.SetRequestType(static_cast<EMacSec::eRequestType>(3));
  const Association an4(Bytes(kSCI), 4, Bytes(kSAK));
  const Association longKey(Bytes(kSCI), 3, Bytes(std::string(32, 'k')));
  const std::vector<Row> rows = {
      {"get, transmit, empty", getTx, true},
      {"get, receive, failure code and offset ignored", getRxFailed, true},
      {"get with one entry", getWithEntry, false},
      {"get, table 0", getNoTable, false},
      {"set, table 0", setNoTable, false},
      {"set, table 3", setTable3, false},
      {"set, transmit, one valid", SetTable(EMacSec::kTableTx, {ValidAssociation()}), true},
      {"set, receive, empty", SetTable(EMacSec::kTableRx, {}), true},
      {"set, AN 4", SetTable(EMacSec::kTableTx, {an4}), false},
      {"set, 32-byte key", SetTable(EMacSec::kTableTx, {longKey}), false},
      {"set, one of two invalid", SetTable(EMacSec::kTableRx, {ValidAssociation(), an4}), false},
      {"invalid request", invalidRequest, false},
      {"unknown request", unknownRequest, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.record.IsValid(false), row.valid) << row.name;
    if (row.valid) {
      EXPECT_TRUE(row.record.IsValid(true)) << row.name;
      continue;
    }
    try {
      row.record.IsValid(true);
      ADD_FAILURE() << row.name << " did not throw";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "invalid EMacSec message state") << row.name;
    }
  }
}

TEST(EMacSec, EnumerationTexts) {
  EMacSec macSec;
  const char* const requests[] = {"kMacSecInvalid", "kMacSecGetTable", "kMacSecSetTable",
                                  "Unknown"};
  const char* const returns[] = {"kSuccess", "kFail", "Unknown", "Unknown"};
  const char* const tables[] = {"kTableInvalid", "kTableTx", "kTableRx", "Unknown"};
  for (unsigned int value = 0; value < 4; ++value) {
    macSec.SetRequestType(static_cast<EMacSec::eRequestType>(value));
    macSec.SetReturnCode(static_cast<EMacSec::eReturnCode>(value));
    macSec.SetTableId(static_cast<EMacSec::eTableId>(value));
    EXPECT_STREQ(macSec.RequestTypeToString(), requests[value]);
    EXPECT_STREQ(macSec.ReturnCodeToString(), returns[value]);
    EXPECT_STREQ(macSec.TableIdToString(), tables[value]);
  }
}

TEST(EMacSec, TextForms) {
  EMacSec macSec = FilledRecord();
  const std::string head =
      "Request Type: kMacSecSetTable, Return Code: kFail, Client Message ID: 77, Table ID: "
      "kTableRx";
  const std::string tail =
      std::string(", Confidentiality Offset: ") + '\x1e' + ", Number of SA entries: 1";
  EXPECT_EQ(macSec.ToString(), head + tail);
  EXPECT_EQ(macSec.ToStringFull(), head + tail);

  macSec.SetRequestType(EMacSec::kMacSecGetTable);
  macSec.SetConfOff(65);
  EXPECT_EQ(macSec.ToString(),
            "Request Type: kMacSecGetTable, Return Code: kFail, Client Message ID: 77, Table ID: "
            "kTableRx");
  EXPECT_EQ(macSec.ToStringFull(),
            "Request Type: kMacSecGetTable, Return Code: kFail, Client Message ID: 77, Table ID: "
            "kTableRx, Confidentiality Offset: A, Number of SA entries: 1");

  // An offset of 0 is a zero byte in the text, not the digit.
  const EMacSec empty;
  EXPECT_EQ(empty.ToStringFull(),
            std::string("Request Type: kMacSecInvalid, Return Code: kSuccess, Client Message ID: "
                        "0, Table ID: kTableInvalid, Confidentiality Offset: ") +
                '\0' + ", Number of SA entries: 0");
  EXPECT_EQ(empty.ToString(),
            "Request Type: kMacSecInvalid, Return Code: kSuccess, Client Message ID: 0, Table ID: "
            "kTableInvalid");
  // No key reaches the text.
  EXPECT_EQ(macSec.ToStringFull().find("kkkk"), std::string::npos);
}

}  // namespace
