#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QQmlEngine>
#include <QTcpServer>
#include <set>

#include "tests/popover/popover_world.h"

namespace pintle {
namespace {

/// Texts from archives and servers name a server of this test, which must not be asked.
struct HostileTextsTest : PopoverWorld {
    QTcpServer server;

    HostileTextsTest() { server.listen(QHostAddress::LocalHost); }
    std::string address() const {
        return "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/seen.png";
    }
    std::string markup(const char* place) const {
        return "<h1>" + std::string(place) + "</h1><img src=\"" + address() + "\">";
    }
    /// Everything below an object, once: its own children, what is drawn in it, and what its popups hold.
    static void collect(QObject* object, std::set<QObject*>& all) {
        if (object == nullptr || !all.insert(object).second) return;
        for (auto* child : object->children()) collect(child, all);
        if (const auto* item = qobject_cast<QQuickItem*>(object))
            for (auto* child : item->childItems()) collect(child, all);
        collect(object->property("contentItem").value<QQuickItem*>(), all);
    }
    /// How many texts show markup as it stands, tips and hidden texts included; those that do not are given
    /// back.
    std::size_t plainTexts(std::vector<std::string>& rich) const {
        std::set<QObject*> all;
        collect(view->rootObject(), all);
        std::size_t plain = 0;
        for (const auto* object : all) {
            if (!object->inherits("QQuickText")) continue;
            const auto text = object->property("text").toString();
            if (!text.contains(QLatin1String("<img"))) continue;
            if (object->property("textFormat").toInt() == Qt::PlainText)
                ++plain;
            else
                rich.push_back(text.toStdString());
        }
        return plain;
    }
};

TEST_F(HostileTextsTest, MarkupInErrorsNamesAndAuthorsIsShownAsItStands) {
    world.start();
    world.changeRow(ModelWorld::ice, [this](auto& row) {
        row.name = markup("name");
        row.downloadError = markup("error");
    });
    world.changeRow("bibata-modern-classic", [this](auto& row) { row.author = markup("author"); });
    show();
    std::vector<std::string> rich;
    EXPECT_EQ(plainTexts(rich), 3u);
    EXPECT_EQ(rich, std::vector<std::string>());
    EXPECT_FALSE(server.hasPendingConnections());
}

TEST_F(HostileTextsTest, NothingInAViewCanAskAServer) {
    world.start();
    show();
    const std::unique_ptr<QNetworkReply> reply(view->engine()->networkAccessManager()->get(
        QNetworkRequest(QUrl(QString::fromStdString(address())))));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    QObject::connect(&server, &QTcpServer::newConnection, &loop, &QEventLoop::quit);
    if (!reply->isFinished()) loop.exec();
    EXPECT_NE(reply->error(), QNetworkReply::NoError);
    EXPECT_FALSE(server.hasPendingConnections());
}

}  // namespace
}  // namespace pintle
