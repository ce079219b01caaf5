// Shared, reference-counted names: the key of almost every table in the system.
#ifndef VORN_PIPELINE_NAME_H
#define VORN_PIPELINE_NAME_H

#include <cstddef>
#include <cstdint>
#include <ostream>

class CharBuffer_cl;

// A string whose empty form is a null text; shared by pointer through Name_sptr, so in-place
// changes are seen by every holder. Short texts live inside the object, which saves an
// allocation and a cache miss on every look-up of a gene-sized name.
class Name_cl {
 public:
  explicit Name_cl(const char* text);
  explicit Name_cl(char c);
  Name_cl(const char* text, int length);
  explicit Name_cl(CharBuffer_cl* buffer);
  ~Name_cl();
  Name_cl(const Name_cl&) = delete;
  Name_cl& operator=(const Name_cl&) = delete;

  const char* GetText() const { return iText; }
  int GetLength() const { return iLength; }
  bool IsEqual(const char* text) const;
  bool IsEqual(const Name_cl& other) const { return IsEqual(other.iText); }
  int IndexOf(const char* what) const;
  int LastIndexOf(const char* what) const;
  bool EndsWith(const class Name_sptr& suffix) const;
  class Name_sptr SubString(int from, int to) const;

  void Concat(const char* text);
  void Concat(char c);
  void Concat(int value);
  void Concat1(const char* text);
  void Concat1(char c);
  void Concat1(int value);
  void RemoveChar(char c);

  // A well-mixed hash of the text for look-up indexes, computed on first use; never 0.
  uint32_t GetIndexHash() const {
    if (!iIndexHash) iIndexHash = ComputeIndexHash(iText, iLength);
    return iIndexHash;
  }
  static uint32_t ComputeIndexHash(const char* text, int length);

 private:
  friend class Name_sptr;
  static constexpr int kInline = 20;
  // Null text for a length below 1.
  void SetText(const char* text, int length);
  // Always a text, empty if need be; the storage is the inline buffer or the heap.
  char* Reserve(int length);
  void ClearText();
  void Join(const char* head, int headLength, const char* tail, int tailLength);

  uint32_t iRefCount = 0;
  mutable uint32_t iIndexHash = 0;  // 0 until computed; every change of the text resets it
  char* iText = nullptr;
  int iLength = 0;
  char iInline[kInline];
};

// The handle all code passes by value; null means "no name", which differs from an empty name.
class Name_sptr {
 public:
  Name_sptr() = default;
  Name_sptr(std::nullptr_t) {}  // NOLINT: null converts implicitly
  Name_sptr(Name_cl* name) : iName(name) { Acquire(); }  // NOLINT: handles convert implicitly
  explicit Name_sptr(const char* text) : iName(new Name_cl(text)) { Acquire(); }
  Name_sptr(const Name_sptr& other) : iName(other.iName) { Acquire(); }
  Name_sptr(Name_sptr&& other) noexcept : iName(other.iName) { other.iName = nullptr; }
  ~Name_sptr() { Release(); }
  Name_sptr& operator=(const Name_sptr& other);
  Name_sptr& operator=(Name_sptr&& other) noexcept;
  Name_sptr& operator=(Name_cl* name);

  Name_cl* operator->() const { return iName; }
  Name_cl& operator*() const { return *iName; }
  Name_cl* Get() const { return iName; }
  bool IsNull() const { return iName == nullptr; }
  explicit operator bool() const { return iName != nullptr; }
  // The text, or null for a null handle or an empty name.
  const char* CStr() const { return iName ? iName->GetText() : nullptr; }

 private:
  void Acquire() {
    if (iName) ++iName->iRefCount;
  }
  void Release();

  Name_cl* iName = nullptr;
};

// Content equality; two null handles are equal.
bool operator==(const Name_sptr& a, const Name_sptr& b);

std::ostream& operator<<(std::ostream& out, const Name_cl& name);
std::ostream& operator<<(std::ostream& out, const Name_sptr& name);

#endif
