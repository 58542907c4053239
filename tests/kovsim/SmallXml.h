// A strict reader of small XML documents, as far as pictures use the language: elements,
// attributes, text and the five named entities. What is not well-formed throws.
#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Json.h"

namespace kov::test {

struct XmlElement {
    std::string tag;
    std::map<std::string, std::string> attributes;
    std::string text;  ///< its own, without that of its children
    std::vector<XmlElement> children;

    /// This one and all below it, in the order of the document.
    std::vector<XmlElement const*> All() const {
        std::vector<XmlElement const*> all = {this};
        for (XmlElement const& child : children) {
            auto const below = child.All();
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }
    double Number(std::string const& name) const { return std::stod(attributes.at(name)); }
};

class SmallXml {
  public:
    static XmlElement Parse(std::string_view text) {
        SmallXml parser(text);
        parser.CheckCharacters();
        parser.Expect("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        parser.SkipBlanks();
        XmlElement root = parser.Element();
        parser.SkipBlanks();
        if (!parser.m_rest.empty()) Fail("text after the root");
        return root;
    }

  private:
    explicit SmallXml(std::string_view text) : m_rest(text) {}

    [[noreturn]] static void Fail(std::string const& what) {
        throw std::runtime_error("not well-formed: " + what);
    }

    void CheckCharacters() const {
        for (std::string_view rest = m_rest; !rest.empty();) {
            std::size_t const length = tool::Utf8SequenceLength(rest);
            if (length == 0) Fail("no UTF-8");
            std::string_view const one = rest.substr(0, length);
            auto const byte = static_cast<unsigned char>(one.front());
            if (byte < 0x20 && byte != '\n') Fail("a control character");
            if (one == "\xef\xbf\xbe" || one == "\xef\xbf\xbf") Fail("no character of XML");
            rest.remove_prefix(length);
        }
    }

    void Expect(std::string_view text) {
        if (!m_rest.starts_with(text)) Fail("expected " + std::string(text));
        m_rest.remove_prefix(text.size());
    }
    void SkipBlanks() {
        while (!m_rest.empty() && (m_rest.front() == ' ' || m_rest.front() == '\n'))
            m_rest.remove_prefix(1);
    }
    std::string UpTo(std::string_view stops) {
        std::size_t const length = m_rest.find_first_of(stops);
        if (length == std::string_view::npos) Fail("the end came early");
        std::string part(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return part;
    }
    std::string Name() {
        std::string name = UpTo(" />=\n<\"&");
        if (name.empty()) Fail("a name is missing");
        return name;
    }

    static std::string Plain(std::string_view text) {
        std::string plain;
        while (!text.empty()) {
            if (text.front() != '&') {
                if (text.starts_with("]]>")) Fail("]]> in text");
                plain += text.front();
                text.remove_prefix(1);
                continue;
            }
            static constexpr std::pair<std::string_view, char> kEntities[] = {
                {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
            bool found = false;
            for (auto const& [entity, character] : kEntities) {
                if (found || !text.starts_with(entity)) continue;
                found = true;
                plain += character;
                text.remove_prefix(entity.size());
            }
            if (!found) Fail("an entity");
        }
        return plain;
    }

    XmlElement Element() {
        Expect("<");
        XmlElement element;
        element.tag = Name();
        for (;;) {
            SkipBlanks();
            if (m_rest.starts_with("/>")) {
                Expect("/>");
                return element;
            }
            if (m_rest.starts_with(">")) break;
            std::string const name = Name();
            Expect("=\"");
            std::string const value = UpTo("\"<");
            Expect("\"");
            if (!element.attributes.emplace(name, Plain(value)).second) Fail("attribute twice");
        }
        Expect(">");
        for (;;) {
            element.text += Plain(UpTo("<"));
            if (m_rest.starts_with("</")) break;
            element.children.push_back(Element());
        }
        Expect("</" + element.tag + ">");
        return element;
    }

    std::string_view m_rest;
};

}  // namespace kov::test
