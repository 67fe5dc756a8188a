#include "stand/stand_window.h"

#include "stand/button_line.h"
#include "stand/render.h"
#include "stand/stand.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString buttonCaption(const QString &name)
{
    QString text = name;
    text.replace(QLatin1Char('-'), QLatin1Char(' '));
    text[0] = text[0].toUpper();
    return text;
}

} // namespace

StandWindow::StandWindow(Stand &stand)
    : m_stand(stand)
    , m_picture(new QLabel)
    , m_answer(new QLabel)
{
    setWindowTitle(tr("Document camera stand"));
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setMinimumSize(480, 360);
    m_picture->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_picture->setStyleSheet(QStringLiteral("background: #1b1b1d;"));
    m_picture->setAccessibleName(tr("What the camera sees"));
    m_answer->setTextFormat(Qt::PlainText);
    m_answer->setStyleSheet(QStringLiteral("color: #b03a2e;"));
    auto *column = new QVBoxLayout(this);
    column->addWidget(m_picture, 1);
    column->addWidget(makeSceneRow());
    column->addWidget(makeButtonRow());
    column->addWidget(makePlugRow());
    connect(&m_stand, &Stand::sceneChanged, this, &StandWindow::showScene);
    connect(&m_stand, &Stand::plugsChanged, this, &StandWindow::showPlugs);
    resize(640, 640);
    showPlugs();
}

QWidget *StandWindow::makeSceneRow()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_scenes = new QComboBox;
    m_scenes->addItems(sceneNames());
    m_scenes->setCurrentText(m_stand.scene().name);
    auto *label = new QLabel(tr("&Under the camera:"));
    label->setBuddy(m_scenes);
    auto *open = new QPushButton(tr("&Picture..."));
    auto *next = new QPushButton(tr("&Next"));
    auto *turn = new QPushButton(tr("&Turn page"));
    auto *hand = new QPushButton(tr("&Hand"));
    auto *clear = new QPushButton(tr("C&lear"));
    layout->addWidget(label);
    layout->addWidget(m_scenes, 1);
    for (QPushButton *button : {open, next, turn, hand, clear})
        layout->addWidget(button);
    connect(m_scenes, QOverload<const QString &>::of(&QComboBox::textActivated), this,
            [this](const QString &name) { run(QStringLiteral("scene ") + name); });
    connect(open, &QPushButton::clicked, this, &StandWindow::openPicture);
    connect(next, &QPushButton::clicked, this, [this] { run(QStringLiteral("next")); });
    connect(turn, &QPushButton::clicked, this, [this] { run(QStringLiteral("turn")); });
    connect(hand, &QPushButton::clicked, this, [this] { run(QStringLiteral("hand")); });
    connect(clear, &QPushButton::clicked, this, [this] { run(QStringLiteral("clear")); });
    return row;
}

QWidget *StandWindow::makeButtonRow()
{
    auto *grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    const QStringList names = ButtonLine::buttonNames();
    for (int i = 0; i < names.size(); ++i) {
        auto *button = new QPushButton(buttonCaption(names[i]));
        button->setToolTip(tr("Hardware button of the stand"));
        connect(button, &QPushButton::clicked, this,
                [this, name = names[i]] { run(QStringLiteral("press ") + name); });
        grid->addWidget(button, i / 4, i % 4);
    }
    auto *box = new QWidget;
    box->setLayout(grid);
    return box;
}

QWidget *StandWindow::makePlugRow()
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("Plugged in:")));
    for (const QString &device : m_stand.devices()) {
        auto *plug = new QCheckBox(buttonCaption(device));
        plug->setObjectName(device);
        connect(plug, &QCheckBox::clicked, this, [this, device](bool on) {
            run((on ? QStringLiteral("plug ") : QStringLiteral("unplug ")) + device);
        });
        layout->addWidget(plug);
        m_plugs.append(plug);
    }
    layout->addWidget(m_answer, 1);
    return row;
}

void StandWindow::run(const QString &command)
{
    const QString answer = m_stand.command(command);
    m_answer->setText(answer == QLatin1String("ok") ? QString() : answer);
}

void StandWindow::openPicture()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Lay a picture under the camera"));
    if (!path.isEmpty())
        run(QStringLiteral("scene ") + path);
}

void StandWindow::showScene()
{
    const QSize room = m_picture->size().expandedTo({64, 48});
    const QSize size = QSize(4, 3).scaled(room, Qt::KeepAspectRatio);
    const cv::Mat seen = renderScene(m_stand.scene(), {size.width(), size.height()}).bgr;
    const QImage image(seen.data, seen.cols, seen.rows, static_cast<int>(seen.step),
                       QImage::Format_BGR888);
    m_picture->setPixmap(QPixmap::fromImage(image));
    m_scenes->setCurrentIndex(m_scenes->findText(m_stand.scene().name));
}

void StandWindow::showPlugs()
{
    for (QCheckBox *plug : m_plugs)
        plug->setChecked(m_stand.isPlugged(plug->objectName()));
}

void StandWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    showScene();
}
