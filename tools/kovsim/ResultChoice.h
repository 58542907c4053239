// ResultChoice: which steps, frames and fields of a document's results a user means.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "DocumentResults.h"
#include "Nearest.h"

namespace kov::tool {

/// The places in Steps() of the step of that name, or of the one with that number from 1; of all
/// steps for an empty text. Throws DocumentFault for an unknown one.
std::vector<std::size_t> ChooseSteps(DocumentResults const& results, std::string const& wanted);

struct FrameChoice {
    enum class Kind { Number, Last, All, None };
    Kind kind = Kind::Last;
    int number = 0;  ///< from 1
};
/// A number, "last", "all", or "none" for what stands outside of frames. Throws Failure.
FrameChoice ReadFrameChoice(std::string const& text);

/// A frame by the place of its step, and its number in it from 1; 0 for what stands outside of
/// frames.
struct FrameNumber {
    std::size_t step = 0;
    int frame = 0;
};
/// Those of `steps` that are chosen, in their order; a step without such a frame gives none. Throws
/// DocumentFault if a number is in no step.
std::vector<FrameNumber> ChooseFrames(DocumentResults const& results,
                                      std::vector<std::size_t> const& steps, FrameChoice choice);

/// Its fields, in the order in which they were made.
std::vector<FieldHead> FieldsOf(DocumentResults& results, FrameNumber const& number);

/// Takes fields by the words of a user: names of fields, labels of variables or of their
/// components, in any case. Without words it takes all.
class FieldPicker {
  public:
    explicit FieldPicker(std::vector<std::string> const& words);

    bool Takes(FieldHead const& head);
    /// Throws DocumentFault for a word that fitted no field that was shown.
    void CheckAllFound() const;

  private:
    struct Word {
        std::string text;
        std::string field;  ///< name of the field that has a variable of that label
        bool found;
        NearestSearch nearest;
    };
    std::vector<Word> m_words;
};

}  // namespace kov::tool
