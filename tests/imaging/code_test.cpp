#include "app/state.h"
#include "imaging/capture.h"
#include "imaging/code_file_name.h"
#include "imaging/code_reader.h"
#include "imaging/naming_code.h"
#include "imaging/plain_codes.h"
#include "imaging/symbol_reader.h"
#include "stand/codes.h"
#include "support/files.h"
#include "support/sheet_images.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>

#include <BitMatrixIO.h>
#include <MultiFormatWriter.h>

using sheets::Code;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

enum Type { Barcode = 0, Qr = 1 };

// Modules of the Code 39 "ROOM 12-A" and the interleaved 2 of 5 "00123456".
const char kCode39[] =
    "1000101110111010111010101110001011101011101000101110101110100010111011101010001"
    "0100011101011101011101000101011101011100010101110100010101110111011101010001011"
    "101000101110111010";
const char kItf[] =
    "101010101110001110001011101000101011100011101110100010100011101000111000101011101";

struct Sample
{
    cv::Mat picture;
    std::string text;
    Type type;
};

std::vector<Sample> codes(int module)
{
    return {{sheets::barcode(Code::Ean13, "400638133393", module, 30 * module), "4006381333931",
             Barcode},
            {sheets::barcode(Code::Code128, "Page-17 (b)", module, 30 * module), "Page-17 (b)",
             Barcode},
            {sheets::bars(kCode39, module, 30 * module), "ROOM 12-A", Barcode},
            {sheets::bars(kItf, module, 30 * module), "00123456", Barcode},
            {sheets::qrCode(2 * module), qrText().toStdString(), Qr}};
}

cv::Mat gray(const cv::Mat &picture)
{
    cv::Mat result;
    cv::cvtColor(picture, result, cv::COLOR_RGB2GRAY);
    return result;
}

// A code in some state of decay; many are read at a late step of the ladder or not at all.
Sample decayed(unsigned seed)
{
    cv::RNG random(seed);
    Sample sample = codes(random.uniform(1, 4))[seed % 5];
    sheets::Scene scene = sheets::desk({360, 240}, random.uniform(60, 200));
    const double contrast = random.uniform(0.15, 0.8);
    sheets::lay(scene, sample.picture * contrast + cv::Scalar::all(200 * (1 - contrast)),
                {180, 120}, random.uniform(-25.0, 25.0));
    cv::GaussianBlur(scene.picture, scene.picture, cv::Size(0, 0), random.uniform(0.3, 1.2));
    sheets::shade(scene.picture, random.uniform(0.5, 1.0));
    sheets::addNoise(scene.picture, random.uniform(0.0, 10.0), seed);
    sample.picture = scene.picture;
    return sample;
}

cv::Mat drawn(ZXing::BarcodeFormat format, const std::wstring &text)
{
    ZXing::MultiFormatWriter writer(format);
    const auto bytes = ZXing::ToMatrix<uint8_t>(writer.setMargin(10).encode(text, 200, 200));
    cv::Mat picture;
    cv::cvtColor(
        cv::Mat(bytes.height(), bytes.width(), CV_8UC1, const_cast<uint8_t *>(bytes.data())),
        picture, cv::COLOR_GRAY2BGR);
    return picture;
}

class CaptureByCode : public FolderTest
{
};

} // namespace

TEST(CodeReader, ReadsEveryKindAtManySizesAnglesAndContrasts)
{
    for (const int module : {2, 4}) {
        for (const Sample &sample : codes(module)) {
            for (const double lean : {0.0, 4.0, 90.0, 180.0}) {
                const int side = sample.picture.cols + 80;
                sheets::Scene scene = sheets::desk({side, side}, 230);
                sheets::lay(scene, sample.picture, {side / 2.f, side / 2.f}, lean);
                EXPECT_EQ(BarQrDecodePro(scene.picture, sample.type), sample.text)
                    << module << " lean " << lean;
            }
            const cv::Mat faint = sample.picture * 0.15 + cv::Scalar::all(120);
            EXPECT_EQ(BarQrDecodePro(faint, sample.type), sample.text) << module << " faint";
            cv::Mat shaded = sample.picture.clone();
            sheets::shade(shaded, 0.6);
            EXPECT_EQ(BarQrDecodePro(shaded, sample.type), sample.text) << module << " shaded";
        }
    }
}

TEST(CodeReader, ChoosesTheKindAskedFor)
{
    sheets::Scene both = sheets::desk({500, 500}, 255);
    sheets::lay(both, sheets::barcode(Code::Ean13, "400638133393", 2, 60), {200, 80}, 0);
    sheets::lay(both, sheets::qrCode(4), {300, 350}, 0);
    EXPECT_EQ(BarQrDecodePro(both.picture, Barcode), "4006381333931");
    EXPECT_EQ(BarQrDecodePro(both.picture, Qr), qrText().toStdString());
    EXPECT_EQ(BarQrDecodePro(sheets::qrCode(5), Barcode), "");
    EXPECT_EQ(BarQrDecodePro(cv::Mat(1, 1, CV_8UC3, cv::Scalar::all(0)), Qr), "");
    EXPECT_EQ(BarQrDecodePro(cv::Mat(), Qr), "");
}

TEST(NamingCode, TakesFieldsOfEveryKindForQrCodes)
{
    using Format = ZXing::BarcodeFormat;
    for (const Format format : {Format::QRCode, Format::DataMatrix, Format::Aztec, Format::PDF417})
    {
        sheets::Scene scene = sheets::desk({500, 500}, 230);
        sheets::lay(scene, drawn(format, L"Zählung 7"), {250, 250}, 5);
        const NamingCode code = readNamingCode(scene.picture, Qr);
        EXPECT_EQ(code.text, "Zählung 7") << ToString(format);
        EXPECT_TRUE(code.isCertain);
        EXPECT_EQ(readNamingCode(scene.picture, Barcode).text, "") << ToString(format);
    }
    EXPECT_EQ(readNamingCode(cv::Mat(), Qr).text, "");
}

// Of bar codes the library endures no two alike.
TEST(NamingCode, TheFirstOfTheKindInReadingOrderCounts)
{
    sheets::Scene scene = sheets::desk({1000, 800}, 255);
    sheets::lay(scene, sheets::qrCode(3), {150, 100}, 0);
    sheets::lay(scene, sheets::barcode(Code::Code128, "right", 3, 100), {750, 250}, 0);
    sheets::lay(scene, sheets::barcode(Code::Code128, "left", 3, 60), {250, 270}, 0);
    sheets::lay(scene, sheets::barcode(Code::Code128, "below", 3, 60), {220, 600}, 0);
    sheets::lay(scene, sheets::barcode(Code::Code128, "below", 3, 60), {650, 700}, 0);
    EXPECT_EQ(readNamingCode(scene.picture, Barcode).text, "left");
    EXPECT_EQ(readNamingCode(scene.picture, Qr).text, qrText().toStdString());
}

// Without check digits, but read alike twice.
TEST(NamingCode, ASecondLookMakesCodesWithoutCheckDigitsCertain)
{
    for (const char *modules : {kCode39, kItf}) {
        const cv::Mat picture = sheets::bars(modules, 3, 90);
        ASSERT_EQ(readSymbols(gray(picture), Barcode).size(), 1u);
        EXPECT_FALSE(readSymbols(gray(picture), Barcode)[0].isSafe);
        EXPECT_TRUE(readNamingCode(picture, Barcode).isCertain);
    }
}

TEST(CodeReader, AnswersAsTheStepsOneByOneDo)
{
    int read = 0, unread = 0;
    for (unsigned seed = 0; seed < 25; ++seed) {
        const cv::Mat picture = decayed(seed).picture;
        for (const Type type : {Barcode, Qr}) {
            const std::string text = GetQR(gray(picture), type);
            EXPECT_EQ(text, plainLadder(gray(picture), type)) << seed << " type " << type;
            ++(text.empty() ? unread : read);
        }
    }
    EXPECT_GT(read, 8);
    EXPECT_GT(unread, 12);
}

// The bars are as wide as the neighbourhood of the adaptive step, and black beside them draws
// Otsu's threshold below both of their levels, which no two steps of twice the sweep's width would
// part.
TEST(CodeReader, SweepsTheThresholdsForAPaleCodeBesideBlack)
{
    const cv::Mat code = gray(sheets::barcode(Code::Ean13, "400638133393", 40, 200));
    cv::Mat picture;
    cv::copyMakeBorder(code * (10 / 255.0) + 175, picture, 0, 400, 0, 0, cv::BORDER_CONSTANT, 0);
    EXPECT_EQ(GetQR(picture, Barcode), "4006381333931");
}

// Bright specks in the bars: only the opening step closes them.
TEST(CodeReader, ReadsWhatOnlyTheOpeningRestores)
{
    cv::Mat binary = gray(sheets::barcode(Code::Ean13, "400638133393", 6, 100));
    for (int y = 0; y < binary.rows; ++y) {
        for (int x = y % 3; x < binary.cols; x += 3)
            binary.at<uchar>(y, x) = 255;
    }
    EXPECT_EQ(ZbarDecoder(binary, Barcode), "");
    EXPECT_EQ(GetQRInBinImg(binary, Barcode), "4006381333931");
}

TEST(CodeFileName, KeepsWhatAFileNameCanHold)
{
    const auto name = [](const std::string &text, size_t most = 20) {
        const CodeFileName result = codeFileName(text, most);
        EXPECT_EQ(result.altered, result.name != text);
        return result.name;
    };
    EXPECT_EQ(name("ABC-123 (ü)"), "ABC-123 (ü)");
    EXPECT_EQ(name("a/b/../c"), "a_b_.._c");
    EXPECT_EQ(name(std::string("\x1d"
                               "a\0b\r\nc\n",
                               8)),
              " a b c ");
    EXPECT_EQ(name("\t\n"), "");
    EXPECT_EQ(name("..hidden"), "hidden");
    EXPECT_EQ(name("..."), "");
    EXPECT_EQ(name("12345678", 5), "12345");
    EXPECT_EQ(name("äöü", 3), "ä"); // two bytes each
}

TEST_F(CaptureByCode, RenamesTheFileAndTellsWhatItAltered)
{
    CaptureOptions options;
    options.nameByCode = true;
    const cv::Mat page =
        sheets::pageWith(sheets::barcode(Code::Code128, "A1/x", 3, 80), {700, 500});
    const CaptureResult result = captureFrame(page, file("IMG_0001.jpg"), options);
    EXPECT_THAT(result.files, ElementsAre(file("A1_x.jpg")));
    EXPECT_EQ(result.code, "A1/x");
    EXPECT_THAT(result.note, HasSubstr("A1_x"));
    EXPECT_FALSE(QFile::exists(path("IMG_0001.jpg")));
    EXPECT_EQ(RecogBarQrCodeFromFile(file("A1_x.jpg"), Barcode), "A1/x");

    EXPECT_THAT(captureFrame(page, file("IMG_0002.jpg"), options).note, HasSubstr("replaced"));
    options.codeType = Qr;
    const CaptureResult without = captureFrame(page, file("IMG_0003.jpg"), options);
    EXPECT_THAT(without.files, ElementsAre(file("IMG_0003.jpg")));
    EXPECT_EQ(without.code + without.error, "");
    EXPECT_THAT(without.note, HasSubstr("No readable code, the name is: IMG_0003"));
}

TEST_F(CaptureByCode, OnlyCertainCodesNameFiles)
{
    CaptureOptions options;
    options.nameByCode = true;
    int uncertain = 0, certain = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        const Sample sample = decayed(seed);
        if (sample.text == "00123456")
            continue; // without check digit, and alike in a part of it when it lies aslant
        const CaptureResult result = captureFrame(sample.picture, file("IMG.bmp"), options);
        if (!result.code.empty()) {
            EXPECT_EQ(result.code, sample.text) << seed;
            ++certain;
        } else {
            EXPECT_THAT(result.files, ElementsAre(file("IMG.bmp")));
            EXPECT_THAT(result.note, HasSubstr(", the name is: IMG"));
            uncertain += result.note.rfind("Code not certain: \"", 0) == 0 ? 1 : 0;
        }
    }
    EXPECT_GT(uncertain, 0);
    EXPECT_GT(certain, 5);
}

// The new name stays in force for the following documents and no page is written over another.
TEST_F(CaptureByCode, SeveralDocumentsNeverShareAName)
{
    sheets::Scene scene = sheets::desk({1300, 1000}, 40);
    const char *const texts[] = {"X_1", "X", ""};
    CaptureOptions options;
    options.cropMode = MultiGraphCrop;
    options.nameByCode = true;
    for (int i = 0; i < 3; ++i) {
        const cv::Mat code = *texts[i] ? sheets::barcode(Code::Code128, texts[i], 3, 60)
                                       : cv::Mat(60, 60, CV_8UC3, cv::Scalar::all(255));
        const int left = 20 + 430 * i;
        sheets::lay(scene, sheets::pageWith(code, {400, 300}), {left + 200.f, 500}, 0);
        options.outlines.push_back(
            {{{left + 400, 650}, {left, 650}, {left, 350}, {left + 400, 350}}});
    }
    const CaptureResult result = captureFrame(scene.picture, file("p.jpg"), options);
    EXPECT_THAT(result.files, ElementsAre(file("X_1.jpg"), file("X_1_.jpg"), file("X_2.jpg")));
    EXPECT_THAT(result.codes, ElementsAre("X_1", "X", ""));
}
