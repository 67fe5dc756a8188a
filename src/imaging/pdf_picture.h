#pragma once

#include <opencv2/core/types.hpp>

#include <string>
#include <vector>

/// A picture in the form in which a PDF takes it.
struct PdfPicture
{
    enum Encoding { Jpeg, Gray, Rgb };

    Encoding encoding = Rgb;
    int width = 0, height = 0;        ///< pixels
    std::vector<unsigned char> bytes; ///< the JPEG file as it is, or rows of 8-bit samples
};

/// Reads a picture file with the ending jpg or png. Everything is checked here, since the PDF
/// library ends the process on a damaged PNG: PNGs come decoded to 8 bits, transparent parts laid
/// on white. Returns the cause of a failure, empty on success. Throws nothing.
std::string readPdfPicture(const std::string &path, PdfPicture &picture);

/// Why a page of so many pixels, each a point wide, cannot be; empty when it can.
std::string pdfPageProblem(cv::Size size);
