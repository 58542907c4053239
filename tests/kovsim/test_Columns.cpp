#include "Columns.h"

#include <gtest/gtest.h>

#include <string>

#include "Table.h"

namespace kov::tool {
namespace {

TEST(Columns, AreAsWideAsTheirLongestTexts) {
    Columns columns("lrl");
    columns.Row({"a", "1", "x"});
    columns.Row({"long name", "1000", "y"});
    EXPECT_EQ(columns.Text("  "),
              "  a             1  x\n"
              "  long name  1000  y\n");
}

TEST(Columns, EndWithoutBlanks) {
    Columns columns("ll");
    columns.Row({"a", ""});
    columns.Row({"b", "text"});
    EXPECT_EQ(columns.Text(), "a\nb  text\n");
}

TEST(Columns, CountLettersNotBytes) {
    Columns columns("lr");
    columns.Row({"K\xc3\xb6per", "\xe2\x84\x83"});
    columns.Row({"Koeper", "deg"});
    EXPECT_EQ(columns.Text(), "K\xc3\xb6per     \xe2\x84\x83\nKoeper  deg\n");
}

TEST(Columns, ATextBeyondTheWidestStandsOut) {
    Columns columns("ll");
    std::string const most(Columns::kWidest, 'm');
    std::string const more(Columns::kWidest + 1, 'm');
    columns.Row({more, "1"});
    columns.Row({"a", "2"});
    EXPECT_EQ(columns.Text(), more + "  1\na  2\n");
    columns.Row({most, "3"});
    EXPECT_EQ(columns.Text(), more + "  1\na" + std::string(99, ' ') + "  2\n" + most + "  3\n");
}

TEST(Columns, WithoutRowsAreNothing) { EXPECT_EQ(Columns("lr").Text(), ""); }

TEST(Table, KeepsItsColumnWithShortNames) {
    Table table;
    table.Line("name", std::string("text"));
    table.Line("count", 12);
    table.Line("more", 3, "of 4");
    EXPECT_EQ(table.Text(),
              "name                  text\n"
              "count                             12\n"
              "more                               3  of 4\n");
}

TEST(Table, IsAsWideAsTheLongestName) {
    Table table;
    table.Line("short", 1);
    table.Line("a name of more than twenty-two letters", 22);
    table.Line("K\xc3\xb6per", std::string("x"));
    EXPECT_EQ(table.Text(),
              "short                                               1\n"
              "a name of more than twenty-two letters             22\n"
              "K\xc3\xb6per" +
                  std::string(34, ' ') + "x\n");
}

TEST(Table, ANameBeyondTheWidestStandsOut) {
    Table table;
    std::string const name(101, 'n');
    table.Line(name, std::string("x"));
    table.Line("y", std::string("z"));
    EXPECT_EQ(table.Text(), name + " x\ny" + std::string(21, ' ') + "z\n");
}

}  // namespace
}  // namespace kov::tool
