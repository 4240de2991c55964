// Feeds random and mutated bytes to the readers of the port records: every read must either
// complete or end in the serialisation error, without touching memory it does not own (run it
// under the address sanitizer) and without allocating ahead of the data.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eAggregateModeSetting.h"
#include "eActivePortSetting.h"
#include "eArchive.h"
#include "eConditionalStatConfig.h"
#include "eDataCenterModeSettings.h"
#include "eEthernetOAMConfig.h"
#include "eEthernetOAMSessionStatus.h"
#include "eEthernetOAMStatus.h"
#include "eFCParams.h"
#include "eFCPhyMessage.h"
#include "eMacSec.h"
#include "ePOSLinkLayerSettings.h"
#include "ePRBS.h"
#include "eStreamConfig.h"
#include "eTLV.h"

namespace {

// Leading numbers of the records and of the records nested in them, so that generated input
// gets past the first checks often enough to reach the fields and containers.
const std::vector<unsigned int> kKnownSignatures = {
    0x11334358, 0x11334357, 0x11334356, 0x112344,   0x11223345, 0x11223344, 0x13758242, 0x13758241,
    0x1996196,  0x1996195,  0x1996194,  0x1996193,  0x1996192,  0x112233,   0x332211,   0x10062911,
    0x78911141, 1,          0x1586192,  0x28356872, 0x78156152, 0x45536509, 0x17111111};

class InputGenerator {
 public:
  explicit InputGenerator(unsigned int seed) : m_Random(seed) {}

  // Raw bytes of any value.
  std::string RandomBytes() {
    std::string bytes(Below(64), '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(Below(256));
    return bytes;
  }

  // A sequence of number tokens (known signatures, small and huge numbers, negative ones) and
  // short raw runs, starting with `first`.
  std::string Tokens(unsigned int first) {
    std::string text = std::to_string(first) + " ";
    const unsigned int count = Below(60);
    for (unsigned int i = 0; i < count; ++i) {
      switch (Below(6)) {
        case 0:
          text += std::to_string(kKnownSignatures[Below(kKnownSignatures.size())]) + " ";
          break;
        case 1:
          text += std::to_string(m_Random()) + " ";
          break;
        case 2:
          text += "-" + std::to_string(Below(100)) + " ";
          break;
        case 3:
          text += RandomBytes().substr(0, Below(8));
          break;
        default:
          text += std::to_string(Below(20)) + " ";
          break;
      }
    }
    return text;
  }

  // `bytes` with a few bytes replaced, inserted or cut off.
  std::string Mutate(std::string bytes) {
    const unsigned int changes = 1 + Below(4);
    for (unsigned int i = 0; i < changes && !bytes.empty(); ++i) {
      const std::size_t at = Below(bytes.size());
      switch (Below(4)) {
        case 0:
          bytes[at] = static_cast<char>(Below(256));
          break;
        case 1:
          bytes[at] = static_cast<char>('0' + Below(10));
          break;
        case 2:
          bytes.insert(at, 1, static_cast<char>(Below(256)));
          break;
        default:
          bytes.resize(at);
          break;
      }
    }
    return bytes;
  }

  unsigned int Below(std::size_t bound) { return static_cast<unsigned int>(m_Random() % bound); }

 private:
  std::mt19937 m_Random;
};

struct Outcome {
  unsigned int completed = 0;
  unsigned int reported = 0;
};

// Reads one record of the type that `makeRecord` builds from each generated input.
template <typename Record>
Outcome FeedReader(const std::function<Record()>& makeRecord, const std::string& sample,
                   unsigned int seed) {
  ScopedThrowingSerializeErrors throwing;
  InputGenerator generator(seed);
  const unsigned int leading = static_cast<unsigned int>(std::stoul(sample));
  Outcome outcome;
  for (unsigned int round = 0; round < 600; ++round) {
    std::string input;
    switch (round % 3) {
      case 0:
        input = generator.RandomBytes();
        break;
      case 1:
        input = generator.Tokens(leading);
        break;
      default:
        input = generator.Mutate(sample);
        break;
    }
    Record record = makeRecord();
    try {
      ReadFrom(input, record);
      ++outcome.completed;
    } catch (const SerializeErrorThrown&) {
      ++outcome.reported;
    }
  }
  return outcome;
}

template <typename Record>
void ExpectReaderSurvives(const std::function<Record()>& makeRecord, const Record& sample,
                          unsigned int seed) {
  const Outcome outcome = FeedReader<Record>(makeRecord, BytesOf(sample), seed);
  EXPECT_GT(outcome.completed, 0u);
  EXPECT_GT(outcome.reported, 0u);
}

template <typename Record>
void ExpectReaderSurvives(const Record& sample, unsigned int seed) {
  ExpectReaderSurvives<Record>([] { return Record(); }, sample, seed);
}

EBlob Blob(const std::string& bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

TEST(PortRecordReaders, SurviveArbitraryInput) {
  eHal::EPRBS prbs(false);
  prbs.SetRequestType(eHal::EPRBS::kPRBSGetAllPackets);
  eHal::EPacket packet;
  packet.SetPacketTimestamp(9);
  packet.SetPacketData(Blob("data"));
  prbs.SetPackets({packet, packet});
  ExpectReaderSurvives<eHal::EPRBS>([] { return eHal::EPRBS(true); }, prbs, 1);
  ExpectReaderSurvives(packet, 2);

  eHal::EMacSec macSec;
  macSec.SetConfOff(4);
  macSec.SetSATable({eHal::EMacSec::ESecureAssociation(Blob("12345678"), 1, Blob("key")),
                     eHal::EMacSec::ESecureAssociation()});
  ExpectReaderSurvives(macSec, 3);

  eHal::EConditionalStatConfig conditional;
  conditional.SetLatencyType("t");
  conditional.SetPGIDActiveMap("map");
  ExpectReaderSurvives(conditional, 4);

  eHal::EStreamConfig stream;
  stream.GetStreamConfigMap()[3] = eHal::EStreamConfig::EStreamData();
  stream.GetStreamConfigMap()[9] = eHal::EStreamConfig::EStreamData();
  ExpectReaderSurvives(stream, 5);
  ExpectReaderSurvives(eHal::EStreamConfig::EStreamData(), 6);

  ExpectReaderSurvives(eHal::EPOSLinkLayerSettings(), 7);
  ExpectReaderSurvives(eHal::EDataCenterModeSettings(true), 8);
  ExpectReaderSurvives(eHal::EActivePortSetting(1, 2), 9);
  ExpectReaderSurvives(EFCParams(), 10);
  ExpectReaderSurvives(EFCPhyMessage(), 11);

  eHal::EEthernetOAMConfig oam;
  oam.SetCustomTLV(eHal::ETLV(1, Blob("v")));
  ExpectReaderSurvives(oam, 12);
  ExpectReaderSurvives(eHal::EEthernetOAMStatus(), 13);
  ExpectReaderSurvives(eHal::EEthernetOAMSesionStatus(), 14);
  ExpectReaderSurvives(eHal::ETLV(2, Blob("ab")), 15);
  ExpectReaderSurvives(eHal::EAggregateModeSetting(true), 16);
}

TEST(PortRecordReaders, AHugeAssociationCountDoesNotAllocateAheadOfTheData) {
  // Under the address sanitizer a reservation for four billion associations would abort the
  // run; the reader instead stops at the first association the input does not hold.
  ScopedThrowingSerializeErrors throwing;
  eHal::EMacSec macSec;
  try {
    ReadFrom("326468162 0 2 0 0 1 4000000000 287454021 0 0 287454021 0 ", macSec);
    FAIL() << "the missing second association must be reported";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/eBlob");
  }
}

TEST(PortRecordReaders, AHugeStreamCountEndsAtTheFirstMissingEntry) {
  ScopedThrowingSerializeErrors throwing;
  eHal::EStreamConfig stream;
  try {
    ReadFrom("1122867 0 0 0 0 4000000000 1 3351057 0 0 0 0 ", stream);
    FAIL() << "the missing second entry must be reported";
  } catch (const SerializeErrorThrown& error) {
    EXPECT_EQ(error.file, "x86_64/common/ehal/eStreamConfig");
    EXPECT_EQ(error.line, 101);
  }
}

}  // namespace
