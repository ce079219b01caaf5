// Attribute groups, attribute values of a microarray, the data store's tables and weight groups.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "data/species_attributes.h"
#include "data/vorn_data.h"
#include "data/weight_groups.h"
#include "data_test_helpers.h"
#include "pipeline/missing.h"
#include "pipeline/xml_parser.h"

namespace {
// One element parsed from text; the parser lives as long as the process.
struct Element {
  explicit Element(const std::string& xml) {
    static XmlParser_cl* parser = new XmlParser_cl;
    iDoc = parser->ParseBuffer(xml.data(), xml.size(), "element.xml");
    iIter = std::make_unique<XmlIter_cl>(iDoc->getDocumentElement());
  }
  xercesc::DOMDocument* iDoc;
  std::unique_ptr<XmlIter_cl> iIter;
};

std::unique_ptr<VornAttributeGroup_cl> GroupOf(const std::string& xml) {
  Element element(xml);
  return std::make_unique<VornAttributeGroup_cl>(element.iIter.get());
}

std::unique_ptr<Microarray_cl> MicroarrayOf(const std::string& content) {
  auto microarray = std::make_unique<Microarray_cl>(nullptr, Name_sptr("m"), WriteTempFile("expr", content),
                                                    Name_sptr("Continuous"));
  microarray->Load(nullptr, nullptr, nullptr);
  return microarray;
}

std::string Written(const SpeciesAttributes_cl& values, VornAttributeGroup_cl* group) {
  std::ostringstream out;
  values.Write(out, group);
  return out.str();
}
}  // namespace

TEST(AttributeGroupTest, ReadsKeysNamesFileAndChildrenWithDistinctIds) {
  Name_sptr names = WriteTempFile("names", "a\nb\n");
  auto group = GroupOf("<G Name='tf' Type='GeneAttributes' ValueDomain='0;1' AttributesNameFile='" +
                       std::string(names->GetText()) + "'><A Name='c' ValueDomain='Continuous'/><A Name='d'/></G>");
  EXPECT_STREQ(group->GetName()->GetText(), "tf");
  EXPECT_EQ(group->GetType(), GENE_ATTRIBUTES);
  ASSERT_EQ(group->GetNumAttributes(), 4);
  EXPECT_EQ(group->GetAttribute(Name_sptr("a"))->GetRv()->GetDomain()->GetDomainSize(), 2);
  EXPECT_FALSE(group->GetAttribute(Name_sptr("c"))->GetRv()->IsDiscrete());
  EXPECT_TRUE(group->GetAttribute(Name_sptr("d"))->GetRv()->IsDiscrete());
  IntSet_tmpl<int> ids(8, 0);
  for (auto* entry : group->GetAttributes()) EXPECT_EQ(ids.Increment(entry->iValue->GetId(), 1), 0);
  std::ostringstream out;
  group->GetAttribute(Name_sptr("a"))->WriteFile(out);
  EXPECT_EQ(out.str(), "Attr[a] id[" + std::to_string(group->GetAttribute(Name_sptr("a"))->GetId()) + "]");
}

TEST(AttributeGroupTest, DefaultsAndRepeatedNamesShadow) {
  auto group = GroupOf("<G Name='e'><A Name='x'/><A Name='x' ValueDomain='lo;mid;hi'/></G>");
  EXPECT_EQ(group->GetType(), EXPERIMENT_ATTRIBUTES);
  // Both are kept and owned; a look-up finds one of them every time.
  EXPECT_EQ(group->GetNumAttributes(), 2);
  Attr_cl* found = group->GetAttribute(Name_sptr("x"));
  group->DeleteAttribute(Name_sptr("x"));
  EXPECT_EQ(group->GetNumAttributes(), 1);
  EXPECT_NE(group->GetAttribute(Name_sptr("x")), found);
}

TEST(AttributeGroupDeathTest, BadElementsStop) {
  EXPECT_DEATH(GroupOf("<G Type='GeneAttributes'/>"), "VornAttributeGroup_cl::Read An attribute group without a Name");
  EXPECT_DEATH(GroupOf("<G Name='g'><A/></G>"), "VornAttributeGroup_cl::Read An attribute without a Name");
  EXPECT_DEATH(GroupOf("<G Name='g' Type='Genes'/>"), "EnumConverter_tmpl::FromString Unrecognized type Genes");
  EXPECT_DEATH(GroupOf("<G Name='g' AttributesNameFile='no/such/file'/>"),
               "VornAttributeGroup_cl::Read Cannot open file no/such/file");
}

TEST(AttributeGroupTest, CombinationsPairDifferentNamesOnTheFirstDomain) {
  auto first = GroupOf("<G Name='f' Type='GeneAttributes' ValueDomain='0;1'><A Name='a'/><A Name='b'/></G>");
  auto second = GroupOf("<G Name='s' Type='GeneAttributes'><A Name='a'/><A Name='c'/></G>");
  VornAttributeGroup_cl both(Name_sptr("ab"), first.get(), second.get());
  EXPECT_EQ(both.GetType(), GENE_ATTRIBUTES);
  EXPECT_EQ(both.GetNumAttributes(), 3);
  for (const char* name : {"a_c", "b_a", "b_c"}) EXPECT_TRUE(both.HasAttribute(Name_sptr(name))) << name;
  EXPECT_FALSE(both.HasAttribute(Name_sptr("a_a")));
  EXPECT_TRUE(both.GetAttribute(Name_sptr("a_c"))->GetRv()->IsDiscrete());
}

TEST(AttributeGroupTest, PassedAttributesOutliveTheGroup) {
  Attr_cl* kept;
  {
    auto group = GroupOf("<G Name='g'><A Name='x'/><A Name='y'/></G>");
    kept = group->GetAttribute(Name_sptr("x"));
    group->PassOwnership(Name_sptr("x"));
    EXPECT_TRUE(group->HasAttribute(Name_sptr("x")));
  }
  EXPECT_STREQ(kept->GetName()->GetText(), "x");
  delete kept;
}

TEST(SpeciesAttributesTest, FileColumnsOfTheGroupGetAttributes) {
  auto group = GroupOf("<G Name='g' Type='GeneAttributes'><A Name='a'/><A Name='b'/></G>");
  SpeciesAttributes_cl values;
  values.Load(WriteTempFile("attrs", "a\tother\tb\ta\n1\t7\t\t2\n0\t8\t3\t4\n"), group.get());
  ASSERT_EQ(values.GetNumRows(), 2);
  EXPECT_EQ(values.GetMatrix()->GetNumCols(), 4);
  // The unnamed column stays without attribute; the later "a" shadows the first.
  EXPECT_EQ(values.GetNumAttributes(), 3);
  EXPECT_EQ(values.GetColumn(Name_sptr("other")), -1);
  EXPECT_EQ(values.GetColumn(Name_sptr("a")), 3);
  EXPECT_EQ(values.GetValue(0, values.GetColumn(Name_sptr("b"))), kMissingReal);
  EXPECT_EQ(Written(values, group.get()), "a\tb\ta\t\n1\t\t2\t\n0\t3\t4\t\n");
}

TEST(SpeciesAttributesTest, WrittenValuesReadBack) {
  auto group = GroupOf("<G Name='g' Type='GeneAttributes'><A Name='a'/><A Name='b'/></G>");
  SpeciesAttributes_cl values;
  values.Load(WriteTempFile("attrs", "b\ta\n0.5\t\n-2\t1e3\n"), group.get());
  SpeciesAttributes_cl again;
  again.Load(WriteTempFile("again", Written(values, nullptr)), group.get());
  EXPECT_EQ(Written(again, nullptr), Written(values, nullptr));
  EXPECT_EQ(again.GetValue(0, again.GetColumn(Name_sptr("a"))), kMissingReal);
}

TEST(SpeciesAttributesTest, DiscretisingFindsLevelsWithTiesLowAndMissingAtTheDefault) {
  auto microarray = MicroarrayOf("Gene\tx\ty\ng1\t-3\t\ng2\t-2.8\t\ng3\t0.1\t\ng4\t2.9\t\n");
  Matrix_sptr out = Matrix_cl::AllocateCorrectType(4, 1);
  double centers[3] = {-1.0, 0.0, 1.0};
  SpeciesAttributes_cl::DiscretizeRow(microarray.get(), 0, out, 0, centers, 3, 1);
  EXPECT_EQ(out->GetRow(0)[0], 0);
  EXPECT_EQ(out->GetRow(1)[0], 0);
  EXPECT_EQ(out->GetRow(2)[0], 1);
  EXPECT_EQ(out->GetRow(3)[0], 2);
  EXPECT_DOUBLE_EQ(centers[0], -2.9);
  double blank[3] = {-1.0, 0.0, 1.0};
  SpeciesAttributes_cl::DiscretizeRow(microarray.get(), 1, out, 0, blank, 3, 1);
  for (int g = 0; g < 4; g++) EXPECT_EQ(out->GetRow(g)[0], 1);
  // 0 lies halfway between -1 and 1, and later between two centers both at 0: the lower index takes it.
  auto zeros = MicroarrayOf("Gene\tz\ng1\t0\ng2\t0\n");
  Matrix_sptr two = Matrix_cl::AllocateCorrectType(2, 1);
  double even[2] = {-1.0, 1.0};
  SpeciesAttributes_cl::DiscretizeRow(zeros.get(), 0, two, 0, even, 2, 1);
  EXPECT_EQ(two->GetRow(0)[0], 0);
  EXPECT_EQ(two->GetRow(1)[0], 0);
}

TEST(SpeciesAttributesTest, FromMicroarrayTakesNamedExperiments) {
  auto microarray = MicroarrayOf("Gene\tx\ty\tz\ng1\t1\t\t-1\ng2\t2\t5\t1\n");
  auto group = GroupOf("<G Name='g'><A Name='z' ValueDomain='lo;mid;hi'/><A Name='y'/><A Name='w'/></G>");
  SpeciesAttributes_cl values;
  values.Load(microarray.get(), group.get());
  ASSERT_EQ(values.GetMatrix()->GetNumCols(), 2);
  EXPECT_EQ(values.GetColumn(Name_sptr("y")), 0);
  EXPECT_EQ(values.GetValue(0, 0), 0.0);
  EXPECT_EQ(values.GetValue(1, 0), 5.0);
  EXPECT_EQ(values.GetValue(0, 1), 0);
  EXPECT_EQ(values.GetValue(1, 1), 2);
}

TEST(SpeciesAttributesTest, CombinationsApplyTheOperation) {
  EXPECT_EQ(SpeciesAttributes_cl::ComputeOp(1.0, 1.0, OPERATION_AND), 1.0);
  EXPECT_EQ(SpeciesAttributes_cl::ComputeOp(1.0, 0.5, OPERATION_AND), 0.0);
  EXPECT_EQ(SpeciesAttributes_cl::ComputeOp(0.0, 1.0, OPERATION_OR), 1.0);
  EXPECT_EQ(SpeciesAttributes_cl::ComputeOp(0.0, 2.0, OPERATION_OR), 0.0);
  for (OperationType_cl op : {OPERATION_ALL, OPERATION_AVERAGE, OPERATION_FIRST, OPERATION_MAX, OPERATION_MIN})
    EXPECT_EQ(SpeciesAttributes_cl::ComputeOp(1.0, 1.0, op), kMissingReal);

  auto first = GroupOf("<G Name='f' Type='GeneAttributes'><A Name='a'/><A Name='b'/></G>");
  SpeciesAttributes_cl source;
  source.Load(WriteTempFile("src", "a\tb\n1\t1\n1\t0\n0\t0\n"), first.get());
  VornAttributeGroup_cl target(Name_sptr("t"), first.get(), first.get());
  SpeciesAttributes_cl combined;
  combined.Load(&source, &target, first.get(), first.get(), OPERATION_OR);
  ASSERT_EQ(combined.GetNumAttributes(), 2);
  int ab = combined.GetColumn(Name_sptr("a_b"));
  EXPECT_EQ(combined.GetValue(0, ab), 1.0);
  EXPECT_EQ(combined.GetValue(1, ab), 1.0);
  EXPECT_EQ(combined.GetValue(2, ab), 0.0);
}

TEST(SpeciesAttributesTest, TableEditsKeepAttributesAndColumnsInStep) {
  auto first = GroupOf("<G Name='f' Type='GeneAttributes'><A Name='a'/><A Name='b'/></G>");
  auto second = GroupOf("<G Name='s' Type='GeneAttributes'><A Name='c'/></G>");
  SpeciesAttributes_cl values;
  values.Load(WriteTempFile("one", "a\tb\n0\t10\n2\t20\n5\t30\n"), first.get());
  SpeciesAttributes_cl* more = new SpeciesAttributes_cl;
  more->Load(3, second.get(), 1.0, 0.5);
  values.Add(more);
  delete more;
  EXPECT_EQ(values.GetColumn(Name_sptr("c")), 2);
  EXPECT_EQ(values.GetValue(2, 2), 2.0);

  values.DeleteAttributeValues(values.GetColumn(Name_sptr("a")));
  EXPECT_EQ(values.GetValue(1, 0), 1);
  EXPECT_EQ(values.GetValue(2, 0), 2);

  values.Update(Name_sptr("b"), 7.0);
  values.Update(Name_sptr("unknown"), 9.0);
  EXPECT_EQ(values.GetValue(0, 1), 7.0);

  Vector_tmpl<Name_sptr> names(3, nullptr);
  names.AddLast(Name_sptr("c"));
  names.AddLast(Name_sptr("zz"));
  Matrix_sptr data = values.GetData(names);
  EXPECT_EQ(data->GetRow(0)[0], 1.0);
  EXPECT_EQ(data->GetRow(0)[1], kMissingReal);

  values.Delete(first.get());
  EXPECT_EQ(values.GetNumAttributes(), 1);
  EXPECT_EQ(values.GetColumn(Name_sptr("c")), 0);
  EXPECT_EQ(values.GetColumn(Name_sptr("a")), -1);

  IntSet_tmpl<int> keep(4, 0);
  keep.Insert(2, 1);
  values.Reduce(keep);
  EXPECT_EQ(values.GetNumRows(), 1);
  EXPECT_EQ(values.GetValue(0, 0), 2.0);
}

TEST(SpeciesAttributesTest, InstantiationsTakeRowValues) {
  auto group = GroupOf("<G Name='g' Type='GeneAttributes'><A Name='d' ValueDomain='0;1;2'/><A Name='r'/></G>");
  SpeciesAttributes_cl values;
  values.Load(WriteTempFile("attrs", "d\tr\n2\t0.25\n\t1e300\n"), group.get());
  InstVector_sptr inst = values.GetFullInstVec();
  EXPECT_EQ(inst.Get(), values.GetFullInstVec().Get());
  values.GetAttributesValues(inst, 0);
  EXPECT_EQ(inst->GetInst(SingleVar_sptr(group->GetAttribute(Name_sptr("d"))->GetRv()))->GetIndex(), 2);
  EXPECT_EQ(inst->GetInst(SingleVar_sptr(group->GetAttribute(Name_sptr("r"))->GetRv()))->GetRealValue(), 0.25);
  values.GetAttributesValues(inst, 1);
  EXPECT_TRUE(inst->GetInst(SingleVar_sptr(group->GetAttribute(Name_sptr("d"))->GetRv()))->IsMissing());
  EXPECT_EQ(values.GetRvs()->GetNumberOfVars(), 2);
}

TEST(VornDataTest, GroupTablesBySearchOrderAndType) {
  VornData_cl data;
  auto* genes = new VornAttributeGroup_cl(Name_sptr("same"), GENE_ATTRIBUTES, Domain_sptr());
  auto* experiments = new VornAttributeGroup_cl(Name_sptr("same"), EXPERIMENT_ATTRIBUTES, Domain_sptr());
  data.AddAttributeGroup(experiments);
  data.AddAttributeGroup(genes);
  EXPECT_EQ(data.GetAttributeGroup(Name_sptr("same")), genes);
  VornAttributeGroup_cl none(Name_sptr("odd"), ATTRIBUTE_GROUP_TYPE_NUM, Domain_sptr());
  data.AddAttributeGroup(&none);
  testing::internal::CaptureStderr();
  EXPECT_EQ(data.GetAttributeGroup(Name_sptr("odd")), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "VornData_cl::GetAttributeGroup could not find attribute group named = odd\n");
  EXPECT_DEATH(data.FindAttributeGroup(Name_sptr("odd"), "Caller_cl::Run"), "^Caller_cl::Run Unknown attribute group odd\n");
  data.DeleteAttributeGroup(genes);
  EXPECT_EQ(data.GetAttributeGroup(Name_sptr("same")), experiments);
}

TEST(VornDataTest, ValuesJoinTheSpeciesAndLeaveWithTheirGroup) {
  VornData_cl data;
  auto microarray = MicroarrayOf("Gene\tx\ng1\t1\ng2\t2\n");
  data.AddMicroarray(microarray.release());
  auto* group = new VornAttributeGroup_cl(Name_sptr("g"), GENE_ATTRIBUTES, CreateValueDomain(Name_sptr("0;1")));
  group->AddAttribute(Name_sptr("a"), group->GetValueDomain());
  data.AddAttributeGroup(group);
  auto* values = new SpeciesAttributes_cl;
  values->Load(2, group, 0.0, 1.0);
  data.AddAttributeGroup(Name_sptr("m"), values, GENE_ATTRIBUTES);
  EXPECT_EQ(data.GetAttributeType(Name_sptr("a")), GENE_ATTRIBUTES);
  EXPECT_EQ(data.GetAttributeType(Name_sptr("b")), ATTRIBUTE_GROUP_TYPE_NUM);
  EXPECT_STREQ(data.GetAttributeMicroarrayName(Name_sptr("a"))->GetText(), "m");
  EXPECT_EQ(data.GetAttribute(Name_sptr("a")), group->GetAttribute(Name_sptr("a")));

  auto* tooFew = new SpeciesAttributes_cl;
  tooFew->Load(3, group, 0.0, 1.0);
  EXPECT_DEATH(data.AddAttributeGroup(Name_sptr("m"), tooFew, GENE_ATTRIBUTES),
               "VornData_cl::AddAttributeGroup 3 rows of values for 2 genes of microarray m");
  EXPECT_DEATH(data.GetSpecies(Name_sptr("m"))->GetAttributeData(LINK_ATTRIBUTES),
               "SpeciesVorn_cl::GetAttributeData Unrecognized Type 4");
  delete tooFew;

  data.DeleteAttributeGroup(group);
  EXPECT_EQ(data.GetAttributes(Name_sptr("m"), GENE_ATTRIBUTES)->GetNumAttributes(), 0);
  EXPECT_EQ(data.GetAttribute(Name_sptr("a")), nullptr);
}

TEST(WeightGroupsTest, GroupsKeepKnownExperimentsAndCutMicroarrays) {
  auto microarray = MicroarrayOf("Gene\tx\ty\tz\ng1\t1\t2\t3\n");
  Name_sptr list = WriteTempFile("list", "z\nq\nx\n");
  Element element("<W><Experiments Name='w' File='" + std::string(list->GetText()) +
                  "' Weight='2.5'/><Other/></W>");
  WeightGroups_cl groups(element.iIter.get());
  ASSERT_EQ(groups.GetSize(), 1);
  EXPECT_EQ(groups[0]->GetMinWeight(), 1.0);
  testing::internal::CaptureStderr();
  groups.LoadKeys(microarray.get());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Found 2 items in group for file " + std::string(list->GetText()) + " with group weight=2.5\n");
  Vector_tmpl<Microarray_cl*>* cut = groups.CreateMicroarrays(microarray.get());
  ASSERT_EQ(cut->GetSize(), 1);
  EXPECT_EQ((*cut)[0]->GetNumExperiments(), 2);
  EXPECT_EQ((*cut)[0]->GetNumGenes(), 1);
  cut->DeleteAll();
  delete cut;
}
