#pragma once

#include <QProxyStyle>

class QApplication;

namespace corvane {

// The program's look over the desktop's style: a field that cannot be typed into has the
// window's background instead of an editable field's, and a disabled group box greys its title
// with its contents.
class ProgramStyle final : public QProxyStyle {
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption* option = nullptr, const QWidget* widget = nullptr,
        QStyleHintReturn* returnData = nullptr) const override;
    void polish(QWidget* widget) override;
    void unpolish(QWidget* widget) override;
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    // The background a read-only field is drawn on.
    static QColor readOnlyBackground(const QPalette& palette);
};

// The program's style and its keeping of windows on their screens, for the whole application.
void applyProgramLook(QApplication& application);

} // namespace corvane
