// Patterns of letter sets: one set of allowed letters a position.
#include "sequence/bit_sequence.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/random.h"

const char* BitSequence_cl::FEATURE_DEFULT_NAME = "Feature";

BitSequence_cl::BitSequence_cl(Name_sptr name, int length, int alphabetSize)
    : iName(name),
      iRows((length > 0 ? length : 0) * ((alphabetSize > 0 ? alphabetSize : 0) + 7) / 8 * 8, 0),
      iLength(length > 0 ? length : 0),
      iAlphabetSize(alphabetSize > 0 ? alphabetSize : 0),
      iBytesPerRow((iAlphabetSize + 7) / 8) {}

BitSequence_cl::BitSequence_cl(const Sequence_cl* sequence, int alphabetSize, const Vector_tmpl<int>* positions)
    : BitSequence_cl(sequence->GetName(), positions ? positions->GetSize() : sequence->GetLength(), alphabetSize) {
  for (int row = 0; row < iLength; row++) {
    int position = positions ? (*positions)[row] : row;
    if (position < 0 || position >= sequence->GetLength()) continue;
    int letter = sequence->GetLetter(position);
    if (letter >= 0 && letter < iAlphabetSize) iRows.Set(row * iBytesPerRow * 8 + letter);
  }
}

BitSequence_cl::BitSequence_cl(Name_sptr name, const Vector_tmpl<Vector_tmpl<int>*>* letters, int alphabetSize)
    : BitSequence_cl(name ? name : Name_sptr(FEATURE_DEFULT_NAME), letters->GetSize(), alphabetSize) {
  for (int row = 0; row < iLength; row++) {
    const Vector_tmpl<int>* set = (*letters)[row];
    for (int k = 0; set && k < set->GetSize(); k++)
      if ((*set)[k] >= 0 && (*set)[k] < iAlphabetSize) iRows.Set(row * iBytesPerRow * 8 + (*set)[k]);
  }
}

bool BitSequence_cl::ContainsRow(int row, const BitSequence_cl* other, int otherRow, bool complemented) const {
  for (int letter = 0; letter < other->iAlphabetSize; letter++)
    if (other->Allows(otherRow, letter) && !Allows(row, complemented ? other->iAlphabetSize - 1 - letter : letter))
      return false;
  return true;
}

bool BitSequence_cl::ContainInPos(const BitSequence_cl* other, int pos, int otherPos) const {
  return ContainsRow(pos, other, otherPos, false);
}

bool BitSequence_cl::IntersectInPos(const BitSequence_cl* other, int pos, int otherPos) const {
  for (int letter = 0; letter < iAlphabetSize; letter++)
    if (Allows(pos, letter) && other->Allows(otherPos, letter)) return true;
  return false;
}

bool BitSequence_cl::IsContained(const BitSequence_cl* other, int position, const Vector_tmpl<int>* offsets, int length,
                                 int reversed) const {
  for (int row = 0; row < iLength && row < offsets->GetSize(); row++) {
    int at = reversed ? position + length - 1 - (*offsets)[row] : position + (*offsets)[row];
    if (at < 0 || at >= other->iLength || !ContainsRow(row, other, at, reversed)) return false;
  }
  return true;
}

bool BitSequence_cl::IsContained(const Sequence_cl* sequence, int alphabet, int position,
                                 const Vector_tmpl<int>* offsets, int length, int reversed) const {
  for (int row = 0; row < iLength && row < offsets->GetSize(); row++) {
    int at = reversed ? position + length - 1 - (*offsets)[row] : position + (*offsets)[row];
    if (at < 0 || at >= sequence->GetLength()) return false;
    int letter = sequence->GetLetter(at);
    if (!Allows(row, reversed ? alphabet - letter - 1 : letter)) return false;
  }
  return true;
}

bool BitSequence_cl::IsContained(const InstVector_sptr& inst, const Vector_tmpl<int>* rvPositions,
                                 const Vector_tmpl<int>* offsets) const {
  int k = 0;
  for (int row = 0; row < offsets->GetSize(); row++) {
    while (k < rvPositions->GetSize() && (*rvPositions)[k] < (*offsets)[row]) k++;
    if (k == rvPositions->GetSize() || k >= inst->GetSize() || (*rvPositions)[k] != (*offsets)[row]) {
      std::cerr << " BitSequence_cl::IsContained - feature scope is out of factor scope\nrvs_positions:";
      for (int i = 0; i < rvPositions->GetSize(); i++) std::cerr << " " << (*rvPositions)[i];
      std::cerr << "\niOffsetsVec:";
      for (int i = 0; i < offsets->GetSize(); i++) std::cerr << " " << (*offsets)[i];
      std::cerr << std::endl;
      abort();
    }
    if (row < iLength && !Allows(row, (*inst)[k]->GetIndex())) return false;
    k++;
  }
  return true;
}

void BitSequence_cl::SwapRows(int a, int b) {
  int bitsPerRow = iBytesPerRow * 8;
  for (int letter = 0; letter < iAlphabetSize; letter++) {
    int x = iRows[a * bitsPerRow + letter];
    iRows.SetBit(a * bitsPerRow + letter, iRows[b * bitsPerRow + letter]);
    iRows.SetBit(b * bitsPerRow + letter, x);
  }
}

void BitSequence_cl::ReverseComplement() {
  Reverse(0, iLength - 1);
  int bitsPerRow = iBytesPerRow * 8;
  for (int row = 0; row < iLength; row++)
    for (int low = 0, high = iAlphabetSize - 1; low < high; low++, high--) {
      int x = iRows[row * bitsPerRow + low];
      iRows.SetBit(row * bitsPerRow + low, iRows[row * bitsPerRow + high]);
      iRows.SetBit(row * bitsPerRow + high, x);
    }
}

void BitSequence_cl::Reverse(int first, int last) {
  for (; first < last; first++, last--) SwapRows(first, last);
}

void BitSequence_cl::Permute() {
  for (int round = 0; round < 5; round++)
    for (int i = 0; i < iLength; i++)
      SwapRows(i, static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * iLength));
}

Vector_tmpl<char>* BitSequence_cl::GetPosLetters(int pos, Name_sptr alphabet) const {
  auto* letters = new Vector_tmpl<char>(iAlphabetSize > 0 ? iAlphabetSize : 1, 0);
  for (int letter = 0; letter < iAlphabetSize; letter++)
    if (Allows(pos, letter))
      letters->AddLast(alphabet ? Sequence_cl::LetterOf(letter, alphabet) : static_cast<char>(letter));
  return letters;
}

void BitSequence_cl::WriteFile(std::ostream& out, Name_sptr alphabet) const {
  out << ">" << iName << "\n";
  for (int row = 0; row < iLength; row++) {
    Vector_tmpl<char>* letters = GetPosLetters(row, alphabet);
    for (int k = 0; k < letters->GetSize(); k++) {
      if (alphabet)
        out << (*letters)[k];
      else
        out << static_cast<int>((*letters)[k]);
    }
    out << "\n";
    delete letters;
  }
  out << "\n";
}
