#include "archive_text.h"

std::string ArchiveBytes(const EArchive& archive) {
  const EBlob& blob = archive.GetAsEBlob();
  if (blob.GetSize() == 0) return std::string();
  return std::string(reinterpret_cast<const char*>(blob.GetData()), blob.GetSize());
}

EArchive LoadingArchive(const std::string& bytes) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(EBlob(bytes.data(), static_cast<unsigned int>(bytes.size())), true);
  return archive;
}

EArchive StoringArchive() {
  EArchive archive;
  archive.SetMode(eModeStoring);
  return archive;
}
