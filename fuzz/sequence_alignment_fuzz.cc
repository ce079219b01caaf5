// Feeds arbitrary bytes to the alignment XML reader, then walks and writes what it built.
#include <cstddef>
#include <cstdint>
#include <sstream>

#include "abort_road.h"
#include "pipeline/xml_parser.h"
#include "sequence/sequence_alignment.h"

namespace {
SequenceManager_cl* TargetGroup() {
  auto* group = new SequenceManager_cl(Name_sptr("g"), Name_sptr("ACGTNX"), 4, true);
  const char* records[][2] = {{"a", "ACGTAC"}, {"b", "GGTTA"}, {"c", ""}, {"d", "NNXAC?T"}};
  for (auto& r : records)
    group->AddSequence(
        new Sequence_cl(Name_sptr(r[0]), r[1], static_cast<int>(strlen(r[1])), group->GetAlphabetTable()));
  return group;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static XmlParser_cl* parser = new XmlParser_cl;
  static SequenceManager_cl* group = TargetGroup();
  static SequenceAlignment_cl* alignment = nullptr;
  VORN_FUZZ_GUARDED({
    xercesc::DOMDocument* document = parser->ParseBuffer(reinterpret_cast<const char*>(data), size, "fuzz.xml");
    XmlIter_cl root(document->getDocumentElement());
    alignment = SequenceAlignment_cl::Create(&root, group);
    std::ostringstream out;
    alignment->WriteFile(out);
    alignment->GetFirstFullAlignmentPosition();
    // Columns are walked only for alignments of a sensible width.
    if (alignment->GetAlignmentLength() < 4096) {
      alignment->WriteSequenceFile(out, 0, -1, 0);
      alignment->WriteSequenceFile(out, 0, -1, 1);
    }
    alignment->ReverseComplement();
    alignment->RecomputeAlignmentLength();
  });
  delete alignment;
  alignment = nullptr;
  return 0;
}
