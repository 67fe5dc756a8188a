#include "mainwindow/cameras/camera_offer.h"

#include "camera/user_models.h"
#include "platform/platform.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int kIdDigits = 8;
constexpr int kEdge = 12;     // distance to the preview's edges, pixels
constexpr int kOffersMax = 6; // more would cover the preview

} // namespace

CameraOffer::CameraOffer(QWidget *preview)
    : QWidget(preview)
    , m_preview(preview)
{
    setObjectName(QStringLiteral("cameraOffer"));
    setAutoFillBackground(true);
    preview->installEventFilter(this);
    hide();
}

void CameraOffer::offer(bool wanted)
{
    if (wanted)
        list();
    setVisible(wanted && !m_shown.isEmpty());
    if (isVisible())
        place();
}

// Built anew only when something changed, so that a button does not go while it is pressed.
void CameraOffer::list()
{
    QList<CameraInfo> offered;
    QStringList rows{tr("Use this camera")};
    const QList<CameraInfo> cameras = platform().cameras();
    for (const CameraInfo &camera : cameras) {
        const QString id = camera.uniqueId.right(kIdDigits);
        if (userModel(id) || offered.size() >= kOffersMax)
            continue;
        offered.append(camera);
        rows.append(camera.uniqueId + camera.description);
    }
    if (offered.isEmpty())
        rows.clear();
    if (rows == m_shown)
        return;
    m_shown = rows;
    qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
    delete layout();
    auto *grid = new QGridLayout(this);
    for (int row = 0; row < offered.size(); ++row) {
        const QString id = offered[row].uniqueId.right(kIdDigits);
        auto *name = new QLabel(offered[row].description, this);
        name->setTextFormat(Qt::PlainText);
        auto *button = new QPushButton(tr("Use this camera"), this);
        button->setAccessibleDescription(offered[row].description);
        button->setFocusPolicy(Qt::TabFocus);
        // Queued: what follows hides the buttons, and this one is still being pressed.
        connect(
            button, &QPushButton::clicked, this,
            [this, id] {
                setUserModel({id, UserModel::Main, -1});
                emit chosen();
            },
            Qt::QueuedConnection);
        grid->addWidget(name, row, 0);
        grid->addWidget(button, row, 1);
    }
}

void CameraOffer::place()
{
    const QSize size = sizeHint().boundedTo(m_preview->size());
    setGeometry((m_preview->width() - size.width()) / 2,
                m_preview->height() - size.height() - kEdge, size.width(), size.height());
    raise();
}

bool CameraOffer::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_preview && event->type() == QEvent::Resize && isVisible())
        place();
    return QWidget::eventFilter(watched, event);
}
