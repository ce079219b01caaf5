// The values of attributes for one microarray: a row per gene or experiment, a column per attribute.
#ifndef VORN_DATA_SPECIES_ATTRIBUTES_H
#define VORN_DATA_SPECIES_ATTRIBUTES_H

#include <ostream>

#include "data/microarray.h"
#include "data/vorn_attribute_group.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/inst_vector.h"
#include "prob/matrix.h"

// How two attributes' values combine into the value of their combination.
enum OperationType_cl {
  OPERATION_ALL = 0,
  OPERATION_AND,
  OPERATION_AVERAGE,
  OPERATION_FIRST,
  OPERATION_MAX,
  OPERATION_MIN,
  OPERATION_OR,
  OPERATION_TYPE_NUM
};
extern const char* OPERATION_TYPE_STR[OPERATION_TYPE_NUM];

// Rows follow the microarray's order of its objects; a column may have no attribute, and an
// attribute's column is found by name. A missing value is the missing real.
class SpeciesAttributes_cl {
 public:
  SpeciesAttributes_cl();
  SpeciesAttributes_cl(const SpeciesAttributes_cl&) = delete;
  SpeciesAttributes_cl& operator=(const SpeciesAttributes_cl&) = delete;

  // A tab file with one header row of attribute names and nothing but numbers below it.
  void Load(Name_sptr file, VornAttributeGroup_cl* group);
  void Load(Matrix_sptr matrix, const Vector_tmpl<Name_sptr>& names, VornAttributeGroup_cl* group);
  // Names the columns that the group holds; the others stay in the matrix without an attribute.
  void FillAttributes(const Vector_tmpl<Name_sptr>& names, VornAttributeGroup_cl* group);
  // A column per experiment that the group names: discrete attributes take the experiment's
  // discretised levels, real ones its values with missing cells as 0.0.
  void Load(Microarray_cl* microarray, VornAttributeGroup_cl* group);
  // Every attribute of the group, with cell (i, j) = i * step + start.
  void Load(int rows, VornAttributeGroup_cl* group, double start, double step);
  // The combinations of target from the columns of first and second in source.
  void Load(SpeciesAttributes_cl* source, VornAttributeGroup_cl* target, VornAttributeGroup_cl* first,
            VornAttributeGroup_cl* second, OperationType_cl operation);

  // Appends the other's columns and attributes; an empty table takes the other's rows.
  void Add(SpeciesAttributes_cl* other);
  // Sets every row of a column; an unknown name is skipped.
  void Update(Name_sptr name, double value);
  void Update(VornAttributeGroup_cl* group, double value);
  // Drops the columns of the group's attributes.
  void Delete(VornAttributeGroup_cl* group);
  // Keeps the rows that map to a value other than 0.
  void Reduce(const IntSet_tmpl<int>& keep);
  // Renumbers the distinct values of a column by rank from 0, so that they leave no gaps.
  void DeleteAttributeValues(int column);
  // A new matrix of the named columns in that order; an unknown name gives a column of missing values.
  Matrix_sptr GetData(const Vector_tmpl<Name_sptr>& names) const;
  // Sets the instantiation of each attribute's variable that inst holds from the row.
  void GetAttributesValues(InstVector_sptr& inst, int row) const;
  RvVector_sptr GetRvs() const;
  InstVector_sptr GetFullInstVec();

  // A header of the names, then the rows; each field is followed by a tab, a missing value is an
  // empty field. A group limits the columns to its attributes.
  void Write(std::ostream& out, VornAttributeGroup_cl* group) const;

  Matrix_sptr GetMatrix() const { return iMatrix; }
  int GetNumRows() const { return iMatrix->GetNumRows(); }
  int GetNumAttributes() const { return iAttrs.GetSize(); }
  Attr_cl* GetAttr(int i) const { return iAttrs[i]; }
  // The column of an attribute, -1 when absent.
  int GetColumn(Name_sptr name) const { return iAttrIndex.GetEntry(name); }
  Attr_cl* GetAttribute(Name_sptr name) const;
  double GetValue(int row, int column) const { return iMatrix->GetRow(row)[column]; }

  // "And" and "Or" on values exactly 1.0; every other operation gives the missing real.
  static double ComputeOp(double a, double b, OperationType_cl operation);
  // One-dimensional k-means of an experiment's present values (at least 12 and at most 50
  // passes); writes each gene's center index into the column, defaultIndex for missing values.
  static void DiscretizeRow(Microarray_cl* microarray, int experiment, Matrix_sptr matrix, int column,
                            double* centers, int numCenters, int defaultIndex);

 private:
  void AddAttr(Attr_cl* attribute, int column);
  // Keeps the columns of the list, in its order, with their attributes.
  void KeepColumns(const Vector_tmpl<int>& columns);

  Matrix_sptr iMatrix;
  Vector_tmpl<Attr_cl*> iAttrs;
  // The column of each attribute of iAttrs, by position.
  Vector_tmpl<int> iColumns;
  NameSet_tmpl<int> iAttrIndex;
  InstVector_sptr iInstVector;
};

#endif
