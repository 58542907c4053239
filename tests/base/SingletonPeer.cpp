#include "SingletonPeer.h"

#include "KOVSimException.h"

Shared* peer::Instance() { return omi_Singleton<Shared>::Instance(); }
Shared** peer::Address() { return &omi_SingletonBase<Shared>::instance; }
void peer::Refuse() { KOVSimException::ThrowText("refused"); }
bool peer::CatchesRefusalOf(void (*function)()) {
    try {
        function();
    } catch (KOVSimException const&) {
        return true;
    } catch (...) {
    }
    return false;
}
