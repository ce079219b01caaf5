// The expression matrix: genes in rows, experiments in columns, its transforms and its file form.
#ifndef VORN_DATA_MICROARRAY_H
#define VORN_DATA_MICROARRAY_H

#include <ostream>

#include "data/data_file.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/prop_tree.h"
#include "pipeline/vector.h"
#include "prob/domain.h"
#include "prob/matrix.h"
#include "prob/randomizable.h"

// The domain of a value text: "Continuous" for reals, else names separated by ';'; empty for null.
Domain_sptr CreateValueDomain(Name_sptr text);

// A row of the matrix is the gene of that index in the gene names, a column the experiment of
// that index. A microarray that is not loaded holds no names and an empty matrix. The id vectors
// and name tables are caches: every change of rows or columns drops them.
class Microarray_cl : public Randomizable_cl {
 public:
  // From a child of MicroarraySet (Name, File, RowHeaders, ColHeaders, KeyCol); nothing is loaded.
  explicit Microarray_cl(PropertyTreeIter_cl* iter);
  // A null descriptor reads the file with one header row, the key in column 0 and reals behind it.
  Microarray_cl(const DataFileDescriptor_cl* descriptor, Name_sptr name, Name_sptr file, Name_sptr domain);
  // A matrix of those genes and experiments, every cell value.
  Microarray_cl(Name_sptr name, const Vector_tmpl<Name_sptr>& genes, const Vector_tmpl<Name_sptr>& experiments,
                double value);
  ~Microarray_cl() override;
  Microarray_cl(const Microarray_cl&) = delete;
  Microarray_cl& operator=(const Microarray_cl&) = delete;

  void ReInit(Name_sptr name, const Vector_tmpl<Name_sptr>& genes, const Vector_tmpl<Name_sptr>& experiments,
              double value);
  // Reset, then read file (the microarray's own when null), keeping the genes and experiments in
  // the filters; a null filter keeps all.
  void Load(const NameSet_tmpl<int>* genes, const NameSet_tmpl<int>* experiments, Name_sptr file);
  // Drops names, caches and matrix.
  void Reset();
  void ResetCachedIds();

  Matrix_sptr GetMatrix() override { return iMatrix; }
  void SetMatrix(Matrix_sptr matrix) override { iMatrix = matrix; }

  Name_sptr GetName() const { return iName; }
  Name_sptr GetFileName() const { return iFileName; }
  Domain_sptr GetValueDomain() const { return iValueDomain; }
  const DataFileDescriptor_cl& GetDescriptor() const { return *iDescriptor; }
  int GetNumGenes() const { return iGeneNames->GetSize(); }
  int GetNumExperiments() const { return iExperimentNames->GetSize(); }
  Name_sptr GetGeneName(int gene) const { return (*iGeneNames)[gene]; }
  Name_sptr GetExperimentName(int experiment) const { return (*iExperimentNames)[experiment]; }
  const Vector_tmpl<Name_sptr>& GetGeneNames() const { return *iGeneNames; }
  const Vector_tmpl<Name_sptr>& GetExperimentNames() const { return *iExperimentNames; }
  // New vectors of the names of the given indices.
  Vector_tmpl<Name_sptr>* GetGeneNames(const Vector_tmpl<int>* genes) const;
  Vector_tmpl<Name_sptr>* GetExperimentNames(const Vector_tmpl<int>* experiments) const;

  // All row (column) numbers, cached, or new vectors of those whose name is in the filter.
  Vector_tmpl<int>* GetGeneIds();
  Vector_tmpl<int>* GetExperimentIds();
  Vector_tmpl<int>* CreateGeneIds(const NameSet_tmpl<int>* filter) const;
  Vector_tmpl<int>* CreateExperimentIds(const NameSet_tmpl<int>* filter) const;
  // From name to index: cached, or new for the caller, of all lines or of the given ones. A
  // repeated name maps to its last index.
  NameSet_tmpl<int>* GetGenesHash();
  NameSet_tmpl<int>* GetExperimentsHash();
  NameSet_tmpl<int>* CreateGenesHash() const;
  NameSet_tmpl<int>* CreateExperimentsHash() const;
  NameSet_tmpl<int>* CreateGenesHash(const Vector_tmpl<int>* genes) const;
  NameSet_tmpl<int>* CreateExperimentsHash(const Vector_tmpl<int>* experiments) const;

  // A new microarray of the genes and experiments in the filters, in this order; null keeps all.
  Microarray_cl* Copy(const NameSet_tmpl<int>* genes, const NameSet_tmpl<int>* experiments) const;
  // Present cells of a column at least (atLeast non-zero) or at most the threshold.
  int GetNumFilterGenes(int experiment, double threshold, int atLeast) const;

  // --- transforms, in place, skipping missing cells
  void ZeroTransform() { ZeroTransformGenes(); }
  void ZeroTransformGenes();
  void ZeroTransformExperiments();
  void CenterTransformGenes();
  void CenterTransformExperiments();
  void ScaleTransformGenes();
  void ScaleTransformExperiments();
  void RankTransformGenes();
  void RankTransformExperiments();
  // Cells of the k highest ranks of their line keep their value; all others, missing ones too, take fill.
  void LeaveTopValuesPerGene(int k, double fill);
  void LeaveTopValuesPerExperiment(int k, double fill);
  void SetMaxSpot(double bound);
  void SetMinSpot(double bound);
  // Each cell becomes the triangular-weighted mean of its row's window of w columns, cut at the ends.
  void AverageConsecutiveExperiments(int w);

  // Drop each row (column) whose index maps to 0 in keep.
  void Reduce(const IntSet_tmpl<int>& keep);
  void ReduceExperiments(const IntSet_tmpl<int>& keep);

  // "Gene" and the experiment names, then a line per gene; a missing cell is an empty field. The
  // lists select and order rows and columns (names not in the microarray are skipped); null keeps all.
  void WriteFile(std::ostream& out, const Vector_tmpl<Name_sptr>* genes,
                 const Vector_tmpl<Name_sptr>* experiments) const;
  // The same into a new file; stops with "<caller> Cannot write file <file>" when it cannot be made.
  void WriteFile(Name_sptr file, const char* caller, const Vector_tmpl<Name_sptr>* genes,
                 const Vector_tmpl<Name_sptr>* experiments) const;

  // Precision of WriteFile's numbers when positive; the stream's own otherwise.
  static int iOutPrecision;

 private:
  // Applies a transform of one line to every row (column), skipping missing cells.
  void TransformGenes(void (Matrix_cl::*transform)(int, double));
  void TransformExperiments(void (Matrix_cl::*transform)(int, double));
  // Rebuilds the matrix from the kept rows and columns, in order.
  void Keep(const Vector_tmpl<int>& rows, const Vector_tmpl<int>& columns);
  void DeleteNames();

  DataFileDescriptor_cl* iDescriptor;
  Name_sptr iFileName;
  Name_sptr iName;
  Matrix_sptr iMatrix;
  Vector_tmpl<Name_sptr>* iGeneNames = nullptr;
  Vector_tmpl<int>* iGeneIds = nullptr;
  NameSet_tmpl<int>* iGenesHash = nullptr;
  Vector_tmpl<Name_sptr>* iExperimentNames = nullptr;
  Vector_tmpl<int>* iExperimentIds = nullptr;
  NameSet_tmpl<int>* iExperimentsHash = nullptr;
  Domain_sptr iValueDomain;
};

#endif
