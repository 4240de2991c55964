// EVLANIPAddressTableItemProperties: the 802.1Q tag stack (one to six tag words, outermost first)
// of a host range or an interface, with an enabled flag. Serialisable, convertible to and from a
// short comma-separated text per tag field, and passed to the interface-table hooks.
#pragma once

#include <string>
#include <vector>

#include "eRecord.h"

class EVLANIPAddressTableItemProperties : public ERecord<EVLANIPAddressTableItemProperties> {
 public:
  // A tag word: bits 16-31 the TPID, 13-15 the user priority, 12 the canonical-format bit, 0-11
  // the VLAN id.
  static constexpr unsigned int kMaxVLANCount = 6;
  static constexpr unsigned short kMaxVLANID = 4095;
  static constexpr unsigned char kMaxUserPriority = 7;

  // The tag field that a text description holds.
  enum eFields { eTPID = 0, eVLANID = 1, eUserPriority = 2 };

  // Disabled, one tag of kVlanDefaultValue.
  EVLANIPAddressTableItemProperties();
  // Room for `capacity` tags (at most six are ever kept), enabled as given, and no tags at all.
  EVLANIPAddressTableItemProperties(unsigned int capacity, bool enabled);
  // Copying takes the flags and the source's count clamped into 1..6 (SetVLANCount), then as
  // many of the source's tags as both hold: a copy of a record without tags keeps one tag.
  EVLANIPAddressTableItemProperties(const EVLANIPAddressTableItemProperties& other);
  EVLANIPAddressTableItemProperties& operator=(const EVLANIPAddressTableItemProperties& other);
  ~EVLANIPAddressTableItemProperties() = default;

  void Copy(const EVLANIPAddressTableItemProperties& other);
  // Disabled, one tag of kVlanDefaultValue.
  void Empty();
  // Exchanges flags and tag lists.
  void Swap(EVLANIPAddressTableItemProperties& other);

  // Same flags word, same number of tags and the same tag words.
  bool operator==(const EVLANIPAddressTableItemProperties& other) const;
  bool operator!=(const EVLANIPAddressTableItemProperties& other) const {
    return !(*this == other);
  }

  // Bit 0 of the flags word; the setters leave the other bits alone.
  bool IsEnabled() const { return (m_Flags & kEnabledBit) != 0; }
  void SetEnabled(bool enabled);
  void Enable() { SetEnabled(true); }
  void Disable() { SetEnabled(false); }
  // The whole flags word; records read from the version-1 form may carry per-tag TPID selectors
  // above bit 7.
  unsigned int GetFlags() const { return m_Flags; }

  const std::vector<unsigned int>& GetVlans() const { return m_Tags; }
  unsigned int GetVLANCount() const { return static_cast<unsigned int>(m_Tags.size()); }
  // SetVLANCount(count), then the first (resulting count) words of `source` (as many as it has;
  // none for a null source). Returns the result of SetVLANCount.
  bool SetVlan(unsigned int count, const std::vector<unsigned int>* source);
  // Keeps the count in 1..6 (0 becomes 1, more than 6 becomes 6): truncates from the end or
  // appends kVlanDefaultValue slots. False when `count` was outside 1..6.
  bool SetVLANCount(unsigned int count);
  // No tags at all.
  void ResetVLANCount() { m_Tags.clear(); }

  // The tag word, or 0 for an index beyond the tags.
  unsigned int GetVlanTag(unsigned int index) const;
  // Stores the tag word; false for an index beyond the tags.
  bool SetVlanTag(unsigned int index, unsigned int word);

  // Parts of tag `index`. An index beyond the tags reads as a zero tag, and the setters ignore it.
  unsigned short GetVLANID(unsigned int index) const;
  unsigned char GetUserPriority(unsigned int index) const;
  unsigned int GetCanonicalFormat(unsigned int index) const;
  unsigned short GetVLANTPID(unsigned int index) const;
  // The whole tag word.
  unsigned int GetVLANTCID(unsigned int index) const { return GetVlanTag(index); }
  // Ids of 4096 and more become 4095.
  void SetVLANID(unsigned short id, unsigned int index);
  // Keeps the low three bits of `priority`.
  void SetUserPriority(unsigned char priority, unsigned int index);
  // Keeps bit 0 of `canonicalFormat`.
  void SetCanonicalFormat(unsigned int canonicalFormat, unsigned int index);
  void SetVLANTPID(unsigned short tpid, unsigned int index);

  // Tag `index` (at least 1) takes the VLAN id of tag index - 1 plus `step`, modulo 4096 (a
  // negative step counts down); returns the new id.
  unsigned short IncrementVLANID(unsigned int index, int step);
  // The same for the user priority, modulo 8.
  unsigned char IncrementUserPriority(unsigned int index, int step);
  // Tag `index` takes the TPID that follows (step > 0) or precedes (step < 0) the TPID of tag
  // index - 1 in the cycle 0x8100, 0x88A8, 0x9100, 0x9200, [0x9300 with `use9300`]; with step 0
  // the same TPID; an unknown TPID is followed and preceded by 0x8100. Returns the new TPID.
  unsigned short IncrementVLANTPID(unsigned int index, int step, bool use9300);

  // Removes the tags at the first n of the ascending 1-based `positions`, but never the last
  // remaining tag (at most count - 1 positions are used). Positions beyond the tags are skipped.
  // Always true.
  bool RemoveVLANItem(const unsigned int* positions, unsigned int n);

  // A tag word of the legacy layout (priority in bits 12-14, canonical format in bit 15) in the
  // current one.
  static unsigned int ConvertLegacyTCIDToNewTCID(unsigned int word);
  // A 16-bit tag control value of the version-1 form with the TPID that the 4-bit selector of
  // tag `index` (bits 8 + 4 * index up of `selectors`) names: 1 0x88A8, 2 0x9100, 3 0x9200,
  // anything else 0x8100. 0 for an index above 5.
  unsigned int EVlanTagOldToNewConvert(unsigned short control, unsigned int selectors,
                                       unsigned int index) const;

  // One field of every tag, joined by ",": TPIDs as "0x8100", VLAN ids and priorities in
  // decimal. Empty without tags or for an unknown field.
  std::string ConstructVLANItemDescription(eFields field) const;
  std::string ConstructVLANIDDescription() const { return ConstructVLANItemDescription(eVLANID); }
  std::string ConstructVLANTPIDDescription() const { return ConstructVLANItemDescription(eTPID); }
  std::string ConstructVLANUserPriorityDescription() const {
    return ConstructVLANItemDescription(eUserPriority);
  }
  // Takes up to six comma-separated values (hexadecimal TPIDs, of which unknown ones become
  // 0x8100; decimal ids clamped to 4095 and priorities clamped to 7), sets the count to their
  // number (at least one tag) and that field of each tag. An unknown field changes nothing.
  void SetVLANFromDescription(const std::string& text, eFields field);
  void SetVLANFromVLANIDDescription(const std::string& text) {
    SetVLANFromDescription(text, eVLANID);
  }
  void SetVLANFromVLANTPIDDescription(const std::string& text) {
    SetVLANFromDescription(text, eTPID);
  }
  void SetVLANFromUserPriorityDescription(const std::string& text) {
    SetVLANFromDescription(text, eUserPriority);
  }

  // Writes version 2; reads version 2, the version-1 form with 16-bit tag control values and the
  // single-tag form (see Schema).
  struct Schema;  // the archive form, in eVLANIPAddressTableItemProperties.cpp

 private:
  static constexpr unsigned int kEnabledBit = 1;

  // Replaces the bits of `mask` in tag `index` by `bits`; nothing for an index beyond the tags.
  void SetTagBits(unsigned int index, unsigned int mask, unsigned int bits);

  unsigned int m_Flags = 0;
  std::vector<unsigned int> m_Tags;
};

extern template class ERecord<EVLANIPAddressTableItemProperties>;
