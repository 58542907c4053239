#include "NumberInput.h"

#include <cerrno>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "Interrupt.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 16;
constexpr std::size_t kLongest = 100;  // letters of a word; a number has 11 at most

bool Parts(char c) { return c == ' ' || (c >= '\t' && c <= '\r') || c == ','; }

}  // namespace

NumberInput::NumberInput(std::vector<std::string> words, std::string what, int least,
                         std::FILE* input)
    : m_words(std::move(words)), m_what(std::move(what)), m_least(least), m_input(input) {}

bool NumberInput::Next(std::vector<int>& numbers) {
    ThrowIfInterrupted();
    numbers.clear();
    std::string word;
    while (numbers.size() < kBlock && NextWord(word)) numbers.push_back(Number(word));
    return !numbers.empty();
}

bool NumberInput::NextWord(std::string& word) {
    for (;;) {
        if (m_reading) {
            if (NextOfInput(word)) return true;
            m_reading = false;
        }
        if (m_at == m_words.size()) return false;
        word = m_words[m_at++];
        if (word != "-") return true;
        m_reading = true;
    }
}

bool NumberInput::NextOfInput(std::string& word) {
    word.clear();
    for (;;) {
        while (m_place < m_buffer.size()) {
            char const c = m_buffer[m_place++];
            if (!Parts(c)) {
                if (word.size() < kLongest) word += c;
            } else if (!word.empty()) {
                return true;
            }
        }
        m_buffer.resize(kPiece);
        m_buffer.resize(std::fread(m_buffer.data(), 1, kPiece, m_input));
        m_place = 0;
        if (!m_buffer.empty()) continue;
        if (std::ferror(m_input) != 0) {
            ThrowIfInterrupted();
            throw Failure("cannot read standard input: " + std::generic_category().message(errno));
        }
        return !word.empty();
    }
}

int NumberInput::Number(std::string_view word) const {
    int number = 0;
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error == std::errc() && end == word.data() + word.size() && number >= m_least)
        return number;
    throw Failure("'" + Shown(word) + "' is no " + m_what + "; expected a whole number from " +
                  std::to_string(m_least) + " to " +
                  std::to_string(std::numeric_limits<int>::max()));
}

}  // namespace kov::tool
