// The published pointer of a process-wide single object.
//
// The pointer is exported with the template: every image of the process that names it sees one and
// the same, provided that T itself is exported. Not guarded against several threads.
#pragma once

#include "KOVExport.h"
#include "mem.h"

template <class T>
class KOV_EXPORT omi_SingletonBase {
  public:
    /// The object, or null while there is none.
    static T* Instance() { return instance; }

    /// Destroys and frees the object if there is one; Instance() is null afterwards.
    static void Finalize() {
        if (instance) {
            T* const object = instance;
            object->~T();
            mem_Free(object);
        }
        instance = nullptr;
    }

    static T* instance;

  protected:
    /// Publishes the object before the derived constructor has run.
    omi_SingletonBase() { instance = static_cast<T*>(this); }
    omi_SingletonBase(omi_SingletonBase const&) = delete;
    omi_SingletonBase& operator=(omi_SingletonBase const&) = delete;
    ~omi_SingletonBase() = default;
};

template <class T>
T* omi_SingletonBase<T>::instance = nullptr;
