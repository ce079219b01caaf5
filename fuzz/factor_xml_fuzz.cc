// Feeds arbitrary XML to the factor file reader; a table read without a fault sums to 1 or to nothing.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "abort_road.h"
#include "pipeline/xml_parser.h"
#include "prob/factor.h"

namespace {

void Check(XmlParser_cl* parser, const std::string& xml) {
  xercesc::DOMDocument* document = parser->ParseBuffer(xml.data(), xml.size(), "factor.xml");
  XmlIter_cl root(document->getDocumentElement());
  Factor_sptr factor = new Factor_cl(&root);
  double sum = factor->GetEntriesSum();
  // Cells given as infinities or opposite signs may leave no finite total to normalise by.
  if (std::isfinite(sum) && sum != 0.0 && std::fabs(sum - 1.0) > 1e-6 * factor->GetSize()) {
    bool finite = true;
    for (int i = 0; i < factor->GetSize(); i++) finite &= std::isfinite(factor->GetValue(i));
    if (finite && factor->GetMinValue() >= 0.0) __builtin_trap();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static XmlParser_cl* parser = new XmlParser_cl;
  std::string input(reinterpret_cast<const char*>(data), size);
  VORN_FUZZ_GUARDED(Check(parser, input));
  return 0;
}
