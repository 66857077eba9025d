#pragma once

#include "dialogs/MessageBoxes.h"
#include "widgets/Desktop.h"
#include "support/Wait.h"

#include <QUrl>

#include <QApplication>
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
