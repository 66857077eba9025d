#include "commparms/forms/ParmsEditing.h"

#include "commparms/FieldCatalogue.h"
#include "platform/Latin1.h"
#include "widgets/DigitField.h"

#include <QAbstractButton>
#include <QButtonGroup>
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
