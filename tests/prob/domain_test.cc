// Domains: reading and writing the XML element and the text form, parsing values, legality and kinds.
#include "prob/domain.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <memory>
#include <sstream>
#include <string>

#include "pipeline/prop_tree_printer.h"
#include "pipeline/xml_parser.h"

namespace {

std::string Print(const Domain_sptr& domain) {
  std::ostringstream out;
  PropertyTreePrinter_cl printer(&out);
  domain->Print(&printer);
  return out.str();
}

Domain_sptr Read(const std::string& xml) {
  static XmlParser_cl* parser = new XmlParser_cl;
  xercesc::DOMDocument* document = parser->ParseBuffer(xml.data(), xml.size(), "domain.xml");
  XmlIter_cl iter(document->getDocumentElement());
  return DomainFactory_cl::CreateDomain(&iter);
}

std::string Names(const Domain_sptr& domain) { return domain->ToString("|")->GetText(); }

}  // namespace

TEST(Domain, ReadsEachKindFromItsElement) {
  Domain_sptr names = Read("<domain type='name' ordinal='TRUE'><val name='low'/><x name='mid'/><val name='high'/></domain>");
  NameDomain_sptr n = Conv2NameDomain(names);
  ASSERT_TRUE(n);
  EXPECT_EQ(n->GetDomainSize(), 3);
  EXPECT_TRUE(n->IsOrdinal());
  EXPECT_EQ(Names(n), "low|mid|high");
  EXPECT_FALSE(Conv2NameDomain(Read("<domain type='name' ordinal='false'/>"))->IsOrdinal());

  RealDomain_sptr r = Conv2RealDomain(Read("<domain type='real'><upper val='2.5'/><other/><lower val='-1e3'/></domain>"));
  ASSERT_TRUE(r);
  EXPECT_TRUE(r->HasLower() && r->HasUpper());
  EXPECT_EQ(r->GetLower(), -1000.0);
  EXPECT_EQ(r->GetUpper(), 2.5);
  EXPECT_FALSE(Conv2RealDomain(Read("<domain type='real'/>"))->HasLower());

  IntDomain_sptr i = Conv2IntDomain(Read("<domain type='int'><lower val='-2'/><upper val='3'/></domain>"));
  ASSERT_TRUE(i);
  EXPECT_EQ(i->GetDomainSize(), 6);
  EXPECT_EQ(i->ParseDiscreteValue("-2"), 0);
  EXPECT_FALSE(i->IsOrdinal());
}

TEST(DomainDeathTest, MalformedElementsStopWithTheirMessages) {
  EXPECT_DEATH(Read("<domain type='real'><lower val='abc'/></domain>"), "^error: reading lower bound value\n$");
  EXPECT_DEATH(Read("<domain type='real'><upper/></domain>"), "^error: reading upper bound value\n$");
  EXPECT_DEATH(Read("<domain type='int'><lower val='1.5x'/><upper val='x'/></domain>"),
               "^error: reading upper bound value\n$");
  EXPECT_DEATH(Read("<domain type='int'><lower val='99999999999'/></domain>"), "^error: reading lower bound value\n$");
  EXPECT_DEATH(Read("<domain type='name'><val/></domain>"), "^error: reading domain value name\n$");
  EXPECT_DEATH(Read("<domain type='Name'/>"), "^error: unknown domain type Name\n$");
  EXPECT_DEATH(Read("<domain/>"), "^error: unknown domain type <NULL>\n$");
  EXPECT_DEATH(Read("<domain type='int'><lower val='-2147483648'/><upper val='2147483647'/></domain>"),
               "^IntDomain_cl: domain of 4294967296 values is too large\n$");
}

TEST(Domain, PrintedElementsReadBackToTheSameBytes) {
  NameDomain_sptr ordinal = new NameDomain_cl(1);
  for (const char* v : {"a&b", "<c>", "say \"x\"", "plain"}) ordinal->Add(Name_sptr(v));
  RealDomain_sptr lowOnly = new RealDomain_cl();
  lowOnly->SetLower(-0.000123456789);
  Domain_sptr domains[] = {ordinal,
                           DomainFactory_cl::CreateIntegerDomain(7, 3),
                           new NameDomain_cl(),
                           new RealDomain_cl(-1.5, 123456789.987654321),
                           lowOnly,
                           new RealDomain_cl(),
                           new RealDomain_cl(-DBL_MAX, DBL_MAX),
                           new IntDomain_cl(-5, 1000000)};
  for (const Domain_sptr& d : domains) {
    std::string first = Print(d);
    std::string second = Print(Read(first));
    EXPECT_EQ(first, second);
    EXPECT_EQ(Print(Read(second)), second);
  }
  EXPECT_EQ(Print(domains[3]),
            "<domain type=\"real\">\n  <lower val=\"   -1.500000\"/>\n  <upper val=\"123456789.987654\"/>\n</domain>\n");
  EXPECT_EQ(Print(domains[0]).substr(0, 60), "<domain type=\"name\" ordinal=\"true\">\n  <val name=\"a&amp;b\"/>\n");
  EXPECT_EQ(Print(domains[2]), "<domain type=\"name\">\n</domain>\n");
}

TEST(Domain, TextFormRoundTripsThroughToString) {
  char text[] = "up;down;;flat";
  Domain_sptr d = DomainFactory_cl::CreateDomain(text, ";", "Continuous");
  EXPECT_EQ(Names(d), "up|down|flat");
  std::string joined = d->ToString(";")->GetText();
  std::string cut = joined;  // the reader cuts its text in place
  Domain_sptr again = DomainFactory_cl::CreateDomain(cut.data(), ";", "Continuous");
  EXPECT_EQ(again->ToString(";")->GetText(), joined);

  char word[] = "Continuous";
  Domain_sptr real = DomainFactory_cl::CreateDomain(word, ";", "Continuous");
  ASSERT_TRUE(Conv2RealDomain(real));
  EXPECT_STREQ(real->ToString(";")->GetText(), "Continuous");
  char same[] = "Continuous";
  EXPECT_EQ(DomainFactory_cl::CreateDomain(same, ";", nullptr)->GetDomainSize(), 1);
  EXPECT_EQ(DomainFactory_cl::CreateDomain(nullptr, ";", nullptr)->GetDomainSize(), 0);
  EXPECT_EQ(Names(DomainFactory_cl::CreateIntegerDomain(-1, 3)), "-1|0|1");
  EXPECT_EQ(Conv2IntDomain(DomainFactory_cl::CreateIntegerDomain(0, 2)).Get(), nullptr);
}

TEST(Domain, ParsingValuesFromText) {
  IntDomain_cl ints(10, 20);
  EXPECT_EQ(ints.ParseDiscreteValue("abc"), -1);
  EXPECT_EQ(ints.ParseDiscreteValue("21"), -1);
  EXPECT_EQ(ints.ParseDiscreteValue("9"), -1);
  EXPECT_EQ(ints.ParseDiscreteValue("15"), 5);
  EXPECT_EQ(ints.ParseDiscreteValue(" 12apples"), 2);

  RealDomain_cl bounded(0.0, 1.0);
  EXPECT_EQ(bounded.ParseRealValue("1"), 1.0);
  EXPECT_EQ(bounded.ParseRealValue("0"), 0.0);
  EXPECT_EQ(bounded.ParseRealValue("1.0001"), DBL_MAX);
  EXPECT_EQ(bounded.ParseRealValue("x"), DBL_MAX);
  EXPECT_EQ(bounded.ParseDiscreteValue("1"), -1);

  NameDomain_sptr names = Conv2NameDomain(DomainFactory_cl::CreateIntegerDomain(0, 3));
  EXPECT_EQ(names->ParseDiscreteValue("2"), 2);
  EXPECT_EQ(names->ParseDiscreteValue("02"), -1);
  EXPECT_EQ(names->NameToIndex(Name_sptr("1")), 1);
  names->Add(Name_sptr("1"));
  EXPECT_EQ(names->NameToIndex(Name_sptr("1")), 1);
  EXPECT_EQ(names->GetDomainSize(), 4);
  EXPECT_EQ(bounded.ToString(",")->GetLength(), 10);
}

TEST(Domain, ValuesAndIndicesOfEachKind) {
  IntDomain_cl ints(-3, 3);
  std::unique_ptr<Value_cl> v(ints.IndexToValue(4));
  EXPECT_EQ(static_cast<IntValue_cl*>(v.get())->GetValue(), 1);
  EXPECT_EQ(static_cast<int>(ints.ValueToIndex(v.get())), 4);
  EXPECT_TRUE(ints.IsLegalValue(v.get()));
  IntValue_cl outside(4);
  EXPECT_FALSE(ints.IsLegalValue(&outside));
  EXPECT_TRUE(ints.IsLastIndex(6));
  EXPECT_FALSE(ints.IsLegalIndex(7));

  RealDomain_sptr real = new RealDomain_cl(-1.0, 1.0);
  RealValue_cl edge(1.0), beyond(1.5);
  EXPECT_TRUE(real->IsLegalValue(&edge));
  EXPECT_FALSE(real->IsLegalValue(&beyond));
  EXPECT_FALSE(real->IsDiscrete());
  NameDomain_sptr bins = real->Discretize(4);
  EXPECT_EQ(Names(bins), "-1.0000 - -0.5000|-0.5000 - 0.0000|0.0000 - 0.5000|0.5000 - 1.0000");

  CompositeDomain_sptr pair = new CompositeDomain_cl();
  EXPECT_EQ(pair->GetDomainSize(), 1);
  pair->AddDomain(new IntDomain_cl(0, 2));
  pair->AddDomain(DomainFactory_cl::CreateIntegerDomain(5, 4));
  EXPECT_EQ(pair->GetDomainSize(), 12);
  EXPECT_TRUE(pair->IsDiscrete());
  EXPECT_FALSE(pair->IsOrdinal());
  Vector_tmpl<int>* at = new Vector_tmpl<int>();
  at->AddLast(2);
  at->AddLast(3);
  Index_cl index(at);
  std::unique_ptr<Value_cl> tuple(pair->IndexToValue(index));
  std::ostringstream out;
  out << tuple.get();
  EXPECT_EQ(out.str(), "<2 8>");
  EXPECT_TRUE(pair->ValueToIndex(tuple.get()) == index);
  EXPECT_TRUE(pair->IsLegalValue(tuple.get()));
  EXPECT_TRUE(pair->IsLastIndex(index));
  EXPECT_FALSE(pair->IsFirstIndex(index));
  pair->AddDomain(real);
  EXPECT_FALSE(pair->IsDiscrete());
  EXPECT_EQ(pair->ParseRealValue("1"), DBL_MAX);
  EXPECT_EQ(pair->ParseDiscreteValue("1"), -1);
}

TEST(Domain, ConversionsYieldEmptyHandlesOnAMismatch) {
  Domain_sptr names = new NameDomain_cl();
  EXPECT_TRUE(Conv2DiscreteDomain(names));
  EXPECT_TRUE(Conv2NameDomain(names));
  EXPECT_FALSE(Conv2IntDomain(names));
  EXPECT_FALSE(Conv2RealDomain(names));
  EXPECT_FALSE(Conv2CompositeDomain(names));
  EXPECT_FALSE(Conv2NameDomain(Domain_sptr()));
}

TEST(DomainDeathTest, IndexOperationsOfARealDomainAreTypeErrors) {
  RealDomain_cl real;
  EXPECT_DEATH(real.GetDomainSize(), "^RealDomain_cl: Type Error\n$");
  EXPECT_DEATH(real.IsLegalIndex(0), "^RealDomain_cl: Type Error\n$");
  EXPECT_DEATH(real.IndexToValue(0), "^RealDomain_cl: Type Error\n$");
  EXPECT_DEATH(IntDomain_cl(0, 1).Add(nullptr), "^Domain_cl::Add: a domain of type 0 cannot grow\n$");
}
