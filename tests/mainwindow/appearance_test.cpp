#include "mainwindow/shown_window.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOptionComboBox>
#include <QToolButton>

#include <cmath>
#include <map>

namespace {

int textWidth(const QWidget *widget, const QString &text)
{
    return widget->fontMetrics().size(Qt::TextShowMnemonic, text).width();
}

int roomForItems(const QComboBox *box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    return box->style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, box)
        .width();
}

double luminance(QRgb color)
{
    const auto linear = [](int value) {
        const double v = value / 255.0;
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
           0.0722 * linear(qBlue(color));
}

double contrast(QRgb a, QRgb b)
{
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

/// Contrast of the writing in `area` with what lies behind it: the colour that fills most of the
/// area, and the one farthest from it that more than a stray pixel has.
double writingContrast(const QImage &picture, const QRect &area)
{
    std::map<QRgb, int> counts;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            ++counts[picture.pixel(x, y)];
    const QRgb ground = std::max_element(counts.begin(), counts.end(), [](auto &a, auto &b) {
                            return a.second < b.second;
                        })->first;
    double best = 1;
    for (const auto &[color, count] : counts)
        if (count >= 8)
            best = std::max(best, contrast(color, ground));
    return best;
}

QPalette darkPalette()
{
    QPalette palette(QColor(49, 54, 59), QColor(35, 38, 41));
    palette.setColor(QPalette::Highlight, QColor(61, 174, 233));
    return palette;
}

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) ||
           qobject_cast<const QAbstractItemView *>(widget);
}

QString panelOf(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget())
        for (const char *panel : {"ImgListwidget", "displayWidget", "toolWidget", "stackedWidget",
                                  "funWidget", "scanBtWidget"})
            if (widget->objectName() == QLatin1String(panel))
                return widget->objectName();
    return {};
}

} // namespace

class Appearance : public ShownWindow
{
protected:
    void expectFits(const QWidget *widget, int needed, int room, const QString &text)
    {
        EXPECT_LE(needed, room) << widget->objectName().toStdString() << ": " << text.toStdString();
        EXPECT_GE(widget->height(), widget->fontMetrics().height())
            << widget->objectName().toStdString();
        ++measured;
    }

    void measurePage()
    {
        for (const QLabel *label : visible<QLabel>())
            if (!label->text().isEmpty() && !label->wordWrap())
                expectFits(label, label->minimumSizeHint().width(), label->width(), label->text());
        for (const QGroupBox *box : visible<QGroupBox>())
            expectFits(box, textWidth(box, box->title()), box->width(), box->title());
        for (const QAbstractButton *button : visible<QAbstractButton>()) {
            const auto *tool = qobject_cast<const QToolButton *>(button);
            if (button->text().isEmpty() ||
                (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly))
                continue;
            const bool isTick = qobject_cast<const QCheckBox *>(button) ||
                                qobject_cast<const QRadioButton *>(button);
            int needed = textWidth(button, button->text()) + 4;
            if (isTick)
                needed = button->sizeHint().width();
            else if (!tool && !button->icon().isNull())
                needed += button->iconSize().width() + 12;
            expectFits(button, needed, button->width(), button->text());
        }
        for (const QComboBox *box : visible<QComboBox>())
            for (int i = 0; i < box->count(); ++i)
                if (box->objectName() != QLatin1String("deviceComBox"))
                    expectFits(box, textWidth(box, box->itemText(i)), roomForItems(box),
                               box->itemText(i));
        const auto *pages = find<QStackedWidget>("stackedWidget");
        for (const QWidget *widget : pages->currentWidget()->findChildren<QWidget *>()) {
            if (!widget->isVisible() || !isControl(widget))
                continue;
            const QRect place(widget->mapTo(pages, QPoint(0, 0)), widget->size());
            EXPECT_TRUE(pages->rect().contains(place)) << widget->objectName().toStdString();
        }
    }

    // Icons would hide a pale text.
    void removeIcons()
    {
        for (QAbstractButton *button : window->findChildren<QAbstractButton *>())
            button->setIcon(QIcon());
    }

    void expectReadable(const char *theme)
    {
        constexpr int scale = 3; // so that strokes have an inside
        QImage picture(window->size() * scale, QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        window->render(&picture);
        const auto expectContrast = [&](const QWidget *widget, QRect area) {
            area.moveTopLeft(widget->mapTo(window.get(), area.topLeft()));
            const QRect inside = area.adjusted(3, 2, -3, -2);
            if (!widget->isEnabled() || !window->rect().contains(inside))
                return;
            const QRect pixels(inside.topLeft() * scale, inside.size() * scale);
            EXPECT_GE(writingContrast(picture, pixels), 4.5)
                << theme << " " << widget->objectName().toStdString();
            ++measured;
        };
        for (const QLabel *label : visible<QLabel>())
            if (!label->text().isEmpty())
                expectContrast(label, label->rect());
        for (const QAbstractButton *button : visible<QAbstractButton>())
            if (!button->text().isEmpty())
                expectContrast(button, button->rect());
        for (const QGroupBox *box : visible<QGroupBox>())
            expectContrast(box, {0, 0, box->width(), box->fontMetrics().height() + 2});
        for (const QComboBox *box : visible<QComboBox>())
            if (box->count() > 0)
                expectContrast(box, {0, 0, roomForItems(box), box->height()});
        for (const QLineEdit *edit : visible<QLineEdit>())
            if (!edit->text().isEmpty())
                expectContrast(edit, edit->rect());
        for (const QAbstractItemView *list : visible<QAbstractItemView>())
            expectContrast(list->viewport(), list->viewport()->rect());
    }

    int measured = 0;
};

TEST_F(Appearance, NothingIsCutOffInEitherLanguage)
{
    open();
    for (int language : {0, 1}) {
        speak(language);
        for (int page = 0; page < kPages; ++page) {
            showPage(page);
            ASSERT_EQ(window->size(), QSize(860, 660));
            SCOPED_TRACE(testing::Message() << "language " << language << ", page " << page);
            measurePage();
        }
    }
    EXPECT_GT(measured, 200);
}

TEST_F(Appearance, EveryTextStandsOutInLightAndDark)
{
    for (const bool isDark : {false, true}) {
        QApplication::setPalette(isDark ? darkPalette() : QPalette());
        open();
        find<QComboBox>("cropComBox")->setCurrentIndex(ManualCrop);
        window->wiseCaptrueEvent(true);
        find<QAbstractButton>("bt_captrue")->click(); // says that there is no camera
        for (int page = 0; page < kPages; ++page) {
            find<QAbstractButton>(page % 2 ? "bt_multipdf" : "bt_document")->click();
            showPage(page);
            removeIcons();
            SCOPED_TRACE(testing::Message() << "page " << page);
            expectReadable(isDark ? "dark" : "light");
        }
        window.reset();
    }
    EXPECT_GT(measured, 200);
}

TEST_F(Appearance, TabReachesEveryControlPanelByPanel)
{
    open();
    for (int page = 0; page < kPages; ++page) {
        showPage(page);
        SCOPED_TRACE(testing::Message() << "page " << page);
        QWidget *start = window->centralWidget();
        start->setFocus();
        QList<QWidget *> reached;
        QStringList panels;
        for (int step = 0; step < 200; ++step) {
            QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
            QWidget *now = window->focusWidget();
            if (now == start || reached.contains(now))
                break;
            reached.append(now);
            const QString panel = panelOf(now);
            if (!panel.isEmpty() && (panels.isEmpty() || panels.last() != panel))
                panels.append(panel);
        }
        EXPECT_EQ(QSet<QString>(panels.begin(), panels.end()).size(), panels.size())
            << panels.join(' ').toStdString();
        for (QWidget *control : visible<QWidget>()) {
            if (!isControl(control) || !control->isEnabled() || control->objectName().isEmpty() ||
                control->objectName().startsWith("qt_") || panelOf(control).isEmpty())
                continue;
            const auto *radio = qobject_cast<QRadioButton *>(control);
            if (radio && !radio->isChecked())
                continue; // the arrow keys go on from the chosen one
            EXPECT_TRUE(reached.contains(control)) << control->objectName().toStdString();
        }
    }
}

// What a screen reader says of everything that can have the focus.
TEST_F(Appearance, TellsWhatEveryControlIs)
{
    open();
    find<QComboBox>("cropComBox")->setCurrentIndex(ManualCrop);
    for (int page = 0; page < kPages; ++page) {
        showPage(page);
        for (QWidget *widget : visible<QWidget>()) {
            if (!(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy())
                continue;
            SCOPED_TRACE(widget->metaObject()->className() +
                         (" " + widget->objectName().toStdString()));
            const QAccessibleInterface *told = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(told, nullptr);
            EXPECT_NE(told->role(), QAccessible::NoRole);
            EXPECT_EQ(told->role() == QAccessible::Client, widget == window->centralWidget());
            EXPECT_FALSE(told->text(QAccessible::Name).isEmpty());
            const bool isExplained = !isControl(widget) || !widget->toolTip().isEmpty();
            EXPECT_TRUE(isExplained && !widget->objectName().isEmpty());
            ++measured;
        }
    }
    EXPECT_GT(measured, 60);
}
