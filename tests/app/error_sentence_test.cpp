#include "app/error_sentence.h"

#include <gtest/gtest.h>

#include "app/row_news.h"

namespace pintle {
namespace {

std::string sentence(std::string_view error) { return errorSentence(error).english(); }

TEST(ErrorSentence, SaysWhatTheServerSaidByNumber) {
    EXPECT_EQ(sentence("HTTP 404"), "The server has no such file");
    EXPECT_EQ(sentence("HTTP 410"), "The server has no such file");
    EXPECT_EQ(sentence("HTTP 403"), "The server refuses to give the file");
    EXPECT_EQ(sentence("HTTP 503"), "The server has a problem; try again later");
}

TEST(ErrorSentence, SaysWhatIsWrongWithAnArchive) {
    EXPECT_EQ(sentence("Extraction failed: tar: Unexpected EOF in archive"), "The archive is damaged");
    EXPECT_EQ(sentence("No XCursor files in archive"), "The archive holds no cursors");
    EXPECT_EQ(sentence("Extraction failed: the archive unpacks to more than 9 bytes"),
              "The archive is larger than a theme can be");
    EXPECT_EQ(sentence("Extraction failed: No space left on device"), "The disk is full");
}

TEST(ErrorSentence, SaysWhatIsWrongWithTheConnection) {
    EXPECT_EQ(sentence("Host themes.test not found"), "The server could not be reached");
    EXPECT_EQ(sentence("Connection refused"), "The server could not be reached");
    EXPECT_EQ(sentence("The connection was closed before the whole answer came."),
              "The connection broke off");
    EXPECT_EQ(sentence("SSL handshake failed"), "The server's identity could not be proved");
}

TEST(ErrorSentence, IsEmptyWhereTheErrorIsAllThatIsKnown) {
    EXPECT_TRUE(errorSentence("").empty());
    EXPECT_TRUE(errorSentence("Something else").empty());
    EXPECT_TRUE(errorSentence("HTTP 4x4").empty());
}

TEST(RowNews, AThemeThatCameWhileThePopoverWasShownIsNewUntilTheNextOpening) {
    RowNews news;
    news.appeared();
    news.downloaded("ice");
    EXPECT_TRUE(news.isNew("ice"));
    news.disappeared();
    EXPECT_TRUE(news.isNew("ice"));
    news.appeared();
    EXPECT_FALSE(news.isNew("ice"));
}

TEST(RowNews, AThemeThatCameUnseenIsNewForOneShowing) {
    RowNews news;
    news.appeared();
    news.disappeared();
    news.downloaded("ice");
    news.appeared();
    EXPECT_TRUE(news.isNew("ice"));
    news.disappeared();
    news.appeared();
    EXPECT_FALSE(news.isNew("ice"));
}

}  // namespace
}  // namespace pintle
