#include "FrdHeader.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kov::tool {
namespace {

constexpr std::size_t kLongestNumber = 64;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool Int(std::string_view text, int& number) {
    long long wide = 0;
    if (!FrdInteger(text, wide) || wide < INT_MIN || wide > INT_MAX) return false;
    number = static_cast<int>(wide);
    return true;
}

// Takes the first word off a text.
std::string_view Word(std::string_view& text) {
    text = Trimmed(text);
    auto const end = std::find_if(text.begin(), text.end(), IsBlank);
    std::string_view const word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

// Puts the E into numbers without one, such as 0.1-105, and for D.
bool OddReal(std::string_view text, double& number) {
    if (text.empty() || text.size() > kLongestNumber) return false;
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        bool const sign = c == '-' || c == '+';
        if (sign && i > 0 && (IsDigit(text[i - 1]) || text[i - 1] == '.')) plain += 'E';
        if (c == '+' && !(i > 0 && (plain.back() == 'E' || plain.back() == 'e'))) continue;
        plain += c == 'D' || c == 'd' ? 'E' : c;
    }
    char const* const end = plain.data() + plain.size();
    auto const result = std::from_chars(plain.data(), end, number);
    if (result.ptr != end || plain.empty()) return false;
    if (result.ec == std::errc()) return true;
    if (result.ec != std::errc::result_out_of_range) return false;
    // Too small: the nearest number there is.
    double const nearest = std::strtod(plain.c_str(), nullptr);
    if (std::isinf(nearest)) return false;
    number = nearest;
    return true;
}

int Decimals(std::string_view text) {
    std::size_t const mantissa = text.find_first_of("EeDd");
    std::size_t const point = text.find('.');
    int decimals = 0;
    std::size_t const end = std::min(mantissa, text.size());
    if (point < end) decimals = static_cast<int>(end - point - 1);
    int exponent = 0;
    if (mantissa != std::string_view::npos) {
        std::string_view power = text.substr(mantissa + 1);
        if (!power.empty() && power.front() == '+') power.remove_prefix(1);
        Int(power, exponent);
    }
    return std::clamp(decimals - std::clamp(exponent, -400, 400), 0, 400);
}

// The difference of two decimal numbers that have so many decimals, without what the binary ones
// add to it.
double Rounded(double difference, int decimals) {
    if (decimals > 17 || !(std::fabs(difference) < 1e15)) return difference;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, difference);
    double rounded = difference;
    FrdReal(text, rounded);
    return rounded;
}

enum class Form { Scalar, Vector, Tensor, Own };

struct FrdVariable {
    char const* name;
    char const* label;
    Form form;
};

#define KOV_FRD_VARIABLE(name, label, form) {name, label, Form::form},
constexpr FrdVariable kVariables[] = {
#include "FrdVariables.inc"
};
#undef KOV_FRD_VARIABLE

bool IsAxis(int number) { return number >= 1 && number <= 3; }

Form FormOf(std::vector<FrdComponent const*> const& components) {
    if (components.size() == 1) return Form::Scalar;
    auto const all = [&](auto const& is) {
        return std::all_of(components.begin(), components.end(),
                           [&](FrdComponent const* c) { return is(*c); });
    };
    if (all([](auto const& c) { return c.type == 2 && IsAxis(c.row); })) return Form::Vector;
    if (all([](auto const& c) { return c.type == 4 && IsAxis(c.row) && IsAxis(c.column); })) {
        return Form::Tensor;
    }
    return Form::Own;
}

std::string ComponentLabel(FrdComponent const& component, std::string const& label, Form form) {
    switch (form) {
        case Form::Scalar:
            return label;
        case Form::Vector:
            return label + std::to_string(component.row);
        case Form::Tensor:
            return label + std::to_string(std::min(component.row, component.column)) +
                   std::to_string(std::max(component.row, component.column));
        case Form::Own:
            break;
    }
    return label + "-" + component.name;
}

}  // namespace

std::string_view FrdColumns(std::string_view line, std::size_t first, std::size_t count) {
    return first >= line.size() ? std::string_view() : Trimmed(line.substr(first, count));
}

bool FrdInteger(std::string_view text, long long& number) {
    char const* const end = text.data() + text.size();
    long long read = 0;
    auto const result = std::from_chars(text.data(), end, read);
    if (text.empty() || result.ec != std::errc() || result.ptr != end) return false;
    number = read;
    return true;
}

bool FrdReal(std::string_view text, double& number) {
    char const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, number);
    if (!text.empty() && result.ec == std::errc() && result.ptr == end) return true;
    return OddReal(text, number);
}

bool FrdHeader::ReadStep(std::string_view line) {
    mode = 0;
    return Int(FrdColumns(line, 36, 12), increment) && Int(FrdColumns(line, 48, 12), step);
}

bool FrdHeader::ReadMode(std::string_view line) { return Int(FrdColumns(line, 24, 12), mode); }

bool FrdHeader::ReadValue(std::string_view line) {
    std::string_view const text = FrdColumns(line, 12, 12);
    valueText = std::string(text);
    if (!FrdReal(text, value) || !FrdInteger(FrdColumns(line, 24, 12), rows) || rows < 0 ||
        !Int(FrdColumns(line, 56, 2), type)) {
        return false;
    }
    // The number may be wider than its five columns; the analysis touches it.
    std::string_view rest = Trimmed(line.substr(std::min<std::size_t>(58, line.size())));
    auto const behind = std::find_if_not(rest.begin(), rest.end(), IsDigit);
    auto const digits = static_cast<std::size_t>(behind - rest.begin());
    if (!Int(rest.substr(0, digits), number)) return false;
    rest = Trimmed(rest.substr(digits));
    std::size_t last = rest.size();
    while (last > 0 && IsDigit(rest[last - 1])) --last;
    analysis = std::string(Trimmed(rest.substr(0, last)));
    return Int(rest.substr(last), format);
}

bool FrdComponent::Read(std::string_view line) {
    name = std::string(FrdColumns(line, 5, 8));
    std::string_view rest = line.substr(std::min<std::size_t>(13, line.size()));
    int menu = 0;
    int computed = 0;
    if (!Int(Word(rest), menu) || !Int(Word(rest), type) || !Int(Word(rest), row)) return false;
    std::string_view const second = Word(rest);
    if (!second.empty() && !Int(second, column)) return false;
    std::string_view const exists = Word(rest);
    Int(exists.substr(0, 1), computed);
    isInFile = computed != 1 && name != "ALL";
    return !name.empty();
}

void LabelFrdField(std::string const& name, std::vector<FrdComponent> const& components,
                   ResultField& field) {
    std::vector<FrdComponent const*> kept;
    for (FrdComponent const& component : components) {
        if (component.isInFile) kept.push_back(&component);
    }
    Form form = FormOf(kept);
    field.label = name;
    bool own = false;
    for (FrdVariable const& variable : kVariables) {
        own = name == variable.name && variable.form == Form::Own;
        if (name != variable.name || (variable.form != form && !own)) continue;
        field.label = variable.label;
        break;
    }
    field.place = ResultPlace::Node;
    field.components.clear();
    for (FrdComponent const* component : kept) {
        field.components.push_back(own ? component->name
                                       : ComponentLabel(*component, field.label, form));
    }
}

// What a step by time is cannot be read from its header: heat transfer has no displacements.
StepKind FrdClock::KindOf(FrdHeader const& header) {
    bool const heat = header.name == "NDTEMP" || header.name == "FLUX" || header.name == "RFL";
    switch (header.type) {
        case 0:
            return heat ? StepKind::HeatTransfer : StepKind::Static;
        case 1:
            // Increments begin at 1; frequencies of a steady-state response are not counted.
            return header.increment == 0 ? StepKind::SteadyState
                   : heat                ? StepKind::HeatTransfer
                                         : StepKind::Dynamic;
        case 2:
            return StepKind::Frequency;
        case 4:
            return StepKind::Buckle;
        default:
            return StepKind::Unknown;
    }
}

// All buckling steps have the number 1 in the file, wherever they stand. Each begins with the state
// that it loads, at the factor 0.
int FrdClock::StepOf(FrdHeader const& header) {
    bool const buckles = KindOf(header) == StepKind::Buckle;
    bool const goesOn = m_buckles && (header.value != 0.0 || m_counted == 0);
    m_buckles = buckles;
    if (!buckles) return header.step;
    return goesOn || m_step == INT_MAX ? m_step : std::max(header.step, m_step + 1);
}

ResultFrame FrdClock::FrameOf(FrdHeader const& header) {
    ResultFrame frame;
    frame.step = StepOf(header);
    frame.kind = KindOf(header);
    frame.increment = header.increment;
    frame.text = header.analysis;
    if (frame.step != m_step) {
        m_step = frame.step;
        m_start = m_last;
        m_counted = 0;
    }
    frame.value = header.value;
    frame.totalTime = m_last;
    switch (frame.kind) {
        case StepKind::Buckle:
        case StepKind::Frequency:
        case StepKind::SteadyState: {
            bool const base =
                frame.kind == StepKind::Buckle && m_counted == 0 && header.value == 0.0;
            if (!base) ++m_counted;
            frame.increment = header.mode > 0 ? header.mode : m_counted;
            return frame;
        }
        default:
            break;
    }
    m_decimals = std::max(m_decimals, Decimals(header.valueText));
    frame.totalTime = header.value;
    if (m_start != 0.0) frame.value = Rounded(header.value - m_start, m_decimals);
    m_last = header.value;
    return frame;
}

}  // namespace kov::tool
