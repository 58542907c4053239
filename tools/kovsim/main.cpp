// kovsim: keyword decks into documents, and what is in documents.

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Names.h"
#include "Nearest.h"

namespace {

// The first word is a subcommand, or an option.
void CheckSubcommand(CLI::App const& app, std::string const& word) {
    if (word.empty() || word[0] == '-') return;
    std::vector<std::string> names;
    for (CLI::App const* const command : app.get_subcommands([](CLI::App const*) { return true; }))
        names.push_back(command->get_name());
    if (std::find(names.begin(), names.end(), word) != names.end()) return;
    throw kov::tool::Failure("no subcommand named '" + kov::tool::Shown(word) + "'" +
                             kov::tool::NearestHint(kov::tool::NearestNames(word, names)) +
                             " (see kovsim --help)");
}

int Run(int argc, char** argv) {
    CLI::App app(
        "Translates keyword decks into documents, and shows, verifies and exports documents.",
        "kovsim");
    app.set_version_flag("--version", std::string("kovsim ") + KOV_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 fine, 1 the answer is no, 2 could not be done.");
    kov::tool::Action action;
    kov::tool::AddTranslate(app, action);
    kov::tool::AddInfo(app, action);
    kov::tool::AddSets(app, action);
    kov::tool::AddFind(app, action);
    kov::tool::AddClasses(app, action);
    kov::tool::AddSections(app, action);
    kov::tool::AddLayup(app, action);
    kov::tool::AddMaterials(app, action);
    kov::tool::AddConditions(app, action);
    kov::tool::AddFields(app, action);
    kov::tool::AddCheck(app, action);
    kov::tool::AddVerify(app, action);
    kov::tool::AddCompact(app, action);
    kov::tool::AddExport(app, action);
    kov::tool::AddExtract(app, action);
    kov::tool::AddMap(app, action);
    kov::tool::AddMonitor(app, action);
    kov::tool::AddResults(app, action);
    kov::tool::AddVariable(app, action);
    if (argc > 1) CheckSubcommand(app, argv[1]);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        std::fprintf(stderr, "kovsim: %s (see kovsim --help)\n", error.what());
        return 2;
    }
    kov::tool::CatchInterrupts();
    return action();
}

// A file that is opened while a standard stream is closed would take its number, and what is
// printed would go there. What takes the number instead can be neither read nor written.
void KeepStandardStreams() {
    for (int const stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

int Report(char const* text) {
    std::fprintf(stderr, "kovsim: %s\n", text);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    KeepStandardStreams();
    kov::tool::IgnoreFileSizeSignal();
    int interrupt = 0;
    try {
        return Run(argc, argv);
    } catch (kov::tool::Interruption const& interruption) {
        Report(interruption.what());
        interrupt = interruption.Signal();
    } catch (std::bad_alloc const&) {
        return Report("out of memory");
    } catch (std::exception const& error) {
        return Report(error.what());
    }
    kov::tool::EndBySignal(interrupt);
}
