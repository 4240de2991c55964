// EIPAddressTable: the emulated hosts of a port, rows of host ranges keyed by their IP range.
// Adds to the generic address table a signature of its own, a framed dump and the merge of an
// interface table, which makes every usable interface a one-host row.
#pragma once

#include "eAddressTable.h"
#include "eIPAddressRange.h"
#include "eIPAddressTableItem.h"
#include "eRecord.h"

class EArchive;
class EInterfaceItem;
class EInterfaceTable;
class ETrace;

extern template class ERecord<EAddressTable<EIPAddressRange, EIPAddressTableItem>>;

class EIPAddressTable : public EAddressTable<EIPAddressRange, EIPAddressTableItem> {
 public:
  using Base = EAddressTable<EIPAddressRange, EIPAddressTableItem>;

  EIPAddressTable() = default;
  EIPAddressTable(const EIPAddressTable& other) = default;
  EIPAddressTable& operator=(const EIPAddressTable& other) = default;
  // Empties the table.
  ~EIPAddressTable() override { Empty(); }

  void Copy(const EIPAddressTable& other) { Base::Copy(other); }
  void Empty() { Base::Empty(); }

  // Signature 0x22222222, then the generic table's form.
  void SerializeOut(EArchive& archive) const;
  void SerializeIn(EArchive& archive);
  // Hands the table to `visitor` in its archive form (see ERecordVisitor).
  void Describe(ERecordVisitor& visitor, const char* name = "") const;
  // What the table holds, without an instance.
  static const ERecordDescription& Description();

  // At level 6: the title "IP Address Table", a rule, the rows (the first with the column
  // header), a rule. Nothing for a null or silent channel.
  void DumpToLog(ETrace* trace) const;

  // Makes every usable interface of `table` (enabled, with an enabled IPv4 item whose address is
  // not 0.0.0.0) a one-host row, in the order of the table's list: the host is first carved out
  // of every row whose item range holds it (the rest of such a row stays as the hosts before and
  // the hosts after it, each inserted only where no row has its key), then its own row is
  // inserted where no row has its key. Rows are never cleared: merging twice is merging once.
  void MergeWithInterfaceTable(const EInterfaceTable& table);

  struct Schema;  // the archive form, in eIPAddressTable.cpp

 private:
  // The merge's work on the rows, which edits their fields in place (in eIPAddressTable.cpp).
  struct MergeSteps;
};

EArchive& operator<<(EArchive& archive, const EIPAddressTable& table);
EArchive& operator>>(EArchive& archive, EIPAddressTable& table);
