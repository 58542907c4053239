#include "KOVString.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "KOVSimException.h"

namespace {

// Two characters of two bytes, one of three, one of four, among plain ones: a e' b euro c clef.
char const* const kMixed =
    "a\xC3\xA9"
    "b\xE2\x82\xAC"
    "c\xF0\x9D\x84\x9E";

}  // namespace

TEST(KOVString, ANewOneIsEmptyAndHasNoText) {
    KOVString const text;
    EXPECT_EQ(text.Text(), nullptr);
    EXPECT_STREQ(text.TextOrEmpty(), "");
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetLengthInByte(), 0);
    EXPECT_EQ(text.GetLengthInChar(), 0);
}

TEST(KOVString, NullAndTheEmptyTextAreTheEmptyState) {
    EXPECT_EQ(KOVString("").Text(), nullptr);
    EXPECT_EQ(KOVString(static_cast<char const*>(nullptr)).Text(), nullptr);
    KOVString text("a");
    text = "";
    EXPECT_EQ(text.Text(), nullptr);
    text.BuildFromUTF8("b");
    EXPECT_STREQ(text.Text(), "b");
    text.BuildFromUTF8(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(KOVString, CopiesShareTheirCharacters) {
    KOVString const a("shared");
    KOVString const b(a);
    EXPECT_EQ(a.Text(), b.Text());
}

TEST(KOVString, AChangeLeavesTheCopiesAlone) {
    KOVString a("SHARED");
    KOVString const b(a);
    a.ASCIIToLower();
    EXPECT_STREQ(a.Text(), "shared");
    EXPECT_STREQ(b.Text(), "SHARED");
}

TEST(KOVString, AssignmentOfItselfKeepsTheText) {
    KOVString a("self");
    KOVString& alias = a;
    a = alias;
    EXPECT_STREQ(a.Text(), "self");
    a = a.Text() + 2;
    EXPECT_STREQ(a.Text(), "lf");
}

TEST(KOVString, AMovedFromTextIsUsable) {
    KOVString a("text");
    KOVString b(std::move(a));
    EXPECT_STREQ(b.Text(), "text");
    a = "again";
    EXPECT_STREQ(a.Text(), "again");
}

TEST(KOVString, DeleteGivesUpItsShareOnly) {
    KOVString a("text");
    KOVString const b(a);
    a.Delete();
    EXPECT_EQ(a.Text(), nullptr);
    EXPECT_STREQ(b.Text(), "text");
    a.Delete();
    EXPECT_TRUE(a.IsEmpty());
}

TEST(KOVString, TheBaseAssignsPlainText) {
    KOVString a;
    static_cast<atr_StringBase&>(a) = "base";
    EXPECT_STREQ(a.Text(), "base");
}

TEST(KOVString, BytesWithoutAnEndMarkAreTaken) {
    KOVString a;
    a.BuildFromUTF8("abcdef", 3);
    EXPECT_STREQ(a.Text(), "abc");
    a.BuildFromUTF8("abcdef", 0);
    EXPECT_TRUE(a.IsEmpty());
}

TEST(KOVString, BuildFromNumWritesByTheFormat) {
    KOVString a;
    a.BuildFromNum(-17, "%d");
    EXPECT_STREQ(a.Text(), "-17");
    a.BuildFromNum(7, "Field_%03d!");
    EXPECT_STREQ(a.Text(), "Field_007!");
    a.BuildFromNum(255, "%% %x");
    EXPECT_STREQ(a.Text(), "% ff");
}

TEST(KOVString, BuildFromNumRefusesWhatIsNotTheFormatOfOneInt) {
    KOVString a("kept");
    for (char const* format : {"", "plain", "%s", "%d %d", "%n", "%ld", "%*d", "%", "%5"}) {
        EXPECT_THROW(a.BuildFromNum(1, format), KOVSimException) << format;
    }
    EXPECT_THROW(a.BuildFromNum(1, nullptr), KOVSimException);
    EXPECT_STREQ(a.Text(), "kept");
}

TEST(KOVString, ConvertToNumReadsALeadingNumber) {
    int number = 0;
    EXPECT_NE(KOVString("42").ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(number, 42);
    EXPECT_NE(KOVString("  -7 rest").ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(number, -7);
    EXPECT_NE(KOVString("ff").ConvertToNum(&number, "%x"), 0);
    EXPECT_EQ(number, 255);
}

TEST(KOVString, ConvertToNumLeavesTheNumberAloneWhenThereIsNone) {
    int number = 5;
    EXPECT_EQ(KOVString("x").ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(KOVString().ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(KOVString("1").ConvertToNum(&number, "%s"), 0);
    EXPECT_EQ(KOVString("2147483648").ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(KOVString("99999999999999999999").ConvertToNum(&number, "%d"), 0);
    EXPECT_EQ(number, 5);
    EXPECT_NE(KOVString("-2147483648").ConvertToNum(&number, "%d"), 0);
}

TEST(KOVString, AppendsAndAdds) {
    KOVString a("a");
    a.Append("b").Append(KOVString("c"));
    a += "d";
    a += KOVString("e");
    EXPECT_STREQ(a.Text(), "abcde");
    EXPECT_STREQ((KOVString("x") + KOVString("y")).Text(), "xy");
    EXPECT_STREQ((KOVString("x") + "y").Text(), "xy");
    EXPECT_STREQ(("x" + KOVString("y")).Text(), "xy");
}

TEST(KOVString, NumbersAreAppendedInDecimal) {
    KOVString text("Field_");
    text += 0;
    EXPECT_EQ(text, "Field_0");
    (text += 12) += -2147483647 - 1;
    EXPECT_EQ(text, "Field_012-2147483648");
    KOVString empty;
    empty += 7;
    EXPECT_EQ(empty, "7");
}

TEST(KOVString, AppendingNothingOrItselfWorks) {
    KOVString a("ab");
    a += a;
    EXPECT_STREQ(a.Text(), "abab");
    a += a.Text() + 2;
    EXPECT_STREQ(a.Text(), "ababab");
    a += "";
    a += KOVString();
    EXPECT_EQ(a.GetLengthInByte(), 6);
    KOVString none;
    none += a;
    EXPECT_EQ(none.Text(), a.Text());
}

TEST(KOVString, ComparesByBytesAndTakesNullAsEmpty) {
    EXPECT_EQ(KOVString("a").Compare("a"), 0);
    EXPECT_LT(KOVString("a").Compare("b"), 0);
    EXPECT_GT(KOVString("a").Compare("A"), 0);
    EXPECT_GT(KOVString("\xC3\xA9").Compare("z"), 0);
    EXPECT_GT(KOVString("ab").Compare("a"), 0);
    EXPECT_EQ(KOVString().Compare(""), 0);
    EXPECT_EQ(KOVString().Compare(static_cast<char const*>(nullptr)), 0);
    EXPECT_TRUE(KOVString("a") == "a");
    EXPECT_TRUE("a" != KOVString("b"));
    EXPECT_TRUE(KOVString("a") < KOVString("b"));
    EXPECT_TRUE(KOVString() == KOVString(""));
}

TEST(KOVString, CountsCharactersAndBytes) {
    KOVString const text(kMixed);
    EXPECT_EQ(text.GetLengthInByte(), 12);
    EXPECT_EQ(text.GetLengthInChar(), 6);
}

TEST(KOVString, FindsByCharacterPosition) {
    KOVString const text(kMixed);
    EXPECT_EQ(text.FindPosition("a", 0), 0);
    EXPECT_EQ(text.FindPosition("b", 0), 2);
    EXPECT_EQ(text.FindPosition("\xE2\x82\xAC", 0), 3);
    EXPECT_EQ(text.FindPosition("c", 4), 4);
    EXPECT_EQ(text.FindPosition("c", 5), -1);
    EXPECT_EQ(text.FindPosition("x", 0), -1);
}

TEST(KOVString, FindsTheFirstFromTheStartOn) {
    KOVString const text("abcabc");
    EXPECT_EQ(text.FindPosition("abc", 0), 0);
    EXPECT_EQ(text.FindPosition("abc", 1), 3);
    EXPECT_EQ(text.FindPosition("abc", 4), -1);
    EXPECT_EQ(text.FindPosition("abc", -5), 0);
    EXPECT_EQ(text.FindPosition("c", 100), -1);
    EXPECT_EQ(KOVString().FindPosition("a", 0), -1);
}

TEST(KOVString, AnEmptyTextIsFoundNowhere) {
    EXPECT_EQ(KOVString("abc").FindPosition("", 0), -1);
    EXPECT_EQ(KOVString().FindPosition(KOVString(), 0), -1);
}

TEST(KOVString, CutsByCharacters) {
    KOVString const text(kMixed);
    EXPECT_STREQ(text.SubString(1, 1).Text(), "\xC3\xA9");
    EXPECT_STREQ(text.SubString(2, 3).Text(),
                 "b\xE2\x82\xAC"
                 "c");
    EXPECT_STREQ(text.SubString(0, 6).Text(), kMixed);
}

TEST(KOVString, ARangeOutsideMeansItsPartInside) {
    KOVString const text("abcde");
    EXPECT_STREQ(text.SubString(3, 100).Text(), "de");
    EXPECT_STREQ(text.SubString(3, 2147483647).Text(), "de");
    EXPECT_STREQ(text.SubString(-2, 4).Text(), "ab");
    EXPECT_TRUE(text.SubString(-1, 1).IsEmpty());
    EXPECT_TRUE(text.SubString(5, 1).IsEmpty());
    EXPECT_TRUE(text.SubString(2, 0).IsEmpty());
    EXPECT_TRUE(text.SubString(2, -1).IsEmpty());
    EXPECT_TRUE(KOVString().SubString(-1, 1).IsEmpty());
}

TEST(KOVString, RemovesByCharacters) {
    EXPECT_STREQ(KOVString("*node").Remove(0, 1).Text(), "node");
    EXPECT_STREQ(KOVString(kMixed).Remove(1, 3).Text(), "ac\xF0\x9D\x84\x9E");
    EXPECT_STREQ(KOVString("abc").Remove(1, 100).Text(), "a");
    EXPECT_STREQ(KOVString("abc").Remove(3, 1).Text(), "abc");
    EXPECT_STREQ(KOVString("abc").Remove(1, 0).Text(), "abc");
    EXPECT_EQ(KOVString("abc").Remove(0, 3).Text(), nullptr);
}

TEST(KOVString, ReplacesFromTheLeftWithoutLookingAgain) {
    EXPECT_STREQ(KOVString("a::b::c").ReplaceAll("::", "_").Text(), "a_b_c");
    EXPECT_STREQ(KOVString("aaa").ReplaceAll("aa", "b").Text(), "ba");
    EXPECT_STREQ(KOVString("ab").ReplaceAll("a", "aa").Text(), "aab");
    EXPECT_STREQ(KOVString("ab").ReplaceAll("", "x").Text(), "ab");
    EXPECT_EQ(KOVString("aa").ReplaceAll("a", "").Text(), nullptr);
    EXPECT_STREQ(KOVString("xax").ReplaceAll("x", KOVString()).Text(), "a");
    KOVString self("ab");
    EXPECT_STREQ(self.ReplaceAll(self, self + self).Text(), "abab");
}

TEST(KOVString, FoldsAsciiOnly) {
    EXPECT_STREQ(KOVString("A[Z]a\xC3\x89").ASCIIToLower().Text(), "a[z]a\xC3\x89");
}

TEST(KOVString, GivesCharacters) {
    KOVString const text(kMixed);
    EXPECT_EQ(static_cast<char>(text[0]), 'a');
    EXPECT_EQ(static_cast<char>(text[2]), 'b');
    EXPECT_STREQ(text[3].Bytes(), "\xE2\x82\xAC");
    EXPECT_STREQ(text[5].Bytes(), "\xF0\x9D\x84\x9E");
    EXPECT_EQ(static_cast<char>(text[6]), '\0');
    EXPECT_EQ(static_cast<char>(text[-1]), '\0');
}

TEST(KOVString, BytesThatAreNoUtf8AreKeptAndCounted) {
    KOVString const text(
        "\x80\x81"
        "a\xFF\xC3");
    EXPECT_EQ(text.GetLengthInByte(), 5);
    EXPECT_EQ(text.GetLengthInChar(), 4);
    EXPECT_STREQ(text.SubString(0, 1).Text(), "\x80\x81");
    EXPECT_EQ(text.FindPosition("a", 0), 1);
    EXPECT_EQ(static_cast<char>(text[1]), 'a');
    EXPECT_STREQ((text.SubString(0, 2) + text.SubString(2, 2)).Text(), text.Text());
}

TEST(KOVString, CopiesMayBeMadeAndDroppedByManyThreads) {
    KOVString const shared("shared by all");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i) {
                KOVString copy(shared);
                KOVString another(copy);
                ASSERT_EQ(another.GetLengthInChar(), 13);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_STREQ(shared.Text(), "shared by all");
}
