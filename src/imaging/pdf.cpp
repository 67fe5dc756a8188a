#include "imaging/pdf.h"

#include "imaging/failure.h"
#include "imaging/file_writer.h"
#include "imaging/jpeg_encoder.h"
#include "imaging/path_parts.h"
#include "imaging/pdf_picture.h"

#include <QFile>

#include <hpdf.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kPageQuality = 100;

struct HaruText
{
    HPDF_STATUS number;
    const char *text;
};

constexpr HaruText kHaruTexts[] = {
    {HPDF_FILE_IO_ERROR, "the file cannot be written"},
    {HPDF_FILE_OPEN_ERROR, "the file cannot be opened"},
    {HPDF_FAILD_TO_ALLOC_MEM, "not enough memory"},
    {HPDF_INVALID_JPEG_DATA, "damaged JPEG data"},
    {HPDF_UNSUPPORTED_JPEG_FORMAT, "this kind of JPEG is not supported"},
    {HPDF_PAGE_INVALID_SIZE, "the page is too small or too large"},
};

// The library keeps no cause of a failed write; errno still holds it.
std::string haruText(HPDF_STATUS number)
{
    char code[32];
    std::snprintf(code, sizeof code, " (0x%04X)", static_cast<unsigned>(number));
    std::string text = "the PDF library failed";
    for (const HaruText &known : kHaruTexts) {
        if (known.number == number)
            text = known.text;
    }
    if (number == HPDF_FILE_IO_ERROR && errno != 0)
        text += std::string(": ") + std::strerror(errno);
    return text + code;
}

// The library goes on after the handler and unwinds by its own return values, so that nothing
// is jumped over.
void error_handler(HPDF_STATUS error_no, HPDF_STATUS detail_no, void *user_data)
{
    std::string &cause = *static_cast<std::string *>(user_data);
    if (cause.empty())
        cause = haruText(error_no);
    std::printf("ERROR: error_no=%04X, detail_no=%u\n", static_cast<unsigned>(error_no),
                static_cast<unsigned>(detail_no));
}

// A full disk may go unnoticed inside the library when the last buffer is written.
bool endsLikePdf(const std::string &path)
{
    QFile file(QString::fromStdString(path));
    constexpr qint64 kTailBytes = 16;
    return file.open(QIODevice::ReadOnly) && file.size() > kTailBytes &&
           file.seek(file.size() - kTailBytes) && file.read(kTailBytes).contains("%%EOF");
}

} // namespace

struct PdfDocument::Haru
{
    HPDF_Doc document = nullptr;
    std::string path, libraryError, error;
    int pages = 0;

    bool fail(const std::string &what, const std::string &cause)
    {
        const std::string text = loggedFailure(what + ": " + cause);
        if (error.empty())
            error = text;
        return false;
    }

    HPDF_Image load(const PdfPicture &picture) const
    {
        const auto size = static_cast<HPDF_UINT>(picture.bytes.size());
        if (picture.encoding == PdfPicture::Jpeg)
            return HPDF_LoadJpegImageFromMem(document, picture.bytes.data(), size);
        return HPDF_LoadRawImageFromMem(
            document, picture.bytes.data(), static_cast<HPDF_UINT>(picture.width),
            static_cast<HPDF_UINT>(picture.height),
            picture.encoding == PdfPicture::Gray ? HPDF_CS_DEVICE_GRAY : HPDF_CS_DEVICE_RGB, 8);
    }

    bool add(const PdfPicture &picture, const std::string &name, int turn = 0)
    {
        const HPDF_Image image = load(picture);
        if (!image || !draw(image, turn))
            return fail(name, libraryError);
        ++pages;
        return true;
    }

    bool draw(HPDF_Image image, int turn) const
    {
        const auto width = static_cast<HPDF_REAL>(HPDF_Image_GetWidth(image));
        const auto height = static_cast<HPDF_REAL>(HPDF_Image_GetHeight(image));
        const HPDF_Page page = HPDF_AddPage(document);
        return page && HPDF_Page_SetWidth(page, width) == HPDF_OK &&
               HPDF_Page_SetHeight(page, height) == HPDF_OK &&
               (turn == 0 ||
                HPDF_Page_SetRotate(page, static_cast<HPDF_UINT16>(turn)) == HPDF_OK) &&
               HPDF_Page_DrawImage(page, image, 0, 0, width, height) == HPDF_OK;
    }
};

PdfDocument::PdfDocument(std::string path)
    : m_haru(std::make_unique<Haru>())
{
    m_haru->path = std::move(path);
    m_haru->document = HPDF_New(error_handler, &m_haru->libraryError);
    if (!m_haru->document)
        m_haru->fail(m_haru->path, "the PDF library does not start");
    else
        HPDF_SetCompressionMode(m_haru->document, HPDF_COMP_IMAGE);
}

PdfDocument::~PdfDocument()
{
    if (m_haru->document)
        HPDF_Free(m_haru->document);
}

bool PdfDocument::addPage(const std::string &imagePath, int turn)
{
    if (!m_haru->error.empty())
        return false;
    PdfPicture picture;
    const std::string cause = readPdfPicture(imagePath, picture);
    return cause.empty() ? m_haru->add(picture, imagePath, turn) : m_haru->fail(imagePath, cause);
}

bool PdfDocument::addJpegPage(std::vector<unsigned char> jpeg)
{
    PdfPicture picture;
    picture.encoding = PdfPicture::Jpeg;
    picture.bytes = std::move(jpeg);
    return m_haru->error.empty() && m_haru->add(picture, m_haru->path);
}

bool PdfDocument::save()
{
    if (!m_haru->error.empty())
        return false;
    if (m_haru->pages == 0)
        return m_haru->fail(m_haru->path, "a PDF needs at least one page");
    PendingFile pending(m_haru->path);
    if (!pending.isOpen())
        return m_haru->fail(m_haru->path, pending.error());
    errno = 0;
    if (HPDF_SaveToFile(m_haru->document, pending.pathOfDescriptor().c_str()) != HPDF_OK)
        return m_haru->fail(m_haru->path, m_haru->libraryError);
    if (!endsLikePdf(pending.pathOfDescriptor()))
        return m_haru->fail(m_haru->path, "the file was not written completely");
    if (!pending.commit())
        return m_haru->fail(m_haru->path, pending.error());
    return true;
}

const std::string &PdfDocument::error() const
{
    return m_haru->error;
}

namespace {

// The document that pdf_start began; one at a time, GUI thread.
std::unique_ptr<PdfDocument> pdf;
std::string lastError;

int reported(bool good)
{
    if (!good)
        lastError = pdf ? pdf->error() : "no PDF was started";
    return good ? 0 : -1;
}

} // namespace

int pdf_start(const char *outPath)
{
    lastError.clear();
    pdf = std::make_unique<PdfDocument>(outPath);
    return reported(pdf->error().empty());
}

int pdf_addPage(const char *imagePath)
{
    return reported(pdf && pdf->addPage(imagePath));
}

int pdf_end()
{
    const int result = reported(pdf && pdf->save());
    pdf.reset();
    return result;
}

std::string pdf_error()
{
    return lastError;
}

std::string TempImgToPdf(const std::string &pdfPath, const cv::Mat &image)
{
    if (const std::string problem = pdfPageProblem(image.size()); !problem.empty())
        return loggedFailure(pdfPath + ": " + problem);
    std::vector<uchar> bytes;
    try {
        if (!encodeJpeg(image, kPageQuality, bytes))
            return loggedFailure("cannot encode the page of " + pdfPath);
    } catch (const std::exception &exception) {
        return loggedFailure("cannot encode the page of " + pdfPath, exception);
    }
    PdfDocument document(pdfPath);
    if (document.addJpegPage(std::move(bytes)))
        document.save();
    return document.error();
}
