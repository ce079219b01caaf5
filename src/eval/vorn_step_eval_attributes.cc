// The EvalAttributes step.
#include "eval/vorn_step_eval_attributes.h"

#include <cmath>
#include <fstream>
#include <iostream>

#include "data/data_file.h"
#include "data/microarray.h"
#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "module/vorn_cluster.h"
#include "pipeline/enum_converter.h"
#include "pipeline/missing.h"
#include "pipeline/vorn_run.h"
#include "pipeline/output_file.h"

namespace {
const char kCaller[] = "VornStepEvalAttributes_cl::Run";

int IsPresent(double value) { return value != kMissingReal; }
}  // namespace

VornStepEvalAttributes_cl::VornStepEvalAttributes_cl(PropertyTreeIter_cl* iter, VornRun_cl* run)
    : VornStep_cl(iter, run) {
  iMicroarrayName = iter->GetProperty("MicroarrayName");
  iAttributeGroup = iter->GetProperty("AttributeGroup");
  iAttributesReduce = iter->GetProperty("AttributesReduce");
  iAttributesType = EnumConverter_tmpl<AttributeGroupType_cl, ATTRIBUTE_GROUP_TYPE_NUM>::FromString(
      ATTRIBUTE_GROUP_TYPE_STR, iter->GetProperty("AttributesType"), "GeneAttributes");
  iAttributesFile = iter->GetProperty("AttributesFile");
  iter->GetBooleanProperty("OutputIntersectingMembers", &iOutputIntersectingMembers, 0);
  iTestType = EnumConverter_tmpl<StatisticTestType_cl, STATISTIC_TEST_TYPE_NUM>::FromString(
      STATISTIC_TEST_TYPE_STR, iter->GetProperty("StatisticTestType"), "HyperGeometric");
  iOutputFile = iter->GetProperty("OutputFile");
  iFormat = EnumConverter_tmpl<FormatType_cl, FORMAT_TYPE_NUM>::FromString(FORMAT_TYPE_STR,
                                                                           iter->GetProperty("OutputFormat"),
                                                                           "ObjectMajor");
  iter->GetIntProperty("MinCount", &iMinCount, 3);
  iter->GetDoubleProperty("MinPValue", &iMinPValue, 0.05);
  iCorrection = EnumConverter_tmpl<MultipleHypothesisCorrection_cl, MULTIPLE_HYPOTHESIS_CORRECTION_NUM>::FromString(
      MULTIPLE_HYPOTHESIS_CORRECTION_STR, iter->GetProperty("MultipleHypothesisCorrection"), "None");
}

void VornStepEvalAttributes_cl::Run() {
  PrintRunHeader("VornStepEvalAttributes_cl");
  iNumTests = 0;
  Microarray_cl* microarray = iRun->GetData()->FindMicroarray(iMicroarrayName, kCaller);
  iObjectNames = iAttributesType == EXPERIMENT_ATTRIBUTES ? &microarray->GetExperimentNames()
                                                          : &microarray->GetGeneNames();
  EvalAttributesData_cl data;
  LoadData(data);
  Matrix_sptr reduce;
  Vector_tmpl<Name_sptr> reduceNames(10, nullptr);
  if (!iAttributesReduce.IsNull()) {
    VornAttributeGroup_cl* group = iRun->GetData()->FindAttributeGroup(iAttributesReduce, kCaller);
    SpeciesAttributes_cl* values = iRun->GetData()->GetAttributes(iMicroarrayName, group->GetType());
    Vector_tmpl<Name_sptr>* names = group->CreateAttributeNameVec();
    reduceNames = *names;
    delete names;
    if (values) reduce = values->GetData(reduceNames);
  }
  EvalFormatter_cl report(data.iEvaluatedRows.GetSize(), data.iValues->GetNumRows());
  ComputeClustersSignificance(data, reduce, reduceNames, report);
  report.MultipleHypothesisCorrection(iCorrection, iMinPValue, iNumTests);
  if (iOutputFile.IsNull()) return;
  std::ofstream out;
  OpenOutputFile(out, iRun->Resolve(iOutputFile), kCaller);
  report.Print(out, iFormat);
}

NameSet_tmpl<int>* VornStepEvalAttributes_cl::GetObjects() {
  Microarray_cl* microarray = iRun->GetData()->FindMicroarray(iMicroarrayName, kCaller);
  return iAttributesType == EXPERIMENT_ATTRIBUTES ? microarray->GetExperimentsHash() : microarray->GetGenesHash();
}

void VornStepEvalAttributes_cl::LoadData(EvalAttributesData_cl& data) {
  int rows = iObjectNames->GetSize();
  if (!iAttributesFile.IsNull()) {
    DataFileDescriptor_cl descriptor(1, 1, 0, 0, -1, 1, -999, -1, -1);
    DataFile_cl file(iAttributesFile, descriptor);
    Vector_tmpl<int>* records = file.GetRows(*iObjectNames);
    int columns = file.GetNumRealColumns();
    data.iValues = Matrix_cl::AllocateCorrectType(rows, columns);
    for (int c = 0; c < columns; c++) data.iNames.AddLast(file.GetDataColumnName(c));
    for (int r = 0; r < rows; r++)
      for (int c = 0; c < columns; c++)
        data.iValues->GetRow(r)[c] =
            (*records)[r] >= 0 ? file.GetDouble((*records)[r], descriptor.iFirstRealColumn + c) : kMissingReal;
    delete records;
  } else {
    VornAttributeGroup_cl* group = iRun->GetData()->FindAttributeGroup(iAttributeGroup, kCaller);
    SpeciesAttributes_cl* values = iRun->GetData()->GetAttributes(iMicroarrayName, iAttributesType);
    if (!values) {
      std::cerr << kCaller << " No attribute values for microarray " << iMicroarrayName << std::endl;
      abort();
    }
    Vector_tmpl<Name_sptr>* names = group->CreateAttributeNameVec();
    data.iNames = *names;
    delete names;
    data.iValues = values->GetData(data.iNames);
  }
  // The evaluated objects: those the module clusters know, with a value in at least one column.
  VornCluster_cl* cluster = iRun->CreateVornCluster(iMicroarrayName, iAttributesType);
  const Vector_tmpl<Name_sptr>* known =
      iAttributesType == EXPERIMENT_ATTRIBUTES ? cluster->GetExperimentNames() : cluster->GetGeneNames();
  NameSet_tmpl<int>* objects = GetObjects();
  IntSet_tmpl<int> evaluated(100, 0);
  for (int i = 0; known && i < known->GetSize(); i++) {
    int row = objects->GetEntry((*known)[i]);
    if (row >= 0) evaluated.Insert(row, 1);
  }
  int columns = data.iNames.GetSize();
  for (int c = 0; c < columns; c++) {
    data.iDatasetPresent.AddLast(0);
    data.iDatasetSum.AddLast(0);
    data.iGlobalPresent.AddLast(0);
    data.iGlobalSum.AddLast(0);
  }
  for (int r = 0; r < data.iValues->GetNumRows(); r++) {
    const double* row = data.iValues->GetRow(r);
    int hasData = 0;
    for (int c = 0; c < columns; c++) {
      if (!IsPresent(row[c])) continue;
      hasData = 1;
      data.iGlobalPresent[c]++;
      data.iGlobalSum[c] += static_cast<int>(row[c]);
      if (!evaluated.Exists(r)) continue;
      data.iDatasetPresent[c]++;
      data.iDatasetSum[c] += static_cast<int>(row[c]);
    }
    if (hasData && evaluated.Exists(r)) data.iEvaluatedRows.AddLast(r);
  }
}

void VornStepEvalAttributes_cl::ComputeClustersSignificance(const EvalAttributesData_cl& data, Matrix_sptr reduce,
                                                            const Vector_tmpl<Name_sptr>& reduceNames,
                                                            EvalFormatter_cl& report) {
  VornCluster_cl* cluster = iRun->CreateVornCluster(iMicroarrayName, iAttributesType);
  NameSet_tmpl<int>* objects = GetObjects();
  IntSet_tmpl<int> hasData(100, 0);
  for (int i = 0; i < data.iEvaluatedRows.GetSize(); i++) hasData.Insert(data.iEvaluatedRows[i], 1);
  int n = cluster->GetSize();
  for (int i = 0; i < n; i++) {
    if (i % 100 == 0)
      std::cerr << "VornStepEvalAttributes_cl::ComputeClustersSignificance evaluating cluster " << i << " of " << n
                << " " << 100 * i / n << "% done." << std::endl;
    VornSingleCluster_cl* single = (*cluster)[i];
    Vector_tmpl<Name_sptr>* names =
        iAttributesType == EXPERIMENT_ATTRIBUTES ? single->CreateExperimentNames() : single->CreateGeneNames();
    Vector_tmpl<int> members(names ? names->GetSize() + 1 : 1, -1);
    IntSet_tmpl<int> seen(100, 0);
    for (int m = 0; names && m < names->GetSize(); m++) {
      int row = objects->GetEntry((*names)[m]);
      if (row >= 0 && hasData.Exists(row) && !seen.Exists(row)) {
        seen.Insert(row, 1);
        members.AddLast(row);
      }
    }
    delete names;
    ComputeSignificance(single->GetName(), members, data, report);
    for (int a = 0; reduce && a < reduceNames.GetSize(); a++) {
      Vector_tmpl<int> part(members.GetSize() + 1, -1);
      for (int m = 0; m < members.GetSize(); m++)
        if (reduce->GetRow(members[m])[a] == 1.0) part.AddLast(members[m]);
      if (part.GetSize() < iMinCount) continue;
      Name_sptr name(single->GetName().CStr());
      name->Concat('_');
      name->Concat(reduceNames[a].CStr());
      ComputeSignificance(name, part, data, report);
    }
  }
}

void VornStepEvalAttributes_cl::AddResult(EvalFormatter_cl& report, Name_sptr cluster, int clusterSize,
                                          Name_sptr attribute, int datasetCount, int globalCount,
                                          SingleFormatter_cl* formatter) {
  if (iFormat == FORMAT_ATTRIBUTE_MAJOR || iFormat == FORMAT_ATTRIBUTE_MAJOR_ROWS)
    report.Add(attribute, datasetCount, clusterSize, -1, formatter);
  else
    report.Add(cluster, clusterSize, datasetCount, globalCount, formatter);
}

void VornStepEvalAttributes_cl::ComputeSignificance(Name_sptr name, const Vector_tmpl<int>& members,
                                                    const EvalAttributesData_cl& data, EvalFormatter_cl& report) {
  int attributeMajor = iFormat == FORMAT_ATTRIBUTE_MAJOR || iFormat == FORMAT_ATTRIBUTE_MAJOR_ROWS;
  IntSet_tmpl<int> isMember(100, 0);
  for (int m = 0; m < members.GetSize(); m++) isMember.Insert(members[m], 1);
  for (int c = 0; c < data.iNames.GetSize(); c++) {
    Name_sptr attribute = data.iNames[c];
    // The result is filed under the other name in the attribute-major layouts.
    Name_sptr resultName = attributeMajor ? name : attribute;
    switch (iTestType) {
      case TEST_HYPER_GEOMETRIC: {
        int K = data.iDatasetSum[c], N = data.iDatasetPresent[c];
        if (iMinCount > K) break;
        iNumTests++;
        int k = 0, n = 0;
        Name_sptr intersecting;
        for (int m = 0; m < members.GetSize(); m++) {
          double value = data.iValues->GetRow(members[m])[c];
          if (!IsPresent(value)) continue;
          n++;
          if (value != 1.0) continue;
          k++;
          if (!iOutputIntersectingMembers) continue;
          if (intersecting.IsNull()) intersecting = Name_sptr("");
          else intersecting->Concat(";;;");
          intersecting->Concat((*iObjectNames)[members[m]].CStr());
        }
        // Only enrichment counts: k / n <= K / N compared without division.
        if (k < iMinCount || static_cast<long long>(k) * N <= static_cast<long long>(K) * n) break;
        double p = std::exp(MathUtils::ComputeLogHyperPValue(k, n, K, N));
        if (p <= iMinPValue)
          AddResult(report, name, members.GetSize(), attribute, K, data.iGlobalSum[c],
                    new AttributeFormatter_cl(resultName, p, p, k, n, K, N, intersecting));
        break;
      }
      case TEST_KOLMOGOROV_SMIRNOV:
      case TEST_T_TEST: {
        Vector_tmpl<double> inside(members.GetSize() + 1, 0.0), outside(data.iValues->GetNumRows() + 1, 0.0);
        for (int r = 0; r < data.iValues->GetNumRows(); r++) {
          double value = data.iValues->GetRow(r)[c];
          if (IsPresent(value)) (isMember.Exists(r) ? inside : outside).AddLast(value);
        }
        if (inside.GetSize() < iMinCount || outside.GetSize() < iMinCount) break;
        iNumTests++;
        SingleFormatter_cl* formatter;
        double p;
        if (iTestType == TEST_KOLMOGOROV_SMIRNOV) {
          inside.SortWithOperator();
          outside.SortWithOperator();
          double d;
          int direction, indexIn, indexOut;
          p = MathUtils::ComputeKolmogorovSmirnovPValue(inside, outside, d, direction, indexIn, indexOut);
          formatter = new KolmogorovSmirnovFormatter_cl(resultName, p, d, inside.GetSize(), outside.GetSize(),
                                                        direction == 1, indexIn, indexOut, inside[indexIn],
                                                        outside[indexOut]);
        } else {
          double t, meanIn, varIn, meanOut, varOut;
          p = MathUtils::ComputeTTestPValue(inside, outside, t, meanIn, varIn, meanOut, varOut);
          formatter = new TTestFormatter_cl(resultName, p, t, inside.GetSize(), outside.GetSize(), meanIn > meanOut,
                                            meanIn, std::sqrt(varIn), meanOut, std::sqrt(varOut));
        }
        if (p <= iMinPValue)
          AddResult(report, name, members.GetSize(), attribute, data.iDatasetSum[c], data.iGlobalSum[c], formatter);
        else
          delete formatter;
        break;
      }
      default:
        std::cerr << "VornStepEvalAttributes_cl::ComputeSignificance does not recognize statistic test type "
                  << iTestType << std::endl;
        abort();
    }
  }
}
