#include "mainwindow/look/choice_texts.h"
#include "mainwindow/look/once_hint.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/preview_feedback.h"
#include "mainwindow/preview/sheet_corners.h"
#include "ui_mainwindow.h"

#include <QIntValidator>
#include <QLocale>

// The panels Document and Setting: what a capture is and how it is named.

namespace {

constexpr int kNumberMax = 100000;

// Qt's own takes every number of as many digits for one that is still being typed.
class NumberValidator : public QIntValidator
{
public:
    using QIntValidator::QIntValidator;

    State validate(QString &text, int &position) const override
    {
        const State state = QIntValidator::validate(text, position);
        return state == Intermediate && text.toInt() > top() ? Invalid : state;
    }
};

} // namespace

void MainWindow::SetDocumentModeUI()
{
    ui->formatComBox->addItems(choiceTexts(pictureFormats(), false));
    ui->cropComBox->addItems(choiceTexts(cropChoices(), false));
    ui->colorComBox->addItems(choiceTexts(effectChoices(), false));
    ui->nameComBox->addItems(choiceTexts(namingChoices(), false));
    ui->barcodeRadioBt->setEnabled(isRecogBarQrcode);
    ui->qrcodeRadioBt->setEnabled(isRecogBarQrcode);
    auto *digits = new NumberValidator(0, kNumberMax, ui->numTextEdit);
    QLocale plain = QLocale::c(); // a number of the user's language would be read as another one
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    digits->setLocale(plain);
    ui->numTextEdit->setValidator(digits);
    ui->numTextEdit->setText(QString::number(fNumIndex));
    ui->numLabel->setEnabled(fNameType == NameByNumber);
    ui->numTextEdit->setEnabled(fNameType == NameByNumber);
    ui->barCheckBox->hide();
    calmControls();
    on_qualitySlider_valueChanged(ImgQuality);
}

// The wheel that scrolls a panel changes no value on its way, and a choice, also of the entry that
// was chosen already, gives the keys back to the window.
void MainWindow::SetSettingModeUI()
{
    ui->languageComBox->addItems({tr("English"), tr("中文")});
    ui->qualitySlider->setValue(ImgQuality);
    ui->savepathLineEdit->setText(SaveFolderPath);
}

// The highlight stays with the mode; a page that lies over the mode's marks its button too.
void MainWindow::on_formatComBox_currentIndexChanged(int index)
{
    fImgformat = index;
    focusCentralWidget();
}

void MainWindow::on_cropComBox_currentIndexChanged(int index)
{
    if (index < 0)
        return; // emptied for another language
    cutMode = index;
    showManualCutWhereWanted();
    m_sheetCorners->setActive(index == SmartCrop);
    const bool findsSheets = index == AutomaticCrop || index == MultiGraphCrop;
    if (isOpenCamera && findsSheets && isFirstHint(QStringLiteral("smartCrop")))
        m_feedback->say(tr("Sheets at an angle or on a light desk? Try \"Smart crop\"."));
    focusCentralWidget();
}

void MainWindow::on_colorComBox_currentIndexChanged(int index)
{
    if (index < 0)
        return; // emptied for another language
    colorMode = index;
    focusCentralWidget();
}

void MainWindow::on_nameComBox_currentIndexChanged(int index)
{
    if (index < 0)
        return; // emptied for another language
    const bool isChange = fNameType != index;
    fNameType = index;
    if (isChange && index == NameByNumber && isLoadFormFinish)
        restartNumbering();
    const bool usesText = index == NameByNumber || index == NameCustom || index == NameAsFolder;
    const bool readsCode = index == NameByBarcode;
    ui->customLabel->setEnabled(usesText);
    ui->customTextEdit->setEnabled(usesText);
    ui->numLabel->setEnabled(index == NameByNumber || index == NameCustom);
    ui->numTextEdit->setEnabled(index == NameByNumber);
    ui->barcodeRadioBt->setEnabled(readsCode);
    ui->qrcodeRadioBt->setEnabled(readsCode);
    if (readsCode)
        (BarQrCodeType == 1 ? ui->qrcodeRadioBt : ui->barcodeRadioBt)->setChecked(true);
    focusCentralWidget();
}

// The box is hidden: the naming rule alone decides whether a code is read.
void MainWindow::on_barCheckBox_clicked(bool) {}

void MainWindow::on_barcodeRadioBt_clicked(bool checked)
{
    if (checked)
        BarQrCodeType = 0;
}

void MainWindow::on_qrcodeRadioBt_clicked(bool checked)
{
    if (checked)
        BarQrCodeType = 1;
}

void MainWindow::on_TrimCheckBox_clicked(bool checked)
{
    isDelBlackedge = checked;
}

void MainWindow::on_qualitySlider_valueChanged(int value)
{
    ImgQuality = value;
    ui->jpgQualityLabel->setText(QString::number(value) + QLatin1Char('%'));
}
