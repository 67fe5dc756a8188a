#include "mainwindow/cameras/picture_dialog.h"

#include "mainwindow/cameras/picture_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace {

constexpr std::array<const char *, CameraControl::kKinds> kNames = {
    QT_TRANSLATE_NOOP("PictureDialog", "Brightness"),
    QT_TRANSLATE_NOOP("PictureDialog", "Contrast"),
    QT_TRANSLATE_NOOP("PictureDialog", "Saturation"),
    QT_TRANSLATE_NOOP("PictureDialog", "Sharpness"),
    QT_TRANSLATE_NOOP("PictureDialog", "Flicker of lamps"),
    QT_TRANSLATE_NOOP("PictureDialog", "Automatic exposure"),
    QT_TRANSLATE_NOOP("PictureDialog", "Exposure"),
    QT_TRANSLATE_NOOP("PictureDialog", "Automatic white balance"),
    QT_TRANSLATE_NOOP("PictureDialog", "White balance"),
    QT_TRANSLATE_NOOP("PictureDialog", "Automatic focus"),
    QT_TRANSLATE_NOOP("PictureDialog", "Focus"),
};
constexpr int kDialogWidth = 420;
constexpr int kSliderWidth = 180;

// Those of the power line are the same for every driver; others are the driver's own words.
QString entryText(const CameraControl &control, const CameraControl::Entry &entry)
{
    constexpr std::array<const char *, 4> kPowerLine = {
        QT_TRANSLATE_NOOP("PictureDialog", "Not corrected"),
        QT_TRANSLATE_NOOP("PictureDialog", "50 Hz (Europe, China)"),
        QT_TRANSLATE_NOOP("PictureDialog", "60 Hz (America)"),
        QT_TRANSLATE_NOOP("PictureDialog", "Automatic")};
    const bool isKnown = control.kind == CameraControl::PowerLine && entry.value >= 0 &&
                         entry.value < static_cast<int>(kPowerLine.size());
    return isKnown ? PictureDialog::tr(kPowerLine[static_cast<size_t>(entry.value)]) : entry.text;
}

bool isAlike(const CameraControl &a, const CameraControl &b)
{
    return a.kind == b.kind && a.min == b.min && a.max == b.max && a.step == b.step &&
           a.menu.size() == b.menu.size();
}

} // namespace

PictureDialog::PictureDialog(PictureControls *controls, QWidget *parent)
    : QDialog(parent)
    , m_controls(controls)
    , m_form(new QFormLayout)
    , m_hint(new QLabel(this))
    , m_defaults(new QPushButton(tr("Defaults"), this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Picture"));
    m_hint->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(m_defaults, QDialogButtonBox::ResetRole);
    m_defaults->setAutoDefault(false); // Enter closes
    connect(m_defaults, &QPushButton::clicked, m_controls, &PictureControls::setDefaults);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_hint);
    layout->addLayout(m_form);
    layout->addStretch();
    layout->addWidget(buttons);
    connect(m_controls, &PictureControls::changed, this, &PictureDialog::showList);
    showList();
    resize(kDialogWidth, sizeHint().height());
}

void PictureDialog::showList()
{
    const QList<CameraControl> &list = m_controls->list();
    if (!std::equal(list.begin(), list.end(), m_built.begin(), m_built.end(), isAlike))
        build();
    m_hint->setText(tr("This camera lets nothing be chosen."));
    m_hint->setVisible(list.isEmpty());
    m_defaults->setEnabled(!list.isEmpty());
    showValues();
}

void PictureDialog::build()
{
    while (m_form->rowCount() > 0)
        m_form->removeRow(0);
    m_editors.clear();
    m_built = m_controls->list();
    for (const CameraControl &control : qAsConst(m_built)) {
        QWidget *made = editor(control);
        const QString name = tr(kNames[control.kind]);
        made->setAccessibleName(name);
        m_editors[control.kind] = made;
        if (auto *box = qobject_cast<QCheckBox *>(made))
            m_form->addRow(box);
        else
            m_form->addRow(name, made);
    }
}

QWidget *PictureDialog::editor(const CameraControl &control)
{
    const CameraControl::Kind kind = control.kind;
    if (isAutomatic(kind)) {
        auto *box = new QCheckBox(tr(kNames[kind]));
        connect(box, &QCheckBox::toggled, this,
                [this, kind](bool isOn) { m_controls->set(kind, isOn ? 1 : 0); });
        return box;
    }
    if (!control.menu.isEmpty()) {
        auto *box = new QComboBox;
        for (const CameraControl::Entry &entry : control.menu)
            box->addItem(entryText(control, entry), entry.value);
        connect(box, QOverload<int>::of(&QComboBox::activated), this,
                [this, box, kind](int) { m_controls->set(kind, box->currentData().toInt()); });
        return box;
    }
    // The slider counts the driver's steps.
    auto *slider = new QSlider(Qt::Horizontal);
    slider->setMinimumWidth(kSliderWidth);
    slider->setRange(0, (control.max - control.min) / control.step);
    slider->setPageStep(std::max(1, slider->maximum() / 10));
    connect(slider, &QSlider::valueChanged, this, [this, control](int steps) {
        m_controls->set(control.kind, control.min + steps * control.step);
    });
    return slider;
}

void PictureDialog::showValues()
{
    QMap<CameraControl::Kind, int> values;
    for (const CameraControl &control : m_controls->list())
        values[control.kind] = control.value;
    for (const CameraControl &control : m_controls->list()) {
        QWidget *widget = m_editors[control.kind];
        const CameraControl::Kind ruler = automaticOf(control.kind);
        widget->setEnabled(ruler == control.kind || values.value(ruler) == 0);
        const QSignalBlocker quiet(widget);
        if (auto *check = qobject_cast<QCheckBox *>(widget))
            check->setChecked(control.value != 0);
        else if (auto *box = qobject_cast<QComboBox *>(widget))
            box->setCurrentIndex(box->findData(control.value));
        else if (auto *slider = qobject_cast<QSlider *>(widget); !slider->isSliderDown())
            slider->setValue((control.value - control.min) / control.step);
    }
}
