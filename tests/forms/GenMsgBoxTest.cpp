#include "dialogs/MessageBoxes.h"
#include "dialogs/frmGenMsgBox.h"
#include "support/Forms.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

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

TEST(GenMsgBox, ButtonsReturnTheirNumbers)
{
    GenMsgBoxes boxes({});
    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) { box.buttons().at(0)->click(); });
    EXPECT_EQ(boxes.Show_Gen_MsgBox("q", msg::YesNo, "t"), msg::ResultYes);

    boxes.CustomButtons = {{"Keep", 20}, {"Replace", 21}};
    whenModal<frmGenMsgBox>([](frmGenMsgBox& box) {
        EXPECT_EQ(box.buttons().at(1)->text(), QStringLiteral("Replace"));
        box.buttons().at(1)->click();
    });
    EXPECT_EQ(boxes.Show_Gen_MsgBox("c", msg::Custom, "t"), 21);
}

// Escape and the close box give the box's own cancel answer, never the previous box's Yes; a box
// that must be answered with a button stays up. Both the program's box and the system-style one.
TEST(GenMsgBox, EscapeAndTheCloseBoxGiveTheCancelAnswer)
{
    struct Case {
        std::int16_t style;
        std::int16_t answer; // 0: the box stays up
    } const cases[] = {
        {msg::YesNo | msg::Exclamation, msg::ResultNo},
        {msg::YesNoCancel, msg::ResultCancel},
        {msg::OkCancel, msg::ResultCancel},
        {msg::RetryCancel, msg::ResultCancel},
        {msg::ConvertCancel, msg::ResultCancel},
        {msg::OkOnly | msg::Critical, msg::ResultOk},
        {msg::Reset, msg::ResultReset},
        {msg::AbortRetryIgnore, 0},
    };
    const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
        {"Escape", [](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }},
        {"close box", [](QWidget& box) { box.close(); }},
    };
    for (const auto& c : cases) {
        for (const auto& [way, dismiss] : ways) {
            for (const bool own : {true, false}) {
                SCOPED_TRACE(testing::Message() << "style " << c.style << ", " << way << (own ? ", own" : ", system"));
                GenMsgBoxes boxes({});
                const auto ask
                    = [&] { return own ? boxes.Show_Gen_MsgBox("q", c.style, "t") : boxes.MsgBox("q", c.style, "t"); };
                // A Yes first, which the next box must not repeat.
                whenModal<QDialog>([](QDialog& box) { box.findChildren<QPushButton*>().at(0)->click(); });
                EXPECT_EQ(boxes.Show_Gen_MsgBox("first", msg::YesNo, "t"), msg::ResultYes);
                whenModal<QDialog>([&](QDialog& box) {
                    dismiss(box);
                    if (c.answer == 0) {
                        EXPECT_TRUE(box.isVisible()) << "nothing answers for the user";
                        box.findChildren<QPushButton*>().at(0)->click();
                    }
                });
                const std::int16_t got = ask();
                if (c.answer != 0)
                    EXPECT_EQ(got, c.answer);
                else
                    EXPECT_NE(got, msg::ResultYes);
            }
        }
    }
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
