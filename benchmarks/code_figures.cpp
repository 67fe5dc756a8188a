#include "imaging/code_reader.h"
#include "imaging/naming_code.h"
#include "imaging/symbol_reader.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

// code_figures FOLDER: how well codes are read in the pictures of a folder and its subfolders.
// Beside NAME.png or NAME.jpg stands NAME.txt with the expected text. Folders named after a code of
// fields (qrcode, datamatrix, aztec, pdf417) are read as such, all others as bar codes. Prints for
// the quick look alone, the ladder alone and both in turn how many texts are right and wrong, and
// the time where something was found and where not; then each wrong or uncertain text.

namespace {

struct Reading
{
    std::string text;
    bool isCertain = true;
};

struct Way
{
    const char *title;
    std::function<Reading(const cv::Mat &bgr, int type)> read;
    int right = 0, wrong = 0, uncertain = 0, unread = 0;
    std::vector<double> foundMs{}, unreadMs{};
};

cv::Mat inGray(const cv::Mat &bgr)
{
    cv::Mat gray;
    cv::cvtColor(bgr, gray, cv::COLOR_RGB2GRAY);
    return gray;
}

Reading quickLook(const cv::Mat &bgr, int type)
{
    const std::vector<CodeSymbol> symbols = readSymbols(inGray(bgr), type);
    return {symbols.empty() ? std::string() : symbols.front().text};
}

Reading ladder(const cv::Mat &bgr, int type)
{
    return {GetQR(inGray(bgr), type)};
}

Reading both(const cv::Mat &bgr, int type)
{
    const NamingCode code = readNamingCode(bgr, type);
    return {code.text, code.isCertain};
}

void tryOut(Way &way, const std::string &name, const cv::Mat &picture, int type,
            const std::string &expected)
{
    const auto start = std::chrono::steady_clock::now();
    const Reading reading = way.read(picture, type);
    const std::chrono::duration<double, std::milli> spent =
        std::chrono::steady_clock::now() - start;
    (reading.text.empty() ? way.unreadMs : way.foundMs).push_back(spent.count());
    if (reading.text.empty()) {
        ++way.unread;
        return;
    }
    const bool isRight = reading.text == expected;
    ++(!reading.isCertain ? way.uncertain : isRight ? way.right : way.wrong);
    if (!reading.isCertain || !isRight)
        std::printf("%s %s in %s: \"%s\" instead of \"%s\"\n", way.title,
                    reading.isCertain ? "wrong" : "uncertain", name.c_str(), reading.text.c_str(),
                    expected.c_str());
}

double middle(const std::vector<double> &sorted)
{
    return sorted.empty() ? 0 : sorted[sorted.size() / 2];
}

void printRow(Way &way)
{
    std::sort(way.foundMs.begin(), way.foundMs.end());
    std::sort(way.unreadMs.begin(), way.unreadMs.end());
    std::printf("%-11s right %d, wrong %d, uncertain %d, unread %d; found in %.0f ms (at most "
                "%.0f), not found in %.0f ms (middle values)\n",
                way.title, way.right, way.wrong, way.uncertain, way.unread, middle(way.foundMs),
                way.foundMs.empty() ? 0 : way.foundMs.back(), middle(way.unreadMs));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: code_figures FOLDER\n");
        return 2;
    }
    static const QRegularExpression fields(QStringLiteral("qrcode|datamatrix|aztec|pdf417"));
    std::vector<Way> ways;
    ways.push_back({"quick look", quickLook});
    ways.push_back({"ladder", ladder});
    ways.push_back({"both", both});
    QStringList names;
    QDirIterator files(QString::fromLocal8Bit(argv[1]), {"*.png", "*.jpg"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        names.append(files.next());
    names.sort();
    for (const QString &name : names) {
        const QFileInfo info(name);
        QFile text(info.path() + '/' + info.completeBaseName() + ".txt");
        const cv::Mat picture = cv::imread(name.toStdString(), cv::IMREAD_COLOR);
        if (picture.empty() || !text.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "no picture or no text: %s\n", qPrintable(name));
            continue;
        }
        const std::string expected = text.readAll().toStdString();
        const int type = fields.match(info.dir().dirName()).hasMatch() ? 1 : 0;
        for (Way &way : ways)
            tryOut(way, name.toStdString(), picture, type, expected);
    }
    for (Way &way : ways)
        printRow(way);
    return names.isEmpty() ? 1 : 0;
}
