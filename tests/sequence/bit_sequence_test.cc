// Letter-set patterns: containment on both strands, strand operations and their text form.
#include "sequence/bit_sequence.h"

#include <gtest/gtest.h>

#include <sstream>

#include "pipeline/random.h"
#include "prob/inst_vector.h"
#include "prob/vars.h"
#include "sequence/sequence_manager.h"

namespace {

Sequence_cl* Make(const char* text) {
  SequenceManager_cl codes(Name_sptr("g"), Name_sptr("ACGTNX"), 4, false);
  return new Sequence_cl(Name_sptr("s"), text, static_cast<int>(strlen(text)), codes.GetAlphabetTable());
}

// A pattern of letter sets, e.g. {"AG", "C", "ACGT"}.
BitSequence_cl* Pattern(std::initializer_list<const char*> rows) {
  Vector_tmpl<Vector_tmpl<int>*> sets(10, nullptr);
  for (const char* row : rows) {
    auto* set = new Vector_tmpl<int>(10, -1);
    for (const char* c = row; *c; c++) set->AddLast(static_cast<int>(std::string("ACGT").find(*c)));
    sets.AddLast(set);
  }
  auto* pattern = new BitSequence_cl(nullptr, &sets, 4);
  sets.DeleteAll();
  return pattern;
}

std::string Text(const BitSequence_cl* pattern) {
  std::ostringstream out;
  pattern->WriteFile(out, Name_sptr("ACGT"));
  return out.str();
}

TEST(BitSequence, ContainmentOnBothStrands) {
  BitSequence_cl* pattern = Pattern({"AG", "C", "ACGT"});
  EXPECT_EQ(pattern->GetName(), Name_sptr(BitSequence_cl::FEATURE_DEFULT_NAME));
  Sequence_cl* s = Make("TTGCAGGN");
  Vector_tmpl<int> offsets;
  for (int o : {0, 1, 2}) offsets.AddLast(o);
  EXPECT_TRUE(pattern->IsContained(s, 4, 2, &offsets, 3, 0));   // G C A
  EXPECT_FALSE(pattern->IsContained(s, 4, 1, &offsets, 3, 0));  // T G C
  EXPECT_FALSE(pattern->IsContained(s, 4, 5, &offsets, 3, 0));  // G G N: N is no letter
  EXPECT_FALSE(pattern->IsContained(s, 4, 7, &offsets, 3, 0));  // runs past the end
  // The reverse strand reads the window backwards, complemented: T T G at 0 reads C A A.
  EXPECT_FALSE(pattern->IsContained(s, 4, 0, &offsets, 3, 1));
  Sequence_cl* r = Make("CAGT");  // A G T at 1 reads A C T
  EXPECT_TRUE(pattern->IsContained(r, 4, 1, &offsets, 3, 1));

  BitSequence_cl* exact = new BitSequence_cl(s, 4);
  BitSequence_cl* wide = Pattern({"ACGT", "AG", "CT"});
  EXPECT_TRUE(wide->ContainInPos(exact, 0, 5));      // G in ACGT
  EXPECT_FALSE(wide->ContainInPos(exact, 1, 0));     // T not in AG
  EXPECT_TRUE(wide->IntersectInPos(pattern, 1, 0));  // AG meets AG
  EXPECT_FALSE(wide->IntersectInPos(pattern, 2, 0));
  EXPECT_TRUE(wide->IsContained(exact, 1, &offsets, 3, 0));   // T G C
  EXPECT_FALSE(wide->IsContained(exact, 3, &offsets, 3, 0));  // C A G
  EXPECT_TRUE(wide->IsContained(exact, 2, &offsets, 3, 1));   // G C A reads T G C
  delete exact;
  delete wide;
  delete pattern;
  delete s;
  delete r;
}

TEST(BitSequence, ContainmentOfAnInstantiationByPositions) {
  RvVector_sptr scope = new RvVector_cl();
  for (const char* name : {"x0", "x1", "x2"})
    scope->AddLast(new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateIntegerDomain(0, 4)));
  InstVector_sptr inst = new InstVector_cl(scope);
  int values[] = {2, 3, 1};  // G at 0, T at 5, C at 7
  for (int i = 0; i < 3; i++) (*inst)[i]->SetValue(values[i]);
  Vector_tmpl<int> positions, offsets;
  for (int p : {0, 5, 7}) positions.AddLast(p);
  for (int o : {0, 7}) offsets.AddLast(o);
  BitSequence_cl* pattern = Pattern({"AG", "CT"});
  EXPECT_TRUE(pattern->IsContained(inst, &positions, &offsets));  // the variable at 5 is passed over
  (*inst)[2]->SetValue(0);
  EXPECT_FALSE(pattern->IsContained(inst, &positions, &offsets));
  (*inst)[2]->SetValue(1);
  offsets.AddLast(9);
  EXPECT_DEATH(pattern->IsContained(inst, &positions, &offsets),
               "^ BitSequence_cl::IsContained - feature scope is out of factor scope\nrvs_positions: 0 5 7\n"
               "iOffsetsVec: 0 7 9\n");
  delete pattern;
}

TEST(BitSequence, StrandOperationsAndText) {
  BitSequence_cl* pattern = Pattern({"AG", "C", ""});
  EXPECT_EQ(Text(pattern), ">Feature\nAG\nC\n\n\n");
  BitSequence_cl copy(*pattern);
  copy.ReverseComplement();
  EXPECT_EQ(Text(&copy), ">Feature\n\nG\nCT\n\n");
  copy.ReverseComplement();
  EXPECT_EQ(Text(&copy), Text(pattern));
  copy.Reverse(0, 1);
  EXPECT_EQ(Text(&copy), ">Feature\nC\nAG\n\n\n");
  Random_cl::iGlobalRandomizer.Reset(9);
  copy.Permute();
  std::string permuted = Text(&copy);
  EXPECT_EQ(permuted.size(), Text(pattern).size());
  std::ostringstream codes;
  pattern->WriteFile(codes, nullptr);
  EXPECT_EQ(codes.str(), ">Feature\n02\n1\n\n\n");
  Vector_tmpl<char>* letters = pattern->GetPosLetters(0, Name_sptr("ACGT"));
  EXPECT_EQ(letters->GetSize(), 2);
  delete letters;
  delete pattern;
}

}  // namespace
