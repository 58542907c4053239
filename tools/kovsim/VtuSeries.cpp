#include "VtuSeries.h"

#include <cmath>
#include <limits>

#include "Failure.h"
#include "Json.h"
#include "Names.h"
#include "ObjectContent.h"
#include "VtuWriter.h"

namespace kov::tool {
namespace {

double OwnTime(ResultStep const& step, FrameNumber const& number) {
    if (number.frame == 0) return std::numeric_limits<double>::quiet_NaN();
    FrameHead const head = DocumentResults::ReadFrame(step.Frame(number.frame));
    return step.value == FrameValue::Time ? head.totalTime : head.value;
}

bool HasOnlyText(std::string const& name) {
    for (std::string_view rest = name; !rest.empty();) {
        std::size_t const length = Utf8SequenceLength(rest);
        auto const byte = static_cast<unsigned char>(rest.front());
        if (length == 0 || byte < 0x20 || byte == 0x7f) return false;
        rest.remove_prefix(length);
    }
    return true;
}

}  // namespace

SeriesTimes TimesOf(DocumentResults const& results, std::vector<FrameNumber> const& frames) {
    SeriesTimes series;
    double before = -std::numeric_limits<double>::infinity();  // own time of the frame before
    for (std::size_t i = 0; i < frames.size(); ++i) {
        ResultStep const& step = results.Steps()[frames[i].step];
        double const own = OwnTime(step, frames[i]);
        bool const next = i > 0 && frames[i - 1].step != frames[i].step;
        bool const mixed = next && (step.value != FrameValue::Time ||
                                    results.Steps()[frames[i - 1].step].value != FrameValue::Time);
        bool const ascends = own > before || (own == before && next);
        if (mixed || !ascends || !std::isfinite(own)) {
            series.counted = true;
            break;
        }
        double const least =
            i == 0 ? own : std::nextafter(series.times.back(), std::numeric_limits<double>::max());
        series.times.push_back(std::max(own, least));
        before = own;
    }
    if (!series.counted) return series;
    series.times.clear();
    for (std::size_t i = 0; i < frames.size(); ++i) {
        series.times.push_back(static_cast<double>(i + 1));
    }
    return series;
}

std::string PvdText(std::vector<double> const& times, std::vector<std::string> const& files) {
    std::string text =
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"Collection\" version=\"1.0\" byte_order=\"LittleEndian\">\n"
        "<Collection>\n";
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!HasOnlyText(files[i])) {
            throw Failure("'" + Shown(files[i]) +
                          "' cannot be named in a collection; expected a name in UTF-8");
        }
        text += "<DataSet timestep=\"" + NumberText(times[i]) + "\" group=\"\" part=\"0\" file=\"" +
                XmlText(files[i]) + "\"/>\n";
    }
    return text + "</Collection>\n</VTKFile>\n";
}

}  // namespace kov::tool
