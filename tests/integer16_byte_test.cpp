#include "eInteger16Byte.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "archive_text.h"
#include "child_process.h"
#include "eArchive.h"
#include "eBlob.h"

namespace {

using eHal::Integer16Byte;
using Bytes16 = std::vector<unsigned char>;

Bytes16 BytesOfValue(const Integer16Byte& value) {
  Bytes16 bytes(16);
  value.Get(bytes.data());
  return bytes;
}

Integer16Byte FromBytes(const Bytes16& bytes) {
  Integer16Byte value;
  value.Set(bytes.data());
  return value;
}

TEST(Integer16Byte, DefaultIsZero) {
  EXPECT_EQ(BytesOfValue(Integer16Byte()), Bytes16(16, 0));
}

TEST(Integer16Byte, ByteZeroIsMostSignificant) {
  Integer16Byte value(0x0102030405060708ul);
  EXPECT_EQ(BytesOfValue(value), (Bytes16{0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(value[15], 8);
  EXPECT_EQ(value[8], 1);
  value.SetByte(0, 0xAB);
  EXPECT_EQ(value[0], 0xAB);
  EXPECT_EQ(value[1], 0);
  // Indexes outside the value are ignored and read as zero.
  value.SetByte(16, 0xFF);
  value.SetByte(-1, 0xFF);
  EXPECT_EQ(value[16], 0);
  EXPECT_EQ(value[-1], 0);
  EXPECT_EQ(value[0], 0xAB);
}

TEST(Integer16Byte, SetAndGetRoundTrip) {
  Bytes16 bytes;
  for (int i = 0; i < 16; ++i)
    bytes.push_back(static_cast<unsigned char>(0xF0 - i));
  EXPECT_EQ(BytesOfValue(FromBytes(bytes)), bytes);
}

TEST(Integer16Byte, ShortBlobFillsTheMostSignificantEnd) {
  const unsigned char four[] = {0xC0, 0xA8, 0x00, 0x01};
  const Integer16Byte value{EBlob(four, 4)};
  EXPECT_EQ(BytesOfValue(value), (Bytes16{0xC0, 0xA8, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(BytesOfValue(Integer16Byte{EBlob()}), Bytes16(16, 0));
  unsigned char sixteen[16];
  for (int i = 0; i < 16; ++i)
    sixteen[i] = static_cast<unsigned char>(i + 1);
  EXPECT_EQ(BytesOfValue(Integer16Byte{EBlob(sixteen, 16)}), Bytes16(sixteen, sixteen + 16));
}

TEST(Integer16Byte, AddingOneToAllOnesWrapsToZero) {
  Integer16Byte value = FromBytes(Bytes16(16, 0xFF));
  value += Integer16Byte(1ul);
  EXPECT_EQ(BytesOfValue(value), Bytes16(16, 0));
}

TEST(Integer16Byte, CarryCrossesEveryWord) {
  Bytes16 bytes(16, 0xFF);
  bytes[0] = 0x00;
  const Integer16Byte sum = FromBytes(bytes) + Integer16Byte(1ul);
  Bytes16 expected(16, 0);
  expected[0] = 0x01;
  EXPECT_EQ(BytesOfValue(sum), expected);
}

// Property: the sum matches bytewise schoolbook addition modulo 2^128.
TEST(Integer16Byte, AdditionMatchesBytewiseReference) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> byte(0, 255);
  std::uniform_int_distribution<int> extreme(0, 3);
  for (int round = 0; round < 2000; ++round) {
    Bytes16 a(16), b(16);
    for (int i = 0; i < 16; ++i) {
      // Lean towards 0x00 and 0xFF so that long carries happen often.
      const int kind = extreme(random);
      a[i] = static_cast<unsigned char>(kind == 0 ? 0xFF : kind == 1 ? 0 : byte(random));
      b[i] = static_cast<unsigned char>(byte(random));
    }
    Bytes16 expected(16);
    unsigned int carry = 0;
    for (int i = 15; i >= 0; --i) {
      const unsigned int total = a[i] + b[i] + carry;
      expected[i] = static_cast<unsigned char>(total);
      carry = total >> 8;
    }
    ASSERT_EQ(BytesOfValue(FromBytes(a) + FromBytes(b)), expected) << "round " << round;
  }
}

TEST(Integer16Byte, ShiftLeftLosesTheTopBits) {
  Integer16Byte value(1ul);
  value <<= 64;
  EXPECT_EQ(BytesOfValue(value), (Bytes16{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
  value <<= 63;
  EXPECT_EQ(value[0], 0x80);
  value <<= 1;
  EXPECT_EQ(BytesOfValue(value), Bytes16(16, 0));
  Integer16Byte odd(0x123ul);
  odd <<= 4;
  EXPECT_EQ(odd, Integer16Byte(0x1230ul));
  odd <<= 0;
  EXPECT_EQ(odd, Integer16Byte(0x1230ul));
  Integer16Byte gone(0xFFul);
  gone <<= 128;
  EXPECT_EQ(gone, Integer16Byte());
  Integer16Byte crossing(0xF000000000000000ul);
  crossing <<= 4;
  EXPECT_EQ(BytesOfValue(crossing), (Bytes16{0, 0, 0, 0, 0, 0, 0, 0x0F, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Integer16Byte, OneAndZeroRunFromTheMostSignificantBit) {
  Integer16Byte value;
  value.One(0, 12);
  EXPECT_EQ(BytesOfValue(value), (Bytes16{0xFF, 0xF0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  value.One(30, 34);  // across a word boundary
  EXPECT_EQ(value[3], 0x03);
  EXPECT_EQ(value[4], 0xC0);
  value.Zero(4, 8);
  EXPECT_EQ(value[0], 0xF0);
  value.One(120, 200);  // an end above 128 stops at the last bit
  EXPECT_EQ(value[15], 0xFF);
  value.Zero(0, 128);
  EXPECT_EQ(value, Integer16Byte());
  value.One(0, 128);
  EXPECT_EQ(BytesOfValue(value), Bytes16(16, 0xFF));
  // Empty or invalid runs change nothing.
  value.Zero(5, 5);
  value.Zero(9, 3);
  value.Zero(128, 130);
  value.Zero(-1, 8);
  EXPECT_EQ(BytesOfValue(value), Bytes16(16, 0xFF));
}

TEST(Integer16Byte, ArchiveFormOfOne) {
  std::string expected = "1 ";
  for (int i = 0; i < 15; ++i)
    expected += "0 ";
  expected += "1 ";
  EXPECT_EQ(BytesOf(Integer16Byte(1ul)), expected);
}

TEST(Integer16Byte, RoundTrip) {
  Bytes16 bytes;
  for (int i = 0; i < 16; ++i)
    bytes.push_back(static_cast<unsigned char>(i * 17));
  const Integer16Byte value = FromBytes(bytes);
  Integer16Byte read = FromBytes(Bytes16(16, 0x55));
  ReadFrom(BytesOf(value), read);
  EXPECT_EQ(read, value);
}

TEST(Integer16Byte, WrongVersionIsFatal) {
  ExpectSerializeError(
      [] {
        Integer16Byte value;
        ReadFrom("2 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 ", value);
      },
      "x86_64/common/ehal/eInteger16Byte", 782, "eHal::Integer16Byte::SerializeIn");
}

}  // namespace
