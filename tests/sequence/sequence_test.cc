// Letter codes, strand operations, comparisons, windows and the mismatch tests of single sequences.
#include "sequence/sequence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <sstream>
#include <string>

#include "pipeline/bitset.h"
#include "pipeline/random.h"
#include "prob/suff_stats.h"
#include "prob/vars.h"
#include "sequence/sequence_manager.h"

namespace {

Sequence_cl* Make(const char* text, const char* alphabet = "ACGTNX", const char* name = "s") {
  SequenceManager_cl codes(Name_sptr("g"), Name_sptr(alphabet), 4, false);
  return new Sequence_cl(Name_sptr(name), text, static_cast<int>(strlen(text)), codes.GetAlphabetTable());
}

std::string Codes(const Sequence_cl* s) {
  std::ostringstream out;
  for (int i = 0; i < s->GetLength(); i++) out << s->GetLetter(i) << ",";
  return out.str();
}

std::string Text(const Sequence_cl* s) {
  std::ostringstream out;
  s->WriteSequence(out, Name_sptr("ACGTNX"), 0, s->GetLength() - 1);
  return out.str();
}

TEST(Sequence, LettersOutsideTheAlphabetReadMinusOneAndLowerCaseIsOutsideIt) {
  Sequence_cl* s = Make("ACGTNXa-Z");
  EXPECT_EQ(Codes(s), "0,1,2,3,4,5,-1,-1,-1,");
  delete s;
  Sequence_cl* lower = Make("acgtn", "acgtnx");
  EXPECT_EQ(Codes(lower), "0,1,2,3,4,");
  delete lower;
}

TEST(Sequence, ReverseComplementSendsIllegalCodesOutsideTheRangeAndTwiceRestoresAll) {
  Sequence_cl* s = Make("AACGTNX?");
  s->ReverseComplement(4);
  // Reversed: ? X N T G C A A, then c -> 3 - c.
  EXPECT_EQ(Codes(s), "4,-2,-1,0,1,2,3,3,");
  s->ReverseComplement(4);
  EXPECT_EQ(Codes(s), "0,0,1,2,3,4,5,-1,");
  delete s;
}

TEST(Sequence, CompareIsSignedByteOrderThenLength) {
  Sequence_cl* a = Make("ACG");
  Sequence_cl* b = Make("ACT");
  Sequence_cl* prefix = Make("AC");
  Sequence_cl* unknown = Make("A?G");
  EXPECT_EQ(a->Compare(b), -1);
  EXPECT_EQ(b->Compare(a), 1);
  EXPECT_EQ(a->Compare(prefix), 1);
  EXPECT_EQ(prefix->Compare(a), -1);
  EXPECT_EQ(unknown->Compare(a), -1);  // -1 sorts below every letter
  Sequence_cl* copy = a->Copy();
  EXPECT_TRUE(copy->IsEqual(a));
  for (Sequence_cl* s : {a, b, prefix, unknown, copy}) delete s;
}

TEST(Sequence, SubsequenceReverseAndSetChars) {
  Sequence_cl* s = Make("ACGTAC", "ACGTNX", "orig");
  Sequence_cl* sub = s->GetSubsequence(1, 3);
  EXPECT_EQ(Text(sub), "CGT");
  EXPECT_EQ(sub->GetName(), Name_sptr("orig"));
  s->Reverse(0, 2);
  EXPECT_EQ(Text(s), "GCATAC");
  s->SetChars(4, sub);  // only what fits is written
  EXPECT_EQ(Text(s), "GCATCG");
  delete sub;
  delete s;
}

TEST(Sequence, PermuteKeepsTheLettersAndFollowsTheSeed) {
  Random_cl::iGlobalRandomizer.Reset(17);
  Sequence_cl* a = Make("AAAACCCGGT");
  a->Permute();
  Random_cl::iGlobalRandomizer.Reset(17);
  Sequence_cl* b = Make("AAAACCCGGT");
  b->Permute();
  EXPECT_TRUE(a->IsEqual(b));
  std::string letters = Text(a);
  std::sort(letters.begin(), letters.end());
  EXPECT_EQ(letters, "AAAACCCGGT");
  delete a;
  delete b;
}

TEST(Sequence, LetterRangeTestsDifferInStrictness) {
  Sequence_cl* s = Make("ANCX?G");
  int bad = -7;
  EXPECT_FALSE(s->IsSubSequenceInsideAlphabetLetterRange(0, 5, 4, bad));
  EXPECT_EQ(bad, 3);                                                     // scanned from the end: X at 3 before N at 1
  EXPECT_TRUE(s->IsSubSequenceInsideAlphabetLetterRange(4, 5, 4, bad));  // -1 passes this test

  Vector_tmpl<int> offsets;
  offsets.AddLast(0);
  offsets.AddLast(2);
  EXPECT_TRUE(s->AllLettersInPosAreLegal(nullptr, 99, 4));
  EXPECT_TRUE(s->AllLettersInPosAreLegal(&offsets, 0, 4));   // A, C
  EXPECT_FALSE(s->AllLettersInPosAreLegal(&offsets, 1, 4));  // N
  EXPECT_FALSE(s->AllLettersInPosAreLegal(&offsets, 2, 4));  // ? is -1
  EXPECT_FALSE(s->AllLettersInPosAreLegal(&offsets, 5, 4));  // past the end
  delete s;
}

TEST(Sequence, MasksAndHammingTests) {
  Sequence_cl* s = Make("ACGTACGT");
  Bitset_cl mask(8, 1);
  mask.Clear(5);
  EXPECT_TRUE(s->IsNotMasked(0, 7, nullptr));
  EXPECT_TRUE(s->IsNotMasked(0, 4, &mask));
  EXPECT_FALSE(s->IsNotMasked(3, 6, &mask));

  AlphabetLetterCompareFunctor_cl* strict = AlphabetLetterCompareFunctor_cl::Create(STRICT_COMPARISON);
  AlphabetLetterCompareFunctor_cl* dna = AlphabetLetterCompareFunctor_cl::Create(DNA_EXTENDED_COMPARISON);
  Sequence_cl* nnn = Make("NNN");
  Sequence_cl* cgt = Make("CGT");
  EXPECT_TRUE(nnn->IsHammingDistanceNotMoreThanThresh(cgt, 0, dna));
  EXPECT_FALSE(nnn->IsHammingDistanceNotMoreThanThresh(cgt, 2, strict));
  EXPECT_TRUE(nnn->IsHammingDistanceNotMoreThanThresh(nnn, 0, strict));
  // The seed against the sequence from a start: CGT at 1 and 5; at 6 only "GT" is compared.
  EXPECT_TRUE(s->IsHammingDistanceNotMoreThanThresh(cgt, 1, 0, strict));
  EXPECT_FALSE(s->IsHammingDistanceNotMoreThanThresh(cgt, 2, 2, strict));
  EXPECT_TRUE(s->IsHammingDistanceNotMoreThanThresh(cgt, 2, 3, strict));
  Sequence_cl* gt = Make("GT");
  EXPECT_TRUE(s->IsHammingDistanceNotMoreThanThresh(gt, 6, 0, strict));
  for (Sequence_cl* x : {s, nnn, cgt, gt}) delete x;
  delete strict;
  delete dna;
}

TEST(Sequence, WindowIteratorNamesShortWindowsAndRespectsStepAndMargin) {
  Sequence_cl* s = Make("ACGTACG", "ACGTNX", "chr");
  std::ostringstream seen;
  for (Sequence_cl::Iterator_cl it(s, 3, 1, 2, 1); it.NotNull(); ++it)
    seen << (*it)->GetName() << "=" << Text(*it) << ";";
  // Starts 1, 3 fit in length - margin = 6; start 5 does not.
  EXPECT_EQ(seen.str(), "chr [1 3]=CGT;chr [3 5]=TAC;");
  Sequence_cl::Iterator_cl whole(s, 7);
  ASSERT_TRUE(whole.NotNull());
  EXPECT_EQ((*whole)->GetName(), Name_sptr("chr"));
  ++whole;
  EXPECT_FALSE(whole.NotNull());
  Sequence_cl::Iterator_cl tooLong(s, 8);
  EXPECT_FALSE(tooLong.NotNull());
  delete s;
}

TEST(Sequence, AddCountsSkipsWindowsWithIllegalLettersAndPlacesLettersByOffset) {
  RvVector_sptr scope = new RvVector_cl();
  scope->AddLast(new SingleRv_cl(Name_sptr("first"), DomainFactory_cl::CreateIntegerDomain(0, 4)));
  scope->AddLast(new SingleRv_cl(Name_sptr("second"), DomainFactory_cl::CreateIntegerDomain(0, 4)));
  CountsSuffStats_cl stats(scope, 0, 1);
  Vector_tmpl<int> offsets;
  offsets.AddLast(1);  // the window's first letter goes to the second variable
  offsets.AddLast(0);
  Sequence_cl* s = Make("ACGNTAC");
  s->AddCounts(&stats, offsets, 4);
  // Windows AC, CG, TA, AC; GN and NT hold N.
  auto cell = [&stats](int first, int second) {
    int values[2] = {first, second};
    return stats.ComputeIndex(values);
  };
  EXPECT_EQ(stats.GetTotalWeight(), 4.0);
  EXPECT_EQ(stats.GetWeight(cell(1, 0)), 2.0);
  EXPECT_EQ(stats.GetWeight(cell(2, 1)), 1.0);
  EXPECT_EQ(stats.GetWeight(cell(0, 3)), 1.0);
  delete s;
}

TEST(Sequence, WriteFileWithAndWithoutAlphabet) {
  Sequence_cl* s = Make("ACN?", "ACGTNX", "x");
  std::ostringstream letters, codes;
  s->WriteFile(letters, Name_sptr("ACGTNX"));
  s->WriteFile(codes, nullptr);
  EXPECT_EQ(letters.str(), ">x\nACN?\n");
  EXPECT_EQ(codes.str(), ">x\n014-1\n");
  delete s;
}

}  // namespace
