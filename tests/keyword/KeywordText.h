// A parser over a text in memory, with its stream.
#pragma once

#include <cstdio>
#include <string>

#include "KOVSrvKeywordParser.h"

class KeywordText {
  public:
    explicit KeywordText(std::string const& text, void* userData = nullptr)
        : m_text(text), m_file(Stream(m_text)), parser(m_file, userData) {}
    KeywordText(KeywordText const&) = delete;
    KeywordText& operator=(KeywordText const&) = delete;
    ~KeywordText() { std::fclose(m_file); }

  private:
    static FILE* Stream(std::string& text) {
        // A memory stream has to have a byte.
        return text.empty() ? std::fopen("/dev/null", "r")
                            : fmemopen(text.data(), text.size(), "r");
    }

    std::string m_text;
    FILE* m_file;

  public:
    KOVSrvKeywordParser parser;
};

/// What the callbacks of a run saw, as text: "keyword(parameter|parameter)" for each.
struct KeywordLog {
    std::string text;

    static void Take(KOVString const& keyword, KOVSrvKeywordParser::Parameters const& parameters,
                     KOVSrvKeywordParser& parser, void* userData) {
        Note("", keyword, parameters, userData);
        parser.SkipToNextKeyword();
    }
    static void Unknown(KOVString const& keyword, KOVSrvKeywordParser::Parameters const& parameters,
                        KOVSrvKeywordParser& parser, void* userData) {
        Note("unknown ", keyword, parameters, userData);
        parser.SkipToNextKeyword();
    }
    static void Ambiguous(KOVString const& keyword,
                          KOVSrvKeywordParser::Parameters const& parameters,
                          KOVSrvKeywordParser& parser, void* userData) {
        Note("ambiguous ", keyword, parameters, userData);
        parser.SkipToNextKeyword();
    }

  private:
    static void Note(char const* kind, KOVString const& keyword,
                     KOVSrvKeywordParser::Parameters const& parameters, void* userData) {
        std::string& text = static_cast<KeywordLog*>(userData)->text;
        text += std::string(kind) + keyword.TextOrEmpty() + "(";
        for (int i = 0; i < parameters.Size(); ++i) {
            text += (i ? "|" : "") + std::string(parameters.ConstGet(i).TextOrEmpty());
        }
        text += ")";
    }
};
