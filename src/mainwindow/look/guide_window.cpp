#include "mainwindow/look/guide_window.h"

#include "app/paths.h"
#include "app/state.h"
#include "mainwindow/look/window_text.h"

#include <QEvent>
#include <QFile>
#include <QHBoxLayout>
#include <QListWidget>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>

namespace {

constexpr int kChapterLevel = 2; ///< headings of this level are chapters
constexpr int kPictureWidth = 570;

/// Shows pictures no wider than the text.
class GuideText : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int type, const QUrl &name) override
    {
        const QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        const QImage picture = QImage::fromData(resource.toByteArray());
        return picture.width() <= kPictureWidth
                   ? resource
                   : picture.scaledToWidth(kPictureWidth, Qt::SmoothTransformation);
    }
};

} // namespace

QString guidePath(int language)
{
    return getLanguagePath() +
           (language == 1 ? QStringLiteral("/guide/zh.md") : QStringLiteral("/guide/en.md"));
}

GuideWindow::GuideWindow(QWidget *parent)
    : QDialog(parent)
    , m_chapters(new QListWidget)
    , m_text(new GuideText)
{
    setObjectName(QStringLiteral("guideWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(900, 640);
    m_text->setOpenExternalLinks(true);
    m_text->document()->setDocumentMargin(18);
    auto *layout = new QHBoxLayout(this);
    layout->addWidget(m_chapters);
    layout->addWidget(m_text);
    connect(m_chapters, &QListWidget::currentRowChanged, this, &GuideWindow::goTo);
    load();
}

void GuideWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        load();
}

void GuideWindow::load()
{
    setWindowTitle(WindowText::tr("User guide"));
    m_chapters->setAccessibleName(WindowText::tr("Chapters of the user guide"));
    m_text->setAccessibleName(windowTitle());
    const QString path = guidePath(sLanguage);
    if (QFile::exists(path))
        m_text->setSource(QUrl::fromLocalFile(path), QTextDocument::MarkdownResource);
    else
        m_text->setPlainText(WindowText::tr("The user guide was not found: %1").arg(path));
    listChapters();
}

void GuideWindow::listChapters()
{
    m_chapters->clear();
    const QTextDocument *document = m_text->document();
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() != kChapterLevel)
            continue;
        auto *chapter = new QListWidgetItem(block.text(), m_chapters);
        chapter->setData(Qt::UserRole, block.position());
    }
    constexpr int margin = 24;
    m_chapters->setFixedWidth(m_chapters->sizeHintForColumn(0) + margin);
}

void GuideWindow::goTo(int chapter)
{
    const QListWidgetItem *item = m_chapters->item(chapter);
    if (!item)
        return;
    QTextCursor cursor(m_text->document());
    cursor.setPosition(item->data(Qt::UserRole).toInt());
    m_text->setTextCursor(cursor);
    QScrollBar *bar = m_text->verticalScrollBar();
    bar->setValue(bar->value() + m_text->cursorRect(cursor).top());
}
