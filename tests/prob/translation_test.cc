// Translations: the images of variables, scopes and assignments, both ways, and the variable table.
#include "prob/translation.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

SingleRv_sptr Var(const char* name) {
  std::string values = "a,b,c";
  return new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateDomain(values.data(), ",", nullptr));
}

// The pairs x -> y and z -> w, with a table holding all four variables.
struct Pairs {
  SingleRv_sptr x = Var("x"), y = Var("y"), z = Var("z"), w = Var("w");
  Translation_sptr translation = new Translation_cl();
  Pairs() {
    Id_cl ix(x->GetId()), iy(y->GetId()), iz(z->GetId()), iw(w->GetId());
    translation->AddAbsoluteCorresp(&ix, &iy);
    translation->AddRelativeCorresp(&iz, &iw);
    IntSet_tmpl<SingleRv_sptr>* table = new IntSet_tmpl<SingleRv_sptr>(8, SingleRv_sptr());
    for (const SingleRv_sptr& v : {x, y, z, w}) table->Insert(v->GetId(), v);
    translation->SetRvTable(table);
  }
};

}  // namespace

TEST(Translation, VariablesScopesAndAssignmentsTranslateBothWays) {
  Pairs p;
  EXPECT_EQ(p.translation->TranslateRv(p.x).Get(), p.y.Get());
  EXPECT_EQ(p.translation->TranslateRv(p.z).Get(), p.w.Get());
  EXPECT_EQ(p.translation->TranslateRv(p.y).Get(), p.y.Get());  // no pair: the variable itself
  RvVector_sptr scope = new RvVector_cl();
  for (const SingleRv_sptr& v : {p.x, p.z, p.y}) scope->AddLast(v);
  RvVector_sptr image = p.translation->TranslateRvVector(scope, 1);
  ASSERT_EQ(image->GetNumberOfVars(), 2);
  EXPECT_EQ(image->GetRv(1).Get(), p.w.Get());

  Sample_sptr sample = new Sample_cl(scope, 3.0, 0.5);
  sample->ForceSetValue(5);
  Sample_sptr moved = p.translation->TranslateSample(sample);
  std::ostringstream out;
  moved->PrintOs(out);
  EXPECT_EQ(out.str(), "y=a w=b y=c Weight=3");
  EXPECT_EQ(moved->GetProb(), 0.5);
  EXPECT_EQ(p.translation->TranslateInstVec(sample)->GetIndex(), 5);

  p.translation->SetDirection(TRANSLATION_BACKWARD);
  EXPECT_EQ(p.translation->TranslateRv(p.y).Get(), p.x.Get());
  EXPECT_EQ(p.translation->TranslateRv(p.x).Get(), p.x.Get());
  std::unique_ptr<Vector_tmpl<int>> all(p.translation->GatherRvs());
  std::unique_ptr<Vector_tmpl<int>> together(p.translation->GatherTogetherRvs());
  ASSERT_EQ(all->GetSize(), 2);
  EXPECT_EQ((*all)[0], p.y->GetId());
  EXPECT_EQ((*together)[0], p.w->GetId());

  RvVectorCont_cl scopes;
  scopes.AddLast(scope);
  std::unique_ptr<RvVectorCont_cl> images(p.translation->TranslateRvVectorCont(&scopes));
  EXPECT_EQ((*images)[0]->GetRv(2).Get(), p.x.Get());
}

TEST(Translation, AddingAPairDropsTheVariableTable) {
  Pairs p;
  SingleRv_sptr v = Var("v");
  Id_cl iv(v->GetId()), iz(p.z->GetId());
  p.translation->AddAbsoluteCorresp(&iz, &iv);
  EXPECT_EQ(p.translation->TranslateRv(p.x).Get(), p.x.Get());
  std::unique_ptr<Vector_tmpl<int>> individual(p.translation->GatherIndividualRvs());
  EXPECT_EQ(individual->GetSize(), 2);
}

TEST(TranslationDeathTest, DirectionsOtherThanForwardAndBackwardStop) {
  Translation_cl t;
  t.SetDirection(TRANSLATION_BACKWARD);
  EXPECT_DEATH(t.SetDirection(2), "^Invalid translation direction argument \\(was: 1, new: 2\\)\\.\n$");
}
