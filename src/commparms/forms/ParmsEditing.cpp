#include "commparms/forms/ParmsEditing.h"

#include "commparms/FieldRules.h"
#include "commparms/RecordFields.h"
#include "platform/Latin1.h"
#include "widgets/DigitField.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>

namespace corvane {

CommParmsPage::CommParmsPage(ParmsEditing& editor, QWidget* parent)
    : QWidget(parent)
    , editor_(editor)
{
}

void CommParmsPage::bindPlainFields()
{
    using namespace field_rules;
    for (const FieldRow& row : fieldCatalogue()) {
        if (row.controlName.empty())
            continue;
        const QString name = fromLatin1Bytes(row.controlName);
        const auto store = [this, &row](const FieldValue& value) {
            return setFieldValue(editor_.comm(), editor_.collection(), row, value);
        };
        if (row.edit == tick) {
            auto* box = findChild<QCheckBox*>(name);
            if (!box)
                continue;
            connect(box, &QCheckBox::clicked, this, [this, &row, store](bool ticked) {
                // Data collection's boxes hold 1 or 0, unlike the -1 flags of the line settings.
                store(std::int64_t{row.dataCollection ? (ticked ? 1 : 0) : flagOf(ticked)});
                editor_.changed();
            });
            plain_.push_back({&row, box});
        } else if (row.edit == storeText || row.edit == storeDigits) {
            auto* field = findChild<QLineEdit*>(name);
            if (!field)
                continue;
            if (row.edit == storeDigits)
                digitsOnly(*field);
            connect(field, &QLineEdit::textEdited, this, [this, &row, field, store] {
                const bool stored = row.edit == storeDigits ? store(std::int64_t{numberFieldValue(textOf(*field))})
                                                            : store(textOf(*field));
                // A text that could not travel (the packet's own control characters, pasted in)
                // is not taken: the field shows again what the record holds and Update sends.
                if (!stored)
                    showPlainFields();
                editor_.changed();
            });
            plain_.push_back({&row, field});
        } else if (row.edit == leaveAsciiValue) {
            auto* field = findChild<QLineEdit*>(name);
            if (!field)
                continue;
            connect(field, &QLineEdit::editingFinished, this, [this, &row, field, store] {
                auto value = static_cast<std::int16_t>(
                    std::get<std::int64_t>(fieldValue(editor_.comm(), editor_.collection(), row)));
                const RuleOutcome outcome = asciiFieldLeft(value, textOf(*field), editor_.flags());
                store(std::int64_t{value});
                if (outcome.text)
                    show(*field, *outcome.text);
                editor_.changed(outcome);
            });
            plain_.push_back({&row, field});
        } else if (row.edit == storeChoice && row.control == Control::Options) {
            if (!findChild<QRadioButton*>(name + QString::number(row.lowest)))
                continue;
            QButtonGroup& group = choices(row.name);
            connect(&group, &QButtonGroup::idClicked, this, [this, store](int code) {
                store(std::int64_t{code});
                editor_.changed();
            });
            plain_.push_back({&row, nullptr, &group});
        }
    }
}

void CommParmsPage::showPlainFields()
{
    for (const PlainField& plain : plain_) {
        const FieldValue value = fieldValue(editor_.comm(), editor_.collection(), *plain.row);
        if (plain.group) {
            showChoice(*plain.group, static_cast<int>(std::get<std::int64_t>(value)));
        } else if (auto* box = qobject_cast<QCheckBox*>(plain.control)) {
            show(*box, std::get<std::int64_t>(value) != 0);
        } else if (auto* field = qobject_cast<QLineEdit*>(plain.control)) {
            if (plain.row->edit == field_rules::leaveAsciiValue)
                show(*field, asciiFieldText(static_cast<std::int16_t>(std::get<std::int64_t>(value))));
            else if (const auto* text = std::get_if<std::string>(&value))
                show(*field, *text);
            else
                show(*field, std::to_string(std::get<std::int64_t>(value)));
        }
    }
}

void CommParmsPage::show(QLineEdit& field, const std::string& text)
{
    const QString shown = fromLatin1Bytes(text);
    if (field.text() != shown)
        field.setText(shown);
}

void CommParmsPage::show(QAbstractButton& box, bool ticked)
{
    const QSignalBlocker quiet(box);
    box.setChecked(ticked);
}

void CommParmsPage::showIndex(QComboBox& list, int index)
{
    const QSignalBlocker quiet(list);
    list.setCurrentIndex(index >= 0 && index < list.count() ? index : -1);
}

void CommParmsPage::showChoice(QButtonGroup& group, int code)
{
    const QSignalBlocker quiet(group);
    if (QAbstractButton* button = group.button(code)) {
        button->setChecked(true);
        return;
    }
    group.setExclusive(false);
    for (QAbstractButton* button : group.buttons())
        button->setChecked(false);
    group.setExclusive(true);
}

QButtonGroup& CommParmsPage::choices(std::string_view field)
{
    const FieldRow& row = *findField(field);
    auto* group = new QButtonGroup(this);
    for (int code = row.lowest; code <= row.highest; ++code)
        group->addButton(findChild<QRadioButton*>(fromLatin1Bytes(row.controlName) + QString::number(code)), code);
    return *group;
}

void CommParmsPage::fillList(QComboBox& list, std::string_view field)
{
    for (const std::string_view caption : findField(field)->choices)
        list.addItem(fromLatin1Bytes(caption));
}

void CommParmsPage::digitsOnly(QLineEdit& field)
{
    DigitField::apply(field);
}

std::string CommParmsPage::textOf(const QLineEdit& field)
{
    return toLatin1Bytes(field.text());
}

} // namespace corvane
