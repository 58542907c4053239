// kovsim monitor MODEL.ksd

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "Commands.h"
#include "DocumentReader.h"
#include "Interrupt.h"
#include "JobRecords.h"
#include "Json.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    bool once = false;
    bool json = false;
    double interval = 1.0;
    std::optional<int> until;
};

// What was told already. Each look at the document prints what is new: one line for each event.
class Monitor {
  public:
    explicit Monitor(Options const& options)
        : m_options(options), m_document(OpenForReading(options.document)) {}

    int Run() {
        Look();
        while (!m_options.once && !(m_options.until && m_status == m_options.until)) {
            if (!Sleep()) return 0;
            if (m_document.Refresh()) Look();
        }
        return 0;
    }

  private:
    // False when the user ends the watch, which is its ordinary end.
    bool Sleep() const {
        using Clock = std::chrono::steady_clock;
        auto const end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                            std::chrono::duration<double>(m_options.interval));
        while (PendingInterrupt() == 0) {
            auto const left = end - Clock::now();
            if (left <= Clock::duration::zero()) return true;
            std::this_thread::sleep_for(
                std::min<Clock::duration>(left, std::chrono::milliseconds(50)));
        }
        return false;
    }

    void Look() {
        int status = 0;
        if (ReadJobStatus(m_document, status) && m_status != status) {
            m_status = status;
            Tell(
                "status", [status](Json& json) { json.Member("status", status); },
                "status " + std::to_string(status));
        }
        std::vector<JobStep> const steps = JobSteps(m_document);
        JobStep const* const current = CurrentStep(steps);
        if (current != nullptr && m_step != current->name) {
            m_step = current->name;
            Tell(
                "step", [this](Json& json) { json.Member("step", *m_step); }, "step " + *m_step);
        }
        for (std::size_t i = 0; i < steps.size(); ++i) {
            int& told = m_told[i];
            if (steps[i].conditions <= told) continue;
            for (JobCondition const& condition : ReadConditions(steps[i].step, told)) {
                TellCondition(steps[i].name, condition);
            }
            told = steps[i].conditions;
        }
    }

    void TellCondition(std::string const& step, JobCondition const& condition) const {
        std::string text = step + ": condition " + std::to_string(condition.code) + " of kind " +
                           std::to_string(condition.kind);
        char const* separator = ": ";
        for (JobArgument const& argument : condition.arguments) {
            text += separator;
            separator = ", ";
            char number[40];
            switch (argument.kind) {
                case JobArgument::Kind::Int:
                    text += std::to_string(argument.integer);
                    break;
                case JobArgument::Kind::Double:
                    std::snprintf(number, sizeof number, "%.9g", argument.real);
                    text += number;
                    break;
                case JobArgument::Kind::Text:
                    text += "\"" + argument.text + "\"";
                    break;
                case JobArgument::Kind::Other:
                    text += "?";
                    break;
            }
        }
        auto const fill = [&](Json& json) {
            json.Member("step", step).Member("code", condition.code).Member("kind", condition.kind);
            json.Key("arguments").BeginArray();
            for (JobArgument const& argument : condition.arguments) {
                switch (argument.kind) {
                    case JobArgument::Kind::Int:
                        json.Value(argument.integer);
                        break;
                    case JobArgument::Kind::Double:
                        json.Value(argument.real);
                        break;
                    case JobArgument::Kind::Text:
                        json.Value(argument.text);
                        break;
                    case JobArgument::Kind::Other:
                        json.Null();
                        break;
                }
            }
            json.EndArray();
        };
        Tell("condition", fill, text);
    }

    template <class Fill>
    void Tell(char const* event, Fill&& fill, std::string const& text) const {
        if (!m_options.json) return Print(text + "\n");
        Json json(Json::Form::OneLine);
        json.BeginObject().Member("event", event);
        fill(json);
        json.EndObject();
        Print(json.Text());
    }

    Options const& m_options;
    KOVObjDocument m_document;
    std::optional<int> m_status;
    std::optional<std::string> m_step;
    std::map<std::size_t, int> m_told;  ///< conditions told, by the number of the step
};

}  // namespace

void AddMonitor(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "monitor", "Follow the status, the current step and the conditions of a running job");
    command->add_option("MODEL", options->document, "The document that the job writes")->required();
    command->add_flag("--once", options->once, "Tell how things stand, and end");
    command->add_option("--interval", options->interval, "Seconds between two looks")
        ->check(CLI::Range(0.01, 86400.0))
        ->capture_default_str();
    command->add_option("--until", options->until, "End when the job's status is this number");
    command->add_flag("--json", options->json, "Print each event as one line of JSON");
    command->footer(
        "The current step is the last one of the sequence that has conditions. Ends with the "
        "signal INT.");
    command->callback(
        [options, &action] { action = [options] { return Monitor(*options).Run(); }; });
}

}  // namespace kov::tool
