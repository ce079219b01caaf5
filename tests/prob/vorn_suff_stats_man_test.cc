// The model's managers: one per species under the microarray's name, one for the meta genes, and the type check.
#include "prob/vorn_suff_stats_man.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

struct TwoSpecies {
  Vector_tmpl<Name_sptr> genes, experiments;
  std::unique_ptr<Microarray_cl> first, second;
  std::unique_ptr<SpeciesVorn_cl> a{new SpeciesVorn_cl(Name_sptr("a"))}, b{new SpeciesVorn_cl(Name_sptr("b"))};
  NameSet_tmpl<SpeciesVorn_cl*> set{8, nullptr};
  SpeciesAttributes_cl meta;
  TwoSpecies() {
    genes.AddLast(Name_sptr("g"));
    experiments.AddLast(Name_sptr("e"));
    first = std::make_unique<Microarray_cl>(Name_sptr("yeast"), genes, experiments, 1.0);
    second = std::make_unique<Microarray_cl>(Name_sptr("worm"), genes, experiments, 2.0);
    a->SetMicroarray(first.get());
    b->SetMicroarray(second.get());
    set.Insert(Name_sptr("a"), a.get());
    set.Insert(Name_sptr("b"), b.get());
  }
};

TEST(VornSuffStatsMan, OneManagerPerMicroarrayAndTheMetaGenes) {
  TwoSpecies s;
  VornSuffStatsMan_cl man(&s.set, &s.meta, SPECIES_COMPLETE_STATS);
  EXPECT_EQ(man.GetSize(), 3);
  ASSERT_NE(man.GetSpeciesSuffStatsMan(Name_sptr("worm")), nullptr);
  EXPECT_NE(man.GetSpeciesSuffStatsMan(Name_sptr("MetaGenes")), nullptr);
  EXPECT_EQ(man.GetSpeciesSuffStatsMan(Name_sptr("a")), nullptr);
  // The worm's manager reads the worm's matrix.
  RvVector_sptr real = new RvVector_cl();
  real->AddLast(SingleRv_sptr(new SingleRv_cl(Name_sptr("x"), new RealDomain_cl())));
  MatrixFilter_cl all(nullptr, 0, nullptr, 0);
  MatrixFilterSuffStatsQuery_cl query(real, &all);
  auto* moments = static_cast<MomentsSuffStats_cl*>(man.GetSpeciesSuffStatsMan(Name_sptr("worm"))->ComputeStats(&query));
  EXPECT_EQ(moments->GetFirst(0), 2.0);
}

TEST(VornSuffStatsManDeathTest, UnknownTypeStops) {
  TwoSpecies s;
  EXPECT_DEATH(VornSuffStatsMan_cl(&s.set, &s.meta, static_cast<SpeciesSuffStatsType_cl>(7)), "Unrecognized stats type 7\n");
}

}  // namespace
