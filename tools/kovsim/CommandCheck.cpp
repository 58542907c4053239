// kovsim check MODEL.ksd

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentReader.h"
#include "Json.h"
#include "KOVSrvLumenChecker.h"
#include "Names.h"
#include "OutputPlace.h"
#include "TextFile.h"
#include "VtuWriter.h"

namespace kov::tool {
namespace {

struct Options {
    std::string document;
    std::string junit;
    bool json = false;
};

struct Certificate {
    std::vector<std::string> findings;
    std::string end;  ///< why the check ended early; empty if it did not

    bool IsGiven() const { return findings.empty() && end.empty(); }
};

Certificate Check(KOVObjDocument const& document) {
    Certificate certificate;
    KOVSrvLumenChecker checker(document);
    try {
        checker.Check_Lumen();
    } catch (KOVSimException const& error) {
        certificate.end = error.what();
    }
    for (KOVString const& finding : checker.GetFindings())
        certificate.findings.push_back(Plain(finding));
    return certificate;
}

// A finding is one line, whatever the names in it.
std::string LineText(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = ' ';
    }
    return text + "\n";
}

std::string PlainText(Certificate const& certificate) {
    if (certificate.IsGiven()) return "certified: nothing that a viewer needs is missing\n";
    std::string text;
    for (std::string const& finding : certificate.findings) text += LineText(finding);
    return text;
}

std::string JsonText(Options const& options, Certificate const& certificate) {
    Json json;
    json.BeginObject().Member("document", options.document);
    json.Member("certified", certificate.IsGiven());
    json.Key("findings").BeginArray();
    for (std::string const& finding : certificate.findings) json.Value(finding);
    json.EndArray().Key("endedBy");
    certificate.end.empty() ? json.Null() : json.Value(certificate.end);
    json.EndObject();
    return json.Text();
}

// One test that passes, or one that fails for each finding.
std::string JUnitText(Options const& options, Certificate const& certificate) {
    std::size_t const failures = certificate.findings.size();
    std::size_t const errors = certificate.end.empty() ? 0 : 1;
    std::string const suite = XmlText(options.document);
    std::string const head = "  <testcase classname=\"" + suite + "\" name=\"";
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"" + suite + "\" tests=\"" +
        std::to_string(certificate.IsGiven() ? 1 : failures + errors) + "\" failures=\"" +
        std::to_string(failures) + "\" errors=\"" + std::to_string(errors) + "\">\n";
    if (certificate.IsGiven()) text += head + "certified\"/>\n";
    int number = 0;
    for (std::string const& finding : certificate.findings) {
        text += head + "finding " + std::to_string(++number) + "\"><failure message=\"" +
                XmlText(finding) + "\"/></testcase>\n";
    }
    if (errors > 0) {
        text += head + "end\"><error message=\"" + XmlText(certificate.end) + "\"/></testcase>\n";
    }
    return text + "</testsuite>\n";
}

int CheckDocument(Options const& options) {
    std::optional<OutputPlace> report;
    if (!options.junit.empty()) report.emplace(options.junit);
    KOVObjDocument const document = OpenForReading(options.document);
    Certificate const certificate = WhileReading(options.document, [&] { return Check(document); });
    if (report) {
        WriteTextFile(report->Path(), options.junit, JUnitText(options, certificate));
        report->Publish();
    }
    Print(options.json ? JsonText(options, certificate) : PlainText(certificate));
    if (!certificate.end.empty()) throw Failure(options.document + ": " + certificate.end);
    return certificate.IsGiven() ? 0 : 1;
}

}  // namespace

void AddCheck(CLI::App& app, Action& action) {
    auto const options = std::make_shared<Options>();
    CLI::App* const command = app.add_subcommand(
        "check", "Certify that a document holds what a results viewer needs, or say what it lacks");
    command->add_option("MODEL", options->document, "The document")->required();
    command->add_flag("--json", options->json, "Print the findings as JSON");
    command->add_option("--junit", options->junit, "Make this report for a build server, too");
    command->footer("Exit status: 0 certified, 1 findings, one a line, 2 could not be checked.");
    command->callback(
        [options, &action] { action = [options] { return CheckDocument(*options); }; });
}

}  // namespace kov::tool
