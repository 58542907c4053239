// SectionTable: the materials, sections and plies of a deck while it is read.
//
// A deck may have 100,000 sections of many layers: a layer takes 32 bytes and holds no text. Every
// name is kept once, with the line on which it came first, and may be defined further on: what it
// stands for is found out when the whole deck has been read.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MaterialBehaviors.h"
#include "References.h"
#include "Scope.h"

namespace kov::tool {

/// A line of a file of the deck.
struct DeckLine {
    int file = -1;  ///< its number in the FileNames
    int line = 0;   ///< 0: none

    friend bool operator==(DeckLine const&, DeckLine const&) = default;
};

/// The files of a deck, by number.
class FileNames {
  public:
    DeckLine At(std::string const& path, int line);
    std::string const& Path(DeckLine const& at) const {
        return m_paths[static_cast<std::size_t>(at.file)];
    }
    /// Throws a DeckError for that line.
    [[noreturn]] void Fail(DeckLine const& at, std::string const& text) const;
    /// The line `at`, for a message about `from`: "line 7", "FILE:7".
    std::string Shown(DeckLine const& at, DeckLine const& from) const;

  private:
    std::vector<std::string> m_paths;
    std::unordered_map<std::string, int> m_numbers;
    int m_last = -1;
};

/// A behaviour of a material, which is in the document already.
struct NamedBehavior {
    BehaviorKind const* kind;
    DeckLine at;  ///< its keyword
    KOVSimDynamicID record;
};

/// A material, which belongs to the whole model.
struct NamedMaterial {
    std::string name;  ///< as it was typed first
    DeckLine first;    ///< where it came first
    DeckLine defined;  ///< its keyword
    std::vector<NamedBehavior> behaviors;
};

/// The materials in the order in which they came first, defined or named.
class MaterialTable {
  public:
    static constexpr int kNone = -1;

    /// The number of the material of that name, whatever its case; it comes first at `at` if it is
    /// new.
    int Mention(std::string_view name, DeckLine const& at);
    NamedMaterial& operator[](int number) { return m_all[static_cast<std::size_t>(number)]; }
    std::deque<NamedMaterial> const& All() const { return m_all; }

  private:
    std::deque<NamedMaterial> m_all;
    std::unordered_map<std::string, int> m_byName;  ///< key: the name in lower case
    std::string m_lastName;                         ///< layer after layer names the same
    int m_last = kNone;
};

/// A name of an orientation or a distribution, as it was typed in some scope.
struct Mention {
    Scope* scope = nullptr;
    ScopedName name;
    DeckLine first;
    /// What it stands for, once that was found out; one of them at most.
    NamedOrientation const* orientation = nullptr;
    NamedDistribution const* distribution = nullptr;
};

/// Such names by number, each once for a scope.
class MentionTable {
  public:
    static constexpr int kNone = -1;

    int Number(Scope& scope, ScopedName const& name, DeckLine const& at);
    Mention const& operator[](int number) const { return m_all[static_cast<std::size_t>(number)]; }
    std::deque<Mention>& All() { return m_all; }

  private:
    std::deque<Mention> m_all;
    std::unordered_map<std::string, int> m_numbers;
    std::string m_key;
};

/// One layer as its line gives it. Thickness and angle are numbers or names: a name is a number of
/// the MentionTable.
class LayerEntry {
  public:
    int material = MaterialTable::kNone;
    int ply = -1;  ///< number of the ply; -1 without one
    int line = 0;  ///< in the section's file

    /// The thickness; with a thickness of the section the share that the layer has of it, in any
    /// unit. Above 0; 0 for none.
    double Thickness() const { return m_thickness > 0 ? m_thickness : 0; }
    int ThicknessName() const {
        return m_thickness < 0 ? static_cast<int>(-1 - m_thickness) : MentionTable::kNone;
    }
    void SetThickness(double thickness) { m_thickness = thickness; }
    void SetThicknessName(int name) { m_thickness = -1 - static_cast<double>(name); }

    /// Degrees; 0 where the line has none.
    double Angle() const { return m_points < 0 ? 0 : m_angle; }
    int AngleName() const { return m_points < 0 ? static_cast<int>(m_angle) : MentionTable::kNone; }
    int Points() const { return m_points < 0 ? -m_points : m_points; }
    /// `points`: from 1 upward.
    void SetAngle(double degrees, int points) {
        m_angle = degrees;
        m_points = points;
    }
    void SetAngleName(int name, int points) {
        m_angle = name;
        m_points = -points;
    }

  private:
    // A thickness is above 0: what is below stands for a name. So does an angle where the number of
    // points is below 0.
    double m_thickness = 0;
    double m_angle = 0;
    int m_points = 0;
};

/// What a beam section has beside other sections.
struct BeamProfile {
    std::vector<double> dimensions;
    std::vector<double> direction;  ///< of the first axis, 3 numbers; empty for none
    std::vector<int> points;        ///< integration points; empty for none
};

struct SectionEntry {
    enum class Kind : unsigned char { Shell, Solid, Membrane, Beam };

    Kind kind = Kind::Shell;
    bool composite = false;
    bool symmetric = false;               ///< the layers are the lower half
    bool gauss = false;                   ///< integrated by Gauss points; else by Simpson's rule
    unsigned char stackDirection = 0;     ///< 0 not given, 1 to 3, 4 that of the orientation
    int material = MaterialTable::kNone;  ///< of solids, membranes and beams
    int orientation = MentionTable::kNone;
    int thicknessName = MentionTable::kNone;  ///< of a distribution over the whole section
    DeckLine at;                              ///< of its keyword
    Scope* scope = nullptr;                   ///< where it stands
    ScopedName elements;                      ///< its element set, as it was typed
    double offset = 0;  ///< of the reference surface from the middle one, in thicknesses
    double value = 0;   ///< area or thickness of a solid section, thickness of a membrane; 0: none
    std::string name;   ///< of the layup, or the beam's profile in capitals
    std::unique_ptr<BeamProfile> beam;
    std::size_t firstLayer = 0;  ///< its first line in the SectionTable
    int layerLines = 0;  ///< one for each layer, or for half of them; a homogeneous shell has one

    // Known when the whole deck has been read.
    Scope* setScope = nullptr;  ///< whose set it is
    NamedSet* set = nullptr;
    int number = -1;  ///< of a shell section among those of the document, once it is written

    /// "shell section" and the like.
    char const* Words() const noexcept;
    int Layers() const { return symmetric ? 2 * layerLines : layerLines; }
    /// The line of a layer, counted from the bottom.
    std::size_t LineOf(int layer) const {
        int const line = layer < layerLines ? layer : 2 * layerLines - 1 - layer;
        return firstLayer + static_cast<std::size_t>(line);
    }
};

/// All of these, and the layers of all sections in the order of the deck.
class SectionTable {
  public:
    FileNames files;
    MaterialTable materials;
    MentionTable orientationNames;  ///< of sections
    MentionTable angleNames;        ///< of layers: orientations or distributions
    MentionTable thicknessNames;    ///< distributions
    std::deque<SectionEntry> sections;
    std::vector<std::pair<Scope const*, NamedPly const*>> plies;  ///< by number

    /// The place that the next layer will have.
    std::size_t NextLayer() const { return m_dropped + m_layers.size(); }
    void AddLayer(LayerEntry const& layer) { m_layers.push_back(layer); }
    /// A layer of a section, counted from the bottom.
    LayerEntry const& Layer(SectionEntry const& section, int layer) const {
        return m_layers[section.LineOf(layer) - m_dropped];
    }
    /// Forgets the layers in front of a place.
    void DropLayersBefore(std::size_t place);

  private:
    std::deque<LayerEntry> m_layers;
    std::size_t m_dropped = 0;
};

}  // namespace kov::tool
