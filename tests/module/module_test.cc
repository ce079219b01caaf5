// The relational model, module clusters in all their forms, tree node infos, the module graph and DeleteVars.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "data/vorn_data.h"
#include "data/vorn_step_delete.h"
#include "module/module_graph.h"
#include "module/vorn.h"
#include "module/vorn_cluster.h"
#include "pipeline/missing.h"
#include "pipeline/vorn_run.h"
#include "pipeline/xml_parser.h"

namespace {
std::string TempFile(const std::string& tag, const std::string& content) {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string path = testing::TempDir() + "vorn_module_" + std::to_string(getpid()) + "_" + test->name() + "_" + tag;
  std::ofstream(path) << content;
  return path;
}

// A microarray "m" of four genes and two experiments, a gene group "tf" of two 0/1 attributes with
// values and an experiment group "ex" with -1/0/1 values; a run over them.
class ModuleTest : public testing::Test {
 protected:
  void SetUp() override {
    auto* microarray = new Microarray_cl(nullptr, Name_sptr("m"),
                                         Name_sptr(TempFile("expr", "Gene\tx\ty\ng1\t1\t-2\ng2\t\t3\ng3\t2\t0\ng4\t-1\t1\n").c_str()),
                                         Name_sptr("Continuous"));
    microarray->Load(nullptr, nullptr, nullptr);
    iData.AddMicroarray(microarray);
    iGenes = new VornAttributeGroup_cl(Name_sptr("tf"), GENE_ATTRIBUTES, CreateValueDomain(Name_sptr("0;1")));
    iGenes->AddAttribute(Name_sptr("a"), iGenes->GetValueDomain());
    iGenes->AddAttribute(Name_sptr("b"), iGenes->GetValueDomain());
    iData.AddAttributeGroup(iGenes);
    auto* values = new SpeciesAttributes_cl;
    values->Load(Name_sptr(TempFile("tf", "a\tb\n1\t0\n1\t1\n0\t1\n\t0\n").c_str()), iGenes);
    iData.AddAttributeGroup(Name_sptr("m"), values, GENE_ATTRIBUTES);
    iExperiments = new VornAttributeGroup_cl(Name_sptr("ex"), EXPERIMENT_ATTRIBUTES, Domain_sptr());
    iExperiments->AddAttribute(Name_sptr("e"), CreateValueDomain(Name_sptr("Continuous")));
    iData.AddAttributeGroup(iExperiments);
    auto* experimentValues = new SpeciesAttributes_cl;
    experimentValues->Load(Name_sptr(TempFile("ex", "e\n-1\n1\n").c_str()), iExperiments);
    iData.AddAttributeGroup(Name_sptr("m"), experimentValues, EXPERIMENT_ATTRIBUTES);

    static XmlParser_cl* parser = new XmlParser_cl;
    const char run[] = "<Run Name='r'/>";
    iDoc = parser->ParseBuffer(run, sizeof(run) - 1, "run.xml");
    XmlIter_cl iter(iDoc->getDocumentElement());
    iRun = new VornRun_cl(&iter, &iData);
  }
  void TearDown() override { delete iRun; }

  Microarray_cl* Array() { return iData.GetMicroarray(Name_sptr("m")); }
  SpeciesVorn_cl* Species() { return iData.GetSpecies(Name_sptr("m")); }
  static std::string Written(const VornCluster_cl& cluster) {
    std::ostringstream out;
    cluster.WriteFile(out);
    return out.str();
  }

  VornData_cl iData;
  VornAttributeGroup_cl* iGenes;
  VornAttributeGroup_cl* iExperiments;
  xercesc::DOMDocument* iDoc;
  VornRun_cl* iRun;
};

Vector_tmpl<Name_sptr> Names(std::initializer_list<const char*> names) {
  Vector_tmpl<Name_sptr> out(4, nullptr);
  for (const char* name : names) out.AddLast(Name_sptr(name));
  return out;
}
}  // namespace

TEST_F(ModuleTest, RelationsNamesAndTypes) {
  Vorn_cl vorn(&iData);
  EXPECT_EQ(vorn.GetGeneRel(Name_sptr("m"))->GetAttributes().GetSize(), 2);
  EXPECT_EQ(vorn.GetExperimentRel(Name_sptr("m"))->GetAttributes().GetSize(), 1);
  EXPECT_EQ(vorn.FindRel(META_GENE_ATTRIBUTES, Name_sptr("m")), vorn.GetMetaGeneRel());
  EXPECT_EQ(vorn.GetLinkRel(Name_sptr("m")), nullptr);
  Attr_cl* expression = vorn.GetExpressionAttr(Name_sptr("m"));
  ASSERT_NE(expression, nullptr);
  EXPECT_STREQ(expression->GetName()->GetText(), "exp_level_m");
  EXPECT_FALSE(expression->GetRv()->IsDiscrete());

  Rel_cl link(Name_sptr("l_m"), LINK_ATTRIBUTES);
  testing::internal::CaptureStderr();
  EXPECT_EQ(vorn.GetRelType(&link), 6);
  EXPECT_STREQ(vorn.GetSpeciesName(&link)->GetText(), "l_m");
  EXPECT_STREQ(vorn.GetSpeciesName(vorn.GetGeneRel(Name_sptr("m")))->GetText(), "m");
  EXPECT_EQ(vorn.GetSpeciesName(vorn.GetMetaGeneRel())->GetLength(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Vorn_cl::GetRelType l_m ===> 6\nVorn_cl::GetSpeciesName l_m ===> l_m\n"
            "Vorn_cl::GetSpeciesName g_m ===> m\nVorn_cl::GetSpeciesName meta_genes ===> \n");
  EXPECT_TRUE(Vorn_cl::ExtractSpecies("g_m", "c_").IsNull());
}

TEST_F(ModuleTest, ExpressionCpdIsMadeOnceUnlessReplacedOrDetached) {
  Vorn_cl vorn(&iData);
  Vector_tmpl<Attr_cl*> parents(2, nullptr);
  parents.AddLast(iGenes->GetAttribute(Name_sptr("a")));
  BnCpd_sptr cpd = vorn.CreateExpressionCpd(Name_sptr("m"), &parents, 0, 0);
  EXPECT_EQ(cpd->GetParents()->GetNumberOfVars(), 1);
  EXPECT_EQ(vorn.CreateExpressionCpd(Name_sptr("m"), nullptr, 0, 0).Get(), cpd.Get());
  BnCpd_sptr detached = vorn.CreateExpressionCpd(Name_sptr("m"), nullptr, 0, 1);
  EXPECT_NE(detached.Get(), cpd.Get());
  EXPECT_EQ(detached->GetParents()->GetNumberOfVars(), 0);
  EXPECT_EQ(vorn.GetExpressionAttr(Name_sptr("m"))->GetCpd().Get(), cpd.Get());

  Vector_tmpl<Attr_cl*>* children = vorn.GetAttributeChildren(iGenes->GetAttribute(Name_sptr("a")));
  ASSERT_EQ(children->GetSize(), 1);
  EXPECT_EQ((*children)[0], vorn.GetExpressionAttr(Name_sptr("m")));
  EXPECT_EQ(vorn.GetAttributeChildren(iGenes->GetAttribute(Name_sptr("b")))->GetSize(), 0);
  EXPECT_NE(vorn.CreateExpressionCpd(Name_sptr("m"), nullptr, 1, 0).Get(), cpd.Get());
  EXPECT_DEATH(vorn.CreateExpressionCpd(Name_sptr("q"), nullptr, 0, 0), "Vorn_cl::CreateExpressionCpd Unknown microarray q");
}

TEST_F(ModuleTest, MembershipMatrixSkipsUnknownGenesAndJoinsRepeatedRows) {
  Matrix_sptr values = Matrix_cl::AllocateCorrectType(4, 3);
  double cells[4][3] = {{1, 0, 1}, {1, kMissingReal, 0}, {0, 1, 0.5}, {0, 1, 1}};
  for (int r = 0; r < 4; r++)
    for (int c = 0; c < 3; c++) values->GetRow(r)[c] = cells[r][c];
  Vector_tmpl<Name_sptr> genes = Names({"g3", "zz", "g1", "g3"});
  Vector_tmpl<Name_sptr> clusters = Names({"A", "B", "A"});
  VornCluster_cl known(Name_sptr("m"), clusters, genes, values, Array()->GetGenesHash());
  ASSERT_EQ(known.GetSize(), 3);
  EXPECT_EQ(Written(known), "A\tg3\t\nB\tg1\tg3\t\nA\tg3\t\n");
  EXPECT_EQ(known.GetClusterById(1)->GetName(), Name_sptr("B"));

  VornCluster_cl grown(Name_sptr("new"), clusters, genes, values, nullptr);
  EXPECT_EQ(Written(grown), "A\tg3\tzz\t\nB\tg1\tg3\t\nA\tg3\t\n");
  EXPECT_EQ(grown.GetGeneNames()->GetSize(), 3);
  EXPECT_EQ(grown.GetGeneNamesHash()->GetEntry(Name_sptr("g1")), 2);
}

TEST_F(ModuleTest, FileListsExperimentsBoundsAndGenes) {
  Vector_tmpl<Name_sptr> files = Names({});
  files.AddLast(Name_sptr(TempFile("one", "g2\nzz\ng2\ng4\n").c_str()));
  VornCluster_cl listed(Name_sptr("m"), files, Array()->GetGenesHash());
  ASSERT_EQ(listed.GetSize(), 1);
  EXPECT_EQ(listed[0]->GetNumGenes(), 2);
  EXPECT_TRUE(listed[0]->HasGene(Name_sptr("g4")));
  EXPECT_FALSE(listed[0]->HasGene(Name_sptr("g1")));

  // g2 has no value in x: it joins neither cluster of x.
  VornCluster_cl bounds(Array(), 1.0, -1.0);
  EXPECT_EQ(Written(bounds), "x-up\tg1\tg3\t\nx-down\tg4\t\ny-up\tg2\tg4\t\ny-down\tg1\t\n");
  EXPECT_TRUE(bounds[0]->HasExperiment(Name_sptr("x")));

  VornCluster_cl perGene(Array());
  EXPECT_EQ(perGene.GetSize(), 4);
  EXPECT_EQ(Written(perGene).substr(0, 7), "g1\tg1\t\n");
}

TEST_F(ModuleTest, AttributeGroupsGiveClustersOfValueOne) {
  Vorn_cl vorn(&iData);
  VornCluster_cl genes(Name_sptr("m"), &vorn, iGenes);
  ASSERT_EQ(genes.GetSize(), 2);
  for (int i = 0; i < 2; i++) {
    std::string name = genes[i]->GetName()->GetText();
    EXPECT_EQ(genes[i]->GetNumGenes(), 2) << name;
    EXPECT_EQ(genes[i]->HasGene(Name_sptr("g2")), 1) << name;
  }
  VornCluster_cl experiments(Name_sptr("m"), &vorn, iExperiments);
  ASSERT_EQ(experiments.GetSize(), 2);
  EXPECT_STREQ(experiments[0]->GetName()->GetText(), "e-up");
  EXPECT_TRUE(experiments[0]->HasExperiment(Name_sptr("y")));
  EXPECT_TRUE(experiments[1]->HasExperiment(Name_sptr("x")));
  VornCluster_cl unknown(Name_sptr("q"), &vorn, iGenes);
  EXPECT_EQ(unknown.GetSize(), 0);

  Vector_tmpl<int> ids(2, -1);
  ids.AddLast(1);
  ids.AddLast(0);
  ids.AddLast(7);
  std::unique_ptr<VornSingleCluster_cl> both(genes.BuildCluster(&ids));
  EXPECT_STREQ(both->GetName()->GetText(), "Cluster 1 0 7 ");
  EXPECT_EQ(both->GetNumGenes(), 4);
}

TEST_F(ModuleTest, TreeOfTwoValuedAttributesGivesAModulePerAttribute) {
  VornTreeNodeInfos_cl infos;
  VornCluster_cl clusters(Name_sptr("m"), Names({}), nullptr);
  testing::internal::CaptureStderr();
  TreeCpd_sptr tree = clusters.BuildTree(Species(), &infos);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "BuildTree adding split on attribute a\nBuildTree adding split on attribute b\n");
  Vorn_cl vorn(&iData);
  VornAttributeGroup_cl noAttributes(Name_sptr("none"), GENE_ATTRIBUTES, Domain_sptr());
  VornCluster_cl fromTree(Name_sptr("m"), &vorn, &noAttributes);
  fromTree.LoadFromTree(tree, GENE_ATTRIBUTES, &infos);
  // Branch 1 of each split holds the genes of value 1; the last branch 0 is empty.
  // Numbered depth first from the root's children, branch 0 first: inner node 3, then leaves 2, 1, 0.
  ASSERT_EQ(fromTree.GetSize(), 3);
  EXPECT_EQ(Written(fromTree), "Cluster 2\t\nCluster 1\tg2\tg3\t\nCluster 0\tg1\tg2\t\n");
  EXPECT_EQ(fromTree.GetClusterById(1), fromTree[1]);

  TreeCpd_sptr bare(new TreeCpd_cl(SingleRv_sptr(new SingleRv_cl(Name_sptr("v"), Domain_sptr(new RealDomain_cl))),
                                   RvVector_sptr(new RvVector_cl())));
  VornTreeNodeInfos_cl none;
  none.Set(bare->GetRoot(), new VornTreeNodeInfo_cl(Species()));
  VornCluster_cl empty(Name_sptr("m"), Names({}), nullptr);
  empty.LoadFromTree(bare, GENE_ATTRIBUTES, &none);
  EXPECT_EQ(empty.GetSize(), 0);
}

TEST_F(ModuleTest, PassingBranchZeroTakesEveryObject) {
  VornTreeNodeInfos_cl infos;
  VornCluster_cl clusters(Name_sptr("m"), Names({}), nullptr);
  SingleRv_sptr dummy(new SingleRv_cl(Name_sptr("d"), Domain_sptr(new RealDomain_cl)));
  TreeCpd_sptr tree(new TreeCpd_cl(dummy, RvVector_sptr(new RvVector_cl())));
  infos.Set(tree->GetRoot(), new VornTreeNodeInfo_cl(Species()));
  SpeciesAttributes_cl* genes = Species()->GetGeneAttributes();
  clusters.AddTreeSplit(Species(), tree, tree->GetRoot(), iGenes->GetAttribute(Name_sptr("a")),
                        genes->GetColumn(Name_sptr("a")), FALSE_CONDITION_PASS, &infos);
  VornTreeNodeInfo_cl* pass = infos.Get(tree->GetRoot()->GetBranch(1));
  VornTreeNodeInfo_cl* all = infos.Get(tree->GetRoot()->GetBranch(0));
  EXPECT_EQ(pass->GetFilter()->GetRows()->GetSize(), 2);
  EXPECT_EQ(all->GetFilter()->GetRows()->GetSize(), 4);
  EXPECT_FALSE(infos.OwnsRows(tree->GetRoot()));
  // Columns are borrowed from the root, whose own list stays.
  EXPECT_FALSE(pass->OwnsObjects(MATRIX_COLUMNS));
  EXPECT_EQ(pass->GetFilter()->GetColumns(), infos.Get(tree->GetRoot())->GetFilter()->GetColumns());
  Vector_tmpl<int>* rows = infos.Get(tree->GetRoot())->CreateObjectList(GENE_ATTRIBUTES, &infos);
  EXPECT_EQ(rows->GetSize(), 6);
  delete rows;
}

// A tree read from a file has no infos: refreshing the root passes the genes as the split did.
TEST_F(ModuleTest, RefreshReappliesASplitOfAReadTree) {
  VornTreeNodeInfos_cl grown;
  VornCluster_cl clusters(Name_sptr("m"), Names({}), nullptr);
  SingleRv_sptr dummy(new SingleRv_cl(Name_sptr("d"), Domain_sptr(new RealDomain_cl)));
  TreeCpd_sptr tree(new TreeCpd_cl(dummy, RvVector_sptr(new RvVector_cl())));
  grown.Set(tree->GetRoot(), new VornTreeNodeInfo_cl(Species()));
  clusters.AddTreeSplit(Species(), tree, tree->GetRoot(), iGenes->GetAttribute(Name_sptr("b")),
                        Species()->GetGeneAttributes()->GetColumn(Name_sptr("b")), FALSE_CONDITION_NORMAL, &grown);
  VornTreeNodeInfos_cl read;
  read.Set(tree->GetRoot(), new VornTreeNodeInfo_cl(Species()));
  read.Get(tree->GetRoot())->Refresh(Species(), tree->GetParents(), &read);
  for (int b = 0; b < 2; b++) {
    Vector_tmpl<int>* expected = grown.Get(tree->GetRoot()->GetBranch(b))->GetFilter()->GetRows();
    Vector_tmpl<int>* found = read.Get(tree->GetRoot()->GetBranch(b))->GetFilter()->GetRows();
    ASSERT_EQ(found->GetSize(), expected->GetSize()) << b;
    for (int i = 0; i < found->GetSize(); i++) EXPECT_EQ((*found)[i], (*expected)[i]);
  }
  EXPECT_EQ(read.Get(tree->GetRoot())->GetSplitType(), GENE_ATTRIBUTES);
  // A leaf has nothing to refresh.
  VornTreeNodeInfo_cl* leaf = read.Get(tree->GetRoot()->GetBranch(1));
  leaf->Refresh(Species(), tree->GetParents(), &read);
  EXPECT_EQ(leaf->GetFilter()->GetRows()->GetSize(), 2);
}

TEST(VornTreeNodeInfoTest, ValidityByComparisonAndDirection) {
  Vector_tmpl<double> two(2, 0.0);
  two.AddLast(1.0);
  two.AddLast(3.0);
  CompositeValue_cl object(two);
  Vector_tmpl<double> limits(2, 0.0);
  limits.AddLast(1.0);
  limits.AddLast(2.0);
  CompositeValue_cl thresholds(limits);
  EXPECT_TRUE(VornTreeNodeInfo_cl::IsValid(&object, &thresholds, COMPARISON_GTE, 1));
  EXPECT_FALSE(VornTreeNodeInfo_cl::IsValid(&object, &thresholds, COMPARISON_GTE, 0));
  EXPECT_FALSE(VornTreeNodeInfo_cl::IsValid(&object, &thresholds, COMPARISON_EQUAL, 1));
  Vector_tmpl<double> one(1, 0.0);
  one.AddLast(2.0);
  CompositeValue_cl single(one);
  RealValue_cl two5(2.5);
  IntValue_cl twoInt(2);
  EXPECT_FALSE(VornTreeNodeInfo_cl::IsValid(&single, &two5, COMPARISON_GTE, 1));
  EXPECT_TRUE(VornTreeNodeInfo_cl::IsValid(&single, &two5, COMPARISON_GTE, 0));
  EXPECT_TRUE(VornTreeNodeInfo_cl::IsValid(&single, &twoInt, COMPARISON_EQUAL, 0));
  NameValue_cl name(Name_sptr("x"));
  EXPECT_DEATH(VornTreeNodeInfo_cl::IsValid(&single, &name, COMPARISON_EQUAL, 0),
               "VornTreeNodeInfo_cl::IsValid Unexpected value type");
  EXPECT_DEATH(VornTreeNodeInfo_cl::IsValid(&single, &two5, static_cast<ComparisonType_cl>(3), 0),
               "VornTreeNodeInfo_cl::IsValid Unknown comparison 3");
}

TEST_F(ModuleTest, RunKeepsClustersByName) {
  VornCluster_cl* first = iRun->CreateVornClusterFromMicroarray(Name_sptr("m"));
  EXPECT_EQ(iRun->CreateVornClusterFromMicroarray(Name_sptr("m")), first);
  EXPECT_EQ(iRun->CreateVornClusterFromExperiments(Name_sptr("m"), 0.0, 0.0), first);
  iRun->DeleteVornCluster(Name_sptr("m"));
  EXPECT_EQ(iRun->GetVornCluster(Name_sptr("m")), nullptr);
  VornCluster_cl* second = iRun->CreateVornClusterFromExperiments(Name_sptr("m"), 0.0, 0.0);
  EXPECT_EQ(second->GetSize(), 4);
  EXPECT_EQ(iRun->CreateVorn(), iRun->CreateVorn());
  iRun->DeleteVornClusters();
  // The expression tree that the model starts from has no modules yet.
  VornCluster_cl* tree = iRun->CreateVornCluster(Name_sptr("m"), GENE_ATTRIBUTES);
  EXPECT_EQ(tree->GetSize(), 0);
  EXPECT_EQ(tree->GetGeneNames()->GetSize(), 4);
  EXPECT_DEATH(iRun->CreateVornClusterFromAttributes(Name_sptr("u"), Name_sptr("nope")),
               "VornRun_cl::CreateVornClusterFromAttributes Unknown attribute group nope");
}

// Module 1 (genes of a = 1) is regulated by g3 and module 2 (the rest) by g1: g3 lies in module
// 2 and g1 in module 1, so the two modules regulate each other.
TEST_F(ModuleTest, ModuleGraphFindsRegulatorModulesAndCycles) {
  VornTreeNodeInfos_cl infos;
  VornCluster_cl clusters(Name_sptr("m"), Names({}), nullptr);
  SingleRv_sptr expression(new SingleRv_cl(Name_sptr("d"), Domain_sptr(new RealDomain_cl)));
  TreeCpd_sptr tree(new TreeCpd_cl(expression, RvVector_sptr(new RvVector_cl())));
  infos.Set(tree->GetRoot(), new VornTreeNodeInfo_cl(Species()));
  SpeciesAttributes_cl* genes = Species()->GetGeneAttributes();
  clusters.AddTreeSplit(Species(), tree, tree->GetRoot(), iGenes->GetAttribute(Name_sptr("a")),
                        genes->GetColumn(Name_sptr("a")), FALSE_CONDITION_NORMAL, &infos);
  int inA = tree->GetRoot()->GetBranch(1)->GetId();
  int notA = tree->GetRoot()->GetBranch(0)->GetId();
  ModuleGraph_cl graph(tree, &infos, Array()->GetGenesHash(), genes);
  EXPECT_EQ(graph.GetNumNodes(), 2);
  EXPECT_EQ(graph.Parent2Node(Name_sptr("g1")), inA);
  EXPECT_EQ(graph.Parent2Node(Name_sptr("g3")), notA);
  EXPECT_EQ(graph.Parent2Node(Name_sptr("g4")), -1);  // missing value of a
  EXPECT_EQ(graph.Parent2Node(Name_sptr("TF9")), -1);
  EXPECT_EQ(graph.Node2LastGeneSplit(tree->GetRoot()), -1);

  graph.AddParent(Name_sptr("g3"), inA);
  EXPECT_TRUE(graph.IsAcyclic(Name_sptr("g1")));
  EXPECT_TRUE(graph.DoesPathExist(notA, inA));
  EXPECT_FALSE(graph.DoesPathExist(inA, notA));
  graph.AddParent(Name_sptr("g1"), notA);
  EXPECT_FALSE(graph.IsAcyclic(Name_sptr("g1")));
  EXPECT_TRUE(graph.DoesPathExist(inA, notA));
  EXPECT_TRUE(graph.IsAcyclic(Name_sptr("TF9")));
  graph.RemoveParent(Name_sptr("g1"), notA);
  EXPECT_FALSE(graph.DoesPathExist(inA, notA));

  graph.AddParent(Name_sptr("g1"), notA);
  std::ostringstream out;
  graph.Sample(out, 2, 3);
  std::string text = out.str();
  EXPECT_EQ(text.substr(0, text.find('\n')), "Gene\te_0\te_1\te_2\t");
  int lines = 0;
  for (char c : text) lines += c == '\n';
  EXPECT_EQ(lines, 1 + 2 * 3);
}

namespace {
// Scores a CPD by minus its number of parents, so that every deletion gains.
double ParentCountScore(BnCpd_sptr cpd, VornRun_cl*, Name_sptr) { return -cpd->GetParents()->GetNumberOfVars(); }
}  // namespace

TEST_F(ModuleTest, DeleteVarsDropsAtMostItsLimitAndStaysIncomplete) {
  Vorn_cl* vorn = iRun->CreateVorn();
  Vector_tmpl<Attr_cl*> parents(2, nullptr);
  parents.AddLast(iGenes->GetAttribute(Name_sptr("a")));
  parents.AddLast(iGenes->GetAttribute(Name_sptr("b")));
  vorn->CreateExpressionCpd(Name_sptr("m"), &parents, 0, 0);
  static XmlParser_cl* parser = new XmlParser_cl;
  auto step = [&](const std::string& xml) {
    xercesc::DOMDocument* doc = parser->ParseBuffer(xml.data(), xml.size(), "step.xml");
    XmlIter_cl iter(doc->getDocumentElement());
    return std::make_unique<VornStepDelete_cl>(&iter, iRun);
  };
  VornStepDelete_cl::iScorer = ParentCountScore;
  auto none = step("<Step Name='d0' MicroarrayName='m' AttributeGroup='tf' MaxAttsDel='0'/>");
  none->Run();
  EXPECT_EQ(none->IsComplete(), 0);
  EXPECT_EQ(iGenes->GetNumAttributes(), 2);

  auto one = step("<Step Name='d1' MicroarrayName='m' AttributeGroup='tf' MaxAttsDel='1'/>");
  testing::internal::CaptureStderr();
  one->Run();
  std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("Delete CreateDelList: nothing deleted score -2\n"), std::string::npos);
  EXPECT_NE(log.find("score diff (score - del_score) -1\n"), std::string::npos);
  EXPECT_EQ(one->IsComplete(), 0);
  EXPECT_EQ(iGenes->GetNumAttributes(), 1);
  EXPECT_EQ(Species()->GetGeneAttributes()->GetNumAttributes(), 1);
  EXPECT_EQ(Species()->GetGeneAttributes()->GetMatrix()->GetNumCols(), 1);
  Attr_cl* target = vorn->GetExpressionAttr(Name_sptr("m"));
  EXPECT_EQ(target->GetCpd()->GetParents()->GetNumberOfVars(), 1);
  EXPECT_EQ(target->GetParents().GetSize(), 1);
  EXPECT_EQ(vorn->GetGeneRel(Name_sptr("m"))->GetAttributes().GetSize(), 1);
  VornStepDelete_cl::iScorer = nullptr;
}
