#pragma once

#include <opencv2/core/mat.hpp>

#include <memory>
#include <string>
#include <vector>

/// A PDF under construction: one page per picture, one pixel being 1/72 inch. All pages stay in
/// memory until save(). One thread at a time; several documents may live at once.
class PdfDocument
{
public:
    /// `path`: where save() writes, UTF-8.
    explicit PdfDocument(std::string path);
    ~PdfDocument();
    PdfDocument(const PdfDocument &) = delete;
    PdfDocument &operator=(const PdfDocument &) = delete;

    /// Appends the picture file (ending jpg or png, sides 3 to 14400 pixels). JPEG data is
    /// embedded byte for byte. `turn`: clockwise degrees, a multiple of 90, by which the page is to
    /// be shown turned. False when the page could not be added: see error().
    bool addPage(const std::string &imagePath, int turn = 0);

    /// Appends JPEG data that the caller has just encoded.
    bool addJpegPage(std::vector<unsigned char> jpeg);

    /// Writes the document, whole or not at all. A document that lacks a page is not written.
    bool save();

    /// Cause of the first failure, empty when there was none.
    const std::string &error() const;

private:
    struct Haru;
    std::unique_ptr<Haru> m_haru;
};

/// The same for callers that make one document after another. GUI thread. 0 on success, -1 on
/// failure with the cause in pdf_error(); pdf_end frees the document either way.
int pdf_start(const char *outPath);
int pdf_addPage(const char *imagePath);
int pdf_end();
std::string pdf_error();

/// Writes `image` (8 bits, B,G,R) as a PDF of one page, encoded as a JPEG of the best quality in
/// memory: no temporary file can meet one of the user's. Returns the cause of a failure, empty on
/// success.
std::string TempImgToPdf(const std::string &pdfPath, const cv::Mat &image);
