#include "ui/PathData.h"

#include <QMimeData>
#include <QString>
#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

TEST(PathDataTest, WritesUrisOfAnyBytes) {
    EXPECT_EQ(fileUri("/home/a-b_c.d~/e"), "file:///home/a-b_c.d~/e");
    EXPECT_EQ(fileUri("/a b/100%/#?\n"), "file:///a%20b/100%25/%23%3F%0A");
    EXPECT_EQ(fileUri("/caf\xC3\xA9/\xFF"), "file:///caf%C3%A9/%FF");
}

TEST(PathDataTest, OffersUtf8AsText) {
    for (const std::string path : {"/plain", "/caf\xC3\xA9\n", "\xEF\xBB\xBF/mark", "/\xF0\x9F\xA6\x99"}) {
        const auto data = pathData(path);
        EXPECT_TRUE(data->hasText()) << path;
        EXPECT_EQ(data->text().toUtf8().toStdString(), path);
        EXPECT_EQ(data->data(QStringLiteral("text/plain")).toStdString(), path);
        EXPECT_FALSE(data->hasUrls()) << path;
    }
}

TEST(PathDataTest, OffersOtherBytesAsTheyAre) {
    for (const std::string path : {"/caf\xE9", "/\xFF\xFE", "/\xED\xA0\x80", "/half\xC3"}) {
        const auto data = pathData(path);
        EXPECT_EQ(data->data(QStringLiteral("text/plain")).toStdString(), path);
        EXPECT_EQ(data->data(QStringLiteral("text/uri-list")), fileUri(path) + "\r\n");
    }
}

} // namespace
} // namespace zentrill
