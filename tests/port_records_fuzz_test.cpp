// Feeds random and mutated bytes to the readers of the port records (see reader_fuzz.h).
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "reader_fuzz.h"
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

template <typename Record>
void ExpectReaderSurvives(const std::function<Record()>& makeRecord, const Record& sample,
                          unsigned int seed) {
  ::ExpectReaderSurvives<Record>(makeRecord, sample, kKnownSignatures, seed);
}

template <typename Record>
void ExpectReaderSurvives(const Record& sample, unsigned int seed) {
  ::ExpectReaderSurvives<Record>(sample, kKnownSignatures, seed);
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
