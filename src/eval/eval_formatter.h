// The report of enrichment tests: results by class, multiple hypothesis correction, five print layouts.
#ifndef VORN_EVAL_EVAL_FORMATTER_H
#define VORN_EVAL_EVAL_FORMATTER_H

#include <ostream>

#include "data/vorn_attribute_group.h"
#include "eval/math_util.h"
#include "pipeline/hash_set.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"

class VornData_cl;

enum FormatType_cl {
  FORMAT_OBJECT_MAJOR = 0,
  FORMAT_OBJECT_MAJOR_ROWS,
  FORMAT_ATTRIBUTE_MAJOR,
  FORMAT_ATTRIBUTE_MAJOR_ROWS,
  FORMAT_MATRIX,
  FORMAT_TYPE_NUM
};
extern const char* FORMAT_TYPE_STR[FORMAT_TYPE_NUM];

enum StatisticTestType_cl { TEST_HYPER_GEOMETRIC = 0, TEST_KOLMOGOROV_SMIRNOV, TEST_T_TEST, STATISTIC_TEST_TYPE_NUM };
extern const char* STATISTIC_TEST_TYPE_STR[STATISTIC_TEST_TYPE_NUM];

enum EvalSplitsType_cl { EVAL_SPLITS_BY_EXPRESSION = 0, EVAL_SPLITS_BY_ATTRIBUTES, EVAL_SPLITS_TYPE_NUM };
extern const char* EVAL_SPLITS_TYPE_STR[EVAL_SPLITS_TYPE_NUM];

// -log10(p) for p above 0, log10(|p|) for a negative p (a depletion result); 0 gives 0.
double LogPValue(double p);

// One test result: an attribute name and a p-value (negative for a result of the down side).
class SingleFormatter_cl {
 public:
  SingleFormatter_cl(Name_sptr attribute, double pvalue) : iAttribute(attribute), iPValue(pvalue) {}
  virtual ~SingleFormatter_cl() = default;
  SingleFormatter_cl(const SingleFormatter_cl&) = default;
  SingleFormatter_cl& operator=(const SingleFormatter_cl&) = delete;

  virtual SingleFormatter_cl* Copy() const = 0;
  // The cell of the matrix layout, followed by a tab.
  virtual void PrintMatrix(std::ostream& out) const {}
  // The attribute name and "[value]".
  virtual void PrintSparseMatrixHeader(std::ostream& out) const {}
  // " [Counts=<count>]" where the result has a count.
  virtual void PrintSparseMatrix(std::ostream& out) const {}
  virtual void PrintRowHeader(std::ostream& out) const {}
  virtual void PrintRow(std::ostream& out, Name_sptr className) const {}

  Name_sptr GetAttribute() const { return iAttribute; }
  double GetPValue() const { return iPValue; }

 protected:
  // The class name, the attribute name, the p-value and its log, each followed by a tab.
  void PrintRowStart(std::ostream& out, Name_sptr className) const;
  void PrintSparseValue(std::ostream& out, double value) const;

  Name_sptr iAttribute;
  double iPValue;
};

// A hypergeometric result: k of n cluster members carry the attribute that K of N objects carry.
class AttributeFormatter_cl : public SingleFormatter_cl {
 public:
  AttributeFormatter_cl(Name_sptr attribute, double pvalue, double matrixValue, int k, int n, int K, int N,
                        Name_sptr members)
      : SingleFormatter_cl(attribute, pvalue), iMatrixValue(matrixValue), ik(k), in(n), iK(K), iN(N), iMembers(members) {}
  SingleFormatter_cl* Copy() const override { return new AttributeFormatter_cl(*this); }
  void PrintMatrix(std::ostream& out) const override;
  void PrintSparseMatrixHeader(std::ostream& out) const override { PrintSparseValue(out, iPValue); }
  void PrintSparseMatrix(std::ostream& out) const override;
  void PrintRowHeader(std::ostream& out) const override;
  void PrintRow(std::ostream& out, Name_sptr className) const override;

 private:
  double iMatrixValue;
  int ik, in, iK, iN;
  Name_sptr iMembers;
};

// A two-sample Kolmogorov-Smirnov result of the cluster's values against the rest.
class KolmogorovSmirnovFormatter_cl : public SingleFormatter_cl {
 public:
  KolmogorovSmirnovFormatter_cl(Name_sptr attribute, double pvalue, double d, int clusterSize, int annotationSize,
                                int clusterLarger, int clusterIndex, int annotationIndex, double clusterValue,
                                double annotationValue)
      : SingleFormatter_cl(attribute, pvalue), iD(d), iClusterSize(clusterSize), iAnnotationSize(annotationSize),
        iClusterLarger(clusterLarger), iClusterIndex(clusterIndex), iAnnotationIndex(annotationIndex),
        iClusterValue(clusterValue), iAnnotationValue(annotationValue) {}
  SingleFormatter_cl* Copy() const override { return new KolmogorovSmirnovFormatter_cl(*this); }
  void PrintMatrix(std::ostream& out) const override { out << iPValue << '\t'; }
  void PrintSparseMatrixHeader(std::ostream& out) const override { PrintSparseValue(out, iPValue); }
  void PrintRowHeader(std::ostream& out) const override;
  void PrintRow(std::ostream& out, Name_sptr className) const override;

 private:
  double iD;
  int iClusterSize, iAnnotationSize, iClusterLarger, iClusterIndex, iAnnotationIndex;
  double iClusterValue, iAnnotationValue;
};

// A t-test result of the cluster's values against the rest.
class TTestFormatter_cl : public SingleFormatter_cl {
 public:
  TTestFormatter_cl(Name_sptr attribute, double pvalue, double t, int clusterSize, int annotationSize,
                    int clusterLarger, double clusterMean, double clusterStd, double annotationMean,
                    double annotationStd)
      : SingleFormatter_cl(attribute, pvalue), iT(t), iClusterSize(clusterSize), iAnnotationSize(annotationSize),
        iClusterLarger(clusterLarger), iClusterMean(clusterMean), iClusterStd(clusterStd),
        iAnnotationMean(annotationMean), iAnnotationStd(annotationStd) {}
  SingleFormatter_cl* Copy() const override { return new TTestFormatter_cl(*this); }
  void PrintSparseMatrixHeader(std::ostream& out) const override { PrintSparseValue(out, iPValue); }
  void PrintRowHeader(std::ostream& out) const override;
  void PrintRow(std::ostream& out, Name_sptr className) const override;

 private:
  double iT;
  int iClusterSize, iAnnotationSize, iClusterLarger;
  double iClusterMean, iClusterStd, iAnnotationMean, iAnnotationStd;
};

// One class's results; owns them.
class ClassFormatter_cl {
 public:
  explicit ClassFormatter_cl(int size) : iSize(size), iFormatters(10, nullptr), iFormattersByAttribute(10, nullptr) {}
  ~ClassFormatter_cl();
  ClassFormatter_cl(const ClassFormatter_cl&) = delete;
  ClassFormatter_cl& operator=(const ClassFormatter_cl&) = delete;

  void Add(SingleFormatter_cl* formatter);
  int GetSize() const { return iSize; }
  int GetNumFormatters() const { return iFormatters.GetSize(); }
  SingleFormatter_cl* GetFormatter(int i) const { return iFormatters[i]; }
  SingleFormatter_cl* GetFormatter(Name_sptr attribute) const { return iFormattersByAttribute.GetEntry(attribute); }
  // Ascending by stored p-value, ties in order of Add, so that depletion results come first.
  void Sort();
  // Gives the results to the caller and forgets them.
  void Release();

 private:
  int iSize;
  Vector_tmpl<SingleFormatter_cl*> iFormatters;
  NameSet_tmpl<SingleFormatter_cl*> iFormattersByAttribute;
};

class EvalFormatter_cl : public NameSet_tmpl<ClassFormatter_cl*> {
 public:
  // -1 for either size leaves its field out of the sparse header.
  EvalFormatter_cl(int datasetSize, int globalSize);
  ~EvalFormatter_cl() override;
  EvalFormatter_cl(const EvalFormatter_cl&) = delete;
  EvalFormatter_cl& operator=(const EvalFormatter_cl&) = delete;

  // The report owns the formatter; the first counts seen for an attribute are kept.
  void Add(Name_sptr className, int classSize, int datasetCount, int globalCount, SingleFormatter_cl* formatter);
  void Print(std::ostream& out, FormatType_cl format);
  // The number of results in all classes.
  int GetSize() const;
  const Vector_tmpl<Name_sptr>& GetClasses() const { return iClasses; }
  // Keeps the results with |p| <= maxPValue whose attribute the table holds (all without a table).
  void Reduce(double maxPValue, const NameSet_tmpl<int>* names = nullptr);
  // Of the attributes held by the same set of classes, keeps the first.
  void RemoveAttributesWithIdenticalClasses();
  // numTests counts the tests made, not the results kept.
  void MultipleHypothesisCorrection(MultipleHypothesisCorrection_cl correction, double alpha, int numTests);
  // A group of that name and type with a real attribute per attribute name, filled from the results
  // of the classes that are the microarray's genes or experiments; entered in the data.
  void CreateAttributes(AttributeGroupType_cl type, Name_sptr groupName, VornData_cl* data, Name_sptr microarray);

 private:
  void PrintMatrix(std::ostream& out);
  void PrintSparse(std::ostream& out);
  void PrintRows(std::ostream& out);

  Vector_tmpl<Name_sptr> iClasses;
  NameSet_tmpl<int> iDatasetCounts;
  NameSet_tmpl<int> iGlobalCounts;
  int iDatasetSize;
  int iGlobalSize;
};

#endif
