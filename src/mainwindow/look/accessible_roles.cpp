#include "mainwindow/look/accessible_roles.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace {

QAccessibleInterface *accessibleFor(const QString &className, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget && className == QLatin1String("Gr_View"))
        return new QAccessibleWidget(widget, QAccessible::Graphic);
    if (widget && className == QLatin1String("ManualCutOverlay"))
        return new QAccessibleWidget(widget, QAccessible::Canvas);
    return nullptr;
}

} // namespace

void installAccessibleRoles()
{
    QAccessible::installFactory(accessibleFor);
}
