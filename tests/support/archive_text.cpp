#include "archive_text.h"

EBlob BlobOf(const std::string& bytes) {
  return EBlob(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

std::string TextOf(const EBlob& blob) {
  if (blob.GetSize() == 0) return std::string();
  return std::string(reinterpret_cast<const char*>(blob.GetData()), blob.GetSize());
}

std::string TextOf(const EArchive& archive) {
  return TextOf(archive.GetAsEBlob());
}

EArchive LoadingArchive(const std::string& bytes) {
  EArchive archive;
  archive.SetMode(eModeLoading);
  archive.SetFromEBlob(BlobOf(bytes), true);
  return archive;
}

EArchive StoringArchive() {
  EArchive archive;
  archive.SetMode(eModeStoring);
  return archive;
}
