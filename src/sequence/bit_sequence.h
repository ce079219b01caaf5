// Patterns of letter sets: one set of allowed letters a position.
#ifndef VORN_SEQUENCE_BIT_SEQUENCE_H
#define VORN_SEQUENCE_BIT_SEQUENCE_H

#include <ostream>

#include "pipeline/bitset.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/inst_vector.h"
#include "sequence/sequence.h"

// Row r allows letter l when bit r * bytes * 8 + l is set, with bytes the alphabet size / 8 rounded up.
class BitSequence_cl {
 public:
  static const char* FEATURE_DEFULT_NAME;

  // One letter a row: the sequence's letters, or only those at the given positions. Codes outside
  // 0 to size - 1 leave their row empty.
  BitSequence_cl(const Sequence_cl* sequence, int alphabetSize, const Vector_tmpl<int>* positions = nullptr);
  // Row i allows the letters of letters[i]; a null name takes FEATURE_DEFULT_NAME.
  BitSequence_cl(Name_sptr name, const Vector_tmpl<Vector_tmpl<int>*>* letters, int alphabetSize);
  BitSequence_cl(const BitSequence_cl& other) = default;
  BitSequence_cl& operator=(const BitSequence_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  int GetLength() const { return iLength; }
  int GetAlphabetSize() const { return iAlphabetSize; }
  bool Allows(int row, int letter) const {
    return letter >= 0 && letter < iAlphabetSize && iRows.IsSet(row * iBytesPerRow * 8 + letter);
  }

  // Every letter of other's row is in this row.
  bool ContainInPos(const BitSequence_cl* other, int pos, int otherPos) const;
  // The two rows share a letter.
  bool IntersectInPos(const BitSequence_cl* other, int pos, int otherPos) const;
  // Row i of this pattern contains the row of other at position + offsets[i]; reversed reads other's
  // row at position + length - 1 - offsets[i] with its letters complemented.
  bool IsContained(const BitSequence_cl* other, int position, const Vector_tmpl<int>* offsets, int length,
                   int reversed) const;
  // Row i allows the letter of the sequence at position + offsets[i], or at the mirrored position
  // complemented as alphabet - letter - 1.
  bool IsContained(const Sequence_cl* sequence, int alphabet, int position, const Vector_tmpl<int>* offsets, int length,
                   int reversed) const;

  // The variables of inst sit at the ascending rvPositions, the rows at the ascending offsets: each
  // row must allow the value of the variable at its offset; variables at no offset are passed over.
  // An offset with no variable stops the program.
  bool IsContained(const InstVector_sptr& inst, const Vector_tmpl<int>* rvPositions,
                   const Vector_tmpl<int>* offsets) const;

  void ReverseComplement();
  void Reverse(int first, int last);
  // Five rounds of swapping each row with a uniform draw of the global generator.
  void Permute();

  // The letters of a row: characters of the alphabet, or their codes when it is null. The caller owns it.
  Vector_tmpl<char>* GetPosLetters(int pos, Name_sptr alphabet) const;
  // ">name", one line of letters a position, and a blank line.
  void WriteFile(std::ostream& out, Name_sptr alphabet) const;

 private:
  BitSequence_cl(Name_sptr name, int length, int alphabetSize);
  void SwapRows(int a, int b);
  // Every letter of the other's row (mirrored over the alphabet when complemented) is in this row.
  bool ContainsRow(int row, const BitSequence_cl* other, int otherRow, bool complemented) const;

  Name_sptr iName;
  Bitset_cl iRows;
  int iLength;
  int iAlphabetSize;
  int iBytesPerRow;
};

#endif
