// The statistics managers of a model, one per species by microarray name and one for the meta genes.
#ifndef VORN_PROB_VORN_SUFF_STATS_MAN_H
#define VORN_PROB_VORN_SUFF_STATS_MAN_H

#include "prob/species_suff_stats_man.h"

// 0 complete data, 1 incomplete data (expected counts from inference).
enum SpeciesSuffStatsType_cl : int { SPECIES_COMPLETE_STATS = 0, SPECIES_INCREMENTAL_STATS = 1 };

// Owns its managers.
class VornSuffStatsMan_cl : public NameSet_tmpl<SpeciesSuffStatsMan_cl*> {
 public:
  // Any type other than 0 and 1 stops the program; type 1 needs the model's inference.
  VornSuffStatsMan_cl(NameSet_tmpl<SpeciesVorn_cl*>* species, SpeciesAttributes_cl* metaGenes,
                      SpeciesSuffStatsType_cl type);
  VornSuffStatsMan_cl(const VornSuffStatsMan_cl&) = delete;
  VornSuffStatsMan_cl& operator=(const VornSuffStatsMan_cl&) = delete;
  ~VornSuffStatsMan_cl() override;

  // Null when no species has that name.
  SpeciesSuffStatsMan_cl* GetSpeciesSuffStatsMan(Name_sptr name) const { return GetEntry(name); }
};

#endif
