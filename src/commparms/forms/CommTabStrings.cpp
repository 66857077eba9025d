#include "commparms/forms/CommTabStrings.h"

#include "ui_CommTabStrings.h"

namespace corvane {

// Every field of this page is a plain one: the catalogue binds and shows them all.
CommTabStrings::CommTabStrings(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabStrings>())
{
    ui->setupUi(this);
}

CommTabStrings::~CommTabStrings() = default;

} // namespace corvane
