#include "dialogs/CommMessage.h"
#include "dialogs/MessageBoxes.h"
#include "dialogs/ProgramHelp.h"
#include "dialogs/frmGenMsgBox.h"
#include "support/Forms.h"
#include "widgets/ProgramStyle.h"
#include "widgets/ScreenFit.h"

#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace corvane {
namespace {

using test::whenModal;

TEST(ScreenFit, AWindowIsMovedIntoItsScreenAndNeverLarger)
{
    const QRect screen(0, 0, 1280, 680); // 1280x720 less a panel
    struct Case {
        QRect frame, placed;
    } const cases[] = {
        {{100, 100, 600, 400}, {100, 100, 600, 400}}, // inside: left as it is
        {{900, 500, 600, 400}, {680, 280, 600, 400}}, // off the right and bottom: moved in
        {{-50, -30, 600, 400}, {0, 0, 600, 400}}, // off the top left
        {{200, 100, 800, 1059}, {200, 0, 800, 680}}, // taller than the screen: cut to it, top on it
        {{-10, 40, 1400, 300}, {0, 40, 1280, 300}}, // wider than the screen
    };
    for (const auto& c : cases) {
        EXPECT_EQ(placedInside(c.frame, screen), c.placed) << c.frame.x() << "," << c.frame.y();
        EXPECT_TRUE(screen.contains(placedInside(c.frame, screen)));
    }
    // A second screen to the right: its own free area.
    EXPECT_EQ(placedInside({2400, 600, 300, 200}, {1280, 0, 1920, 1040}), QRect(2400, 600, 300, 200));
    EXPECT_EQ(placedInside({3000, 600, 300, 200}, {1280, 0, 1920, 1040}), QRect(2900, 600, 300, 200));
}

int heightAt(const QFontMetrics& metrics, const QString& text, int width)
{
    return metrics.boundingRect(QRect(0, 0, width, 1 << 24), Qt::AlignLeft | Qt::TextWordWrap, text).height();
}

int longestWord(const QFontMetrics& metrics, const QString& text)
{
    int longest = 0;
    for (const QString& word : text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts))
        longest = std::max(longest, metrics.horizontalAdvance(word));
    return longest;
}

// The narrowest width that keeps the line count of the preferred width: one width less and
// another line starts; no word is ever wider than the width, up to the limit.
TEST(ScreenFit, TextWrapsIntoLinesOfLikeLengthWithoutCuttingAWord)
{
    const QFontMetrics metrics(QApplication::font());
    const QString path = QStringLiteral("/srv/dnc/programs/lathes/cell-a/very-long-folder-name-without-any-blank/O1234");
    const struct Case {
        QString text;
        int limit;
    } cases[] = {
        {QStringLiteral("No access to the selected function."), 2000},
        {QStringLiteral("DO NOT use No Wait Read if your Remote Request program, including \"Tape Leader and "
                        "Trailer\"  is greater than 500 characters."),
            2000},
        {QStringLiteral("The folder ") + path + QStringLiteral(" cannot be written."), 2000},
        {path + path, 200}, // longer than the screen: the screen's width, no more
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        const int width = balancedWrapWidth(c.text, metrics, 300, c.limit);
        EXPECT_LE(width, c.limit);
        EXPECT_GE(width, std::min(longestWord(metrics, c.text), c.limit)) << "a word is cut";
        const int preferred = std::min(std::max(300, longestWord(metrics, c.text)), c.limit);
        EXPECT_EQ(heightAt(metrics, c.text, width), heightAt(metrics, c.text, preferred)) << "no line more";
        if (width > longestWord(metrics, c.text) && heightAt(metrics, c.text, width) > metrics.height()) {
            EXPECT_GT(heightAt(metrics, c.text, width - 1), heightAt(metrics, c.text, width)) << "not balanced";
        }
    }
}

// Every kind of box: the whole text, lines of like length, no wider than the screen, a title
// and a close box but no minimise or maximise, and Enter presses the default button.
TEST(Boxes, TextWholeNoMinimiseOrMaximiseAndEnterPressesTheDefault)
{
    const QString path = QStringLiteral("/srv/dnc/programs/lathes/cell-a/very-long-folder-name-without-any-blank/O1234");
    const struct Case {
        const char* kind; // "own", "system" or "notice"
        QString text;
        std::int16_t style;
        std::int16_t enter; // the answer Enter gives
        const char* label;
    } cases[] = {
        {"own", QStringLiteral("No access to the selected function."), msg::OkOnly | msg::Exclamation, msg::ResultOk,
            "lblMsg"},
        {"own", QStringLiteral("Delete the user SMITH? The user's rights and password go with the entry, and the record "
                               "is kept for the next user added."),
            msg::YesNo | msg::Exclamation, msg::ResultYes, "lblMsg"},
        {"own", QStringLiteral("Overwrite the file ") + path + QStringLiteral("?"), msg::YesNo | msg::DefaultButton2,
            msg::ResultNo, "lblMsg"},
        {"system", QStringLiteral("With Remote Terminal you may view/save communications parameters for each "
                                  "connection/machine,\r\nbut the save function applies only to the connection/machine "
                                  "currently being viewed."),
            msg::OkOnly | msg::Information, msg::ResultOk, "qt_msgbox_label"},
        {"system", QStringLiteral("Fetch Comm Parms Packet Response Time Exceeds Limit"),
            msg::OkCancel | msg::DefaultButton2, msg::ResultCancel, "qt_msgbox_label"},
        {"notice", QStringLiteral("DO NOT use No Wait Read if your Remote Request program, including \"Tape Leader and "
                                  "Trailer\"  is greater than 500 characters."),
            0, 1, "lblMessage"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.kind << ": " << c.text.toStdString());
        GenMsgBoxes boxes({});
        whenModal<QDialog>([&](QDialog& box) {
            const auto* label = box.findChild<QLabel*>(QString::fromLatin1(c.label));
            ASSERT_NE(label, nullptr);
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "the text is cut";
            EXPECT_GE(label->width(), longestWord(label->fontMetrics(), label->text())) << "a word is cut";
            EXPECT_LE(box.frameGeometry().width(), box.screen()->availableGeometry().width());
            const Qt::WindowFlags flags = box.windowFlags();
            EXPECT_FALSE(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint)) << flags;
            EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
            QWidget* focused = QApplication::focusWidget();
            QTest::keyClick(focused && box.isAncestorOf(focused) ? focused : &box, Qt::Key_Return);
            if (box.isVisible()) {
                ADD_FAILURE() << "Enter did nothing";
                box.reject();
            }
        });
        std::int16_t answer = 0;
        if (std::string(c.kind) == "own")
            answer = boxes.Show_Gen_MsgBox(c.text.toStdString(), c.style, "Corvane Remote");
        else if (std::string(c.kind) == "system")
            answer = boxes.MsgBox(c.text.toStdString(), c.style, "Corvane Remote");
        else
            answer = static_cast<std::int16_t>(CommMessage(c.text).exec() == QDialog::Accepted ? 1 : 0);
        EXPECT_EQ(answer, c.enter);
    }
}

// A field that cannot be typed into is drawn on the window's colour, an editable one on the
// field colour; a disabled group greys its title as it greys its contents.
TEST(Look, ReadOnlyFieldsAndDisabledGroupsLookSo)
{
    ASSERT_NE(qobject_cast<ProgramStyle*>(QApplication::style()), nullptr) << "the program's look is on";
    const auto inside = [](QWidget& w) {
        w.resize(160, 60);
        w.show();
        return w.grab().toImage().pixelColor(w.width() - 12, w.height() / 2);
    };
    for (const bool readOnly : {false, true}) {
        SCOPED_TRACE(readOnly ? "read-only" : "editable");
        QLineEdit line;
        line.setReadOnly(readOnly);
        QPlainTextEdit text;
        text.show();
        text.setReadOnly(readOnly); // after it is up, as the forms do
        const QColor expected = readOnly ? ProgramStyle::readOnlyBackground(line.palette())
                                         : line.palette().color(QPalette::Active, QPalette::Base);
        EXPECT_EQ(inside(line), expected);
        EXPECT_EQ(inside(text), expected);
    }

    // The title's darkest pixel: the disabled one lighter than the enabled one.
    const auto titleInk = [](bool enabled) {
        QGroupBox group(QStringLiteral("Remote Printing"));
        group.setEnabled(enabled);
        group.resize(200, 80);
        group.show();
        const QImage image = group.grab().toImage();
        int darkest = 255;
        for (int y = 0; y < group.fontMetrics().height() + 4; ++y)
            for (int x = 0; x < image.width(); ++x)
                darkest = std::min(darkest, qGray(image.pixel(x, y)));
        return darkest;
    };
    EXPECT_GT(titleInk(false), titleInk(true) + 40) << "a disabled group's title is greyed";
}

// The page handed to the desktop forwards to the help at its section, is new and this user's
// alone; a section that could break out of the page's quotes stays inside them.
TEST(Help, TheForwardingPageKeepsTheSection)
{
    QTemporaryDir folder;
    const QUrl help = QUrl::fromLocalFile(folder.filePath(QStringLiteral("help/corvane-remote.html")));
    for (const QString& section :
        {QStringLiteral("commparms-collection"), QStringLiteral("a\"><script>x</script>"), QStringLiteral("b&c d")}) {
        SCOPED_TRACE(section.toStdString());
        QUrl target = help;
        target.setFragment(section);
        const QUrl page = helpForwardingPage(target, folder.path());
        ASSERT_NE(page, target) << "a page of its own";
        EXPECT_EQ(test::landsOn(page), target);
        QFile written(page.toLocalFile());
        ASSERT_TRUE(written.open(QIODevice::ReadOnly));
        EXPECT_FALSE(written.readAll().contains("<script>"));
    }
    // Without a section, or with no folder to write in, the help page itself.
    EXPECT_EQ(helpForwardingPage(help, folder.path()), help);
    QUrl target = help;
    target.setFragment(QStringLiteral("commparms"));
    EXPECT_EQ(helpForwardingPage(target, folder.filePath(QStringLiteral("missing"))), target);
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("corvane-help-*")}, QDir::Files).size(), 1)
        << "the run's earlier pages are gone";
}

} // namespace
} // namespace corvane
