// All that a source of results gives, in memory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "ResultSource.h"

namespace kov::test {

struct FieldRead {
    tool::ResultField head;
    std::vector<tool::ResultBlock> blocks;

    /// The values of a label, (points, components).
    std::map<int, std::vector<double>> ByLabel() const {
        std::map<int, std::vector<double>> values;
        for (tool::ResultBlock const& block : blocks) {
            std::size_t const width =
                static_cast<std::size_t>(block.points) * head.components.size();
            for (std::size_t i = 0; i < block.labels.size(); ++i) {
                auto const first = block.values.begin() + static_cast<std::ptrdiff_t>(i * width);
                values[block.labels[i]].assign(first, first + static_cast<std::ptrdiff_t>(width));
            }
        }
        return values;
    }
};

struct FrameRead {
    tool::ResultFrame head;
    std::vector<FieldRead> fields;

    std::vector<std::string> Labels() const {
        std::vector<std::string> labels;
        for (FieldRead const& field : fields) labels.push_back(field.head.label);
        return labels;
    }
    /// The field of that label; an empty one without it.
    FieldRead Field(std::string const& label) const {
        for (FieldRead const& field : fields) {
            if (field.head.label == label) return field;
        }
        return {};
    }
};

inline std::vector<FrameRead> ReadAll(tool::ResultSource& source) {
    std::vector<FrameRead> frames;
    tool::ResultFrame frame;
    while (source.NextFrame(frame)) {
        frames.push_back({frame, {}});
        tool::ResultField field;
        while (source.NextField(field)) {
            frames.back().fields.push_back({field, {}});
            tool::ResultBlock block;
            while (source.NextBlock(block)) frames.back().fields.back().blocks.push_back(block);
        }
    }
    return frames;
}

}  // namespace kov::test
