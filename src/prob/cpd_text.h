// The reader of the CPD text format that table and tree CPDs write.
#ifndef VORN_PROB_CPD_TEXT_H
#define VORN_PROB_CPD_TEXT_H

#include <istream>
#include <string>

#include "prob/bn_cpd.h"

// Reads one CPD, table or tree, whose variables are found by name in a given scope. Any fault of
// the text stops the program with "CpdTextReader_cl line <n>: " and what was wrong.
class CpdTextReader_cl {
 public:
  // Nesting of tree nodes deeper than this is refused, so a hostile text cannot exhaust the stack.
  static constexpr int kMaxDepth = 1000;

  static BnCpd_sptr Read(const std::string& text, const RvVector_sptr& vars);
  static BnCpd_sptr Read(std::istream& in, const RvVector_sptr& vars);
};

#endif
