// A process-wide single object that comes into being when it is first asked for.
//
// A class T derives from omi_Singleton<T>. A constructor that is not public makes
// omi_Singleton<T> a friend. Not guarded against several threads.
#pragma once

#include <cstdlib>
#include <new>

#include "mem.h"
#include "omi_SingletonBase.h"

template <class T>
class KOV_EXPORT omi_Singleton : public omi_SingletonBase<T> {
  public:
    /// The object, made now if there is none. Aborts if T does not publish itself through
    /// omi_SingletonBase<T>.
    static T* Instance() {
        if (T* const present = omi_SingletonBase<T>::Instance()) return present;
        Draft draft{mem_OperatorNewThrow(sizeof(T))};
        T* const object = ::new (draft.memory) T;
        draft.memory = nullptr;
        if (omi_SingletonBase<T>::Instance() != object) std::abort();
        return object;
    }

  protected:
    omi_Singleton() = default;
    ~omi_Singleton() = default;

  private:
    /// Takes everything back if the constructor throws: the pointer has been published by then.
    struct Draft {
        void* memory;
        ~Draft() {
            if (!memory) return;
            omi_SingletonBase<T>::instance = nullptr;
            mem_Free(memory);
        }
    };
};
