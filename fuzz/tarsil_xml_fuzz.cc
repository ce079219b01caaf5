// Feeds arbitrary bytes to the viewer file reader: parse, read the model, copy it into fresh data.
#include <cstddef>
#include <cstdint>

#include "abort_road.h"
#include "data/vorn_data.h"
#include "export/tarsil_tree.h"
#include "pipeline/xml_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // The parser keeps the last document until the next parse; the data is deleted behind the guard.
  static XmlParser_cl* parser = new XmlParser_cl;
  static VornData_cl* store = nullptr;
  VORN_FUZZ_GUARDED({
    xercesc::DOMDocument* document = parser->ParseBuffer(reinterpret_cast<const char*>(data), size, "fuzz.xml");
    if (document && document->getDocumentElement()) {
      TarsilTree_cl tree(document->getDocumentElement());
      store = new VornData_cl;
      tree.Copy(store, Name_sptr("fuzz"));
    }
  });
  delete store;
  store = nullptr;
  return 0;
}
