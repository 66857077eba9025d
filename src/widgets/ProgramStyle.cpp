#include "widgets/ProgramStyle.h"

#include "widgets/ScreenFit.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QStyleOption>
#include <QTextEdit>

namespace corvane {
namespace {

// A multi-line text box draws its background from its viewport, not through the style: it
// follows its read-only state by a palette of its own, kept up as the state changes.
class ReadOnlyTextBackground final : public QObject {
public:
    using QObject::QObject;

    static bool readOnly(const QWidget* widget, bool& known)
    {
        known = true;
        if (const auto* plain = qobject_cast<const QPlainTextEdit*>(widget))
            return plain->isReadOnly();
        if (const auto* rich = qobject_cast<const QTextEdit*>(widget))
            return rich->isReadOnly();
        known = false;
        return false;
    }

    static void update(QWidget* widget)
    {
        bool known = false;
        const bool locked = readOnly(widget, known);
        auto* area = qobject_cast<QAbstractScrollArea*>(widget);
        if (!known || !area)
            return;
        QPalette palette = area->viewport()->palette();
        const QColor wanted = locked ? ProgramStyle::readOnlyBackground(widget->palette())
                                     : widget->palette().color(QPalette::Active, QPalette::Base);
        if (palette.color(QPalette::Active, QPalette::Base) == wanted)
            return;
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, QPalette::Base, wanted);
        area->viewport()->setPalette(palette);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // setReadOnly changes the widget's input-method and cursor state: both send these.
        if (event->type() == QEvent::ReadOnlyChange || event->type() == QEvent::Show
            || event->type() == QEvent::EnabledChange)
            update(static_cast<QWidget*>(watched));
        return QObject::eventFilter(watched, event);
    }
};

ReadOnlyTextBackground& textBackgrounds()
{
    static auto* filter = new ReadOnlyTextBackground(qApp);
    return *filter;
}

} // namespace

QColor ProgramStyle::readOnlyBackground(const QPalette& palette)
{
    return palette.color(QPalette::Active, QPalette::Window);
}

void ProgramStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    if (element == PE_PanelLineEdit && option && (option->state & State_ReadOnly)
        && (option->state & State_Enabled)) {
        if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option)) {
            QStyleOptionFrame frameCopy(*frame);
            frameCopy.palette.setColor(QPalette::Base, readOnlyBackground(option->palette));
            QProxyStyle::drawPrimitive(element, &frameCopy, painter, widget);
            return;
        }
        QStyleOption copy(*option);
        copy.palette.setColor(QPalette::Base, readOnlyBackground(option->palette));
        QProxyStyle::drawPrimitive(element, &copy, painter, widget);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
    QStyleHintReturn* returnData) const
{
    // A group box's title is drawn in this colour whatever its state: greyed when disabled.
    if (hint == SH_GroupBox_TextLabelColor && option && !(option->state & State_Enabled))
        return static_cast<int>(option->palette.color(QPalette::Disabled, QPalette::WindowText).rgba());
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

void ProgramStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    bool known = false;
    ReadOnlyTextBackground::readOnly(widget, known);
    if (known) {
        widget->installEventFilter(&textBackgrounds());
        ReadOnlyTextBackground::update(widget);
    }
}

void ProgramStyle::unpolish(QWidget* widget)
{
    widget->removeEventFilter(&textBackgrounds());
    QProxyStyle::unpolish(widget);
}

void applyProgramLook(QApplication& application)
{
    QApplication::setStyle(new ProgramStyle);
    application.installEventFilter(new KeepWindowsOnScreen(&application));
}

} // namespace corvane
