#include "app/quick/theme_rows_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/app/model_world.h"

namespace pintle {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

struct ThemeRowsModelTest : testing::Test {
    ModelWorld world;
    std::unique_ptr<PopoverModel> popover;
    PreviewImages previews;
    std::unique_ptr<ThemeRowsModel> rows;
    std::vector<std::pair<int, std::vector<int>>> changes;
    int resets = 0;
    int inserted = 0;
    int removed = 0;

    void SetUp() override {
        world.start();
        popover = std::make_unique<PopoverModel>(
            PopoverModel::Dependencies{*world.viewModel, world.updates, world.settings, world.notifications,
                                       world.scheduler.mainQueue(), world.application, world.log});
        rows = std::make_unique<ThemeRowsModel>(*popover, previews);
        QObject::connect(rows.get(), &QAbstractItemModel::dataChanged, rows.get(),
                         [this](const QModelIndex& from, const QModelIndex& to, const QList<int>& roles) {
                             EXPECT_EQ(from, to);
                             changes.emplace_back(from.row(), std::vector<int>(roles.begin(), roles.end()));
                         });
        QObject::connect(rows.get(), &QAbstractItemModel::modelReset, rows.get(), [this] { ++resets; });
        QObject::connect(rows.get(), &QAbstractItemModel::rowsInserted, rows.get(),
                         [this](const QModelIndex&, int from, int to) { inserted += to - from + 1; });
        QObject::connect(rows.get(), &QAbstractItemModel::rowsRemoved, rows.get(),
                         [this](const QModelIndex&, int from, int to) { removed += to - from + 1; });
    }
    std::vector<std::string> ids() const {
        std::vector<std::string> ids;
        for (int row = 0; row < rows->rowCount(); ++row)
            ids.push_back(value(row, ThemeRowsModel::ThemeIdRole).toString().toStdString());
        return ids;
    }
    QVariant value(int row, int role) const { return rows->data(rows->index(row), role); }
    int rowOf(const std::string& id) const {
        const auto all = ids();
        return static_cast<int>(std::ranges::find(all, id) - all.begin());
    }
};

TEST_F(ThemeRowsModelTest, ListsTheModelsRowsInTheirOrder) {
    EXPECT_EQ(ids(), popover->rowIds());
    EXPECT_EQ(rows->rowCount(), 77);
    EXPECT_EQ(rows->rowCount(rows->index(0)), 0);
}

TEST_F(ThemeRowsModelTest, AStepOfADownloadReportsTheChangedRolesOfItsRowOnly) {
    world.changeRow(ModelWorld::ice, [](auto& row) {
        row.isDownloading = true;
        row.downloadStatus = "Downloading 10%";
        row.downloadProgress = 0.1;
    });
    changes.clear();
    world.changeRow(ModelWorld::ice, [](auto& row) {
        row.downloadStatus = "Downloading 20%";
        row.downloadProgress = 0.2;
    });
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].first, rowOf(ModelWorld::ice));
    EXPECT_THAT(changes[0].second,
                UnorderedElementsAre(ThemeRowsModel::StatusRole, ThemeRowsModel::ProgressValueRole,
                                     ThemeRowsModel::DescriptionRole));
    EXPECT_EQ(value(changes[0].first, ThemeRowsModel::StatusRole), "Downloading 20%");
}

TEST_F(ThemeRowsModelTest, ARowThatIsNotListedChangesNothing) {
    popover->select(CursorHandedness::universal);
    changes.clear();
    world.changeRow(ModelWorld::ice, [](auto& row) { row.isDownloading = true; });
    EXPECT_THAT(changes, IsEmpty());
    popover->select(CursorHandedness::all);
    EXPECT_EQ(value(rowOf(ModelWorld::ice), ThemeRowsModel::ProgressRole), "indeterminate");
}

TEST_F(ThemeRowsModelTest, AFilterTakesRowsOutAndPutsThemBackWithoutStartingOver) {
    popover->select(CursorHandedness::universal);
    EXPECT_EQ(ids(), popover->rowIds());
    EXPECT_EQ(removed, 77 - rows->rowCount());
    EXPECT_EQ(inserted, 0);
    popover->select(CursorHandedness::leftHanded);
    EXPECT_EQ(ids(), popover->rowIds());
    popover->select(CursorHandedness::all);
    EXPECT_EQ(ids(), popover->rowIds());
    EXPECT_EQ(resets, 0);
}

TEST_F(ThemeRowsModelTest, FollowsAnySequenceOfFilters) {
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        popover->select(cursor_handedness::allCases[random() % 4]);
        ASSERT_EQ(ids(), popover->rowIds()) << round;
    }
}

TEST_F(ThemeRowsModelTest, ReportsWhereTheActiveThemeStands) {
    EXPECT_EQ(rows->activeRow(), -1);
    int calls = 0;
    QObject::connect(rows.get(), &ThemeRowsModel::activeRowChanged, rows.get(), [&] { ++calls; });
    world.changeRow(ModelWorld::ice, [](auto& row) { row.isDownloaded = true; });
    EXPECT_EQ(calls, 0);
}

TEST_F(ThemeRowsModelTest, GivesDrawingsByNameAndTonesInWords) {
    const int row = rowOf(ModelWorld::ice);
    EXPECT_EQ(value(row, ThemeRowsModel::TileRole), "download");
    EXPECT_EQ(value(row, ThemeRowsModel::TileIconRole), "download");
    EXPECT_EQ(value(row, ThemeRowsModel::MonogramRole), "");
    EXPECT_EQ(value(row, ThemeRowsModel::DrawingRole), "image://drawings/1-1-s-16191a-ffffff");
    EXPECT_EQ(value(row, ThemeRowsModel::HandIconRole), "hand-right");
    EXPECT_EQ(value(row, ThemeRowsModel::StatusRole), "Click to download");
    EXPECT_EQ(value(row, ThemeRowsModel::MarkRole), "circle");
    EXPECT_EQ(value(row, ThemeRowsModel::WeightRole), 400);
    world.changeRow(ModelWorld::ice, [](auto& theme) { theme.downloadError = "No route to host"; });
    EXPECT_EQ(value(row, ThemeRowsModel::TileRole), "warning");
    EXPECT_EQ(value(row, ThemeRowsModel::StatusToneRole), "danger");
    EXPECT_EQ(value(row, ThemeRowsModel::ErrorRole), "No route to host");
}

TEST_F(ThemeRowsModelTest, HasAValueForEachRoleThatItNames) {
    const auto names = rows->roleNames();
    for (auto role = names.keyBegin(); role != names.keyEnd(); ++role)
        EXPECT_TRUE(value(0, *role).isValid()) << names[*role].toStdString();
    EXPECT_FALSE(value(0, Qt::DecorationRole).isValid());
    EXPECT_FALSE(rows->data({}, ThemeRowsModel::NameRole).isValid());
}

TEST_F(ThemeRowsModelTest, AnArrivedPictureReportsItsAddress) {
    world.changeRow(ModelWorld::ice, [](auto& row) { row.isDownloaded = true; });
    changes.clear();
    world.changeRow(ModelWorld::ice, [](auto& row) {
        row.previewImage = Bitmap::create(8, 8, [](auto bytes) { std::ranges::fill(bytes, 255); });
    });
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_THAT(changes[0].second, Contains(ThemeRowsModel::PreviewRole));
    EXPECT_THAT(changes[0].second, Not(Contains(ThemeRowsModel::NameRole)));
    EXPECT_TRUE(
        value(changes[0].first, ThemeRowsModel::PreviewRole).toString().startsWith("image://previews/"));
}

}  // namespace
}  // namespace pintle
