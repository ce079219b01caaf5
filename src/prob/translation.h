// Correspondences between variable ids, and the images of variables, scopes and assignments under them.
#ifndef VORN_PROB_TRANSLATION_H
#define VORN_PROB_TRANSLATION_H

#include "pipeline/hash_set.h"
#include "pipeline/id.h"
#include "pipeline/vector.h"
#include "prob/inst_vector.h"
#include "prob/sample.h"
#include "prob/vars.h"

class Translation_cl;

class Translation_sptr : public Sptr_tmpl<Translation_cl> {
 public:
  using Sptr_tmpl::Sptr_tmpl;
};

enum TranslationDirection_type { TRANSLATION_FORWARD = 0, TRANSLATION_BACKWARD = 1 };

// Each pair of ids is kept both ways; the direction chooses which way translates. Absolute pairs
// stand for single variables, relative ones for variables taken together; a variable translates
// through an absolute pair first. The images are found in a table of variables by id, which is
// installed after the pairs: adding a pair drops it.
class Translation_cl : public RefCount_cl {
 public:
  Translation_cl();
  Translation_cl(const Translation_cl&) = delete;
  Translation_cl& operator=(const Translation_cl&) = delete;
  ~Translation_cl();

  void SetDirection(int direction);
  int GetDirection() const { return iDirection; }
  void AddAbsoluteCorresp(const Id_cl* from, const Id_cl* to);
  void AddRelativeCorresp(const Id_cl* from, const Id_cl* to);
  // Takes the table over; null drops the current one.
  void SetRvTable(IntSet_tmpl<SingleRv_sptr>* table);

  // The image, or the variable itself when no pair or no table entry gives one.
  SingleRv_sptr TranslateRv(const SingleRv_sptr& rv) const;
  RvVector_sptr TranslateRvVector(const RvVector_sptr& rvs, int unique) const;
  // New instantiations of the images, with the same values.
  InstVector_sptr TranslateInstVec(const InstVector_sptr& insts) const;
  Sample_sptr TranslateSample(const Sample_sptr& sample) const;
  RvVectorCont_cl* TranslateRvVectorCont(const RvVectorCont_cl* scopes) const;

  // New lists of the ids that translate in the current direction: all, the absolute ones, the
  // relative ones.
  Vector_tmpl<int>* GatherRvs() const;
  Vector_tmpl<int>* GatherIndividualRvs() const;
  Vector_tmpl<int>* GatherTogetherRvs() const;

 private:
  static void AddPair(IntSet_tmpl<int>* tables, Vector_tmpl<int>* lists, int from, int to);
  void FillInstVector(InstVector_cl* target, const InstVector_sptr& source) const;

  // Index 0 maps forward, 1 backward.
  IntSet_tmpl<int> iAbsolute[2] = {IntSet_tmpl<int>(32, -1), IntSet_tmpl<int>(32, -1)};
  Vector_tmpl<int> iAbsoluteIds[2];
  IntSet_tmpl<int> iRelative[2] = {IntSet_tmpl<int>(32, -1), IntSet_tmpl<int>(32, -1)};
  Vector_tmpl<int> iRelativeIds[2];
  int iDirection;
  IntSet_tmpl<SingleRv_sptr>* iRvTable;
};

#endif
