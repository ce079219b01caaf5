// Tests of values against comparators: single constants, chosen-value sets, lists and their combinations.
#include "prob/value_constraint.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

const char* COMPARATOR_TYPE_STR[10] = {"Equal", "NotEqual", "Less",  "LessEqual",     "Greater",
                                       "GreaterEqual", "And", "Or", "OrderedSubset", "OrderedCyclicSubset"};

namespace {

[[noreturn]] void WrongForm() {
  std::cerr << "ValueConstraint_cl::Valid: this constraint does not test values of this kind" << std::endl;
  abort();
}

// The six orderings of a value against a constant; a comparator beyond them stops the program.
template <class T>
int Compare(ComparatorType_cl comparator, const T& v, const T& c) {
  switch (comparator) {
    case COMPARATOR_EQUAL: return v == c;
    case COMPARATOR_NOT_EQUAL: return v != c;
    case COMPARATOR_LESS: return v < c;
    case COMPARATOR_LESS_EQUAL: return v <= c;
    case COMPARATOR_GREATER: return v > c;
    case COMPARATOR_GREATER_EQUAL: return v >= c;
    default: abort();
  }
}

// Whether bit i is chosen; values outside the set are not.
int IsChosen(const Bitset_cl* chosen, int i) { return i >= 0 && i < chosen->GetNumBits() && chosen->IsSet(i); }

// Whether every value in [from, to) is chosen (all 1) or none is (all 0), within 0..n-1.
int AllAre(const Bitset_cl* chosen, int from, int to, int n, int state) {
  if (from < 0) from = 0;
  if (to > n) to = n;
  for (int i = from; i < to; i++)
    if (IsChosen(chosen, i) != state) return 0;
  return 1;
}

}  // namespace

int ValueConstraint_cl::Valid(int value) const { WrongForm(); }
int ValueConstraint_cl::Valid(double value) const { WrongForm(); }
int ValueConstraint_cl::Valid(Name_sptr value) const { WrongForm(); }
int ValueConstraint_cl::Valid(const Bitset_cl* chosen, int n) const { WrongForm(); }

ValueConstraint_cl* ValueConstraint_cl::ParseValueConstraints(Name_sptr text, Domain_sptr domain,
                                                              const char* delimiters) {
  if (!text.CStr()) return nullptr;
  int size = domain->GetDomainSize();
  Vector_tmpl<int> listed(size > 0 ? size : 1, 0);
  listed.AddEmptyLast(size);
  std::string copy(text.CStr());
  char* save = nullptr;
  for (char* token = strtok_r(copy.data(), delimiters, &save); token; token = strtok_r(nullptr, delimiters, &save)) {
    int index = domain->ParseDiscreteValue(token);
    if (index >= 0 && index < size) listed[index] = 1;
  }
  ValueConstraints_cl* all = new ValueConstraints_cl(COMPARATOR_AND);
  for (int i = 0; i < size; i++)
    if (!listed[i]) all->Add(new IntValueConstraint_cl(COMPARATOR_NOT_EQUAL, i));
  return all;
}

int IntValueConstraint_cl::Valid(int value) const { return Compare(iComparator, value, iConstant); }

int IntValueConstraint_cl::Valid(const Bitset_cl* chosen, int n) const {
  int c = iConstant;
  switch (iComparator) {
    case COMPARATOR_EQUAL:
      return IsChosen(chosen, c) && AllAre(chosen, 0, c, n, 0) && AllAre(chosen, c + 1, n, n, 0);
    case COMPARATOR_NOT_EQUAL: return !IsChosen(chosen, c);
    case COMPARATOR_LESS: return AllAre(chosen, 0, c, n, 0) && AllAre(chosen, c, n, n, 1);
    case COMPARATOR_LESS_EQUAL: return AllAre(chosen, 0, c + 1, n, 0) && AllAre(chosen, c + 1, n, n, 1);
    case COMPARATOR_GREATER: return AllAre(chosen, 0, c, n, 1) && AllAre(chosen, c, n, n, 0);
    case COMPARATOR_GREATER_EQUAL: return AllAre(chosen, 0, c + 1, n, 1) && AllAre(chosen, c + 1, n, n, 0);
    default: abort();
  }
}

int RealValueConstraint_cl::Valid(double value) const { return Compare(iComparator, value, iConstant); }

int StringValueConstraint_cl::Valid(Name_sptr value) const {
  if (iComparator == COMPARATOR_EQUAL) return value == iConstant;
  if (iComparator == COMPARATOR_NOT_EQUAL) return !(value == iConstant);
  if ((iComparator == COMPARATOR_LESS_EQUAL || iComparator == COMPARATOR_GREATER_EQUAL) && value == iConstant) return 1;
  int order = strcmp(value.CStr() ? value.CStr() : "", iConstant.CStr() ? iConstant.CStr() : "");
  return Compare(iComparator, order, 0);
}

template <class Test>
int ValueConstraints_cl::Combine(Test test) const {
  if (iComparator != COMPARATOR_AND && iComparator != COMPARATOR_OR) {
    std::cerr << "Unrecognized constraint in ValueConstraints_cl op=" << iComparator << std::endl;
    abort();
  }
  int isAnd = iComparator == COMPARATOR_AND;
  for (int i = 0; i < iMembers.GetSize(); i++)
    if (test(iMembers[i]) != isAnd) return !isAnd;
  return isAnd;
}

int ValueConstraints_cl::Valid(int value) const {
  return Combine([&](const ValueConstraint_cl* m) { return m->Valid(value) != 0; });
}

int ValueConstraints_cl::Valid(double value) const {
  return Combine([&](const ValueConstraint_cl* m) { return m->Valid(value) != 0; });
}

int ValueConstraints_cl::Valid(Name_sptr value) const {
  return Combine([&](const ValueConstraint_cl* m) { return m->Valid(value) != 0; });
}

int ValueConstraints_cl::Valid(const Bitset_cl* chosen, int n) const {
  return Combine([&](const ValueConstraint_cl* m) { return m->Valid(chosen, n) != 0; });
}

ValueConstraint_cl* ValueConstraints_cl::Clone() const {
  ValueConstraints_cl* clone = new ValueConstraints_cl(iComparator);
  for (int i = 0; i < iMembers.GetSize(); i++) clone->Add(iMembers[i]->Clone());
  return clone;
}

int IntListConstraint_cl::Valid(const Bitset_cl* chosen, int n) const {
  int size = iValues.GetSize();
  if (iComparator == COMPARATOR_EQUAL) {
    int unchosen = 0;
    for (int i = 0; i < size; i++) unchosen += !IsChosen(chosen, iValues[i]);
    return unchosen == size || unchosen <= iMaxBlocks;
  }
  if (iComparator != COMPARATOR_ORDERED_SUBSET && iComparator != COMPARATOR_ORDERED_CYCLIC_SUBSET) abort();
  // A cyclic list starts inside the run that wraps round its end, so that run counts once.
  int inside = iComparator == COMPARATOR_ORDERED_CYCLIC_SUBSET && size > 0 && IsChosen(chosen, iValues[size - 1]);
  int runs = 0;
  for (int i = 0; i < size; i++) {
    int isChosen = IsChosen(chosen, iValues[i]);
    if (isChosen && !inside) runs++;
    inside = isChosen;
  }
  return runs - 1 <= iMaxBlocks;
}
