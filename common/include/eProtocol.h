// EProtocol: the small polymorphic base of a protocol header that can be decoded from, encoded
// into and sized within a byte buffer. The base versions decode and encode nothing.
#pragma once

class EBlob;
class EStringList;

class EProtocol {
 public:
  // Disabled, protocol type 0.
  EProtocol();
  EProtocol(const EProtocol& other);
  EProtocol& operator=(const EProtocol& other);
  virtual ~EProtocol();

  // Copies the enabled flag and the protocol type.
  void Copy(const EProtocol& other);
  // Disabled, protocol type 0.
  void Empty();

  bool IsEnabled() const { return m_Enabled; }
  // Stores the flag and returns the previous one.
  bool SetEnabled(bool enabled);
  void SetProtocolType(unsigned int type) { m_ProtocolType = type; }
  unsigned int GetProtocolType() const { return m_ProtocolType; }

  // Writes the header at `offset`; the base writes nothing and returns GetSize().
  virtual unsigned int Encode(EBlob& blob, int offset);
  // Reads the header at `offset`; the base reads nothing and returns GetSize().
  virtual unsigned int Decode(const EBlob& blob, int offset, EStringList* log);
  // Describes the header into `log`; the base adds nothing.
  virtual void Log(EStringList* log) const;
  // Size of the header in bytes; 0 for the base.
  virtual unsigned int GetSize() const;
  // Bytes the header needs at `offset`; the base answers 0xFFFFFFFF (unknown).
  virtual unsigned int BytesRequired(const EBlob& blob, int offset);
  // Whether the blob holds a whole header at `offset`; the base answers false.
  virtual bool IsEnoughBytes(const EBlob& blob, int offset);

 private:
  bool m_Enabled;
  unsigned int m_ProtocolType;
};
