// What may be wrong with steps.
#include "services/LumenBreakageParts.h"

namespace kov::test {

namespace {

using D = LumenDocument;

void ReplaceData(D& d, char const* description, int dataLink, std::vector<int> const& members) {
    KOVSimPosition const collection = d.At(std::string(description) + ".collection");
    KOVSimPosition const data = d.Distribution({collection.GetCollection()});
    d.AddDrawer(data, {d.PersistentSet(KOVSimCollection(collection.GetCollection()), members)});
    d.At(description).SetPosition(dataLink, data);
}

}  // namespace

std::vector<Breakage> StepBreakages() {
    return {
        {"no steps in the map",
         "",
         [](D& d) {
             for (char const* step : {"Static", "Riks", "Buckle", "Freq", "Steady"}) {
                 d.Model().GetMap(schema::Model_steps()).Remove(step);
             }
         },
         {"Model has no Steps."}},
        {"no steps in the sequence",
         "",
         [](D& d) {
             KOVSimVector const sequence = d.Model().GetVector(schema::Model_stepSequence());
             while (sequence.Size() > 0) sequence.Remove(0);
         },
         {"Model_stepSequence is empty."}},
        {"a step that the focus does not know",
         "Static focus",
         [](D& d) {
             RemoveFromSet(d.At("focus"), schema::Focus_externalTaskIds(), d.At("Static"));
         },
         {"Step \"Static\" is not referred to by Focus (Focus_externalTaskIds)."}},
        {"modes of a static step without a system",
         "Static modes",
         [](D& d) { d.At("Static").SetPosition(schema::Task_modes(), d.At("user nodes")); },
         {"Step \"Static\" has no FESystem."}},
        {"modes of a static step whose system is not modal",
         "Static modes",
         [](D& d) {
             d.At("Static").SetPosition(schema::Task_modes(), d.At("user nodes"));
             d.At("Static").SetPosition(schema::Task_feSystem(), d.Record(schema::FESystem()));
         },
         {"System is not ModalSystem for Step \"Static\"."}},
        {"times without a description",
         "Static times",
         [](D& d) { d.Unlink("Static.TimeDescription", schema::TimeDescription_timeCollection()); },
         {"Task_times CSet's TimeCollection has no parent link to TimeDescription "
          "(TimeDescription_timeCollection)for Step \"Static\"."}},
        {"times that are no set",
         "Static times",
         [](D& d) { d.At("Static").SetPosition(schema::Task_times(), SomeRecord(d)); },
         {"Task_times CSet's TimeCollection has no parent link to TimeDescription "
          "(TimeDescription_timeCollection)for Step \"Static\"."}},
        {"a description of times without data",
         "Static times",
         [](D& d) { d.Unlink("Static.TimeDescription", schema::TimeDescription_data()); },
         {"TimeDescription has no data distribution for Step \"Static\"."}},
        {"times of which one has no data",
         "Static times",
         [](D& d) {
             KOVSimCollection const times(
                 d.At("Static.TimeDescription.collection").GetCollection());
             d.At("Static").SetPosition(schema::Task_times(), d.PersistentSet(times, {9, 10}));
         },
         {"TimeDescription data distribution must have all members from times CSet for Step "
          "\"Static\"."}},
        {"no time incrementation",
         "Riks incrementation",
         [](D& d) { d.Unlink("Riks", schema::Step_Gen_timeIncrementation()); },
         {"TimeIncrementation record does not exist for Step_Gen_StaticRiks \"Riks\" "
          "(Step_Gen_timeIncrementation)."}},
        {"times covered by one drawer of two",
         "Riks times",
         [](D& d) {
             ReplaceData(d, "Riks.TimeDescription", schema::TimeDescription_data(), {1, 2});
         },
         {"TimeDescription data distribution must have all members from times CSet for Step "
          "\"Riks\"."}},
        {"arc lengths without a description",
         "arc lengths",
         [](D& d) {
             d.Unlink("Riks.ArcLengthDescription",
                      schema::ArcLengthDescription_arcLengthCollection());
         },
         {"ArcLengthDescription record does not exist."}},
        {"a description of arc lengths without data",
         "arc lengths",
         [](D& d) { d.Unlink("Riks.ArcLengthDescription", schema::ArcLengthDescription_data()); },
         {"ArcLengthDescription record does not exist for Step \"Riks\"."}},
        {"arc lengths without data",
         "arc lengths",
         [](D& d) {
             ReplaceData(d, "Riks.ArcLengthDescription", schema::ArcLengthDescription_data(),
                         {1, 2, 3});
         },
         {"This ArcLengthDescription data distribution has no all members from times CSet for Step "
          "\"Riks\"."}},
        {"buckling without modes",
         "Buckle",
         [](D& d) {
             d.Unlink("Buckle", schema::Task_modes());
             d.Unlink("Buckle", schema::Task_feSystem());
         },
         {"Step_Lin_Buckle \"Buckle\" has no modes link (Task_modes)."}},
        {"buckling with an empty set of modes",
         "Buckle",
         [](D& d) {
             KOVSimCollectionID const modes =
                 d.At("Buckle").GetPosition(schema::Task_modes()).GetCSet().CollectionID();
             d.At("Buckle").SetPosition(schema::Task_modes(),
                                        d.PersistentSet(KOVSimCollection(modes), {}));
         },
         {"Step_Lin_Buckle \"Buckle\" has a mode set that is empty (Task_modes)."}},
        {"buckling with an empty set of modes and no system",
         "Buckle",
         [](D& d) {
             d.At("Buckle").SetPosition(schema::Task_modes(), SomeRecord(d));
             d.Unlink("Buckle", schema::Task_feSystem());
         },
         {"Step_Lin_Buckle \"Buckle\" has a mode set that is empty (Task_modes).",
          "Step \"Buckle\" has no FESystem."}},
        {"a modal system without eigenvalues",
         "Freq system",
         [](D& d) { d.Unlink("Freq.system", schema::ModalSystem_eigenvalues()); },
         {"ModalSystem has no eigenvalues link (ModalSystem_eigenvalues)for Step \"Freq\"."}},
        {"a description of frequencies without data",
         "frequencies",
         [](D& d) { d.Unlink("Freq.FrequencyDescription", schema::FrequencyDescription_data()); },
         {"FrequencyDescription record does not exist for Step \"Freq\".",
          "This FrequencyDescription data distribution has no all members from frequency CSet for "
          "Step \"Freq\"."}},
        {"frequencies without data",
         "frequencies",
         [](D& d) {
             ReplaceData(d, "Freq.FrequencyDescription", schema::FrequencyDescription_data(), {0});
         },
         {"This FrequencyDescription data distribution has no all members from frequency CSet for "
          "Step \"Freq\"."}},
    };
}

}  // namespace kov::test
