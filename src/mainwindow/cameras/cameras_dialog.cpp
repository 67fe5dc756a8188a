#include "mainwindow/cameras/cameras_dialog.h"

#include "camera/model_tables.h"
#include "camera/user_models.h"
#include "platform/platform.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

enum Column { Name, Id, Use, Enlarged, kColumns };

constexpr int kIdDigits = 8;
constexpr QSize kDialogSize(720, 300);

// "12090002" as people read it: 1209:0002.
QString readableId(const QString &id)
{
    return id.left(kIdDigits / 2) + QLatin1Char(':') + id.right(kIdDigits / 2);
}

QString largestSize(const EnlargedClass &sizes)
{
    QStringList texts;
    for (const std::string_view size : sizes.sizes) {
        if (!size.empty())
            texts.append(QString::fromLatin1(size.data(), static_cast<int>(size.size())));
    }
    return texts.join(QStringLiteral(", "));
}

UserModel modelOf(const QString &id)
{
    if (const UserModel *known = userModel(id))
        return *known;
    const QString vendor = id.left(kIdDigits / 2), product = id.right(kIdDigits / 2);
    UserModel model{id, UserModel::Unused, -1};
    if (isMainModel(vendor, product))
        model.use = UserModel::Main;
    else if (assistModelRows(vendor, product) > 0)
        model.use = UserModel::Assist;
    return model;
}

QComboBox *boxIn(const QTableWidget *table, int row, int column)
{
    return qobject_cast<QComboBox *>(table->cellWidget(row, column));
}

} // namespace

CamerasDialog::CamerasDialog(QWidget *parent)
    : QDialog(parent)
    , m_table(new QTableWidget(0, kColumns, this))
{
    setWindowTitle(tr("Cameras"));
    m_table->setHorizontalHeaderLabels(
        {tr("Camera"), tr("ID"), tr("Used as"), tr("Enlarged sizes")});
    m_table->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    m_table->verticalHeader()->hide();
    m_table->setSelectionMode(QAbstractItemView::NoSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);

    QStringList listed; // equal cameras are one model
    const QList<CameraInfo> cameras = platform().cameras();
    for (const CameraInfo &camera : cameras) {
        const QString id = camera.uniqueId.right(kIdDigits);
        if (listed.contains(id))
            continue;
        listed.append(id);
        const UserModel model = modelOf(id);
        const int row = m_table->rowCount();
        m_table->insertRow(row);
        m_table->setItem(row, Name, new QTableWidgetItem(camera.description));
        auto *idItem = new QTableWidgetItem(readableId(id));
        idItem->setData(Qt::UserRole, id);
        m_table->setItem(row, Id, idItem);
        auto *use = new QComboBox;
        use->setAccessibleName(tr("Used as"));
        use->addItems({tr("Main camera"), tr("Assist camera"), tr("Not at all")});
        use->setCurrentIndex(model.use);
        m_table->setCellWidget(row, Use, use);
        auto *enlarged = new QComboBox;
        enlarged->setAccessibleName(tr("Enlarged sizes"));
        enlarged->addItem(tr("None"));
        for (const EnlargedClass &sizes : enlargedClasses())
            enlarged->addItem(largestSize(sizes));
        enlarged->setCurrentIndex(model.enlarged + 1);
        m_table->setCellWidget(row, Enlarged, enlarged);
    }
    m_table->resizeColumnsToContents();
    m_table->horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CamerasDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(listed.isEmpty() ? tr("No camera is plugged in.")
                                                  : tr("Choose what each camera is used as."),
                                 this));
    layout->addWidget(m_table);
    layout->addWidget(buttons);
    resize(kDialogSize);
}

// Only what differs is kept: the tables go on speaking for the other cameras.
void CamerasDialog::accept()
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const UserModel before = modelOf(m_table->item(row, Id)->data(Qt::UserRole).toString());
        UserModel chosen = before;
        chosen.use = static_cast<UserModel::Use>(boxIn(m_table, row, Use)->currentIndex());
        chosen.enlarged = boxIn(m_table, row, Enlarged)->currentIndex() - 1;
        if (chosen.use != before.use || chosen.enlarged != before.enlarged)
            setUserModel(chosen);
    }
    QDialog::accept();
}
