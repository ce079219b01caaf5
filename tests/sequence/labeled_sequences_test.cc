// Ranked labelled sequence sets, labelled alignment windows, reweighting and sampling.
#include "sequence/labeled_sequences.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "data/microarray.h"
#include "pipeline/random.h"
#include "sequence/labeled_aligned_sequences.h"

namespace {

SequenceManager_cl* Group(std::initializer_list<std::pair<const char*, const char*>> records) {
  auto* group = new SequenceManager_cl(Name_sptr("g"), Name_sptr("ACGTNX"), 4, true);
  for (auto& [name, text] : records)
    group->AddSequence(
        new Sequence_cl(Name_sptr(name), text, static_cast<int>(strlen(text)), group->GetAlphabetTable()));
  return group;
}

Microarray_cl* Labels(std::initializer_list<std::pair<const char*, double>> rows) {
  Vector_tmpl<Name_sptr> genes, experiments;
  for (auto& [name, value] : rows) genes.AddLast(Name_sptr(name));
  experiments.AddLast(Name_sptr("value"));
  auto* labels = new Microarray_cl(Name_sptr("labels"), genes, experiments, 0.0);
  int row = 0;
  for (auto& [name, value] : rows) labels->GetMatrix()->SetElement(row++, 0, value);
  return labels;
}

std::string Names(const SequenceManager_cl& group) {
  std::string names;
  for (int i = 0; i < group.GetNumSequences(); i++) names += std::string(group.GetSequence(i)->GetName().CStr()) + ",";
  return names;
}

TEST(LabeledSequences, RankedByLabelWithBinaryPositivesFirst) {
  SequenceManager_cl* group = Group({{"a", "AC"}, {"b", "GG"}, {"c", "TT"}, {"d", "CA"}});
  Microarray_cl* binary = Labels({{"a", 0.0}, {"b", 1.0}, {"zz", 1.0}, {"c", 1.0}, {"d", 0.0}});
  LabeledSequences_cl ranked(Name_sptr("set"), binary, group);
  EXPECT_EQ(ranked.GetNumSequences(), 4);  // the row zz names no sequence
  EXPECT_TRUE(ranked.IsBinary());
  EXPECT_EQ(ranked.GetNumOfPositiveSequences(), 2);
  EXPECT_EQ(ranked.GetLabel(0), 1.0);
  EXPECT_EQ(ranked.GetLabel(2), 0.0);
  EXPECT_EQ(ranked.GetSequence(Name_sptr("b")), group->GetSequence(1));  // shared, not copied

  Microarray_cl* graded = Labels({{"a", 0.5}, {"b", 2.0}, {"c", -1.0}, {"d", 1.0}});
  LabeledSequences_cl scores(Name_sptr("set"), graded, group);
  EXPECT_EQ(Names(scores), "b,d,a,c,");
  EXPECT_FALSE(scores.IsBinary());
  EXPECT_EQ(scores.GetNumOfPositiveSequences(), 0);
  EXPECT_EQ(scores.GetNumOfPositiveSequencesByThresh(0.5), 3);
  EXPECT_EQ(scores.GetNumOfPositiveSequencesByThresh(5.0), 0);
  delete binary;
  delete graded;
  delete group;
}

TEST(LabeledSequences, PositiveAndNegativeGroupsAndMasks) {
  SequenceManager_cl* positive = Group({{"p1", "ANNA"}, {"p2", "CCC"}});
  SequenceManager_cl* negative = Group({{"n1", "GNG"}});
  LabeledSequences_cl set(Name_sptr("pn"), positive, negative);
  EXPECT_EQ(Names(set), "p1,p2,n1,");
  EXPECT_EQ(set.GetNumOfPositiveSequences(), 2);
  EXPECT_EQ(set.GetLabel(2), 0.0);
  set.InitMasks(Name_sptr("N"));
  ASSERT_NE(set.GetMask(0), nullptr);
  EXPECT_EQ(set.GetMask(1), nullptr);
  std::ostringstream bits;
  set.GetMask(0)->Print(bits, "1", "0", "");
  EXPECT_EQ(bits.str(), "1001");
  EXPECT_FALSE(set.GetSequence(2)->IsNotMasked(0, 1, set.GetMask(2)));
  EXPECT_TRUE(set.GetSequence(2)->IsNotMasked(2, 2, set.GetMask(2)));
  delete positive;
  delete negative;
}

TEST(LabeledAlignedSequences, LabelsAreScaledByTheLargestAndWrittenAsAMicroarray) {
  SequenceManager_cl* group = Group({{"a", "ACGT"}, {"b", "AGGT"}, {"c", "TTGT"}});
  GaplessSequenceAlignment_cl alignment(Name_sptr("al"), group);
  LabeledAlignedSequences_cl set(&alignment, -1, -1);
  EXPECT_EQ(set.GetAlignmentStart(), 0);
  EXPECT_EQ(set.GetAlignmentEnd(), 3);
  Microarray_cl* labels = Labels({{"c", 4.0}, {"a", 2.0}});
  set.InitSequencesLabels(labels);
  EXPECT_EQ(set.GetLabel(0), 0.5);
  EXPECT_EQ(set.GetLabel(1), 0.0);
  EXPECT_EQ(set.GetLabel(2), 1.0);
  EXPECT_FALSE(set.IsBinary());
  EXPECT_EQ(set.GetLabelsSum(), 1.5);
  set.SetLabel(0, 1.0);
  EXPECT_EQ(set.GetLabelsSum(), 2.0);
  std::ostringstream written;
  set.WriteLabelsFile(written);
  EXPECT_NE(written.str().find("Label"), std::string::npos);
  EXPECT_NE(written.str().find("c\t1"), std::string::npos);
  Vector_tmpl<int>* positives = set.GetPositiveLabelsndices(1.0);
  EXPECT_EQ(positives->GetSize(), 2);
  delete positives;
  SequenceManager_cl* chosen = nullptr;
  LabeledAlignedSequences_cl* subset = set.GetPositiveLabelsSubset(Name_sptr("pos"), 1.0, chosen);
  EXPECT_EQ(subset->GetNumSequences(), 2);
  EXPECT_EQ(subset->GetAlignment()->GetSequence(1)->GetName(), Name_sptr("c"));
  EXPECT_TRUE(subset->IsBinary());
  delete subset;
  delete chosen;
  delete labels;
  delete group;
}

// Four two-letter sequences aligned whole, with the given labels.
struct FourLabeled {
  explicit FourLabeled(std::initializer_list<double> values)
      : group(Group({{"a", "AC"}, {"b", "AG"}, {"c", "TT"}, {"d", "GG"}})),
        alignment(Name_sptr("al"), group),
        set(&alignment, -1, -1) {
    Vector_tmpl<double> labels;
    for (double x : values) labels.AddLast(x);
    set.SetAllLabels(&labels);
  }
  ~FourLabeled() { delete group; }
  SequenceManager_cl* group;
  GaplessSequenceAlignment_cl alignment;
  LabeledAlignedSequences_cl set;
};

TEST(LabeledAlignedSequences, ReweightAndCumulativeWeights) {
  FourLabeled four({1.0, 0.0, 1.0, 0.0});
  LabeledAlignedSequences_cl& set = four.set;
  Vector_tmpl<double> coefficients;
  set.CalReweightCoefficients(0.1, 100.0, coefficients);
  // a = 0.1 * 100 / 2, b = 0.9 * 100 / 2.
  EXPECT_DOUBLE_EQ(coefficients[0], 5.0);
  EXPECT_DOUBLE_EQ(coefficients[1], 45.0);
  set.CalReweightCoefficients(-1.0, -1.0, coefficients);
  EXPECT_EQ(coefficients[3], 1.0);

  Vector_tmpl<double>* uniform = set.CalCumulativeProbLabelsVec(SAMPLE_UNIFORM);
  Vector_tmpl<double>* byLabel = set.CalCumulativeProbLabelsVec(SAMPLE_BY_LABELS);
  Vector_tmpl<double>* byLog = set.CalCumulativeProbLabelsVec(SAMPLE_BY_LOG_LABELS);
  EXPECT_DOUBLE_EQ((*uniform)[1], 0.5);
  EXPECT_EQ((*byLabel)[3], 2.0);
  EXPECT_NEAR((*byLog)[3], std::log(2 * std::exp(1.0) + 2), 1e-12);
  delete uniform;
  delete byLabel;
  delete byLog;
}

TEST(LabeledAlignedSequences, SamplingFollowsLabelsAndDropsExcludedDraws) {
  FourLabeled four({0.0, 3.0, 0.0, 1.0});
  LabeledAlignedSequences_cl& set = four.set;
  Random_cl::iGlobalRandomizer.Reset(3);
  Vector_tmpl<int>* drawn = set.SampleSequencesIndecis(4000, SAMPLE_BY_LABELS, nullptr);
  int counts[4] = {0, 0, 0, 0};
  for (int i = 0; i < drawn->GetSize(); i++) counts[(*drawn)[i]]++;
  EXPECT_EQ(counts[0] + counts[2], 0);
  EXPECT_NEAR(counts[1] / 4000.0, 0.75, 0.03);
  delete drawn;
  Vector_tmpl<int> excluded;
  excluded.AddLast(1);
  SequenceManager_cl* chosen = nullptr;
  LabeledAlignedSequences_cl* sample = set.SampleSequences(Name_sptr("s"), 50, SAMPLE_BY_LABELS, chosen, &excluded);
  EXPECT_LT(sample->GetNumSequences(), 50);
  for (int i = 0; i < sample->GetNumSequences(); i++) EXPECT_EQ(sample->GetLabel(i), 1.0);
  delete sample;
  delete chosen;
}

TEST(LabeledAlignedSequences, AllKmersOfALength) {
  SequenceManager_cl* kmers = nullptr;
  LabeledAlignedSequences_cl all(Name_sptr("k"), 3, Name_sptr("ACGT"), 4, kmers);
  EXPECT_EQ(all.GetNumSequences(), 64);
  EXPECT_EQ(all.GetAlignmentEnd(), 2);
  EXPECT_EQ(all.GetLabelsSum(), 64.0);
  Vector_tmpl<Vector_tmpl<int>*>* counts = all.GetSequenceCharsCounts();
  EXPECT_EQ((*(*counts)[1])[2], 16);
  counts->DeleteAll();
  delete counts;
  delete kmers;
}

}  // namespace
