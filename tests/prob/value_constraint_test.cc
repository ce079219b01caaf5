// Value constraints: comparisons, chosen-value sets, runs along lists, parsing and combinations.
#include "prob/value_constraint.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "pipeline/enum_converter.h"

namespace {

// A set of n values with the listed ones chosen.
Bitset_cl Chosen(int n, std::initializer_list<int> on) {
  Bitset_cl bits(n, 0);
  for (int i : on) bits.Set(i);
  return bits;
}

int ValidFor(const ValueConstraint_cl& c, int n, std::initializer_list<int> on) {
  Bitset_cl bits = Chosen(n, on);
  return c.Valid(&bits, n);
}

Vector_tmpl<int> List(std::initializer_list<int> values) {
  Vector_tmpl<int> v;
  for (int x : values) v.AddLast(x);
  return v;
}

}  // namespace

TEST(ValueConstraint, ComparatorsAreReadByTheirNames) {
  EXPECT_EQ((EnumConverter_tmpl<ComparatorType_cl, 10>::FromString(COMPARATOR_TYPE_STR, Name_sptr("LessEqual"), nullptr)),
            COMPARATOR_LESS_EQUAL);
  EXPECT_EQ((EnumConverter_tmpl<ComparatorType_cl, 10>::FromString(COMPARATOR_TYPE_STR, Name_sptr(), "OrderedCyclicSubset")),
            COMPARATOR_ORDERED_CYCLIC_SUBSET);
}

TEST(ValueConstraint, SingleValuesAgainstConstants) {
  int expected[6][3] = {{0, 1, 0}, {1, 0, 1}, {1, 0, 0}, {1, 1, 0}, {0, 0, 1}, {0, 1, 1}};
  for (int op = COMPARATOR_EQUAL; op <= COMPARATOR_GREATER_EQUAL; op++) {
    IntValueConstraint_cl ints(static_cast<ComparatorType_cl>(op), 5);
    RealValueConstraint_cl reals(static_cast<ComparatorType_cl>(op), 5.0);
    StringValueConstraint_cl names(static_cast<ComparatorType_cl>(op), Name_sptr("m"));
    int values[3] = {4, 5, 6};
    const char* texts[3] = {"a", "m", "z"};
    for (int k = 0; k < 3; k++) {
      SCOPED_TRACE(std::string(COMPARATOR_TYPE_STR[op]) + " " + texts[k]);
      EXPECT_EQ(ints.Valid(values[k]), expected[op][k]);
      EXPECT_EQ(reals.Valid(values[k] + 0.0), expected[op][k]);
      EXPECT_EQ(names.Valid(Name_sptr(texts[k])), expected[op][k]);
    }
  }
  StringValueConstraint_cl empty(COMPARATOR_LESS, Name_sptr("a"));
  EXPECT_TRUE(empty.Valid(Name_sptr("")));
}

TEST(ValueConstraint, ChosenValueSetsOfAVariable) {
  IntValueConstraint_cl equal(COMPARATOR_EQUAL, 2), notEqual(COMPARATOR_NOT_EQUAL, 2);
  EXPECT_TRUE(ValidFor(equal, 5, {2}));
  EXPECT_FALSE(ValidFor(equal, 5, {2, 3}));
  EXPECT_TRUE(ValidFor(notEqual, 5, {0, 1, 3, 4}));
  EXPECT_FALSE(ValidFor(notEqual, 5, {2}));
  IntValueConstraint_cl less(COMPARATOR_LESS, 2), lessEqual(COMPARATOR_LESS_EQUAL, 2);
  IntValueConstraint_cl greater(COMPARATOR_GREATER, 2), greaterEqual(COMPARATOR_GREATER_EQUAL, 2);
  EXPECT_TRUE(ValidFor(less, 5, {2, 3, 4}));
  EXPECT_FALSE(ValidFor(less, 5, {3, 4}));
  EXPECT_TRUE(ValidFor(lessEqual, 5, {3, 4}));
  EXPECT_TRUE(ValidFor(greater, 5, {0, 1}));
  EXPECT_FALSE(ValidFor(greater, 5, {0, 1, 2}));
  EXPECT_TRUE(ValidFor(greaterEqual, 5, {0, 1, 2}));
  // A constant beyond the values reads only the bits that exist.
  EXPECT_TRUE(ValidFor(IntValueConstraint_cl(COMPARATOR_GREATER, 9), 5, {0, 1, 2, 3, 4}));
  EXPECT_FALSE(ValidFor(IntValueConstraint_cl(COMPARATOR_EQUAL, 9), 5, {}));
}

TEST(ValueConstraint, RunsOfChosenValuesAlongAndAroundAList) {
  IntListConstraint_cl ordered(COMPARATOR_ORDERED_SUBSET, List({0, 1, 2, 3, 4}), 0);
  EXPECT_TRUE(ValidFor(ordered, 5, {1, 2, 3}));
  EXPECT_FALSE(ValidFor(ordered, 5, {0, 4}));
  EXPECT_TRUE(ValidFor(ordered, 5, {}));
  IntListConstraint_cl cyclic(COMPARATOR_ORDERED_CYCLIC_SUBSET, List({0, 1, 2, 3, 4}), 0);
  EXPECT_TRUE(ValidFor(cyclic, 5, {0, 4}));  // one run across the end
  EXPECT_TRUE(ValidFor(cyclic, 5, {0, 1, 2, 3, 4}));
  EXPECT_FALSE(ValidFor(cyclic, 5, {0, 2, 4}));
  IntListConstraint_cl twoRuns(COMPARATOR_ORDERED_SUBSET, List({4, 2, 0, 1, 3}), 1);
  EXPECT_TRUE(ValidFor(twoRuns, 5, {4, 0}));
  EXPECT_FALSE(ValidFor(twoRuns, 5, {4, 0, 3}));
  EXPECT_FALSE(ValidFor(IntListConstraint_cl(COMPARATOR_ORDERED_SUBSET, List({4, 2, 0, 1}), 0), 5, {4, 0}));
  IntListConstraint_cl mostly(COMPARATOR_EQUAL, List({0, 1, 2, 3}), 1);
  EXPECT_TRUE(ValidFor(mostly, 5, {}));
  EXPECT_TRUE(ValidFor(mostly, 5, {0, 1, 3}));
  EXPECT_FALSE(ValidFor(mostly, 5, {0, 3}));
}

TEST(ValueConstraint, ParsedListsAdmitExactlyTheListedValues) {
  std::string text = "lo,mid,hi";
  Domain_sptr domain = DomainFactory_cl::CreateDomain(text.data(), ",", nullptr);
  EXPECT_EQ(ValueConstraint_cl::ParseValueConstraints(Name_sptr(), domain, ","), nullptr);
  EXPECT_EQ(ValueConstraint_cl::ParseValueConstraints(Name_sptr(""), domain, ","), nullptr);
  std::unique_ptr<ValueConstraint_cl> some(ValueConstraint_cl::ParseValueConstraints(Name_sptr("hi;lo;other"), domain, ";"));
  EXPECT_TRUE(some->Valid(0));
  EXPECT_FALSE(some->Valid(1));
  EXPECT_TRUE(some->Valid(2));
  std::unique_ptr<ValueConstraint_cl> all(ValueConstraint_cl::ParseValueConstraints(Name_sptr("mid,lo,hi"), domain, ","));
  EXPECT_EQ(static_cast<ValueConstraints_cl*>(all.get())->GetNumMembers(), 0);
  EXPECT_TRUE(all->Valid(17));
  std::unique_ptr<ValueConstraint_cl> copy(some->Clone());
  EXPECT_FALSE(copy->Valid(1));
  EXPECT_EQ(static_cast<ValueConstraints_cl*>(copy.get())->GetNumMembers(), 1);
}

TEST(ValueConstraint, ConjunctionsAndDisjunctions) {
  ValueConstraints_cl band(COMPARATOR_AND), either(COMPARATOR_OR);
  band.Add(new RealValueConstraint_cl(COMPARATOR_GREATER, 0.0));
  band.Add(new RealValueConstraint_cl(COMPARATOR_LESS, 1.0));
  either.Add(new RealValueConstraint_cl(COMPARATOR_LESS, 0.0));
  either.Add(new RealValueConstraint_cl(COMPARATOR_GREATER, 1.0));
  EXPECT_TRUE(band.Valid(0.5));
  EXPECT_FALSE(band.Valid(1.5));
  EXPECT_TRUE(either.Valid(1.5));
  EXPECT_FALSE(either.Valid(0.5));
  EXPECT_FALSE(ValueConstraints_cl(COMPARATOR_OR).Valid(0.5));
  ValueConstraints_cl sets(COMPARATOR_OR);
  sets.Add(new IntValueConstraint_cl(COMPARATOR_EQUAL, 1));
  sets.Add(new IntListConstraint_cl(COMPARATOR_ORDERED_SUBSET, List({0, 1, 2}), 0));
  EXPECT_TRUE(ValidFor(sets, 3, {1, 2}));
  EXPECT_FALSE(ValidFor(sets, 3, {0, 2}));
}

TEST(ValueConstraintDeathTest, UnknownOperatorsStop) {
  ValueConstraints_cl wrong(COMPARATOR_EQUAL);
  EXPECT_DEATH(wrong.Valid(1), "^Unrecognized constraint in ValueConstraints_cl op=0\n$");
  EXPECT_DEATH(IntValueConstraint_cl(COMPARATOR_AND, 1).Valid(1), "");
  EXPECT_DEATH(StringValueConstraint_cl(COMPARATOR_ORDERED_SUBSET, Name_sptr("a")).Valid(Name_sptr("b")), "");
  RealValueConstraint_cl real(COMPARATOR_EQUAL, 1.0);
  const ValueConstraint_cl& base = real;
  EXPECT_DEATH(base.Valid(1), "^ValueConstraint_cl::Valid: this constraint does not test values of this kind\n$");
}
