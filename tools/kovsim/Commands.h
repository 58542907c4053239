// Commands: the subcommands of kovsim. Each Add... function describes one to the command line and,
// when it is chosen, puts what is to be done into `action`, which gives the exit status: 0 fine, 1
// the answer is no. Throwing means 2.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace kov::tool {

using Action = std::function<int()>;

void AddTranslate(CLI::App& app, Action& action);
void AddInfo(CLI::App& app, Action& action);
void AddVerify(CLI::App& app, Action& action);
void AddCheck(CLI::App& app, Action& action);
void AddClasses(CLI::App& app, Action& action);
void AddCompact(CLI::App& app, Action& action);
void AddConditions(CLI::App& app, Action& action);
void AddExport(CLI::App& app, Action& action);
void AddExtract(CLI::App& app, Action& action);
void AddFields(CLI::App& app, Action& action);
void AddMap(CLI::App& app, Action& action);
void AddFind(CLI::App& app, Action& action);
void AddLayup(CLI::App& app, Action& action);
void AddMaterials(CLI::App& app, Action& action);
void AddMonitor(CLI::App& app, Action& action);
void AddResults(CLI::App& app, Action& action);
void AddSections(CLI::App& app, Action& action);
void AddSets(CLI::App& app, Action& action);
void AddVariable(CLI::App& app, Action& action);

/// Writes text to standard output at once. Throws Failure if that fails.
void Print(std::string const& text);
/// Writes the summary of what was just made at path `made`. Where that fails, the message says that
/// `made` is there all the same.
void PrintAbout(std::string const& made, std::string const& text);

}  // namespace kov::tool
