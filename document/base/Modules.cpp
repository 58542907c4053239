#include "KOVDocModules.h"

#include <cstdint>

namespace {

/// A module that is up while its counter is positive. The modules of this layer need no set-up of
/// their own: what they hold comes into being with the documents.
class Module {
  public:
    void Initialize(int& count) {
        if (++m_counter == 1) ++count;
    }
    void Finalize(int& count) {
        if (--m_counter == 0) --count;
    }

  private:
    std::int32_t m_counter = 0;
};

constinit Module s_objects;
constinit Module s_markup;
constinit Module s_interface;
constinit Module s_containers;
constinit Module s_shared;
constinit Module s_utilities;
constinit Module s_generics;
constinit Module s_alloc;

}  // namespace

void KOVDocObjects_initialize(int& count) { s_objects.Initialize(count); }
void KOVDocObjects_finalize(int& count) { s_objects.Finalize(count); }
void KOVDocMarkup_initialize(int& count) { s_markup.Initialize(count); }
void KOVDocMarkup_finalize(int& count) { s_markup.Finalize(count); }
void KOVDocInterface_initialize(int& count) { s_interface.Initialize(count); }
void KOVDocInterface_finalize(int& count) { s_interface.Finalize(count); }
void KOVDocContainers_initialize(int& count) { s_containers.Initialize(count); }
void KOVDocContainers_finalize(int& count) { s_containers.Finalize(count); }
void KOVRootShared_initialize(int& count) { s_shared.Initialize(count); }
void KOVRootShared_finalize(int& count) { s_shared.Finalize(count); }
void KOVRootUtilities_initialize(int& count) { s_utilities.Initialize(count); }
void KOVRootUtilities_finalize(int& count) { s_utilities.Finalize(count); }
void KOVRootGenerics_initialize(int& count) { s_generics.Initialize(count); }
void KOVRootGenerics_finalize(int& count) { s_generics.Finalize(count); }
void KOVRootAlloc_initialize(int& count) { s_alloc.Initialize(count); }
void KOVRootAlloc_finalize(int& count) { s_alloc.Finalize(count); }
