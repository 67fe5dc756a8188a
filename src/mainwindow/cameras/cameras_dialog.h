#pragma once

#include <QDialog>

/// Every camera of the system with its name, its IDs and what it is used as; here the user adds a
/// camera that the tables do not know. What he chooses is kept when he accepts. GUI thread.
class CamerasDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CamerasDialog(QWidget *parent = nullptr);

    void accept() override;

private:
    class QTableWidget *m_table;
};
