// Shorthands for tests that check the exact bytes of an archive: the one set of helpers for
// "bytes into a loading archive" (LoadingArchive, ReadFrom) and "a record to bytes" (BytesOf).
#pragma once

#include <string>

#include "eArchive.h"


// A blob holding `bytes`.
EBlob BlobOf(const std::string& bytes);

// The blob's valid bytes as a string.
std::string TextOf(const EBlob& blob);

// The archive's valid bytes as a string.
std::string TextOf(const EArchive& archive);

// A loading archive holding `bytes` (terminated, as a receiver would load them).
EArchive LoadingArchive(const std::string& bytes);

// A fresh storing archive.
EArchive StoringArchive();

// Writes `value` with operator<< into a storing archive and returns the bytes.
template <typename T>
std::string BytesOf(const T& value) {
  EArchive archive = StoringArchive();
  archive << value;
  return TextOf(archive);
}

// Reads a T with operator>> from `bytes` into `value` (which may be prefilled).
template <typename T>
void ReadFrom(const std::string& bytes, T& value) {
  EArchive archive = LoadingArchive(bytes);
  archive >> value;
}
