// SessionPlan: what transaction number n of the scripted session holds, as plain numbers that
// follow from n alone, and the state that transactions 1..n leave: which version every stored
// number has. It knows no document; SessionWrite.cpp and SessionCheck.cpp read it from both sides.
//
// A version is the number of the transaction that wrote an entry last; 0 stands for "never".
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace reliability {

/// A number without pattern that follows from its arguments.
std::uint64_t Mix(std::uint64_t a, std::uint64_t b = 0, std::uint64_t c = 0);

/// How much a transaction writes.
struct Scale {
    int nodes;       ///< about as many in an ordinary transaction
    int largeNodes;  ///< in a large one
    int largeEvery;  ///< each so many transactions one is large
    int texts;       ///< long texts: each fills a page of the catalogue
};
inline constexpr Scale Tiny{12, 700, 6, 0};
inline constexpr Scale Usual{60, 60000, 9, 0};
/// Fills the catalogue's log, so that it is moved into the catalogue between commits.
inline constexpr Scale Crowded{12, 700, 6, 30};

/// A run of members, or of rows.
struct Range {
    int first = 0;
    int count = 0;
};

/// What one transaction does, as far as it is not a constant of the session.
struct Plan {
    int n = 0;
    Range nodes;     ///< appended, with coordinates; one more node follows that gets none
    int spaceNodes;  ///< nodes after the transaction
    Range elements;  ///< appended, with connectivity
    int drawer = 0;  ///< of the elements; a new one if `newDrawer`
    bool newDrawer = false;
    int width = 0;               ///< nodes of an element of that drawer
    Range rewritten;             ///< nodes whose coordinates are all written again; may be empty
    std::vector<int> scattered;  ///< nodes of which component `scatteredComponent` is written again
    int scatteredComponent = 0;  ///< 0 to 2
    int rewrittenElement = -1;   ///< element whose row is written again
    int touched = 0;             ///< step, 1..n, whose field is written again
};

/// The transaction's plan. `before`: nodes and elements that are there already.
Plan MakePlan(Scale const& scale, int n, int nodesBefore, int elementsBefore);

/// What is there after transactions 1..n.
struct State {
    int n = 0;
    int nodes = 0;
    /// For each node the versions of its three coordinates.
    std::vector<std::array<int, 3>> coordinates;
    struct Element {
        int drawer;
        int version;
    };
    std::vector<Element> elements;
    struct Drawer {
        int width;
        Range elements;
    };
    std::vector<Drawer> drawers;
    std::vector<int> touched;           ///< for each step from 1 the version of its last touch
    std::map<std::string, int> labels;  ///< instance to version
    std::vector<int> nodesAt;           ///< for each n from 0 the count of nodes after it
    std::vector<int> elementsAt;        ///< likewise of elements

    /// Carries out the next transaction.
    void Advance(Scale const& scale);
};

// Contents, by what they belong to and their version.
double Coordinate(int node, int component, int version);
int Node(int element, int place, int version, int nodesThen);
std::vector<int> RandomMembers(int n, int salt, int count, int space);
double FieldReal(int n, int at);
std::string FieldText(int n);
/// How many long texts transaction n writes, and what they are.
inline int TextsOf(Scale const& scale, int n) { return n % 5 == 3 ? 4 * scale.texts : scale.texts; }
std::string LongText(int n, int at);

// The rules of the links: which steps stand where after transaction n.
bool StepHasName(int step, int n);      ///< in the map by name, and in the set
int FirstStepInSequence(int n);         ///< the vector holds this step to n
bool StepHasPrevious(int step, int n);  ///< the step links to the one before
inline bool HasTable(int n) { return n % 5 == 0; }
inline bool HasLabels(int n) { return n % 4 == 1; }
inline bool HasRelation(int n) { return n % 6 == 2; }
inline bool HasCollection(int n) { return n % 7 == 3; }
inline bool HasNumbers(int n) { return n % 4 == 2; }
inline int NumbersOf(int n) { return n % 8 == 2 ? 5000 : 7; }
/// The members of the range set of transaction n.
inline Range RangeSet(int n, int nodesThen) { return {n % 3, nodesThen / 2 - 1}; }
std::string InstanceOf(int n);
std::string StepName(int n);
/// Ordinals of an instance's labels at its version, ascending, and the label of each.
std::vector<int> LabelOrdinals(int version, int nodesThen);
int Label(int ordinal, int version);

}  // namespace reliability
