// Our side of the bulk rows, on the public headers. Blocks of the mesh are appended by the mesh
// services; they are read by transfers, or, with --variant service, by the mesh services, which
// clear the buffer first. A field stands in a frame of a step, with a drawer for each block, or,
// with --variant growing, with one drawer that grows.
#include <memory>
#include <optional>

#include "KOVSimTransfer.h"
#include "KOVSrvElementConnectivity.h"
#include "KOVSrvNodalCoordinates.h"
#include "bench/support/BulkStore.h"
#include "bench/support/Mesh.h"
#include "bench/support/NodalField.h"

namespace {

class Document : public bench::BulkStore {
  public:
    explicit Document(std::string const& variant)
        : m_service(variant == "service"),
          m_growing(variant == "growing"),
          m_name(variant.empty() ? "ours" : "ours, " + variant) {}
    std::string Name() const override { return m_name; }
    void Create(std::string const& path, int nodes, int elements) override {
        m_document = KOVObjDocument::Create(path.c_str());
        Prepare();
        KOVSimTransaction transaction(m_document.ContextID());
        m_mesh->Extend(nodes, elements);
        transaction.Commit();
    }
    void WriteCoordinates(int first, int n, double const* xyz) override {
        KOVSimCSetID const nodes = m_mesh->nodes.CreateTempCSetStrided(first, n, 1, 1);
        m_coordinates.Append(Transaction(), nodes, m_axes, xyz);
    }
    void WriteConnectivity(int first, int n, int const* nodes) override {
        KOVSimCSetID const elements = m_mesh->elements.CreateTempCSetStrided(first, n, 1, 1);
        m_connectivity.Append(Transaction(), m_mesh->position.ID(), elements, m_corners, nodes);
    }
    void WriteField(int first, int n, double const* values) override {
        KOVSimTransaction const& transaction = Transaction();
        if (!m_field) m_field = bench::NodalField::Create(m_document, transaction, m_growing);
        m_field->Append(m_mesh->nodes.CreateTempCSetStrided(first, n, 1, 1), values);
    }
    void ReadField(int first, int n, double* values) override {
        if (!m_field) m_field = bench::NodalField::Find(m_document);
        Read(m_field->Values(), m_mesh->nodes.CreateVolatileCSetStrided(first, n, 1, 1), m_axes,
             values);
    }
    void Commit() override {
        m_transaction->Commit();
        m_transaction.reset();
    }
    void Close() override {
        m_mesh.reset();
        m_field.reset();
        m_document.Close();
    }
    void Open(std::string const& path) override {
        m_document = KOVObjDocument::Open(path.c_str(), KOVObjDocument::ReadOnly);
        Prepare();
    }
    void ReadCoordinates(int first, int n, double* xyz) override {
        KOVSimCSet const nodes = m_mesh->nodes.CreateVolatileCSetStrided(first, n, 1, 1);
        if (m_service) {
            m_coordinates.Read(nodes, m_axes, xyz);
        } else {
            Read(Coordinates(), nodes, m_axes, xyz);
        }
    }
    void ReadConnectivity(int first, int n, int* nodes) override {
        KOVSimCSet const elements = m_mesh->elements.CreateVolatileCSetStrided(first, n, 1, 1);
        if (m_service) {
            m_connectivity.Read(elements, m_corners, nodes);
        } else {
            Read(m_mesh->Relation(), elements, m_corners, nodes);
        }
    }
    bool Gather(int const* nodes, int n, double* xyz) override {
        Read(Coordinates(), m_mesh->nodes.CreateVolatileOrderedCSet(nodes, n), m_axes, xyz);
        return true;
    }
    bool ReadStrided(int n, int stride, double* xyz) override {
        Read(Coordinates(), m_mesh->nodes.CreateVolatileCSetStrided(0, n, stride, 1), m_axes, xyz);
        return true;
    }

  private:
    void Prepare() {
        m_mesh.emplace(m_document);
        m_axes = m_mesh->Axes();
        m_corners = m_mesh->slots.CreateTempCSetStrided(0, 8, 1, 1);
        m_coordinates = KOVSrvNodalCoordinates(m_mesh->coordinates, bench::kBlock);
        m_connectivity = KOVSrvElementConnectivity(m_mesh->connectivity, bench::kBlock);
    }
    KOVSimTransaction& Transaction() {
        if (!m_transaction) {
            m_transaction = std::make_unique<KOVSimTransaction>(m_document.ContextID());
        }
        return *m_transaction;
    }
    KOVSimDistribution Coordinates() const {
        return KOVSimDistribution(m_mesh->coordinates.GetDistribution());
    }
    static void Read(KOVSimDistribution const& from, KOVSimCSet const& rows,
                     KOVSimCSetID const& columns, void* out) {
        KOVSimTransfer read(from);
        read.SetRead().SetBufferPadding(false).SetDim(0, rows).SetDim(1, columns).CheckView();
        auto const bytes = static_cast<unsigned long>(read.RequiredBufferSize(0));
        read.SetBuffer(0, out, bytes).ExecRead().RelinquishBuffers();
    }

    bool m_service, m_growing;
    std::string m_name;
    KOVObjDocument m_document;
    std::optional<bench::Mesh> m_mesh;
    std::optional<bench::NodalField> m_field;
    KOVSimCSetID m_axes, m_corners;
    KOVSrvNodalCoordinates m_coordinates;
    KOVSrvElementConnectivity m_connectivity;
    std::unique_ptr<KOVSimTransaction> m_transaction;
};

}  // namespace

int main(int argc, char** argv) {
    Document store(bench::Options(argc, argv).Text("variant", ""));
    return bench::RunBulk(argc, argv, store);
}
