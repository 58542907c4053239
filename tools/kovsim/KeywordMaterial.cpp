// *MATERIAL, NAME=name
//
// Materials belong to the whole model, wherever their keyword stands. Their behaviours are keywords
// of their own, which follow.

#include "Keywords.h"
#include "Names.h"

namespace kov::tool {

void ReadMaterial(Translation& translation, DeckReader& reader, KeywordLine const& line) {
    KeywordParameters const parameters(reader, line, {"name", "rtol", "srate factor"});
    std::string const name = parameters.Required("name");
    parameters.PassOver(translation, {"rtol", "srate factor"});
    SectionTable& table = translation.Sections();
    DeckLine const here = table.files.At(reader.Path(), line.line);
    int const number = table.materials.Mention(name, here);
    NamedMaterial& material = table.materials[number];
    // A part is read once for each of its instances.
    bool const again = translation.IsRepeated() && material.defined == here;
    if (material.defined.line != 0 && !again) {
        reader.FailAt(line.line,
                      "material '" + Shown(name) + "' is defined a second time, first at " +
                          table.files.Shown(material.defined, here) + "; expected each name once");
    }
    material.defined = here;
    translation.Material() = {number, again};
    RefuseData(reader, line);
}

}  // namespace kov::tool
