#include "app/paths.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/manual_cut_overlay.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QDebug>
#include <QTranslator>

namespace {

/// A box whose items are spelled out in both languages.
struct BilingualBox
{
    QComboBox *box;
    QStringList english;
    QStringList chinese;
};

void refill(const BilingualBox &entry, bool isChinese)
{
    const int index = entry.box->currentIndex();
    entry.box->clear();
    entry.box->addItems(isChinese ? entry.chinese : entry.english);
    entry.box->setCurrentIndex(index);
}

} // namespace

void MainWindow::updateUiLanguage()
{
    const bool isChinese = sLanguage == 1;
    QTranslator translator; // uninstalls itself at the end: every text is set below
    if (translator.load(getLanguagePath() +
                        (isChinese ? QStringLiteral("/lan_cn.qm") : QStringLiteral("/lan_en.qm"))))
    {
        qDebug() << "load sucess";
        QCoreApplication::installTranslator(&translator);
    }
    ui->retranslateUi(this);
    for (QAction *action : qAsConst(m_listActions))
        action->setText(tr(action->data().toByteArray().constData()));
    showPageTurnTexts();
    showFocusAbility();
    showManualCutSize(m_manualCut->frameRect());

    const BilingualBox boxes[] = {
        {ui->cropComBox,
         {tr("No crop"), tr("Automatic crop"), tr("Manual crop"), tr("Multi-graph crop")},
         {"不裁切", "自动裁切", "手动裁切", "多图裁切"}},
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

void MainWindow::on_languageComBox_currentIndexChanged(int index)
{
    if (!isLoadFormFinish)
        return;
    sLanguage = index;
    updateUiLanguage();
    focusCentralWidget();
}
