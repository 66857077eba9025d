#pragma once

#include "commparms/FieldCatalogue.h"
#include "commparms/ParmsRules.h"
#include "commparms/PortParms.h"

#include <QWidget>

#include <string>
#include <string_view>
#include <vector>

class QAbstractButton;
class QButtonGroup;
class QComboBox;
class QLineEdit;

namespace corvane {

class ParmsLink;
struct Services;

// What a page of the parameter editor works on: the shown port's records, the editor's flags,
// and how a rule's outcome reaches the user. The editor itself answers.
class ParmsEditing {
public:
    virtual ~ParmsEditing() = default;
    virtual PortCommParms& comm() = 0;
    virtual DataCollectionParms& collection() = 0;
    virtual std::int16_t currentPort() const = 0;
    virtual EditorFlags flags() const = 0;
    virtual ParmsLink& link() = 0;
    virtual Services& services() = 0;
    // A field was changed: ParmsChanged is set, every control's enabled state follows the
    // record, and the rule's messages are shown in order. A choice that may have moved values
    // other controls show (`showAll`) has the whole record shown again first; a field being
    // typed into is never shown again under the user's hands.
    virtual void changed(const RuleOutcome& outcome = {}, bool showAll = false) = 0;
};

// One tab of the editor: shows the records in its controls (no handler runs while it does) and
// enables them as the record says; its handlers call the rules through the editor.
class CommParmsPage : public QWidget {
    Q_OBJECT

public:
    CommParmsPage(ParmsEditing& editor, QWidget* parent);
    // The fields whose control edits them plainly, as the field catalogue lists them (a check
    // box, a text, a count, an ASCII value, an option group with no rule of its own): each one
    // found on this page is taken in and shown from its catalogue row, so that such a field
    // needs no code of the page's own.
    void bindPlainFields();
    void showPlainFields();
    // What the page shows beyond its plain fields.
    virtual void showRecord() = 0;
    virtual void showStates() = 0;

protected:
    // Sets a field's text only when it differs, so that the caret of a field being typed into
    // stays where it is.
    static void show(QLineEdit& field, const std::string& text);
    static void show(QAbstractButton& box, bool ticked);
    static void showIndex(QComboBox& list, int index);
    // The option button whose id is `code`; none when no button has it.
    static void showChoice(QButtonGroup& group, int code);
    // Option buttons named `prefix` + "_" + code, as one group that reports the code.
    // The option buttons of a field's group, by code, and a list filled with a field's choices,
    // both as the field catalogue gives them.
    QButtonGroup& choices(std::string_view field);
    void fillList(QComboBox& list, std::string_view field);
    // A field that may be typed into only as its key filter says.
    static void digitsOnly(QLineEdit& field);
    static std::string textOf(const QLineEdit& field);

    ParmsEditing& editor_;

private:
    struct PlainField {
        const FieldRow* row;
        QWidget* control;
        QButtonGroup* group = nullptr;
    };
    std::vector<PlainField> plain_;
};

} // namespace corvane
