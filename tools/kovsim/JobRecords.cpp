#include "JobRecords.h"

#include "KOVSimDataRecord.h"
#include "KOVSimMap.h"
#include "KOVSimSchema.h"
#include "KOVSimVector.h"
#include "Names.h"

namespace kov::tool {
namespace {

JobStep MakeStep(std::string name, KOVSimPosition const& step) {
    return {std::move(name), step, step.GetVector(schema::Step_conditions()).Size()};
}

JobArgument ReadArgument(KOVSimPosition const& position) {
    JobArgument argument;
    KOVSimDataRecord const record = position.GetDataRecord();
    if (position.IsA(schema::ConditionArgInt())) {
        argument.kind = JobArgument::Kind::Int;
        record.GetInt(0, argument.integer);
    } else if (position.IsA(schema::ConditionArgDouble())) {
        argument.kind = JobArgument::Kind::Double;
        record.GetDouble(0, argument.real);
    } else if (position.IsA(schema::ConditionArgString())) {
        argument.kind = JobArgument::Kind::Text;
        argument.text = Plain(record.ReturnString(0));
    }
    return argument;
}

}  // namespace

std::vector<JobStep> JobSteps(KOVObjDocument const& document) {
    std::vector<JobStep> steps;
    KOVSimPosition const model = document.GetModel();
    for (auto at = model.GetVector(schema::Model_stepSequence()).Begin(); at.NotDone(); ++at) {
        KOVSimPosition const step = *at;
        steps.push_back(MakeStep(Plain(step.Name(schema::Model_steps())), step));
    }
    if (!steps.empty()) return steps;
    for (auto at = model.GetMap(schema::Model_steps()).Begin(); at.NotDone(); ++at) {
        steps.push_back(MakeStep(Plain(at.Key()), at.Value()));
    }
    return steps;
}

JobStep const* CurrentStep(std::vector<JobStep> const& steps) {
    for (auto at = steps.rbegin(); at != steps.rend(); ++at) {
        if (at->conditions > 0) return &*at;
    }
    return nullptr;
}

bool ReadJobStatus(KOVObjDocument const& document, int& status) {
    KOVSimPosition const position = document.Focus().GetPosition(schema::Focus_jobStatus());
    if (position.IsNull()) return false;
    position.GetDataRecord().GetInt(0, status);
    return true;
}

std::vector<JobCondition> ReadConditions(KOVSimPosition const& step, int first) {
    std::vector<JobCondition> conditions;
    int number = 0;
    for (auto at = step.GetVector(schema::Step_conditions()).Begin(); at.NotDone();
         ++at, ++number) {
        if (number < first) continue;
        KOVSimPosition const position = *at;
        KOVSimDataRecord const record = position.GetDataRecord();
        JobCondition& condition = conditions.emplace_back();
        record.GetInt(2, condition.code);
        record.GetSymb(1, condition.kind);
        for (auto argument = position.GetVector(schema::Condition_arguments()).Begin();
             argument.NotDone(); ++argument) {
            condition.arguments.push_back(ReadArgument(*argument));
        }
    }
    return conditions;
}

}  // namespace kov::tool
