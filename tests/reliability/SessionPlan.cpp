#include "reliability/SessionPlan.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace reliability {

std::uint64_t Mix(std::uint64_t a, std::uint64_t b, std::uint64_t c) {
    std::uint64_t x = a * 0x9E3779B97F4A7C15u + b * 0xC2B2AE3D27D4EB4Fu + c * 0x165667B19E3779F9u;
    x ^= x >> 30;
    x *= 0xBF58476D1CE4E5B9u;
    x ^= x >> 27;
    x *= 0x94D049BB133111EBu;
    return x ^ (x >> 31);
}

namespace {

std::uint64_t Of(int n, int salt) {
    return Mix(static_cast<std::uint64_t>(n), static_cast<std::uint64_t>(salt));
}

int Below(std::uint64_t value, int limit) {
    return static_cast<int>(value % static_cast<std::uint64_t>(limit));
}

}  // namespace

Plan MakePlan(Scale const& scale, int n, int nodesBefore, int elementsBefore) {
    Plan plan;
    plan.n = n;
    bool const large = n % scale.largeEvery == scale.largeEvery / 2;
    int const count = large ? scale.largeNodes : scale.nodes;
    plan.nodes = {nodesBefore, 1 + count / 2 + Below(Of(n, 1), count)};
    plan.spaceNodes = plan.nodes.first + plan.nodes.count + 1;
    plan.drawer = (n - 1) / 4;
    plan.newDrawer = (n - 1) % 4 == 0;
    plan.width = std::array{4, 8, 20}[static_cast<std::size_t>(plan.drawer % 3)];
    plan.elements = {elementsBefore, 2 + Below(Of(n, 2), large ? count / 6 : 7)};
    if (n > 1) {
        int const longest = std::min(nodesBefore, large ? count : 40);
        plan.rewritten.count = n % 3 == 0 ? 0 : 1 + Below(Of(n, 3), longest);
        plan.rewritten.first = Below(Of(n, 4), nodesBefore - plan.rewritten.count + 1);
        plan.scattered = RandomMembers(n, 5, 1 + Below(Of(n, 5), 9), nodesBefore);
        plan.scatteredComponent = Below(Of(n, 6), 3);
        if (n % 2 == 0) plan.rewrittenElement = Below(Of(n, 7), elementsBefore);
    }
    plan.touched = 1 + Below(Of(n, 8), n);
    return plan;
}

void State::Advance(Scale const& scale) {
    Plan const plan = MakePlan(scale, n + 1, nodes, static_cast<int>(elements.size()));
    if (nodesAt.empty()) nodesAt.push_back(0);
    if (elementsAt.empty()) elementsAt.push_back(0);
    n = plan.n;
    nodes = plan.spaceNodes;
    nodesAt.push_back(nodes);
    auto const at = [](int i) { return static_cast<std::size_t>(i); };
    coordinates.resize(at(nodes), {0, 0, 0});
    for (int i = 0; i < plan.nodes.count; ++i) coordinates[at(plan.nodes.first + i)] = {n, n, n};
    // A node between two appends has no row in the drawer until it is written, and then a whole
    // one: what was not written with it reads as zero, which version -1 stands for.
    for (int i = 0; i < plan.rewritten.count; ++i)
        coordinates[at(plan.rewritten.first + i)] = {n, n, n};
    for (int const node : plan.scattered) {
        std::array<int, 3>& versions = coordinates[at(node)];
        if (versions == std::array{0, 0, 0}) versions = {-1, -1, -1};
        versions[at(plan.scatteredComponent)] = n;
    }
    if (plan.newDrawer) drawers.push_back({plan.width, {plan.elements.first, 0}});
    drawers.back().elements.count += plan.elements.count;
    for (int i = 0; i < plan.elements.count; ++i) elements.push_back({plan.drawer, n});
    elementsAt.push_back(static_cast<int>(elements.size()));
    if (plan.rewrittenElement >= 0) elements[at(plan.rewrittenElement)].version = n;
    touched.resize(at(n + 1), 0);
    touched[at(plan.touched)] = n;
    if (HasLabels(n)) labels[InstanceOf(n)] = n;
}

double Coordinate(int node, int component, int version) {
    if (version < 0) return 0.0;
    std::uint64_t const value =
        Mix(static_cast<std::uint64_t>(node), static_cast<std::uint64_t>(component),
            static_cast<std::uint64_t>(version));
    double const real = static_cast<double>(value >> 12) / 1048576.0;
    return value & 1 ? -real : real;
}

int Node(int element, int place, int version, int nodesThen) {
    return Below(Mix(static_cast<std::uint64_t>(element), static_cast<std::uint64_t>(place) + 77,
                     static_cast<std::uint64_t>(version)),
                 nodesThen);
}

std::vector<int> RandomMembers(int n, int salt, int count, int space) {
    std::vector<int> members;
    for (int i = 0; i < count; ++i)
        members.push_back(Below(Mix(static_cast<std::uint64_t>(n), static_cast<std::uint64_t>(salt),
                                    static_cast<std::uint64_t>(i + 1)),
                                space));
    std::vector<int> unique;
    for (int const member : members) {
        if (std::find(unique.begin(), unique.end(), member) == unique.end())
            unique.push_back(member);
    }
    return unique;
}

double FieldReal(int n, int at) {
    switch ((n + at) % 9) {
        case 0:
            return -0.0;
        case 1:
            return std::numeric_limits<double>::infinity();
        case 2:
            return std::nan("");
        case 3:
            return std::numeric_limits<double>::denorm_min();
        default:
            return Coordinate(n, at + 1000, n);
    }
}

std::string FieldText(int n) {
    std::string text = "Schritt \xC3\xBC" + std::to_string(n) + " \xE2\x88\x9A";
    for (int i = 0; i < n % 11; ++i) text += " and " + std::to_string(Of(n, i));
    return n % 10 == 0 ? std::string() : text;
}

std::string LongText(int n, int at) {
    std::string text = "text " + std::to_string(n) + ", " + std::to_string(at) + ":";
    while (text.size() < 3800)
        text += " " + std::to_string(Of(n, at + static_cast<int>(text.size())));
    return text;
}

bool StepHasName(int step, int n) { return !((step + 2) % 4 == 0 && step + 2 <= n); }
int FirstStepInSequence(int n) { return 1 + n / 5; }
bool StepHasPrevious(int step, int n) {
    return step > 1 && !((step + 1) % 6 == 0 && step + 1 <= n);
}

std::string InstanceOf(int n) { return "PART-" + std::to_string(n / 4 % 3); }
std::string StepName(int n) { return "\xC3\xA9tape " + std::to_string(n); }

std::vector<int> LabelOrdinals(int version, int nodesThen) {
    std::vector<int> ordinals;
    int const last = std::min(nodesThen, 300);
    for (int i = version / 4 % 3; i < last; i += 3) ordinals.push_back(i);
    return ordinals;
}

int Label(int ordinal, int version) { return 2000 * version + ordinal * 13 % 1009; }

}  // namespace reliability
