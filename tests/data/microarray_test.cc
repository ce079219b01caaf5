// The expression matrix: loading with filters, names and their caches, each transform against hand
// computations, reducing, copying, shuffling and the file form read back.
#include "data/microarray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "pipeline/heap.h"
#include "data_test_helpers.h"

namespace {
const double M = kMissingReal;

// Genes g1..g3 by experiments e1..e4.
const char kTiny[] =
    "Gene\te1\te2\te3\te4\n"
    "g1\t1\t2\t3\t\n"
    "g2\t3.5\t-1\t2\t0\n"
    "g3\t4\t4\t4\t4\n";

std::unique_ptr<Microarray_cl> LoadText(const std::string& text, const NameSet_tmpl<int>* genes = nullptr,
                                        const NameSet_tmpl<int>* experiments = nullptr) {
  auto microarray = std::make_unique<Microarray_cl>(nullptr, Name_sptr("tiny"), WriteTempFile("m", text),
                                                    Name_sptr("Continuous"));
  microarray->Load(genes, experiments, Name_sptr());
  return microarray;
}

std::vector<double> Row(Microarray_cl& m, int gene) {
  std::vector<double> row;
  for (int e = 0; e < m.GetNumExperiments(); e++) row.push_back(m.GetMatrix()->GetElement(gene, e));
  return row;
}

std::vector<double> Column(Microarray_cl& m, int experiment) {
  std::vector<double> column;
  for (int g = 0; g < m.GetNumGenes(); g++) column.push_back(m.GetMatrix()->GetElement(g, experiment));
  return column;
}

void ExpectNear(const std::vector<double>& got, const std::vector<double>& expected) {
  ASSERT_EQ(got.size(), expected.size());
  for (size_t i = 0; i < got.size(); i++) {
    if (expected[i] == M) EXPECT_EQ(got[i], M) << i;
    else EXPECT_NEAR(got[i], expected[i], 1e-12) << i;
  }
}

std::string Names(const Vector_tmpl<Name_sptr>& names) {
  std::string text;
  for (int i = 0; i < names.GetSize(); i++) text += (i ? "," : "") + std::string(names[i]->GetText());
  return text;
}

std::string Written(const Microarray_cl& m, const Vector_tmpl<Name_sptr>* genes = nullptr,
                    const Vector_tmpl<Name_sptr>* experiments = nullptr) {
  std::ostringstream out;
  m.WriteFile(out, genes, experiments);
  return out.str();
}
}  // namespace

TEST(Microarray, LoadsNamesAndCellsWithFilters) {
  auto m = LoadText(kTiny);
  EXPECT_EQ(m->GetNumGenes(), 3);
  EXPECT_EQ(m->GetNumExperiments(), 4);
  EXPECT_EQ(Names(m->GetGeneNames()), "g1,g2,g3");
  EXPECT_EQ(Names(m->GetExperimentNames()), "e1,e2,e3,e4");
  ExpectNear(Row(*m, 0), {1, 2, 3, M});
  EXPECT_EQ(m->GetValueDomain()->GetType(), REAL_VALUE);
  auto filtered = LoadText(kTiny, Filter({"g3", "g1", "gX"}).get(), Filter({"e4", "e2"}).get());
  EXPECT_EQ(Names(filtered->GetGeneNames()), "g1,g3");
  EXPECT_EQ(Names(filtered->GetExperimentNames()), "e2,e4");
  ExpectNear(Row(*filtered, 1), {4, 4});
}

TEST(Microarray, AShellFromTheMicroarraySetHoldsNothingUntilLoaded) {
  Microarray_cl shell(Name_sptr("x"), Vector_tmpl<Name_sptr>(), Vector_tmpl<Name_sptr>(), 0.0);
  EXPECT_EQ(shell.GetNumGenes(), 0);
  EXPECT_EQ(Written(shell), "Gene\n");
  shell.ZeroTransformGenes();
  shell.PermuteByColumns(1.0);
  EXPECT_EQ(shell.GetMatrix()->GetNumRows(), 0);
}

TEST(Microarray, ANewMatrixIsFilledWithTheValue) {
  Vector_tmpl<Name_sptr> genes, experiments;
  genes.AddLast(Name_sptr("a"));
  genes.AddLast(Name_sptr("b"));
  experiments.AddLast(Name_sptr("x"));
  Microarray_cl m(Name_sptr("filled"), genes, experiments, 2.5);
  EXPECT_EQ(Written(m), "Gene\tx\na\t2.5\nb\t2.5\n");
  experiments.AddLast(Name_sptr("y"));
  m.ReInit(Name_sptr("again"), genes, experiments, M);
  EXPECT_EQ(m.GetName(), Name_sptr("again"));
  EXPECT_EQ(Written(m), "Gene\tx\ty\na\t\t\nb\t\t\n");
}

TEST(Microarray, IdsAndNameTablesAreCachedUntilTheShapeChanges) {
  auto m = LoadText("Gene\te1\tdup\tdup\ng\t1\t2\t3\nh\t4\t5\t6\ng\t7\t8\t9\n");
  NameSet_tmpl<int>* genes = m->GetGenesHash();
  EXPECT_EQ(genes, m->GetGenesHash());
  EXPECT_EQ(genes->GetEntry("g"), 2);  // the later row of a repeated name shadows the earlier one
  EXPECT_EQ(m->GetExperimentsHash()->GetEntry("dup"), 2);
  EXPECT_EQ(m->GetGeneIds()->GetSize(), 3);
  std::unique_ptr<Vector_tmpl<int>> some(m->CreateGeneIds(Filter({"g"}).get()));
  EXPECT_EQ(some->GetSize(), 2);
  EXPECT_EQ((*some)[1], 2);
  std::unique_ptr<NameSet_tmpl<int>> partial(m->CreateExperimentsHash(some.get()));
  EXPECT_EQ(partial->GetEntry("dup"), 2);  // only indices 0 and 2 are in it
  EXPECT_EQ(partial->GetEntry("e1"), 0);
  EXPECT_EQ(partial->GetSize(), 2);
  std::unique_ptr<Vector_tmpl<Name_sptr>> names(m->GetExperimentNames(some.get()));
  EXPECT_EQ(Names(*names), "e1,dup");
  IntSet_tmpl<int> keep(8, 1);
  keep.Insert(0, 0);
  m->Reduce(keep);
  EXPECT_EQ(Names(m->GetGeneNames()), "h,g");
  EXPECT_EQ(m->GetGenesHash()->GetEntry("g"), 1);
  EXPECT_EQ(m->GetGeneIds()->GetSize(), 2);
  ExpectNear(Row(*m, 1), {7, 8, 9});
}

TEST(Microarray, ReduceExperimentsReportsWhatItKeeps) {
  auto m = LoadText(kTiny);
  IntSet_tmpl<int> keep(8, 0);
  keep.Insert(1, 1);
  keep.Insert(3, 1);
  testing::internal::CaptureStderr();
  m->ReduceExperiments(keep);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Microarray::Reduce Keeping experiment 1: e2\nMicroarray::Reduce Keeping experiment 3: e4\n");
  EXPECT_EQ(Names(m->GetExperimentNames()), "e2,e4");
  ExpectNear(Row(*m, 1), {-1, 0});
}

TEST(Microarray, CopyKeepsTheFilteredGenesAndExperiments) {
  auto m = LoadText(kTiny);
  std::unique_ptr<Microarray_cl> copy(m->Copy(Filter({"g2"}).get(), nullptr));
  EXPECT_EQ(copy->GetName(), Name_sptr("tiny"));
  EXPECT_EQ(Names(copy->GetGeneNames()), "g2");
  ExpectNear(Row(*copy, 0), {3.5, -1, 2, 0});
  copy->GetMatrix()->SetElement(0, 0, 99);
  EXPECT_EQ(m->GetMatrix()->GetElement(1, 0), 3.5);
  EXPECT_EQ(copy->GetValueDomain().Get(), m->GetValueDomain().Get());
}

TEST(Microarray, CountsPresentCellsAboveOrBelowAThreshold) {
  auto m = LoadText(kTiny);
  EXPECT_EQ(m->GetNumFilterGenes(3, 0, 1), 2);  // the missing cell of g1 does not count
  EXPECT_EQ(m->GetNumFilterGenes(3, 0, 0), 1);
  EXPECT_EQ(m->GetNumFilterGenes(0, 3.5, 1), 2);
}

TEST(Microarray, ZeroCenterAndScaleTransformsOfGenes) {
  // g1: present 1, 2, 3: mean 2, population sd sqrt(14/3 - 4) = sqrt(2/3).
  double s = std::sqrt(2.0 / 3.0);
  auto zero = LoadText(kTiny);
  zero->ZeroTransform();
  ExpectNear(Row(*zero, 0), {-1 / s, 0, 1 / s, M});
  auto genes = LoadText(kTiny);
  genes->ZeroTransformGenes();
  ExpectNear(Row(*genes, 0), Row(*zero, 0));
  // g3 is constant: s is 0 and the cells become not-a-number, as they are left.
  EXPECT_TRUE(std::isnan(genes->GetMatrix()->GetElement(2, 0)));
  auto center = LoadText(kTiny);
  center->CenterTransformGenes();
  ExpectNear(Row(*center, 0), {-1, 0, 1, M});
  ExpectNear(Row(*center, 1), {2.375, -2.125, 0.875, -1.125});
  auto scale = LoadText(kTiny);
  scale->ScaleTransformGenes();
  ExpectNear(Row(*scale, 0), {1 / s, 2 / s, 3 / s, M});
}

TEST(Microarray, ZeroCenterAndScaleTransformsOfExperiments) {
  // e4: present 0 and 4: mean 2, sd 2.
  auto zero = LoadText(kTiny);
  zero->ZeroTransformExperiments();
  ExpectNear(Column(*zero, 3), {M, -1, 1});
  // e1: 1, 3.5, 4: mean 17/6, mean of squares 29.25/3.
  double m = 8.5 / 3, s = std::sqrt(29.25 / 3 - m * m);
  ExpectNear(Column(*zero, 0), {(1 - m) / s, (3.5 - m) / s, (4 - m) / s});
  auto center = LoadText(kTiny);
  center->CenterTransformExperiments();
  ExpectNear(Column(*center, 3), {M, -2, 2});
  auto scale = LoadText(kTiny);
  scale->ScaleTransformExperiments();
  ExpectNear(Column(*scale, 3), {M, 0, 2});
}

TEST(Microarray, RankTransformsNumberFromTheSmallest) {
  auto genes = LoadText(kTiny);
  genes->RankTransformGenes();
  ExpectNear(Row(*genes, 0), {1, 2, 3, M});
  ExpectNear(Row(*genes, 1), {4, 1, 3, 2});
  auto experiments = LoadText(kTiny);
  experiments->RankTransformExperiments();
  ExpectNear(Column(*experiments, 3), {M, 1, 2});
  ExpectNear(Column(*experiments, 1), {2, 1, 3});
}

TEST(Microarray, TiedValuesTakeRanksInTheOrderOfAHeapBuiltAtOnce) {
  // The cells are appended to a heap without keeping its order, which is built before extraction.
  std::vector<double> values = {1, 1, 0, 0, 0, 0, 0, 0};
  Heap_cl heap(8);
  for (int i = 0; i < 8; i++) heap.Insert(new IndexedValueHeapEntry_tmpl<double>(values[i], i), 0);
  std::vector<double> expected(8);
  for (int rank = 1; HeapEntry_cl* top = heap.ExtractMax(); rank++) {
    expected[static_cast<IndexedValueHeapEntry_tmpl<double>*>(top)->iIndex] = rank;
    delete top;
  }
  EXPECT_EQ(expected, (std::vector<double>{7, 8, 6, 1, 5, 4, 3, 2}));
  auto m = LoadText("Gene\ta\tb\tc\td\te\tf\tg\th\nx\t1\t1\t0\t0\t0\t0\t0\t0\n");
  m->RankTransformGenes();
  EXPECT_EQ(Row(*m, 0), expected);
}

TEST(Microarray, LeaveTopValuesKeepsTheTopRanksOfEachLine) {
  // g1 has one missing cell among four: the top two ranks of four are 3 and 4, and 4 is missing.
  auto genes = LoadText(kTiny);
  genes->LeaveTopValuesPerGene(2, -9);
  ExpectNear(Row(*genes, 0), {-9, -9, 3, -9});
  ExpectNear(Row(*genes, 1), {3.5, -9, 2, -9});
  // With k at least the line's length every present value stays and missing cells take the fill.
  auto all = LoadText(kTiny);
  all->LeaveTopValuesPerGene(4, 0);
  ExpectNear(Row(*all, 0), {1, 2, 3, 0});
  auto experiments = LoadText(kTiny);
  experiments->LeaveTopValuesPerExperiment(1, 0);
  ExpectNear(Column(*experiments, 0), {0, 0, 4});
  // One of three cells missing: the top rank of three is missing, so nothing is kept.
  ExpectNear(Column(*experiments, 3), {0, 0, 0});
}

TEST(Microarray, SpotBoundsClipPresentCells) {
  auto m = LoadText(kTiny);
  m->SetMaxSpot(3);
  m->SetMinSpot(0.5);
  ExpectNear(Row(*m, 0), {1, 2, 3, M});
  ExpectNear(Row(*m, 1), {3, 0.5, 2, 0.5});
  ExpectNear(Row(*m, 2), {3, 3, 3, 3});
}

TEST(Microarray, AverageConsecutiveExperimentsUsesATriangularWindowCutAtTheEnds) {
  auto m = LoadText("Gene\ta\tb\tc\td\nx\t1\t2\t3\t4\ny\t4\t0\t0\t8\n");
  m->AverageConsecutiveExperiments(3);  // h = 1: weights 1, 2, 1
  ExpectNear(Row(*m, 0), {4.0 / 3, 2, 3, 11.0 / 3});
  ExpectNear(Row(*m, 1), {8.0 / 3, 1, 2, 16.0 / 3});
  auto wide = LoadText("Gene\ta\tb\tc\td\nx\t1\t2\t3\t4\n");
  wide->AverageConsecutiveExperiments(5);  // h = 2: weights 1, 2, 3, 2, 1
  ExpectNear(Row(*wide, 0), {10.0 / 6, 18.0 / 8, 22.0 / 8, 20.0 / 6});
  for (int w : {1, 2, 0, -4}) {
    auto same = LoadText(kTiny);
    same->AverageConsecutiveExperiments(w);
    ExpectNear(Row(*same, 1), {3.5, -1, 2, 0});
  }
}

TEST(Microarray, WriteFileSelectsOrdersAndLeavesMissingCellsEmpty) {
  auto m = LoadText(kTiny);
  EXPECT_EQ(Written(*m), "Gene\te1\te2\te3\te4\ng1\t1\t2\t3\t\ng2\t3.5\t-1\t2\t0\ng3\t4\t4\t4\t4\n");
  Vector_tmpl<Name_sptr> genes, experiments;
  genes.AddLast(Name_sptr("g3"));
  genes.AddLast(Name_sptr("nope"));
  genes.AddLast(Name_sptr("g1"));
  experiments.AddLast(Name_sptr("e4"));
  experiments.AddLast(Name_sptr("e1"));
  EXPECT_EQ(Written(*m, &genes, &experiments), "Gene\te4\te1\ng3\t4\t4\ng1\t\t1\n");
  m->GetMatrix()->SetElement(1, 0, 1.0 / 3);
  Microarray_cl::iOutPrecision = 3;
  std::string precise = Written(*m, &genes, nullptr) + Written(*m);
  Microarray_cl::iOutPrecision = 0;
  EXPECT_NE(precise.find("g2\t0.333\t"), std::string::npos);
  EXPECT_NE(Written(*m).find("g2\t0.333333\t"), std::string::npos);
}

TEST(Microarray, TheWrittenFileReadsBackToTheSameMatrix) {
  auto m = LoadText(kTiny);
  m->ZeroTransformExperiments();
  std::string path = TempPath("round");
  Microarray_cl::iOutPrecision = 17;
  m->WriteFile(Name_sptr(path.c_str()), "test", nullptr, nullptr);
  Microarray_cl::iOutPrecision = 0;
  Microarray_cl again(nullptr, Name_sptr("again"), Name_sptr(path.c_str()), Name_sptr("Continuous"));
  again.Load(nullptr, nullptr, Name_sptr());
  EXPECT_EQ(Names(again.GetGeneNames()), Names(m->GetGeneNames()));
  EXPECT_EQ(Names(again.GetExperimentNames()), Names(m->GetExperimentNames()));
  for (int g = 0; g < m->GetNumGenes(); g++) EXPECT_EQ(Row(again, g), Row(*m, g));
}

TEST(Microarray, ShufflesMoveCellsButNotNames) {
  auto sorted = [](std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v;
  };
  auto m = LoadText(kTiny);
  auto original = LoadText(kTiny);
  m->GetRandom().Reset(11);
  m->PermuteByRows(1.0);
  for (int g = 0; g < 3; g++) EXPECT_EQ(sorted(Row(*m, g)), sorted(Row(*original, g)));
  m->PermuteByColumns(1.0);
  EXPECT_EQ(m->GetMatrix()->GetNumRows(), 3);
  m->PermuteTheRows(1.0);
  m->PermuteTheColumns(1.0);
  m->Permute(1.0);
  EXPECT_EQ(Names(m->GetGeneNames()), "g1,g2,g3");
  std::vector<double> all, before;
  for (int g = 0; g < 3; g++) {
    for (double x : Row(*m, g)) all.push_back(x);
    for (double x : Row(*original, g)) before.push_back(x);
  }
  EXPECT_EQ(sorted(all), sorted(before));
  auto still = LoadText(kTiny);
  still->Permute(0.0);
  for (int g = 0; g < 3; g++) EXPECT_EQ(Row(*still, g), Row(*original, g));
}

TEST(Microarray, FromTheMicroarraySetWithItsKeys) {
  std::string path = WriteTempFile("set", "ID\tNAME\ta\tb\nGWEIGHT\t\t1\t1\ng1\tkinase\t0.5\t\n")->GetText();
  auto microarray = [&] {
    // The keys of a MicroarraySet child, as the reader passes them.
    class Keys_cl : public PropertyTreeIter_cl {
     public:
      explicit Keys_cl(std::string file) : iFile(std::move(file)) {}
      void GetName(Property_cl*) override {}
      int IsNameEqual(const char*) override { return 0; }
      int GetProperty(const char* key, Property_cl* out) override {
        std::string value = std::string(key) == "Name"         ? "set"
                            : std::string(key) == "File"       ? iFile
                            : std::string(key) == "RowHeaders" ? "2"
                            : std::string(key) == "ColHeaders" ? "2"
                                                               : "";
        if (value.empty()) return 0;
        out->SetLength(static_cast<int>(value.size()));
        value.copy(out->GetText(), value.size());
        return 1;
      }
      int IsPropertyEqual(const char*, const char*) override { return 0; }
      void FirstChild() override {}
      void NextSibling() override {}
      int NotNull() override { return 0; }
      PropertyTreeIter_cl* Clone() override { return nullptr; }

     private:
      std::string iFile;
    } keys(path);
    return std::make_unique<Microarray_cl>(&keys);
  }();
  EXPECT_EQ(microarray->GetName(), Name_sptr("set"));
  EXPECT_EQ(microarray->GetNumGenes(), 0);
  EXPECT_EQ(microarray->GetDescriptor().iFirstRealColumn, 2);
  microarray->Load(nullptr, nullptr, Name_sptr());
  EXPECT_EQ(Names(microarray->GetGeneNames()), "g1");
  EXPECT_EQ(Names(microarray->GetExperimentNames()), "a,b");
  ExpectNear(Row(*microarray, 0), {0.5, M});
}
