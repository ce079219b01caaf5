// Random division of items into folds for cross-validation.
#ifndef VORN_PIPELINE_CROSS_VALIDATION_H
#define VORN_PIPELINE_CROSS_VALIDATION_H

#include "pipeline/random.h"
#include "pipeline/vector.h"

// Each item goes to a random fold that is not yet full; a fold holds at most size / folds + 1
// items. Fold i is the test set of round i and the other items, in their given order, its
// training set.
template <class T>
class CrossValidation_tmpl {
 public:
  CrossValidation_tmpl(const Vector_tmpl<T>& items, int folds, const T& def)
      : iNumFolds(folds < 1 ? 1 : folds), iTest(iNumFolds, nullptr), iTrain(iNumFolds, nullptr) {
    int size = items.GetSize();
    int room = size / iNumFolds + 1;
    Vector_tmpl<int> foldOf(size + 1, -1);
    for (int f = 0; f < iNumFolds; f++) iTest.AddLast(new Vector_tmpl<T>(room, def));
    for (int i = 0; i < size; i++) {
      int f;
      do f = static_cast<int>(Random_cl::iGlobalRandomizer.SampleUniform() * iNumFolds);
      while (iTest[f]->GetSize() >= room);
      iTest[f]->AddLast(items[i]);
      foldOf.AddLast(f);
    }
    for (int f = 0; f < iNumFolds; f++) {
      iTrain.AddLast(new Vector_tmpl<T>(size - iTest[f]->GetSize() + 1, def));
      for (int i = 0; i < size; i++)
        if (foldOf[i] != f) iTrain[f]->AddLast(items[i]);
    }
  }
  CrossValidation_tmpl(const CrossValidation_tmpl&) = delete;
  CrossValidation_tmpl& operator=(const CrossValidation_tmpl&) = delete;
  ~CrossValidation_tmpl() {
    iTest.DeleteAll();
    iTrain.DeleteAll();
  }

  int GetNumFolds() const { return iNumFolds; }
  Vector_tmpl<T>* GetTestVec(int fold) const { return iTest[fold]; }
  Vector_tmpl<T>* GetTrainVec(int fold) const { return iTrain[fold]; }

 private:
  int iNumFolds;
  Vector_tmpl<Vector_tmpl<T>*> iTest;
  Vector_tmpl<Vector_tmpl<T>*> iTrain;
};

#endif
