#include "dialogs/MessageBoxes.h"
#include "dialogs/forms/frmGenMsgBox.h"
#include "support/Forms.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::control;
using test::whenModal;

// The style's bits are read elsewhere; here, the buttons the box shows and the one Enter presses.
TEST(GenMsgBox, StylesGiveCaptionsAndTheDefault)
{
    struct Case {
        std::int16_t style;
        QStringList captions;
        int defaultButton;
    } const cases[] = {
        {52, {QStringLiteral("Yes"), QStringLiteral("No")}, 0},
        {3 + 64 + 512, {QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Cancel")}, 2},
    };
    for (const auto& c : cases) {
        frmGenMsgBox box(QStringLiteral("text"), c.style, QStringLiteral("Title"), {}, 6.1);
        box.show();
        QStringList captions;
        for (const QPushButton* b : box.buttons())
            captions << b->text();
        EXPECT_EQ(captions, c.captions) << c.style;
        EXPECT_TRUE(box.buttons().at(static_cast<std::size_t>(c.defaultButton))->isDefault()) << c.style;
        box.close();
    }
}

TEST(GenMsgBox, ButtonsReturnTheirNumbersAndTheCloseBoxRepeatsTheLastAnswer)
{
    GenMsgBoxes boxes({});
    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) { box.buttons().at(0)->click(); });
    EXPECT_EQ(boxes.Show_Gen_MsgBox("q", msg::YesNo, "t"), msg::ResultYes);

    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) { box.close(); });
    EXPECT_EQ(boxes.Show_Gen_MsgBox("q", msg::YesNo, "t"), msg::ResultYes) << "not a No of its own";

    boxes.CustomButtons = {{"Keep", 20}, {"Replace", 21}};
    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) {
        EXPECT_EQ(box.buttons().at(1)->text(), QStringLiteral("Replace"));
        box.buttons().at(1)->click();
    });
    EXPECT_EQ(boxes.Show_Gen_MsgBox("c", msg::Custom, "t"), 21);
}

// The box is as wide as its caption needs, while the text keeps within its 4500 twips.
TEST(GenMsgBox, CaptionAndTextShowWhole)
{
    struct Case {
        const char* title;
        const char* text;
    } const cases[] = {
        {"Access Not Allowed", "No access to the selected function."},
        {"User Already Exists", "Entered user name already exists.  Please change."},
        {"t",
            "A long text that wraps, as the supervisor's password warning does, over several lines of the box "
            "without ever making it wider than the text's own limit."},
    };
    for (const auto& c : cases) {
        frmGenMsgBox box(
            QString::fromLatin1(c.text), msg::OkOnly | msg::Exclamation, QString::fromLatin1(c.title), {}, 6.1);
        box.show();
        const QLabel& text = control<QLabel>(box, "lblMsg");
        EXPECT_GE(box.width(), captionWidth(box.windowTitle(), box.fontMetrics())) << c.title;
        EXPECT_LE(text.width(), 300) << c.title;
        EXPECT_GE(text.height(), text.heightForWidth(text.width())) << c.title << ": the text is cut";
        box.close();
    }
}

} // namespace
} // namespace corvane
