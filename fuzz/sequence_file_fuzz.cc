// Feeds arbitrary bytes to the FASTA-like reader in both modes and checks that they agree.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "abort_road.h"
#include "sequence/sequence_manager.h"

namespace {
std::string Dump(const SequenceManager_cl& group) {
  std::ostringstream out;
  group.WriteFile(out);
  return out.str();
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VORN_FUZZ_GUARDED({
    WriteFuzzFile("input.fa", data, size);
    SequenceManager_cl preloaded(Name_sptr("g"), Name_sptr("input.fa"), Name_sptr("ACGTNX"), 4, nullptr, 1, true);
    SequenceManager_cl streamed(Name_sptr("g"), Name_sptr("input.fa"), Name_sptr("ACGTNX"), 4, nullptr, 0, true);
    // The two modes share the reader but not the bookkeeping: they must give the same group.
    if (Dump(preloaded) != Dump(streamed)) abort();
    SubSequencesParamsAndOutput_cl request;
    request.iWindowLength = 3;
    request.iBothStrands = true;
    preloaded.TraverseSubSeqs(Sequence_cl::GET_SUB_SEQUENCES_HASH, request, nullptr,
                              [](int, Sequence2IndexVecs_cl*, int) {});
  });
  return 0;
}
