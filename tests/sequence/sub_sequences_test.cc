// The sub-sequence services against brute-force counts over random sequences.
#include "sequence/sub_sequences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "pipeline/bitset.h"
#include "pipeline/random.h"

namespace {

using Positions = std::pair<std::vector<int>, std::vector<int>>;

std::string Key(const int8_t* letters, int length) {
  return std::string(reinterpret_cast<const char*>(letters), length);
}

std::string ReverseComplement(const std::string& text) {
  std::string out(text.rbegin(), text.rend());
  for (char& c : out) c = static_cast<char>(3 - c);
  return out;
}

// Codes 0 to 3 with an occasional N (4) or unknown letter (-1).
Sequence_cl* RandomSequence(Random_cl& random, int length) {
  Sequence_cl* s = new Sequence_cl(Name_sptr("r"), length);
  for (int i = 0; i < length; i++) {
    double u = random.SampleUniform();
    s->SetLetter(i, u < 0.05 ? 4 : u < 0.08 ? -1 : static_cast<int>(random.SampleUniform() * 4));
  }
  return s;
}

bool Unmasked(const Bitset_cl* mask, int first, int width) {
  for (int i = first; mask && i < first + width; i++)
    if (!mask->IsSet(i)) return false;
  return true;
}

// Every window of the forward range [startMargin, length - endMargin - width], read on the forward
// strand from the start and on the reverse strand from the far end, both by the step.
std::map<std::string, Positions> BruteForce(const Sequence_cl* s, const SubSequencesParamsAndOutput_cl& r) {
  std::map<std::string, Positions> expected;
  std::string text = Key(s->GetLetters(), s->GetLength());
  int w = r.iWindowLength, length = s->GetLength();
  for (int p = r.iStartMargin; p + w <= length - r.iEndMargin; p += r.iStep)
    if (Unmasked(r.iMask, p, w)) expected[text.substr(p, w)].first.push_back(p);
  if (!r.iBothStrands) return expected;
  for (int p = length - r.iEndMargin - w; p >= r.iStartMargin; p -= r.iStep)
    if (Unmasked(r.iMask, p, w)) expected[ReverseComplement(text.substr(p, w))].second.push_back(p);
  return expected;
}

std::map<std::string, Positions> Collected(Sequence2IndexVecs_cl& hash) {
  std::map<std::string, Positions> got;
  for (auto* e : hash) {
    Positions& p = got[Key(e->iKey->GetLetters(), e->iKey->GetLength())];
    if (e->iValue->GetForward())
      for (int i = 0; i < e->iValue->GetForward()->GetSize(); i++) p.first.push_back((*e->iValue->GetForward())[i]);
    if (e->iValue->GetReverse())
      for (int i = 0; i < e->iValue->GetReverse()->GetSize(); i++) p.second.push_back((*e->iValue->GetReverse())[i]);
  }
  return got;
}

TEST(SubSequences, EnumerationMatchesBruteForceOverMarginsStepsStrandsAndMasks) {
  Random_cl random(11);
  for (int trial = 0; trial < 300; trial++) {
    Sequence_cl* s = RandomSequence(random, static_cast<int>(random.SampleUniform() * 60));
    Bitset_cl mask(s->GetLength() > 0 ? s->GetLength() : 1, 1);
    for (int i = 0; i < s->GetLength(); i++)
      if (random.SampleUniform() < 0.1) mask.Clear(i);
    Sequence2IndexVecs_cl hash;
    SubSequencesParamsAndOutput_cl request;
    request.iWindowLength = 1 + static_cast<int>(random.SampleUniform() * 6);
    request.iStep = 1 + static_cast<int>(random.SampleUniform() * 3);
    request.iStartMargin = static_cast<int>(random.SampleUniform() * 5);
    request.iEndMargin = static_cast<int>(random.SampleUniform() * 5);
    request.iBothStrands = trial % 2 == 0;
    request.iMask = trial % 3 == 0 ? &mask : nullptr;
    request.iOutput = &hash;
    s->PerformSubSeqService(Sequence_cl::GET_SUB_SEQUENCES_HASH, &request);
    std::map<std::string, Positions> got = Collected(hash);
    std::map<std::string, Positions> expected = BruteForce(s, request);
    ASSERT_EQ(got, expected) << "trial " << trial;
    delete s;
  }
}

int Mismatches(const std::string& a, const std::string& b, bool dna) {
  int count = 0;
  for (size_t i = 0; i < a.size(); i++) count += !(a[i] == b[i] || (dna && (a[i] == 4 || b[i] == 4)));
  return count;
}

TEST(SubSequences, MismatchedSeedCountsMatchBruteForce) {
  Random_cl random(5);
  for (int trial = 0; trial < 300; trial++) {
    Sequence_cl* s = RandomSequence(random, static_cast<int>(random.SampleUniform() * 80));
    Sequence_cl* seed = RandomSequence(random, 1 + static_cast<int>(random.SampleUniform() * 5));
    std::string seedText = Key(seed->GetLetters(), seed->GetLength());
    SubSequencesParamsAndOutput_cl request;
    request.iWindowLength = seed->GetLength();
    request.iSeed = seed;
    request.iMismatches = static_cast<int>(random.SampleUniform() * 3);
    request.iBothStrands = trial % 2 == 1;
    request.iComparisonType = trial % 4 < 2 ? STRICT_COMPARISON : DNA_EXTENDED_COMPARISON;
    request.iStep = 1 + trial % 2;
    std::map<std::string, Positions> windows = BruteForce(s, request);
    int expected = 0;
    Sequence2IndexVecs_cl matching;
    for (auto& [text, positions] : windows)
      if (Mismatches(seedText, text, request.iComparisonType == DNA_EXTENDED_COMPARISON) <= request.iMismatches)
        expected += static_cast<int>(positions.first.size() + positions.second.size());

    SubSequencesParamsAndOutput_cl counting = request;
    s->PerformSubSeqService(Sequence_cl::GET_MISMATCHED_SUB_SEQUENCES_COUNT, &counting);
    ASSERT_EQ(counting.iCount, expected) << "trial " << trial;

    // Entering stops at the stop count; every entered window is within the mismatches.
    SubSequencesParamsAndOutput_cl entering = request;
    entering.iOutput = &matching;
    entering.iStopCount = 2;
    s->PerformSubSeqService(Sequence_cl::GET_SUB_SEQS_CONTAINING_MISMATCHED_SEEDS, &entering);
    ASSERT_EQ(entering.iCount, std::min(expected, 2));
    int entered = 0;
    for (auto& [text, positions] : Collected(matching)) {
      EXPECT_LE(Mismatches(seedText, text, request.iComparisonType == DNA_EXTENDED_COMPARISON), request.iMismatches);
      entered += static_cast<int>(positions.first.size() + positions.second.size());
    }
    EXPECT_EQ(entered, entering.iCount);
    delete s;
    delete seed;
  }
}

TEST(SubSequences, ContentKeysIgnoreNames) {
  SequenceSet_tmpl<int> set(4, -1);
  int8_t codes[] = {0, 1, 2, 3, -1};
  Sequence_cl a(Name_sptr("a"), codes, 5);
  Sequence_cl b(Name_sptr("b"), codes, 5);
  Sequence_cl shorter(Name_sptr("a"), codes, 4);
  set.Insert(&a, 7);
  EXPECT_EQ(set.GetEntry(&b), 7);
  EXPECT_EQ(set.FindKey(&b), &a);
  EXPECT_EQ(set.GetEntry(&shorter), -1);
}

}  // namespace
