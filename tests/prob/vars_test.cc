// Variables, instantiations and scopes: identity by id, text forms, set algebra, joint sizes and type errors.
#include "prob/vars.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <sstream>
#include <string>

#include "prob/inst_vector.h"
#include "prob/single_inst.h"

namespace {

SingleRv_sptr Named(const char* name, const char* values, int ordinal = 0) {
  std::string text = values;
  NameDomain_sptr domain = Conv2NameDomain(DomainFactory_cl::CreateDomain(text.data(), ",", nullptr));
  domain->SetOrdinal(ordinal);
  return new SingleRv_cl(Name_sptr(name), domain);
}

SingleRv_sptr Real(const char* name, RealDomain_cl* domain) { return new SingleRv_cl(Name_sptr(name), domain); }

std::string Text(const VarsVector_sptr& v) {
  std::ostringstream out;
  v->PrintOs(out);
  return out.str();
}

std::string Ids(const VarsVector_sptr& v) {
  std::string s;
  for (int i = 0; i < v->GetNumberOfVars(); i++) s += v->GetVar(i)->GetName()->GetText();
  return s;
}

}  // namespace

TEST(SingleRv, IdsCountUpAndDecideIdentityAndOrder) {
  SingleRv_sptr a = Named("same", "x,y"), b = Named("same", "x,y");
  EXPECT_EQ(b->GetId(), a->GetId() + 1);
  EXPECT_FALSE(a->IsEqual(b));
  EXPECT_TRUE(a->IsLess(b));
  EXPECT_TRUE(a->IsEqual(a));
  DiscreteSingleInst_sptr first = new DiscreteSingleInst_cl(a, 1), second = new DiscreteSingleInst_cl(a, 0);
  EXPECT_TRUE(second->IsLess(first));
  EXPECT_FALSE(first->IsEqual(second));
  EXPECT_TRUE(first->IsEqual(new DiscreteSingleInst_cl(a, 1)));
  EXPECT_TRUE(first->IsLess(new DiscreteSingleInst_cl(b, 0)));
  EXPECT_EQ(a->GetHybridDomainSize(9), 2);
  EXPECT_EQ(Real("r", new RealDomain_cl())->GetHybridDomainSize(9), 9);
}

TEST(SingleRv, WritesItsKindInTheCpdStyle) {
  std::ostringstream discrete, ordinal, bounded, open, single;
  Named("d", "lo,hi")->WriteTypeInfo(discrete);
  EXPECT_EQ(discrete.str(), "    type = discrete[2]\n    {\n        \"lo\",\n        \"hi\"\n    };\n");
  Named("o", "a,b,c", 1)->WriteTypeInfo(ordinal);
  EXPECT_EQ(ordinal.str(), "    type = ordinal[3]\n    {\n        \"a\",\n        \"b\",\n        \"c\"\n    };\n");
  Real("r", new RealDomain_cl(-1.5, 2))->WriteTypeInfo(bounded);
  EXPECT_EQ(bounded.str(), "    type = continuous {\n        low = -1.5;\n        high = 2;\n    };\n");
  RealDomain_cl* upperOnly = new RealDomain_cl();
  upperOnly->SetUpper(3);
  Real("r", upperOnly)->WriteTypeInfo(open);
  EXPECT_EQ(open.str(), "    type = continuous {\n        high = 3;\n    };\n");
  SingleRv_sptr ints = new SingleRv_cl(Name_sptr("i"), new IntDomain_cl(4, 4));
  ints->WriteTypeInfo(single);
  EXPECT_EQ(single.str(), "    type = discrete[1]\n    {\n        \"4\"\n    };\n");
}

TEST(SingleRv, TextBecomesAnInstantiationOrNothing) {
  SingleRv_sptr names = Named("n", "a,7,b");
  char a[] = "b", digit[] = "1", named7[] = "7", bad[] = "x", big[] = "3", sign[] = "-1", empty[] = "";
  EXPECT_EQ(names->StrToInst(a)->GetIndex(), 2);
  EXPECT_EQ(names->StrToInst(digit)->GetIndex(), 1);
  EXPECT_EQ(names->StrToInst(named7)->GetIndex(), 1);  // the name wins over the digits
  EXPECT_TRUE(names->StrToInst(bad).IsNull());
  EXPECT_TRUE(names->StrToInst(big).IsNull());
  EXPECT_TRUE(names->StrToInst(sign).IsNull());
  EXPECT_TRUE(names->StrToInst(empty).IsNull());

  SingleRv_sptr ints = new SingleRv_cl(Name_sptr("i"), new IntDomain_cl(10, 12));
  char two[] = "2", ten[] = "10";
  EXPECT_EQ(ints->StrToInst(two)->GetIndex(), 2);
  EXPECT_TRUE(ints->StrToInst(ten).IsNull());  // digits are an index, not a value

  SingleRv_sptr real = Real("r", new RealDomain_cl(0, 1));
  char half[] = "0.5", two5[] = "2.5", word[] = "abc";
  EXPECT_EQ(real->StrToInst(half)->GetRealValue(), 0.5);
  EXPECT_TRUE(real->StrToInst(two5).IsNull());
  EXPECT_TRUE(real->StrToInst(word).IsNull());
}

TEST(SingleInst, LegalityMissingValuesAndPrinting) {
  SingleRv_sptr n = Named("n", "a,b");
  DiscreteSingleInst_sptr d = new DiscreteSingleInst_cl(n);
  EXPECT_EQ(d->GetIndex(), -1);
  EXPECT_FALSE(d->IsLegalValue());
  std::ostringstream out;
  d->PrintOs(out);
  d->SetLastValue();
  out << " ";
  d->PrintOs(out);
  d->SetMissing();
  EXPECT_TRUE(d->IsMissing());
  EXPECT_EQ(d->GetIndex(), INT_MIN);
  d->PrevInst();  // no bound check, and no overflow trap either
  EXPECT_EQ(d->GetIndex(), INT_MAX);

  RealSingleInst_sptr r = new RealSingleInst_cl(Real("r", new RealDomain_cl(0, 10)));
  EXPECT_FALSE(r->IsLegalValue());
  r->SetMissing();
  EXPECT_TRUE(r->IsMissing());
  EXPECT_FALSE(r->IsLegalValue());  // the flag is left alone
  r->SetValue(10.0);
  EXPECT_TRUE(r->IsLegalValue());
  out << " ";
  r->PrintOs(out);
  r->SetValue(10.5);
  EXPECT_FALSE(r->IsLegalValue());
  EXPECT_EQ(out.str(), "n=??? n=b r=10");
  SingleInst_sptr copy = r->Copy();
  EXPECT_TRUE(copy->IsEqual(r));
}

TEST(SingleInst, InitialisingAcrossKinds) {
  SingleRv_sptr bins = Named("b", "q1,q2,q3,q4");
  SingleRv_sptr x = Real("x", new RealDomain_cl(0, 8));
  DiscreteSingleInst_sptr d = new DiscreteSingleInst_cl(bins);
  RealSingleInst_sptr r = new RealSingleInst_cl(x);
  for (auto [value, bin] : std::vector<std::pair<double, int>>{{0, 0}, {1.99, 0}, {2, 1}, {7.9, 3}, {8, 3}}) {
    r->SetValue(value);
    d->GeneralInitialize(r, nullptr);
    EXPECT_EQ(d->GetIndex(), bin) << value;
  }
  d->SetValue(2);
  r->GeneralInitialize(d, nullptr);
  EXPECT_EQ(r->GetRealValue(), 5.0);  // the middle of the third of four bins of [0, 8]
  Random_cl random(8);
  r->GeneralInitialize(d, &random);
  EXPECT_GE(r->GetRealValue(), 4.0);
  EXPECT_LT(r->GetRealValue(), 6.0);

  RealSingleInst_sptr wide = new RealSingleInst_cl(Real("w", new RealDomain_cl(100, 200)));
  r->SetValue(2.0);
  wide->GeneralInitialize(r, nullptr);
  EXPECT_EQ(wide->GetRealValue(), 125.0);
  RealSingleInst_sptr open = new RealSingleInst_cl(Real("o", new RealDomain_cl()));
  open->GeneralInitialize(r, nullptr);
  EXPECT_EQ(open->GetRealValue(), 2.0);
  DiscreteSingleInst_sptr other = new DiscreteSingleInst_cl(Named("c", "u,v,w,z"), 3);
  d->GeneralInitialize(other, nullptr);
  EXPECT_EQ(d->GetIndex(), 3);
}

TEST(SingleInstDeathTest, MisusingAKindStopsWithATypeError) {
  RealSingleInst_sptr r = new RealSingleInst_cl(Real("r", new RealDomain_cl()));
  EXPECT_DEATH(r->IsFirstValue(), "^Real IsFirstValue: type error\n$");
  EXPECT_DEATH(r->IsLastValue(), "^Real IsLastValue: type error\n$");
  EXPECT_DEATH(r->SetFirstValue(), "^Real SetFirstValue: type error\n$");
  EXPECT_DEATH(r->SetLastValue(), "^Real SetLastValue: type error\n$");
  EXPECT_DEATH(r->GetIndex(), "^Real GetIndex: type error\n$");
  EXPECT_DEATH(r->NextInst(), "^Real NextInst: type error\n$");
  EXPECT_DEATH(r->PrevInst(), "^Real PrevInst: type error\n$");
  DiscreteSingleInst_sptr d = new DiscreteSingleInst_cl(Named("d", "a"));
  EXPECT_DEATH(d->GetRealValue(), "^GetRealValue: type error\n$");
}

TEST(VarsVector, JointSizesAndTheirOverflowMarks) {
  RvVector_sptr empty = new RvVector_cl();
  EXPECT_EQ(empty->GetJointDomainSize(), 1);
  EXPECT_EQ(empty->GetHybridDomainSize(4), 1);
  RvVector_sptr scope = new RvVector_cl();
  for (int i = 0; i < 3; i++) scope->AddLast(new SingleRv_cl(Name_sptr("v"), new IntDomain_cl(1, 2000)));
  EXPECT_EQ(scope->GetJointDomainSize(), -1);
  EXPECT_EQ(scope->GetMaxJointDomainSize(), 8000000000LL);
  scope->AddLast(Real("r", new RealDomain_cl()));
  EXPECT_EQ(scope->GetHybridDomainSize(10), 80000000000LL);
  EXPECT_EQ(scope->GetNumberOfRealVars(), 1);
  EXPECT_FALSE(scope->IsPureDiscrete());
  for (int i = 0; i < 3; i++) scope->AddLast(new SingleRv_cl(Name_sptr("v"), new IntDomain_cl(1, 2000000)));
  EXPECT_EQ(scope->GetHybridDomainSize(10), -1);
}

TEST(VarsVector, SetAlgebraByIdKeepsThisOrder) {
  SingleRv_sptr a = Named("a", "0,1"), b = Named("b", "0,1"), c = Named("c", "0,1"), d = Named("d", "0,1");
  RvVector_sptr abcb = new RvVector_cl();
  for (auto v : {a, b, c, b}) abcb->AddLast(v);
  RvVector_sptr db = new RvVector_cl();
  db->AddLast(d);
  db->AddLast(b);
  EXPECT_EQ(Ids(abcb->GetIntersection(db, 0)), "bb");
  EXPECT_EQ(Ids(abcb->GetIntersection(db, 1)), "b");
  EXPECT_EQ(abcb->GetIntersectionSize(db, 1), 1);
  EXPECT_EQ(Ids(abcb->GetDifference(db, 0)), "ac");
  EXPECT_EQ(Ids(abcb->GetRest(SingleVar_sptr(b))), "ac");
  EXPECT_EQ(Ids(RvVector_cl::UnionRvVectors(abcb, db, 1, 1)), "abcd");
  EXPECT_EQ(Ids(RvVector_cl::UnionRvVectors(abcb, db, 0, 0)), "abcbdb");
  EXPECT_EQ(Ids(new RvVector_cl(VarsVector_sptr(abcb), 1)), "abc");
  EXPECT_EQ(Ids(db->SortRvVector(abcb)), "b");
  EXPECT_FALSE(abcb->NoRvDuplicates());

  RvVector_sptr bdb = new RvVector_cl();
  for (auto v : {b, d, b}) bdb->AddLast(v);
  EXPECT_TRUE(db->IsEqual(bdb));
  EXPECT_FALSE(db->IsEqualStrict(bdb));
  EXPECT_TRUE(abcb->IsSubset(db->GetIntersection(abcb, 0)));
  EXPECT_FALSE(abcb->IsSubset(db));
  EXPECT_TRUE(abcb->IsSubset(VarsVector_sptr()));
  EXPECT_TRUE(RvVector_sptr(new RvVector_cl())->IsEqual(VarsVector_sptr()));
  EXPECT_FALSE(abcb->IsEmptyIntersection(db));
  EXPECT_TRUE(db->GetDifference(abcb, 0)->IsEmptyIntersection(abcb));
  EXPECT_TRUE(abcb->IsLess(db));          // a's id is below d's
  EXPECT_TRUE(abcb->GetRest(SingleVar_sptr(d))->IsLess(abcb) == 0);
  RvVector_sptr ab = abcb->GetDifference(new RvVector_cl(SingleVar_sptr(c)), 1);
  EXPECT_EQ(Ids(ab), "ab");
  EXPECT_TRUE(ab->IsLess(abcb->GetDifference(new RvVector_cl(SingleVar_sptr(d)), 1)));  // a shorter prefix

  InstVector_sptr insts = new InstVector_cl(abcb);
  EXPECT_TRUE(abcb->IsEqualStrict(insts));
  EXPECT_EQ(insts->GetFirstEntry(c), 2);
  EXPECT_EQ(abcb->GetRvIndex("c"), 2);
  EXPECT_EQ(abcb->GetRvIndex("z"), -1);
  RvVectorCont_cl scopes;
  scopes.AddLast(abcb);
  EXPECT_TRUE(scopes.HasASupersetOf(db->GetIntersection(abcb, 1)));
  EXPECT_FALSE(scopes.HasASupersetOf(db));
  RvVectorCont_cl more;
  more.AddLast(bdb);
  more.AddLast(abcb->GetDifference(VarsVector_sptr(), 1));
  scopes.UnionRvVectorConts(more);
  EXPECT_EQ(scopes.GetSize(), 2);
  EXPECT_EQ(Ids(new RvVector_cl(&scopes, 1)), "abcd");
}

TEST(VarsVector, TextListsOfNamesAndValues) {
  RvVector_sptr scope = new RvVector_cl();
  scope->AddLast(Named("colour", "red,green"));
  scope->AddLast(Named("size", "s,m,l"));
  scope->AddLast(Real("x", new RealDomain_cl()));
  EXPECT_EQ(Ids(scope->StrToRVs("size;colour,nothing x")), "sizecolourx");
  EXPECT_EQ(Ids(scope->StrToRVs("size colour;x")), "size");  // ';' cuts only the first name
  InstVector_sptr insts = scope->StrToInstVec("colour=green unknown=red,size=xl x=0.25");
  EXPECT_EQ(Text(insts), "colour=green x=0.25");
  std::unique_ptr<NameSet_tmpl<SingleVar_sptr>> table(scope->CreateSymbolTable());
  EXPECT_EQ(table->GetNumBuckets(), 6);
  EXPECT_EQ(table->GetEntry("size")->GetId(), scope->GetRv(1)->GetId());
}

TEST(VarsVector, CpdRowPrefixes) {
  RvVector_sptr scope = new RvVector_cl();
  scope->AddLast(Named("one", "only"));
  std::ostringstream single;
  scope->WriteCpdStyle(single, 0);
  EXPECT_EQ(single.str(), "    ");
  scope->AddLast(Named("colour", "red,green"));
  scope->AddLast(Named("size", "s,m,l"));
  std::ostringstream plain, verbose;
  scope->WriteCpdStyle(plain, 4);
  scope->WriteVerboseCpdStyle(verbose, 4);
  EXPECT_EQ(plain.str(), "    (0, 1, 1) = ");
  EXPECT_EQ(verbose.str(), "    (only, green, m) = ");
}

TEST(CompositeRv, ComponentsMakeAProductDomainAndPrintOnTheirOwnLines) {
  RvVector_sptr parts = new RvVector_cl();
  parts->AddLast(Named("p", "a,b"));
  parts->AddLast(Named("q", "x,y,z"));
  CompositeRv_sptr pq = new CompositeRv_cl(Name_sptr("pq"), parts);
  EXPECT_EQ(pq->GetDomain()->GetDomainSize(), 6);
  EXPECT_TRUE(pq->IsComposite());
  EXPECT_EQ(pq->GetRvAt(1)->GetName(), Name_sptr("q"));
  std::ostringstream out;
  pq->PrintOs(out);
  EXPECT_EQ(out.str(), "pq\n p\n q\n");
  EXPECT_TRUE(Conv2CompositeRv(SingleVar_sptr(pq)));
  EXPECT_FALSE(Conv2CompositeRv(SingleVar_sptr(parts->GetRv(0))));
  char text[] = "a";
  EXPECT_DEATH(pq->StrToInst(text), "");
}
