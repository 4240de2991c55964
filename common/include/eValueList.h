// eValueList: the value-list message between a client and the port's state machine (label
// configuration cookies, label updates, enable/disable entries, background configurations,
// arbitration and acknowledgements). It converts between three forms: this object, the packed
// binary message vqvaluelist_msg and an XML document, which alone travels in the archive.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "eBlob.h"
#include "eRecord.h"

struct vqml_content;
struct vqml_parser;
struct vqml_printer;

// The binary form: this packed 16-byte header in host byte order, then `payload_length` bytes of
// entries packed back to back (they start at reinterpret_cast<unsigned char*>(message + 1)).
#pragma pack(push, 1)
struct vqvaluelist_msg {
  unsigned char dst_id;
  unsigned char src_id;
  unsigned short request_type;
  unsigned long user_defined;  // unaligned
  unsigned int payload_length;
};
#pragma pack(pop)
static_assert(sizeof(vqvaluelist_msg) == 16, "the binary header is packed");

// A label configuration cookie (request type 3; 21 bytes in the binary form).
struct overlay_base_address {
  unsigned long cookie = 0;
  unsigned short stream_num = 0;
  unsigned short udf_num = 0;
  unsigned char field4 = 0;
  unsigned int item_count = 0;
  unsigned int field6 = 0;

  bool operator==(const overlay_base_address& other) const;
};

// A label enable/disable entry (request types 13 and 14; 12 bytes).
struct valuelist_label_enable_disable_entry {
  unsigned short field1 = 0;
  unsigned short field2 = 0;
  unsigned int field3 = 0;
  unsigned int field4 = 0;

  bool operator==(const valuelist_label_enable_disable_entry& other) const;
};

// A background configuration (request type 21; 20 bytes).
struct background_base_address {
  unsigned long field1 = 0;
  unsigned int field2 = 0;
  unsigned short field3 = 0;
  unsigned short field4 = 0;
  unsigned int field5 = 0;

  bool operator==(const background_base_address& other) const;
};

// A label update (request types 11 and 12; 12 bytes and 4 per value).
class eValueListLabelUpdateEntry {
 public:
  unsigned short GetStreamNum() const { return m_StreamNum; }
  unsigned short GetUdfNum() const { return m_UdfNum; }
  unsigned int GetOffset() const { return m_Offset; }
  unsigned int GetValueCount() const { return static_cast<unsigned int>(m_Values.size()); }
  // The value at `index`, 0 when the index is not below the value count.
  unsigned int GetValue(unsigned int index) const;
  void SetStreamNum(unsigned short streamNum) { m_StreamNum = streamNum; }
  void SetUdfNum(unsigned short udfNum) { m_UdfNum = udfNum; }
  void SetOffset(unsigned int offset) { m_Offset = offset; }
  // Resizes the values; new ones are 0.
  void SetValueCount(unsigned int count) { m_Values.resize(count); }
  // Ignored when `index` is not below the value count.
  void SetValue(unsigned int index, unsigned int value);
  // Every field and every value equal.
  bool IsEqual(const eValueListLabelUpdateEntry& other) const;
  bool operator==(const eValueListLabelUpdateEntry& other) const { return IsEqual(other); }

 private:
  unsigned short m_StreamNum = 0;
  unsigned short m_UdfNum = 0;
  unsigned int m_Offset = 0;
  std::vector<unsigned int> m_Values;
};

// Archived by ERecord as its client message id, return code and XML content; the header fields
// and the entries travel only inside the XML (Encode before writing, Parse after reading).
class eValueList : public ERecord<eValueList> {
 public:
  // The request types: the row numbers of value_list_msg_type_ascii().
  enum eRequestType : unsigned int {
    kInvalidCommand = 0,
    kRegisterFromStateMachine = 1,
    kDeregisterFromStateMachine = 2,
    kConfigurationToStateMachine = 3,
    kConfigUpdateRequest = 4,
    kAckConfigUpdateRequest = 5,
    kAckHalLabelUpdate = 6,
    kAckHalLabelEnableDisable = 7,
    kArbRequest = 8,
    kArbRelease = 9,
    kArbGrant = 10,
    kLabelUpdate = 11,
    kHalLabelUpdate = 12,
    kLabelEnableDisable = 13,
    kHalLabelEnableDisable = 14,
    kCookieRequest = 15,
    kAckConfigurationToStateMachine = 16,
    kLabelDirty = 17,
    kBackgroundUpdate = 18,
    kBackgroundCookieRequest = 19,
    kLabelWithMaskUpdate = 20,
    kBackgroundConfigurationToStateMachine = 21,
    kBackgroundDirty = 22,
    kAckBackgroundConfigurationToStateMachine = 23
  };
  enum eReturnCode : unsigned int {
    kSuccess = 0,
    kFail = 1,
    kNotOwner = 2,
    kNotValueListMode = 3,
    kInvalidArgs = 4
  };
  static constexpr unsigned int kRequestTypeCount = 24;
  // How far Encode writes a payload length beyond the bytes that the entries fill.
  static constexpr unsigned int kMaxPayloadBeyondEntries = 4096;

  // A zeroed header, no XML, no entries; creates the XML printer and parser.
  eValueList();
  eValueList(const eValueList& other);
  eValueList& operator=(const eValueList& other);
  ~eValueList();

  // Copies every field but the printer and parser (no-op on self).
  void Copy(const eValueList& other);
  // Exchanges every field but the printer and parser.
  void Swap(eValueList& other);
  // Back to a freshly constructed message.
  void Empty();

  // Setters store at the field's width.
  void SetDstId(unsigned int id) { m_DstId = static_cast<unsigned char>(id); }
  unsigned int GetDstId() const { return m_DstId; }
  void SetSrcId(unsigned int id) { m_SrcId = static_cast<unsigned char>(id); }
  unsigned int GetSrcId() const { return m_SrcId; }
  // Exchanges dst id and src id, as an answer needs.
  void SwapDstSrcId();
  void SetRequestType(unsigned int type) { m_RequestType = static_cast<unsigned short>(type); }
  unsigned int GetRequestType() const { return m_RequestType; }
  // The binary payload's length in bytes: the caller sets it; nothing computes it.
  void SetPayloadLength(unsigned int length) { m_PayloadLength = length; }
  unsigned int GetPayloadLength() const { return m_PayloadLength; }
  void SetUserDefined(unsigned long value) { m_UserDefined = value; }
  unsigned long GetUserDefined() const { return m_UserDefined; }
  void SetClientMessageId(unsigned int id) { m_ClientMessageId = id; }
  unsigned int GetClientMessageId() const { return m_ClientMessageId; }
  void SetReturnCode(unsigned int code) { m_ReturnCode = code; }
  unsigned int GetReturnCode() const { return m_ReturnCode; }
  // Always null: the payload exists only inside the conversions.
  unsigned char* GetPayloadBuffer() const { return nullptr; }
  const EBlob& GetXmlContent() const { return m_XmlContent; }
  void SetXmlContent(const EBlob& content) { m_XmlContent = content; }

  // The label config queries return 0 when the index is not below the number of label configs.
  // The cookie's low 32 bits.
  unsigned int GetLabelConfigCookie(unsigned int index) const;
  unsigned int GetLabelConfigStreamNum(unsigned int index) const;
  unsigned int GetLabelConfigUdfNum(unsigned int index) const;
  unsigned int GetLabelConfigItemCount(unsigned int index) const;
  void AddLabelConfigCookie(const overlay_base_address& config) {
    m_LabelConfigs.push_back(config);
  }
  void AddBackgroundConfigCookie(const background_base_address& config) {
    m_BackgroundConfigs.push_back(config);
  }
  void AddLabelUpdate(const eValueListLabelUpdateEntry& update) {
    m_LabelUpdates.push_back(update);
  }
  void AddLabelDisabler(const valuelist_label_enable_disable_entry& disabler) {
    m_LabelDisablers.push_back(disabler);
  }
  // Resize the entry lists; new entries are zero (label updates without values).
  void SetLabelConfigCount(unsigned int count) { m_LabelConfigs.resize(count); }
  void SetLabelUpdateCount(unsigned int count) { m_LabelUpdates.resize(count); }
  void SetLabelDisablerCount(unsigned int count) { m_LabelDisablers.resize(count); }
  void SetBackgroundConfigCount(unsigned int count) { m_BackgroundConfigs.resize(count); }
  const std::vector<overlay_base_address>& GetLabelConfigs() const { return m_LabelConfigs; }
  const std::vector<eValueListLabelUpdateEntry>& GetLabelUpdates() const { return m_LabelUpdates; }
  const std::vector<valuelist_label_enable_disable_entry>& GetLabelDisablers() const {
    return m_LabelDisablers;
  }
  const std::vector<background_base_address>& GetBackgroundConfigs() const {
    return m_BackgroundConfigs;
  }

  // Header, ids, return code, XML content and the four entry lists (sizes and entries in order)
  // equal.
  bool IsEqual(const eValueList& other) const;
  // "Client Message Id: <id>, Return Code: <code>", then ", XmlContent: " and the content's hex
  // string when there is XML content.
  std::string ToString() const;
  const char* ReturnCodeToString() const;

  // The binary form, allocated with malloc (release it with free), or null when that fails. The
  // entries of the request type's list are written back to back after the header as far as the
  // payload length reaches: the caller sets it to cover them; nothing beyond it is written.
  vqvaluelist_msg* class2struct() const;
  // Takes the header and appends the entries that the payload holds (existing entries stay).
  // The message must hold `payload_length` bytes after its header. Returns true.
  bool struct2class(vqvaluelist_msg* message);
  // Object -> binary -> XML content; `portId` is written as the "port-id". True when the XML
  // content holds the message. The request types whose XML carries the entries (3, 12 and 21)
  // write a payload of the payload length: entries beyond the ones set read as zeros, and the
  // payload may reach at most kMaxPayloadBeyondEntries bytes beyond what the entries fill. A
  // longer payload length is refused: false, and nothing changes. Other request types carry no
  // payload in their XML; any payload length is written. Memory that runs out while the XML is
  // built is refused too (false, the XML content empty): no exception leaves Encode. So Encode
  // allocates in proportion to the entries, whatever the payload length says.
  bool Encode(int portId);
  // XML content -> binary -> object; nothing changes when the XML holds no element or no
  // "payload-length".
  void Parse();
  // The last top-level element parsed from the XML content (free it with vqml_free_element), or
  // null when there is none.
  vqml_content* GetXML() const;
  // Empties the XML content and prints `element` into it. SetXML writes only what GetXML reads
  // back as the same tree: false, the content left empty, when `element` is not an element or
  // holds what the parser refuses (see vqml_print_element: control characters, bytes that are not
  // UTF-8, names that are not XML names, nesting deeper than kVqmlMaxDepth).
  bool SetXML(const vqml_content* element);

  // The printer callback: appends `length` characters of `text` to the XML content of the
  // eValueList that `context` points to; returns `length`.
  static unsigned long xmlprinter(const char* text, unsigned long length, const void* context);
  // The text read as a hexadecimal number, as "%x" reads it; 0 when nothing converts.
  static unsigned int str2hex(const char* text);
  // The 24 request-type names, indexed by request type.
  static const char* const* value_list_msg_type_ascii();

  struct Schema;  // the archive form, in eValueList.cpp

 private:
  // Every field but the printer and parser, as a tuple of references.
  template <typename Self>
  static auto ValuesOf(Self& self);
  // Takes the header and appends the entries of the first `available` payload bytes.
  void TakeMessage(const vqvaluelist_msg& header, unsigned char* payload, std::uint64_t available);

  unsigned char m_DstId;
  unsigned char m_SrcId;
  unsigned short m_RequestType;
  unsigned int m_PayloadLength;
  unsigned long m_UserDefined;
  vqml_printer* m_Printer;
  vqml_parser* m_Parser;
  unsigned int m_ClientMessageId;
  unsigned int m_ReturnCode;
  EBlob m_XmlContent;
  std::vector<overlay_base_address> m_LabelConfigs;
  std::vector<eValueListLabelUpdateEntry> m_LabelUpdates;
  std::vector<valuelist_label_enable_disable_entry> m_LabelDisablers;
  std::vector<background_base_address> m_BackgroundConfigs;
};

extern template class ERecord<eValueList>;
