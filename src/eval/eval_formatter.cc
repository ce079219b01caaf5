// The report of enrichment tests.
#include "eval/eval_formatter.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "pipeline/missing.h"

const char* FORMAT_TYPE_STR[FORMAT_TYPE_NUM] = {"ObjectMajor", "ObjectMajorRows", "AttributeMajor",
                                                "AttributeMajorRows", "Matrix"};
const char* STATISTIC_TEST_TYPE_STR[STATISTIC_TEST_TYPE_NUM] = {"HyperGeometric", "KolmogorovSmirnov", "TTest"};
const char* EVAL_SPLITS_TYPE_STR[EVAL_SPLITS_TYPE_NUM] = {"ByExpression", "ByAttributes"};

double LogPValue(double p) {
  if (p > 0) return -std::log10(p);
  if (p < 0) return std::log10(-p);
  return 0.0;
}

namespace {
// Each text followed by a tab, the last by a line end.
void PrintHeader(std::ostream& out, std::initializer_list<const char*> columns) {
  size_t i = 0;
  for (const char* column : columns) out << column << (++i < columns.size() ? '\t' : '\n');
}

const char* Bool(int value) { return value ? "true" : "false"; }
}  // namespace

// --- single results

void SingleFormatter_cl::PrintRowStart(std::ostream& out, Name_sptr className) const {
  out << className.CStr() << '\t' << iAttribute.CStr() << '\t' << iPValue << '\t' << LogPValue(iPValue) << '\t';
}

void SingleFormatter_cl::PrintSparseValue(std::ostream& out, double value) const {
  out << iAttribute.CStr() << '[' << value << ']';
}

void AttributeFormatter_cl::PrintMatrix(std::ostream& out) const { out << iMatrixValue << '\t'; }

void AttributeFormatter_cl::PrintSparseMatrix(std::ostream& out) const {
  if (ik >= 0) out << " [Counts=" << ik << ']';
}

void AttributeFormatter_cl::PrintRowHeader(std::ostream& out) const {
  PrintHeader(out, {"Cluster name", "Annotation", "Pvalue", "Log-Pvalue", "k", "n", "K", "N", "% Cluster",
                    "% Annotation", "Members"});
}

void AttributeFormatter_cl::PrintRow(std::ostream& out, Name_sptr className) const {
  PrintRowStart(out, className);
  out << ik << '\t' << in << '\t' << iK << '\t' << iN << '\t' << (in ? 100.0 * ik / in : 0.0) << '\t'
      << (iK ? 100.0 * ik / iK : 0.0) << '\t' << (iMembers.IsNull() ? "" : iMembers.CStr()) << '\n';
}

void KolmogorovSmirnovFormatter_cl::PrintRowHeader(std::ostream& out) const {
  PrintHeader(out, {"Cluster name", "Annotation", "Pvalue", "Log-Pvalue", "D", "Cluster size", "Annotation size",
                    "Cluster larger", "Cluster index", "Annotation index", "Cluster value", "Annotation value"});
}

void KolmogorovSmirnovFormatter_cl::PrintRow(std::ostream& out, Name_sptr className) const {
  PrintRowStart(out, className);
  out << iD << '\t' << iClusterSize << '\t' << iAnnotationSize << '\t' << Bool(iClusterLarger) << '\t'
      << iClusterIndex << '\t' << iAnnotationIndex << '\t' << iClusterValue << '\t' << iAnnotationValue << '\n';
}

void TTestFormatter_cl::PrintRowHeader(std::ostream& out) const {
  PrintHeader(out, {"Cluster name", "Annotation", "Pvalue", "Log-Pvalue", "T", "Cluster size", "Annotation size",
                    "Cluster larger", "Cluster mean", "Cluster std", "Annotation mean", "Annotation std"});
}

void TTestFormatter_cl::PrintRow(std::ostream& out, Name_sptr className) const {
  PrintRowStart(out, className);
  out << iT << '\t' << iClusterSize << '\t' << iAnnotationSize << '\t' << Bool(iClusterLarger) << '\t'
      << iClusterMean << '\t' << iClusterStd << '\t' << iAnnotationMean << '\t' << iAnnotationStd << '\n';
}

// --- one class

ClassFormatter_cl::~ClassFormatter_cl() { iFormatters.DeleteAll(); }

void ClassFormatter_cl::Add(SingleFormatter_cl* formatter) {
  iFormatters.AddLast(formatter);
  iFormattersByAttribute.Insert(formatter->GetAttribute(), formatter);
}

void ClassFormatter_cl::Sort() {
  SingleFormatter_cl** first = iFormatters.GetData();
  std::stable_sort(first, first + iFormatters.GetSize(), [](const SingleFormatter_cl* a, const SingleFormatter_cl* b) {
    return a->GetPValue() < b->GetPValue();
  });
}

void ClassFormatter_cl::Release() {
  iFormatters.RemoveAll();
  iFormattersByAttribute.RemoveAll();
}

// --- the report

EvalFormatter_cl::EvalFormatter_cl(int datasetSize, int globalSize)
    : NameSet_tmpl<ClassFormatter_cl*>(32, nullptr, 0.5, 2.0),
      iClasses(10, nullptr),
      iDatasetCounts(10, -1, 0.5, 2.0),
      iGlobalCounts(10, -1, 0.5, 2.0),
      iDatasetSize(datasetSize),
      iGlobalSize(globalSize) {}

EvalFormatter_cl::~EvalFormatter_cl() { DeleteAll(); }

void EvalFormatter_cl::Add(Name_sptr className, int classSize, int datasetCount, int globalCount,
                           SingleFormatter_cl* formatter) {
  Name_sptr attribute = formatter->GetAttribute();
  if (!iDatasetCounts.Exists(attribute)) {
    iDatasetCounts.Insert(attribute, datasetCount);
    iGlobalCounts.Insert(attribute, globalCount);
  }
  ClassFormatter_cl* entry = GetEntry(className);
  if (!entry) {
    entry = new ClassFormatter_cl(classSize);
    Insert(className, entry);
    iClasses.AddLast(className);
  }
  entry->Add(formatter);
}

int EvalFormatter_cl::GetSize() const {
  int size = 0;
  for (auto* e : *this) size += e->iValue->GetNumFormatters();
  return size;
}

void EvalFormatter_cl::Print(std::ostream& out, FormatType_cl format) {
  for (auto* e : *this) e->iValue->Sort();
  switch (format) {
    case FORMAT_MATRIX:
      PrintMatrix(out);
      break;
    case FORMAT_OBJECT_MAJOR:
    case FORMAT_ATTRIBUTE_MAJOR:
      PrintSparse(out);
      break;
    default:
      PrintRows(out);
  }
}

void EvalFormatter_cl::PrintMatrix(std::ostream& out) {
  out << '\t';
  for (auto* a : iDatasetCounts) out << a->iKey.CStr() << '\t';
  out << '\n';
  for (auto* c : *this) {
    out << c->iKey.CStr() << '\t';
    for (auto* a : iDatasetCounts) {
      SingleFormatter_cl* formatter = c->iValue->GetFormatter(a->iKey);
      if (formatter) formatter->PrintMatrix(out);
      else out << '\t';
    }
    out << '\n';
  }
}

void EvalFormatter_cl::PrintSparse(std::ostream& out) {
  if (iDatasetSize != -1) out << "[Dataset Counts=" << iDatasetSize << "] ";
  if (iGlobalSize != -1) out << "[Global Counts=" << iGlobalSize << "] ";
  out << "\n\n";
  for (int c = 0; c < iClasses.GetSize(); c++) {
    ClassFormatter_cl* entry = GetEntry(iClasses[c]);
    out << iClasses[c].CStr() << " [Counts=" << entry->GetSize() << "]\n";
    for (int i = 0; i < entry->GetNumFormatters(); i++) {
      SingleFormatter_cl* formatter = entry->GetFormatter(i);
      out << "    ";
      formatter->PrintSparseMatrixHeader(out);
      formatter->PrintSparseMatrix(out);
      int dataset = iDatasetCounts.GetEntry(formatter->GetAttribute());
      int global = iGlobalCounts.GetEntry(formatter->GetAttribute());
      if (dataset != -1) out << " [Dataset True=" << dataset << ']';
      if (global != -1) out << " [Global True=" << global << ']';
      out << '\n';
    }
  }
  out << '\n';
}

void EvalFormatter_cl::PrintRows(std::ostream& out) {
  for (int c = 0; c < iClasses.GetSize(); c++) {
    ClassFormatter_cl* entry = GetEntry(iClasses[c]);
    for (int i = 0; i < entry->GetNumFormatters(); i++) {
      if (c == 0 && i == 0) entry->GetFormatter(0)->PrintRowHeader(out);
      entry->GetFormatter(i)->PrintRow(out, iClasses[c]);
    }
  }
}

void EvalFormatter_cl::Reduce(double maxPValue, const NameSet_tmpl<int>* names) {
  NameSet_tmpl<int> datasetCounts(10, -1), globalCounts(10, -1);
  datasetCounts.CopyMyValues(iDatasetCounts);
  globalCounts.CopyMyValues(iGlobalCounts);
  Vector_tmpl<Name_sptr> classes = iClasses;
  Vector_tmpl<ClassFormatter_cl*> entries(classes.GetSize() + 1, nullptr);
  for (int c = 0; c < classes.GetSize(); c++) entries.AddLast(GetEntry(classes[c]));
  RemoveAll();
  iClasses.RemoveAll();
  iDatasetCounts.RemoveAll();
  iGlobalCounts.RemoveAll();
  for (int c = 0; c < classes.GetSize(); c++) {
    ClassFormatter_cl* entry = entries[c];
    for (int i = 0; i < entry->GetNumFormatters(); i++) {
      SingleFormatter_cl* formatter = entry->GetFormatter(i);
      Name_sptr attribute = formatter->GetAttribute();
      if (std::fabs(formatter->GetPValue()) <= maxPValue && (!names || names->Exists(attribute)))
        Add(classes[c], entry->GetSize(), datasetCounts.GetEntry(attribute), globalCounts.GetEntry(attribute),
            formatter);
      else
        delete formatter;
    }
    entry->Release();
    delete entry;
  }
}

void EvalFormatter_cl::RemoveAttributesWithIdenticalClasses() {
  // The key of an attribute is its classes' names in class order, each behind a tab; attributes
  // are met in order of first appearance, class by class.
  NameSet_tmpl<Name_sptr> keys(10, nullptr);
  Vector_tmpl<Name_sptr> attributes(10, nullptr);
  for (int c = 0; c < iClasses.GetSize(); c++) {
    ClassFormatter_cl* entry = GetEntry(iClasses[c]);
    for (int i = 0; i < entry->GetNumFormatters(); i++) {
      Name_sptr attribute = entry->GetFormatter(i)->GetAttribute();
      Name_sptr key = keys.GetEntry(attribute);
      if (key.IsNull()) {
        key = Name_sptr("");
        keys.Insert(attribute, key);
        attributes.AddLast(attribute);
      }
      key->Concat(iClasses[c].CStr());
      key->Concat('\t');
    }
  }
  NameSet_tmpl<int> seen(10, -1), keep(10, -1);
  for (int a = 0; a < attributes.GetSize(); a++) {
    Name_sptr key = keys.GetEntry(attributes[a]);
    if (seen.Exists(key)) continue;
    seen.Insert(key, 1);
    keep.Insert(attributes[a], 1);
  }
  Reduce(1.0, &keep);
}

void EvalFormatter_cl::MultipleHypothesisCorrection(MultipleHypothesisCorrection_cl correction, double alpha,
                                                    int numTests) {
  if (correction == MHC_NONE) return;
  Vector_tmpl<DoubleComparator_cl*> holders(GetSize() + 1, nullptr);
  for (int c = 0; c < iClasses.GetSize(); c++) {
    ClassFormatter_cl* entry = GetEntry(iClasses[c]);
    for (int i = 0; i < entry->GetNumFormatters(); i++)
      holders.AddLast(new DoubleComparator_cl(entry->GetFormatter(i)->GetPValue(), entry->GetFormatter(i)));
  }
  double threshold = MathUtils::ComputeCorrectedPvalue(holders, correction, alpha, numTests);
  holders.DeleteAll();
  std::cerr << "EvalFormatter_cl::MultipleHypothesisCorrection corrected " << alpha << " to " << threshold
            << std::endl;
  if (threshold != alpha) Reduce(threshold);
}

void EvalFormatter_cl::CreateAttributes(AttributeGroupType_cl type, Name_sptr groupName, VornData_cl* data,
                                        Name_sptr microarrayName) {
  Microarray_cl* microarray = data->FindMicroarray(microarrayName, "EvalFormatter_cl::CreateAttributes");
  NameSet_tmpl<int>* objects = type == EXPERIMENT_ATTRIBUTES ? microarray->GetExperimentsHash()
                                                             : microarray->GetGenesHash();
  const NameSet_tmpl<VornAttributeGroup_cl*>* groups = data->GetAttributeGroups(type);
  VornAttributeGroup_cl* group = groups ? groups->GetEntry(groupName) : nullptr;
  int isNew = group == nullptr;
  if (isNew) group = new VornAttributeGroup_cl(groupName, type, CreateValueDomain(Name_sptr("Continuous")));
  Vector_tmpl<Name_sptr> names(iDatasetCounts.GetSize() + 1, nullptr);
  for (auto* a : iDatasetCounts) {
    names.AddLast(a->iKey);
    if (!group->HasAttribute(a->iKey)) group->AddAttribute(a->iKey, group->GetValueDomain());
  }
  Matrix_sptr values = Matrix_cl::AllocateCorrectType(type == EXPERIMENT_ATTRIBUTES ? microarray->GetNumExperiments()
                                                                                    : microarray->GetNumGenes(),
                                                      names.GetSize());
  for (int r = 0; r < values->GetNumRows(); r++)
    for (int a = 0; a < names.GetSize(); a++) values->GetRow(r)[a] = kMissingReal;
  for (int c = 0; c < iClasses.GetSize(); c++) {
    int row = objects->GetEntry(iClasses[c]);
    if (row < 0) continue;
    ClassFormatter_cl* entry = GetEntry(iClasses[c]);
    for (int a = 0; a < names.GetSize(); a++)
      if (SingleFormatter_cl* formatter = entry->GetFormatter(names[a]))
        values->GetRow(row)[a] = formatter->GetPValue();
  }
  if (isNew) data->AddAttributeGroup(group);
  SpeciesAttributes_cl* attributes = new SpeciesAttributes_cl;
  attributes->Load(values, names, group);
  data->AddAttributeGroup(microarrayName, attributes, type);
}
