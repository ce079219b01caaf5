// The statistics managers of a model, one per species by microarray name and one for the meta genes.
#include "prob/vorn_suff_stats_man.h"

#include <cstdlib>
#include <iostream>

#include "pipeline/not_built.h"

static void CheckType(SpeciesSuffStatsType_cl type) {
  if (type == SPECIES_COMPLETE_STATS) return;
  if (type == SPECIES_INCREMENTAL_STATS)
    StopNotBuilt("VornSuffStatsMan_cl: statistics on incomplete data need inference over the model");
  std::cerr << "Unrecognized stats type " << static_cast<int>(type) << std::endl;
  abort();
}

VornSuffStatsMan_cl::VornSuffStatsMan_cl(NameSet_tmpl<SpeciesVorn_cl*>* species, SpeciesAttributes_cl* metaGenes,
                                         SpeciesSuffStatsType_cl type)
    : NameSet_tmpl(2 * species->GetSize() + 3, nullptr) {
  CheckType(type);
  for (auto* e : *species) Insert(e->iValue->GetMicroarray()->GetName(), new SpeciesSuffStatsMan_cl(e->iValue));
  Insert(Name_sptr("MetaGenes"), new SpeciesSuffStatsMan_cl(metaGenes));
}

VornSuffStatsMan_cl::~VornSuffStatsMan_cl() {
  for (auto* e : *this) delete e->iValue;
}
