// A program written as a user of the installed package would write it.
#include <cstdio>

#include "eArchive.h"
#include "ehal.h"

int main() {
  EArchive out;
  out.SetMode(eModeStoring);
  EStringList list;
  list.Add("installed");
  out << list << 42u;

  EArchive in;
  in.SetMode(eModeLoading);
  in.SetFromEBlob(out.GetAsEBlob(), true);
  EStringList back;
  unsigned int number = 0;
  in >> back >> number;
  if (back.GetString() != "installed" || number != 42) return 1;
  std::printf("consumer ok\n");
  return 0;
}
