// JobRecords: what a running job writes into its document, read back: the status, the steps and
// their conditions.
#pragma once

#include <string>
#include <vector>

#include "KOVObjDocument.h"
#include "KOVSimPosition.h"

namespace kov::tool {

struct JobStep {
    std::string name;
    KOVSimPosition step;
    int conditions = 0;
};

/// The steps in their sequence; where no sequence is kept, by name.
std::vector<JobStep> JobSteps(KOVObjDocument const& document);
/// The step under way: a job records conditions, and nothing else, as it goes, so that it is the
/// last step of the sequence that has any. Null if none has.
JobStep const* CurrentStep(std::vector<JobStep> const& steps);

/// The job's status; false if the job has not written any.
bool ReadJobStatus(KOVObjDocument const& document, int& status);

struct JobArgument {
    enum class Kind { Int, Double, Text, Other } kind = Kind::Other;
    int integer = 0;
    double real = 0;
    std::string text;
};
/// A warning or error. `kind` is the number that the job's flag became: 0 where it was set, 3 where
/// not.
struct JobCondition {
    int code = 0;
    int kind = 0;
    std::vector<JobArgument> arguments;
};
/// The conditions of a step from number `first` on, oldest first.
std::vector<JobCondition> ReadConditions(KOVSimPosition const& step, int first);

}  // namespace kov::tool
