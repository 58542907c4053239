// KOVSimCSetIterator: walks the members of a set in stored order: `First`, then while not `IsDone`,
// `CurrentValue`, `Next`. It shares the set's storage, and so outlives the set object.
#pragma once

#include <memory>

#include "KOVExport.h"
#include "KOVSimCSet.h"

class KOV_EXPORT KOVSimCSetIterator {
  public:
    explicit KOVSimCSetIterator(KOVSimCSet const& set);
    ~KOVSimCSetIterator();
    KOVSimCSetIterator(KOVSimCSetIterator const&) = delete;
    KOVSimCSetIterator& operator=(KOVSimCSetIterator const&) = delete;

    void First();
    bool IsDone() const { return m_location >= m_size; }
    void Next() {
        ++m_location;
        if (m_location >= m_end && m_location < m_size) Fill();
    }
    /// The member at hand.
    int CurrentValue() const { return m_buffer[m_location - m_begin]; }
    /// Its place in the set, from 0.
    int CurrentLocation() const { return m_location; }

  private:
    void Fill();

    static constexpr int BufferSize = 512;
    KOVSimIndexSetPtr m_members;
    int m_size = 0;
    int m_location = 0;
    int m_begin = 0;
    int m_end = 0;
    int m_buffer[BufferSize];
};
