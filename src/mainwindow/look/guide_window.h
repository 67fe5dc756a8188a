#pragma once

#include <QDialog>

class QListWidget;
class QTextBrowser;

/// The user guide in the language of the window, with its chapters at the left. Deletes itself when
/// it is closed. GUI thread.
class GuideWindow : public QDialog
{
    Q_OBJECT

public:
    explicit GuideWindow(QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;

private:
    void load();
    void listChapters();
    void goTo(int chapter);

    QListWidget *m_chapters;
    QTextBrowser *m_text;
};

/// The guide's file for the language `language`, see sLanguage.
QString guidePath(int language);
