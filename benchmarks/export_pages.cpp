// Exports picture files to one PDF as a program of its own: export_pages TARGET FILE...
#include "features/pdf_export.h"
#include "imaging/large_pages.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    useLargePagesForPictures();
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const PdfExportResult result =
        exportPdf(arguments.mid(2), arguments.value(1), [](int) { return true; });
    if (result.state == PdfExportResult::State::Done)
        return 0;
    std::fprintf(stderr, "%s\n", qPrintable(result.cause));
    return 1;
}
