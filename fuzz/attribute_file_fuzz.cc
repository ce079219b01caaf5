// Feeds arbitrary bytes to the attribute file reader and the attribute group element, and checks that
// written values read back the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

#include "abort_road.h"
#include "data/species_attributes.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/xml_parser.h"

namespace {
// A group of gene sets whose names are the file's own lines, as AttributesNameFile reads them.
VornAttributeGroup_cl* GroupOfNames() {
  static XmlParser_cl* parser = new XmlParser_cl;
  const char xml[] = "<G Name='g' Type='GeneAttributes' ValueDomain='0;1' AttributesNameFile='input.tab'>"
                     "<A Name='x' ValueDomain='Continuous'/></G>";
  XmlIter_cl iter(parser->ParseBuffer(xml, sizeof(xml) - 1, "group.xml")->getDocumentElement());
  return new VornAttributeGroup_cl(&iter);
}

std::string Written(const SpeciesAttributes_cl& values) {
  std::ostringstream out;
  values.Write(out, nullptr);
  return out.str();
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VORN_FUZZ_GUARDED({
    WriteFuzzFile("input.tab", data, size);
    VornAttributeGroup_cl* group = GroupOfNames();
    // Every header name of the file is an attribute: the group reads the same lines as names.
    SpeciesAttributes_cl values;
    values.Load(Name_sptr("input.tab"), group);
    values.GetFullInstVec();
    for (int r = 0; r < values.GetNumRows(); r++) {
      InstVector_sptr inst = values.GetFullInstVec();
      values.GetAttributesValues(inst, r);
    }
    for (int c = 0; c < values.GetMatrix()->GetNumCols(); c++) values.DeleteAttributeValues(c);
    std::string once = Written(values);
    WriteFuzzFile("written.tab", once.data(), once.size());
    SpeciesAttributes_cl again;
    again.Load(Name_sptr("written.tab"), group);
    if (again.GetNumAttributes() == values.GetNumAttributes() && Written(again) != once) abort();
    values.Delete(group);
    delete group;
  });
  return 0;
}
