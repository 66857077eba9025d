#pragma once

#include "dialogs/MessageBoxes.h"
#include "widgets/Desktop.h"
#include "support/Wait.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QTabBar>
#include <QWidget>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace corvane::test {

// Answers Show_Gen_MsgBox from a script (0 once the script runs out) and keeps every call.
struct ScriptedBoxes final : MessageBoxes {
    struct Call {
        std::string text;
        std::int16_t style;
        std::string title;
    };
    std::vector<Call> calls;
    std::deque<std::int16_t> answers;
    std::vector<int> untrappedErrors;

    std::int16_t MsgBox(const std::string& text, std::int16_t style, const std::string& title) override
    {
        return Show_Gen_MsgBox(text, style, title);
    }

    std::int16_t Show_Gen_MsgBox(const std::string& text, std::int16_t style, const std::string& title) override
    {
        calls.push_back({text, style, title});
        if (answers.empty())
            return 0;
        const std::int16_t a = answers.front();
        answers.pop_front();
        return a;
    }

    void untrappedError(int number) override { untrappedErrors.push_back(number); }
};

// The desktop as a test scripts it: the folders the browser hands back, and what was opened.
struct ScriptedDesktop final : Desktop {
    std::deque<QString> folders; // an empty one is a cancelled browser
    std::vector<QUrl> opened;
    bool opens = true;

    QString chooseFolder(QWidget*, const QString&) override
    {
        if (folders.empty())
            return {};
        QString folder = folders.front();
        folders.pop_front();
        return folder;
    }
    bool openUrl(const QUrl& url) override
    {
        opened.push_back(url);
        return opens;
    }
};

// Where the browser lands that the desktop was handed `opened`: the help page itself, or, for
// one of the program's forwarding pages, where it forwards to. A forwarding page must be a
// regular file that only its owner may read or write.
inline QUrl landsOn(const QUrl& opened)
{
    if (!opened.isLocalFile() || !QFileInfo(opened.toLocalFile()).fileName().startsWith(QLatin1String("corvane-help-")))
        return opened;
    const QFileInfo info(opened.toLocalFile());
    EXPECT_FALSE(info.isSymLink());
    EXPECT_TRUE(info.isFile());
    EXPECT_EQ(info.permissions() & ~(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser),
        QFile::Permissions{})
        << "readable by its owner only";
    QFile page(opened.toLocalFile());
    if (!page.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(page.readAll());
    const QRegularExpressionMatch m
        = QRegularExpression(QStringLiteral("http-equiv=\"refresh\" content=\"0; url=([^\"]*)\"")).match(text);
    if (!m.hasMatch())
        return {};
    QString address = m.captured(1);
    for (const auto& [escaped, plain] : {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}})
        address.replace(QLatin1String(escaped), QLatin1String(plain));
    return QUrl::fromEncoded(address.toUtf8(), QUrl::StrictMode);
}

// The controls of `form` that take the keyboard and have no name.
inline QStringList unnamedControls(QWidget& form)
{
    QStringList unnamed;
    for (QWidget* w : form.findChildren<QWidget*>()) {
        if (w->focusPolicy() == Qt::NoFocus)
            continue;
        // A spin box's own line edit is the box itself to a reader; the first of the rights'
        // check boxes is captioned from the rights list when the form opens, as the others are; a
        // tab bar is named by its form when it opens.
        if (qobject_cast<QAbstractSpinBox*>(w->parentWidget()) || w->objectName() == QLatin1String("chkRights_0")
            || (qobject_cast<QTabBar*>(w) && qobject_cast<QTabBar*>(w)->count() == 0))
            continue;
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(w);
        if (!accessible || accessible->text(QAccessible::Name).trimmed().isEmpty())
            unnamed << QStringLiteral("%1 (%2)").arg(w->objectName(), QString::fromLatin1(w->metaObject()->className()));
    }
    return unnamed;
}

// Calls `answer` with the modal dialog of type T for which `ready` holds, once it is up. Should
// none come within the time limit, whatever modal dialog is up is closed, so that a test fails
// instead of hanging.
template <typename T> void whenBox(std::function<bool(T&)> ready, std::function<void(T&)> answer, int limitMs = 5000)
{
    whenReady(
        [ready]() -> T* {
            auto* box = qobject_cast<T*>(QApplication::activeModalWidget());
            return box && ready(*box) ? box : nullptr;
        },
        answer,
        [] {
            ADD_FAILURE() << "no " << T::staticMetaObject.className() << " came up as expected";
            if (QWidget* stray = QApplication::activeModalWidget())
                stray->close();
        },
        limitMs);
}

// The next modal dialog of type T, whatever it shows.
template <typename T> void whenModal(std::function<void(T&)> answer, int limitMs = 5000)
{
    whenBox<T>([](T&) { return true; }, std::move(answer), limitMs);
}

// A child widget by its control name; the test fails when the form has no such control.
template <typename W> W& control(const QObject& form, const char* name)
{
    W* w = form.findChild<W*>(QString::fromLatin1(name));
    if (!w)
        throw std::runtime_error(std::string("the form has no control ") + name);
    return *w;
}

} // namespace corvane::test
