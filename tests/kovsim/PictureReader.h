// PictureReader: what a reader of a picture of layers sees, found by its elements.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "LayupPicture.h"
#include "SmallXml.h"

namespace kov::test {

class PictureReader {
  public:
    explicit PictureReader(tool::Layup const& layup)
        : m_text(tool::LayupPicture(layup)), m_root(SmallXml::Parse(m_text)), m_all(m_root.All()) {
        for (XmlElement const* element : m_all) {
            auto const at = element->attributes.find("class");
            if (at != element->attributes.end()) m_groups[at->second].push_back(element);
        }
    }
    PictureReader(PictureReader const&) = delete;

    XmlElement const& Root() const { return m_root; }
    std::string const& Text() const { return m_text; }

    std::vector<XmlElement const*> Tags(std::string_view tag) const {
        std::vector<XmlElement const*> found;
        for (XmlElement const* element : m_all)
            if (element->tag == tag) found.push_back(element);
        return found;
    }
    std::vector<std::string> Labels() const { return Texts("text"); }
    std::vector<std::string> Tooltips() const { return Texts("title"); }

    XmlElement const& Label(std::string const& text) const {
        for (XmlElement const* element : Tags("text"))
            if (element->text == text) return *element;
        throw std::runtime_error("no label " + text);
    }

    std::vector<XmlElement const*> const& Bands() const { return Groups("layer"); }
    /// Of the text beside the bands.
    std::vector<XmlElement const*> const& Lines() const { return Groups("line"); }

    /// Corners of a band: lower left, lower right, upper right, upper left; y downward.
    static std::vector<std::pair<double, double>> Corners(XmlElement const& band) {
        std::vector<std::pair<double, double>> corners;
        double shiftX = 0;
        double shiftY = 0;
        std::string const& transform = band.attributes.at("transform");
        EXPECT_EQ(std::sscanf(transform.c_str(), "translate(%lf %lf)", &shiftX, &shiftY), 2);
        std::istringstream points(band.children.at(1).attributes.at("points"));
        double x = 0;
        double y = 0;
        while (points >> x >> y) corners.emplace_back(x + shiftX, y + shiftY);
        EXPECT_EQ(corners.size(), 4U);
        return corners;
    }
    double LeftHeight(std::size_t band) const {
        auto const corners = Corners(*Bands().at(band));
        return corners[0].second - corners[3].second;
    }
    double RightHeight(std::size_t band) const {
        auto const corners = Corners(*Bands().at(band));
        return corners[1].second - corners[2].second;
    }
    /// The hatches of a band from left to right.
    std::vector<std::string> Hatches(std::size_t band) const {
        std::vector<std::string> hatches;
        for (XmlElement const& part : Bands().at(band)->children) {
            auto const fill = part.attributes.find("fill");
            if (fill != part.attributes.end() && fill->second.starts_with("url("))
                hatches.push_back(fill->second);
        }
        return hatches;
    }
    std::string Ground(std::size_t band) const {
        return Bands().at(band)->children.at(1).attributes.at("fill");
    }

  private:
    std::vector<std::string> Texts(std::string_view tag) const {
        std::vector<std::string> texts;
        for (XmlElement const* element : Tags(tag)) texts.push_back(element->text);
        return texts;
    }

    std::vector<XmlElement const*> const& Groups(std::string const& name) const {
        static std::vector<XmlElement const*> const none;
        auto const at = m_groups.find(name);
        return at == m_groups.end() ? none : at->second;
    }

    std::string m_text;
    XmlElement m_root;
    std::vector<XmlElement const*> m_all;
    std::map<std::string, std::vector<XmlElement const*>> m_groups;
};

}  // namespace kov::test
