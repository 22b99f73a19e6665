#include "ui/models/RowModels.h"

#include "UiFixture.h"
#include "catalog/ApplicationList.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

QVariant value(const QAbstractItemModel& model, int row, const char* role) {
    return model.data(model.index(row, 0), model.roleNames().key(role));
}

TEST(RowModelsTest, SaysWhatIsLeftOfAnApplication) {
    EXPECT_EQ(applicationStatusText({.isDetected = true, .hasResidualData = true}),
              QStringLiteral("Data remains"));
    EXPECT_EQ(applicationStatusText({.isDetected = false, .hasResidualData = true}),
              QStringLiteral("Data remains"));
    EXPECT_EQ(applicationStatusText({.isDetected = true}), QStringLiteral("Installed"));
    EXPECT_EQ(applicationStatusText({}), QStringLiteral("Not found"));
}

TEST(RowModelsTest, MarksTheSelection) {
    EXPECT_EQ(applicationMarkIcon({.isDetected = true, .isSelected = true}),
              QStringLiteral("checkmark.square.fill"));
    EXPECT_EQ(applicationMarkIcon({.isDetected = true, .hasResidualData = true}), QStringLiteral("square"));
    EXPECT_EQ(applicationMarkIcon({}), QStringLiteral("minus.square"));
}

TEST(RowModelsTest, TellsWhereAnApplicationComesFrom) {
    EXPECT_EQ(applicationOrigin({.category = AppCategory::desktop}), QStringLiteral("Desktop Application"));
    const QString origin =
        applicationOrigin({.category = AppCategory::terminal, .installedVia = "npm global"});
    EXPECT_TRUE(origin.startsWith(QLatin1String("Terminal / CLI Tool"))) << origin.toStdString();
    EXPECT_TRUE(origin.endsWith(QLatin1String("via npm global"))) << origin.toStdString();
    EXPECT_FALSE(applicationOrigin({.category = AppCategory::terminal}).contains(QLatin1String("via")));
}

TEST(RowModelsTest, ShowsEveryApplicationOfTheCatalog) {
    const auto model = makeApplicationListModel();
    const QAbstractItemModelTester tester(model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::vector<AppInfo> applications = applicationList();
    applications[1].isDetected = applications[1].isSelected = true;
    model->setRecords(applications);
    ASSERT_EQ(model->rowCount(), 15);
    EXPECT_EQ(value(*model, 1, "displayName").toString().toStdString(), applications[1].displayName);
    EXPECT_EQ(value(*model, 1, "description").toString().toStdString(), applications[1].description);
    EXPECT_EQ(value(*model, 1, "iconName").toString().toStdString(), applications[1].iconName);
    EXPECT_EQ(value(*model, 1, "statusText"), QVariant(QStringLiteral("Installed")));
    EXPECT_EQ(value(*model, 1, "markIcon"), QVariant(QStringLiteral("checkmark.square.fill")));
    EXPECT_EQ(value(*model, 1, "isSelected"), QVariant(true));
    EXPECT_EQ(value(*model, 0, "isDetected"), QVariant(false));
    EXPECT_EQ(value(*model, 0, "hasResidualData"), QVariant(false));
}

TEST(RowModelsTest, ShowsModelsWithTheirSizes) {
    const auto model = makeLocalModelListModel();
    model->setRecords(
        {{.name = "llama3:latest", .source = "Ollama", .sizeBytes = 4'660'000'000, .path = "/a"},
         {.name = "bro\nken", .source = "LM Studio (GGUF)", .sizeBytes = 0, .path = "/b"}});
    EXPECT_EQ(value(*model, 0, "name"), QVariant(QStringLiteral("llama3:latest")));
    EXPECT_EQ(value(*model, 0, "source"), QVariant(QStringLiteral("Ollama")));
    EXPECT_EQ(value(*model, 0, "sizeText"), QVariant(QStringLiteral("4.66 GB")));
    EXPECT_EQ(value(*model, 1, "name"), QVariant(QStringLiteral("bro\\nken")));
    EXPECT_EQ(value(*model, 1, "sizeText"), QVariant(QStringLiteral("Unknown size")));
}

TEST(RowModelsTest, NamesTheKindsOfDockerRows) {
    const auto model = makeDockerListModel();
    model->setRecords(dockerRows({{.id = "c1", .name = "web", .image = "nginx", .status = "Up 1 second"}},
                                 {{.imageID = "sha256:abc", .usage = DockerImageUsage::inUse}},
                                 QStringLiteral("careful")));
    QStringList views;
    for (int row = 0; row < model->rowCount(); ++row) {
        views.append(value(*model, row, "view").toString());
    }
    EXPECT_EQ(views,
              QStringList({QStringLiteral("heading"), QStringLiteral("container"), QStringLiteral("heading"),
                           QStringLiteral("notice"), QStringLiteral("warning"), QStringLiteral("image")}));
    EXPECT_EQ(value(*model, 1, "name"), QVariant(QStringLiteral("web")));
    EXPECT_EQ(value(*model, 1, "detail"), QVariant(QStringLiteral("nginx")));
    EXPECT_EQ(value(*model, 1, "status"), QVariant(QStringLiteral("Up 1 second")));
    EXPECT_EQ(value(*model, 1, "inUse"), QVariant(true));
    EXPECT_EQ(value(*model, 5, "name"), QVariant(QStringLiteral("Untagged image")));
    EXPECT_EQ(value(*model, 5, "detail"), QVariant(QStringLiteral("abc")));
    EXPECT_EQ(value(*model, 5, "inUse"), QVariant(true));
    for (const auto& [usage, text] :
         {std::pair(DockerImageUsage::inUse, QStringLiteral("In use")),
          std::pair(DockerImageUsage::unused, QStringLiteral("Not used by a container")),
          std::pair(DockerImageUsage::unknown, QStringLiteral("Usage unknown"))}) {
        model->setRecords({DockerImage{.imageID = "sha256:abc", .size = "1.24GB", .usage = usage}});
        EXPECT_EQ(value(*model, 0, "usageText"), QVariant(text));
        EXPECT_EQ(value(*model, 0, "inUse"), QVariant(usage == DockerImageUsage::inUse));
        EXPECT_EQ(value(*model, 0, "status"), QVariant(QStringLiteral("1.24GB")));
    }

    model->setRecords(dockerRows({}, {}, QString()));
    EXPECT_EQ(value(*model, 1, "view"), QVariant(QStringLiteral("empty")));
}

} // namespace
} // namespace zentrill
