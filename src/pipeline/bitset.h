// Fixed-size arrays of bits packed 32 to a word.
#ifndef VORN_PIPELINE_BITSET_H
#define VORN_PIPELINE_BITSET_H

#include <cstdint>
#include <ostream>

// Bit i lies in word i / 32 at position i mod 32.
class Bitset_cl {
 public:
  // All bits set when value is non-zero, else all clear.
  Bitset_cl(int bits, int value);
  Bitset_cl(const Bitset_cl& other);
  // A copy of bits from to to, both included, of another set.
  Bitset_cl(const Bitset_cl* other, int from, int to);
  Bitset_cl& operator=(const Bitset_cl& other);
  ~Bitset_cl();

  int GetNumBits() const { return iNumBits; }
  int GetSizeInBytes() const { return iSizeInBytes; }
  bool IsSet(int i) const { return (iWords[i >> 5] >> (i & 31)) & 1u; }
  int operator[](int i) const { return IsSet(i) ? 1 : 0; }
  void Set(int i) { iWords[i >> 5] |= 1u << (i & 31); }
  void Clear(int i) { iWords[i >> 5] &= ~(1u << (i & 31)); }
  void SetBit(int i, int value) { value ? Set(i) : Clear(i); }

  // Counts set bits in from to to - 1, stopping once the count reaches limit.
  int CountTrue(int from, int to, int limit) const;
  // Sets bits from to to, both included, to value; the fast form works a word at a time.
  void SetBits(int from, int to, int value);
  void SetBitsFast(int from, int to, int value);
  void SetAll(int value);

  // Each bit as trueText or falseText, each followed by the separator.
  void Print(std::ostream& out, const char* trueText, const char* falseText, const char* separator) const;
  void PrintFirstKBits(std::ostream& out, int k, const char* trueText, const char* falseText, const char* separator) const;

 private:
  static int WordsFor(int bits) { return bits > 0 ? (bits + 31) / 32 : 0; }
  void Allocate(int bits);

  uint32_t* iWords = nullptr;
  int iSizeInBytes = 0;
  int iNumBits = 0;
};

#endif
