#include "app/paths.h"
#include "imaging/pdf.h"
#include "imaging/pictures.h"
#include "imaging/save_image.h"
#include "support/sheet_images.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

using testing::HasSubstr;

namespace {

class Pdf : public testing::Test
{
protected:
    std::string file(const char *name) const { return m_dir.filePath(name).toStdString(); }

    static QByteArray bytes(const std::string &path)
    {
        QFile in(QString::fromStdString(path));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

    static void write(const std::string &path, const QByteArray &content)
    {
        QFile out(QString::fromStdString(path));
        out.open(QIODevice::WriteOnly);
        out.write(content);
    }

    // Page sizes in the order of the document, as "width x height".
    static QStringList pages(const QByteArray &pdf)
    {
        QStringList sizes;
        const QRegularExpression box(QStringLiteral("/MediaBox \\[\\s*0 0 (\\d+) (\\d+)\\s*\\]"));
        auto match = box.globalMatch(QString::fromLatin1(pdf.constData(), pdf.size()));
        while (match.hasNext()) {
            const auto found = match.next();
            sizes << found.captured(1) + "x" + found.captured(2);
        }
        return sizes;
    }

    // The picture of the page that was added last, decompressed.
    static QByteArray lastPicture(const QByteArray &pdf)
    {
        const int object = pdf.lastIndexOf("/Subtype /Image");
        const int start = pdf.indexOf("stream", object) + 6 + (pdf.contains("stream\r\n") ? 2 : 1);
        QByteArray packed = pdf.mid(start, pdf.indexOf("endstream", start) - start);
        packed.prepend(QByteArray::fromHex("01000000")); // expected size, only a hint
        return qUncompress(packed);
    }

    QTemporaryDir m_dir;
};

QByteArray flat(const cv::Mat &picture)
{
    return {reinterpret_cast<const char *>(picture.data),
            static_cast<int>(picture.total() * picture.elemSize())};
}

} // namespace

TEST_F(Pdf, PagesHaveTheSizeOfTheirPicturesAndJpegDataStaysAsItIs)
{
    cv::imwrite(file("a.JPG"), sheets::textPage({192, 108}));
    cv::imwrite(file("b.png"), noisePicture({40, 30}, CV_8UC3, 1));
    cv::imwrite(file("c.jpg"), noisePicture({33, 50}, CV_8UC1, 2));
    ASSERT_EQ(pdf_start(file("out.pdf").c_str()), 0);
    for (const char *name : {"a.JPG", "b.png", "c.jpg"})
        EXPECT_EQ(pdf_addPage(file(name).c_str()), 0) << pdf_error();
    EXPECT_FALSE(QFile::exists(m_dir.filePath("out.pdf")));
    EXPECT_EQ(pdf_end(), 0) << pdf_error();

    const QByteArray pdf = bytes(file("out.pdf"));
    EXPECT_EQ(pages(pdf), QStringList({"192x108", "40x30", "33x50"}));
    EXPECT_TRUE(pdf.contains(bytes(file("a.JPG"))));
    EXPECT_TRUE(pdf.contains(bytes(file("c.jpg"))));
    EXPECT_EQ(pdf_end(), -1); // there is none any more
}

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
    // Four by four pixels, black and transparent in turn.
    const QByteArray palette = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAQAAAAEAQMAAACTPww9AAAABlBMVEUAAAD/AAAb/40iAAAAAnRSTlP/AOW3MEoA"
        "AAAMSURBVHicYwhgAEMABQgBQULVVkkAAAAASUVORK5CYII=");
    const struct
    {
        const char *name;
        cv::Mat written, seen;
    } cases[] = {{"colour.png", colour, rgb},
                 {"deep.png", deep, rgb},
                 {"alpha.png", alpha, onPaper},
                 {"gray.png", gray, gray}};
    for (const auto &one : cases) {
        cv::imwrite(file(one.name), one.written);
        PdfDocument document(file("p.pdf"));
        EXPECT_TRUE(document.addPage(file(one.name))) << document.error();
        EXPECT_TRUE(document.save());
        EXPECT_EQ(lastPicture(bytes(file("p.pdf"))), flat(one.seen)) << one.name;
    }
    write(file("palette.png"), palette);
    PdfDocument document(file("p.pdf"));
    EXPECT_TRUE(document.addPage(file("palette.png"))) << document.error();
    EXPECT_TRUE(document.save());
    EXPECT_EQ(lastPicture(bytes(file("p.pdf"))).left(6), QByteArray::fromHex("000000FFFFFF"));
}

TEST_F(Pdf, EveryFailureNamesItsCauseAndTheNextDocumentWorks)
{
    cv::imwrite(file("good.jpg"), sheets::textPage({200, 100}));
    cv::imwrite(file("good.png"), sheets::textPage({200, 100}));
    cv::imwrite(file("small.png"), cv::Mat(2, 50, CV_8UC3));
    cv::imwrite(file("long.jpg"), cv::Mat(14401, 3, CV_8UC3));
    const QByteArray jpeg = bytes(file("good.jpg")), png = bytes(file("good.png"));
    write(file("cut.jpg"), jpeg.left(jpeg.size() - 200));
    write(file("noise.jpg"), QByteArray(500, 'x'));
    write(file("cut.png"), png.left(png.size() / 2));
    write(file("empty.png"), {});
    QByteArray spoilt = png;
    spoilt[png.size() / 2] = static_cast<char>(spoilt[png.size() / 2] ^ 0x55);
    write(file("spoilt.png"), spoilt);
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
        EXPECT_FALSE(QFile::exists(m_dir.filePath("out.pdf"))) << name;
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

TEST_F(Pdf, ACaptureLeavesNoTemporaryPictureAndNoFileOfTheUsersIsTouched)
{
    const QString documents = documentsPath();
    const std::string own = (documents + "/page.jpg").toStdString();
    write(own, "a picture of the user's");
    EXPECT_EQ(saveImage(file("page.pdf"), sheets::textPage({192, 108}), SaveOptions(), false), "");
    EXPECT_EQ(pages(bytes(file("page.pdf"))), QStringList("192x108"));
    EXPECT_EQ(bytes(own), "a picture of the user's");
    EXPECT_EQ(QDir(documents).entryList({"*.jpg"}), QStringList("page.jpg"));
    QFile::remove(QString::fromStdString(own));
}
