// Feeds arbitrary bytes to the pipeline reading road: parse, then build every run and step.
#include <cstddef>
#include <cstdint>

#include "abort_road.h"
#include "pipeline/step_factory.h"
#include "pipeline/vorn_reader.h"
#include "pipeline/vorn_step.h"
#include "pipeline/xml_parser.h"

namespace {
// Every type but Loop becomes a step that does nothing, so that reading is all that is exercised.
class IdleStep_cl : public VornStep_cl {
 public:
  IdleStep_cl(PropertyTreeIter_cl* iter, VornRun_cl* run) : VornStep_cl(iter, run) {
    int number;
    double real;
    int flag;
    iter->GetIntProperty("Int", &number, 0);
    iter->GetDoubleProperty("Real", &real, 0.0);
    iter->GetBooleanProperty("Flag", &flag, 0);
  }
  void Run() override {}
};

VornStep_cl* MakeIdle(const char* type, PropertyTreeIter_cl* iter, VornRun_cl* run) {
  if (type[0] == 'L' && type[1] == 'o' && type[2] == 'o' && type[3] == 'p' && type[4] == '\0') return nullptr;
  return new IdleStep_cl(iter, run);
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VornStepFactory_cl::SetTestStepMaker(MakeIdle);
  // Objects that must be freed even when the input takes the error road live outside the guard:
  // the parser keeps the last document until the next parse, the reader is deleted behind.
  static XmlParser_cl* parser = new XmlParser_cl;
  static VornReader_cl* reader = nullptr;
  VORN_FUZZ_GUARDED({
    xercesc::DOMDocument* document = parser->ParseBuffer(reinterpret_cast<const char*>(data), size, "fuzz.xml");
    XmlIter_cl iter(document->getDocumentElement());
    reader = new VornReader_cl;
    reader->Read(&iter);
  });
  delete reader;
  reader = nullptr;
  return 0;
}
