// A second library of the process, which shares a single object and an exception with the test.
#pragma once

#include "KOVExport.h"
#include "omi_Singleton.h"

class KOV_EXPORT Shared : public omi_Singleton<Shared> {
  public:
    int value = 5;
};

namespace peer {

KOV_EXPORT Shared* Instance();
KOV_EXPORT Shared** Address();
KOV_EXPORT void Refuse();
KOV_EXPORT bool CatchesRefusalOf(void (*function)());

}  // namespace peer
