// The archive on its own: values are written into a storing archive, its bytes are taken as a
// blob (what a transport would carry), loaded into a second archive and read back.
#include <cstdio>
#include <string>

#include "ehal.h"

int main() {
  EArchive out;
  out.SetMode(eModeStoring);

  const unsigned int port = 7;
  const int offset = -2;
  const unsigned long octets = 5000000000UL;
  const std::string label = "port-7";
  const unsigned char bytes[] = {0xDE, 0xAD, 0xBE, 0xEF};
  const EBlob key(bytes, sizeof bytes);
  EStringList names;
  names.Add("alpha");
  names.Add("beta");

  out << port << offset << octets << label << key << names;

  const EBlob& wire = out.GetAsEBlob();
  std::printf("sender wrote %u bytes:\n%s\n\n", wire.GetSize(), wire.GetHexDumpOfPacket().c_str());

  EArchive in;
  in.SetMode(eModeLoading);
  in.SetFromEBlob(wire, true);

  unsigned int portBack = 0;
  int offsetBack = 0;
  unsigned long octetsBack = 0;
  std::string labelBack;
  EBlob keyBack;
  EStringList namesBack;
  in >> portBack >> offsetBack >> octetsBack >> labelBack >> keyBack >> namesBack;

  std::printf("receiver read:\n");
  std::printf("  port     %u\n", portBack);
  std::printf("  offset   %d\n", offsetBack);
  std::printf("  octets   %lu\n", octetsBack);
  std::printf("  label    \"%s\"\n", labelBack.c_str());
  std::printf("  key      %s\n", keyBack.GetHexString().c_str());
  std::printf("  names    %u:", namesBack.GetCount());
  EStringList::Position position = namesBack.GetHeadPosition();
  while (const char* name = namesBack.GetNext(position))
    std::printf(" \"%s\"", name);
  std::printf("\n");

  const bool same = portBack == port && offsetBack == offset && octetsBack == octets &&
                    labelBack == label && keyBack == key && namesBack.GetString() == "alphabeta";
  std::printf("%s\n", same ? "round trip ok" : "round trip FAILED");
  return same ? 0 : 1;
}
