// Single sequences over a small integer alphabet, their sliding windows and letter comparisons.
#include "sequence/sequence.h"

#include <cstdio>
#include <cstring>

#include "pipeline/bitset.h"
#include "pipeline/random.h"
#include "prob/suff_stats.h"
#include "sequence/sub_sequences.h"

const char* ALPHABET_COMPARISON_TYPE_STR[2] = {"StrictComparison", "DNAExtended"};

AlphabetLetterCompareFunctor_cl* AlphabetLetterCompareFunctor_cl::Create(AlphabetComprisonType_cl type) {
  if (type == DNA_EXTENDED_COMPARISON) return new DNALetterCompareFunctor_cl;
  return new StrictAlphabetLetterCompareFunctor_cl;
}

Sequence_cl::Sequence_cl(Name_sptr name, int length)
    : iName(name), iLetters(new int8_t[length > 0 ? length : 1]()), iLength(length > 0 ? length : 0) {}

Sequence_cl::Sequence_cl(Name_sptr name, const char* text, int length, const int8_t* codeOfChar)
    : Sequence_cl(name, length) {
  for (int i = 0; i < iLength; i++) iLetters[i] = codeOfChar[static_cast<unsigned char>(text[i])];
}

Sequence_cl::Sequence_cl(Name_sptr name, const int8_t* codes, int length) : Sequence_cl(name, length) {
  if (iLength > 0) memcpy(iLetters, codes, iLength);
}

Sequence_cl::~Sequence_cl() { delete[] iLetters; }

Sequence_cl* Sequence_cl::Copy() const { return new Sequence_cl(iName, iLetters, iLength); }

Sequence_cl* Sequence_cl::GetSubsequence(int first, int last) const {
  return new Sequence_cl(iName, iLetters + first, last - first + 1);
}

void Sequence_cl::Permute() {
  for (int round = 0; round < 5; round++)
    for (int i = 0; i < iLength; i++) {
      int j = static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * iLength);
      int8_t letter = iLetters[i];
      iLetters[i] = iLetters[j];
      iLetters[j] = letter;
    }
}

void Sequence_cl::ReverseComplement(int size) {
  Reverse(0, iLength - 1);
  for (int i = 0; i < iLength; i++) iLetters[i] = static_cast<int8_t>(size - 1 - iLetters[i]);
}

void Sequence_cl::Reverse(int first, int last) {
  for (; first < last; first++, last--) {
    int8_t letter = iLetters[first];
    iLetters[first] = iLetters[last];
    iLetters[last] = letter;
  }
}

void Sequence_cl::SetChars(int position, const Sequence_cl* other) {
  for (int i = 0; i < other->iLength && position + i < iLength; i++) iLetters[position + i] = other->iLetters[i];
}

int Sequence_cl::Compare(const Sequence_cl* other) const {
  int common = iLength < other->iLength ? iLength : other->iLength;
  for (int i = 0; i < common; i++) {
    if (iLetters[i] < other->iLetters[i]) return -1;
    if (iLetters[i] > other->iLetters[i]) return 1;
  }
  return iLength - other->iLength;
}

bool Sequence_cl::IsSubSequenceInsideAlphabetLetterRange(int first, int last, int size, int& bad) const {
  for (int i = last; i >= first; i--)
    if (iLetters[i] >= size) {
      bad = i;
      return false;
    }
  return true;
}

bool Sequence_cl::AllLettersInPosAreLegal(const Vector_tmpl<int>* offsets, int position, int size) const {
  if (!offsets) return true;
  for (int i = 0; i < offsets->GetSize(); i++) {
    int p = position + (*offsets)[i];
    if (p < 0 || p >= iLength || iLetters[p] < 0 || iLetters[p] >= size) return false;
  }
  return true;
}

bool Sequence_cl::IsNotMasked(int first, int last, const Bitset_cl* mask) const {
  if (!mask) return true;
  for (int i = first; i <= last; i++)
    if (!mask->IsSet(i)) return false;
  return true;
}

bool Sequence_cl::IsHammingDistanceNotMoreThanThresh(const Sequence_cl* other, int thresh,
                                                     const AlphabetLetterCompareFunctor_cl* compare) const {
  int common = iLength < other->iLength ? iLength : other->iLength;
  int mismatches = 0;
  for (int i = 0; i < common; i++)
    if (!compare->IsEqual(iLetters[i], other->iLetters[i]) && ++mismatches > thresh) return false;
  return true;
}

bool Sequence_cl::IsHammingDistanceNotMoreThanThresh(const Sequence_cl* seed, int start, int thresh,
                                                     const AlphabetLetterCompareFunctor_cl* compare) const {
  int common = seed->iLength < iLength - start ? seed->iLength : iLength - start;
  int mismatches = 0;
  for (int i = 0; i < common; i++)
    if (!compare->IsEqual(seed->iLetters[i], iLetters[start + i]) && ++mismatches > thresh) return false;
  return true;
}

void Sequence_cl::AddCounts(CountsSuffStats_cl* stats, const Vector_tmpl<int>& offsets, int size) const {
  int width = stats->GetNumVars();
  Vector_tmpl<int> values(width > 0 ? width : 1, 0);
  values.AddEmptyLast(width);
  for (int end = width - 1; end < iLength; end++) {
    bool legal = true;
    for (int j = 0; j < width && legal; j++) {
      int letter = iLetters[end - width + 1 + j];
      legal = letter >= 0 && letter < size;
      values[offsets[j]] = letter;
    }
    if (legal) stats->AddToWeight(stats->ComputeIndex(values.GetData()), 1.0);
  }
}

void Sequence_cl::PerformSubSeqService(SubSeqServiceType_cl type, SubSequencesParamsAndOutput_cl* request) const {
  TraverseStrandForSubSeqs(type, request, false);
  if (!request->iBothStrands) return;
  Sequence_cl reversed(iName, iLetters, iLength);
  reversed.ReverseComplement(request->iAlphabetSize);
  reversed.TraverseStrandForSubSeqs(type, request, true);
}

// On the reverse strand the margins swap, so that both keep their meaning in forward coordinates.
void Sequence_cl::TraverseStrandForSubSeqs(SubSeqServiceType_cl type, SubSequencesParamsAndOutput_cl* request,
                                           bool reverse) const {
  int width = request->iWindowLength;
  int first = reverse ? request->iEndMargin : request->iStartMargin;
  int end = iLength - (reverse ? request->iStartMargin : request->iEndMargin);
  int step = request->iStep > 0 ? request->iStep : 1;
  bool limited = request->iStopCount > 0;
  if (width <= 0 || (type != GET_SUB_SEQUENCES_HASH && limited && request->iCount >= request->iStopCount)) return;
  AlphabetLetterCompareFunctor_cl* compare = nullptr;
  if (type != GET_SUB_SEQUENCES_HASH) compare = AlphabetLetterCompareFunctor_cl::Create(request->iComparisonType);
  Sequence_cl window(iName, width);
  for (int start = first < 0 ? 0 : first; start + width <= end; start += step) {
    int forward = reverse ? iLength - (start + width) : start;
    if (request->iMask && !IsNotMasked(forward, forward + width - 1, request->iMask)) continue;
    if (type != GET_SUB_SEQUENCES_HASH) {
      if (!IsHammingDistanceNotMoreThanThresh(request->iSeed, start, request->iMismatches, compare)) continue;
      request->iCount++;
    }
    if (type != GET_MISMATCHED_SUB_SEQUENCES_COUNT) {
      memcpy(window.iLetters, iLetters + start, width);
      request->iOutput->UpdateSubSeqHash(&window, forward, reverse);
    }
    if (type != GET_SUB_SEQUENCES_HASH && limited && request->iCount >= request->iStopCount) break;
  }
  delete compare;
}

char Sequence_cl::LetterOf(int code, Name_sptr alphabet) {
  if (code < 0 || code >= alphabet->GetLength()) return '?';
  return alphabet->GetText()[code];
}

void Sequence_cl::WriteSequence(std::ostream& out, Name_sptr alphabet, int first, int last) const {
  if (alphabet.IsNull()) {
    for (int i = first; i <= last; i++) out << static_cast<int>(iLetters[i]);
    return;
  }
  for (int i = first; i <= last; i++) out << LetterOf(iLetters[i], alphabet);
}

void Sequence_cl::WriteFile(std::ostream& out, Name_sptr alphabet) const {
  out << ">" << iName << "\n";
  WriteSequence(out, alphabet, 0, iLength - 1);
  out << "\n";
}

Sequence_cl::Iterator_cl::Iterator_cl(const Sequence_cl* source, int windowLength, int firstPosition, int step,
                                      int rightMargin)
    : iSource(source),
      iWindow(new Sequence_cl(Name_sptr("Substring"), windowLength)),
      iStart(firstPosition),
      iStep(step > 0 ? step : 1),
      iRightMargin(rightMargin) {
  UpdateSubstring();
}

Sequence_cl::Iterator_cl::~Iterator_cl() { delete iWindow; }

void Sequence_cl::Iterator_cl::operator++() {
  iStart += iStep;
  UpdateSubstring();
}

void Sequence_cl::Iterator_cl::UpdateSubstring() {
  int width = iWindow->iLength;
  iValid = width > 0 && iStart >= 0 && iStart + width <= iSource->iLength - iRightMargin;
  if (!iValid) return;
  memcpy(iWindow->iLetters, iSource->iLetters + iStart, width);
  if (width == iSource->iLength) {
    iWindow->iName = iSource->iName;
    return;
  }
  const char* source = iSource->iName.CStr();
  int size = snprintf(nullptr, 0, "%s [%d %d]", source ? source : "", iStart, iStart + width - 1);
  char* text = new char[size + 1];
  snprintf(text, size + 1, "%s [%d %d]", source ? source : "", iStart, iStart + width - 1);
  iWindow->iName = Name_sptr(text);
  delete[] text;
}
