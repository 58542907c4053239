// NumberInput: whole numbers from the command line and, where the word "-" stands, from standard
// input, in blocks. Numbers of the input are parted by white space or commas; any count of them
// passes through bounded memory.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace kov::tool {

class NumberInput {
  public:
    static constexpr std::size_t kBlock = 100'000;

    /// `what` names a number in messages, such as "label"; numbers below `least` are refused.
    NumberInput(std::vector<std::string> words, std::string what, int least,
                std::FILE* input = stdin);

    /// Fills `numbers` with the next of them, up to kBlock; false if none is left. Throws Failure
    /// for a word that is no whole number, or one out of range.
    bool Next(std::vector<int>& numbers);

  private:
    bool NextWord(std::string& word);
    bool NextOfInput(std::string& word);
    int Number(std::string_view word) const;

    std::vector<std::string> m_words;
    std::string m_what;
    int m_least;
    std::FILE* m_input;
    std::size_t m_at = 0;
    bool m_reading = false;
    std::string m_buffer;
    std::size_t m_place = 0;
};

}  // namespace kov::tool
