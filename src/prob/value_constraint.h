// Tests of values against comparators: single constants, chosen-value sets, lists and their combinations.
#ifndef VORN_PROB_VALUE_CONSTRAINT_H
#define VORN_PROB_VALUE_CONSTRAINT_H

#include "pipeline/bitset.h"
#include "pipeline/name.h"
#include "pipeline/vector.h"
#include "prob/domain.h"

// Read from keys through EnumConverter_tmpl<ComparatorType_cl, 10> and COMPARATOR_TYPE_STR.
enum ComparatorType_cl {
  COMPARATOR_EQUAL = 0,
  COMPARATOR_NOT_EQUAL = 1,
  COMPARATOR_LESS = 2,
  COMPARATOR_LESS_EQUAL = 3,
  COMPARATOR_GREATER = 4,
  COMPARATOR_GREATER_EQUAL = 5,
  COMPARATOR_AND = 6,
  COMPARATOR_OR = 7,
  COMPARATOR_ORDERED_SUBSET = 8,
  COMPARATOR_ORDERED_CYCLIC_SUBSET = 9
};
extern const char* COMPARATOR_TYPE_STR[10];

// A constraint answers the forms of Valid that fit its constant; asking another form is a
// programming error that stops the program.
class ValueConstraint_cl {
 public:
  explicit ValueConstraint_cl(ComparatorType_cl comparator) : iComparator(comparator) {}
  virtual ~ValueConstraint_cl() = default;
  ComparatorType_cl GetComparator() const { return iComparator; }

  virtual int Valid(int value) const;
  virtual int Valid(double value) const;
  virtual int Valid(Name_sptr value) const;
  // Whether the set of chosen values of a variable with n values passes.
  virtual int Valid(const Bitset_cl* chosen, int n) const;
  virtual ValueConstraint_cl* Clone() const = 0;

  // Null for an empty text; otherwise an "And" of one "NotEqual" per domain value that the text,
  // cut at the delimiters, does not list, so that exactly the listed values pass.
  static ValueConstraint_cl* ParseValueConstraints(Name_sptr text, Domain_sptr domain, const char* delimiters);

 protected:
  ComparatorType_cl iComparator;
};

class IntValueConstraint_cl : public ValueConstraint_cl {
 public:
  IntValueConstraint_cl(ComparatorType_cl comparator, int constant) : ValueConstraint_cl(comparator), iConstant(constant) {}
  int Valid(int value) const override;
  int Valid(const Bitset_cl* chosen, int n) const override;
  ValueConstraint_cl* Clone() const override { return new IntValueConstraint_cl(iComparator, iConstant); }

 private:
  int iConstant;
};

class RealValueConstraint_cl : public ValueConstraint_cl {
 public:
  RealValueConstraint_cl(ComparatorType_cl comparator, double constant)
      : ValueConstraint_cl(comparator), iConstant(constant) {}
  int Valid(double value) const override;
  ValueConstraint_cl* Clone() const override { return new RealValueConstraint_cl(iComparator, iConstant); }

 private:
  double iConstant;
};

// Equality by name; the orderings by strcmp, an empty name reading as the empty text.
class StringValueConstraint_cl : public ValueConstraint_cl {
 public:
  StringValueConstraint_cl(ComparatorType_cl comparator, Name_sptr constant)
      : ValueConstraint_cl(comparator), iConstant(constant) {}
  int Valid(Name_sptr value) const override;
  ValueConstraint_cl* Clone() const override { return new StringValueConstraint_cl(iComparator, iConstant); }

 private:
  Name_sptr iConstant;
};

// The conjunction ("And") or disjunction ("Or") of its members, which it owns.
class ValueConstraints_cl : public ValueConstraint_cl {
 public:
  explicit ValueConstraints_cl(ComparatorType_cl comparator) : ValueConstraint_cl(comparator), iMembers(10, nullptr) {}
  ValueConstraints_cl(const ValueConstraints_cl&) = delete;
  ValueConstraints_cl& operator=(const ValueConstraints_cl&) = delete;
  ~ValueConstraints_cl() override { iMembers.DeleteAll(); }

  void Add(ValueConstraint_cl* member) { iMembers.AddLast(member); }
  int GetNumMembers() const { return iMembers.GetSize(); }
  int Valid(int value) const override;
  int Valid(double value) const override;
  int Valid(Name_sptr value) const override;
  int Valid(const Bitset_cl* chosen, int n) const override;
  ValueConstraint_cl* Clone() const override;

 private:
  template <class Test>
  int Combine(Test test) const;

  Vector_tmpl<ValueConstraint_cl*> iMembers;
};

// Counts the runs of chosen values along an ordered list of values ("OrderedSubset"), or around
// it when the list is a cycle ("OrderedCyclicSubset"); at most maxBlocks + 1 runs pass. With
// "Equal", a set passes when it chooses nothing of the list or leaves at most maxBlocks out.
class IntListConstraint_cl : public ValueConstraint_cl {
 public:
  IntListConstraint_cl(ComparatorType_cl comparator, const Vector_tmpl<int>& values, int maxBlocks)
      : ValueConstraint_cl(comparator), iValues(values), iMaxBlocks(maxBlocks) {}
  int Valid(const Bitset_cl* chosen, int n) const override;
  ValueConstraint_cl* Clone() const override { return new IntListConstraint_cl(iComparator, iValues, iMaxBlocks); }

 private:
  Vector_tmpl<int> iValues;
  int iMaxBlocks;
};

#endif
