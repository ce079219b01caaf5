// Named, ordered groups of sequences with one alphabet, held in memory or streamed from a FASTA-like file.
#include "sequence/sequence_manager.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "data/data_file.h"
#include "data/line_iterator.h"

namespace {
// Groups of all k-mers beyond this many sequences would exhaust memory long before they are used.
constexpr long kMaxAllSequences = 1L << 24;
}  // namespace

SequenceManager_cl::SequenceManager_cl(bool owner) {
  Init(nullptr, Name_sptr(kDefaultAlphabet), kDefaultAlphabetSize, owner);
}

SequenceManager_cl::SequenceManager_cl(Name_sptr group, Name_sptr alphabet, int size, bool owner) {
  Init(group, alphabet, size, owner);
}

SequenceManager_cl::SequenceManager_cl(Name_sptr group, Name_sptr file, Name_sptr alphabet, int size,
                                       Name_sptr listFile, int preload, bool owner) {
  Init(group, alphabet, size, owner);
  iFileName = file;
  iNameFilter = DataFile_cl::LoadList(listFile, 0);
  iPreloaded = false;
  if (!preload) return;
  for (Iterator_cl it(this); it.NotNull(); ++it) AddSequence(it.Take());
  iPreloaded = true;
}

SequenceManager_cl::SequenceManager_cl(const SequenceManager_cl* source, Name_sptr group,
                                       const Vector_tmpl<int>* indices) {
  Init(group, source->iAlphabet, source->iAlphabetSize, true);
  unsigned duplicates = 0;
  for (int i = 0; i < indices->GetSize(); i++) {
    Sequence_cl* copy = source->GetSequence((*indices)[i])->Copy();
    if (iSequences.GetSet().Exists(copy->GetName())) {
      char suffix[32];
      snprintf(suffix, sizeof suffix, "_DUP%u", ++duplicates);
      // A new name object: the old one is shared with the source sequence.
      Name_sptr renamed(copy->GetName().CStr() ? copy->GetName().CStr() : "");
      renamed->Concat(suffix);
      copy->SetName(renamed);
    }
    AddSequence(copy);
  }
}

SequenceManager_cl::~SequenceManager_cl() {
  if (iOwner) iSequences.GetVector().DeleteAll();
  delete iNameFilter;
  delete iAlphabetHash;
}

void SequenceManager_cl::Init(Name_sptr group, Name_sptr alphabet, int size, bool owner) {
  iGroupName = group;
  iOwner = owner;
  SetAlphabet(alphabet, size);
}

void SequenceManager_cl::SetAlphabet(Name_sptr alphabet, int size) {
  iAlphabet = alphabet;
  iAlphabetSize = size;
  delete iAlphabetHash;
  iAlphabetHash = ComputeAlphabetHash(alphabet, size);
  ComputeAlphabetTable(iAlphabetHash, iAlphabetTable);
}

IntSet_tmpl<int>* SequenceManager_cl::ComputeAlphabetHash(Name_sptr alphabet, int) {
  IntSet_tmpl<int>* hash = new IntSet_tmpl<int>(5, -1);
  const char* text = alphabet.CStr();
  for (int i = 0; text && text[i]; i++) hash->Insert(static_cast<unsigned char>(text[i]), i);
  return hash;
}

void SequenceManager_cl::ComputeAlphabetTable(const IntSet_tmpl<int>* hash, int8_t table[256]) {
  for (int c = 0; c < 256; c++) table[c] = static_cast<int8_t>(hash->GetEntry(c));
}

void SequenceManager_cl::AddSequence(Sequence_cl* sequence) {
  iIndices.Insert(sequence->GetName(), iSequences.GetSize());
  iSequences.AddLast(sequence->GetName(), sequence);
  if (sequence->GetLength() > iMaxLength) iMaxLength = sequence->GetLength();
}

void SequenceManager_cl::AddSequence(Name_sptr name, const Vector_tmpl<Name_sptr>& lines) {
  std::string letters;
  for (int i = 0; i < lines.GetSize(); i++)
    if (lines[i].CStr()) letters += lines[i].CStr();
  AddSequence(new Sequence_cl(name, letters.data(), static_cast<int>(letters.size()), iAlphabetTable));
}

void SequenceManager_cl::AddAllSequencesInLength(int k) {
  long count = 1;
  for (int i = 0; i < k && count <= kMaxAllSequences; i++) count *= iAlphabetSize;
  if (k < 0 || iAlphabetSize <= 0 || count > kMaxAllSequences) {
    std::cerr << "SequenceManager_cl::AddAllSequencesInLength too many sequences of length " << k << std::endl;
    abort();
  }
  for (long n = 0; n < count; n++) {
    char name[64];
    snprintf(name, sizeof name, "AllSequences_SeqNum_%ld", n);
    Sequence_cl* sequence = new Sequence_cl(Name_sptr(name), k);
    long rest = n;
    for (int i = 0; i < k; i++, rest /= iAlphabetSize) sequence->SetLetter(i, static_cast<int>(rest % iAlphabetSize));
    AddSequence(sequence);
  }
}

void SequenceManager_cl::AddAllSubSequencesWithScoreAboveThresh(const Sequence_cl* sequence, int strand,
                                                                const Vector_tmpl<double>* scores, double thresh,
                                                                int offset, int length,
                                                                Vector_tmpl<double>* keptScores) {
  for (int i = 0; i < scores->GetSize(); i++) {
    int first = offset + i;
    if ((*scores)[i] < thresh || first < 0 || length <= 0 || first + length > sequence->GetLength()) continue;
    Sequence_cl* window = sequence->GetSubsequence(first, first + length - 1);
    if (strand) window->ReverseComplement(iAlphabetSize);
    AddSequence(window);
    if (keptScores) keptScores->AddLast((*scores)[i]);
  }
}

SequenceManager_cl* SequenceManager_cl::Clone() const {
  SequenceManager_cl* clone = new SequenceManager_cl(iGroupName, iAlphabet, iAlphabetSize, true);
  for (int i = 0; i < GetNumSequences(); i++) clone->AddSequence(GetSequence(i)->Copy());
  return clone;
}

SequenceManager_cl* SequenceManager_cl::Copy() const {
  SequenceManager_cl* copy = new SequenceManager_cl(iGroupName, iAlphabet, iAlphabetSize, false);
  for (int i = 0; i < GetNumSequences(); i++) copy->AddSequence(GetSequence(i));
  return copy;
}

SequenceManager_cl* SequenceManager_cl::GetSubsetByIndices(const Vector_tmpl<int>* indices) const {
  SequenceManager_cl* subset = new SequenceManager_cl(iGroupName, iAlphabet, iAlphabetSize, false);
  for (int i = 0; i < indices->GetSize(); i++) subset->AddSequence(GetSequence((*indices)[i]));
  return subset;
}

void SequenceManager_cl::DeleteSequences() {
  iSequences.GetVector().DeleteAll();
  iSequences.GetSet().RemoveAll();
  iIndices.RemoveAll();
  iMaxLength = 0;
}

void SequenceManager_cl::WriteFile(std::ostream& out) const {
  for (Iterator_cl it(this); it.NotNull(); ++it) (*it)->WriteFile(out, iAlphabet);
}

SubSequencesParamsAndOutput_cl SequenceManager_cl::MakeRequest(int length, bool bothStrands, int step, int startMargin,
                                                               int endMargin) const {
  SubSequencesParamsAndOutput_cl request;
  request.iWindowLength = length;
  request.iStep = step;
  request.iStartMargin = startMargin;
  request.iEndMargin = endMargin;
  request.iAlphabetSize = iAlphabetSize;
  request.iBothStrands = bothStrands;
  return request;
}

int SequenceManager_cl::GetCountOfSeqContainingMismatchedSubSequences(const Sequence_cl* seed, int mismatches,
                                                                      bool bothStrands, int step, int startMargin,
                                                                      int endMargin,
                                                                      const Vector_tmpl<Bitset_cl*>* masks,
                                                                      AlphabetComprisonType_cl comparison) const {
  SubSequencesParamsAndOutput_cl request = MakeRequest(seed->GetLength(), bothStrands, step, startMargin, endMargin);
  request.iMismatches = mismatches;
  request.iStopCount = 1;
  request.iSeed = seed;
  request.iComparisonType = comparison;
  int count = 0;
  TraverseSubSeqs(Sequence_cl::GET_MISMATCHED_SUB_SEQUENCES_COUNT, request, masks,
                  [&count](int, Sequence2IndexVecs_cl*, int hits) { count += hits > 0; });
  return count;
}

SequenceSet_tmpl<int>* SequenceManager_cl::GetCountOfSeqsContainingMismatchedSubSeqsToAllSubSeqsAboveThresh(
    double minFraction, int mismatches, int length, bool bothStrands, int step, int startMargin, int endMargin,
    const Vector_tmpl<Bitset_cl*>* masks, AlphabetComprisonType_cl comparison) const {
  if (GetNumSequences() == 0) return nullptr;
  SubSequencesParamsAndOutput_cl request = MakeRequest(length, bothStrands, step, startMargin, endMargin);
  // Distinct windows by sequence; within one, forward windows by position, then those seen only on
  // the reverse strand.
  Vector_tmpl<Sequence_cl*> distinct;
  SequenceSet_tmpl<int> seen(GetNumSequences() * 2 + 32, 0);
  TraverseSubSeqs(Sequence_cl::GET_SUB_SEQUENCES_HASH, request, masks, [&](int, Sequence2IndexVecs_cl* windows, int) {
    Vector_tmpl<Sequence_cl*> fresh;
    Vector_tmpl<int> order;
    for (auto* e : *windows) {
      if (seen.Exists(e->iKey)) continue;
      Vector_tmpl<int>* forward = e->iValue->GetForward();
      fresh.AddLast(e->iKey);
      order.AddLast(forward ? (*forward)[0] : iMaxLength + (*e->iValue->GetReverse())[0]);
    }
    order.SortWithOperatorAndSortOtherVecAccordingly(&fresh);
    for (int i = 0; i < fresh.GetSize(); i++) {
      Sequence_cl* copy = fresh[i]->Copy();
      seen.Insert(copy, 1);
      distinct.AddLast(copy);
    }
  });
  SequenceSet_tmpl<int>* counts = new SequenceSet_tmpl<int>(distinct.GetSize() * 2 + 32, 0);
  for (int i = 0; i < distinct.GetSize(); i++) {
    int count = GetCountOfSeqContainingMismatchedSubSequences(distinct[i], mismatches, bothStrands, step, startMargin,
                                                              endMargin, masks, comparison);
    if (count >= minFraction * GetNumSequences())
      counts->Insert(distinct[i], count);
    else
      delete distinct[i];
  }
  return counts;
}

SequenceManager_cl::Iterator_cl::Iterator_cl(const SequenceManager_cl* manager) : iManager(manager) { Reset(); }

SequenceManager_cl::Iterator_cl::~Iterator_cl() {
  if (iOwnsCurrent) delete iCurrent;
  delete iLines;
}

void SequenceManager_cl::Iterator_cl::Reset() {
  if (iOwnsCurrent) delete iCurrent;
  iCurrent = nullptr;
  iOwnsCurrent = false;
  iIndex = 0;
  if (iManager->iPreloaded) {
    iCurrent = iManager->GetNumSequences() > 0 ? iManager->GetSequence(0) : nullptr;
    return;
  }
  if (!iLines) iLines = new LineIterator_cl(iManager->iFileName);
  iHasPending = false;
  iLetters.clear();
  if (!iLines->Reset()) DataFile_cl::StopUnlessReadable(iManager->iFileName, "SequenceManager_cl::Iterator_cl");
  iCurrent = UpdateNextSequence();
  iOwnsCurrent = iCurrent != nullptr;
}

void SequenceManager_cl::Iterator_cl::operator++() {
  if (iManager->iPreloaded) {
    iIndex++;
    iCurrent = iIndex < iManager->GetNumSequences() ? iManager->GetSequence(iIndex) : nullptr;
    return;
  }
  if (iOwnsCurrent) delete iCurrent;
  iCurrent = UpdateNextSequence();
  iOwnsCurrent = iCurrent != nullptr;
}

Sequence_cl* SequenceManager_cl::Iterator_cl::Take() {
  iOwnsCurrent = false;
  return iCurrent;
}

Sequence_cl* SequenceManager_cl::Iterator_cl::FinishPending() {
  Sequence_cl* made = nullptr;
  const NameSet_tmpl<int>* filter = iManager->iNameFilter;
  if (iHasPending && (!filter || filter->Exists(iPendingName.c_str())))
    made = new Sequence_cl(Name_sptr(iPendingName.c_str()), iLetters.data(), static_cast<int>(iLetters.size()),
                           iManager->iAlphabetTable);
  iHasPending = false;
  iLetters.clear();
  return made;
}

// A line that starts with '#' is a comment; one that holds '>' anywhere starts a record whose name
// runs from behind the first '>' to the first tab or the line end; other lines are the letters.
// Both "\n" and "\r\n" end a line.
Sequence_cl* SequenceManager_cl::Iterator_cl::UpdateNextSequence() {
  for (; iLines->NotNull(); ++*iLines) {
    const char* line = iLines->GetLine();
    size_t length = iLines->GetLength();
    if (length > 0 && line[length - 1] == '\n') length--;
    if (length > 0 && line[length - 1] == '\r') length--;
    if (length > 0 && line[0] == '#') continue;
    const char* mark = static_cast<const char*>(memchr(line, '>', length));
    if (!mark) {
      iLetters.append(line, length);
      continue;
    }
    Sequence_cl* made = FinishPending();
    const char* name = mark + 1;
    const char* tab = static_cast<const char*>(memchr(name, '\t', line + length - name));
    iPendingName.assign(name, (tab ? tab : line + length) - name);
    iHasPending = true;
    if (made) {
      ++*iLines;
      return made;
    }
  }
  return FinishPending();
}
