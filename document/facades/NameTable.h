// NameTable: instances by name, hashed, since halving ten thousand names misses the cache at each
// step. Slots hold the hash beside the place, so that a look-up compares one name as a rule. For
// the labeler.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "KOVString.h"
#include "document/facades/LabelledInstance.h"

namespace kov::facades {

class NameTable {
  public:
    /// Of instances with different names, which stay where they are.
    void Build(std::vector<LabelledInstance>& instances) {
        m_instances = &instances;
        m_slots.assign(std::bit_ceil(2 * instances.size() + 1), Slot{0, -1});
        for (std::size_t i = 0; i < instances.size(); ++i) {
            Slot const slot{HashOf(instances[i].Name()), static_cast<int>(i)};
            std::size_t at = slot.hash & (m_slots.size() - 1);
            while (m_slots[at].instance >= 0) at = (at + 1) & (m_slots.size() - 1);
            m_slots[at] = slot;
        }
    }
    /// Null if there is none of that name.
    LabelledInstance* Find(KOVString const& name) const {
        std::uint32_t const hash = HashOf(name);
        std::size_t at = hash & (m_slots.size() - 1);
        for (; m_slots[at].instance >= 0; at = (at + 1) & (m_slots.size() - 1)) {
            if (m_slots[at].hash != hash) continue;
            LabelledInstance& instance =
                (*m_instances)[static_cast<std::size_t>(m_slots[at].instance)];
            if (instance.Name() == name) return &instance;
        }
        return nullptr;
    }

  private:
    struct Slot {
        std::uint32_t hash;
        int instance;  // -1 for none
    };
    static std::uint32_t HashOf(KOVString const& name) {
        std::uint64_t const hash = std::hash<KOVString>()(name);
        return static_cast<std::uint32_t>(hash ^ hash >> 32);
    }

    std::vector<LabelledInstance>* m_instances = nullptr;
    std::vector<Slot> m_slots;
};

}  // namespace kov::facades
