// Single sequences over a small integer alphabet, their sliding windows and letter comparisons.
#ifndef VORN_SEQUENCE_SEQUENCE_H
#define VORN_SEQUENCE_SEQUENCE_H

#include <cstdint>
#include <ostream>

#include "pipeline/name.h"
#include "pipeline/vector.h"

class Bitset_cl;
class CountsSuffStats_cl;
class SubSequencesParamsAndOutput_cl;

// How two letter codes are compared by the mismatch tests.
enum AlphabetComprisonType_cl { STRICT_COMPARISON = 0, DNA_EXTENDED_COMPARISON = 1 };
extern const char* ALPHABET_COMPARISON_TYPE_STR[2];

class AlphabetLetterCompareFunctor_cl {
 public:
  virtual ~AlphabetLetterCompareFunctor_cl() = default;
  virtual bool IsEqual(int a, int b) const = 0;
  // A new functor of the kind; the caller owns it.
  static AlphabetLetterCompareFunctor_cl* Create(AlphabetComprisonType_cl type);
};

class StrictAlphabetLetterCompareFunctor_cl : public AlphabetLetterCompareFunctor_cl {
 public:
  bool IsEqual(int a, int b) const override { return a == b; }
};

// N (code 4 of "ACGTNX") matches every letter.
class DNALetterCompareFunctor_cl : public AlphabetLetterCompareFunctor_cl {
 public:
  bool IsEqual(int a, int b) const override { return a == b || a == 4 || b == 4; }
};

// A name and one signed byte a position: the letter's index in the alphabet, -1 for a character
// outside it.
class Sequence_cl {
 public:
  // What a sliding window does in PerformSubSeqService.
  enum SubSeqServiceType_cl {
    GET_SUB_SEQUENCES_HASH = 0,
    GET_SUB_SEQS_CONTAINING_MISMATCHED_SEEDS = 1,
    GET_MISMATCHED_SUB_SEQUENCES_COUNT = 2
  };

  // length positions, all code 0.
  Sequence_cl(Name_sptr name, int length);
  // Codes of text by the 256-entry table of an alphabet (SequenceManager_cl::ComputeAlphabetTable).
  Sequence_cl(Name_sptr name, const char* text, int length, const int8_t* codeOfChar);
  Sequence_cl(Name_sptr name, const int8_t* codes, int length);
  ~Sequence_cl();
  Sequence_cl(const Sequence_cl&) = delete;
  Sequence_cl& operator=(const Sequence_cl&) = delete;

  Name_sptr GetName() const { return iName; }
  void SetName(Name_sptr name) { iName = name; }
  int GetLength() const { return iLength; }
  int8_t* GetLetters() { return iLetters; }
  const int8_t* GetLetters() const { return iLetters; }
  int GetLetter(int position) const { return iLetters[position]; }
  void SetLetter(int position, int code) { iLetters[position] = static_cast<int8_t>(code); }

  Sequence_cl* Copy() const;
  // Positions first to last, both included, under the same name.
  Sequence_cl* GetSubsequence(int first, int last) const;
  // Five rounds of swapping each position with a uniform draw of the global generator.
  void Permute();
  // In place: reversed, and each code c becomes size - 1 - c.
  void ReverseComplement(int size);
  void Reverse(int first, int last);
  // Overwrites from position on with the letters of other, as far as they fit.
  void SetChars(int position, const Sequence_cl* other);

  // Byte by byte in signed order over the common length, then by length.
  int Compare(const Sequence_cl* other) const;
  bool IsEqual(const Sequence_cl* other) const { return Compare(other) == 0; }

  // Scans from last down to first; at the first code at or above size stores its position in bad.
  bool IsSubSequenceInsideAlphabetLetterRange(int first, int last, int size, int& bad) const;
  bool AllLettersInPosAreLegal(const Vector_tmpl<int>* offsets, int position, int size) const;
  bool IsNotMasked(int first, int last, const Bitset_cl* mask) const;
  // Mismatches against other over the common length, stopping once more than thresh are seen.
  bool IsHammingDistanceNotMoreThanThresh(const Sequence_cl* other, int thresh,
                                          const AlphabetLetterCompareFunctor_cl* compare) const;
  // The seed against this sequence from start on, over their common length.
  bool IsHammingDistanceNotMoreThanThresh(const Sequence_cl* seed, int start, int thresh,
                                          const AlphabetLetterCompareFunctor_cl* compare) const;

  // Counts every window of as many letters as the statistic has variables, letter j going to variable
  // offsets[j]; a window with a letter outside 0 to size - 1 is skipped whole.
  void AddCounts(CountsSuffStats_cl* stats, const Vector_tmpl<int>& offsets, int size) const;

  // The sub-sequence services: the forward strand and, when asked, the reverse complement.
  void PerformSubSeqService(SubSeqServiceType_cl type, SubSequencesParamsAndOutput_cl* request) const;

  // ">name" on a line, then the letters on one line; a null alphabet writes the codes as numbers.
  void WriteFile(std::ostream& out, Name_sptr alphabet) const;
  // The letters of first to last, both included, with no line end.
  void WriteSequence(std::ostream& out, Name_sptr alphabet, int first, int last) const;
  // The character of a code; '?' for a code outside the alphabet string.
  static char LetterOf(int code, Name_sptr alphabet);

  // A window sliding over a sequence, held in a sequence of its own named "Substring" until the
  // window is positioned.
  class Iterator_cl {
   public:
    Iterator_cl(const Sequence_cl* source, int windowLength, int firstPosition = 0, int step = 1, int rightMargin = 0);
    ~Iterator_cl();
    Iterator_cl(const Iterator_cl&) = delete;
    Iterator_cl& operator=(const Iterator_cl&) = delete;

    int NotNull() const { return iValid; }
    void operator++();
    Sequence_cl* operator*() const { return iWindow; }
    int GetPosition() const { return iStart; }

   private:
    void UpdateSubstring();

    const Sequence_cl* iSource;
    Sequence_cl* iWindow;
    int iStart;
    int iStep;
    int iRightMargin;
    int iValid = 0;
  };

 private:
  void TraverseStrandForSubSeqs(SubSeqServiceType_cl type, SubSequencesParamsAndOutput_cl* request, bool reverse) const;

  Name_sptr iName;
  int8_t* iLetters;
  int iLength;
};

#endif
