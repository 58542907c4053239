// VtuSeries: a file of a collection (PVD) that names the VTU files of a series with their times.
#pragma once

#include <string>
#include <vector>

#include "DocumentResults.h"
#include "ResultChoice.h"

namespace kov::tool {

struct SeriesTimes {
    std::vector<double> times;  ///< one for each frame, strictly ascending
    bool counted = false;       ///< the frames are counted from 1, as their own times do not ascend
};

/// When viewers show the frames. Frames of steps in time have their total time; where a step begins
/// with the time at which the one before it ended, the next larger number, as a viewer takes frames
/// of one time for parts of one. Frames of one frequency step have their frequencies, those of a
/// buckling step their load factors. Where such times do not ascend, as with the equal frequencies
/// of a symmetric part, or where steps of several sorts are mixed, the frames are counted.
SeriesTimes TimesOf(DocumentResults const& results, std::vector<FrameNumber> const& frames);

/// `files`: names relative to the place of the collection. Throws Failure for a name that XML
/// cannot have.
std::string PvdText(std::vector<double> const& times, std::vector<std::string> const& files);

}  // namespace kov::tool
