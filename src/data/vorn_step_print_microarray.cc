// The PrintMicroarray step.
#include "data/vorn_step_print_microarray.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "data/data_file.h"
#include "data/line_iterator.h"
#include "data/microarray.h"
#include "data/vorn_data.h"
#include "pipeline/vorn_run.h"

namespace {
const char kCaller[] = "VornStepPrintMicroarray_cl::Run";

int IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

// The genes of a file of white-space-separated names that the microarray has, in file order.
Vector_tmpl<Name_sptr>* ReadGeneList(Name_sptr file, Microarray_cl* microarray) {
  DataFile_cl::StopUnlessReadable(file, kCaller);
  NameSet_tmpl<int>* known = microarray->GetGenesHash();
  Vector_tmpl<Name_sptr>* genes = new Vector_tmpl<Name_sptr>(10, nullptr);
  LineIterator_cl lines(file);
  for (lines.Reset(); lines.NotNull(); ++lines) {
    const char* text = lines.GetLine();
    const char* end = text + lines.GetLength();
    while (text < end) {
      while (text < end && IsBlank(*text)) text++;
      const char* start = text;
      while (text < end && !IsBlank(*text)) text++;
      if (text == start) continue;
      Name_sptr gene(new Name_cl(start, static_cast<int>(text - start)));
      if (known->Exists(gene)) genes->AddLast(gene);
      else std::cerr << "Warning: selected gene '" << gene << "' does not exist in microarray, ignoring." << std::endl;
    }
  }
  return genes;
}
// The genes in the order of their values of a gene attribute, smallest (and missing) first; equal
// values keep the microarray's order.
Vector_tmpl<Name_sptr>* SortByAttribute(SpeciesVorn_cl* species, Name_sptr attribute) {
  SpeciesAttributes_cl* values = species->GetGeneAttributes();
  int column = values->GetColumn(attribute);
  Microarray_cl* microarray = species->GetMicroarray();
  if (column < 0 || values->GetNumRows() != microarray->GetNumGenes()) {
    std::cerr << kCaller << " Unknown attribute " << attribute << std::endl;
    abort();
  }
  std::vector<int> order(microarray->GetNumGenes());
  for (int g = 0; g < microarray->GetNumGenes(); g++) order[g] = g;
  // Not-a-number sorts first, so that the order is a strict weak one.
  auto key = [&](int g) {
    double x = values->GetValue(g, column);
    return std::isnan(x) ? -HUGE_VAL : x;
  };
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return key(a) < key(b); });
  Vector_tmpl<Name_sptr>* genes = new Vector_tmpl<Name_sptr>(microarray->GetNumGenes() + 1, nullptr);
  for (int g : order) genes->AddLast(microarray->GetGeneName(g));
  return genes;
}
}  // namespace

VornStepPrintMicroarray_cl::VornStepPrintMicroarray_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iOutputFile = iter->GetProperty("OutputFile");
  iGeneList = iter->GetProperty("GeneList");
  iExperimentList = iter->GetProperty("ExperimentList");
  iter->GetIntProperty("Precision", &iPrecision, 0);
  iAttribute = iter->GetProperty("Attribute");
}

void VornStepPrintMicroarray_cl::Run() {
  PrintRunHeader("VornStepPrintMicroarray_cl");
  Microarray_cl* microarray = iRun->GetData()->FindMicroarray(iMicroarrayName, kCaller);
  if (iOutputFile.IsNull()) return;
  std::cerr << "Printing microarray to file '" << iOutputFile << "'" << std::endl;
  Vector_tmpl<Name_sptr>* genes = nullptr;
  if (!iGeneList.IsNull()) genes = ReadGeneList(iGeneList, microarray);
  else if (!iAttribute.IsNull()) genes = SortByAttribute(iRun->GetData()->GetSpecies(iMicroarrayName), iAttribute);
  int precision = Microarray_cl::iOutPrecision;
  if (iPrecision > 0) Microarray_cl::iOutPrecision = iPrecision;
  microarray->WriteFile(iOutputFile, kCaller, genes, nullptr);
  Microarray_cl::iOutPrecision = precision;
  delete genes;
}
