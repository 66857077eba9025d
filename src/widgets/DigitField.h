#pragma once

#include "runtime/KeyFilter.h"

#include <QObject>

class QLineEdit;

namespace corvane {

// Makes a line edit take digits by typing only, as its key filter says: any other typed
// character is dropped, and so are pastes, dropped text and the context menu's paste. Keys that
// type nothing keep their work, so a keyboard user is never trapped in the field.
class DigitField : public QObject {
    Q_OBJECT

public:
    static void apply(QLineEdit& field, TypedKeys keys = TypedKeys::DigitsAndBackspace);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    DigitField(QLineEdit& field, TypedKeys keys);
    TypedKeys keys_;
};

} // namespace corvane
