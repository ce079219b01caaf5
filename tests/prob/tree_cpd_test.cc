// Table and tree CPDs: tree evaluation against an equivalent table, the fast road of every split
// test with missing values, node order and names, checks, and the CPD text format both ways.
#include <gtest/gtest.h>

#include <climits>
#include <sstream>
#include <string>
#include <vector>

#include "prob/cpd_text.h"
#include "prob/factor.h"
#include "prob/gaussian_cpd.h"
#include "prob/multinomial.h"
#include "prob/table_cpd.h"
#include "prob/tree_cpd.h"

namespace {

SingleRv_sptr Var(const char* name, int size) {
  return new SingleRv_cl(Name_sptr(name), DomainFactory_cl::CreateIntegerDomain(0, size));
}

SingleRv_sptr RealVar(const char* name) { return new SingleRv_cl(Name_sptr(name), new RealDomain_cl()); }

RvVector_sptr Scope(std::initializer_list<SingleRv_sptr> vars) {
  RvVector_sptr scope = new RvVector_cl();
  for (const SingleRv_sptr& v : vars) scope->AddLast(v);
  return scope;
}

Multinomial_sptr RandomLine(Random_cl& random, const SingleRv_sptr& child) {
  Multinomial_sptr line = new Multinomial_cl(Scope({child}), 0, 0);
  for (int i = 0; i < line->GetSize(); i++) line->SetValue(0.05 + random.SampleUniform(), i);
  line->Normalize(1.0);
  return line;
}

Value_cl* NameValue(const char* text) { return new NameValue_cl(Name_sptr(text)); }

std::string Text(const BnCpd_sptr& cpd) {
  std::ostringstream out;
  cpd->WriteFile(out);
  return out.str();
}

// a (3 values), b (2), c (3) and a child y (2).
struct Fixture {
  SingleRv_sptr a = Var("a", 3), b = Var("b", 2), c = Var("c", 3), y = Var("y", 2);
  RvVector_sptr parents = Scope({a, b, c});
  RvVector_sptr all = Scope({a, b, c, y});

  // Root: (a >= "1" and b = "1"); under false a split on c's values; under true (a equal c).
  TreeCpd_sptr MakeTree(Random_cl& random) {
    TreeCpd_sptr tree = new TreeCpd_cl(y, parents);
    TreeCpdNode_cl* root = tree->GetRoot();
    tree->AddGTESplit(root, a, NameValue("1"), 1, 0);
    tree->AddEVSplit(root, b, NameValue("1"), 0);
    TreeCpdNode_cl* no = root->GetBranch(0);
    no->SetSplitRv(c);
    for (int v = 0; v < 3; v++) no->GetBranch(v)->SetCpd(RandomLine(random, y));
    TreeCpdNode_cl* yes = root->GetBranch(1);
    tree->AddSplit(yes, a, 0);
    yes->AddEQConjCondition(a, c);
    yes->GetBranch(0)->SetCpd(RandomLine(random, y));
    yes->GetBranch(1)->SetCpd(RandomLine(random, y));
    return tree;
  }
};

}  // namespace

TEST(TreeCpd, EvaluatesLikeTheTableItCompilesTo) {
  Random_cl random(5);
  Fixture f;
  TreeCpd_sptr tree = f.MakeTree(random);
  ASSERT_TRUE(tree->CheckTree());
  EXPECT_EQ(tree->GetNumLeafs(), 5);
  TableCpd_sptr table = new TableCpd_cl(f.y, f.parents);
  table->InitializeDiscrete(tree);

  // Rows of a wider data scope in which the parents sit in other columns.
  RvVector_sptr wide = Scope({Var("noise", 2), f.c, f.y, f.a, f.b});
  tree->SetRowScope(wide);
  InstVector_sptr inst = new InstVector_cl(f.all);
  for (int k = 0; k < f.all->GetJointDomainSize(); k++) {
    inst->SetValue(k);
    ASSERT_NEAR(tree->GetValue(inst), table->GetValue(inst), 1e-12);
    int row[5] = {1, (*inst)[2]->GetIndex(), (*inst)[3]->GetIndex(), (*inst)[0]->GetIndex(), (*inst)[1]->GetIndex()};
    ASSERT_EQ(tree->GetLeafId(row), tree->FindLeaf(inst)->GetLeafNum());
  }
  // The joint tables of both CPDs agree cell by cell.
  Factor_sptr fromTree = new Factor_cl(BnCpd_sptr(tree)), fromTable = new Factor_cl(BnCpd_sptr(table));
  EXPECT_LT(fromTree->MaxDifference(fromTable), 1e-12);
  EXPECT_NEAR(fromTree->GetEntriesSum(), 18.0, 1e-9);

  // A copy is deep: changing a leaf of the copy leaves the original.
  TreeCpd_sptr copy = Conv2TreeCpd(tree->Clone());
  Conv2Multinomial(copy->GetLeafCpd(0))->SetValue(0.0, 0);
  EXPECT_NE(Conv2Multinomial(tree->GetLeafCpd(0))->GetValue(0), 0.0);
}

TEST(TreeCpd, SampledChildFollowsTheLeaf) {
  Random_cl random(9);
  Fixture f;
  Measure_cl::SetGlobalRandSeed(77);
  TreeCpd_sptr tree = f.MakeTree(random);
  Sample_sptr sample = new Sample_cl(f.all);
  sample->SetValue(0);
  int ones = 0;
  const int n = 20000;
  for (int k = 0; k < n; k++) {
    tree->Sample(sample);
    ones += (*sample)[3]->GetIndex();
  }
  (*sample)[3]->SetValue(1);
  sample->SetChanged();
  double p = tree->GetValue(sample);
  EXPECT_NEAR(ones, n * p, 5.0 * std::sqrt(n * p * (1 - p)));
}

TEST(SplitTest, EveryTestGivesMinusOneOnAMissingValue) {
  Fixture f;
  DomainSplitTest_cl domain(f.c, 2, 3);
  for (int v = 0; v < 3; v++) domain.SetValueBranch(v, v);
  ConditionSplitTest_cl ev, gte, eq, conj;
  ev.AddEVCondition(1, f.b->GetDomain(), NameValue("1"));
  gte.AddGTECondition(0, f.a->GetDomain(), NameValue("1"), 0);
  eq.AddEqualRVCondition(0, 2);
  conj.AddEVCondition(1, f.b->GetDomain(), NameValue("1"));
  conj.AddGTECondition(0, f.a->GetDomain(), NameValue("2"), 1);
  const SplitTest_cl* tests[] = {&domain, &ev, &gte, &eq};

  const int M = kMissingRowValue;
  int full[3] = {2, 1, 2};
  EXPECT_EQ(domain.Test(full, nullptr), 2);
  EXPECT_EQ(ev.Test(full, nullptr), 1);
  EXPECT_EQ(gte.Test(full, nullptr), 0);
  EXPECT_EQ(eq.Test(full, nullptr), 1);
  EXPECT_EQ(conj.Test(full, nullptr), 1);
  for (int missing = 0; missing < 3; missing++) {
    int row[3] = {2, 1, 2};
    row[missing] = M;
    InstVector_sptr inst = new InstVector_cl(f.parents);
    for (int i = 0; i < 3; i++) (*inst)[i]->SetValue(full[i]);
    (*inst)[missing]->SetMissing();
    inst->SetChanged();
    for (const SplitTest_cl* t : tests) {
      RvVector_sptr tested = new RvVector_cl();
      t->GetTestRvs(f.parents, tested);
      int expect = tested->IsMember(SingleVar_sptr(f.parents->GetRv(missing))) ? -1 : t->Test(full, nullptr);
      EXPECT_EQ(t->Test(row, nullptr), expect) << "missing column " << missing;
      EXPECT_EQ(t->Test(inst), expect) << "missing variable " << missing;
    }
  }
  // A false clause does not hide a missing one.
  int falseThenMissing[3] = {M, 0, 0};
  EXPECT_EQ(conj.Test(falseThenMissing, nullptr), -1);
  // The columns translate positions into the row.
  short columns[3] = {4, 0, 2};
  int wide[5] = {0, 9, 1, 9, 2};
  EXPECT_EQ(eq.Test(wide, columns), 0);
  EXPECT_EQ(gte.Test(wide, columns), 0);
}

TEST(TreeCpd, TwoEvSplitsOnOneNodeFormOneConjunction) {
  Random_cl random(1);
  Fixture f;
  TreeCpd_sptr tree = new TreeCpd_cl(f.y, Scope({f.a}));
  TreeCpdNode_cl* root = tree->GetRoot();
  root->SetCpd(RandomLine(random, f.y));
  EXPECT_EQ(root->GetLeafNum(), 0);
  tree->AddEVSplit(root, f.b, NameValue("1"), 1);
  tree->AddEVSplit(root, f.a, NameValue("2"), 0);
  ASSERT_EQ(root->GetConditionSplit()->GetNumClauses(), 2);
  EXPECT_EQ(root->GetBranch(0)->GetLeafNum(), 0);
  EXPECT_EQ(root->GetBranch(1)->GetLeafNum(), -1);
  root->GetBranch(0)->SetCpd(RandomLine(random, f.y));
  root->GetBranch(1)->SetCpd(RandomLine(random, f.y));
  EXPECT_EQ(root->GetBranch(0)->GetLeafNum(), 0);
  EXPECT_EQ(root->GetBranch(1)->GetLeafNum(), 1);
  int both[2] = {2, 1}, one[2] = {2, 0};
  EXPECT_EQ(tree->GetLeafId(both), 1);
  EXPECT_EQ(tree->GetLeafId(one), 0);
  EXPECT_EQ(root->GetBranch(1)->GetHashValue(), Name_sptr("a = \"2\" AND b = \"1\""));
  EXPECT_EQ(root->GetBranch(0)->GetHashValue(), Name_sptr("a != \"2\" AND b != \"1\""));
  int hash = root->GetBranch(1)->GetIntHashValue();
  EXPECT_GE(hash, 0);
  EXPECT_LT(hash, 1000);
}

TEST(TreeCpd, NodeOrderCodesAndReducedDomains) {
  Random_cl random(2);
  Fixture f;
  TreeCpd_sptr tree = f.MakeTree(random);
  TreeCpdNode_cl* root = tree->GetRoot();
  TreeCpdNode_cl* no = root->GetBranch(0);
  TreeCpdNode_cl* yes = root->GetBranch(1);
  EXPECT_EQ(root->GetNodeCode(), 0);
  EXPECT_EQ(no->GetNodeCode(), 1);
  EXPECT_EQ(yes->GetNodeCode(), 2);
  EXPECT_EQ(yes->GetBranch(1)->GetNodeCode(), 2 + 6);
  EXPECT_TRUE(root->IsLess(no));
  EXPECT_TRUE(no->IsLess(yes));
  EXPECT_FALSE(yes->IsLess(no));
  EXPECT_TRUE(no->GetBranch(2)->IsLess(yes->GetBranch(0)));

  // Under "true": a >= 1 keeps values 1 and 2 of a, b = 1 keeps value 1 of b.
  DomainSubset_cl* subsetA = DomainSubset_cl::CreateDomainSubset(f.a);
  yes->GetBranch(0)->GetReducedDomain(f.a, subsetA, 1);
  EXPECT_FALSE(subsetA->InDomainSubset(0));
  EXPECT_TRUE(subsetA->InDomainSubset(1) && subsetA->InDomainSubset(2));
  DomainSubset_cl* subsetB = DomainSubset_cl::CreateDomainSubset(f.b);
  yes->GetReducedDomain(f.b, subsetB, 0);
  EXPECT_FALSE(subsetB->InDomainSubset(0));
  EXPECT_TRUE(subsetB->InDomainSubset(1));
  // Under the split on c, branch 1 leaves value 1 alone.
  DomainSubset_cl* subsetC = DomainSubset_cl::CreateDomainSubset(f.c);
  no->GetBranch(1)->GetReducedDomain(f.c, subsetC, 1);
  EXPECT_TRUE(subsetC->InDomainSubset(1));
  EXPECT_FALSE(subsetC->InDomainSubset(0) || subsetC->InDomainSubset(2));
  delete subsetA;
  delete subsetB;
  delete subsetC;
  EXPECT_TRUE(yes->HasBadAncestor(f.a));
  EXPECT_FALSE(no->HasBadAncestor(f.c));
  EXPECT_EQ(yes->GetAllTestRvs()->GetNumberOfVars(), 3);
}

TEST(TreeCpd, RemovingAConditionSplitRestoresALeaf) {
  Random_cl random(4);
  Fixture f;
  TreeCpd_sptr tree = f.MakeTree(random);
  int storage = tree->GetStorageSize(1);
  TreeCpdNode_cl* yes = tree->GetRoot()->GetBranch(1);
  yes->RemoveConditionSplit(1);
  EXPECT_TRUE(yes->IsLeaf());
  EXPECT_EQ(yes->GetLeafNum(), 4);
  EXPECT_LT(tree->GetStorageSize(1), storage);
  TreeCpdNode_cl* trial = tree->GetRoot()->GetBranch(0)->GetBranch(0)->CreateConditionSplitCopy();
  EXPECT_EQ(trial->GetBranch(0)->GetLeafNum(), tree->GetRoot()->GetBranch(0)->GetBranch(0)->GetLeafNum());
  EXPECT_EQ(tree->GetRoot()->GetBranch(0)->GetBranch(0)->GetNumChildren(), 0);
  EXPECT_EQ(trial->GetNodeCode(), tree->GetRoot()->GetBranch(0)->GetBranch(0)->GetNodeCode());
  EXPECT_EQ(trial->GetHashValue(), tree->GetRoot()->GetBranch(0)->GetBranch(0)->GetHashValue());
  EXPECT_EQ(tree->GetRoot()->GetBranch(0)->GetNumChildren(), 3);
}

TEST(TreeCpd, ChecksReportBadLeaves) {
  Random_cl random(6);
  Fixture f;
  TreeCpd_sptr tree = new TreeCpd_cl(f.y, Scope({f.a}));
  testing::internal::CaptureStderr();
  EXPECT_FALSE(tree->CheckTree());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: A node in the tree has neither a split nor a leaf cpd.\n");
  tree->GetRoot()->SetCpd(RandomLine(random, f.b));
  testing::internal::CaptureStderr();
  EXPECT_FALSE(tree->CheckTree());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error: A leaf cpd in the tree has wrong target rv.\n");
  DomainSplitTest_cl split(f.c, 0, 2);
  split.SetValueBranch(0, 0);
  split.SetValueBranch(2, 1);
  testing::internal::CaptureStderr();
  EXPECT_FALSE(split.CheckSplit(f.parents));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Error: When splitting on c, domain value #1 is not associated with any branch.\n");
  EXPECT_DEATH(DomainSplitTest_cl(RealVar("r"), 0, 2), "^Error: Trying to split on continuous RV r\n$");
}

TEST(TreeCpd, LineOfAnOverflowingParentScopeIsEmpty) {
  RvVector_sptr parents = new RvVector_cl();
  for (int i = 0; i < 4; i++) parents->AddLast(Var(("p" + std::to_string(i)).c_str(), 1000));
  Fixture f;
  TreeCpd_sptr tree = new TreeCpd_cl(f.y, Scope({f.a}));
  tree->AddParents(parents);
  EXPECT_TRUE(tree->GetLine(3).IsNull());
  EXPECT_TRUE(tree->IsEmpty());
}

TEST(CpdText, TreeWithoutSplitIsOneLeafInBraces) {
  Fixture f;
  TreeCpd_sptr tree = new TreeCpd_cl(f.y, new RvVector_cl());
  Multinomial_sptr line = new Multinomial_cl(Scope({f.y}), 0, 0);
  double cells[] = {0.25, 0.75};
  line->SetValues(cells, 2);
  tree->GetRoot()->SetCpd(line);
  EXPECT_EQ(Text(tree), "probability(y) tree\n{\n 0.25 , 0.75 ;\n}\n");
  std::ostringstream table;
  tree->WriteTable(table);
  EXPECT_EQ(table.str(), "{\n    0.25 , 0.75 ;\n}\n");
}

TEST(CpdText, TreeTextIsPinnedAndReadsBack) {
  Fixture f;
  TreeCpd_sptr tree = new TreeCpd_cl(f.y, f.parents);
  TreeCpdNode_cl* root = tree->GetRoot();
  tree->AddEVSplit(root, f.b, NameValue("1"), 0);
  tree->AddGTESplit(root, f.a, NameValue("2"), 0, 0);
  root->SetName(Name_sptr("module 3"));
  root->GetBranch(0)->SetSplitRv(f.c);
  Multinomial_sptr line = new Multinomial_cl(Scope({f.y}), 0, 0);
  double cells[] = {0.5, 0.5};
  line->SetValues(cells, 2);
  root->GetBranch(0)->GetBranch(0)->SetCpd(line);
  root->GetBranch(0)->GetBranch(2)->SetCpd(line);
  root->GetBranch(1)->SetCpd(line);
  const char* expected =
      "probability(y | a, b, c) tree\n"
      "{\n"
      " split on condition ( (b = \"1\") and\n"
      "(a <= \"2\") ) {  module 3\n"
      "  false   {\n"
      "   split on c {\n"
      "    in {\"0\"}     {\n"
      "     0.5  , 0.5  ;\n"
      "    }\n"
      "    in {\"1\"}     {\n"
      "     null;\n"
      "    }\n"
      "    default     {\n"
      "     0.5  , 0.5  ;\n"
      "    }\n"
      "   }\n"
      "  }\n"
      "  true   {\n"
      "   0.5  , 0.5  ;\n"
      "  }\n"
      " }\n"
      "}\n";
  EXPECT_EQ(Text(tree), expected);
  RvVector_sptr known = Scope({f.c, f.y, f.b, f.a});
  BnCpd_sptr back = CpdTextReader_cl::Read(std::string(expected), known);
  EXPECT_EQ(Text(back), expected);
  TreeCpd_sptr reread = Conv2TreeCpd(back);
  EXPECT_EQ(reread->GetRoot()->GetName(), Name_sptr("module 3"));
  EXPECT_EQ(reread->GetNumLeafs(), 3);
}

TEST(CpdText, TablesWithRealParentsAndGaussianLinesRoundTrip) {
  Random_cl random(8);
  Fixture f;
  SingleRv_sptr r = RealVar("r"), x = RealVar("x");
  TableCpd_sptr gauss = new TableCpd_cl(x, Scope({f.b, r}));
  for (int line = 0; line < 2; line++) {
    GaussianCpd_sptr g = new GaussianCpd_cl(x, Scope({r}));
    g->SetMean(line - 0.5);
    g->SetVariance(1.5 + line);
    g->SetWeight(0.25, 0);
    gauss->SetLine(line, g, 0);
  }
  gauss->SetFixed(1);
  std::string text = Text(gauss);
  EXPECT_EQ(text,
            "probability (x | b; r)\n{\n    (0) = gaussian { mean = -0.5; var = 1.5; weights = 0.25; };\n"
            "    (1) = gaussian { mean = 0.5; var = 2.5; weights = 0.25; };\n} fixed\n");
  RvVector_sptr known = Scope({f.a, f.b, f.c, f.y, r, x});
  EXPECT_EQ(Text(CpdTextReader_cl::Read(text, known)), text);

  TableCpd_sptr only = new TableCpd_cl(x, Scope({r}));
  EXPECT_EQ(Text(only), "probability (x | ; r)\n{\n    null;\n}\n");
  EXPECT_EQ(Text(CpdTextReader_cl::Read(Text(only), known)), Text(only));

  TableCpd_sptr discrete = new TableCpd_cl(f.y, Scope({f.a, f.b}));
  for (int line = 0; line < 6; line++) discrete->SetLine(line, RandomLine(random, f.y), 0);
  std::string once = Text(discrete);
  std::string twice = Text(CpdTextReader_cl::Read(once, known));
  EXPECT_EQ(twice, once);
  EXPECT_EQ(once.substr(0, 38), "probability (y | a, b)\n{\n    (0, 0) = ");

  TreeCpd_sptr realTree = new TreeCpd_cl(x, Scope({f.a, r}));
  realTree->AddGTESplit(realTree->GetRoot(), r, new RealValue_cl(0.5), 1, 0);
  GaussianCpd_sptr leaf = new GaussianCpd_cl(x, new RvVector_cl());
  realTree->GetRoot()->GetBranch(0)->SetCpd(leaf);
  realTree->GetRoot()->GetBranch(1)->SetCpd(leaf);
  std::string treeText = Text(realTree);
  EXPECT_EQ(Text(CpdTextReader_cl::Read(treeText, known)), treeText);
}

TEST(CpdText, FaultsNameTheLineAndWhatWasWrong) {
  Fixture f;
  RvVector_sptr known = Scope({f.a, f.b, f.y, RealVar("x")});
  auto read = [&](const char* text) { CpdTextReader_cl::Read(std::string(text), known); };
  EXPECT_DEATH(read("probability (z)\n{ 1 ; }"), "^CpdTextReader_cl line 1: unknown variable 'z'\n$");
  EXPECT_DEATH(read("probability (y | a)\n{\n    (0) = 0.5, 0.5;\n    (2) = 1, 0;\n"),
               "^CpdTextReader_cl line 4: the row prefix does not match row 1\n$");
  EXPECT_DEATH(read("probability (y)\n{\n 0.5, 0.2, 0.3;\n}"),
               "^CpdTextReader_cl line 3: a line has 3 values, the child has 2\n$");
  EXPECT_DEATH(read("probability (y)\n{\n 0.5, zero;\n}"), "^CpdTextReader_cl line 3: 'zero' is not a number\n$");
  EXPECT_DEATH(read("probability (y)\n{\n 0.5, 0.5;\n} extra"),
               "^CpdTextReader_cl line 4: unexpected 'extra' after the CPD\n$");
  EXPECT_DEATH(read("probability (x)\n{\n 0.5;\n}"), "^CpdTextReader_cl line 3: a real child needs a gaussian line\n$");
  EXPECT_DEATH(
      read("probability(y | a) tree\n{ split on condition ( (b = \"1\") ) {\n false { null; } true { null; } } }"),
      "^CpdTextReader_cl line 2: variable 'b' is not a parent\n$");
  EXPECT_DEATH(
      read("probability(y | a) tree\n{ split on condition ( (a = \"7\") ) {\n false { null; } true { null; } } }"),
      "^CpdTextReader_cl line 2: illegal value \"7\" for a\n$");
  EXPECT_DEATH(read("probability(y | a) tree\n{ split on condition ( (a = \"1) ) {"),
               "^CpdTextReader_cl line 2: a quoted value has no closing quotation mark\n$");
  EXPECT_DEATH(read("probability (y | a, a)\n{"), "^CpdTextReader_cl line 1: variable 'a' appears twice\n$");
  EXPECT_DEATH(read("probability (y)\n{\n 0.5, 0.5;\n"),
               "^CpdTextReader_cl line 4: expected '}', found the end of the text\n$");
  std::string deep = "probability(y) tree\n";
  for (int i = 0; i < 1500; i++) deep += "{ split on condition ( (y = \"1\") ) {\n false ";
  EXPECT_DEATH(CpdTextReader_cl::Read(deep, known), "tree nodes nest deeper than 1000\n$");
}
