// Fixed-size arrays of bits packed 32 to a word.
#include "pipeline/bitset.h"

#include <cstring>

void Bitset_cl::Allocate(int bits) {
  iNumBits = bits > 0 ? bits : 0;
  int words = WordsFor(iNumBits);
  iSizeInBytes = words * 4;
  iWords = new uint32_t[words > 0 ? words : 1]();
}

Bitset_cl::Bitset_cl(int bits, int value) {
  Allocate(bits);
  SetAll(value);
}

Bitset_cl::Bitset_cl(const Bitset_cl& other) {
  Allocate(other.iNumBits);
  memcpy(iWords, other.iWords, iSizeInBytes);
}

Bitset_cl::Bitset_cl(const Bitset_cl* other, int from, int to) {
  Allocate(to - from + 1);
  for (int i = 0; i < iNumBits; i++)
    if (other->IsSet(from + i)) Set(i);
}

Bitset_cl& Bitset_cl::operator=(const Bitset_cl& other) {
  if (this == &other) return *this;
  delete[] iWords;
  Allocate(other.iNumBits);
  memcpy(iWords, other.iWords, iSizeInBytes);
  return *this;
}

Bitset_cl::~Bitset_cl() { delete[] iWords; }

void Bitset_cl::SetAll(int value) { memset(iWords, value ? 0xff : 0, iSizeInBytes); }

int Bitset_cl::CountTrue(int from, int to, int limit) const {
  int count = 0;
  for (int i = from; i < to && count < limit; i++)
    if (IsSet(i)) count++;
  return count;
}

void Bitset_cl::SetBits(int from, int to, int value) {
  for (int i = from; i <= to; i++) SetBit(i, value);
}

void Bitset_cl::SetBitsFast(int from, int to, int value) {
  if (to < from) return;
  int first = from >> 5, last = to >> 5;
  // Masks of the bits at or above from in its word, and at or below to in its word.
  uint32_t head = ~0u << (from & 31);
  uint32_t tail = ~0u >> (31 - (to & 31));
  if (first == last) head &= tail;
  if (value) {
    iWords[first] |= head;
    if (first != last) iWords[last] |= tail;
    for (int w = first + 1; w < last; w++) iWords[w] = ~0u;
  } else {
    iWords[first] &= ~head;
    if (first != last) iWords[last] &= ~tail;
    for (int w = first + 1; w < last; w++) iWords[w] = 0;
  }
}

void Bitset_cl::Print(std::ostream& out, const char* trueText, const char* falseText, const char* separator) const {
  PrintFirstKBits(out, iNumBits, trueText, falseText, separator);
}

void Bitset_cl::PrintFirstKBits(std::ostream& out, int k, const char* trueText, const char* falseText,
                                const char* separator) const {
  for (int i = 0; i < k && i < iNumBits; i++) out << (IsSet(i) ? trueText : falseText) << separator;
}
