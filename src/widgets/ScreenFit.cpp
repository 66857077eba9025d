#include "widgets/ScreenFit.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QPointer>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QStringList>
#include <QWidget>

#include <algorithm>

namespace corvane {

QRect placedInside(const QRect& frame, const QRect& available)
{
    if (!available.isValid())
        return frame;
    QRect placed = frame;
    placed.setWidth(std::min(frame.width(), available.width()));
    placed.setHeight(std::min(frame.height(), available.height()));
    placed.moveLeft(std::clamp(frame.left(), available.left(), available.right() - placed.width() + 1));
    placed.moveTop(std::clamp(frame.top(), available.top(), available.bottom() - placed.height() + 1));
    return placed;
}

int balancedWrapWidth(const QString& text, const QFontMetrics& metrics, int preferred, int limit)
{
    limit = std::max(limit, 1);
    const auto heightAt = [&](int width) {
        return metrics.boundingRect(QRect(0, 0, width, 1 << 24), Qt::AlignLeft | Qt::TextWordWrap, text).height();
    };
    int longestWord = 1;
    for (const QString& word : text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts))
        longestWord = std::max(longestWord, metrics.horizontalAdvance(word));
    const int widest = std::min(std::max(preferred, longestWord), limit);
    // The line count at the widest width, then the narrowest width that keeps it.
    const int lines = heightAt(widest);
    int low = std::min(longestWord, widest);
    int high = widest;
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (heightAt(middle) <= lines)
            high = middle;
        else
            low = middle + 1;
    }
    return high;
}

namespace {

// Asks for the whole page where the screen has room for it (a plain scroll area asks for a
// fixed share of the font's size, and the window would open with its page scrolled); the
// screen's own limits then cut it down, and the area's small minimum lets the window shrink.
class PageScrollArea final : public QScrollArea {
public:
    QSize sizeHint() const override
    {
        if (!widget())
            return QScrollArea::sizeHint();
        const int frame = 2 * frameWidth();
        return widget()->sizeHint() + QSize(frame, frame);
    }
};

} // namespace

QWidget* scrolledPage(QWidget* page)
{
    auto* area = new PageScrollArea;
    area->setObjectName(page->objectName() + QStringLiteral("Scroll"));
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(page);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](QWidget*, QWidget* now) {
        if (now && area->widget() && area->widget()->isAncestorOf(now))
            area->ensureWidgetVisible(now);
    });
    return area;
}

void KeepWindowsOnScreen::fit(QWidget& window)
{
    const QScreen* screen = window.screen();
    if (!screen || !window.isVisible() || window.isMaximized() || window.isFullScreen())
        return;
    const QRect frame = window.frameGeometry();
    const QRect placed = placedInside(frame, screen->availableGeometry());
    if (placed == frame)
        return;
    // The frame's borders and title bar stay as the window manager drew them.
    const QSize decoration = frame.size() - window.size();
    if (placed.size() != frame.size())
        window.resize((placed.size() - decoration).expandedTo(window.minimumSize()));
    window.move(placed.topLeft());
}

namespace {

// A window first shown smaller than its contents ask for (a window takes at most two thirds of
// its screen at first) takes what they ask for, as far as the screen's free area goes.
void openAtItsSize(QWidget& window)
{
    const QScreen* screen = window.screen();
    const QSize wanted = window.sizeHint();
    if (!screen || !wanted.isValid() || window.isMaximized() || window.isFullScreen())
        return;
    const QSize room = screen->availableGeometry().size();
    const QSize size = window.size().expandedTo(wanted.boundedTo(room)).boundedTo(window.maximumSize());
    if (size != window.size())
        window.resize(size);
}

} // namespace

bool KeepWindowsOnScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->isWindow() && qobject_cast<QDialog*>(widget) && !widget->property("placedOnce").toBool()) {
            widget->setProperty("placedOnce", true);
            openAtItsSize(*widget);
        }
    }
    // A window manager that frames the window moves it: its frame is known from then on.
    if (event->type() == QEvent::Show || event->type() == QEvent::Resize || event->type() == QEvent::Move) {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->isWindow() && widget->windowType() != Qt::Popup
            && widget->windowType() != Qt::ToolTip) {
            // Once the window manager has placed it and the layout has settled.
            QMetaObject::invokeMethod(
                this,
                [window = QPointer<QWidget>(widget)] {
                    if (window)
                        fit(*window);
                },
                Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corvane
