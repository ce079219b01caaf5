// Running pipelines in-process: loops, completion, loop counters in names, the repository and stops.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "pipeline/data_repository.h"
#include "pipeline/step_factory.h"
#include "pipeline/vorn_factory.h"
#include "pipeline/vorn_main.h"
#include "pipeline/vorn_run.h"
#include "pipeline/vorn_step.h"
#include "pipeline/xml_parser.h"

namespace fs = std::filesystem;

namespace {
// A step known only to these tests: appends its resolved File key and the loop counter to a
// journal, and reports itself complete only from its CompleteFrom-th run on.
class JournalStep_cl : public VornStep_cl {
 public:
  JournalStep_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
    iFile = iter->GetProperty("File");
    iter->GetIntProperty("CompleteFrom", &iCompleteFrom, 0);
  }
  void Run() override {
    PrintRunHeader("JournalStep_cl");
    iRuns++;
    iIsComplete = iRuns >= iCompleteFrom;
    Name_sptr file = iRun->Resolve(iFile);
    std::ofstream journal("journal.txt", std::ios::app);
    journal << iName << " " << file << " " << iRun->GetLoopIteration(LOOP_ITERATION) << "\n";
  }

 private:
  Name_sptr iFile;
  int iCompleteFrom = 0;
  int iRuns = 0;
};

VornStep_cl* MakeJournal(const char* type, PropertyTreeIter_cl* iter, VornRun_cl* run) {
  return std::string(type) == "Journal" ? new JournalStep_cl(iter, run) : nullptr;
}

// Each test runs in a scratch folder with the journal step known to the factory.
class PipelineRun : public ::testing::Test {
 protected:
  void SetUp() override {
    iOld = fs::current_path();
    iDir = fs::temp_directory_path() / ("vorn_pipeline_" + std::to_string(getpid()) + "_" +
                                        ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(iDir);
    fs::create_directories(iDir);
    fs::current_path(iDir);
    VornStepFactory_cl::SetTestStepMaker(MakeJournal);
  }
  void TearDown() override {
    VornStepFactory_cl::SetTestStepMaker(nullptr);
    fs::current_path(iOld);
    fs::remove_all(iDir);
  }
  std::string Run(const std::string& runBody) {
    std::ofstream("p.xml") << "<P><RunVec><Run Name='r'>" << runBody << "</Run></RunVec></P>";
    testing::internal::CaptureStderr();
    VornRunPipelineFile("p.xml");
    iStderr = testing::internal::GetCapturedStderr();
    std::ifstream in("journal.txt");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  }
  std::string iStderr;

 private:
  fs::path iOld, iDir;
};
}  // namespace

TEST_F(PipelineRun, NestedLoopsGiveTheInnermostCounter) {
  std::string journal = Run(
      "<Step Type='Journal' Name='before' File='a$(LoopIteration).txt'/>"
      "<Step Type='Loop' Name='outer' MaxIterations='2' MinIterations='2'>"
      "  <Step Type='Journal' Name='o' File='o$(LoopIteration)$(LoopIteration).txt'/>"
      "  <Step Type='Loop' Name='inner' MaxIterations='2' MinIterations='2'>"
      "    <Step Type='Journal' Name='i' File='i$(LoopIteration)_$(EMLoopIteration).txt'/>"
      "  </Step>"
      "</Step>");
  EXPECT_EQ(journal,
            "before a-1.txt -1\n"
            "o o0$(LoopIteration).txt 0\n"
            "i i0_-1.txt 0\n"
            "i i1_-1.txt 1\n"
            "o o1$(LoopIteration).txt 1\n"
            "i i0_-1.txt 0\n"
            "i i1_-1.txt 1\n");
  EXPECT_NE(iStderr.find("JournalStep_cl::Run Name=before\n"), std::string::npos);
}

TEST_F(PipelineRun, LoopEndsWhenCompleteAfterMinIterations) {
  // Complete from the third run: MinIterations 1 does not stop it earlier.
  EXPECT_EQ(Run("<Step Type='Loop' Name='l' MaxIterations='9'><Step Type='Journal' Name='s' CompleteFrom='3'/></Step>"),
            "s  0\ns  1\ns  2\n");
}

TEST_F(PipelineRun, LoopLimits) {
  // Always complete: the default MinIterations of 1 ends it after one pass, not at MaxIterations.
  EXPECT_EQ(Run("<Step Type='Loop' Name='l'><Step Type='Journal' Name='s'/></Step>"), "s  0\n");
  fs::remove("journal.txt");
  // Never complete: MaxIterations ends it; MinIterations above it changes nothing.
  EXPECT_EQ(Run("<Step Type='Loop' Name='l' MinIterations='7' MaxIterations='2'>"
                "<Step Type='Journal' Name='s' CompleteFrom='99'/></Step>"),
            "s  0\ns  1\n");
  fs::remove("journal.txt");
  // MaxIterations 0 runs nothing inside, and the steps behind the loop still run.
  EXPECT_EQ(Run("<Step Type='Loop' Name='l' MaxIterations='0'><Step Type='Journal' Name='in'/></Step>"
                "<Step Type='Journal' Name='after'/>"),
            "after  -1\n");
}

TEST_F(PipelineRun, IncompleteStepsDoNotStopTheList) {
  EXPECT_EQ(Run("<Step Type='Journal' Name='a' CompleteFrom='5'/><Step Type='Journal' Name='b'/>"), "a  -1\nb  -1\n");
}

TEST(ResolveTest, NullAndLongNames) {
  // A run with no steps, read from an empty element.
  std::string xml = "<Run Name='r'/>";
  VornRun_cl* run = nullptr;
  {
    testing::internal::CaptureStderr();
    XmlParser_cl parser;
    xercesc::DOMDocument* doc = parser.ParseBuffer(xml.data(), xml.size(), "run.xml");
    XmlIter_cl iter(doc->getDocumentElement());
    run = new VornRun_cl(&iter, nullptr);
    testing::internal::GetCapturedStderr();
  }
  EXPECT_TRUE(run->Resolve(Name_sptr()).IsNull());
  Name_sptr plain("plain.txt");
  EXPECT_EQ(run->Resolve(plain).Get(), plain.Get());  // unchanged names are the same object
  std::string longName(300, 'x');
  EXPECT_EQ(run->Resolve(Name_sptr((longName + "$(LoopIteration)").c_str()))->GetLength(), 255);
  EXPECT_STREQ(run->Resolve(Name_sptr("$(EMLoopIteration)$(LoopIteration)"))->GetText(), "-1-1");
  delete run;
}

namespace {
// Stand-ins for element classes of later subsystems, to watch which tables delete their objects.
int gDeleted = 0;
struct Tracked {
  explicit Tracked(const char* name) : iName(name) {}
  ~Tracked() { gDeleted++; }
  Name_sptr GetName() const { return iName; }
  Name_sptr iName;
};
}  // namespace

TEST(DataRepository, LaterObjectsShadowEarlierOnesAndOwningTablesDelete) {
  Tracked kept("m");
  {
    RepositoryTable_tmpl<Tracked> owning(true);
    RepositoryTable_tmpl<Tracked> borrowing(false);
    EXPECT_EQ(owning.GetEntry(Name_sptr("t")), nullptr);
    Tracked* first = new Tracked("t");
    Tracked* second = new Tracked("t");
    owning.AddLast(first->GetName(), first);
    owning.AddLast(second->GetName(), second);
    borrowing.AddLast(kept.GetName(), &kept);
    EXPECT_EQ(owning.GetSize(), 2);
    EXPECT_EQ(owning.GetEntry(Name_sptr("t")), second);
    EXPECT_EQ(owning[0], first);
    gDeleted = 0;
  }
  EXPECT_EQ(gDeleted, 2);
}

TEST(VornMainDeathTest, UsageAndStops) {
  char program[] = "vorn_learn";
  char* argv[] = {program, nullptr};
  EXPECT_EXIT(VornMain(1, argv), testing::ExitedWithCode(255), "^Usage: vorn_learn <vorn_xml_file>\n$");
}

TEST_F(PipelineRun, UnknownAndUnbuiltTypesStopWhileReading) {
  std::ofstream("u.xml") << "<P><RunVec><Run><Step Type='Journal' Name='ran'/><Step Type='Nope'/></Run></RunVec></P>";
  EXPECT_DEATH(VornRunPipelineFile("u.xml"), "Unrecognized step Nope\n");
  EXPECT_FALSE(fs::exists("journal.txt"));
  std::ofstream("n.xml") << "<P><RunVec><Run><Step Type='KNN'/></Run></RunVec></P>";
  EXPECT_EXIT(VornRunPipelineFile("n.xml"), testing::ExitedWithCode(255), "Step type KNN is not built yet\n");
  std::ofstream("t.xml") << "<P><RunVec><Run><Step Name='typeless'/></Run></RunVec></P>";
  EXPECT_DEATH(VornRunPipelineFile("t.xml"), "Unrecognized step \\(no Type\\)\n");
}

TEST(VornFactoryDeathTest, MotifFinderNames) {
  std::string xml = "<Step MotifFinder='Other'/>";
  XmlParser_cl parser;
  XmlIter_cl iter(parser.ParseBuffer(xml.data(), xml.size(), "f.xml")->getDocumentElement());
  EXPECT_DEATH(VornFactory_cl::CreateMotifFinder(&iter),
               "VornFactory_cl CreateMotifFinder Other\nUnrecognized motif finder Other\n");
  std::string plain = "<Step/>";
  XmlIter_cl defaulted(parser.ParseBuffer(plain.data(), plain.size(), "g.xml")->getDocumentElement());
  EXPECT_EXIT(VornFactory_cl::CreateMotifFinder(&defaulted), testing::ExitedWithCode(255),
              "VornFactory_cl CreateMotifFinder Orlith\nThe Orlith motif finder is not built yet\n");
}
