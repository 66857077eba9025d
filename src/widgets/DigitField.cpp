#include "widgets/DigitField.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>

namespace corvane {

DigitField::DigitField(QLineEdit& field, TypedKeys keys)
    : QObject(&field)
    , keys_(keys)
{
    field.installEventFilter(this);
    field.setContextMenuPolicy(Qt::NoContextMenu);
    field.setAcceptDrops(false);
}

void DigitField::apply(QLineEdit& field, TypedKeys keys)
{
    new DigitField(field, keys); // the field owns it
}

bool DigitField::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const QString text = key->text();
        if (key->matches(QKeySequence::Paste) || std::any_of(text.cbegin(), text.cend(), [this](QChar c) {
                return typedCharacterDiscarded(c.unicode(), keys_);
            }))
            return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corvane
