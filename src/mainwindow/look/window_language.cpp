#include "app/paths.h"
#include "mainwindow/cameras/camera_offer.h"
#include "mainwindow/cameras/open_problem_text.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QDebug>
#include <QLibraryInfo>
#include <QSignalBlocker>
#include <QTranslator>

namespace {

/// A box whose items are spelled out in both languages.
struct BilingualBox
{
    QComboBox *box = nullptr;
    QStringList english;
    QStringList chinese;
};

/// The box tells of two changes: that it is empty, and that it is back at its choice. The choice
/// that a box makes by itself when it gets its first item is nobody's and is not told.
void refill(const BilingualBox &entry, bool isChinese)
{
    const int index = entry.box->currentIndex();
    entry.box->clear();
    {
        const QSignalBlocker quiet(entry.box);
        entry.box->addItems(isChinese ? entry.chinese : entry.english);
        entry.box->setCurrentIndex(-1);
    }
    entry.box->setCurrentIndex(index);
}

struct Advice
{
    const char *hint; ///< over the missing picture
    const char *text; ///< below it: what can be done
};

const Advice kAdvice[] = {
    {"No camera!",
     QT_TRANSLATE_NOOP(
         "MainWindow",
         "Connect the document camera to a USB port and switch it on: it is found by itself.\n"
         "Without a camera, start the virtual stand (pictor-stand).")},
    {"The camera could not be opened.",
     QT_TRANSLATE_NOOP(
         "MainWindow",
         "Close other programs that use it, or plug it in again. The next try follows by itself.")},
    {"The camera is connected, but sends no picture.",
     QT_TRANSLATE_NOOP("MainWindow", "Switch it on or plug it in again: its picture comes back by "
                                     "itself.")},
    {"The camera offers no usable resolution.",
     QT_TRANSLATE_NOOP("MainWindow",
                       "Plug it in again, or choose another camera under Setting, Device.")},
};

} // namespace

void MainWindow::loadTranslations(bool isChinese)
{
    if (!m_translator) {
        m_translator = new QTranslator(this);
        m_qtTranslator = new QTranslator(this);
    }
    QCoreApplication::removeTranslator(m_translator);
    QCoreApplication::removeTranslator(m_qtTranslator);
    const QString folder = getLanguagePath();
    if (m_translator->load(
            folder + (isChinese ? QStringLiteral("/lan_cn.qm") : QStringLiteral("/lan_en.qm"))))
    {
        qDebug() << "load sucess";
        QCoreApplication::installTranslator(m_translator);
    }
    const QString own = QStringLiteral("qtbase_zh_CN");
    if (isChinese &&
        (m_qtTranslator->load(own, folder) ||
         m_qtTranslator->load(own, QLibraryInfo::location(QLibraryInfo::TranslationsPath))))
        QCoreApplication::installTranslator(m_qtTranslator);
}

void MainWindow::updateUiLanguage()
{
    const bool isChinese = sLanguage == 1;
    loadTranslations(isChinese);
    ui->retranslateUi(this); // every text of the form, from the form itself
    for (QAction *action : qAsConst(m_listActions))
        action->setText(tr(action->data().toByteArray().constData()));
    showTextsOfState();

    const BilingualBox boxes[] = {
        {ui->cropComBox,
         {tr("No crop"), tr("Automatic crop"), tr("Manual crop"), tr("Multi-graph crop"),
          tr("Smart crop")},
         {"不裁切", "自动裁切", "手动裁切", "多图裁切", "智能裁切"}},
        {ui->colorComBox,
         {tr("Original color"), tr("Gray"), tr("Binarization"), tr("Document optimization")},
         {"原生色彩", "灰度", "黑白", "文档优化"}},
        {ui->nameComBox,
         {tr("No."), tr("Date and time"), tr("Custom"), tr("Name as folder"), tr("Barcode number")},
         {"编号", "时间", "自定义", "以文件夹命名", "条码二维码"}},
        {ui->v_nameComBox,
         {tr("Date and time"), tr("Custom"), tr("Name as folder")},
         {"时间", "自定义", "以文件夹命名"}},
        {ui->positionComBox,
         {tr("Free"), tr("Upper left"), tr("Upper right"), tr("Middle"), tr("Bottom left"),
          tr("Bottom right")},
         {"自由", "左上", "右上", "中间", "左下", "右下"}},
    };
    for (const BilingualBox &entry : boxes)
        refill(entry, isChinese);
}

// What the form's own texts are replaced by while the program runs.
void MainWindow::showTextsOfState()
{
    showPageTurnTexts();
    showRecordedTime();
    const bool isCountdown = ui->wiseTimeLabel->text().size() <= 1;
    if (!isCountdown)
        showPageTurnWaiting();
    showFocusAbility();
    if (!ui->camTwoLabel->text().isEmpty())
        showAssistEmpty(m_assistHint);
    showRestingControls();
    showHint(m_hint);
    showExportChoice();
    showManualCutSize(m_manualCut->frameRect());
    showShownPicture();
    fitToolTexts();
    for (ImageListWidget *list : {ui->listWidget1, ui->pdflistWidget})
        list->viewport()->update();
}

/// `text` is English; null when there is a picture again.
void MainWindow::showHint(const char *text)
{
    m_hint = text;
    showManualCutWhereWanted();
    m_cameraOffer->offer(text && allCameraCount < 1);
    ui->wiseTimeLabel->setVisible(!text && !ui->wiseTimeLabel->text().isEmpty());
    if (!text) {
        m_feedback->setHint(QString());
        return;
    }
    QString shown = tr(text);
    const bool isRefused = qstrcmp(text, "The camera could not be opened.") == 0;
    const QString reason = isRefused ? openProblemText(m_openProblem) : QString();
    for (const Advice &advice : kAdvice)
        if (qstrcmp(text, advice.hint) == 0)
            shown += QStringLiteral("\n\n") + (reason.isEmpty() ? tr(advice.text) : reason);
    m_feedback->setHint(shown);
}

void MainWindow::on_languageComBox_currentIndexChanged(int index)
{
    if (!isLoadFormFinish)
        return;
    sLanguage = index;
    updateUiLanguage();
    focusCentralWidget();
}
