#include "ResultChoice.h"

#include <algorithm>
#include <charconv>
#include <numeric>

#include "DocumentReader.h"
#include "KOVSrvFieldServices.h"
#include "Keywords.h"
#include "Names.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

// A number from 1 upward; 0 for anything else.
int NumberOf(std::string const& text) {
    int number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    bool const whole = error == std::errc() && end == text.data() + text.size();
    return whole && number > 0 ? number : 0;
}

bool SameName(std::string const& a, std::string const& b) { return LowerCase(a) == LowerCase(b); }

// The name of the field that holds the variable; empty for an unknown label.
std::string FieldOfLabel(std::string const& label) {
    std::string const field =
        Plain(KOVSrvFieldServices::GetFieldType(ToKOVString(UpperCase(label))));
    return field == "UNDEFINED" ? "" : field;
}

}  // namespace

std::vector<std::size_t> ChooseSteps(DocumentResults const& results, std::string const& wanted) {
    std::vector<ResultStep> const& steps = results.Steps();
    std::vector<std::size_t> all(steps.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    if (wanted.empty()) return all;
    for (std::size_t i : all) {
        if (steps[i].name == wanted) return {i};
    }
    for (std::size_t i : all) {
        if (SameName(steps[i].name, wanted)) return {i};
    }
    int const number = NumberOf(wanted);
    if (number > 0 && static_cast<std::size_t>(number) <= steps.size()) {
        return {static_cast<std::size_t>(number) - 1};
    }
    std::vector<std::string> names;
    names.reserve(steps.size());
    for (ResultStep const& step : steps) names.push_back(step.name);
    throw DocumentFault("no step '" + Shown(wanted) + "' among " +
                        CountText(static_cast<long>(steps.size()), "step") +
                        NearestHint(NearestNames(wanted, names)));
}

FrameChoice ReadFrameChoice(std::string const& text) {
    if (text == "last") return {FrameChoice::Kind::Last, 0};
    if (text == "all") return {FrameChoice::Kind::All, 0};
    if (text == "none") return {FrameChoice::Kind::None, 0};
    int const number = NumberOf(text);
    if (number > 0) return {FrameChoice::Kind::Number, number};
    throw Failure("'" + Shown(text) +
                  "' is no frame; expected a number from 1 upward, last, all, or none");
}

std::vector<FrameNumber> ChooseFrames(DocumentResults const& results,
                                      std::vector<std::size_t> const& steps, FrameChoice choice) {
    std::vector<FrameNumber> frames;
    std::size_t most = 0;
    for (std::size_t const step : steps) {
        auto const count = static_cast<int>(results.Steps()[step].frames.size());
        most = std::max(most, results.Steps()[step].frames.size());
        switch (choice.kind) {
            case FrameChoice::Kind::Number:
                if (choice.number <= count) frames.push_back({step, choice.number});
                break;
            case FrameChoice::Kind::Last:
                if (count > 0) frames.push_back({step, count});
                break;
            case FrameChoice::Kind::All:
                for (int frame = 1; frame <= count; ++frame) frames.push_back({step, frame});
                break;
            case FrameChoice::Kind::None:
                frames.push_back({step, 0});
                break;
        }
    }
    if (frames.empty() && choice.kind == FrameChoice::Kind::Number) {
        std::string const where = steps.size() == 1
                                      ? "step " + NameText(results.Steps()[steps[0]].name) + " has "
                                      : "no step has more than ";
        throw DocumentFault("no frame " + std::to_string(choice.number) + ": " + where +
                            CountText(static_cast<long>(most), "frame"));
    }
    return frames;
}

std::vector<FieldHead> FieldsOf(DocumentResults& results, FrameNumber const& number) {
    ResultStep const& step = results.Steps()[number.step];
    return number.frame == 0 ? results.FieldsWithoutFrame(step)
                             : results.FieldsOf(step.Frame(number.frame));
}

FieldPicker::FieldPicker(std::vector<std::string> const& words) {
    for (std::string const& word : words) {
        m_words.push_back({word, FieldOfLabel(word), false, NearestSearch(word)});
    }
}

bool FieldPicker::Takes(FieldHead const& head) {
    bool takes = m_words.empty();
    for (Word& word : m_words) {
        if (SameName(word.text, head.name) || SameName(word.text, head.label) ||
            (!word.field.empty() && word.field == head.name)) {
            word.found = true;
            takes = true;
        } else if (!word.found) {
            word.nearest.Look(head.label);
            word.nearest.Look(head.name);
        }
    }
    return takes;
}

void FieldPicker::CheckAllFound() const {
    for (Word const& word : m_words) {
        if (word.found) continue;
        throw DocumentFault("no field '" + Shown(word.text) + "' there" +
                            NearestHint(word.nearest.Names()));
    }
}

}  // namespace kov::tool
