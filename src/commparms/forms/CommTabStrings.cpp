#include "commparms/forms/CommTabStrings.h"

#include "ui_CommTabStrings.h"

namespace corvane {

CommTabStrings::CommTabStrings(ParmsEditing& editor, QWidget* parent)
    : CommParmsPage(editor, parent)
    , ui(std::make_unique<Ui::CommTabStrings>())
{
    ui->setupUi(this);
    using P = PortCommParms;
    ascii_ = {{ui->StartChar, &P::StStr}, {ui->EndChar, &P::EndStr}};
    const std::array<std::int16_t P::*, 8> starts = {&P::VarStrtStr1, &P::VarStrtStr2, &P::VarStrtStr3, &P::VarStrtStr4,
        &P::VarStrtStr5, &P::VarStrtStr6, &P::VarStrtStr7, &P::VarStrtStr8};
    const std::array<std::int16_t P::*, 8> ends = {&P::VarEndStr1, &P::VarEndStr2, &P::VarEndStr3, &P::VarEndStr4,
        &P::VarEndStr5, &P::VarEndStr6, &P::VarEndStr7, &P::VarEndStr8};
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ascii_.push_back({findChild<QLineEdit*>(QStringLiteral("StartStrVal_%1").arg(i + 1)), starts[i]});
        ascii_.push_back({findChild<QLineEdit*>(QStringLiteral("EndStrVal_%1").arg(i + 1)), ends[i]});
    }
    for (const AsciiBinding& a : ascii_)
        connect(a.field, &QLineEdit::editingFinished, this, [this, a] {
            const RuleOutcome outcome = asciiFieldLeft(editor_.comm().*a.value, textOf(*a.field), editor_.flags());
            if (outcome.text)
                show(*a.field, *outcome.text);
            editor_.changed(outcome);
        });

    for (auto [field, count] : {std::pair{ui->StartAmt, &P::StAmt}, std::pair{ui->EndAmt, &P::EndAmt}}) {
        digitsOnly(*field);
        connect(field, &QLineEdit::textEdited, this, [this, field = field, count = count] {
            editor_.comm().*count = numberFieldValue(textOf(*field));
            editor_.changed();
        });
    }
}

CommTabStrings::~CommTabStrings() = default;

void CommTabStrings::showRecord()
{
    const PortCommParms& p = editor_.comm();
    for (const AsciiBinding& a : ascii_)
        show(*a.field, asciiFieldText(p.*a.value));
    show(*ui->StartAmt, std::to_string(p.StAmt));
    show(*ui->EndAmt, std::to_string(p.EndAmt));
}

} // namespace corvane
