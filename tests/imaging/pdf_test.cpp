#include "app/paths.h"
#include "imaging/pdf.h"
#include "imaging/save_image.h"
#include "support/files.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

using testing::HasSubstr;

namespace {

class Pdf : public FolderTest
{
};

// The picture of the page that was added last, decompressed.
QByteArray lastPicture(const QByteArray &pdf)
{
    const int object = pdf.lastIndexOf("/Subtype /Image");
    const int start = pdf.indexOf("stream", object) + 6 + (pdf.contains("stream\r\n") ? 2 : 1);
    const QByteArray packed = pdf.mid(start, pdf.indexOf("endstream", start) - start);
    return qUncompress(QByteArray::fromHex("01000000") + packed); // expected size, only a hint
}

QByteArray flat(const cv::Mat &picture)
{
    return {reinterpret_cast<const char *>(picture.data),
            static_cast<int>(picture.total() * picture.elemSize())};
}

} // namespace

TEST_F(Pdf, PngsOfEveryDepthComeOutAsTheyLook)
{
    const cv::Mat colour = noisePicture({31, 20}, CV_8UC3, 3);
    cv::Mat rgb, deep, alpha;
    cv::cvtColor(colour, rgb, cv::COLOR_BGR2RGB);
    colour.convertTo(deep, CV_16U, 257);
    cv::cvtColor(colour, alpha, cv::COLOR_BGR2BGRA);
    alpha.colRange(0, 10).setTo(cv::Scalar(9, 9, 9, 0));
    cv::Mat onPaper = rgb.clone();
    onPaper.colRange(0, 10).setTo(cv::Scalar::all(255));
    const cv::Mat gray = noisePicture({31, 20}, CV_8UC1, 4);
    const auto embedded = [this](const char *name) {
        PdfDocument document(file("p.pdf"));
        EXPECT_TRUE(document.addPage(file(name)) && document.save()) << document.error();
        return lastPicture(readFile(path("p.pdf")));
    };
    const std::tuple<const char *, cv::Mat, cv::Mat> cases[] = {{"colour.png", colour, rgb},
                                                                {"deep.png", deep, rgb},
                                                                {"alpha.png", alpha, onPaper},
                                                                {"gray.png", gray, gray}};
    for (const auto &[name, written, seen] : cases) {
        cv::imwrite(file(name), written);
        EXPECT_EQ(embedded(name), flat(seen)) << name;
    }
    // Four by four pixels, black and transparent in turn.
    writeFile(path("palette.png"),
              QByteArray::fromBase64(
                  "iVBORw0KGgoAAAANSUhEUgAAAAQAAAAEAQMAAACTPww9AAAABlBMVEUAAAD/AAAb/40iAAAAAnRSTlP/"
                  "AOW3MEoAAAAMSURBVHicYwhgAEMABQgBQULVVkkAAAAASUVORK5CYII="));
    EXPECT_EQ(embedded("palette.png").left(6), QByteArray::fromHex("000000FFFFFF"));
    // The four levels of two bits, the second of them transparent.
    writeFile(path("levels.png"),
              QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAQAAAADAgAAAADbL+m7AAAAAnRSTlMAAQGU/"
                                     "a4AAAAMSURBVHicY5BmAEIAAPkAUiDW9QcAAAAASUVORK5CYII="));
    EXPECT_EQ(embedded("levels.png").left(4), QByteArray::fromHex("00FFAAFF"));
}

TEST_F(Pdf, EveryFailureNamesItsCauseAndTheNextDocumentWorks)
{
    cv::imwrite(file("good.jpg"), sheets::textPage({200, 100}));
    cv::imwrite(file("good.png"), sheets::textPage({200, 100}));
    cv::imwrite(file("small.png"), cv::Mat(2, 50, CV_8UC3));
    cv::imwrite(file("long.jpg"), cv::Mat(14401, 3, CV_8UC3));
    const QByteArray jpeg = readFile(path("good.jpg")), png = readFile(path("good.png"));
    writeFile(path("cut.jpg"), jpeg.left(jpeg.size() - 200));
    writeFile(path("noise.jpg"), QByteArray(500, 'x'));
    writeFile(path("cut.png"), png.left(png.size() / 2));
    writeFile(path("empty.png"), {});
    QByteArray spoilt = png;
    spoilt[png.size() / 2] = static_cast<char>(spoilt[png.size() / 2] ^ 0x55);
    writeFile(path("spoilt.png"), spoilt);
    const std::pair<const char *, const char *> cases[] = {
        {"cut.jpg", "damaged JPEG"},     {"noise.jpg", "damaged JPEG"},
        {"cut.png", "damaged PNG"},      {"spoilt.png", "damaged PNG"},
        {"empty.png", "damaged PNG"},    {"small.png", "50 x 2"},
        {"long.jpg", "3 x 14401"},       {"none.png", "No such file"},
        {"page.tif", "only JPG and PNG"}};
    for (const auto &[name, cause] : cases) {
        ASSERT_EQ(pdf_start(file("out.pdf").c_str()), 0);
        EXPECT_EQ(pdf_addPage(file("good.jpg").c_str()), 0);
        EXPECT_EQ(pdf_addPage(file(name).c_str()), -1) << name;
        EXPECT_THAT(pdf_error(), HasSubstr(cause)) << name;
        EXPECT_THAT(pdf_error(), HasSubstr(name));
        EXPECT_EQ(pdf_end(), -1) << name;
        EXPECT_FALSE(QFile::exists(path("out.pdf"))) << name;
    }
    PdfDocument empty(file("out.pdf"));
    EXPECT_FALSE(empty.save());
    PdfDocument nowhere(file("missing/out.pdf"));
    EXPECT_TRUE(nowhere.addPage(file("good.jpg")));
    EXPECT_FALSE(nowhere.save());
    EXPECT_THAT(nowhere.error(), HasSubstr("No such file"));

    PdfDocument next(file("out.pdf"));
    EXPECT_TRUE(next.addPage(file("good.png")));
    EXPECT_TRUE(next.save()) << next.error();
}

TEST_F(Pdf, ACaptureTouchesNoFileOfTheUsers)
{
    const QString own = writeFile(documentsPath() + "/page.jpg", "a picture of the user's");
    const cv::Mat page = sheets::textPage({192, 108});
    EXPECT_EQ(saveImage(file("page.pdf"), page, SaveOptions(), false), "");
    std::vector<uchar> best;
    cv::imencode(".jpg", page, best, {cv::IMWRITE_JPEG_QUALITY, 100});
    EXPECT_GE(QFileInfo(path("page.pdf")).size(), static_cast<qint64>(best.size()));
    EXPECT_EQ(readFile(own), "a picture of the user's");
    EXPECT_EQ(QDir(documentsPath()).entryList({"*.jpg"}), QStringList("page.jpg"));
    QFile::remove(own);
}
