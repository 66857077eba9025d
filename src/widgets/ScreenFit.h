#pragma once

#include <QObject>
#include <QRect>

class QFontMetrics;
class QString;
class QWidget;

namespace corvane {

// Where a window's frame goes so that it lies on its screen: moved in as little as it takes,
// and no larger than the screen's free area (its size is cut to it, its top left kept inside).
QRect placedInside(const QRect& frame, const QRect& available);

// The width at which `text` wraps into the fewest lines that `preferred` gives it, each as
// long as the others can be: the narrowest width that keeps that count of lines. No word is
// ever broken, so a longer word widens it, up to `limit` (the screen's width).
int balancedWrapWidth(const QString& text, const QFontMetrics& metrics, int preferred, int limit);

// `page` in a frameless scroll area of its own, for a page that may be taller or wider than the
// window holding it on a small screen: the area takes no keyboard stop of its own, and the control
// that gets the focus is scrolled into view.
QWidget* scrolledPage(QWidget* page);

// Keeps every window of the program on its screen: when a window is shown, or changes its size
// while shown, so that its frame would lie partly outside the free area of its screen, it is
// moved (and if need be shrunk) into it. Installed once on the application.
class KeepWindowsOnScreen final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;
    // Fits one window now, as the filter does on its own.
    static void fit(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace corvane
