// Unconditional distributions: the handle conversion.
#include "prob/distrib.h"

Distrib_sptr Conv2Distrib(const Measure_sptr& m) { return Conv2X<Distrib_sptr>(m, "Distrib_cl"); }
