// Assignments: the flat index against a brute-force walk, the changed flag after every mutator,
// long indices, hash keys and copying between scopes.
#include "prob/inst_vector.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "pipeline/random.h"
#include "prob/sample.h"

namespace {

SingleRv_sptr Var(const char* name, int size) {
  return new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateIntegerDomain(0, size));
}

RvVector_sptr Scope(const std::vector<int>& sizes) {
  RvVector_sptr scope = new RvVector_cl();
  for (size_t i = 0; i < sizes.size(); i++) scope->AddLast(Var(("v" + std::to_string(i)).c_str(), sizes[i]));
  return scope;
}

std::vector<int> Indices(const InstVector_sptr& v) {
  std::vector<int> out;
  for (int i = 0; i < v->GetNumberOfVars(); i++) out.push_back((*v)[i]->GetIndex());
  return out;
}

// The flat index computed from the values alone, last variable fastest.
int BruteIndex(const InstVector_sptr& v) {
  int index = 0;
  for (int i = 0; i < v->GetNumberOfVars(); i++) index = index * v->GetVar(i)->GetJointDomainSize() + (*v)[i]->GetIndex();
  return index;
}

}  // namespace

TEST(InstVector, FlatIndexFollowsABruteForceWalkOverSmallScopes) {
  Random_cl random(41);
  for (int trial = 0; trial < 40; trial++) {
    std::vector<int> sizes;
    int n = 1 + static_cast<int>(random.SampleUniform() * 4);
    for (int i = 0; i < n; i++) sizes.push_back(1 + static_cast<int>(random.SampleUniform() * 4));
    RvVector_sptr scope = Scope(sizes);
    InstVector_sptr walk = new InstVector_cl(scope);
    int joint = scope->GetJointDomainSize();

    // An independent odometer gives the expected assignments in order.
    std::vector<int> expected(n, 0);
    walk->SetFirstValue();
    for (int k = 0; k < joint; k++) {
      ASSERT_TRUE(walk->IsLegalValue());
      EXPECT_EQ(Indices(walk), expected);
      EXPECT_EQ(walk->GetIndex(), k);
      EXPECT_TRUE(walk->IsIndexCorrect());
      InstVector_sptr decoded = InstVector_cl::GetIndexAssignment(k, scope);
      EXPECT_EQ(Indices(decoded), expected);
      walk->NextInst();
      for (int i = n - 1; i >= 0 && ++expected[i] == sizes[i]; i--) expected[i] = 0;
    }
    EXPECT_FALSE(walk->IsLegalValue());
    if (n == 1) {
      EXPECT_EQ(walk->GetIndex(), sizes[0]);
    }

    // The mirror walk meets the same assignments backward.
    walk->SetLastValue();
    for (int k = joint - 1; k >= 0; k--) {
      ASSERT_TRUE(walk->IsLegalValue());
      EXPECT_EQ(walk->GetIndex(), k);
      walk->PrevInst();
    }
    EXPECT_FALSE(walk->IsLegalValue());
  }
}

TEST(InstVector, FixedVariablesStayAndCarryingStopsAtFirst) {
  RvVector_sptr scope = Scope({2, 3, 2});
  InstVector_sptr v = new InstVector_cl(scope);
  v->SetFirstValue();
  RvVector_sptr fixed = new RvVector_cl(scope->GetRv(2));
  (*v)[2]->SetValue(1);
  v->SetChanged();
  std::vector<std::vector<int>> seen;
  while (v->IsLegalValue()) {
    seen.push_back(Indices(v));
    v->NextInst(fixed, 1);
  }
  EXPECT_EQ(seen, (std::vector<std::vector<int>>{{0, 0, 1}, {0, 1, 1}, {0, 2, 1}}));
  EXPECT_EQ(Indices(v)[0], 0);
}

TEST(InstVector, PowerSetWalkTreatsIllegalAsOneMoreState) {
  RvVector_sptr scope = Scope({2, 1});
  InstVector_sptr v = new InstVector_cl(scope);
  v->SetFirstValue();
  std::vector<std::vector<int>> seen;
  for (int k = 0; k < 6; k++) {
    seen.push_back(Indices(v));
    v->NextPowerSetInst();
  }
  EXPECT_EQ(seen, (std::vector<std::vector<int>>{{0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}, {2, 1}}));
  EXPECT_EQ(Indices(v), (std::vector<int>{0, 0}));
  // The mirror runs each variable down through its values to illegal, then wraps to the last value.
  std::vector<std::vector<int>> back;
  for (int k = 0; k < 4; k++) {
    v->PrevPowerSetInst();
    back.push_back(Indices(v));
  }
  EXPECT_EQ(back, (std::vector<std::vector<int>>{{0, -1}, {-1, 0}, {-1, -1}, {1, 0}}));
}

TEST(InstVector, EveryMutatorLeavesTheIndexRightThroughTheChangedFlag) {
  RvVector_sptr scope = Scope({3, 4, 2});
  InstVector_sptr other = new InstVector_cl(scope);
  other->ForceSetValue(17);
  std::vector<std::pair<const char*, std::function<void(InstVector_sptr)>>> mutators = {
      {"SetValue(int)", [](InstVector_sptr v) { v->SetValue(9); }},
      {"ForceSetValue", [](InstVector_sptr v) { v->ForceSetValue(22); }},
      {"SetValueDisc", [](InstVector_sptr v) { v->SetValueDisc(5); }},
      {"NextInst", [](InstVector_sptr v) { v->NextInst(); }},
      {"PrevInst", [](InstVector_sptr v) { v->PrevInst(); }},
      {"NextInst fixed", [&](InstVector_sptr v) { v->NextInst(new RvVector_cl(scope->GetRv(2)), 0); }},
      {"NextPowerSetInst", [](InstVector_sptr v) { v->NextPowerSetInst(); }},
      {"PrevPowerSetInst", [](InstVector_sptr v) { v->PrevPowerSetInst(); }},
      {"SetFirstValue", [](InstVector_sptr v) { v->SetFirstValue(); }},
      {"SetLastValue", [](InstVector_sptr v) { v->SetLastValue(); }},
      {"SetValue(names)", [](InstVector_sptr v) { v->SetValue(Name_sptr("2 0 1")); }},
      {"SetLongIndex", [](InstVector_sptr v) {
         LongIndex_cl index;
         index.iIndex[0] = 13;
         v->SetLongIndex(index);
       }},
      {"SetWithHashKey", [](InstVector_sptr v) { v->SetWithHashKey(Name_sptr("1#3#0#")); }},
      {"GetValuesFrom", [&](InstVector_sptr v) { v->GetValuesFrom(other, RvMapping_sptr()); }},
      {"Copy into", [&](InstVector_sptr v) { other->Copy(v); }},
      {"GeneralInitialize", [&](InstVector_sptr v) { v->GeneralInitialize(other, nullptr); }},
  };
  for (auto& [name, mutate] : mutators) {
    SCOPED_TRACE(name);
    InstVector_sptr v = new InstVector_cl(scope);
    v->ForceSetValue(11);
    ASSERT_EQ(v->GetIndex(), 11);
    mutate(v);
    EXPECT_EQ(v->GetIndex(), BruteIndex(v));
    EXPECT_TRUE(v->IsIndexCorrect());
  }
}

TEST(InstVector, SetValueSkipsWorkOnlyWhileTheCacheIsValid) {
  InstVector_sptr v = new InstVector_cl(Scope({3, 3}));
  v->ForceSetValue(4);
  (*v)[0]->SetValue(2);  // behind the vector's back: the cache still says 4
  v->SetValue(4);
  EXPECT_EQ(Indices(v), (std::vector<int>{2, 1}));
  v->SetChanged();
  v->SetValue(4);
  EXPECT_EQ(Indices(v), (std::vector<int>{1, 1}));
}

TEST(InstVector, LongIndexSplitsIntoRunsThatFitAnInt) {
  RvVector_sptr scope = Scope({50000, 50000, 3, 50000, 7});
  EXPECT_EQ(scope->GetJointDomainSize(), -1);
  InstVector_sptr v = new InstVector_cl(scope);
  for (int i = 0; i < 5; i++) (*v)[i]->SetValue(std::vector<int>{49999, 123, 2, 7, 6}[i]);
  v->SetChanged();
  LongIndex_cl index = v->GetLongIndex();
  // Runs: {v0}, {v1, v2}, {v3, v4}.
  EXPECT_EQ(index.iIndex[0], 49999);
  EXPECT_EQ(index.iIndex[1], 123 * 3 + 2);
  EXPECT_EQ(index.iIndex[2], 7 * 7 + 6);
  EXPECT_EQ(index.iIndex[3], 0);
  InstVector_sptr back = new InstVector_cl(scope);
  back->SetLongIndex(index);
  EXPECT_EQ(Indices(back), Indices(v));
  std::ostringstream out;
  out << index;
  EXPECT_EQ(out.str(), "(49999, 371, 55, 0, 0)");
  LongIndex_cl smaller = index;
  smaller.iIndex[2]--;
  EXPECT_TRUE(smaller < index);
  EXPECT_FALSE(index < smaller);
}

TEST(InstVectorDeathTest, ASixthRunOfTheLongIndexStops) {
  InstVector_sptr v = new InstVector_cl(Scope({50000, 50000, 50000, 50000, 50000, 50000}));
  v->SetFirstValue();
  EXPECT_DEATH(v->GetLongIndex(), "^InstVector_cl::GetLongIndex the joint index needs more than 5 ints\n$");
}

TEST(InstVector, HashKeysAndPrintNamesOfMixedAssignments) {
  RvVector_sptr scope = Scope({3, 5});
  scope->AddLast(new SingleRv_cl(Name_sptr("x"), new RealDomain_cl()));
  InstVector_sptr v = new InstVector_cl(scope);
  (*v)[0]->SetValue(2);
  (*v)[1]->SetValue(4);
  (*v)[2]->SetValue(-0.125);
  EXPECT_STREQ(v->GetHashKey()->GetText(), "-0.12500000#4#2#");
  EXPECT_STREQ(v->GetPrintName()->GetText(), "2_4_-0.12500000");
  InstVector_sptr back = new InstVector_cl(scope);
  back->SetWithHashKey(v->GetHashKey());
  EXPECT_STREQ(back->GetHashKey()->GetText(), v->GetHashKey()->GetText());
  EXPECT_EQ(back->GetIndexDisc(), 2 * 5 + 4);

  double values[3] = {0, 0, 0};
  EXPECT_EQ(v->ExtractValues(values), 1);
  EXPECT_EQ(values[2], -0.125);
  InstVector_sptr unset = new InstVector_cl(scope);
  EXPECT_EQ(unset->ExtractValues(values), 0);
  EXPECT_EQ(v->GetRealInst(0)->GetNumberOfVars(), 1);
  EXPECT_EQ(v->GetDiscreteInst(0)->GetNumberOfVars(), 2);
  EXPECT_EQ(unset->GetLegalInst(0)->GetNumberOfVars(), 0);
  EXPECT_TRUE(unset->IsEntirelyIllegalValue());
}

TEST(InstVector, ValueNamesAreReadInOrderAndEchoed) {
  RvVector_sptr scope = new RvVector_cl();
  char colours[] = "red green blue";
  scope->AddLast(new SingleRv_cl(Name_sptr("c"), DomainFactory_cl::CreateDomain(colours, " ", nullptr)));
  scope->AddLast(Var("n", 4));
  InstVector_sptr v = new InstVector_cl(scope);
  testing::internal::CaptureStdout();
  v->SetValue(Name_sptr("blue 3 ignored"));
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "InstVector_cl::SetValue Read value=blue\nInstVector_cl::SetValue Read value=3\n");
  EXPECT_EQ(Indices(v), (std::vector<int>{2, 3}));
}

TEST(InstVector, CopyingBetweenScopesByWalkAndByMapping) {
  RvVector_sptr scope = Scope({2, 3, 4, 5});
  InstVector_sptr source = new InstVector_cl(scope);
  source->ForceSetValue(1 * 60 + 2 * 20 + 3 * 5 + 4);
  RvVector_sptr part = new RvVector_cl();
  part->AddLast(scope->GetRv(1));
  part->AddLast(scope->GetRv(3));
  InstVector_sptr target = new InstVector_cl(part);
  source->Copy(target);
  EXPECT_EQ(Indices(target), (std::vector<int>{2, 4}));
  EXPECT_EQ(target->GetIndex(), 2 * 5 + 4);

  // A reversed target is out of the source's relative order: only the first match copies.
  RvVector_sptr reversed = new RvVector_cl();
  reversed->AddLast(scope->GetRv(3));
  reversed->AddLast(scope->GetRv(1));
  InstVector_sptr walked = new InstVector_cl(reversed);
  source->Copy(walked);
  EXPECT_EQ(Indices(walked), (std::vector<int>{4, -1}));
  InstVector_sptr mapped = new InstVector_cl(reversed);
  mapped->GetValuesFrom(source, RvMapping_sptr());
  EXPECT_EQ(Indices(mapped), (std::vector<int>{4, 2}));
  RvMapping_sptr mapping = new RvMapping_cl(*reversed, *scope, 0);
  EXPECT_TRUE(mapping->IsMappingCorrect(reversed, scope));
  EXPECT_EQ(mapping->GetIndex(0), 3);

  // Id order lets the mapping be merged in one pass; absent variables map to -1.
  RvMapping_sptr merged = new RvMapping_cl(*scope, *part, 1);
  EXPECT_EQ(merged->GetIndex(0), -1);
  EXPECT_EQ(merged->GetIndex(1), 0);
  EXPECT_EQ(merged->GetIndex(3), 1);
  EXPECT_TRUE(merged->IsMappingCorrect(scope, part));
  RvMapping_sptr both = merged->Copy();
  both->Concat(mapping);
  EXPECT_EQ(both->GetSize(), 6);
  EXPECT_FALSE(both->IsMappingCorrect(scope, part));

  EXPECT_EQ(Indices(source->GetInsts(reversed)), (std::vector<int>{4, 2}));
  EXPECT_EQ(Indices(source->GetInstsBySortedRVs(part)), (std::vector<int>{2, 4}));
  EXPECT_EQ(Indices(reversed->SortInstVector(source)), (std::vector<int>{4, 2}));
  EXPECT_EQ(source->GetInst(scope->GetRv(2))->GetIndex(), 3);
  InstVector_sptr deep = new InstVector_cl(source);
  (*deep)[0]->SetValue(0);
  EXPECT_EQ((*source)[0]->GetIndex(), 1);
}

TEST(Sample, ProbabilityMultipliesUntilItIsUnknown) {
  Sample_sptr s = new Sample_cl(Scope({2}), 2.5, 0.5);
  s->MultProb(0.5);
  EXPECT_EQ(s->GetProb(), 0.25);
  s->MultProb(-3.0);
  EXPECT_EQ(s->GetProb(), -1.0);
  s->MultProb(0.5);
  EXPECT_EQ(s->GetProb(), -1.0);
  Sample_sptr copy = new Sample_cl(InstVector_sptr(s));
  EXPECT_EQ(copy->GetWeight(), 2.5);
  EXPECT_TRUE(Conv2Sample(VarsVector_sptr(copy)));
  EXPECT_FALSE(Conv2Sample(VarsVector_sptr(new InstVector_cl())));
}

TEST(Sample, PrintsWeightAndDisplaysFiveToALine) {
  Sample_sptr s = new Sample_cl(Scope({2, 2, 2, 2, 2, 2}), 1.5, 0.25);
  s->ForceSetValue(5);
  std::ostringstream out;
  s->PrintOs(out);
  EXPECT_EQ(out.str(), "v0=0 v1=0 v2=0 v3=1 v4=0 v5=1 Weight=1.5");
  testing::internal::CaptureStdout();
  s->Display();
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Sample, weight 1.5, prob 0.25:\nv0=0 v1=0 v2=0 v3=1 v4=0\nv5=1\n");
}
