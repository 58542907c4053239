// Thicknesses of shell layers that differ from element to element: written in bulk from a table
// field for each layer, and read back, all layers of all sections. Beside each stand plain
// transfers of the same numbers: read from the table fields and written to drawers of a
// distribution of one's own, and read from these.
//
//   --elements 1000000 --layers 8 --sections 10 --runs 3
#include "KOVObjDocument.h"
#include "KOVObjMeshedField.h"
#include "KOVSimSchema.h"
#include "KOVSimTransfer.h"
#include "KOVSimVector.h"
#include "KOVSrvBulkShellLayers.h"
#include "KOVSrvShellSection.h"
#include "bench/support/Measure.h"
#include "bench/support/Mesh.h"

namespace {

struct Sizes {
    int elements, layers, sections;

    int Each() const { return elements / sections; }
    std::size_t Values() const {
        return static_cast<std::size_t>(elements) * static_cast<std::size_t>(layers);
    }
};

double Thickness(int layer, int element) { return 1e-4 * (layer + 1) + 1e-9 * element; }

class Model {
  public:
    Model(std::string const& path, Sizes const& sizes)
        : m_sizes(sizes),
          m_document(KOVObjDocument::Create(path.c_str())),
          m_mesh(m_document),
          m_columns(m_document.GetModel()
                        .Focus()
                        .GetPosition(schema::Focus_sharedCollections())
                        .GetPosition(schema::SharedCollections_fieldColumns())
                        .GetCollection()),
          m_numbers(sizes.Values()) {
        KOVSimTransaction transaction(m_document.ContextID());
        m_mesh.Extend(0, sizes.elements);
        KOVSimPosition const model = m_document.GetModel();
        KOVSimPosition const slots =
            model.CreateTypedCollection(sizes.layers, schema::BulkLayerSlot());
        KOVSimPosition const sections =
            model.CreateTypedCollection(sizes.sections, schema::BulkSection());
        model.SetPosition(schema::Model_bulkLayerSlots(), slots);
        model.SetPosition(schema::Model_bulkSections(), sections);
        m_slots = KOVSimCollection(slots.GetCollection());
        for (int i = 0; i < sizes.sections; ++i) MakeSection(sections, i);
        for (int layer = 0; layer < sizes.layers; ++layer) MakeField(layer);
        transaction.Commit();
    }
    ~Model() { m_document.Close(); }
    Model(Model const&) = delete;
    Model& operator=(Model const&) = delete;

    void WriteBulk() {
        KOVSrvBulkShellLayers& bulk = *omi_Singleton<KOVSrvBulkShellLayers>::Instance();
        for (KOVSimPosition const& set : m_sets) {
            for (int layer = 0; layer < m_sizes.layers; ++layer) {
                bulk.AppendDistThickness(layer, set, m_fields[static_cast<std::size_t>(layer)]);
            }
        }
        bulk.WriteBulkDistributions(m_document.Focus());
    }

    // As plain as can be: each layer in one transfer, into a drawer of its own.
    void WritePlain() {
        KOVSimTransaction transaction(m_document.ContextID());
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = m_slots.ID();
        grid.Get(1) = m_mesh.elements.ID();
        m_plain = m_document.CreateDistribution(KOVSimGrid(grid),
                                                KOVSimRangeType(KOVSimTypeKeyDouble), -1);
        for (int layer = 0; layer < m_sizes.layers; ++layer) {
            KOVSimDistribution const values(m_fields[static_cast<std::size_t>(layer)]
                                                .GetPosition(schema::FieldFTable_distribution())
                                                .GetDistribution());
            KOVSimTransfer read(values);
            read.SetRead().SetDim(0, All()).SetDim(1, One(m_columns, 0)).CheckView();
            read.SetBuffer(0, Row(layer), Bytes()).ExecRead().RelinquishBuffers();
            KOVSimTransfer write{KOVSimDistribution(m_plain)};
            write.SetWrite().SetMakeNewDrawer();
            write.SetDim(0, One(m_slots, layer)).SetDim(1, All()).CheckView();
            write.SetBuffer(0, Row(layer), Bytes()).ExecWrite().RelinquishBuffers();
        }
        transaction.Commit();
    }

    // Section by section, all layers in one transfer, as by a reader that walks the model.
    void ReadBulk() {
        KOVSimDistribution const stored(
            KOVObjMeshedField(m_document.GetModel()
                                  .GetPosition(schema::Model_bulkShellLayers())
                                  .GetPosition(schema::BulkShellLayers_distThicknesses()))
                .GetDistribution()
                .GetDistribution());
        std::size_t at = 0;
        KOVSimVectoriterator next =
            m_document.GetModel().GetVector(schema::Model_sectionAssignments()).Begin();
        for (; next.NotDone(); ++next) {
            KOVSrvShellSection const shell(*next);
            auto const& variation = shell.GetThicknessVariation();
            for (int layer = 0; layer < shell.GetNumLayers(); ++layer) {
                Require(variation[layer] == KOVSrvShellSection::VariationDistributed);
            }
            std::size_t const count = static_cast<std::size_t>(m_sizes.layers) *
                                      static_cast<std::size_t>(shell.GetElementSet().Size());
            KOVSimTransfer read(stored);
            read.SetRead().SetDim(0, shell.GetLayerSet()).SetDim(1, shell.GetElementSet());
            read.CheckView();
            read.SetBuffer(0, m_numbers.data() + at, count * sizeof(double));
            read.ExecRead().RelinquishBuffers();
            at += count;
        }
        Require(at == m_sizes.Values());
        int const last = m_sizes.elements - 1;
        Require(m_numbers[at - 1] == Thickness(m_sizes.layers - 1, last));
        Require(m_numbers[0] == Thickness(0, 0));
    }

    void ReadPlain() {
        for (int layer = 0; layer < m_sizes.layers; ++layer) {
            KOVSimTransfer read{KOVSimDistribution(m_plain)};
            read.SetRead().SetDim(0, One(m_slots, layer)).SetDim(1, All()).CheckView();
            read.SetBuffer(0, Row(layer), Bytes()).ExecRead().RelinquishBuffers();
        }
        Require(Row(1)[5] == Thickness(1, 5));
    }

  private:
    static void Require(bool right) {
        if (!right) throw std::runtime_error("shell_fields: not what was written");
    }
    void MakeSection(KOVSimPosition const& sections, int i) {
        KOVSimPosition const section = sections.CreateMember(i, schema::Section_Shell());
        section.DataRecord().SetInt(0, m_sizes.layers);
        m_sets.push_back(
            m_mesh.elements.CreateCSetStrided(i * m_sizes.Each(), m_sizes.Each(), 1, 1));
        KOVSimPosition const region = m_document.CreateDataRecord(schema::Region()).Pos();
        region.SetPosition(schema::Region_elementsCluster(), m_sets.back());
        KOVSimPosition const made = m_document.CreateDataRecord(schema::SectionAssignment()).Pos();
        made.SetPosition(schema::SectionAssignment_section(), section);
        made.SetPosition(schema::SectionAssignment_region(), region);
        m_document.GetModel().GetVector(schema::Model_sectionAssignments()).PushBack(made);
    }
    void MakeField(int layer) {
        KOVSimPosition const field = m_document.CreateDataRecord(schema::Field_FTable()).Pos();
        KOVBasVector<KOVString> const noRows;
        KOVBasVector<KOVString> column(1);
        column[0] = "LENGTH";
        double const otherwise = 0;
        field.SetPosition(
            schema::FieldFTable_table(),
            m_document.GetModel().CreateFTable(schema::FTable(), 1, noRows, column, &otherwise, 1));
        KOVSimGrid::CollectionArray grid(2);
        grid.Get(0) = m_mesh.elements.ID();
        grid.Get(1) = m_columns.ID();
        KOVSimDistributionID const values = m_document.CreateDistribution(
            KOVSimGrid(grid), KOVSimRangeType(KOVSimTypeKeyDouble), -1);
        field.SetPosition(schema::FieldFTable_distribution(), values);
        for (int i = 0; i < m_sizes.elements; ++i) Row(layer)[i] = Thickness(layer, i);
        KOVSimTransfer write{KOVSimDistribution(values)};
        write.SetWrite().SetMakeNewDrawer().SetDim(0, All()).SetDim(1, One(m_columns, 0));
        write.CheckView().SetBuffer(0, Row(layer), Bytes()).ExecWrite().RelinquishBuffers();
        m_fields.push_back(field);
    }
    KOVSimCSet All() const {
        return m_mesh.elements.CreateVolatileCSetStrided(0, m_sizes.elements, 1, 1);
    }
    static KOVSimCSet One(KOVSimCollection const& collection, int member) {
        return collection.CreateVolatileCSetStrided(member, 1, 1, 1);
    }
    double* Row(int layer) {
        return m_numbers.data() +
               static_cast<std::size_t>(layer) * static_cast<std::size_t>(m_sizes.elements);
    }
    unsigned long Bytes() const {
        return static_cast<unsigned long>(m_sizes.elements) * sizeof(double);
    }

    Sizes m_sizes;
    KOVObjDocument m_document;
    bench::Mesh m_mesh;
    KOVSimCollection m_columns, m_slots;
    bench::Array<double> m_numbers;
    std::vector<KOVSimPosition> m_sets, m_fields;
    KOVSimDistributionID m_plain;
};

void Run(bench::Options const& options) {
    Sizes const sizes{options.Int("elements", 1'000'000), options.Int("layers", 8),
                      options.Int("sections", 10)};
    if (sizes.elements % sizes.sections != 0) throw std::runtime_error("sections of equal size");
    std::string const path = bench::FreshPath(options, "fields.ksd");
    std::vector<double> write, writePlain, read, readPlain, peak;
    {
        Model model(path, sizes);
        model.WritePlain();  // verifies the table fields
        for (int run = 0; run < options.Int("runs", 3); ++run) {
            peak.push_back(bench::PeakMB(
                [&] { write.push_back(bench::Seconds([&] { model.WriteBulk(); })); }));
            writePlain.push_back(bench::Seconds([&] { model.WritePlain(); }));
        }
        model.ReadPlain();
        model.ReadBulk();
        for (int run = 0; run < options.Int("runs", 3); ++run) {
            read.push_back(bench::Seconds([&] { model.ReadBulk(); }));
            readPlain.push_back(bench::Seconds([&] { model.ReadPlain(); }));
        }
        omi_SingletonBase<KOVSrvBulkShellLayers>::Finalize();
    }
    bench::Report("shells.fields.write", "ours", bench::Median(write), bench::Median(peak));
    bench::Report("shells.fields.write", "read and write", bench::Median(writePlain));
    bench::Report("shells.fields.read", "ours", bench::Median(read));
    bench::Report("shells.fields.read", "plain transfers", bench::Median(readPlain));
    std::filesystem::remove_all(path);
}

}  // namespace

int main(int argc, char** argv) { return bench::Main(argc, argv, &Run); }
