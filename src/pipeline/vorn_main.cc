// The program's whole road, from the command line to the last run.
#include "pipeline/vorn_main.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/random.h"
#include "pipeline/vorn_reader.h"
#include "pipeline/xml_parser.h"

int VornMain(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "Usage: vorn_learn <vorn_xml_file>" << std::endl;
    exit(-1);
  }
  Random_cl::SeedGlobalFromClock();
  return VornRunPipelineFile(argv[1]);
}

int VornRunPipelineFile(const char* fileName) {
  XmlParser_cl parser;
  xercesc::DOMDocument* document = parser.Parse(fileName, false, true);
  XmlIter_cl* iter = new XmlIter_cl(document->getDocumentElement());
  std::cerr << "Constructing a VornReader for the XML file." << std::endl;
  VornReader_cl* reader = new VornReader_cl;
  reader->Read(iter);
  std::cerr << "Done constructing VornReader." << std::endl;
  reader->Run();
  delete reader;
  delete iter;
  return 0;
}

void VornSeedRandomSources(long seed) { Random_cl::iGlobalRandomizer.Reset(seed); }
