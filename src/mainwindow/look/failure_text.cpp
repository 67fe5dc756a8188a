#include "mainwindow/look/failure_text.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <cerrno>
#include <cstring>

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("Failure", text);
}

/// Sentences of the image work and of the libraries below it, whole.
const char *const kSentences[] = {
    QT_TRANSLATE_NOOP("Failure", "no document was found"),
    QT_TRANSLATE_NOOP("Failure", "there is no picture to capture"),
    QT_TRANSLATE_NOOP("Failure", "the picture is too small to hold a document"),
    QT_TRANSLATE_NOOP("Failure", "the crop rectangle lies outside of the frame"),
    QT_TRANSLATE_NOOP("Failure", "the crop rectangle is smaller than 4 x 4 pixels"),
    QT_TRANSLATE_NOOP("Failure", "a JPEG picture has at most 65500 pixels a side"),
    QT_TRANSLATE_NOOP("Failure", "not enough memory"),
    QT_TRANSLATE_NOOP("Failure", "the image library failed"),
    QT_TRANSLATE_NOOP("Failure", "the outline cannot be cut out of the frame"),
    QT_TRANSLATE_NOOP("Failure", "the camera delivers no picture"),
    QT_TRANSLATE_NOOP("Failure", "a camera delivers no picture to combine"),
    QT_TRANSLATE_NOOP("Failure", "the PDF library does not start"),
    QT_TRANSLATE_NOOP("Failure", "a PDF needs at least one page"),
    QT_TRANSLATE_NOOP("Failure", "the file was not written completely"),
    QT_TRANSLATE_NOOP("Failure", "only JPG and PNG pictures can become PDF pages"),
    QT_TRANSLATE_NOOP("Failure", "damaged JPEG data"),
    QT_TRANSLATE_NOOP("Failure", "damaged PNG data"),
    QT_TRANSLATE_NOOP("Failure", "there are too few pages"),
    QT_TRANSLATE_NOOP("Failure", "No sheet was seen clearly enough, the whole picture was saved"),
    QT_TRANSLATE_NOOP("Failure", "the corners enclose no sheet"),
    QT_TRANSLATE_NOOP("Failure", "cutting a sheet failed"),
};

/// Sentences with a path, a number or another sentence in them, the more particular ones first.
const char *const kPatterns[] = {
    QT_TRANSLATE_NOOP("Failure", "No readable code, the name is: %1"),
    QT_TRANSLATE_NOOP("Failure", "Code not certain: \"%1\", the name is: %2"),
    QT_TRANSLATE_NOOP("Failure",
                      "Documents of exactly equal size, move one a little; not captured: %1"),
    QT_TRANSLATE_NOOP("Failure", "More than eight documents, the smallest were not captured: %1"),
    QT_TRANSLATE_NOOP("Failure", "An earlier file was replaced: %1"),
    QT_TRANSLATE_NOOP("Failure", "The code \"%1\" is no file name, used instead: \"%2\""),
    QT_TRANSLATE_NOOP("Failure", "a PDF page of %1 pixels is not possible, sides must be %2"),
    QT_TRANSLATE_NOOP("Failure", "the file cannot be written (%1)"),
    QT_TRANSLATE_NOOP("Failure", "the file cannot be opened (%1)"),
    QT_TRANSLATE_NOOP("Failure", "not enough memory (%1)"),
    QT_TRANSLATE_NOOP("Failure", "damaged JPEG data (%1)"),
    QT_TRANSLATE_NOOP("Failure", "this kind of JPEG is not supported (%1)"),
    QT_TRANSLATE_NOOP("Failure", "the page is too small or too large (%1)"),
    QT_TRANSLATE_NOOP("Failure", "the PDF library failed (%1)"),
    QT_TRANSLATE_NOOP("Failure", "cannot encode the page of %1"),
    QT_TRANSLATE_NOOP("Failure", "cannot process the picture for %1"),
    QT_TRANSLATE_NOOP("Failure", "cannot write %1"),
    QT_TRANSLATE_NOOP("Failure", "cannot read the page %1"),
    QT_TRANSLATE_NOOP("Failure", "cannot read %1"),
    QT_TRANSLATE_NOOP("Failure", "cannot encode %1"),
    QT_TRANSLATE_NOOP("Failure", "document %1: %2"),
    QT_TRANSLATE_NOOP("Failure", "capture failed: %1"),
    QT_TRANSLATE_NOOP("Failure", "cutting a document failed: %1"),
    QT_TRANSLATE_NOOP("Failure", "merging failed: %1"),
};

struct SystemError
{
    int number;
    const char *text;
};

/// What keeps a file from being written or read; the system's own wording varies.
const SystemError kSystemErrors[] = {
    {ENOSPC, QT_TRANSLATE_NOOP("Failure", "No space left on device")},
    {EDQUOT, QT_TRANSLATE_NOOP("Failure", "Disk quota exceeded")},
    {EACCES, QT_TRANSLATE_NOOP("Failure", "Permission denied")},
    {EPERM, QT_TRANSLATE_NOOP("Failure", "Operation not permitted")},
    {EROFS, QT_TRANSLATE_NOOP("Failure", "Read-only file system")},
    {ENOENT, QT_TRANSLATE_NOOP("Failure", "No such file or directory")},
    {ENOTDIR, QT_TRANSLATE_NOOP("Failure", "Not a directory")},
    {EISDIR, QT_TRANSLATE_NOOP("Failure", "Is a directory")},
    {ENAMETOOLONG, QT_TRANSLATE_NOOP("Failure", "File name too long")},
    {EFBIG, QT_TRANSLATE_NOOP("Failure", "File too large")},
    {EIO, QT_TRANSLATE_NOOP("Failure", "Input/output error")},
};

/// Null when `text` is none of the whole sentences.
QString knownSentence(const QString &text)
{
    for (const char *sentence : kSentences)
        if (text == QLatin1String(sentence))
            return translated(sentence);
    for (const SystemError &error : kSystemErrors)
        if (text == QString::fromLocal8Bit(std::strerror(error.number)))
            return translated(error.text);
    return {};
}

QRegularExpression matcher(const char *pattern)
{
    QString text = QRegularExpression::escape(QString::fromLatin1(pattern));
    text.replace(QRegularExpression(QStringLiteral("\\\\%\\d")), QStringLiteral("(.*?)"));
    return QRegularExpression(QRegularExpression::anchoredPattern(text),
                              QRegularExpression::DotMatchesEverythingOption);
}

/// One sentence, whose last part may be another one.
QString sentenceText(const QString &text)
{
    const QString known = knownSentence(text);
    if (!known.isNull())
        return known;
    for (const char *pattern : kPatterns) {
        const QRegularExpressionMatch match = matcher(pattern).match(text);
        if (!match.hasMatch())
            continue;
        const QString last = sentenceText(match.captured(match.lastCapturedIndex()));
        return match.lastCapturedIndex() == 1 ? translated(pattern).arg(last)
                                              : translated(pattern).arg(match.captured(1), last);
    }
    const QString separator = QStringLiteral(": ");
    const int colon = text.lastIndexOf(separator); // a path may hold others
    const QString cause = colon < 0 ? QString() : text.mid(colon + separator.size());
    const QString shownCause = cause.isEmpty() ? QString() : sentenceText(cause);
    return shownCause == cause ? text : sentenceText(text.left(colon)) + separator + shownCause;
}

} // namespace

QString failureText(const std::string &report)
{
    static const QRegularExpression nextSentence(QStringLiteral(
        "; (?=cannot |cutting |document \\d|The code \"|Code not certain|An earlier file |No "
        "readable |No sheet |Documents of |More than )"));
    QStringList sentences = QString::fromStdString(report).split(nextSentence);
    for (QString &sentence : sentences)
        sentence = sentenceText(sentence);
    return sentences.join(QStringLiteral("; "));
}
