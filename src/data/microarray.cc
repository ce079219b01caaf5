// The expression matrix: genes in rows, experiments in columns, its transforms and its file form.
#include "data/microarray.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>

#include "pipeline/converters.h"

int Microarray_cl::iOutPrecision = 0;

namespace {
const DataFileDescriptor_cl kMicroarrayDescriptor(1, 1, 0, 0, -1, 1, -999, -1, -1);

Vector_tmpl<int>* AllIds(int n) {
  Vector_tmpl<int>* ids = new Vector_tmpl<int>(n + 1, -1);
  for (int i = 0; i < n; i++) ids->AddLast(i);
  return ids;
}

Vector_tmpl<int>* IdsInFilter(const Vector_tmpl<Name_sptr>& names, const NameSet_tmpl<int>* filter) {
  if (!filter) return AllIds(names.GetSize());
  Vector_tmpl<int>* ids = new Vector_tmpl<int>(names.GetSize() + 1, -1);
  for (int i = 0; i < names.GetSize(); i++)
    if (filter->GetEntry(names[i]) != -1) ids->AddLast(i);
  return ids;
}

NameSet_tmpl<int>* HashOf(const Vector_tmpl<Name_sptr>& names, const Vector_tmpl<int>* ids) {
  NameSet_tmpl<int>* hash = new NameSet_tmpl<int>(ids->GetSize() + 1, -1, 0.5, 2.0);
  for (int i = 0; i < ids->GetSize(); i++) hash->Insert(names[(*ids)[i]], (*ids)[i]);
  return hash;
}

Vector_tmpl<Name_sptr>* NamesOf(const Vector_tmpl<Name_sptr>& names, const Vector_tmpl<int>* ids) {
  Vector_tmpl<Name_sptr>* selected = new Vector_tmpl<Name_sptr>(ids->GetSize() + 1, nullptr);
  for (int i = 0; i < ids->GetSize(); i++) selected->AddLast(names[(*ids)[i]]);
  return selected;
}

// The indices of the listed names that the table knows, in list order; null lists every index.
Vector_tmpl<int>* IdsOfList(const Vector_tmpl<Name_sptr>* list, const Vector_tmpl<Name_sptr>& names) {
  if (!list) return AllIds(names.GetSize());
  NameSet_tmpl<int>* hash = Converters_cl::Vec2Hash(names);
  Vector_tmpl<int>* ids = new Vector_tmpl<int>(list->GetSize() + 1, -1);
  for (int i = 0; i < list->GetSize(); i++) {
    int id = hash->GetEntry((*list)[i]);
    if (id != -1) ids->AddLast(id);
  }
  delete hash;
  return ids;
}

}  // namespace

Domain_sptr CreateValueDomain(Name_sptr text) {
  if (text.IsNull() || !text->GetText()) return Domain_sptr();
  std::string copy = text->GetText();  // the factory cuts its text in place
  return DomainFactory_cl::CreateDomain(copy.data(), ";", "Continuous");
}

Microarray_cl::Microarray_cl(PropertyTreeIter_cl* iter) {
  int rowHeaders, colHeaders, keyCol;
  iter->GetIntProperty("RowHeaders", &rowHeaders, 1);
  iter->GetIntProperty("ColHeaders", &colHeaders, 1);
  iter->GetIntProperty("KeyCol", &keyCol, 0);
  iDescriptor = new DataFileDescriptor_cl(rowHeaders, colHeaders, keyCol, 0, -1, colHeaders, -999, -1, -1);
  iName = iter->GetProperty("Name");
  iFileName = iter->GetProperty("File");
  iValueDomain = CreateValueDomain(Name_sptr("Continuous"));
  Reset();
}

Microarray_cl::Microarray_cl(const DataFileDescriptor_cl* descriptor, Name_sptr name, Name_sptr file,
                             Name_sptr domain)
    : iDescriptor(new DataFileDescriptor_cl(descriptor ? *descriptor : kMicroarrayDescriptor)),
      iFileName(file),
      iName(name),
      iValueDomain(CreateValueDomain(domain)) {
  Reset();
}

Microarray_cl::Microarray_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& genes,
                             const Vector_tmpl<Name_sptr>& experiments, double value)
    : iDescriptor(new DataFileDescriptor_cl(kMicroarrayDescriptor)) {
  ReInit(name, genes, experiments, value);
}

Microarray_cl::~Microarray_cl() {
  DeleteNames();
  delete iDescriptor;
}

void Microarray_cl::DeleteNames() {
  ResetCachedIds();
  delete iGeneNames;
  delete iExperimentNames;
  iGeneNames = iExperimentNames = nullptr;
}

void Microarray_cl::Reset() {
  DeleteNames();
  iGeneNames = new Vector_tmpl<Name_sptr>(10, nullptr);
  iExperimentNames = new Vector_tmpl<Name_sptr>(10, nullptr);
  iMatrix = Matrix_cl::AllocateCorrectType(0, 0);
}

void Microarray_cl::ResetCachedIds() {
  delete iGeneIds;
  delete iGenesHash;
  delete iExperimentIds;
  delete iExperimentsHash;
  iGeneIds = iExperimentIds = nullptr;
  iGenesHash = iExperimentsHash = nullptr;
}

void Microarray_cl::ReInit(Name_sptr name, const Vector_tmpl<Name_sptr>& genes,
                           const Vector_tmpl<Name_sptr>& experiments, double value) {
  DeleteNames();
  iName = name;
  iGeneNames = new Vector_tmpl<Name_sptr>(genes);
  iExperimentNames = new Vector_tmpl<Name_sptr>(experiments);
  iMatrix = Matrix_cl::AllocateCorrectType(genes.GetSize(), experiments.GetSize());
  iMatrix->SetEntries(value);
}

void Microarray_cl::Load(const NameSet_tmpl<int>* genes, const NameSet_tmpl<int>* experiments, Name_sptr file) {
  Reset();
  if (file.IsNull()) file = iFileName;
  std::cerr << "bof Microarray_cl::Load Name=" << iName << " File=" << file << std::endl;
  DataFile_cl data(file, *iDescriptor);
  delete iGeneNames;
  delete iExperimentNames;
  iGeneNames = data.GetRowKeys(genes);
  iExperimentNames = data.GetMatrixColumnKeys(experiments);
  iMatrix = data.CreateMatrix(genes, experiments);
  std::cerr << "eof Microarray_cl::Load Genes=" << GetNumGenes() << " Experiments=" << GetNumExperiments()
            << std::endl;
}

Vector_tmpl<Name_sptr>* Microarray_cl::GetGeneNames(const Vector_tmpl<int>* genes) const {
  return NamesOf(*iGeneNames, genes);
}

Vector_tmpl<Name_sptr>* Microarray_cl::GetExperimentNames(const Vector_tmpl<int>* experiments) const {
  return NamesOf(*iExperimentNames, experiments);
}

Vector_tmpl<int>* Microarray_cl::GetGeneIds() {
  if (!iGeneIds) iGeneIds = AllIds(GetNumGenes());
  return iGeneIds;
}

Vector_tmpl<int>* Microarray_cl::GetExperimentIds() {
  if (!iExperimentIds) iExperimentIds = AllIds(GetNumExperiments());
  return iExperimentIds;
}

Vector_tmpl<int>* Microarray_cl::CreateGeneIds(const NameSet_tmpl<int>* filter) const {
  return IdsInFilter(*iGeneNames, filter);
}

Vector_tmpl<int>* Microarray_cl::CreateExperimentIds(const NameSet_tmpl<int>* filter) const {
  return IdsInFilter(*iExperimentNames, filter);
}

NameSet_tmpl<int>* Microarray_cl::GetGenesHash() {
  if (!iGenesHash) iGenesHash = CreateGenesHash();
  return iGenesHash;
}

NameSet_tmpl<int>* Microarray_cl::GetExperimentsHash() {
  if (!iExperimentsHash) iExperimentsHash = CreateExperimentsHash();
  return iExperimentsHash;
}

NameSet_tmpl<int>* Microarray_cl::CreateGenesHash() const { return Converters_cl::Vec2Hash(*iGeneNames); }

NameSet_tmpl<int>* Microarray_cl::CreateExperimentsHash() const { return Converters_cl::Vec2Hash(*iExperimentNames); }

NameSet_tmpl<int>* Microarray_cl::CreateGenesHash(const Vector_tmpl<int>* genes) const {
  return HashOf(*iGeneNames, genes);
}

NameSet_tmpl<int>* Microarray_cl::CreateExperimentsHash(const Vector_tmpl<int>* experiments) const {
  return HashOf(*iExperimentNames, experiments);
}

Microarray_cl* Microarray_cl::Copy(const NameSet_tmpl<int>* genes, const NameSet_tmpl<int>* experiments) const {
  Microarray_cl* copy = new Microarray_cl(iDescriptor, iName, iFileName, Name_sptr());
  copy->iValueDomain = iValueDomain;
  Vector_tmpl<int>* rows = CreateGeneIds(genes);
  Vector_tmpl<int>* columns = CreateExperimentIds(experiments);
  MatrixFilter_cl filter(rows, 1, columns, 1);
  copy->iMatrix = iMatrix->Copy(&filter);
  delete copy->iGeneNames;
  delete copy->iExperimentNames;
  copy->iGeneNames = NamesOf(*iGeneNames, rows);
  copy->iExperimentNames = NamesOf(*iExperimentNames, columns);
  return copy;
}

int Microarray_cl::GetNumFilterGenes(int experiment, double threshold, int atLeast) const {
  int count = 0;
  for (int g = 0; g < GetNumGenes(); g++) {
    double x = iMatrix->GetElement(g, experiment);
    if (x != kMissingReal && (atLeast ? x >= threshold : x <= threshold)) count++;
  }
  return count;
}

void Microarray_cl::TransformGenes(void (Matrix_cl::*transform)(int, double)) {
  for (int g = 0; g < GetNumGenes(); g++) (iMatrix.Get()->*transform)(g, kMissingReal);
}

void Microarray_cl::TransformExperiments(void (Matrix_cl::*transform)(int, double)) {
  for (int e = 0; e < GetNumExperiments(); e++) (iMatrix.Get()->*transform)(e, kMissingReal);
}

void Microarray_cl::ZeroTransformGenes() { TransformGenes(&Matrix_cl::ZeroTransformRow); }

void Microarray_cl::ZeroTransformExperiments() { TransformExperiments(&Matrix_cl::ZeroTransformCol); }

void Microarray_cl::CenterTransformGenes() { TransformGenes(&Matrix_cl::CenterTransformRow); }

void Microarray_cl::CenterTransformExperiments() { TransformExperiments(&Matrix_cl::CenterTransformCol); }

void Microarray_cl::ScaleTransformGenes() { TransformGenes(&Matrix_cl::ScaleTransformRow); }

void Microarray_cl::ScaleTransformExperiments() { TransformExperiments(&Matrix_cl::ScaleTransformCol); }

void Microarray_cl::RankTransformGenes() {
  for (int g = 0; g < GetNumGenes(); g++) iMatrix->RankTransformRow(g, kMissingReal);
}

void Microarray_cl::RankTransformExperiments() {
  for (int e = 0; e < GetNumExperiments(); e++) iMatrix->RankTransformCol(e, kMissingReal);
}

void Microarray_cl::LeaveTopValuesPerGene(int k, double fill) {
  for (int g = 0; g < GetNumGenes(); g++) iMatrix->LeaveTopValuesRow(g, k, fill);
}

void Microarray_cl::LeaveTopValuesPerExperiment(int k, double fill) {
  for (int e = 0; e < GetNumExperiments(); e++) iMatrix->LeaveTopValuesCol(e, k, fill);
}

void Microarray_cl::SetMaxSpot(double bound) {
  for (int g = 0; g < GetNumGenes(); g++) iMatrix->SetRowMax(g, bound, kMissingReal);
}

void Microarray_cl::SetMinSpot(double bound) {
  for (int g = 0; g < GetNumGenes(); g++) iMatrix->SetRowMin(g, bound, kMissingReal);
}

void Microarray_cl::AverageConsecutiveExperiments(int w) {
  int h = (w - 1) / 2;
  // A window of one column (or less) leaves every cell as it is.
  if (h <= 0) return;
  int n = GetNumExperiments();
  Vector_tmpl<double> averaged(n + 1, 0.0);
  for (int g = 0; g < GetNumGenes(); g++) {
    double* row = iMatrix->GetRow(g);
    averaged.RemoveAll();
    for (int c = 0; c < n; c++) {
      double sum = 0.0, weights = 0.0;
      for (int j = c - h < 0 ? 0 : c - h; j <= c + h && j < n; j++) {
        double weight = h + 1 - (j > c ? j - c : c - j);
        sum += weight * row[j];
        weights += weight;
      }
      averaged.AddLast(sum / weights);
    }
    for (int c = 0; c < n; c++) row[c] = averaged[c];
  }
}

void Microarray_cl::Keep(const Vector_tmpl<int>& rows, const Vector_tmpl<int>& columns) {
  MatrixFilter_cl filter(const_cast<Vector_tmpl<int>*>(&rows), 0, const_cast<Vector_tmpl<int>*>(&columns), 0);
  iMatrix = iMatrix->Copy(&filter);
  Vector_tmpl<Name_sptr>* genes = NamesOf(*iGeneNames, &rows);
  Vector_tmpl<Name_sptr>* experiments = NamesOf(*iExperimentNames, &columns);
  DeleteNames();
  iGeneNames = genes;
  iExperimentNames = experiments;
}

void Microarray_cl::Reduce(const IntSet_tmpl<int>& keep) {
  Vector_tmpl<int> rows(GetNumGenes() + 1, -1);
  for (int g = 0; g < GetNumGenes(); g++)
    if (keep.GetEntry(g) != 0) rows.AddLast(g);
  Vector_tmpl<int>* columns = AllIds(GetNumExperiments());
  Keep(rows, *columns);
  delete columns;
}

void Microarray_cl::ReduceExperiments(const IntSet_tmpl<int>& keep) {
  Vector_tmpl<int> columns(GetNumExperiments() + 1, -1);
  for (int e = 0; e < GetNumExperiments(); e++) {
    if (keep.GetEntry(e) == 0) continue;
    std::cerr << "Microarray::Reduce Keeping experiment " << e << ": " << GetExperimentName(e) << std::endl;
    columns.AddLast(e);
  }
  Vector_tmpl<int>* rows = AllIds(GetNumGenes());
  Keep(*rows, columns);
  delete rows;
}

void Microarray_cl::WriteFile(std::ostream& out, const Vector_tmpl<Name_sptr>* genes,
                              const Vector_tmpl<Name_sptr>* experiments) const {
  Vector_tmpl<int>* rows = IdsOfList(genes, *iGeneNames);
  Vector_tmpl<int>* columns = IdsOfList(experiments, *iExperimentNames);
  std::streamsize precision = out.precision();
  if (iOutPrecision > 0) out.precision(iOutPrecision);
  out << "Gene";
  for (int i = 0; i < columns->GetSize(); i++) out << '\t' << GetExperimentName((*columns)[i]);
  out << '\n';
  for (int i = 0; i < rows->GetSize(); i++) {
    const double* row = iMatrix->GetRow((*rows)[i]);
    out << GetGeneName((*rows)[i]);
    for (int j = 0; j < columns->GetSize(); j++) {
      out << '\t';
      double x = row[(*columns)[j]];
      if (x != kMissingReal) out << x;
    }
    out << '\n';
  }
  out.precision(precision);
  delete rows;
  delete columns;
}

void Microarray_cl::WriteFile(Name_sptr file, const char* caller, const Vector_tmpl<Name_sptr>* genes,
                              const Vector_tmpl<Name_sptr>* experiments) const {
  std::ofstream out;
  if (!file.IsNull() && file->GetText()) out.open(file->GetText(), std::ios::out | std::ios::trunc);
  if (!out) {
    std::cerr << caller << " Cannot write file " << file << std::endl;
    abort();
  }
  WriteFile(out, genes, experiments);
}
