#include "app/row_search.h"

#include <gtest/gtest.h>

#include "app/folded_text.h"
#include "themes/cursor_theme_info.h"

namespace pintle {
namespace {

const std::vector<std::string> names = {"Bibata Modern Classic", "Bibata Modern Amber", "Ros\xC3\xA9 Pine",
                                        "\xC3\x89toile", "Phinger Light (Left)"};

TEST(FoldedText, IgnoresCaseAndAccents) {
    EXPECT_EQ(foldedText("Ros\xC3\xA9"), "rose");
    EXPECT_EQ(foldedText("ROSE\xCC\x81"), "rose");
    EXPECT_EQ(foldedText("\xC3\x84\xC3\x96\xC3\x9C \xC5\xBD"), "aou z");
    EXPECT_EQ(foldedText("\xD0\x96\xD0\xB6 \xCE\x91"), "\xD0\xB6\xD0\xB6 \xCE\xB1");
}

TEST(FoldedText, LeavesWhatIsNoLetterAsItIs) {
    EXPECT_EQ(foldedText("\xE6\x98\x9F \xC3\x97 4"), "\xE6\x98\x9F \xC3\x97 4");
    EXPECT_EQ(foldedText("\xFF\xC3"), "\xFF\xC3");
    EXPECT_EQ(foldedText(""), "");
}

TEST(RowSearch, FindsTheFirstNameThatContainsTheTextWhereverItStands) {
    EXPECT_EQ(firstContaining(names, "amb"), 1u);
    EXPECT_EQ(firstContaining(names, "MODERN"), 0u);
    EXPECT_EQ(firstContaining(names, "rose p"), 2u);
    EXPECT_EQ(firstContaining(names, "etoile"), 3u);
    EXPECT_EQ(firstContaining(names, "(left"), 4u);
    EXPECT_EQ(firstContaining(names, "nothing"), std::nullopt);
    EXPECT_EQ(firstContaining(names, ""), std::nullopt);
    EXPECT_EQ(firstContaining({}, "a"), std::nullopt);
}

TEST(RowSearch, GrowsByWhatIsTypedAndShrinksByCharacters) {
    RowSearch search;
    EXPECT_FALSE(search.stands());
    EXPECT_TRUE(search.type("R"));
    EXPECT_TRUE(search.type("\xC3\xA9"));
    EXPECT_EQ(search.typed(), "R\xC3\xA9");
    EXPECT_TRUE(search.shorten());
    EXPECT_EQ(search.typed(), "R");
    EXPECT_TRUE(search.shorten());
    EXPECT_FALSE(search.stands());
    EXPECT_FALSE(search.shorten());
}

TEST(RowSearch, TakesABlankOnlyWhileItStands) {
    RowSearch search;
    EXPECT_FALSE(search.type(" "));
    search.type("a");
    EXPECT_TRUE(search.type(" "));
    EXPECT_EQ(search.typed(), "a ");
}

TEST(RowSearch, TakesNoKeyThatWritesNothing) {
    RowSearch search;
    for (const char* text : {"", "\r", "\t", "\x1b", "\x7f", "\b"}) EXPECT_FALSE(search.type(text));
    EXPECT_FALSE(search.stands());
}

TEST(RowSearch, IsClearedOnce) {
    RowSearch search;
    search.type("a");
    EXPECT_TRUE(search.clear());
    EXPECT_FALSE(search.clear());
    EXPECT_TRUE(search.type("b"));
    EXPECT_EQ(search.typed(), "b");
}

TEST(RowSearch, EndsAtItsLongest) {
    RowSearch search;
    for (std::size_t typed = 0; typed < RowSearch::longest + 5; ++typed) EXPECT_TRUE(search.type("\xC3\xA9"));
    EXPECT_EQ(search.typed().size(), RowSearch::longest * 2);
}

}  // namespace
}  // namespace pintle
