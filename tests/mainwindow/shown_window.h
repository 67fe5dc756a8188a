#pragma once

#include "app/paths.h"
#include "app/settings.h"
#include "app/state.h"
#include "mainwindow/mainwindow.h"
#include "support/fake_platform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QStackedWidget>
#include <QTest>

#include <gtest/gtest.h>

/// The whole window at its smallest size, with a camera that is never opened, and its pages.
class ShownWindow : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(settingsPath());
        auto *fake = FakePlatform::install();
        fake->cameraList = {{QStringLiteral("camera-12090001"), QStringLiteral("Fake camera")}};
        fake->probe = QStringLiteral("true");
        QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 15)); // large and wide
        resetState();
    }
    void TearDown() override
    {
        window.reset();
        setPlatform(nullptr);
        resetState();
        QApplication::setPalette(QPalette());
        QApplication::setFont(m_usualFont);
    }

    static void resetState()
    {
        fImgformat = fNameType = colorMode = sLanguage = cutMode = BarQrCodeType = 0;
        op_width = op_height = 0;
        isOpenCamera = isOpenAssistCam = isTimerDoing = false;
    }

    void open()
    {
        window = std::make_unique<MainWindow>();
        window->resize(860, 660);
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    void speak(int language)
    {
        find<QComboBox>("languageComBox")->setCurrentIndex(language);
        QCoreApplication::processEvents();
    }

    /// A panel with everything on it in sight.
    void showPage(int page)
    {
        find<QStackedWidget>("stackedWidget")->setCurrentIndex(page);
        for (const char *name : {"exportProgressBar", "bt_cancelexport", "bt_openpdf"})
            find<QWidget>(name)->show();
        QCoreApplication::processEvents();
    }

    template <class T>
    T *find(const char *name) const
    {
        T *widget = window->findChild<T *>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no widget %s", name);
        return widget;
    }

    template <class T>
    QList<T *> visible() const
    {
        QList<T *> widgets;
        for (T *widget : window->findChildren<T *>())
            if (widget->isVisible() && widget->window() == window.get())
                widgets.append(widget);
        return widgets;
    }

    static constexpr int kPages = 6;
    std::unique_ptr<MainWindow> window;

private:
    const QFont m_usualFont = QApplication::font();
};
