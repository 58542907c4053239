// NodeRepeats: nodes that a deck defines more than once. The same data again is fine, other data is
// an error. What stands in the document already is read back in batches, so that a deck that
// repeats all its nodes costs one more reading of them.
#pragma once

#include <string>
#include <vector>

#include "ModelWriter.h"

namespace kov::tool {

class NodeRepeats {
  public:
    /// Notes that line `line` of `file` defines again the node `label`, which has `ordinal`.
    void Add(ModelWriter& model, std::string const& file, int line, int label, int ordinal,
             double const* xyz);
    /// Compares what was noted. Throws DeckError for the first line that differs.
    void Check(ModelWriter& model);

  private:
    struct Repeat {
        double xyz[3];
        int ordinal;
        int label;
        int line;
        int file;
    };
    std::vector<Repeat> m_repeats;
    std::vector<std::string> m_files;
};

}  // namespace kov::tool
