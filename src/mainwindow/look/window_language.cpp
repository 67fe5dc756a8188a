#include "app/paths.h"
#include "mainwindow/cameras/camera_offer.h"
#include "mainwindow/cameras/open_problem_text.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/choice_texts.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/preview/preview_feedback.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QDebug>
#include <QLibraryInfo>
#include <QSignalBlocker>
#include <QTranslator>

#include <utility>

namespace {

/// The box tells of two changes: that it is empty, and that it is back at its choice. The choice
/// that a box makes by itself when it gets its first item is nobody's and is not told.
void refill(QComboBox *box, const Choices &choices, bool isChinese)
{
    const int index = box->currentIndex();
    box->clear();
    {
        const QSignalBlocker quiet(box);
        box->addItems(choiceTexts(choices, isChinese));
        box->setCurrentIndex(-1);
    }
    box->setCurrentIndex(index);
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

    const std::pair<QComboBox *, const Choices &> boxes[] = {
        {ui->cropComBox, cropChoices()},          {ui->colorComBox, effectChoices()},
        {ui->nameComBox, namingChoices()},        {ui->v_nameComBox, videoNamingChoices()},
        {ui->positionComBox, placementChoices()},
    };
    for (const auto &[box, choices] : boxes)
        refill(box, choices, isChinese);
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
