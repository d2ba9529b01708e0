// The comparison that redraw_test.cpp relies on sees every kind of difference.
#include "tests/skin/picture_file.h"
#include "tests/support/process.h"

#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QString>
#include <gtest/gtest.h>
#include <string>

using namespace skin_test;

namespace {

const std::string BODY_GIF = PICTURES_FOLDER "/body.gif";
const std::string SHEET_PNG = PICTURES_FOLDER "/sheet@2x.png";
const std::string ICON_PNG = PICTURES_FOLDER "/icon_48.png";
const std::string WINDOWS_ICON = PICTURES_FOLDER "/icon.ico";
/// Offset of the palette in a GIF file.
constexpr std::size_t GIF_PALETTE = 13;

QImage imageOf(const std::string& path) {
    return QImage(QString::fromStdString(path));
}

class SkinPictureFile : public testing::Test {
protected:
    std::string differenceOfSaved(const std::string& path, const QImage& image) {
        QImageWriter writer(QString::fromStdString(saved), "png");
        writer.setCompression(10);
        EXPECT_TRUE(writer.write(image));
        return differenceOf(path, saved);
    }
    std::string differenceOfBytes(const std::string& path, const std::string& bytes) {
        const std::string copy = folder_.file("copy");
        support::writeFile(copy, bytes);
        return differenceOf(path, copy);
    }

private:
    const support::TemporaryFolder folder_;

protected:
    const std::string saved = folder_.file("copy.png");
};

} // namespace

TEST_F(SkinPictureFile, IsTheSameHoweverItIsCompressed) {
    for (const std::string& path : {SHEET_PNG, ICON_PNG}) {
        EXPECT_EQ(differenceOfSaved(path, imageOf(path)), "") << path;
        EXPECT_NE(support::readFile(saved), support::readFile(path)) << path;
    }
    EXPECT_EQ(differenceOf(BODY_GIF, BODY_GIF), "");
    EXPECT_EQ(differenceOf(WINDOWS_ICON, WINDOWS_ICON), "");
}

TEST_F(SkinPictureFile, DiffersByOnePixel) {
    QImage sheet = imageOf(SHEET_PNG);
    ASSERT_EQ(sheet.format(), QImage::Format_Indexed8);
    sheet.setPixel(30, 30, (static_cast<uint>(sheet.pixelIndex(30, 30)) + 1) % 2);
    EXPECT_EQ(differenceOfSaved(SHEET_PNG, sheet), "pixels of image 1");

    QImage icon = imageOf(ICON_PNG);
    ASSERT_EQ(icon.format(), QImage::Format_ARGB32);
    icon.setPixel(24, 24, icon.pixel(24, 24) ^ 1U);
    EXPECT_EQ(differenceOfSaved(ICON_PNG, icon), "pixels of image 1");

    // Two marks of the same size in the same two colours.
    EXPECT_EQ(
        differenceOf(PICTURES_FOLDER "/23_pause_mark.gif", PICTURES_FOLDER "/24_play_mark.gif"),
        "pixels of image 1");
}

TEST_F(SkinPictureFile, DiffersByOneEntryOfThePalette) {
    QImage sheet = imageOf(SHEET_PNG);
    sheet.setColor(sheet.colorCount() - 1, sheet.color(sheet.colorCount() - 1) ^ 1U);
    EXPECT_EQ(differenceOfSaved(SHEET_PNG, sheet), "palette of image 1");

    std::string gif = support::readFile(BODY_GIF);
    gif[GIF_PALETTE] = static_cast<char>(gif[GIF_PALETTE] ^ 1);
    EXPECT_EQ(differenceOfBytes(BODY_GIF, gif), "palette or transparent entry");
}

TEST_F(SkinPictureFile, DiffersByTheTransparentEntry) {
    QImage sheet = imageOf(SHEET_PNG);
    ASSERT_EQ(qAlpha(sheet.color(0)), 0);
    sheet.setColor(0, sheet.color(0) | 0xFF000000U);
    EXPECT_EQ(differenceOfSaved(SHEET_PNG, sheet), "palette of image 1");

    QImage icon = imageOf(ICON_PNG);
    icon.setPixel(24, 24, icon.pixel(24, 24) & 0x7FFFFFFFU);
    EXPECT_EQ(differenceOfSaved(ICON_PNG, icon), "pixels of image 1");

    std::string gif = support::readFile(BODY_GIF);
    const std::size_t extension = gif.find("\x21\xF9\x04\x01");
    ASSERT_NE(extension, std::string::npos);
    gif[extension + 6] = static_cast<char>(gif[extension + 6] + 1);
    EXPECT_EQ(differenceOfBytes(BODY_GIF, gif), "palette or transparent entry");
}

TEST_F(SkinPictureFile, DiffersByTheNumberOfImagesInAnIcon) {
    std::string icon = support::readFile(WINDOWS_ICON);
    // One image less: the number in the file's head.
    icon[4] = static_cast<char>(icon[4] - 1);
    EXPECT_EQ(differenceOfBytes(WINDOWS_ICON, icon), "number of images");
}
