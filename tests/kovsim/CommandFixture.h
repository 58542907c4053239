// One subcommand of kovsim that is asked about the document m.ksd.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "JsonText.h"
#include "KOVObjDocument.h"
#include "Process.h"

namespace kov::test {

class CommandTest : public ::testing::Test {
  protected:
    explicit CommandTest(char const* command) : m_command(command) {}

    /// Makes m.ksd anew; `build` fills it.
    template <class Build>
    void Make(Build const& build) {
        std::filesystem::remove_all(work / "m.ksd");
        KOVObjDocument const document = KOVObjDocument::Create((work / "m.ksd").c_str());
        build(document);
        document.Close();
    }
    Workshop::Result Ask(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {m_command, "m.ksd"});
        return work.Run(arguments);
    }
    /// What is shown, or the error without the path in front.
    std::string Show(std::vector<std::string> const& arguments) const {
        Workshop::Result const result = Ask(arguments);
        if (result.status == 0) return result.output;
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors.substr(0, 15), "kovsim: m.ksd: ");
        return result.errors.substr(std::min<std::size_t>(15, result.errors.size()));
    }
    JsonValue Json(std::vector<std::string> arguments = {}) const {
        arguments.push_back("--json");
        Workshop::Result const result = Ask(arguments);
        EXPECT_EQ(result.status, 0) << result.errors;
        return ParseJson(result.output);
    }

    Workshop work;

  private:
    char const* m_command;
};

}  // namespace kov::test
