// The FASTA-like reader in both modes, group operations and the group-wide sub-sequence counts.
#include "sequence/sequence_manager.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace {

// Writes text to a fresh file and returns its name.
Name_sptr WriteTemp(const std::string& text) {
  char path[] = "/tmp/vorn_seq_test_XXXXXX";
  int fd = mkstemp(path);
  EXPECT_GE(fd, 0);
  EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  close(fd);
  return Name_sptr(path);
}

// Every sequence as "name=letters;" in group order.
std::string Dump(const SequenceManager_cl& group) {
  std::ostringstream out;
  for (SequenceManager_cl::Iterator_cl it(&group); it.NotNull(); ++it) {
    out << (*it)->GetName() << "=";
    (*it)->WriteSequence(out, group.GetAlphabet(), 0, (*it)->GetLength() - 1);
    out << ";";
  }
  return out.str();
}

std::string Load(const std::string& text, int preload, const std::string& list = "") {
  Name_sptr file = WriteTemp(text);
  Name_sptr listFile = list.empty() ? Name_sptr() : WriteTemp(list);
  SequenceManager_cl group(Name_sptr("g"), file, Name_sptr("ACGTNX"), 4, listFile, preload, true);
  std::string dumped = Dump(group);
  unlink(file.CStr());
  if (listFile) unlink(listFile.CStr());
  return dumped;
}

// Both modes must read the same records.
void ExpectRead(const std::string& text, const std::string& expected, const std::string& list = "") {
  EXPECT_EQ(Load(text, 1, list), expected);
  EXPECT_EQ(Load(text, 0, list), expected);
}

TEST(SequenceReader, RecordsHeadersCommentsAndBlankLines) {
  ExpectRead("no header here\nACGT\n", "");
  ExpectRead(">a\nAC\n\nGT\n#ignored\n>b\n>c\tdescription after the tab\nTTN\n", "a=ACGT;b=;c=TTN;");
  // '>' anywhere makes a header, named from behind the first '>'.
  ExpectRead("x>name>more\nAC\n", "name>more=AC;");
  // Letters before the first header belong to no record.
  ExpectRead("GGG\n>a\nC\n", "a=C;");
}

TEST(SequenceReader, LineEndsAndLetterCase) {
  ExpectRead(">a\r\nAC\r\nGT\r\n>b\r\nNN", "a=ACGT;b=NN;");
  ExpectRead(">last\nACGTX", "last=ACGTX;");
  ExpectRead(">low\nacgtN-*\n", "low=????N??;");
}

TEST(SequenceReader, VeryLongLinesJoinWhole) {
  std::string letters(1300000, 'A');
  for (size_t i = 0; i < letters.size(); i += 7) letters[i] = 'G';
  std::string name(700000, 'n');
  ExpectRead(">" + name + "\n" + letters + "\n" + letters, name + "=" + letters + letters + ";");
}

TEST(SequenceReader, ListFileKeepsOnlyNamedRecordsToTheEnd) {
  ExpectRead(">a\nAA\n>b\nCC\n>c\nGG\n>d\nTT\n", "b=CC;d=TT;", "b\nd\n");
  ExpectRead(">a\nAA\n>b\nCC\n", "a=AA;", "a\n");
}

TEST(SequenceReader, StreamingAndPreloadedAgreeOnRealPromoters) {
  Name_sptr file(VORN_TEST_DATA "/seq_dm3_upstream2000_slice.fa");
  SequenceManager_cl preloaded(Name_sptr("g"), file, Name_sptr("acgtnx"), 4, nullptr, 1, true);
  SequenceManager_cl streaming(Name_sptr("g"), file, Name_sptr("acgtnx"), 4, nullptr, 0, true);
  EXPECT_EQ(preloaded.GetNumSequences(), 20);
  EXPECT_EQ(preloaded.GetMaxSequenceLength(), 2000);
  EXPECT_EQ(streaming.GetNumSequences(), 0);
  EXPECT_FALSE(streaming.IsPreloaded());
  EXPECT_EQ(Dump(preloaded), Dump(streaming));
  // A second walk of a streaming group reads the file again.
  EXPECT_EQ(Dump(streaming), Dump(preloaded));
  Sequence_cl* first = preloaded.GetSequence(0);
  EXPECT_EQ(first->GetName(), Name_sptr("NM_078863_up_2000_chr2L_16764737_f chr2L:16764737-16766736"));
  EXPECT_EQ(preloaded.GetSequence(first->GetName()), first);
  EXPECT_EQ(preloaded.GetSequenceIndex(first->GetName()), 0);
  std::ostringstream written;
  preloaded.WriteFile(written);
  std::ifstream in(file.CStr());
  std::string line, original;
  while (std::getline(in, line)) original += line[0] == '>' ? "\n" + line + "\n" : line;
  EXPECT_EQ("\n" + written.str(), original + "\n");
}

TEST(SequenceReader, UnreadableFileStops) {
  EXPECT_DEATH(SequenceManager_cl(Name_sptr("g"), Name_sptr("/no/such.fa"), Name_sptr("ACGT"), 4, nullptr, 1, true),
               "^SequenceManager_cl::Iterator_cl Cannot open file /no/such.fa\n");
}

SequenceManager_cl* Group(const char* text) {
  Name_sptr file = WriteTemp(text);
  auto* group = new SequenceManager_cl(Name_sptr("g"), file, Name_sptr("ACGTNX"), 4, nullptr, 1, true);
  unlink(file.CStr());
  return group;
}

TEST(SequenceManager, SubsetsCopyAndNameDuplicates) {
  SequenceManager_cl* group = Group(">a\nAC\n>b\nGGT\n>c\nT\n");
  Vector_tmpl<int> indices;
  for (int i : {1, 0, 1, 1}) indices.AddLast(i);
  SequenceManager_cl subset(group, Name_sptr("sub"), &indices);
  EXPECT_EQ(Dump(subset), "b=GGT;a=AC;b_DUP1=GGT;b_DUP2=GGT;");
  EXPECT_NE(subset.GetSequence(0), group->GetSequence(1));
  EXPECT_EQ(group->GetSequence(1)->GetName(), Name_sptr("b"));

  SequenceManager_cl* shared = group->GetSubsetByIndices(&indices);
  EXPECT_EQ(shared->GetSequence(0), group->GetSequence(1));
  SequenceManager_cl* copy = group->Copy();
  SequenceManager_cl* clone = group->Clone();
  EXPECT_EQ(copy->GetSequence(2), group->GetSequence(2));
  EXPECT_NE(clone->GetSequence(2), group->GetSequence(2));
  EXPECT_EQ(Dump(*clone), Dump(*group));
  delete shared;
  delete copy;
  delete clone;
  group->DeleteSequences();
  EXPECT_EQ(group->GetNumSequences(), 0);
  EXPECT_EQ(group->GetMaxSequenceLength(), 0);
  EXPECT_EQ(group->GetSequence(Name_sptr("a")), nullptr);
  delete group;
}

TEST(SequenceManager, AllSequencesOfALengthRunTheFirstPositionFastest) {
  SequenceManager_cl group(Name_sptr("all"), Name_sptr("ACGTNX"), 4, true);
  group.AddAllSequencesInLength(2);
  ASSERT_EQ(group.GetNumSequences(), 16);
  EXPECT_EQ(Dump(group).substr(0, 50), "AllSequences_SeqNum_0=AA;AllSequences_SeqNum_1=CA;");
  EXPECT_EQ(group.GetSequence(15)->GetName(), Name_sptr("AllSequences_SeqNum_15"));
  EXPECT_DEATH(group.AddAllSequencesInLength(40),
               "^SequenceManager_cl::AddAllSequencesInLength too many sequences of length 40\n");
}

TEST(SequenceManager, WindowsAboveAThresholdAndLinesJoined) {
  SequenceManager_cl group(Name_sptr("w"), Name_sptr("ACGTNX"), 4, true);
  Sequence_cl source(Name_sptr("src"), "AACCGT", 6, group.GetAlphabetTable());
  Vector_tmpl<double> scores, kept;
  for (double x : {0.5, 2.0, 3.0, 1.0, 9.0}) scores.AddLast(x);
  // Windows of 3 at offset 1 + i: i = 1 (CCG), i = 2 (CGT); i = 4 would pass the end.
  group.AddAllSubSequencesWithScoreAboveThresh(&source, 1, &scores, 2.0, 1, 3, &kept);
  EXPECT_EQ(Dump(group), "src=CGG;src=ACG;");
  EXPECT_EQ(kept.GetSize(), 2);
  Vector_tmpl<Name_sptr> lines;
  lines.AddLast(Name_sptr("AC"));
  lines.AddLast(Name_sptr("GT"));
  group.AddSequence(Name_sptr("joined"), lines);
  EXPECT_EQ(Dump(group), "src=CGG;src=ACG;joined=ACGT;");
}

// Sequences with a window within the mismatches of the seed, by brute force over whole sequences.
int CountContaining(const SequenceManager_cl& group, const std::string& seed, int mismatches) {
  auto complement = [](std::string s) {
    std::string out(s.rbegin(), s.rend());
    for (char& c : out) c = "TGCA"[std::string("ACGT").find(c)];
    return out;
  };
  int count = 0;
  for (int i = 0; i < group.GetNumSequences(); i++) {
    std::ostringstream text;
    group.GetSequence(i)->WriteSequence(text, group.GetAlphabet(), 0, group.GetSequence(i)->GetLength() - 1);
    std::string s = text.str();
    bool found = false;
    for (size_t p = 0; p + seed.size() <= s.size() && !found; p++)
      for (const std::string& w : {s.substr(p, seed.size()), complement(s.substr(p, seed.size()))}) {
        int d = 0;
        for (size_t k = 0; k < seed.size(); k++) d += w[k] != seed[k];
        found = found || d <= mismatches;
      }
    count += found;
  }
  return count;
}

TEST(SequenceManager, GroupCountsMatchBruteForce) {
  SequenceManager_cl* group = Group(">a\nACGTTGCA\n>b\nTTTTGGGG\n>c\nCCCCAAAA\n>d\nGATTACA\n");
  for (const char* seed : {"ACG", "CCC", "TTA", "GGGG"})
    for (int mismatches = 0; mismatches <= 1; mismatches++) {
      Sequence_cl s(Name_sptr("seed"), seed, static_cast<int>(strlen(seed)), group->GetAlphabetTable());
      EXPECT_EQ(group->GetCountOfSeqContainingMismatchedSubSequences(&s, mismatches, true, 1, 0, 0, nullptr,
                                                                     STRICT_COMPARISON),
                CountContaining(*group, seed, mismatches))
          << seed << " " << mismatches;
    }
  SequenceSet_tmpl<int>* common = group->GetCountOfSeqsContainingMismatchedSubSeqsToAllSubSeqsAboveThresh(
      0.75, 0, 3, true, 1, 0, 0, nullptr, STRICT_COMPARISON);
  std::map<std::string, int> found;
  for (auto* e : *common) {
    std::ostringstream text;
    e->iKey->WriteSequence(text, group->GetAlphabet(), 0, e->iKey->GetLength() - 1);
    found[text.str()] = e->iValue;
    EXPECT_GE(e->iValue, 3);
    EXPECT_EQ(e->iValue, CountContaining(*group, text.str(), 0));
  }
  // Every 3-mer of the group in at least 3 of the 4 sequences, on either strand.
  std::map<std::string, int> expected;
  for (int i = 0; i < group->GetNumSequences(); i++) {
    std::ostringstream text;
    group->GetSequence(i)->WriteSequence(text, group->GetAlphabet(), 0, group->GetSequence(i)->GetLength() - 1);
    for (size_t p = 0; p + 3 <= text.str().size(); p++) {
      std::string w = text.str().substr(p, 3);
      int n = CountContaining(*group, w, 0);
      if (n >= 3) expected[w] = n;
    }
  }
  for (auto& [kmer, n] : expected) EXPECT_EQ(found[kmer], n) << kmer;
  common->DeleteAllKeys();
  delete common;
  SequenceManager_cl empty(Name_sptr("e"), Name_sptr("ACGT"), 4, true);
  EXPECT_EQ(empty.GetCountOfSeqsContainingMismatchedSubSeqsToAllSubSeqsAboveThresh(0.5, 0, 3, true, 1, 0, 0, nullptr,
                                                                                   STRICT_COMPARISON),
            nullptr);
  delete group;
}

}  // namespace
