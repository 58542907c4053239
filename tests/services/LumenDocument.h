// A document that the checker certifies, with at least one object of each kind that it looks at.
// Every object that a test may want to break is known by a name.
//
// clang-format off
//   elements   0 to 9    class.shell, S4R, section SKIN
//              10 to 19  class.solid, C3D8, section BULK
//              20 to 24  class.mass, MASS, no section
//              25 to 29  class.bare, no specification
//   regions    SURF, EDGES, NODES, ELSET, FREE, FREE-REGION, and the surfaces ANA-A, ANA-B, ANA-C,
//              ANA-R, each with a rigid body RB-A ... and a mesh
//   steps      Static, Riks, Buckle, Freq, Steady
//   history    Static: U #0, ENERGY #1, S #2; Riks: CF #0, WORK #1
//   requests   #0 of no kind, #1 with fields, #2 of the history, #3 with an empty field, #4
//              elaborated from nothing
// clang-format on
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "services/ShellFixture.h"

namespace kov::test {

class LumenDocument : public ShellDocument {
  public:
    explicit LumenDocument(Medium medium = Medium::Memory);
    ~LumenDocument() { EndBulk(); }

    /// What a later process would see that may not write, whatever the document lacks; in memory
    /// nothing happens.
    void ReopenForReading();
    /// The object of that name in the document as it is open now.
    KOVSimPosition At(std::string const& name) const;
    KOVSimPosition Know(std::string const& name, KOVSimPosition const& object);

    // All that follows needs a transaction.

    void Unlink(std::string const& name, int member) const {
        At(name).SetPosition(member, KOVSimPosition());
    }
    KOVSimPosition Record(int type, char const* name = "") const;
    KOVSimPosition PersistentSet(KOVSimCollection collection,
                                 std::vector<int> const& members) const;
    /// A dataset of pairs of sets, each pair a member of `rows` with members of `columns`.
    KOVSimPosition Relation(KOVSimCollection const& rows, KOVSimCollection const& columns,
                            std::vector<std::pair<int, std::vector<int>>> const& pairs,
                            int type) const;
    /// Gives the mesh this assignment of elements to specifications.
    void AssignSpecs(std::vector<std::pair<int, std::vector<int>>> const& pairs) const;
    /// A distribution of doubles over one or two collections, without drawers.
    KOVSimPosition Distribution(std::vector<KOVSimCollectionID> const& grid) const;
    /// Adds a drawer without data; `sets` has a set for each dimension.
    KOVSimPosition AddDrawer(KOVSimPosition const& distribution,
                             std::vector<KOVSimPosition> const& sets) const;
    /// A field without serial fields, known by its name. The field type has that key as well.
    KOVSimPosition NewMeshedField(std::string const& name, int algebraicType, int gridType);
    /// A serial field with one drawer over the members of `rows` and these components, or over
    /// `rows` alone where there are none.
    KOVSimPosition AddSerialField(KOVSimPosition const& field, KOVSimCollection const& rows,
                                  std::vector<int> const& members,
                                  std::vector<int> const& symbols) const;
    /// Replaces the serial fields by one over all nodes, with these components.
    void SetComponents(std::string const& field, std::vector<int> const& symbols) const;

    std::vector<std::string> Findings() const;
    /// "parent/minor" of the record of the field type of that name.
    std::string IDOf(std::string const& name) const;

  private:
    void MakeMesh(KOVSimTransaction& transaction);
    void MakeSections();
    void MakeRegions();
    void MakeSurface(char const* name, int member, int type, int body);
    void MakeSteps();
    KOVSimPosition MakeStep(char const* name, int type);
    void Describe(KOVSimPosition const& step, int link, int description, int collectionLink,
                  int dataLink, int size, std::vector<std::vector<int>> const& drawers,
                  std::vector<int> const& named);
    void MakeHistory();
    void MakeOutput();
    void MakeSurfaceOutput();
    void MakeLayers();

    std::map<std::string, KOVSimDynamicID> m_objects;
};

}  // namespace kov::test
