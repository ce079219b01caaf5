// The enrichment report: corrections against direct computations, every print layout, reductions.
#include "eval/eval_formatter.h"

#include <gsl/gsl_cdf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "pipeline/missing.h"

namespace {

Name_sptr N(const char* text) { return Name_sptr(text); }

AttributeFormatter_cl* Hit(const char* attribute, double p, int k = 4, int n = 10, int K = 20, int NN = 200) {
  return new AttributeFormatter_cl(N(attribute), p, p, k, n, K, NN, nullptr);
}

std::string Print(EvalFormatter_cl& report, FormatType_cl format) {
  std::ostringstream out;
  report.Print(out, format);
  return out.str();
}

// A real-size case: 40 clusters of 25 to 103 genes out of 6000, 30 gene sets; the p-values are
// the upper hypergeometric tails, taken from GSL, of the counts given by a fixed formula.
struct Case {
  std::string cls, attribute;
  int k, n, K;
  double p;
};
constexpr int kGenes = 6000;

std::vector<Case> MakeCases() {
  std::vector<Case> cases;
  for (int c = 0; c < 40; c++)
    for (int a = 0; a < 30; a++) {
      int n = 25 + (c * 37) % 79, K = 30 + (a * 53) % 400;
      int k = (c * 7 + a * 11) % 13 + n * K / kGenes + 1;
      if (k > n || k > K) continue;
      double p = gsl_cdf_hypergeometric_Q(k - 1, K, kGenes - K, n);
      cases.push_back({"c" + std::to_string(c), "a" + std::to_string(a), k, n, K, p});
    }
  return cases;
}

EvalFormatter_cl* Report(const std::vector<Case>& cases, double alpha) {
  EvalFormatter_cl* report = new EvalFormatter_cl(kGenes, kGenes);
  for (const Case& c : cases)
    if (c.p <= alpha)
      report->Add(N(c.cls.c_str()), c.n, c.K, c.K,
                  new AttributeFormatter_cl(N(c.attribute.c_str()), c.p, c.p, c.k, c.n, c.K, kGenes, nullptr));
  return report;
}

// The kept (class, attribute) pairs read back from the rows layout, in printed order, with p-values.
std::vector<std::pair<std::string, double>> Rows(EvalFormatter_cl& report) {
  std::istringstream in(Print(report, FORMAT_OBJECT_MAJOR_ROWS));
  std::string line;
  std::getline(in, line);
  std::vector<std::pair<std::string, double>> rows;
  while (std::getline(in, line)) {
    std::istringstream fields(line);
    std::string cls, attribute, p;
    std::getline(fields, cls, '\t');
    std::getline(fields, attribute, '\t');
    std::getline(fields, p, '\t');
    rows.push_back({cls + "/" + attribute, std::stod(p)});
  }
  return rows;
}

}  // namespace

TEST(EvalFormatter, OurTailsMatchGsl) {
  for (const Case& c : MakeCases()) {
    double ours = std::exp(MathUtils::ComputeLogHyperPValue(c.k, c.n, c.K, kGenes));
    // The sum stops at the first term below 1% of what it holds.
    EXPECT_NEAR(ours, c.p, 0.02 * c.p) << c.cls << " " << c.attribute;
  }
}

TEST(EvalFormatter, CorrectionsKeepWhatADirectComputationKeeps) {
  std::vector<Case> cases = MakeCases();
  const double alpha = 0.05;
  int numTests = static_cast<int>(cases.size());
  std::vector<double> sorted;
  for (const Case& c : cases)
    if (c.p <= alpha) sorted.push_back(c.p);
  std::sort(sorted.begin(), sorted.end());
  double fdr = 0.0;
  for (size_t i = 0; i < sorted.size(); i++)
    if (sorted[i] * numTests / (i + 1) <= alpha) fdr = sorted[i];
  const std::pair<MultipleHypothesisCorrection_cl, double> corrections[] = {{MHC_FDR, fdr},
                                                                            {MHC_BONFERRONI, alpha / numTests}};
  for (auto [correction, threshold] : corrections) {
    EvalFormatter_cl* report = Report(cases, alpha);
    report->MultipleHypothesisCorrection(correction, alpha, numTests);
    std::vector<std::pair<std::string, double>> rows = Rows(*report);
    // Each class in order of first appearance, its rows ascending by p-value.
    std::vector<std::pair<std::string, double>> expected;
    for (int c = 0; c < 40; c++) {
      std::vector<std::pair<std::string, double>> of;
      for (const Case& k : cases)
        if (k.cls == "c" + std::to_string(c) && k.p <= threshold) of.push_back({k.cls + "/" + k.attribute, k.p});
      std::stable_sort(of.begin(), of.end(), [](auto& a, auto& b) { return a.second < b.second; });
      expected.insert(expected.end(), of.begin(), of.end());
    }
    ASSERT_EQ(rows.size(), expected.size()) << correction;
    ASSERT_GT(rows.size(), 3u);
    for (size_t i = 0; i < rows.size(); i++) {
      EXPECT_EQ(rows[i].first, expected[i].first);
      // Printed to six significant digits.
      EXPECT_NEAR(rows[i].second, expected[i].second, 5e-6 * expected[i].second);
    }
    EXPECT_EQ(report->GetSize(), static_cast<int>(expected.size()));
    delete report;
  }
}

TEST(EvalFormatter, CorrectionLimits) {
  std::vector<Case> cases = MakeCases();
  EvalFormatter_cl* report = Report(cases, 0.05);
  int size = report->GetSize();
  // No tests counted: Bonferroni keeps alpha; "None" never reduces.
  report->MultipleHypothesisCorrection(MHC_BONFERRONI, 0.05, 0);
  EXPECT_EQ(report->GetSize(), size);
  report->MultipleHypothesisCorrection(MHC_NONE, 1e-300, 1000000);
  EXPECT_EQ(report->GetSize(), size);
  // So many tests that no rank passes: the threshold is 0 and the report is empty.
  report->MultipleHypothesisCorrection(MHC_FDR, 1e-300, 1000000);
  EXPECT_EQ(report->GetSize(), 0);
  EXPECT_EQ(report->GetClasses().GetSize(), 0);
  delete report;
}

TEST(EvalFormatter, SparseLayout) {
  EvalFormatter_cl report(100, 5000);
  report.Add(N("m1"), 10, 20, 300, Hit("ribosome", 0.01));
  report.Add(N("m1"), 10, 99, 99, Hit("heat", 0.001, 5, 10, 30, 100));
  report.Add(N("m0"), 7, 20, 999, Hit("ribosome", 0.02, 3, 7));
  EXPECT_EQ(Print(report, FORMAT_OBJECT_MAJOR),
            "[Dataset Counts=100] [Global Counts=5000] \n\n"
            "m1 [Counts=10]\n"
            "    heat[0.001] [Counts=5] [Dataset True=99] [Global True=99]\n"
            "    ribosome[0.01] [Counts=4] [Dataset True=20] [Global True=300]\n"
            "m0 [Counts=7]\n"
            "    ribosome[0.02] [Counts=3] [Dataset True=20] [Global True=300]\n\n");
  EvalFormatter_cl unsized(-1, -1);
  unsized.Add(N("x"), 1, -1, -1, Hit("a", 0.5));
  EXPECT_EQ(Print(unsized, FORMAT_ATTRIBUTE_MAJOR), "\n\nx [Counts=1]\n    a[0.5] [Counts=4]\n\n");
}

TEST(EvalFormatter, EmptyReport) {
  EvalFormatter_cl report(10, -1);
  EXPECT_EQ(Print(report, FORMAT_OBJECT_MAJOR), "[Dataset Counts=10] \n\n\n");
  EXPECT_EQ(Print(report, FORMAT_OBJECT_MAJOR_ROWS), "");
  EXPECT_EQ(Print(report, FORMAT_MATRIX), "\t\n");
}

TEST(EvalFormatter, RowLayouts) {
  EvalFormatter_cl report(-1, -1);
  report.Add(N("m1"), 10, 20, 20, new AttributeFormatter_cl(N("set"), 0.001, 0.001, 5, 10, 20, 200, N("g1;;;g2")));
  report.Add(N("m1"), 10, 20, 20, Hit("down", -0.01));
  report.Add(N("m2"), 4, 0, 0, new TTestFormatter_cl(N("e1"), 0.25, -1.5, 4, 96, 0, 1.0, 0.5, 2.0, 0.25));
  report.Add(N("m3"), 4, 0, 0,
             new KolmogorovSmirnovFormatter_cl(N("e2"), 0.1, 0.4, 4, 96, 1, 2, 30, 1.5, 0.5));
  EXPECT_EQ(Print(report, FORMAT_ATTRIBUTE_MAJOR_ROWS),
            "Cluster name\tAnnotation\tPvalue\tLog-Pvalue\tk\tn\tK\tN\t% Cluster\t% Annotation\tMembers\n"
            "m1\tdown\t-0.01\t-2\t4\t10\t20\t200\t40\t20\t\n"
            "m1\tset\t0.001\t3\t5\t10\t20\t200\t50\t25\tg1;;;g2\n"
            "m2\te1\t0.25\t0.60206\t-1.5\t4\t96\tfalse\t1\t0.5\t2\t0.25\n"
            "m3\te2\t0.1\t1\t0.4\t4\t96\ttrue\t2\t30\t1.5\t0.5\n");
  std::ostringstream headers;
  report.GetEntry(N("m2"))->GetFormatter(0)->PrintRowHeader(headers);
  report.GetEntry(N("m3"))->GetFormatter(0)->PrintRowHeader(headers);
  EXPECT_EQ(headers.str(),
            "Cluster name\tAnnotation\tPvalue\tLog-Pvalue\tT\tCluster size\tAnnotation size\tCluster larger\t"
            "Cluster mean\tCluster std\tAnnotation mean\tAnnotation std\n"
            "Cluster name\tAnnotation\tPvalue\tLog-Pvalue\tD\tCluster size\tAnnotation size\tCluster larger\t"
            "Cluster index\tAnnotation index\tCluster value\tAnnotation value\n");
}

// The matrix layout follows hash order, so it is compared cell by cell through its keys.
TEST(EvalFormatter, MatrixLayoutByKey) {
  EvalFormatter_cl report(-1, -1);
  const char* classes[] = {"alpha", "beta", "gamma", "delta"};
  const char* attributes[] = {"go1", "go2", "go3"};
  std::map<std::pair<std::string, std::string>, std::string> expected;
  for (int c = 0; c < 4; c++)
    for (int a = 0; a < 3; a++) {
      if ((c + a) % 3 == 0) continue;
      double p = 0.001 * (c + 1) * (a + 1);
      report.Add(N(classes[c]), 5, 1, 1, Hit(attributes[a], p));
      std::ostringstream cell;
      cell << p;
      expected[{classes[c], attributes[a]}] = cell.str();
    }
  std::istringstream in(Print(report, FORMAT_MATRIX));
  std::string line, cell;
  std::getline(in, line);
  std::vector<std::string> header;
  std::istringstream h(line);
  while (std::getline(h, cell, '\t')) header.push_back(cell);
  ASSERT_EQ(header.size(), 4u);
  EXPECT_EQ(header[0], "");
  int lines = 0;
  while (std::getline(in, line)) {
    lines++;
    std::istringstream fields(line);
    std::string cls;
    std::getline(fields, cls, '\t');
    for (size_t a = 1; a < header.size(); a++) {
      std::getline(fields, cell, '\t');
      auto it = expected.find({cls, header[a]});
      EXPECT_EQ(cell, it == expected.end() ? "" : it->second) << cls << " " << header[a];
    }
  }
  EXPECT_EQ(lines, 4);
}

TEST(EvalFormatter, ReduceAndIdenticalClasses) {
  EvalFormatter_cl report(-1, -1);
  report.Add(N("m1"), 5, 7, 8, Hit("a", 0.01));
  report.Add(N("m1"), 5, 1, 1, Hit("b", 0.2));
  report.Add(N("m2"), 5, 1, 1, Hit("b", 0.3));
  report.Add(N("m2"), 5, 2, 2, Hit("c", -0.04));
  report.Add(N("m1"), 5, 2, 2, Hit("c", 0.04));
  report.Add(N("m2"), 5, 3, 3, Hit("d", 0.001));
  // b and c are both held by m1 and m2: only b, the first seen, stays.
  report.RemoveAttributesWithIdenticalClasses();
  EXPECT_EQ(report.GetSize(), 4);
  // |p| <= 0.05 keeps the depletion result too; m1 keeps a alone, m2 only d.
  report.Reduce(0.05);
  EXPECT_EQ(Print(report, FORMAT_OBJECT_MAJOR),
            "\n\nm1 [Counts=5]\n    a[0.01] [Counts=4] [Dataset True=7] [Global True=8]\n"
            "m2 [Counts=5]\n    d[0.001] [Counts=4] [Dataset True=3] [Global True=3]\n\n");
  NameSet_tmpl<int> only(10, -1);
  only.Insert(N("d"), 1);
  report.Reduce(1.0, &only);
  EXPECT_EQ(report.GetClasses().GetSize(), 1);
  EXPECT_EQ(report.GetClasses()[0], N("m2"));
}

TEST(EvalFormatter, LogPValue) {
  EXPECT_DOUBLE_EQ(LogPValue(0.001), 3.0);
  EXPECT_DOUBLE_EQ(LogPValue(-0.01), -2.0);
  EXPECT_DOUBLE_EQ(LogPValue(0.0), 0.0);
}

// Results become a real attribute per annotation over the microarray's genes; genes without a
// result stay missing, and classes that are not genes are left out.
TEST(EvalFormatter, CreateAttributes) {
  VornData_cl data;
  Vector_tmpl<Name_sptr> genes(4, nullptr), experiments(2, nullptr);
  for (const char* g : {"g0", "g1", "g2"}) genes.AddLast(N(g));
  experiments.AddLast(N("e0"));
  data.AddMicroarray(new Microarray_cl(N("m"), genes, experiments, 0.0));
  EvalFormatter_cl report(-1, -1);
  report.Add(N("g2"), 1, 1, 1, Hit("up", 0.25));
  report.Add(N("g0"), 1, 1, 1, Hit("down", 0.5));
  report.Add(N("not a gene"), 1, 1, 1, Hit("up", 0.125));
  report.CreateAttributes(GENE_ATTRIBUTES, N("results"), &data, N("m"));
  VornAttributeGroup_cl* group = data.GetAttributeGroup(N("results"));
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->GetNumAttributes(), 2);
  SpeciesAttributes_cl* values = data.GetAttributes(N("m"), GENE_ATTRIBUTES);
  int up = values->GetColumn(N("up")), down = values->GetColumn(N("down"));
  EXPECT_EQ(values->GetValue(2, up), 0.25);
  EXPECT_EQ(values->GetValue(0, down), 0.5);
  EXPECT_EQ(values->GetValue(1, up), kMissingReal);
  EXPECT_EQ(values->GetValue(0, up), kMissingReal);
}
