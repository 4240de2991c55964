// Shorthands for tests that check the exact bytes of an archive.
#pragma once

#include <string>

#include "eArchive.h"

// The archive's valid bytes as a string.
std::string ArchiveBytes(const EArchive& archive);

// A blob holding `bytes`.
EBlob BlobOf(const std::string& bytes);

// The blob's valid bytes as a string.
std::string TextOf(const EBlob& blob);

// A loading archive holding `bytes` (terminated, as a receiver would load them).
EArchive LoadingArchive(const std::string& bytes);

// A fresh storing archive.
EArchive StoringArchive();

// Writes `value` with operator<< into a storing archive and returns the bytes.
template <typename T>
std::string BytesOf(const T& value) {
  EArchive archive = StoringArchive();
  archive << value;
  return ArchiveBytes(archive);
}

// Reads a T with operator>> from `bytes` into `value` (which may be prefilled).
template <typename T>
void ReadFrom(const std::string& bytes, T& value) {
  EArchive archive = LoadingArchive(bytes);
  archive >> value;
}
