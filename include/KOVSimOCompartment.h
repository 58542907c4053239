// KOVSimOCompartment: the compartment inside a drawer's description: one set for each dimension of
// the drawer.
#pragma once

#include "KOVSimCompartment.h"

class KOV_EXPORT KOVSimOCompartment : public KOVSimCompartment {
  public:
    using KOVSimCompartment::KOVSimCompartment;
};
