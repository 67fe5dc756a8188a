#include "features/pdf_export.h"
#include "mainwindow/capture/capture_queue.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/preview_feedback.h"

#include <QCloseEvent>
#include <QMessageBox>

// What has to be finished, or given up, before the program ends.

void MainWindow::closeEvent(QCloseEvent *event)
{
    event->setAccepted(mayLeaveExport() && mayLeaveCaptures());
}

bool MainWindow::mayLeaveExport()
{
    return !m_pdfExport->isRunning() ||
           QMessageBox::question(this, QString(),
                                 tr("A PDF is still being written. Close and give it up?"),
                                 QMessageBox::Close | QMessageBox::Cancel,
                                 QMessageBox::Cancel) == QMessageBox::Close ||
           !m_pdfExport->isRunning();
}

// The first time it waits for them, the second time it asks.
bool MainWindow::mayLeaveCaptures()
{
    if (m_captures->isIdle())
        return true;
    if (!m_isClosing) {
        m_isClosing = true;
        stopPageTurn();
        m_feedback->say(
            tr("%n capture(s) are still being written. The program ends when they are done.",
               nullptr, m_captures->count()));
        return false;
    }
    m_isAskingToClose = true;
    const bool isGivenUp =
        QMessageBox::question(this, QString(),
                              tr("%n capture(s) are still being written. Close and give them up?",
                                 nullptr, m_captures->count()),
                              QMessageBox::Close | QMessageBox::Cancel,
                              QMessageBox::Cancel) == QMessageBox::Close;
    m_isAskingToClose = false;
    if (isGivenUp)
        m_captures->giveUp();
    return isGivenUp || m_captures->isIdle();
}

void MainWindow::endWhenCapturesAreDone()
{
    connect(m_captures, &CaptureQueue::becameIdle, this, [this] {
        if (m_isClosing && !m_isAskingToClose)
            close();
    });
}
