// Loading promoter sequences in both modes and enumerating all 8-mers on both strands.
#include <benchmark/benchmark.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "sequence/sequence_manager.h"

namespace {

// The 26,454 dm3 promoters that Debian's r-bioc-biostrings ships; without it the slice of the tests.
constexpr const char* kPackaged = "/usr/lib/R/site-library/Biostrings/extdata/dm3_upstream2000.fa.gz";
constexpr const char* kSlice = VORN_TEST_DATA "/seq_dm3_upstream2000_slice.fa";

// The plain-text input, unpacked once into a temporary file when the package is installed.
const std::string& InputFile() {
  static std::string file = [] {
    if (access(kPackaged, R_OK) != 0) return std::string(kSlice);
    std::string plain = "/tmp/vorn_bench_dm3_upstream2000_" + std::to_string(getpid()) + ".fa";
    std::string command = std::string("gzip -dc ") + kPackaged + " > " + plain;
    if (system(command.c_str()) != 0) abort();
    atexit([] { unlink(InputFile().c_str()); });
    return plain;
  }();
  return file;
}

long FileSize(const std::string& file) {
  struct stat info;
  return stat(file.c_str(), &info) == 0 ? info.st_size : 0;
}

// The promoters are in lower case.
SequenceManager_cl* Load(int preload) {
  return new SequenceManager_cl(Name_sptr("promoters"), Name_sptr(InputFile().c_str()), Name_sptr("acgtnx"), 4, nullptr,
                                preload, true);
}

void BM_LoadPreloaded(benchmark::State& state) {
  long sequences = 0;
  for (auto _ : state) {
    SequenceManager_cl* group = Load(1);
    sequences = group->GetNumSequences();
    delete group;
  }
  state.SetBytesProcessed(state.iterations() * FileSize(InputFile()));
  state.counters["sequences"] = static_cast<double>(sequences);
  state.SetLabel(InputFile() == kSlice ? "test slice" : "dm3 promoters");
}
BENCHMARK(BM_LoadPreloaded)->Unit(benchmark::kMillisecond);

void BM_StreamOnce(benchmark::State& state) {
  SequenceManager_cl* group = Load(0);
  long letters = 0;
  for (auto _ : state)
    for (SequenceManager_cl::Iterator_cl it(group); it.NotNull(); ++it) letters += (*it)->GetLength();
  benchmark::DoNotOptimize(letters);
  state.SetBytesProcessed(state.iterations() * FileSize(InputFile()));
  delete group;
}
BENCHMARK(BM_StreamOnce)->Unit(benchmark::kMillisecond);

// Every 8-mer window of both strands, each sequence's windows then counted into one set by content.
void BM_Enumerate8MersBothStrands(benchmark::State& state) {
  SequenceManager_cl* group = Load(1);
  SubSequencesParamsAndOutput_cl request;
  request.iWindowLength = 8;
  request.iBothStrands = true;
  long windows = 0;
  long distinct = 0;
  for (auto _ : state) {
    SequenceSet_tmpl<int> counts(1 << 17, 0);
    windows = 0;
    group->TraverseSubSeqs(Sequence_cl::GET_SUB_SEQUENCES_HASH, request, nullptr,
                           [&](int, Sequence2IndexVecs_cl* found, int) {
                             for (auto* e : *found) {
                               int n = (e->iValue->GetForward() ? e->iValue->GetForward()->GetSize() : 0) +
                                       (e->iValue->GetReverse() ? e->iValue->GetReverse()->GetSize() : 0);
                               windows += n;
                               int& count = counts.GetEntry(e->iKey);
                               if (&count == &counts.GetDefault())
                                 counts.Insert(e->iKey->Copy(), n);
                               else
                                 count += n;
                             }
                           });
    distinct = counts.GetSize();
    counts.DeleteAllKeys();
  }
  state.SetItemsProcessed(state.iterations() * windows);
  state.counters["windows"] = static_cast<double>(windows);
  state.counters["distinct"] = static_cast<double>(distinct);
  delete group;
}
BENCHMARK(BM_Enumerate8MersBothStrands)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
